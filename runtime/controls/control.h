#pragma once
// The Control and RectControl classes of the language, and the pane a
// control is bound to.  A control exists twice: as the object compiled code
// holds (a RuntimeControl record, include/kelp/records.h) and as a pane with
// a widget.  Values written before binding live in the record; the class's
// CreatePane passes them to the pane, and later writes go to both.
#include "controls/caption.h"
#include "windows/runtime_view.h"

#include "exceptions/call_event.h"

#include "kelp/records.h"

#include <memory>
#include <type_traits>

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
    void RemoveChild(SubPane *child) override {
        if (child == mCapturedChild)
            mCapturedChild = nullptr;
        ContainerPane::RemoveChild(child);
    }

    // A pane with a native widget keeps the press for the widget.
    bool PassesClicksThrough() override { return !mWidget; }
    bool CanFocus() override { return panelVisible && SubPane::CanFocus(); }

    // Shows text in the font; a pane whose text isn't its widget's own
    // (a frame's label, the tabs of a notebook) says where it goes.
    virtual void SetFont(const ControlFont &font) { ApplyFont(mWidget, font); }

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

    // The mouse and focus events most controls share, with coordinates
    // relative to the pane.  A MouseDown handler that answers true captures
    // the mouse: MouseDrag and MouseUp then go to it, and the press stays
    // away from the widget.  A pane that died in the handler counts as
    // taken, so that nothing beneath it gets the press.
    bool FireMouseDown(const ObjectHook *hook, int32_t x, int32_t y) {
        bool alive;
        mMouseHandled = FireLocked<uint8_t>(hook, &alive, x - bounds.left, y - bounds.top);
        return !alive || mMouseHandled;
    }
    void FireMouseDrag(const ObjectHook *hook, int32_t x, int32_t y) {
        bool alive;
        if (mMouseHandled)
            FireLocked(hook, &alive, x - bounds.left, y - bounds.top);
    }
    void FireMouseUp(const ObjectHook *hook, int32_t x, int32_t y) {
        bool handled = mMouseHandled, alive;
        mMouseHandled = false;
        if (handled)
            FireLocked(hook, &alive, x - bounds.left, y - bounds.top);
    }
    // For panes that hold controls: a press goes to the panes lying on
    // this one first, top-most first.  True when one took it (it then gets
    // the drags and the release); `native` tells that a native widget
    // lies there, which gets the press from the toolkit.
    bool OfferPressToChildren(int32_t x, int32_t y, int32_t modifiers, bool *native);
    bool DragCapturedChild(int32_t x, int32_t y);
    bool ReleaseCapturedChild(int32_t x, int32_t y);

    // GotFocus and LostFocus, which a closing pane no longer sends.
    void FireFocus(const ObjectHook *hook) {
        bool alive;
        if (!closing)
            FireLocked(hook, &alive);
    }

    RuntimeObject *mRunControl = nullptr; // counted
    bool mMouseHandled = false;           // MouseDown took the press
    SubPane *mCapturedChild = nullptr;    // a pane lying on this one took the press
};

// The window pane a control's panes go into, or null when its view has none.
Window *WindowForControl(RuntimeControl *control);

// The pane bound to a control, as the pane class its own class makes; null
// before binding, after closing, and for a control of another class.
template <typename P = ControlPane> P *PaneOf(RuntimeObject *control) {
    auto *pane = control ? static_cast<ControlPane *>(Ctl(control)->pane) : nullptr;
    if constexpr (std::is_same_v<P, ControlPane>)
        return pane;
    else
        return dynamic_cast<P *>(pane);
}

// CreatePane of a class whose pane is built from the control's record
// (and `args`): once, and only while the control's window has a pane.
template <typename P, typename Record, typename... Args>
void MakePane(RuntimeObject *self, Args... args) {
    if (self && !Ctl(self)->pane && WindowForControl(Ctl(self)))
        Ctl(self)->pane = new P(reinterpret_cast<Record *>(self), args...);
}

// A property the record keeps and, once bound, the pane shows.  Setting
// writes the record first, since the record outlives the pane (and values
// come before the pane exists), then tells the pane.
template <typename P, typename Record, typename Field, typename Value, typename Arg>
void StoreAndShow(RuntimeObject *self, Field Record::*field, Value value, void (P::*show)(Arg)) {
    if (!self)
        return;
    reinterpret_cast<Record *>(self)->*field = static_cast<Field>(value);
    if (P *pane = PaneOf<P>(self))
        (pane->*show)(static_cast<Arg>(value));
}

// Reading such a property: what the pane shows while bound, else what the
// record keeps.
template <typename P, typename Record, typename Field, typename Result>
Result ShownOrStored(RuntimeObject *self, Field Record::*field, Result (P::*shown)() const) {
    if (!self)
        return Result();
    if (P *pane = PaneOf<P>(self))
        return (pane->*shown)();
    return static_cast<Result>(reinterpret_cast<Record *>(self)->*field);
}

// The font properties of a control whose record keeps a ControlFont: the
// field changes, then the pane shows the whole font again.  The style
// selector is 0 Bold, 1 Italic, 2 Underline.
void SetFontName(RuntimeObject *self, ControlFont &font, KelpString value);
void SetFontSize(RuntimeObject *self, ControlFont &font, int32_t value);
void SetFontStyle(RuntimeObject *self, ControlFont &font, int32_t selector, uint8_t value);

// The five property rows of a font, for a class whose record keeps a
// ControlFont in `field`, set through its three setters.
// clang-format off
#define KELP_FONT_ROWS(Record, field, nameSetter, sizeSetter, styleSetter)                         \
    {0, "TextFont", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(nameSetter),                \
     offsetof(Record, field.textFont)},                                                            \
    {0, "TextSize", &kTypeInteger, KELP_ENTRY(shortGetter), KELP_ENTRY(sizeSetter),                \
     offsetof(Record, field.textSize)},                                                            \
    {0, "Bold", &kTypeBoolean, {}, KELP_ENTRY(styleSetter), 0},                                    \
    {0, "Italic", &kTypeBoolean, {}, KELP_ENTRY(styleSetter), 1},                                  \
    {0, "Underline", &kTypeBoolean, {}, KELP_ENTRY(styleSetter), 2}
// clang-format on

// The window's content grew by (dw, dh): the controls with Lock flags
// follow its edges (the windows layer calls it through its client slot).
void LayOutLockedControls(ViewRecord *view, int32_t dw, int32_t dh);
// TabPanelIndex and PanelIndex: the control, and what lies on it, go to
// the 0-based page `value`, and show only while it is up.
void SetPanelIndex(RuntimeObject *self, int32_t value);

// A counted string field takes a new value: the new one retained, the old
// one released.
void StoreString(KelpString &field, KelpString value);

} // namespace kelp
