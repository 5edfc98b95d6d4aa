// The EditField class: its properties, methods and events, and the
// exports compiled code binds.  Every setter stores in the record, so a
// field keeps its values before it has a pane and after it lost it, and
// passes the value on to the pane when there is one.  All tolerate nil.
#include "edit_fields/edit_field.h"

#include "edit_fields/edit_events.h"
#include "edit_fields/edit_pane.h"
#include "edit_fields/mask.h"
#include "edit_fields/styled_text.h"
#include "edit_fields/utf8_text.h"

#include "exceptions/raise.h"
#include "graphics/graphics_object.h"
#include "objects/definitions.h"
#include "objects/text.h"
#include "strings/kstring.h"

#include "kelp/edit_fields.h"
#include "kelp/objects.h"

#include <algorithm>
#include <cstddef>

namespace kelp {

EditHooks &EditEvents() {
    static EditHooks hooks{};
    return hooks;
}

namespace {

void Store(KelpString &field, KelpString value) {
    objtext::Retain(value);
    objtext::Release(field);
    field = value;
}

// Line ends as the widget keeps them: one "\n" for CR LF, CR or LF.
std::string ToWidgetLineEnds(std::string text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r') {
            out += '\n';
            if (i + 1 < text.size() && text[i + 1] == '\n')
                ++i;
        } else {
            out += text[i];
        }
    }
    return out;
}

// And as the language reads them: CR.
std::string ToRuntimeLineEnds(std::string text) {
    std::replace(text.begin(), text.end(), '\n', '\r');
    return text;
}

int32_t SelStart(EditPane *pane) {
    int32_t s, e;
    pane->GetSelection(&s, &e);
    return s;
}

int32_t SelLength(EditPane *pane) {
    int32_t s, e;
    pane->GetSelection(&s, &e);
    return e - s;
}

void SetSelAttribute(RuntimeObject *self, StyleKind kind, int32_t value, const std::string &font) {
    if (EditPane *pane = EditPaneOf(self)) {
        pane->SetAttribute(SelStart(pane), SelLength(pane), kind, value, font);
        pane->CheckSelectionChanged();
    }
}

int32_t GetSelAttribute(RuntimeObject *self, StyleKind kind, std::string *font = nullptr) {
    EditPane *pane = EditPaneOf(self);
    if (!pane)
        return kind == kStyleKindSize || kind == kStyleKindColor ? -1 : 0;
    bool mixed = true;
    int32_t value = pane->GetAttribute(SelStart(pane), SelLength(pane), kind, &mixed, font);
    // A flag is set only if it covers the whole selection.
    if (kind <= kStyleKindUnderline)
        return mixed ? 0 : value;
    return value;
}

void ToggleSel(RuntimeObject *self, StyleKind kind) {
    SetSelAttribute(self, kind, GetSelAttribute(self, kind) ? 0 : 1, "");
}

} // namespace

StyledTextDelegate *FieldStyleStore(RuntimeObject *field) {
    EditPane *pane = EditPaneOf(field);
    return pane && pane->IsStyled() ? pane : nullptr;
}

FontSpec FieldFontSpec(RuntimeObject *field) {
    return field ? ToFontSpec(EditRecord(field)->font) : FontSpec{};
}

} // namespace kelp

using namespace kelp;

// ------------------------------------------------------------- life

extern "C" void EditCreatePane(RuntimeObject *self) {
    if (self && !Ctl(self)->pane && WindowForControl(Ctl(self)))
        Ctl(self)->pane = new EditPane(EditRecord(self));
}

extern "C" void EditFieldInitializer(RuntimeObject *self) {
    if (!self)
        return;
    EditFieldRecord *r = EditRecord(self);
    r->border = 1;
    r->backColor = 0xffffff;
    r->scrollBarVertical = 1;
}

extern "C" void RuntimeEditDestructor(RuntimeObject *self) {
    if (!self)
        return;
    EditFieldRecord *r = EditRecord(self);
    for (KelpString *s :
         {&r->text, &r->font.textFont, &r->dataField, &r->format, &r->formattedText, &r->mask}) {
        objtext::Release(*s);
        *s = nullptr;
    }
    RuntimeUnlockObject(r->dataSource);
    r->dataSource = nullptr;
}

// ------------------------------------------------------------- text

extern "C" KelpString editTextGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return nullptr;
    EditPane *pane = EditPaneOf(self);
    EditFieldRecord *r = EditRecord(self);
    // While Format shows its text the raw text is the record's.
    if (!pane || pane->ShowingFormat()) {
        objtext::Retain(r->text);
        return r->text;
    }
    std::string text = pane->GetText();
    return MakeUtf8(pane->IsMultiLine() ? ToRuntimeLineEnds(std::move(text)) : text);
}

extern "C" void editTextSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (!self)
        return;
    Store(EditRecord(self)->text, value);
    if (EditPane *pane = EditPaneOf(self))
        pane->SetText(pane->IsMultiLine() ? ToWidgetLineEnds(ToUtf8(value)) : ToUtf8(value));
}

extern "C" void editSetString(RuntimeObject *self, KelpString value) {
    editTextSetter(self, 0, value);
}

extern "C" KelpString editTextStyleDataGetter(RuntimeObject *self, int32_t) {
    EditPane *pane = EditPaneOf(self);
    if (!pane)
        return nullptr;
    std::string data = pane->StyleData();
    return data.empty()
               ? nullptr
               : string::FromBytes(data.data(), static_cast<long>(data.size()), kEncodingUnknown)
                     .ExtractStringStorage();
}

extern "C" void editSetTextAndStyle(RuntimeObject *self, KelpString text, KelpString style) {
    if (!self)
        return;
    Store(EditRecord(self)->text, text);
    if (EditPane *pane = EditPaneOf(self))
        pane->SetTextAndStyle(ToWidgetLineEnds(ToUtf8(text)), objtext::View(style));
}

// ------------------------------------------------------------- selection

extern "C" int32_t editSelStartGetter(RuntimeObject *self, int32_t) {
    EditPane *pane = EditPaneOf(self);
    return pane ? SelStart(pane) : self ? EditRecord(self)->selStart : 0;
}

extern "C" void editSelStartSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self)
        return;
    EditRecord(self)->selStart = std::max(value, 0);
    if (EditPane *pane = EditPaneOf(self)) {
        pane->SetSelection(value, value);
        pane->CheckSelectionChanged();
    }
}

extern "C" int32_t editSelLengthGetter(RuntimeObject *self, int32_t) {
    EditPane *pane = EditPaneOf(self);
    return pane ? SelLength(pane) : self ? EditRecord(self)->selLength : 0;
}

// The selection as a Range object: a program that keeps it can hand the
// same span back to the styled text's setters later, after the user has
// moved the caret.
extern "C" RuntimeObject *TextRangeGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return nullptr;
    RuntimeObject *range = NewObjectOfDefinition(RangeDefinition());
    if (!range)
        return nullptr;
    reinterpret_cast<RangeRecord *>(range)->startPos = editSelStartGetter(self, 0);
    reinterpret_cast<RangeRecord *>(range)->length = editSelLengthGetter(self, 0);
    return range;
}

extern "C" void editSelLengthSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self)
        return;
    EditRecord(self)->selLength = std::max(value, 0);
    if (EditPane *pane = EditPaneOf(self)) {
        int32_t start = SelStart(pane);
        pane->SetSelection(start, start + std::max(value, 0));
        pane->CheckSelectionChanged();
    }
}

extern "C" KelpString editSelTextGetter(RuntimeObject *self, int32_t) {
    EditPane *pane = EditPaneOf(self);
    return pane ? MakeUtf8(pane->SelectedText()) : nullptr;
}

extern "C" void editSelTextSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (EditPane *pane = EditPaneOf(self)) {
        pane->ReplaceSelection(ToUtf8(value));
        pane->CheckSelectionChanged();
    }
}

extern "C" void editSelectAll(RuntimeObject *self) {
    if (EditPane *pane = EditPaneOf(self)) {
        pane->SelectAll();
        pane->CheckSelectionChanged();
    }
}

extern "C" void editCopyToClipboard(RuntimeObject *self) {
    if (EditPane *pane = EditPaneOf(self))
        pane->Copy();
}

extern "C" void editPasteFromClipboard(RuntimeObject *self) {
    if (EditPane *pane = EditPaneOf(self)) {
        if (pane->Paste())
            pane->CheckSelectionChanged();
    }
}

// ------------------------------------------------------------- flags

#define KELP_EDIT_FLAG(getter, setter, field, apply)                                               \
    extern "C" uint8_t getter(RuntimeObject *self, int32_t) {                                      \
        return self ? EditRecord(self)->field : 0;                                                 \
    }                                                                                              \
    extern "C" void setter(RuntimeObject *self, int32_t, uint8_t value) {                          \
        if (!self)                                                                                 \
            return;                                                                                \
        EditRecord(self)->field = value != 0;                                                      \
        if (EditPane *pane = EditPaneOf(self)) {                                                   \
            apply;                                                                                 \
        }                                                                                          \
    }

// Border and MultiLine choose the widget: they take effect at binding.
KELP_EDIT_FLAG(editBorderGetter, editBorderSetter, border, (void)pane)
KELP_EDIT_FLAG(editMultiLineGetter, editMultiLineSetter, multiLine, (void)pane)
KELP_EDIT_FLAG(editReadOnlyGetter, editReadOnlySetter, readOnly, pane->SetEditable(!value))
KELP_EDIT_FLAG(editPasswordGetter, editPasswordSetter, password, pane->SetPassword(value != 0))
KELP_EDIT_FLAG(editScrollBarGetter, editScrollBarSetter, scrollBarVertical,
               pane->SetScrollBars(EditRecord(self)->scrollBarHorizontal, value != 0))
KELP_EDIT_FLAG(editHScrollBarGetter, editHScrollBarSetter, scrollBarHorizontal,
               pane->SetScrollBars(value != 0, EditRecord(self)->scrollBarVertical))
KELP_EDIT_FLAG(editBoldGetter, editBoldSetter, font.bold, pane->ApplyFieldFont())
KELP_EDIT_FLAG(editItalicGetter, editItalicSetter, font.italic, pane->ApplyFieldFont())
KELP_EDIT_FLAG(editUnderlineGetter, editUnderlineSetter, font.underline, pane->ApplyFieldFont())

extern "C" void editTextColorSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self)
        return;
    EditRecord(self)->textColor = value & 0xffffff;
    if (EditPane *pane = EditPaneOf(self))
        pane->SetTextColor(value & 0xffffff);
}

extern "C" void editBackColorSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self)
        return;
    EditRecord(self)->backColor = value & 0xffffff;
    if (EditPane *pane = EditPaneOf(self))
        pane->SetBackColor(value & 0xffffff);
}

extern "C" KelpString editTextFontGetter(RuntimeObject *self, int32_t) {
    KelpString font = self ? EditRecord(self)->font.textFont : nullptr;
    objtext::Retain(font);
    return font;
}

extern "C" void editTextFontSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (!self)
        return;
    Store(EditRecord(self)->font.textFont, value);
    if (EditPane *pane = EditPaneOf(self))
        pane->ApplyFieldFont();
}

extern "C" int32_t editTextSizeGetter(RuntimeObject *self, int32_t) {
    return self ? EditRecord(self)->font.textSize : 0;
}

extern "C" void editTextSizeSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self)
        return;
    EditRecord(self)->font.textSize = static_cast<int16_t>(std::clamp(value, 0, 1000));
    if (EditPane *pane = EditPaneOf(self))
        pane->ApplyFieldFont();
}

extern "C" int32_t editLimitTextGetter(RuntimeObject *self, int32_t) {
    return self ? EditRecord(self)->limitText : 0;
}

extern "C" void editLimitTextSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self)
        return;
    EditRecord(self)->limitText = std::max(value, 0);
    if (EditPane *pane = EditPaneOf(self))
        pane->SetLimit(std::max(value, 0));
}

extern "C" void EditAlignmentSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self)
        return;
    EditRecord(self)->alignment = std::clamp(value, 0, 2);
    if (EditPane *pane = EditPaneOf(self))
        pane->SetAlignment(std::clamp(value, 0, 2));
}

extern "C" int32_t EditSelAlignmentGetter(RuntimeObject *self, int32_t) {
    EditPane *pane = EditPaneOf(self);
    return pane ? pane->GetAlignment(SelStart(pane), SelLength(pane)) : 0;
}

extern "C" void EditSelAlignmentSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (EditPane *pane = EditPaneOf(self))
        pane->SetAlignment(SelStart(pane), SelLength(pane), std::clamp(value, 0, 2));
}

// The mask applies at once, so a field's text always complies with it.
extern "C" void EditMaskSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (!self)
        return;
    Store(EditRecord(self)->mask, value);
    if (EditPane *pane = EditPaneOf(self)) {
        if (value && value->length > 0)
            pane->FilterEdit(0, 0, std::string());
    } else if (ToUtf8(value).find('~') != std::string::npos) {
        RaiseWithMessage("RuntimeException", kInvalidMaskMessage);
    }
}

extern "C" void EditFormatSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (self)
        Store(EditRecord(self)->format, value);
}

extern "C" RuntimeObject *EditDataSourceGetter(RuntimeObject *self, int32_t) {
    RuntimeObject *source = self ? EditRecord(self)->dataSource : nullptr;
    RuntimeLockObject(source);
    return source;
}

extern "C" void EditDataSourceSetter(RuntimeObject *self, int32_t, RuntimeObject *value) {
    if (!self)
        return;
    RuntimeLockObject(value);
    RuntimeUnlockObject(EditRecord(self)->dataSource);
    EditRecord(self)->dataSource = value;
}

extern "C" void EditDataFieldSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (self)
        Store(EditRecord(self)->dataField, value);
}

// ------------------------------------------------------------- positions

extern "C" int32_t editScrollPositionGetter(RuntimeObject *self, int32_t) {
    EditPane *pane = EditPaneOf(self);
    return pane ? pane->ScrollLine() : 0;
}

extern "C" void editScrollPositionSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (EditPane *pane = EditPaneOf(self))
        pane->SetScrollLine(value);
}

extern "C" int32_t EditScrollPositionXGetter(RuntimeObject *self, int32_t) {
    EditPane *pane = EditPaneOf(self);
    return pane ? pane->ScrollX() : 0;
}

extern "C" void EditScrollPositionXSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (EditPane *pane = EditPaneOf(self))
        pane->SetScrollX(value);
}

extern "C" int32_t editLineNumAtCharPos(RuntimeObject *self, int32_t pos) {
    EditPane *pane = EditPaneOf(self);
    return pane ? pane->LineAtCharPos(pos) : 0;
}

extern "C" int32_t editCharPosAtLineNum(RuntimeObject *self, int32_t line) {
    EditPane *pane = EditPaneOf(self);
    return pane ? pane->CharPosAtLine(line) : 0;
}

extern "C" int32_t editCharPosAtXY(RuntimeObject *self, int32_t x, int32_t y) {
    EditPane *pane = EditPaneOf(self);
    return pane ? pane->CharPosAtXY(x, y, false) : 0;
}

extern "C" int32_t editInsertionPosAtXY(RuntimeObject *self, int32_t x, int32_t y) {
    EditPane *pane = EditPaneOf(self);
    return pane ? pane->CharPosAtXY(x, y, true) : 0;
}

// ------------------------------------------------------------- styles

extern "C" void editToggleSelectionBold(RuntimeObject *self) { ToggleSel(self, kStyleKindBold); }
extern "C" void editToggleSelectionItalic(RuntimeObject *self) {
    ToggleSel(self, kStyleKindItalic);
}
extern "C" void editToggleSelectionUnderline(RuntimeObject *self) {
    ToggleSel(self, kStyleKindUnderline);
}
// Shadow, outline, condensed and extended type have no toolkit form.
extern "C" void editToggleSelectionShadow(RuntimeObject *) {}
extern "C" void editToggleSelectionOutline(RuntimeObject *) {}
extern "C" void editToggleSelectionCondense(RuntimeObject *) {}
extern "C" void editToggleSelectionExtend(RuntimeObject *) {}

extern "C" uint8_t editSelBoldGetter(RuntimeObject *self, int32_t) {
    return GetSelAttribute(self, kStyleKindBold) != 0;
}
extern "C" void editSelBoldSetter(RuntimeObject *self, int32_t, uint8_t value) {
    SetSelAttribute(self, kStyleKindBold, value != 0, "");
}
extern "C" uint8_t editSelItalicGetter(RuntimeObject *self, int32_t) {
    return GetSelAttribute(self, kStyleKindItalic) != 0;
}
extern "C" void editSelItalicSetter(RuntimeObject *self, int32_t, uint8_t value) {
    SetSelAttribute(self, kStyleKindItalic, value != 0, "");
}
extern "C" uint8_t editSelUnderlineGetter(RuntimeObject *self, int32_t) {
    return GetSelAttribute(self, kStyleKindUnderline) != 0;
}
extern "C" void editSelUnderlineSetter(RuntimeObject *self, int32_t, uint8_t value) {
    SetSelAttribute(self, kStyleKindUnderline, value != 0, "");
}
extern "C" uint8_t editSelNoStyleGetter(RuntimeObject *, int32_t) { return 0; }
extern "C" void editSelNoStyleSetter(RuntimeObject *, int32_t, uint8_t) {}
extern "C" uint8_t editSelOutlineGetter(RuntimeObject *, int32_t) { return 0; }
extern "C" void editSelOutlineSetter(RuntimeObject *, int32_t, uint8_t) {}
extern "C" uint8_t editSelShadowGetter(RuntimeObject *, int32_t) { return 0; }
extern "C" void editSelShadowSetter(RuntimeObject *, int32_t, uint8_t) {}
extern "C" uint8_t editSelCondenseGetter(RuntimeObject *, int32_t) { return 0; }
extern "C" void editSelCondenseSetter(RuntimeObject *, int32_t, uint8_t) {}
extern "C" uint8_t editSelExtendGetter(RuntimeObject *, int32_t) { return 0; }
extern "C" void editSelExtendSetter(RuntimeObject *, int32_t, uint8_t) {}
extern "C" uint8_t editSelPlainGetter(RuntimeObject *, int32_t) { return 0; }

// Plain takes every style off the selection.
extern "C" void editSelPlainSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (!value)
        return;
    for (StyleKind kind : {kStyleKindBold, kStyleKindItalic, kStyleKindUnderline, kStyleKindColor,
                           kStyleKindSize, kStyleKindFont})
        SetSelAttribute(self, kind, 0, "");
}

extern "C" KelpString editSelTextFontGetter(RuntimeObject *self, int32_t) {
    std::string font;
    GetSelAttribute(self, kStyleKindFont, &font);
    return MakeUtf8(font);
}
extern "C" void editSelTextFontSetter(RuntimeObject *self, int32_t, KelpString value) {
    SetSelAttribute(self, kStyleKindFont, 0, ToUtf8(value));
}
extern "C" int32_t editSelTextSizeGetter(RuntimeObject *self, int32_t) {
    return GetSelAttribute(self, kStyleKindSize);
}
extern "C" void editSelTextSizeSetter(RuntimeObject *self, int32_t, int32_t value) {
    SetSelAttribute(self, kStyleKindSize, value, "");
}
extern "C" int32_t editSelTextColorGetter(RuntimeObject *self, int32_t) {
    return GetSelAttribute(self, kStyleKindColor);
}
extern "C" void editSelTextColorSetter(RuntimeObject *self, int32_t, int32_t value) {
    SetSelAttribute(self, kStyleKindColor, value & 0xffffff, "");
}

// ------------------------------------------------------------- the class

namespace kelp {

ObjectDefinition *EditFieldDefinition() {
    using R = EditFieldRecord;
    static const TypeRecord styledType{kTypeObjectOf, nullptr, nullptr, 0, &StyledTextDefinition};
    static const PropertyRow properties[] = {
        {0, "Text", &kTypeString, KELP_ENTRY(editTextGetter), KELP_ENTRY(editTextSetter), -9},
        {0, "TextStyleData", &kTypeString, KELP_ENTRY(editTextStyleDataGetter), {}, -9},
        {0, "Border", &kTypeBoolean, KELP_ENTRY(editBorderGetter), KELP_ENTRY(editBorderSetter)},
        {0, "MultiLine", &kTypeBoolean, KELP_ENTRY(editMultiLineGetter),
         KELP_ENTRY(editMultiLineSetter)},
        {0, "ReadOnly", &kTypeBoolean, KELP_ENTRY(editReadOnlyGetter),
         KELP_ENTRY(editReadOnlySetter)},
        {0, "Password", &kTypeBoolean, KELP_ENTRY(editPasswordGetter),
         KELP_ENTRY(editPasswordSetter)},
        {0, "Styled", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD, offsetof(R, styled)},
        {0, "AcceptTabs", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD,
         offsetof(R, acceptTabs)},
        {0, "TextColor", &kTypeColor, KELP_ENTRY(intGetter), KELP_ENTRY(editTextColorSetter),
         offsetof(R, textColor)},
        {0, "BackColor", &kTypeColor, KELP_ENTRY(intGetter), KELP_ENTRY(editBackColorSetter),
         offsetof(R, backColor)},
        {0, "ScrollBarHorizontal", &kTypeBoolean, KELP_ENTRY(editHScrollBarGetter),
         KELP_ENTRY(editHScrollBarSetter)},
        {0, "ScrollBarVertical", &kTypeBoolean, KELP_ENTRY(editScrollBarGetter),
         KELP_ENTRY(editScrollBarSetter)},
        {0, "ScrollBar", &kTypeBoolean, KELP_ENTRY(editScrollBarGetter),
         KELP_ENTRY(editScrollBarSetter)},
        {0, "TextFont", &kTypeString, KELP_ENTRY(editTextFontGetter),
         KELP_ENTRY(editTextFontSetter)},
        {0, "TextSize", &kTypeInteger, KELP_ENTRY(editTextSizeGetter),
         KELP_ENTRY(editTextSizeSetter)},
        {0, "Bold", &kTypeBoolean, KELP_ENTRY(editBoldGetter), KELP_ENTRY(editBoldSetter)},
        {0, "Italic", &kTypeBoolean, KELP_ENTRY(editItalicGetter), KELP_ENTRY(editItalicSetter)},
        {0, "Underline", &kTypeBoolean, KELP_ENTRY(editUnderlineGetter),
         KELP_ENTRY(editUnderlineSetter)},
        {0, "SelStart", &kTypeInteger, KELP_ENTRY(editSelStartGetter),
         KELP_ENTRY(editSelStartSetter)},
        {0, "SelLength", &kTypeInteger, KELP_ENTRY(editSelLengthGetter),
         KELP_ENTRY(editSelLengthSetter)},
        {0, "SelText", &kTypeString, KELP_ENTRY(editSelTextGetter), KELP_ENTRY(editSelTextSetter)},
        {0, "LimitText", &kTypeInteger, KELP_ENTRY(editLimitTextGetter),
         KELP_ENTRY(editLimitTextSetter)},
        {0, "SelBold", &kTypeBoolean, KELP_ENTRY(editSelBoldGetter), KELP_ENTRY(editSelBoldSetter)},
        {0, "SelUnderline", &kTypeBoolean, KELP_ENTRY(editSelUnderlineGetter),
         KELP_ENTRY(editSelUnderlineSetter)},
        {0, "SelItalic", &kTypeBoolean, KELP_ENTRY(editSelItalicGetter),
         KELP_ENTRY(editSelItalicSetter)},
        {0, "SelOutline", &kTypeBoolean, KELP_ENTRY(editSelOutlineGetter),
         KELP_ENTRY(editSelOutlineSetter)},
        {0, "SelShadow", &kTypeBoolean, KELP_ENTRY(editSelShadowGetter),
         KELP_ENTRY(editSelShadowSetter)},
        {0, "SelCondense", &kTypeBoolean, KELP_ENTRY(editSelCondenseGetter),
         KELP_ENTRY(editSelCondenseSetter)},
        {0, "SelExtend", &kTypeBoolean, KELP_ENTRY(editSelExtendGetter),
         KELP_ENTRY(editSelExtendSetter)},
        {0, "SelPlain", &kTypeBoolean, KELP_ENTRY(editSelPlainGetter),
         KELP_ENTRY(editSelPlainSetter)},
        {0, "SelTextFont", &kTypeString, KELP_ENTRY(editSelTextFontGetter),
         KELP_ENTRY(editSelTextFontSetter)},
        {0, "SelTextSize", &kTypeInteger, KELP_ENTRY(editSelTextSizeGetter),
         KELP_ENTRY(editSelTextSizeSetter)},
        {0, "SelTextColor", &kTypeColor, KELP_ENTRY(editSelTextColorGetter),
         KELP_ENTRY(editSelTextColorSetter)},
        {0, "LiveUpdate", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD,
         offsetof(R, liveUpdate)},
        {0, "UseFocusRing", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD,
         offsetof(R, useFocusRing)},
        {0, "DataField", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(EditDataFieldSetter),
         offsetof(R, dataField)},
        {0, "Alignment", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(EditAlignmentSetter),
         offsetof(R, alignment)},
        {0, "SelAlignment", &kTypeInteger, KELP_ENTRY(EditSelAlignmentGetter),
         KELP_ENTRY(EditSelAlignmentSetter)},
        {0, "Format", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(EditFormatSetter),
         offsetof(R, format)},
        {0,
         "FormattedText",
         &kTypeString,
         KELP_ENTRY(stringGetter),
         {},
         offsetof(R, formattedText)},
        {0, "Mask", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(EditMaskSetter),
         offsetof(R, mask)},
        {0, "StyledText", &styledType, KELP_ENTRY(StyledTextObjectGetter),
         KELP_ENTRY(StyledTextObjectSetter)},
    };
    static const TypeRecord graphicsType{kTypeObjectOf, nullptr, nullptr, 0, &GraphicsDefinition};
    static const TypeRecord printerType{kTypeObjectOf, nullptr, nullptr, 0,
                                        &StyledTextPrinterDefinition};
    static const ParameterRow printerParams[] = {{"g", &graphicsType}, {"width", &kTypeInteger}};
    static const ParameterRow textAndStyle[] = {{"text", &kTypeString}, {"style", &kTypeString}};
    static const ParameterRow oneString[] = {{"value", &kTypeString}};
    static const ParameterRow onePos[] = {{"pos", &kTypeInteger}};
    static const ParameterRow oneLine[] = {{"line", &kTypeInteger}};
    static const ParameterRow xy[] = {{"x", &kTypeInteger}, {"y", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"ToggleSelectionBold", nullptr, nullptr, 0, KELP_ENTRY(editToggleSelectionBold)},
        {"ToggleSelectionUnderline", nullptr, nullptr, 0, KELP_ENTRY(editToggleSelectionUnderline)},
        {"ToggleSelectionItalic", nullptr, nullptr, 0, KELP_ENTRY(editToggleSelectionItalic)},
        {"ToggleSelectionShadow", nullptr, nullptr, 0, KELP_ENTRY(editToggleSelectionShadow)},
        {"ToggleSelectionOutline", nullptr, nullptr, 0, KELP_ENTRY(editToggleSelectionOutline)},
        {"ToggleSelectionCondense", nullptr, nullptr, 0, KELP_ENTRY(editToggleSelectionCondense)},
        {"ToggleSelectionExtend", nullptr, nullptr, 0, KELP_ENTRY(editToggleSelectionExtend)},
        {"SetTextAndStyle", nullptr, textAndStyle, 2, KELP_ENTRY(editSetTextAndStyle)},
        {"setString", nullptr, oneString, 1, KELP_ENTRY(editSetString)},
        {"LineNumAtCharPos", &kTypeInteger, onePos, 1, KELP_ENTRY(editLineNumAtCharPos)},
        {"CharPosAtLineNum", &kTypeInteger, oneLine, 1, KELP_ENTRY(editCharPosAtLineNum)},
        {"CharPosAtXY", &kTypeInteger, xy, 2, KELP_ENTRY(editCharPosAtXY)},
        {"InsertionPosAtXY", &kTypeInteger, xy, 2, KELP_ENTRY(editInsertionPosAtXY)},
        {"Copy", nullptr, nullptr, 0, KELP_ENTRY(editCopyToClipboard)},
        {"Paste", nullptr, nullptr, 0, KELP_ENTRY(editPasteFromClipboard)},
        {"SelectAll", nullptr, nullptr, 0, KELP_ENTRY(editSelectAll)},
        {"StyledTextPrinter", &printerType, printerParams, 2, KELP_ENTRY(editStyleTextPrinter)},
    };
    EditHooks &h = EditEvents();
    static const EventRow events[] = {
        {"KeyDown", "Key As String", "Boolean", &h.keyDown},
        {"GotFocus", "", nullptr, &h.gotFocus},
        {"LostFocus", "", nullptr, &h.lostFocus},
        {"MouseDown", "X As Integer, Y As Integer", "Boolean", &h.mouseDown},
        {"MouseUp", "X As Integer, Y As Integer", nullptr, &h.mouseUp},
        {"SelChange", "", nullptr, &h.selChange},
        {"TextChange", "", nullptr, &h.textChange},
        {"EnableMenuItems", "", nullptr, &h.enableMenuItems},
        {"ValidationError", "InvalidText As String, StartPosition As Integer", nullptr,
         &h.validationError},
    };
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&EditCreatePane)},
    };
    static const ClassDescription description = {
        .name = "EditField",
        .super = RectControlDefinition,
        .instanceSize = sizeof(EditFieldRecord),
        .initializer = KELP_ENTRY(EditFieldInitializer),
        .finalizer = KELP_ENTRY(RuntimeEditDestructor),
        .properties = properties,
        .methods = methods,
        .events = events,
        .hookInstances = hooks,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
