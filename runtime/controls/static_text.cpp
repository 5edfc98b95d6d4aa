// StaticText: a GtkLabel.  A single-line text is centred vertically, a
// multi-line one starts at the top and wraps.  The label passes clicks to
// what lies beneath unless a MouseDown handler takes them.
#include "controls/caption.h"
#include "controls/control.h"
#include "controls/data_binding.h"

#include "controls/classes.h"
#include "objects/definitions.h"
#include "objects/text.h"

#include "kelp/control_accessors.h"
#include "kelp/controls.h"
#include "kelp/objects.h"

#include <cstddef>

namespace kelp {
namespace {

ObjectHook *gAcceleratorKey, *gMouseDown, *gMouseDrag, *gMouseUp;

struct StaticTextRecord {
    RuntimeControl control;
    KelpString text; // counted
    ControlFont font;
    int32_t textAlign; // 0 left, 1 centre, 2 right
    int32_t textColor; // 0xRRGGBB
    uint8_t multiLine;
    uint8_t mouseHandled;
    DataLink data; // DataSource and DataField; a source sends setString
};

StaticTextRecord *Record(RuntimeObject *object) {
    return reinterpret_cast<StaticTextRecord *>(object);
}

class StaticTextPane : public ControlPane {
public:
    explicit StaticTextPane(StaticTextRecord *record) : ControlPane(&record->control) {
        SetWidget(gtk_label_new(""));
        gtk_misc_set_alignment(GTK_MISC(mWidget), 0, 0.5);
        SetMultiLine(record->multiLine != 0);
        SetTextAlign(record->textAlign);
        SetCaption(record->text);
        SetFont(record->font);
        SetTextColor(record->textColor);
        gtk_widget_show(mWidget);
    }

    void SetCaption(KelpString text) {
        std::string converted = MnemonicCaption(text);
        if (mShown == converted)
            return;
        mShown = converted;
        gtk_label_set_text_with_mnemonic(GTK_LABEL(mWidget), converted.c_str());
    }
    void SetTextAlign(int32_t align) {
        mAlign = align;
        static const float kX[] = {0.0f, 0.5f, 1.0f};
        static const GtkJustification kJustify[] = {GTK_JUSTIFY_LEFT, GTK_JUSTIFY_CENTER,
                                                    GTK_JUSTIFY_RIGHT};
        int i = align >= 0 && align <= 2 ? align : 0;
        gtk_misc_set_alignment(GTK_MISC(mWidget), kX[i], mMultiLine ? 0.0f : 0.5f);
        gtk_label_set_justify(GTK_LABEL(mWidget), kJustify[i]);
    }
    void SetMultiLine(bool flag) {
        mMultiLine = flag;
        gtk_label_set_line_wrap(GTK_LABEL(mWidget), flag);
        SetTextAlign(mAlign);
    }
    // Underline is no part of a font description: the label carries it as
    // an attribute over its whole text.
    void SetFont(const ControlFont &font) override {
        ControlPane::SetFont(font);
        PangoAttrList *attributes = pango_attr_list_new();
        if (font.underline)
            pango_attr_list_insert(attributes, pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
        gtk_label_set_attributes(GTK_LABEL(mWidget), attributes);
        pango_attr_list_unref(attributes);
    }
    // Each channel times 255, not 257: white gives 65025.
    void SetTextColor(int32_t color) {
        if (color == mColor)
            return;
        mColor = color;
        GdkColor c{};
        c.red = static_cast<guint16>(((color >> 16) & 0xff) * 255);
        c.green = static_cast<guint16>(((color >> 8) & 0xff) * 255);
        c.blue = static_cast<guint16>((color & 0xff) * 255);
        gtk_widget_modify_fg(mWidget, GTK_STATE_NORMAL, &c);
    }

    bool PassesClicksThrough() override { return true; }
    bool MouseDown(int32_t x, int32_t y, int32_t) override {
        if (!mRunControl || !enabled)
            return false;
        bool alive;
        bool taken = FireLocked<uint8_t>(gMouseDown, &alive, x - bounds.left, y - bounds.top);
        Record(mRunControl)->mouseHandled = !alive || taken;
        return !alive || taken;
    }
    void MouseDrag(int32_t x, int32_t y) override {
        bool alive;
        if (mRunControl && Record(mRunControl)->mouseHandled)
            FireLocked(gMouseDrag, &alive, x - bounds.left, y - bounds.top);
    }
    void MouseUp(int32_t x, int32_t y) override {
        bool alive;
        if (mRunControl && Record(mRunControl)->mouseHandled) {
            Record(mRunControl)->mouseHandled = 0;
            FireLocked(gMouseUp, &alive, x - bounds.left, y - bounds.top);
        }
    }

private:
    std::string mShown;
    int32_t mAlign = 0;
    int32_t mColor = -1;
    bool mMultiLine = false;
};

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void StaticTextCreatePane(RuntimeObject *self) {
    MakePane<StaticTextPane, StaticTextRecord>(self);
}

extern "C" void staticTextTextSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (!self)
        return;
    StoreString(Record(self)->text, value);
    if (StaticTextPane *pane = PaneOf<StaticTextPane>(self))
        pane->SetCaption(value);
}

// setString of a data-aware control: a bound source's value becomes the text.
extern "C" void StaticTextSetString(RuntimeObject *self, KelpString value) {
    staticTextTextSetter(self, 0, value);
}

extern "C" KelpString staticTextTextGetter(RuntimeObject *self, int32_t) {
    KelpString text = self ? Record(self)->text : nullptr;
    objtext::Retain(text);
    return text;
}

extern "C" void staticTextAlignSetter(RuntimeObject *self, int32_t, int32_t value) {
    StoreAndShow(self, &StaticTextRecord::textAlign, value, &StaticTextPane::SetTextAlign);
}

extern "C" void staticTextMultiLineSetter(RuntimeObject *self, int32_t, uint8_t value) {
    StoreAndShow(self, &StaticTextRecord::multiLine, value != 0, &StaticTextPane::SetMultiLine);
}

extern "C" void staticTextColorSetter(RuntimeObject *self, int32_t, int32_t value) {
    StoreAndShow(self, &StaticTextRecord::textColor, value & 0xffffff,
                 &StaticTextPane::SetTextColor);
}

// Selector 0 Bold, 1 Italic, 2 Underline.
extern "C" void staticAttributeSetter(RuntimeObject *self, int32_t selector, uint8_t value) {
    if (self)
        SetFontStyle(self, Record(self)->font, selector, value);
}

extern "C" void staticTextFontSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (self)
        SetFontName(self, Record(self)->font, value);
}

extern "C" void staticTextSizeSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (self)
        SetFontSize(self, Record(self)->font, value);
}

extern "C" void StaticTextFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    objtext::Release(Record(self)->text);
    objtext::Release(Record(self)->font.textFont);
    Record(self)->text = Record(self)->font.textFont = nullptr;
    ReleaseDataLink(Record(self)->data);
}

extern "C" RuntimeObject *StaticTextDataSourceGetter(RuntimeObject *self, int32_t) {
    RuntimeObject *source = self ? Record(self)->data.source : nullptr;
    RuntimeLockObject(source);
    return source;
}

extern "C" void StaticTextDataSourceSetter(RuntimeObject *self, int32_t, RuntimeObject *source) {
    if (self)
        SetDataSource(Record(self)->data, source);
}

extern "C" void StaticTextDataFieldSetter(RuntimeObject *self, int32_t, KelpString field) {
    if (self)
        StoreString(Record(self)->data.field, field);
}

namespace kelp {

ObjectDefinition *StaticTextDefinition() {
    static const PropertyRow properties[] = {
        {0, "Text", &kTypeString, KELP_ENTRY(staticTextTextGetter),
         KELP_ENTRY(staticTextTextSetter), -9},
        {0, "Caption", &kTypeString, KELP_ENTRY(staticTextTextGetter),
         KELP_ENTRY(staticTextTextSetter), -9},
        {0, "TextAlign", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(staticTextAlignSetter),
         offsetof(StaticTextRecord, textAlign)},
        {0, "TextColor", &kTypeColor, KELP_ENTRY(intGetter), KELP_ENTRY(staticTextColorSetter),
         offsetof(StaticTextRecord, textColor)},
        KELP_FONT_ROWS(StaticTextRecord, font, staticTextFontSetter, staticTextSizeSetter,
                       staticAttributeSetter),
        {0, "MultiLine", &kTypeBoolean, KELP_ENTRY(boolGetter),
         KELP_ENTRY(staticTextMultiLineSetter), offsetof(StaticTextRecord, multiLine)},
        {0, "DataSource", &kTypePtr, KELP_ENTRY(StaticTextDataSourceGetter),
         KELP_ENTRY(StaticTextDataSourceSetter), -9},
        {0, "DataField", &kTypeString, KELP_ENTRY(stringGetter),
         KELP_ENTRY(StaticTextDataFieldSetter), offsetof(StaticTextRecord, data.field)},
    };
    static const ParameterRow textParams[] = {{"text", &kTypeString}};
    static const MethodRow methods[] = {
        {"setString", nullptr, textParams, 1, KELP_ENTRY(StaticTextSetString)},
    };
    static const EventRow events[] = {
        {"AcceleratorKey", "Key As String", nullptr, &gAcceleratorKey},
        {"MouseDown", "X As Integer, Y As Integer", "Boolean", &gMouseDown},
        {"MouseDrag", "X As Integer, Y As Integer", nullptr, &gMouseDrag},
        {"MouseUp", "X As Integer, Y As Integer", nullptr, &gMouseUp},
    };
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&StaticTextCreatePane)},
    };
    static const ClassDescription description = {
        .name = "StaticText",
        .super = RectControlDefinition,
        .instanceSize = sizeof(StaticTextRecord),
        .finalizer = KELP_ENTRY(StaticTextFinalizer),
        .properties = properties,
        .methods = methods,
        .events = events,
        .hookInstances = hooks,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
