// PushButton: a GtkButton whose one "clicked" signal is the Action.  A
// mouse click, Space or Return on the focused button, and the window's
// Return for its default button all arrive as exactly one "clicked"; a
// MouseDown handler that returns true keeps the press from the button, and
// a release outside the button clicks nothing, as the toolkit decides.
#include "controls/captioned.h"

#include "controls/classes.h"
#include "objects/action_interfaces.h"
#include "objects/definitions.h"

#include "kelp/controls.h"

#include <cstddef>

namespace kelp {
namespace {

ObjectHook *gAction, *gMouseDown, *gMouseUp, *gGotFocus, *gLostFocus;

// Layouts give a button the height its caption needs inside a frame of a
// pixel or two.  The toolkit's own padding (the inner border, the focus
// padding and the default button's extra border) would take six more
// pixels from a 20-pixel button and cut the caption's descenders off, so
// the runtime's buttons go without it; the focus line and the frame stay.
constexpr const char *kButtonName = "kelp-push-button";

void UseSlimButtonStyle() {
    static const bool parsed = [] {
        gtk_rc_parse_string("style \"kelp-push-button\" {\n"
                            "  GtkButton::inner-border = {0, 0, 0, 0}\n"
                            "  GtkButton::default-border = {0, 0, 0, 0}\n"
                            "  GtkButton::default-outside-border = {0, 0, 0, 0}\n"
                            "  GtkWidget::focus-padding = 0\n"
                            "}\n"
                            "widget \"*.kelp-push-button\" style \"kelp-push-button\"\n");
        return true;
    }();
    (void)parsed;
}

class PushButtonPane : public CaptionedPane {
public:
    explicit PushButtonPane(CaptionedControl *record) : CaptionedPane(&record->control) {
        UseSlimButtonStyle();
        SetWidget(gtk_button_new());
        gtk_widget_set_name(mWidget, kButtonName);
        SetCaption(record->caption);
        SetFont(record->font);
        ConnectCommonSignals();
        g_signal_connect(mWidget, "clicked", G_CALLBACK(OnClicked), this);
        if (record->isDefault)
            SetDefault(true);
        gtk_widget_show(mWidget);
    }

    void SetDefault(bool flag) {
        if (flag) {
            GTK_WIDGET_SET_FLAGS(mWidget, GTK_CAN_DEFAULT);
            gtk_widget_grab_default(mWidget);
        } else {
            GTK_WIDGET_UNSET_FLAGS(mWidget, GTK_CAN_DEFAULT);
        }
    }

    // The router's Action: the receivers first, then the event, each under
    // the pane's lock, since either may close the button.
    void Action() {
        if (!mRunControl || !LockForEvent())
            return;
        PerformActions(Captioned(mRunControl)->receivers[0]);
        if (UnlockAfterEvent())
            return;
        bool alive;
        FireLocked(gAction, &alive);
    }

    bool MouseDown(int32_t x, int32_t y, int32_t) override {
        // True captures and keeps the press from the button.
        return enabled && !closing && FireMouseDown(gMouseDown, x, y);
    }
    void MouseUp(int32_t x, int32_t y) override { FireMouseUp(gMouseUp, x, y); }
    void GainFocus() override { FireFocus(gGotFocus); }
    void LoseFocus() override { FireFocus(gLostFocus); }

    bool IsDefaultButton() const override {
        return mRunControl && Captioned(mRunControl)->isDefault;
    }
    bool IsCancelButton() const override { return mRunControl && Captioned(mRunControl)->isCancel; }
    void Press() override { Action(); }

private:
    static void OnClicked(GtkButton *, gpointer data) {
        auto *pane = static_cast<PushButtonPane *>(data);
        if (!pane->closing)
            pane->Action();
    }
};

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void PushButtonCreatePane(RuntimeObject *self) {
    MakePane<PushButtonPane, CaptionedControl>(self);
}

extern "C" void pushButtonDefaultSetter(RuntimeObject *self, int32_t, uint8_t value) {
    StoreAndShow(self, &CaptionedControl::isDefault, value != 0, &PushButtonPane::SetDefault);
}

extern "C" void pushButtonCancelSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (self)
        Captioned(self)->isCancel = value != 0;
}

// Push: the Action at once, enabled or not.
extern "C" void RuntimePushButtonPush(RuntimeObject *self) {
    if (PushButtonPane *pane = PaneOf<PushButtonPane>(self))
        pane->Press();
}

namespace kelp {

ObjectDefinition *PushButtonDefinition() {
    static const PropertyRow properties[] = {
        {0, "Caption", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(pushButtonCaptionSetter),
         offsetof(CaptionedControl, caption)},
        {0, "Default", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_ENTRY(pushButtonDefaultSetter),
         offsetof(CaptionedControl, isDefault)},
        {0, "Cancel", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_ENTRY(pushButtonCancelSetter),
         offsetof(CaptionedControl, isCancel)},
        KELP_FONT_ROWS(CaptionedControl, font, captionFontSetter, captionSizeSetter,
                       captionStyleSetter),
    };
    static const TypeRecord receiverType{kTypeObjectOf, nullptr, nullptr, 0,
                                         &ActionNotificationReceiverInterfaceDefinition};
    static const ParameterRow receiverParams[] = {{"receiver", &receiverType}};
    static const MethodRow methods[] = {
        {"Push", nullptr, nullptr, 0, KELP_ENTRY(RuntimePushButtonPush)},
        {"addActionNotificationReceiver", nullptr, receiverParams, 1,
         KELP_ENTRY(pbAddActionNotificationReceiver)},
        {"removeActionNotificationReceiver", nullptr, receiverParams, 1,
         KELP_ENTRY(pbRemoveActionNotificationReceiver)},
    };
    static const DefinitionAccessor interfaces[] = {&ActionSourceInterfaceDefinition};
    static const EventRow events[] = {
        {"Action", "", nullptr, &gAction},
        {"MouseDown", "X As Integer, Y As Integer", "Boolean", &gMouseDown},
        {"MouseUp", "X As Integer, Y As Integer", nullptr, &gMouseUp},
        {"GotFocus", "", nullptr, &gGotFocus},
        {"LostFocus", "", nullptr, &gLostFocus},
    };
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&PushButtonCreatePane)},
    };
    static const ClassDescription description = {
        .name = "PushButton",
        .super = RectControlDefinition,
        .instanceSize = sizeof(CaptionedControl),
        .finalizer = KELP_ENTRY(CaptionedControlFinalizer),
        .properties = properties,
        .methods = methods,
        .events = events,
        .hookInstances = hooks,
        .interfaces = interfaces,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
