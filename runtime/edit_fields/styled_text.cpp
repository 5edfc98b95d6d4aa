// StyledText: a handle on a store of style runs, either its own or the
// buffer of a styled edit field.  Paragraphs are not stored: they are
// found in the text whenever asked for, so they never disagree with it.
#include "edit_fields/styled_text.h"

#include "edit_fields/style_store.h"

#include "edit_fields/edit_field.h"
#include "edit_fields/utf8_text.h"
#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "objects/text.h"

#include "kelp/edit_fields.h"
#include "kelp/objects.h"

#include <cstddef>

namespace kelp {

namespace {

StyledTextRecord *Styled(RuntimeObject *o) { return reinterpret_cast<StyledTextRecord *>(o); }
StyleRunRecord *Run(RuntimeObject *o) { return reinterpret_cast<StyleRunRecord *>(o); }

void Store(KelpString &field, KelpString value) {
    objtext::Retain(value);
    objtext::Release(field);
    field = value;
}

// The styles of a field's buffer; its text also when the field is plain.
// The field is held, and its pane looked up at each call, so the object
// may outlive the window.
class FieldStore : public StyledTextDelegate {
public:
    explicit FieldStore(RuntimeObject *field) : mField(field) { RuntimeLockObject(field); }
    ~FieldStore() override { RuntimeUnlockObject(mField); }
    FieldStore(const FieldStore &) = delete;
    FieldStore &operator=(const FieldStore &) = delete;

    void SetAttribute(int32_t s, int32_t l, StyleKind k, int32_t v, const std::string &f) override {
        if (StyledTextDelegate *d = FieldStyleStore(mField))
            d->SetAttribute(s, l, k, v, f);
    }
    int32_t GetAttribute(int32_t s, int32_t l, StyleKind k, bool *m, std::string *f) override {
        StyledTextDelegate *d = FieldStyleStore(mField);
        return d ? d->GetAttribute(s, l, k, m, f) : 0;
    }
    int32_t RunCount() override {
        StyledTextDelegate *d = FieldStyleStore(mField);
        return d ? d->RunCount() : 1;
    }
    bool GetRun(int32_t i, StyleRunValue *r, int32_t *s) override {
        if (StyledTextDelegate *d = FieldStyleStore(mField))
            return d->GetRun(i, r, s);
        if (i != 0)
            return false;
        *r = StyleRunValue{};
        r->text = Text();
        if (s)
            *s = 0;
        return true;
    }
    bool InsertRun(const StyleRunValue &r, int32_t i) override {
        StyledTextDelegate *d = FieldStyleStore(mField);
        return d && d->InsertRun(r, i);
    }
    void AppendRun(const StyleRunValue &r) override {
        if (StyledTextDelegate *d = FieldStyleStore(mField))
            d->AppendRun(r);
    }
    bool RemoveRun(int32_t i) override {
        StyledTextDelegate *d = FieldStyleStore(mField);
        return d && d->RemoveRun(i);
    }
    int32_t GetAlignment(int32_t s, int32_t l) override {
        StyledTextDelegate *d = FieldStyleStore(mField);
        return d ? d->GetAlignment(s, l) : 0;
    }
    void SetAlignment(int32_t s, int32_t l, int32_t a) override {
        if (StyledTextDelegate *d = FieldStyleStore(mField))
            d->SetAlignment(s, l, a);
    }
    std::string Text() override {
        KelpString text = editTextGetter(mField, 0);
        std::string out = ToUtf8(text);
        objtext::Release(text);
        return out;
    }
    void SetText(const std::string &utf8) override {
        KelpString text = MakeUtf8(utf8);
        editTextSetter(mField, 0, text);
        objtext::Release(text);
    }

private:
    RuntimeObject *mField; // counted
};

StyledTextDelegate *DelegateOf(RuntimeObject *self) {
    return self ? Styled(self)->delegate : nullptr;
}

RuntimeObject *NewOf(ObjectDefinition *definition) {
    return RuntimeNewObject(ClassForDefinition(definition));
}

// Paragraph i of the text: start and length in characters.  Each run of
// line-end characters closes one paragraph; a text not ending in one has
// a last paragraph after it.  Past the end gives the last one found.
bool FindParagraph(const std::string &text, int32_t index, int32_t *start, int32_t *length,
                   int32_t *count) {
    int32_t found = 0, chars = 0, paraStart = 0;
    bool have = false;
    *start = *length = 0;
    auto take = [&](int32_t s, int32_t e) {
        if (found <= index || !have)
            *start = s, *length = e - s, have = true;
        ++found;
    };
    size_t i = 0;
    while (i < text.size()) {
        if (text[i] == '\r' || text[i] == '\n') {
            take(paraStart, chars);
            while (i < text.size() && (text[i] == '\r' || text[i] == '\n'))
                ++i, ++chars;
            paraStart = chars;
            continue;
        }
        i = static_cast<size_t>(g_utf8_next_char(text.data() + i) - text.data());
        ++chars;
    }
    if (paraStart < chars)
        take(paraStart, chars);
    if (count)
        *count = found;
    return have;
}

} // namespace

StyleRunValue RunValueOf(RuntimeObject *run) {
    StyleRunValue v;
    if (!run)
        return v;
    StyleRunRecord *r = Run(run);
    v.bold = r->bold, v.italic = r->italic, v.underline = r->underline;
    v.size = r->size;
    v.font = ToUtf8(r->font);
    v.color = r->textColor & 0xffffff;
    v.text = ToUtf8(r->text);
    return v;
}

RuntimeObject *NewStyleRun(const StyleRunValue &value) {
    RuntimeObject *object = NewOf(StyleRunDefinition());
    StyleRunRecord *r = Run(object);
    r->bold = value.bold, r->italic = value.italic, r->underline = value.underline;
    r->size = value.size;
    r->font = MakeUtf8(value.font);
    r->textColor = value.color;
    r->text = MakeUtf8(value.text);
    return object;
}

} // namespace kelp

using namespace kelp;

// ------------------------------------------------------------- StyleRun

extern "C" void StyleRunKPConstructor(RuntimeObject *self, KelpString text) {
    if (self)
        Store(Run(self)->text, text);
}

extern "C" void StyleRunFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    objtext::Release(Run(self)->font);
    objtext::Release(Run(self)->text);
    Run(self)->font = Run(self)->text = nullptr;
}

extern "C" void styleRunStringSetter(RuntimeObject *self, int32_t offset, KelpString value) {
    if (self && offset > 0)
        Store(*reinterpret_cast<KelpString *>(reinterpret_cast<char *>(self) + offset), value);
}

extern "C" int32_t RangeEndPosGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return 0;
    RangeRecord *r = reinterpret_cast<RangeRecord *>(self);
    return r->startPos + r->length;
}

// ------------------------------------------------------------- StyledText

extern "C" void StyledTextClassInitializer(RuntimeObject *self) {
    if (!self)
        return;
    Styled(self)->delegate = new StyleStore();
    Styled(self)->ownsDelegate = 1;
}

extern "C" void StyledTextClassFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    if (Styled(self)->ownsDelegate)
        delete Styled(self)->delegate;
    Styled(self)->delegate = nullptr;
    Styled(self)->ownsDelegate = 0;
}

extern "C" void StyledTextDestructor(RuntimeObject *self) { StyledTextClassFinalizer(self); }

extern "C" KelpString StyledTextGetter(RuntimeObject *self, int32_t) {
    StyledTextDelegate *d = DelegateOf(self);
    return d ? MakeUtf8(d->Text()) : nullptr;
}

extern "C" void StyledTextSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (StyledTextDelegate *d = DelegateOf(self)) {
        d->SetText(ToUtf8(value));
        d->Update();
    }
}

#define KELP_STYLED_ATTRIBUTE(getter, setter, kind, type)                                          \
    extern "C" type getter(RuntimeObject *self, int32_t start, int32_t length) {                   \
        StyledTextDelegate *d = DelegateOf(self);                                                  \
        bool mixed = true;                                                                         \
        return d ? static_cast<type>(d->GetAttribute(start, length, kind, &mixed, nullptr)) : 0;   \
    }                                                                                              \
    extern "C" void setter(RuntimeObject *self, int32_t start, int32_t length, type value) {       \
        if (StyledTextDelegate *d = DelegateOf(self)) {                                            \
            d->SetAttribute(start, length, kind, value, std::string());                            \
            d->Update();                                                                           \
        }                                                                                          \
    }

KELP_STYLED_ATTRIBUTE(StyledTextGetBold, StyledTextSetBold, kStyleKindBold, uint8_t)
KELP_STYLED_ATTRIBUTE(StyledTextGetItalic, StyledTextSetItalic, kStyleKindItalic, uint8_t)
KELP_STYLED_ATTRIBUTE(StyledTextGetUnderline, StyledTextSetUnderline, kStyleKindUnderline, uint8_t)
KELP_STYLED_ATTRIBUTE(StyledTextGetSize, StyledTextSetSize, kStyleKindSize, int32_t)
KELP_STYLED_ATTRIBUTE(StyledTextGetColor, StyledTextSetColor, kStyleKindColor, int32_t)

extern "C" KelpString StyledTextGetFont(RuntimeObject *self, int32_t start, int32_t length) {
    StyledTextDelegate *d = DelegateOf(self);
    if (!d)
        return nullptr;
    std::string font;
    bool mixed = true;
    d->GetAttribute(start, length, kStyleKindFont, &mixed, &font);
    return MakeUtf8(font);
}

extern "C" void StyledTextSetFont(RuntimeObject *self, int32_t start, int32_t length,
                                  KelpString value) {
    if (StyledTextDelegate *d = DelegateOf(self)) {
        d->SetAttribute(start, length, kStyleKindFont, 0, ToUtf8(value));
        d->Update();
    }
}

extern "C" int32_t StyledTextRunCountGetter(RuntimeObject *self, int32_t) {
    StyledTextDelegate *d = DelegateOf(self);
    return d ? d->RunCount() : 0;
}

// A copy: changing it leaves the text alone.
extern "C" RuntimeObject *StyledTextRunGetter(RuntimeObject *self, int32_t index) {
    StyledTextDelegate *d = DelegateOf(self);
    StyleRunValue run;
    if (!d)
        return nullptr;
    if (!d->GetRun(index, &run, nullptr)) {
        RaiseOutOfBounds();
        return nullptr;
    }
    return NewStyleRun(run);
}

extern "C" RuntimeObject *StyledTextRunRangeGetter(RuntimeObject *self, int32_t index) {
    StyledTextDelegate *d = DelegateOf(self);
    StyleRunValue run;
    int32_t start = 0;
    if (!d)
        return nullptr;
    if (!d->GetRun(index, &run, &start)) {
        RaiseOutOfBounds();
        return nullptr;
    }
    RuntimeObject *range = NewOf(RangeDefinition());
    reinterpret_cast<RangeRecord *>(range)->startPos = start;
    reinterpret_cast<RangeRecord *>(range)->length = CharCount(run.text);
    return range;
}

extern "C" void InsertStyledTextRun(RuntimeObject *self, RuntimeObject *run, int32_t index) {
    StyledTextDelegate *d = DelegateOf(self);
    if (!d)
        return;
    if (!run) {
        RaiseNilObject();
        return;
    }
    if (!d->InsertRun(RunValueOf(run), index))
        RaiseOutOfBounds();
    d->Update();
}

extern "C" void AppendStyledTextRun(RuntimeObject *self, RuntimeObject *run) {
    StyledTextDelegate *d = DelegateOf(self);
    if (!d)
        return;
    if (!run) {
        RaiseNilObject();
        return;
    }
    d->AppendRun(RunValueOf(run));
    d->Update();
}

extern "C" void RemoveStyledTextRun(RuntimeObject *self, int32_t index) {
    StyledTextDelegate *d = DelegateOf(self);
    if (!d)
        return;
    if (!d->RemoveRun(index))
        RaiseOutOfBounds();
    d->Update();
}

extern "C" int32_t StyledTextParagraphCountGetter(RuntimeObject *self, int32_t) {
    StyledTextDelegate *d = DelegateOf(self);
    int32_t start, length, count = 0;
    if (d)
        FindParagraph(d->Text(), 0, &start, &length, &count);
    return count;
}

extern "C" RuntimeObject *StyledTextParagraphGetter(RuntimeObject *self, int32_t index) {
    StyledTextDelegate *d = DelegateOf(self);
    if (!d)
        return nullptr;
    int32_t start, length;
    FindParagraph(d->Text(), index, &start, &length, nullptr);
    RuntimeObject *paragraph = NewOf(ParagraphDefinition());
    auto *p = reinterpret_cast<ParagraphRecord *>(paragraph);
    p->range.startPos = start;
    p->range.length = length;
    p->alignment = d->GetAlignment(start, length);
    return paragraph;
}

extern "C" void StyledTextSetAlignment(RuntimeObject *self, int32_t index, int32_t align) {
    StyledTextDelegate *d = DelegateOf(self);
    if (!d)
        return;
    int32_t start, length;
    FindParagraph(d->Text(), index, &start, &length, nullptr);
    d->SetAlignment(start, length, align);
    d->Update();
}

// ------------------------------------------------------------- the field's

extern "C" RuntimeObject *StyledTextObjectGetter(RuntimeObject *field, int32_t) {
    if (!field)
        return nullptr;
    RuntimeObject *object = NewOf(StyledTextDefinition());
    StyledTextRecord *r = Styled(object);
    delete r->delegate;
    r->delegate = new FieldStore(field);
    r->ownsDelegate = 1; // the adapter, not the field
    return object;
}

// The runs of `value` become the field's text and styles.
extern "C" void StyledTextObjectSetter(RuntimeObject *field, int32_t, RuntimeObject *value) {
    StyledTextDelegate *from = DelegateOf(value);
    if (!field || !from)
        return;
    FieldStore to(field);
    std::vector<StyleRunValue> runs;
    StyleRunValue run;
    for (int32_t i = 0; from->GetRun(i, &run, nullptr); ++i)
        runs.push_back(run);
    if (!FieldStyleStore(field)) { // a plain field takes the text alone
        to.SetText(from->Text());
        return;
    }
    to.SetText(std::string());
    for (const StyleRunValue &r : runs)
        to.AppendRun(r);
}

// ------------------------------------------------------------- classes

namespace kelp {

namespace {
const TypeRecord kStyleRunType{kTypeObjectOf, nullptr, nullptr, 0, &StyleRunDefinition};
const TypeRecord kRangeType{kTypeObjectOf, nullptr, nullptr, 0, &RangeDefinition};
const TypeRecord kParagraphType{kTypeObjectOf, nullptr, nullptr, 0, &ParagraphDefinition};
} // namespace

ObjectDefinition *StyleRunDefinition() {
    using R = StyleRunRecord;
    static const PropertyRow properties[] = {
        {0, "Bold", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD, offsetof(R, bold)},
        {0, "Italic", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD, offsetof(R, italic)},
        {0, "Underline", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD,
         offsetof(R, underline)},
        {0, "Size", &kTypeInteger, KELP_ENTRY(intGetter), KELP_PLAIN_FIELD, offsetof(R, size)},
        {0, "Font", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(styleRunStringSetter),
         offsetof(R, font)},
        {0, "TextColor", &kTypeColor, KELP_ENTRY(intGetter), KELP_PLAIN_FIELD,
         offsetof(R, textColor)},
        {0, "Text", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(styleRunStringSetter),
         offsetof(R, text)},
    };
    static const ParameterRow textParam[] = {{"text", &kTypeString}};
    static const MethodRow methods[] = {
        {"Constructor", nullptr, textParam, 1, KELP_ENTRY(StyleRunKPConstructor)},
    };
    static const ClassDescription description = {
        .name = "StyleRun",
        .instanceSize = sizeof(R),
        .finalizer = KELP_ENTRY(StyleRunFinalizer),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *RangeDefinition() {
    static const PropertyRow properties[] = {
        {0, "StartPos", &kTypeInteger, KELP_ENTRY(intGetter), KELP_PLAIN_FIELD,
         offsetof(RangeRecord, startPos)},
        {0, "Length", &kTypeInteger, KELP_ENTRY(intGetter), KELP_PLAIN_FIELD,
         offsetof(RangeRecord, length)},
        {0, "EndPos", &kTypeInteger, KELP_ENTRY(RangeEndPosGetter), {}},
    };
    static const ClassDescription description = {
        .name = "Range",
        .instanceSize = sizeof(RangeRecord),
        .properties = properties,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *ParagraphDefinition() {
    static const PropertyRow properties[] = {
        {0, "Alignment", &kTypeInteger, KELP_ENTRY(intGetter), KELP_PLAIN_FIELD,
         offsetof(ParagraphRecord, alignment)},
    };
    static const ClassDescription description = {
        .name = "Paragraph",
        .super = RangeDefinition,
        .instanceSize = sizeof(ParagraphRecord),
        .properties = properties,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *StyledTextDefinition() {
    static const ParameterRow range[] = {{"start", &kTypeInteger}, {"length", &kTypeInteger}};
    static const ParameterRow index[] = {{"index", &kTypeInteger}};
    static const ParameterRow runAt[] = {{"run", &kStyleRunType}, {"index", &kTypeInteger}};
    static const ParameterRow run[] = {{"run", &kStyleRunType}};
    static const ParameterRow align[] = {{"index", &kTypeInteger}, {"alignment", &kTypeInteger}};
    static const PropertyRow properties[] = {
        {0, "Text", &kTypeString, KELP_ENTRY(StyledTextGetter), KELP_ENTRY(StyledTextSetter)},
        {0, "StyleRunCount", &kTypeInteger, KELP_ENTRY(StyledTextRunCountGetter), {}},
        {0, "ParagraphCount", &kTypeInteger, KELP_ENTRY(StyledTextParagraphCountGetter), {}},
    };
    static const MethodRow methods[] = {
        {"Bold", &kTypeBoolean, range, 2, KELP_ENTRY(StyledTextGetBold),
         KELP_ENTRY(StyledTextSetBold)},
        {"Italic", &kTypeBoolean, range, 2, KELP_ENTRY(StyledTextGetItalic),
         KELP_ENTRY(StyledTextSetItalic)},
        {"Underline", &kTypeBoolean, range, 2, KELP_ENTRY(StyledTextGetUnderline),
         KELP_ENTRY(StyledTextSetUnderline)},
        {"Font", &kTypeString, range, 2, KELP_ENTRY(StyledTextGetFont),
         KELP_ENTRY(StyledTextSetFont)},
        {"Size", &kTypeInteger, range, 2, KELP_ENTRY(StyledTextGetSize),
         KELP_ENTRY(StyledTextSetSize)},
        {"TextColor", &kTypeColor, range, 2, KELP_ENTRY(StyledTextGetColor),
         KELP_ENTRY(StyledTextSetColor)},
        {"StyleRun", &kStyleRunType, index, 1, KELP_ENTRY(StyledTextRunGetter)},
        {"StyleRunRange", &kRangeType, index, 1, KELP_ENTRY(StyledTextRunRangeGetter)},
        {"InsertStyleRun", nullptr, runAt, 2, KELP_ENTRY(InsertStyledTextRun)},
        {"AppendStyleRun", nullptr, run, 1, KELP_ENTRY(AppendStyledTextRun)},
        {"RemoveStyleRun", nullptr, index, 1, KELP_ENTRY(RemoveStyledTextRun)},
        {"Paragraph", &kParagraphType, index, 1, KELP_ENTRY(StyledTextParagraphGetter)},
        {"ParagraphAlignment", nullptr, align, 2, KELP_ENTRY(StyledTextSetAlignment)},
    };
    static const ClassDescription description = {
        .name = "StyledText",
        .instanceSize = sizeof(StyledTextRecord),
        .initializer = KELP_ENTRY(StyledTextClassInitializer),
        .finalizer = KELP_ENTRY(StyledTextClassFinalizer),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
