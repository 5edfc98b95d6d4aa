// CheckBox: a GtkCheckButton whose "toggled" is the Action, whatever the
// new value.  State is a second name of Value.
#include "controls/captioned.h"

#include "controls/classes.h"
#include "objects/data_interfaces.h"
#include "objects/definitions.h"

#include "kelp/control_accessors.h"
#include "kelp/controls.h"
#include "kelp/objects.h"

#include <cstddef>

namespace kelp {
namespace {

ObjectHook *gAction, *gMouseDown, *gMouseUp, *gGotFocus, *gLostFocus;

class CheckBoxPane : public CaptionedPane {
public:
    explicit CheckBoxPane(CaptionedControl *record) : CaptionedPane(&record->control) {
        SetWidget(gtk_check_button_new_with_label(""));
        SetCaption(record->caption);
        SetFont(record->font);
        SetValue(record->value != 0);
        ConnectCommonSignals();
        g_signal_connect(mWidget, "toggled", G_CALLBACK(OnToggled), this);
        gtk_widget_show(mWidget);
    }

    void SetValue(bool flag) override {
        if (mWidget && GetValue() != flag)
            gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(mWidget), flag);
    }

    bool MouseDown(int32_t x, int32_t y, int32_t) override {
        return enabled && !closing && FireMouseDown(gMouseDown, x, y);
    }
    void MouseUp(int32_t x, int32_t y) override { FireMouseUp(gMouseUp, x, y); }
    void GainFocus() override { FireFocus(gGotFocus); }
    void LoseFocus() override { FireFocus(gLostFocus); }

private:
    // The router's Action: the value into the record, then the event
    // unless one runs already or the window is closing.
    static void OnToggled(GtkToggleButton *, gpointer data) {
        auto *pane = static_cast<CheckBoxPane *>(data);
        RuntimeObject *control = pane->mRunControl;
        if (!control || pane->closing)
            return;
        CaptionedControl *record = Captioned(control);
        record->value = pane->GetValue();
        Window *window = WindowOf(pane);
        if (record->busy || !window || window->closing)
            return;
        RuntimeLockObject(control);
        record->busy = 1;
        bool alive = true;
        // Bound data hears first; a receiver may close the window.
        NotifyDataChanged(record->data);
        if (Ctl(control)->pane == pane && !window->closing)
            pane->FireLocked(gAction, &alive);
        if (alive && Ctl(control)->pane == pane)
            PerformActions(record->receivers[record->value ? 0 : 1]);
        record->busy = 0;
        RuntimeUnlockObject(control);
    }
};

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void CheckBoxCreatePane(RuntimeObject *self) {
    MakePane<CheckBoxPane, CaptionedControl>(self);
}

extern "C" uint8_t checkBoxValueGetter(RuntimeObject *self, int32_t) {
    return CaptionedValue(self);
}

extern "C" void checkBoxValueSetter(RuntimeObject *self, int32_t, uint8_t value) {
    SetCaptionedValue(self, value);
}

extern "C" RuntimeObject *CheckBoxDataSourceGetter(RuntimeObject *self, int32_t) {
    RuntimeObject *source = self ? Captioned(self)->data.source : nullptr;
    RuntimeLockObject(source);
    return source;
}

extern "C" void CheckBoxDataSourceSetter(RuntimeObject *self, int32_t, RuntimeObject *source) {
    if (self)
        SetDataSource(Captioned(self)->data, source);
}

extern "C" void CheckBoxDataFieldSetter(RuntimeObject *self, int32_t, KelpString field) {
    if (self)
        StoreString(Captioned(self)->data.field, field);
}

extern "C" uint8_t checkBoxGetBoolean(RuntimeObject *self) { return CaptionedValue(self); }

// Without a pane nothing toggles, so the receivers are told here.
extern "C" void checkBoxSetBoolean(RuntimeObject *self, uint8_t value) {
    if (!self)
        return;
    bool changed = CaptionedValue(self) != (value != 0);
    SetCaptionedValue(self, value);
    if (changed && !PaneOf(self))
        NotifyDataChanged(Captioned(self)->data);
}

extern "C" void checkBoxAddDataNotificationReceiver(RuntimeObject *self, RuntimeObject *receiver) {
    if (self)
        AddDataReceiver(Captioned(self)->data.receivers, receiver);
}

extern "C" void checkBoxRemoveDataNotificationReceiver(RuntimeObject *self,
                                                       RuntimeObject *receiver) {
    if (self)
        RemoveReceiver(Captioned(self)->data.receivers, receiver);
}

namespace kelp {

ObjectDefinition *CheckBoxDefinition() {
    static const PropertyRow properties[] = {
        {0, "Caption", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(checkBoxCaptionSetter),
         offsetof(CaptionedControl, caption)},
        {0, "Value", &kTypeBoolean, KELP_ENTRY(checkBoxValueGetter),
         KELP_ENTRY(checkBoxValueSetter), offsetof(CaptionedControl, value)},
        {0, "State", &kTypeBoolean, KELP_ENTRY(checkBoxValueGetter),
         KELP_ENTRY(checkBoxValueSetter), offsetof(CaptionedControl, value)},
        KELP_FONT_ROWS(CaptionedControl, font, captionFontSetter, captionSizeSetter,
                       captionStyleSetter),
        {0, "DataSource", &kTypePtr, KELP_ENTRY(CheckBoxDataSourceGetter),
         KELP_ENTRY(CheckBoxDataSourceSetter), -9},
        {0, "DataField", &kTypeString, KELP_ENTRY(stringGetter),
         KELP_ENTRY(CheckBoxDataFieldSetter), offsetof(CaptionedControl, data.field)},
    };
    static const ParameterRow partParams[] = {{"name", &kTypeString}};
    static const ParameterRow flagParams[] = {{"value", &kTypeBoolean}};
    static const TypeRecord receiverType{kTypeObjectOf, nullptr, nullptr, 0,
                                         &DataNotificationReceiverInterfaceDefinition};
    static const ParameterRow receiverParams[] = {{"receiver", &receiverType}};
    static const MethodRow methods[] = {
        {"getBoundPart", &kTypePtr, partParams, 1, KELP_ENTRY(checkBoxGetBoundPart)},
        {"getBoolean", &kTypeBoolean, nullptr, 0, KELP_ENTRY(checkBoxGetBoolean)},
        {"setBoolean", nullptr, flagParams, 1, KELP_ENTRY(checkBoxSetBoolean)},
        {"addDataNotificationReceiver", nullptr, receiverParams, 1,
         KELP_ENTRY(checkBoxAddDataNotificationReceiver)},
        {"removeDataNotificationReceiver", nullptr, receiverParams, 1,
         KELP_ENTRY(checkBoxRemoveDataNotificationReceiver)},
    };
    static const DefinitionAccessor interfaces[] = {&BooleanProviderInterfaceDefinition,
                                                    &DataNotifierInterfaceDefinition};
    static const EventRow events[] = {
        {"Action", "", nullptr, &gAction},
        {"MouseDown", "X As Integer, Y As Integer", "Boolean", &gMouseDown},
        {"MouseUp", "X As Integer, Y As Integer", nullptr, &gMouseUp},
        {"GotFocus", "", nullptr, &gGotFocus},
        {"LostFocus", "", nullptr, &gLostFocus},
    };
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&CheckBoxCreatePane)},
    };
    static const ClassDescription description = {
        .name = "CheckBox",
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
