#pragma once
// The Control and RectControl classes of the language, and the pane a
// control is bound to.  A control exists twice: as the object compiled code
// holds (a RuntimeControl record, include/kelp/records.h) and as a pane with
// a widget.  Values written before binding live in the record; the class's
// CreatePane passes them to the pane, and later writes go to both.
#include "windows/runtime_view.h"

#include "exceptions/call_event.h"

#include "kelp/records.h"

#include <memory>

namespace kelp {

struct ObjectDefinition;
struct ObjectHook;

inline RuntimeControl *Ctl(RuntimeObject *object) {
    return reinterpret_cast<RuntimeControl *>(object);
}
// True for an object of Control or a subclass.
bool IsControl(RuntimeObject *object);

ObjectDefinition *ControlDefinition();
ObjectDefinition *RectControlDefinition();

// The hooks of Control's events, which binding and closing fire.
ObjectHook *CreatePaneHook();
ObjectHook *OpenHook();
ObjectHook *CloseHook();
// The contextual menu's events of RectControl, which the menus fire.
ObjectHook *ConstructContextualMenuHook();
ObjectHook *ContextualMenuActionHook();

// A pane bound to a control.  It holds one reference on the control from
// binding until the pane is destroyed, so a handler that closes its own
// control still finds the object alive.
class ControlPane : public ContainerPane {
public:
    // The pane goes into the control's window at the control's bounds,
    // under the pane that encloses it there.
    explicit ControlPane(RuntimeControl *control);
    ~ControlPane() override;

    // Set once by binding; takes the reference.
    void BindControl(RuntimeObject *control);
    RuntimeObject *Control() const { return mRunControl; }

    // Only the controls that hold others (group box, panels) take child
    // panes; a pane that merely lies over another, such as a button at the
    // same place on another page, hands it on to its own holder.
    virtual bool HoldsControls() const { return false; }
    bool AddChild(SubPane *child) override {
        if (HoldsControls())
            return ContainerPane::AddChild(child);
        return mParent ? mParent->AddChild(child) : false;
    }

    // A pane with a native widget keeps the press for the widget.
    bool PassesClicksThrough() override { return !mWidget; }
    bool CanFocus() override { return panelVisible && SubPane::CanFocus(); }

    int32_t panelIndex = 0;   // page of a panel (from 1), 0: every page
    bool panelVisible = true; // false while on a page not shown

    // On a page not shown, Visible is only stored.
    void SetVisible(bool flag) override;
    // Shows or hides the pane for its panel's page; children first.
    virtual void SetPanelVisible(bool flag);

protected:
    // Connects the widget's presses to the window and its grab-focus to
    // the pane's focus; call after SetWidget.
    void ConnectCommonSignals();

    // Fires a control event under the pane's event lock, since a handler
    // may close the control.  `*alive` becomes false when the pane died.
    template <typename R = void, typename... Args>
    R FireLocked(const ObjectHook *hook, bool *alive, Args... args) {
        *alive = true;
        if (!mRunControl || !FindEventHandler(mRunControl, hook))
            return R();
        if (!LockForEvent()) {
            *alive = false;
            return R();
        }
        if constexpr (std::is_void_v<R>) {
            CallEvent(mRunControl, hook, args...);
            *alive = !UnlockAfterEvent();
        } else {
            R result = CallEvent<R>(mRunControl, hook, args...);
            *alive = !UnlockAfterEvent();
            return result;
        }
    }

    RuntimeObject *mRunControl = nullptr; // counted
};

// The window pane a control's panes go into, or null when its view has none.
Window *WindowForControl(RuntimeControl *control);

} // namespace kelp
