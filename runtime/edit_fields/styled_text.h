#pragma once
// The StyleRun, Range, Paragraph and StyledText classes, and the
// StyledTextPrinter that draws a field's styled text in blocks.
#include "edit_fields/style_delegate.h"

#include "kelp/records.h"

namespace kelp {

struct ObjectDefinition;

struct StyleRunRecord {
    RuntimeObject object;
    uint8_t bold, italic, underline;
    int32_t size;
    KelpString font; // counted
    int32_t textColor;
    KelpString text; // counted
};

struct RangeRecord {
    RuntimeObject object;
    int32_t startPos;
    int32_t length;
};

struct ParagraphRecord {
    RangeRecord range;
    int32_t alignment; // 0 left, 1 centre, 2 right
};

struct StyledTextRecord {
    RuntimeObject object;
    StyledTextDelegate *delegate; // owned
    uint8_t ownsDelegate;
};

ObjectDefinition *StyleRunDefinition();
ObjectDefinition *RangeDefinition();
ObjectDefinition *ParagraphDefinition();
ObjectDefinition *StyledTextDefinition();
ObjectDefinition *StyledTextPrinterDefinition();

// A run's values from a StyleRun object, and a new object from values.
StyleRunValue RunValueOf(RuntimeObject *run);
RuntimeObject *NewStyleRun(const StyleRunValue &value);

} // namespace kelp
