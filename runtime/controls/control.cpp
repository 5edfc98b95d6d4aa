// Control and RectControl: the record's life, the pane every control class
// builds on, and the properties all controls share.
#include "controls/control.h"

#include "controls/control_map.h"
#include "controls/data_binding.h"
#include "controls/embedded.h"

#include "base/fatal_report.h"
#include "objects/definitions.h"
#include "objects/object_model.h"
#include "objects/text.h"
#include "windows/menu_handlers.h"

#include "kelp/control_accessors.h"
#include "kelp/controls.h"
#include "kelp/objects.h"

#include <cstddef>

namespace kelp {
namespace {

ObjectHook *gCreatePane, *gOpen, *gClose, *gMouseMove, *gMouseEnter, *gMouseExit, *gDropObject,
    *gMouseWheel, *gConstructContextualMenu, *gContextualMenuAction;

void OnGrabFocus(GtkWidget *, gpointer data) {
    auto *pane = static_cast<ControlPane *>(data);
    if (!pane->closing && FocusPane() != pane)
        SetFocus(pane);
}

} // namespace

void StoreString(KelpString &field, KelpString value) {
    objtext::Retain(value);
    objtext::Release(field);
    field = value;
}

void SetFontName(RuntimeObject *self, ControlFont &font, KelpString value) {
    StoreString(font.textFont, value);
    if (ControlPane *pane = PaneOf(self))
        pane->SetFont(font);
}

void SetFontSize(RuntimeObject *self, ControlFont &font, int32_t value) {
    font.textSize = static_cast<int16_t>(value);
    if (ControlPane *pane = PaneOf(self))
        pane->SetFont(font);
}

void SetFontStyle(RuntimeObject *self, ControlFont &font, int32_t selector, uint8_t value) {
    if (selector < 0 || selector > 2)
        return;
    (selector == 0 ? font.bold : selector == 1 ? font.italic : font.underline) = value != 0;
    if (ControlPane *pane = PaneOf(self))
        pane->SetFont(font);
}

ObjectHook *CreatePaneHook() { return gCreatePane; }
ObjectHook *OpenHook() { return gOpen; }
ObjectHook *CloseHook() { return gClose; }

bool IsControl(RuntimeObject *object) {
    static RuntimeClass *control = ClassForDefinition(ControlDefinition());
    return object && ClassInherits(object->klass, control);
}

Window *WindowForControl(RuntimeControl *control) {
    return control ? HostWindowOf(control->view) : nullptr;
}

// ------------------------------------------------------------- the pane

ControlPane::ControlPane(RuntimeControl *control)
    : ContainerPane(WindowForControl(control),
                    Rect{control->bounds.top, control->bounds.left, control->bounds.bottom,
                         control->bounds.right}) {
    cursor = CursorOfObject(control->mouseCursor); // set before the pane was made
}

ControlPane::~ControlPane() {
    // The widget dies after this, in the SubPane's destructor: its signals
    // must no longer reach the pane.
    if (mWidget)
        g_signal_handlers_disconnect_matched(mWidget, G_SIGNAL_MATCH_DATA, 0, 0, nullptr, nullptr,
                                             this);
    if (mRunControl) {
        RuntimeControl *control = Ctl(mRunControl);
        if (control->pane == this)
            control->pane = nullptr;
        RuntimeUnlockObject(mRunControl);
        mRunControl = nullptr;
    }
}

void ControlPane::BindControl(RuntimeObject *control) {
    KELP_ASSERT(mRunControl == nullptr, "runtime/controls/control.cpp", "mRunControl == nil");
    if (mRunControl)
        return;
    RuntimeLockObject(control);
    mRunControl = control;
}

void ControlPane::SetVisible(bool flag) {
    if (panelVisible) {
        SubPane::SetVisible(flag);
        return;
    }
    visible = flag; // the page shows it when it comes up
    for (SubPane *child : std::vector<SubPane *>(mChildren))
        child->SetVisible(flag);
}

void ControlPane::SetPanelVisible(bool flag) {
    for (SubPane *child : std::vector<SubPane *>(mChildren))
        if (auto *pane = dynamic_cast<ControlPane *>(child))
            pane->SetPanelVisible(flag);
    if (flag == panelVisible)
        return;
    panelVisible = flag;
    if (!visible)
        return;
    if (!flag && (FocusPane() == this || Contains(FocusPane())))
        SetFocus(nullptr);
    Invalidate(true);
    if (mWidget)
        flag ? gtk_widget_show(mWidget) : gtk_widget_hide(mWidget);
}

bool ControlPane::OfferPressToChildren(int32_t x, int32_t y, int32_t modifiers, bool *native) {
    mCapturedChild = nullptr;
    *native = false;
    std::vector<SubPane *> children = mChildren;
    for (size_t i = children.size(); i-- > 0;) {
        SubPane *child = children[i];
        if (closing)
            return true;
        if (!child->visible || !child->HitTest(x, y))
            continue;
        if (child->MouseDown(x, y, modifiers)) {
            mCapturedChild = child;
            return true;
        }
        if (!child->PassesClicksThrough()) {
            *native = true;
            return false;
        }
    }
    return false;
}

bool ControlPane::DragCapturedChild(int32_t x, int32_t y) {
    if (!mCapturedChild)
        return false;
    mCapturedChild->MouseDrag(x, y);
    return true;
}

bool ControlPane::ReleaseCapturedChild(int32_t x, int32_t y) {
    SubPane *child = mCapturedChild;
    if (!child)
        return false;
    mCapturedChild = nullptr;
    mMouseHandled = false;
    if (child->LockForEvent()) {
        child->MouseUp(x, y);
        child->UnlockAfterEvent();
    }
    return true;
}

void ControlPane::ConnectCommonSignals() {
    if (!mWidget)
        return;
    ConnectWidgetPresses(mWidget, WindowOf(this));
    g_signal_connect(mWidget, "grab-focus", G_CALLBACK(OnGrabFocus), this);
}

} // namespace kelp

// ------------------------------------------------------------- exports

using namespace kelp;

extern "C" void RuntimeControlInitializer(RuntimeObject *self) {
    if (!self)
        return;
    RuntimeControl *c = Ctl(self);
    c->index = KELP_NOT_IN_ARRAY;
    c->visible = c->enabled = c->autoDeactivate = 1;
}

extern "C" void RuntimeControlFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    RuntimeControl *c = Ctl(self);
    ForgetBindings(self);
    // A bound pane holds a reference, so none is left here; a pane that
    // lost its control forgets it.
    if (ControlPane *pane = PaneOf(self))
        pane->Close();
    c->pane = nullptr;
    objtext::Release(c->name);
    objtext::Release(c->balloonHelp);
    objtext::Release(c->disabledBalloonHelp);
    objtext::Release(c->helpTag);
    RuntimeUnlockObject(c->mouseCursor);
    c->name = c->balloonHelp = c->disabledBalloonHelp = c->helpTag = nullptr;
    c->mouseCursor = nullptr;
    FreeMenuHandlers(c->menuHandlers);
}

extern "C" int32_t ctlPosGetter(RuntimeObject *self, int32_t selector) {
    if (!self)
        return 0;
    const KelpRect &b = Ctl(self)->bounds;
    auto [dx, dy] = ViewOrigin(Ctl(self)->view); // a container's controls read from its corner
    switch (selector) {
    case 0: return b.left - dx;
    case 1: return b.top - dy;
    case 2: return b.right - b.left;
    case 3: return b.bottom - b.top;
    default: return 0;
    }
}

extern "C" void ctlPosSetter(RuntimeObject *self, int32_t selector, int32_t value) {
    if (!self || selector < 0 || selector > 3)
        return;
    int32_t left = ctlPosGetter(self, 0), top = ctlPosGetter(self, 1);
    int32_t width = ctlPosGetter(self, 2), height = ctlPosGetter(self, 3);
    (selector == 0 ? left : selector == 1 ? top : selector == 2 ? width : height) = value;
    RuntimeControlMove(self, left, top, width, height);
}

extern "C" void RuntimeControlMove(RuntimeObject *self, int32_t left, int32_t top, int32_t width,
                                   int32_t height) {
    if (!self)
        return;
    RuntimeControl *c = Ctl(self);
    auto [originX, originY] = ViewOrigin(c->view);
    left += originX, top += originY;
    KelpRect old = c->bounds;
    // The record keeps 16-bit edges, as the language's Rect does.
    KelpRect now{static_cast<int16_t>(top), static_cast<int16_t>(left),
                 static_cast<int16_t>(top + height), static_cast<int16_t>(left + width)};
    if (now.top == old.top && now.left == old.left && now.bottom == old.bottom &&
        now.right == old.right)
        return;
    int dx = now.left - old.left, dy = now.top - old.top;
    ControlPane *pane = PaneOf(self);
    // The controls inside go along when the control moves.
    if ((dx || dy) && pane)
        for (RuntimeObject *other : ControlsOfView(c->view)) {
            ControlPane *p = PaneOf(other);
            if (other == self || !p || !IsControl(other) || !pane->Contains(p))
                continue;
            KelpRect &ob = Ctl(other)->bounds;
            ob.left = static_cast<int16_t>(ob.left + dx),
            ob.right = static_cast<int16_t>(ob.right + dx);
            ob.top = static_cast<int16_t>(ob.top + dy),
            ob.bottom = static_cast<int16_t>(ob.bottom + dy);
        }
    // The controls of a container go along with the control standing for it.
    if (RuntimeObject *container = TemplateWindowOf(self);
        container && reinterpret_cast<ContainerRecord *>(container)->anchored)
        ShiftViewControls(container, dx, dy);
    c->bounds = now;
    if (pane)
        pane->SetBounds(Rect{now.top, now.left, now.bottom, now.right}, true);
}

extern "C" uint8_t controlVisibleGetter(RuntimeObject *self, int32_t) {
    return self ? Ctl(self)->visible : 0;
}

extern "C" void ControlVisibleSetter(RuntimeObject *self, int32_t, uint8_t value) {
    StoreAndShow(self, &RuntimeControl::visible, value != 0, &SubPane::SetVisible);
}

extern "C" uint8_t controlEnabledGetter(RuntimeObject *self, int32_t) {
    return self ? Ctl(self)->enabled : 0;
}

extern "C" void controlEnabledSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (!self)
        return;
    Ctl(self)->enabled = value != 0;
    if (ControlPane *pane = PaneOf(self))
        pane->SetEnabled(value != 0, true);
}

extern "C" uint8_t controlActiveGetter(RuntimeObject *self, int32_t) {
    ControlPane *pane = PaneOf(self);
    Window *window = pane ? WindowOf(pane) : nullptr;
    return window && FrontWindow() == window ? 1 : 0;
}

extern "C" void ControlTabPanelIndexSetter(RuntimeObject *self, int32_t, int32_t value) {
    SetPanelIndex(self, value);
}

extern "C" RuntimeObject *ControlParentGetter(RuntimeObject *self, int32_t) {
    RuntimeObject *parent = self ? EnclosingControl(Ctl(self)) : nullptr;
    RuntimeLockObject(parent);
    return parent;
}

extern "C" void ControlParentSetter(RuntimeObject *self, int32_t, RuntimeObject *parent) {
    ControlPane *pane = PaneOf(self);
    if (!pane || (parent && !IsControl(parent)))
        return;
    SubPane *target = parent ? static_cast<SubPane *>(PaneOf(parent)) : WindowOf(pane);
    if (!target || target == pane || target == pane->Parent() || pane->Contains(target) ||
        WindowOf(target) != WindowOf(pane))
        return; // only inside the same window, and never into itself
    if (SubPane *old = pane->Parent())
        old->RemoveChild(pane);
    target->AddChild(pane);
    if (!target->visible)
        pane->SetVisible(false);
    if (!target->enabled)
        pane->SetEnabled(false, true);
}

extern "C" void ControlInitialParentSetter(RuntimeObject *self, int32_t, KelpString name) {
    if (!self || !Ctl(self)->view)
        return;
    RuntimeObject *parent = RuntimeControlFetch(Ctl(self)->view, name);
    if (parent && IsControl(parent)) {
        RuntimeLockObject(parent);
        RuntimeUnlockObject(Ctl(self)->initialParent);
        Ctl(self)->initialParent = parent;
    }
}

extern "C" RuntimeObject *controlWindowGetter(RuntimeObject *self, int32_t) {
    RuntimeObject *view = self ? Ctl(self)->view : nullptr;
    RuntimeLockObject(view);
    return view;
}

static int32_t PointerIn(RuntimeObject *self, bool wantX) {
    ControlPane *pane = PaneOf(self);
    Window *window = pane ? WindowOf(pane) : nullptr;
    if (!window || !window->Fixed() || !window->Fixed()->window)
        return 0;
    int x = 0, y = 0;
    gtk_widget_get_pointer(window->Fixed(), &x, &y);
    return wantX ? x - pane->bounds.left : y - pane->bounds.top;
}

extern "C" int32_t controlMouseXGetter(RuntimeObject *self, int32_t) {
    return PointerIn(self, true);
}
extern "C" int32_t controlMouseYGetter(RuntimeObject *self, int32_t) {
    return PointerIn(self, false);
}

extern "C" void *controlMacControlHandleGetter(RuntimeObject *self, int32_t) {
    ControlPane *pane = PaneOf(self);
    return pane ? pane->GetWidget() : nullptr;
}

extern "C" void controlHelpTagSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (!self)
        return;
    StoreString(Ctl(self)->helpTag, value);
    if (ControlPane *pane = PaneOf(self); pane && pane->GetWidget())
        gtk_widget_set_tooltip_text(pane->GetWidget(), std::string(objtext::View(value)).c_str());
}

extern "C" void controlBalloonHelpSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (self)
        StoreString(Ctl(self)->balloonHelp, value);
}

extern "C" void controlDisabledBalloonHelpSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (self)
        StoreString(Ctl(self)->disabledBalloonHelp, value);
}

extern "C" void controlAutoDeactivateSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (self)
        Ctl(self)->autoDeactivate = value != 0;
}

extern "C" void RuntimeControlRefresh(RuntimeObject *self) {
    if (ControlPane *pane = PaneOf(self))
        pane->Invalidate(true);
}

extern "C" void RuntimeSetFocus(RuntimeObject *self) {
    ControlPane *pane = PaneOf(self);
    if (!pane || !pane->CanFocus())
        return;
    if (PaneRoot *root = pane->Root())
        root->SetStoredFocus(pane);
    if (pane->GetWidget())
        gtk_widget_grab_focus(pane->GetWidget());
    SetFocus(pane);
}

extern "C" void ControlAddMenuHandler(RuntimeObject *self, KelpString name, void *code) {
    if (self)
        AddMenuHandler(Ctl(self)->menuHandlers, name, code);
}

// ------------------------------------------------------------- classes

namespace kelp {

ObjectHook *ConstructContextualMenuHook() { return gConstructContextualMenu; }
ObjectHook *ContextualMenuActionHook() { return gContextualMenuAction; }

ObjectDefinition *ControlDefinition() {
    static const PropertyRow properties[] = {
        {0, "Name", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(stringSetter),
         offsetof(RuntimeControl, name)},
        {0, "Index", &kTypeInteger, KELP_ENTRY(intGetter), KELP_PLAIN_FIELD,
         offsetof(RuntimeControl, index)},
        {0, "TabPanelIndex", &kTypeInteger, KELP_ENTRY(intGetter),
         KELP_ENTRY(ControlTabPanelIndexSetter), offsetof(RuntimeControl, tabPanelIndex)},
        {0, "PanelIndex", &kTypeInteger, KELP_ENTRY(ControlPanelIndexGetter),
         KELP_ENTRY(ControlPanelIndexSetter), offsetof(RuntimeControl, tabPanelIndex)},
        {0, "MouseX", &kTypeInteger, KELP_ENTRY(controlMouseXGetter), {}, -9},
        {0, "MouseY", &kTypeInteger, KELP_ENTRY(controlMouseYGetter), {}, -9},
        {0, "Window", &kTypePtr, KELP_ENTRY(controlWindowGetter), {}, -9},
        {0, "Handle", &kTypePtr, KELP_ENTRY(controlMacControlHandleGetter), {}, -9},
    };
    static const MethodRow methods[] = {
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(ControlClose)},
    };
    static const EventRow events[] = {
        {"CreatePane", "", nullptr, &gCreatePane},
        {"Open", "", nullptr, &gOpen},
        {"Close", "", nullptr, &gClose},
    };
    static const ClassDescription description = {
        .name = "Control",
        .instanceSize = sizeof(RuntimeControl),
        .initializer = KELP_ENTRY(RuntimeControlInitializer),
        .finalizer = KELP_ENTRY(RuntimeControlFinalizer),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *RectControlDefinition() {
    static const TypeRecord kMouseCursorType{kTypeObjectOf, "MouseCursor"};
    static const PropertyRow properties[] = {
        {0, "HelpTag", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(controlHelpTagSetter),
         offsetof(RuntimeControl, helpTag)},
        {0, "BalloonHelp", &kTypeString, KELP_ENTRY(stringGetter),
         KELP_ENTRY(controlBalloonHelpSetter), offsetof(RuntimeControl, balloonHelp)},
        {0, "DisabledBalloonHelp", &kTypeString, KELP_ENTRY(stringGetter),
         KELP_ENTRY(controlDisabledBalloonHelpSetter),
         offsetof(RuntimeControl, disabledBalloonHelp)},
        {0, "Visible", &kTypeBoolean, KELP_ENTRY(controlVisibleGetter),
         KELP_ENTRY(ControlVisibleSetter), offsetof(RuntimeControl, visible)},
        {0, "Left", &kTypeInteger, KELP_ENTRY(ctlPosGetter), KELP_ENTRY(ctlPosSetter), 0},
        {0, "Top", &kTypeInteger, KELP_ENTRY(ctlPosGetter), KELP_ENTRY(ctlPosSetter), 1},
        {0, "Width", &kTypeInteger, KELP_ENTRY(ctlPosGetter), KELP_ENTRY(ctlPosSetter), 2},
        {0, "Height", &kTypeInteger, KELP_ENTRY(ctlPosGetter), KELP_ENTRY(ctlPosSetter), 3},
        {0, "Enabled", &kTypeBoolean, KELP_ENTRY(controlEnabledGetter),
         KELP_ENTRY(controlEnabledSetter), offsetof(RuntimeControl, enabled)},
        {0, "Active", &kTypeBoolean, KELP_ENTRY(controlActiveGetter), {}, -9},
        {0, "AutoDeactivate", &kTypeBoolean, KELP_ENTRY(controlAutoDeactivateGetter),
         KELP_ENTRY(controlAutoDeactivateSetter), offsetof(RuntimeControl, autoDeactivate)},
        {0, "LockLeft", &kTypeBoolean, KELP_ENTRY(controlLockLeftGetter),
         KELP_ENTRY(controlLockLeftSetter), offsetof(RuntimeControl, lockLeft)},
        {0, "LockTop", &kTypeBoolean, KELP_ENTRY(controlLockTopGetter),
         KELP_ENTRY(controlLockTopSetter), offsetof(RuntimeControl, lockTop)},
        {0, "LockRight", &kTypeBoolean, KELP_ENTRY(controlLockRightGetter),
         KELP_ENTRY(controlLockRightSetter), offsetof(RuntimeControl, lockRight)},
        {0, "LockBottom", &kTypeBoolean, KELP_ENTRY(controlLockBottomGetter),
         KELP_ENTRY(controlLockBottomSetter), offsetof(RuntimeControl, lockBottom)},
        {0, "Parent", &kTypePtr, KELP_ENTRY(ControlParentGetter), KELP_ENTRY(ControlParentSetter),
         -9},
        {0, "MouseCursor", &kMouseCursorType, KELP_ENTRY(objGetter),
         KELP_ENTRY(controlMouseCursorSetter), offsetof(RuntimeControl, mouseCursor)},
        {0, "InitialParent", &kTypeString, {}, KELP_ENTRY(ControlInitialParentSetter), -9},
    };
    static const ParameterRow moveParams[] = {{"left", &kTypeInteger},
                                              {"top", &kTypeInteger},
                                              {"width", &kTypeInteger},
                                              {"height", &kTypeInteger}};
    static const ParameterRow menuParams[] = {{"name", &kTypeString}, {"code", &kTypePtr}};
    static const MethodRow methods[] = {
        {"Refresh", nullptr, nullptr, 0, KELP_ENTRY(RuntimeControlRefresh)},
        {"RefreshRect", nullptr, moveParams, 4, KELP_ENTRY(RuntimeControlRefreshRect)},
        {"RectControl", nullptr, nullptr, 0, KELP_ENTRY(RectControlDefaultConstructor)},
        {"SetFocus", nullptr, nullptr, 0, KELP_ENTRY(RuntimeSetFocus)},
        {"_Move", nullptr, moveParams, 4, KELP_ENTRY(RuntimeControlMove)},
        {"_AddMenuHandler", nullptr, menuParams, 2, KELP_ENTRY(ControlAddMenuHandler)},
    };
    static const EventRow events[] = {
        {"MouseMove", "X As Integer, Y As Integer", nullptr, &gMouseMove},
        {"MouseEnter", "", nullptr, &gMouseEnter},
        {"MouseExit", "", nullptr, &gMouseExit},
        {"DropObject", "obj As DragItem", nullptr, &gDropObject},
        {"MouseWheel", "X As Integer, Y As Integer, Delta As Integer", "Boolean", &gMouseWheel},
        {"ConstructContextualMenu", "base As MenuItem, x As Integer, y As Integer", "Boolean",
         &gConstructContextualMenu},
        {"ContextualMenuAction", "hitItem As MenuItem", "Boolean", &gContextualMenuAction},
    };
    static const ClassDescription description = {
        .name = "RectControl",
        .super = ControlDefinition,
        .instanceSize = sizeof(RuntimeControl),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
