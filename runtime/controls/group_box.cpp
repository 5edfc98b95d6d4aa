// GroupBox: a GtkFrame with the caption as its label.  The controls lying
// on it are its child panes by geometry: they are hidden and disabled with
// it, and its radio buttons form one group.
#include "controls/captioned.h"

#include "controls/classes.h"
#include "objects/definitions.h"

#include "kelp/controls.h"

#include <cstddef>

namespace kelp {
namespace {

ObjectHook *gMouseDown, *gMouseDrag, *gMouseUp;

class GroupBoxPane : public CaptionedPane {
public:
    explicit GroupBoxPane(CaptionedControl *record) : CaptionedPane(&record->control) {
        GtkWidget *frame = gtk_frame_new("");
        SetWidget(frame);
        SetCaption(record->caption);
        SetFont(record->font);
        gtk_widget_show(frame);
    }

    bool PassesClicksThrough() override { return true; }
    bool HoldsControls() const override { return true; }

    // The panes on the box come first, top-most first, as the window's own
    // walk would give them; a press none takes goes to the box's event.
    bool MouseDown(int32_t x, int32_t y, int32_t modifiers) override {
        bool native;
        if (OfferPressToChildren(x, y, modifiers, &native))
            return true;
        if (native || !enabled)
            return false; // a native widget takes it from the toolkit
        bool alive;
        mMouseHandled = FireLocked<uint8_t>(gMouseDown, &alive, x, y);
        return !alive || mMouseHandled;
    }
    void MouseDrag(int32_t x, int32_t y) override {
        if (!DragCapturedChild(x, y))
            FireMouseDrag(gMouseDrag, x, y);
    }
    void MouseUp(int32_t x, int32_t y) override {
        if (!ReleaseCapturedChild(x, y))
            FireMouseUp(gMouseUp, x, y);
    }

protected:
    GtkWidget *CaptionLabel() override {
        return mWidget ? gtk_frame_get_label_widget(GTK_FRAME(mWidget)) : nullptr;
    }
};

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void GroupBoxCreatePane(RuntimeObject *self) {
    MakePane<GroupBoxPane, CaptionedControl>(self);
}

namespace kelp {

ObjectDefinition *GroupBoxDefinition() {
    static const PropertyRow properties[] = {
        {0, "Caption", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(groupBoxCaptionSetter),
         offsetof(CaptionedControl, caption)},
        KELP_FONT_ROWS(CaptionedControl, font, captionFontSetter, captionSizeSetter,
                       captionStyleSetter),
    };
    static const EventRow events[] = {
        {"MouseDown", "X As Integer, Y As Integer", "Boolean", &gMouseDown},
        {"MouseDrag", "X As Integer, Y As Integer", nullptr, &gMouseDrag},
        {"MouseUp", "X As Integer, Y As Integer", nullptr, &gMouseUp},
    };
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&GroupBoxCreatePane)},
    };
    static const ClassDescription description = {
        .name = "GroupBox",
        .super = RectControlDefinition,
        .instanceSize = sizeof(CaptionedControl),
        .finalizer = KELP_ENTRY(CaptionedControlFinalizer),
        .properties = properties,
        .events = events,
        .hookInstances = hooks,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
