#pragma once
// The EditField control: one class over a GtkEntry (one line) or a
// GtkTextView in a scrolled window (several).  The record holds every
// property so that a field keeps its values before it has a pane.
#include "controls/caption.h"
#include "controls/control.h"
#include "edit_fields/style_delegate.h"

#include "kelp/records.h"

namespace kelp {

struct ObjectDefinition;

struct EditFieldRecord {
    RuntimeControl control;
    KelpString text; // counted; raw text, also while Format shows another
    ControlFont font;
    uint8_t styled, acceptTabs, useFocusRing, liveUpdate;
    uint8_t multiLine, border, readOnly, password;
    uint8_t scrollBarHorizontal, scrollBarVertical;
    uint8_t inTextChange;        // TextChange runs: no nested one
    uint8_t inSelChange;         // SelChange runs
    int32_t textColor;           // 0xRRGGBB
    int32_t backColor;           // 0xRRGGBB
    int32_t limitText;           // characters, 0 for none
    int32_t alignment;           // 0 left, 1 centre, 2 right
    RuntimeObject *dataSource;   // counted
    KelpString dataField;        // counted
    int32_t selStart, selLength; // kept while Format shows its text
    KelpString format;           // counted
    KelpString formattedText;    // counted
    KelpString mask;             // counted
};

inline EditFieldRecord *EditRecord(RuntimeObject *object) {
    return reinterpret_cast<EditFieldRecord *>(object);
}

ObjectDefinition *EditFieldDefinition();

// The field's buffer as a store of style runs, or null when the field
// has no pane or is not a styled multi-line field.
StyledTextDelegate *FieldStyleStore(RuntimeObject *field);
// The font the field shows its plain text in.
FontSpec FieldFontSpec(RuntimeObject *field);

} // namespace kelp
