// What every control has beyond its place and visibility: the Lock flags
// and the layout that follows a window's edges, the page of a panel it
// lies on, its pointer shape, part repaints, the focus, and the entry
// points of a control class that has no pane or no fields of its own.
#include "controls/control.h"

#include "controls/control_map.h"
#include "controls/paged.h"

#include "cursors/mouse_cursor.h"
#include "panes/pane_root.h"
#include "windows/runtime_view.h"

#include "kelp/control_accessors.h"
#include "kelp/controls.h"
#include "kelp/objects.h"

#include <vector>

namespace kelp {
namespace {

// Each Lock flag is a plain field read at layout time; the accessors exist
// because images bind them by name.
uint8_t &LockField(RuntimeObject *self, int side) {
    RuntimeControl *c = Ctl(self);
    return side == 0   ? c->lockLeft
           : side == 1 ? c->lockTop
           : side == 2 ? c->lockRight
                       : c->lockBottom;
}

// The controls lying directly on `parent` follow its growth by (dw, dh):
// a locked right edge moves with the parent's right edge, and the left one
// too unless it is locked as well (the control then stretches); the same
// downwards.  A control that changes size lays its own children out in
// turn, so nested group boxes stretch as a person would expect.
void LayOutChildren(SubPane *parent, int32_t dw, int32_t dh, int depth) {
    if (depth > 32) // panes nest far less deeply; deeper is a loop
        return;
    for (SubPane *child : std::vector<SubPane *>(parent->Children())) {
        auto *pane = dynamic_cast<ControlPane *>(child);
        RuntimeObject *control = pane ? pane->Control() : nullptr;
        if (!control || parent->IsClosing())
            continue;
        RuntimeControl *c = Ctl(control);
        if (!c->lockLeft && !c->lockTop && !c->lockRight && !c->lockBottom)
            continue;
        int32_t left = ctlPosGetter(control, 0), top = ctlPosGetter(control, 1);
        int32_t width = ctlPosGetter(control, 2), height = ctlPosGetter(control, 3);
        // Locked on both sides a control grows; on the far side only, it moves.
        const int32_t grewX = c->lockRight && c->lockLeft ? dw : 0;
        const int32_t grewY = c->lockBottom && c->lockTop ? dh : 0;
        if (c->lockRight && !c->lockLeft)
            left += dw;
        if (c->lockBottom && !c->lockTop)
            top += dh;
        RuntimeLockObject(control); // the move may reach compiled code
        RuntimeControlMove(control, left, top, width + grewX, height + grewY);
        if ((grewX || grewY) && PaneOf(control) == pane)
            LayOutChildren(pane, grewX, grewY, depth + 1);
        RuntimeUnlockObject(control);
    }
}

void ShowForPage(ControlPane *pane) {
    auto *panel = pane ? dynamic_cast<PagedPane *>(pane->Parent()) : nullptr;
    if (panel)
        pane->SetPanelVisible(panel->panelVisible &&
                              (pane->panelIndex == 0 || pane->panelIndex == panel->CurrentPage()));
}

} // namespace

void LayOutLockedControls(ViewRecord *view, int32_t dw, int32_t dh) {
    if (view && view->pane)
        LayOutChildren(view->pane, dw, dh, 0);
}

void SetPanelIndex(RuntimeObject *self, int32_t value) {
    if (!self)
        return;
    Ctl(self)->tabPanelIndex = value;
    ControlPane *pane = PaneOf(self);
    if (!pane)
        return; // binding passes it on
    pane->panelIndex = value + 1;
    // What lies on the control goes to the same page with it.
    for (RuntimeObject *other : ControlsOfView(Ctl(self)->view))
        if (ControlPane *inner = PaneOf(other); inner && inner != pane && pane->Contains(inner)) {
            Ctl(other)->tabPanelIndex = value;
            inner->panelIndex = value + 1;
        }
    ShowForPage(pane);
}

} // namespace kelp

using namespace kelp;

extern "C" uint8_t controlAutoDeactivateGetter(RuntimeObject *self, int32_t) {
    return self ? Ctl(self)->autoDeactivate : 0;
}

#define KELP_LOCK_ACCESSORS(Side, index)                                                           \
    extern "C" uint8_t controlLock##Side##Getter(RuntimeObject *self, int32_t) {                   \
        return self ? LockField(self, index) : 0;                                                  \
    }                                                                                              \
    extern "C" void controlLock##Side##Setter(RuntimeObject *self, int32_t, uint8_t value) {       \
        if (self)                                                                                  \
            LockField(self, index) = value != 0;                                                   \
    }
KELP_LOCK_ACCESSORS(Left, 0)
KELP_LOCK_ACCESSORS(Top, 1)
KELP_LOCK_ACCESSORS(Right, 2)
KELP_LOCK_ACCESSORS(Bottom, 3)
#undef KELP_LOCK_ACCESSORS

extern "C" int32_t ControlPanelIndexGetter(RuntimeObject *self, int32_t) {
    return self ? Ctl(self)->tabPanelIndex : 0;
}

extern "C" void ControlPanelIndexSetter(RuntimeObject *self, int32_t, int32_t value) {
    SetPanelIndex(self, value);
}

extern "C" void RuntimeControlRefreshRect(RuntimeObject *self, int32_t left, int32_t top,
                                          int32_t width, int32_t height) {
    ControlPane *pane = PaneOf(self);
    GdkWindow *drawable = pane ? pane->GetDrawable() : nullptr;
    if (!drawable || width <= 0 || height <= 0)
        return;
    // Window coordinates, as the pane's widget window is the window's own
    // content; clipped to the control, whose outside isn't its to repaint.
    GdkRectangle area{pane->bounds.left + left, pane->bounds.top + top, width, height};
    GdkRectangle own{pane->bounds.left, pane->bounds.top, pane->width, pane->height};
    if (gdk_rectangle_intersect(&area, &own, &area))
        gdk_window_invalidate_rect(drawable, &area, TRUE);
}

// The language's RectControl() constructor.  The initializer has set the
// defaults already for the library's classes; a class an image built
// without naming that initializer gets them here, before any property.
extern "C" void RectControlDefaultConstructor(RuntimeObject *self) {
    if (self && !Ctl(self)->view && !Ctl(self)->pane && Ctl(self)->index == 0)
        RuntimeControlInitializer(self);
}

// Binding stops at a control without a pane, which is what such a class
// wants: it is in the window's map, has no widget, and hears no events.
extern "C" void NilCreatePane(RuntimeObject *) {}

extern "C" void clearFocus(void) {
    SubPane *focus = FocusPane();
    if (!focus)
        return;
    PaneRoot *root = focus->Root();
    if (root)
        root->SetStoredFocus(nullptr);
    SetFocus(nullptr);
    // The toolkit's own keyboard focus leaves the widget too, or keys would
    // still reach it.
    GtkWidget *widget = focus->GetWidget();
    GtkWidget *top = widget ? gtk_widget_get_toplevel(widget) : nullptr;
    if (top && GTK_IS_WINDOW(top))
        gtk_window_set_focus(GTK_WINDOW(top), nullptr);
}

// A bound pane holds a reference on its control, so normally none is left
// when the record goes; one that is (a pane a plug-in bound by hand) must
// not outlive the record it points at.
extern "C" void ControlPaneDestructor(RuntimeObject *self) {
    if (ControlPane *pane = PaneOf(self)) {
        Ctl(self)->pane = nullptr;
        pane->Close();
    }
}
