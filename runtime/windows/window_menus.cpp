// The menu side of the Window class: its MenuBar, whether the bar shows,
// and the handlers a window adds for menu items.  The bar itself is built
// by the menus layer through the view's menu client.
#include "windows/menu_bar.h"
#include "windows/menu_handlers.h"
#include "windows/runtime_view.h"

#include "kelp/objects.h"
#include "kelp/windows.h"

using namespace kelp;

namespace {

ViewRecord *View(RuntimeObject *object) { return reinterpret_cast<ViewRecord *>(object); }

} // namespace

extern "C" void WindowAddMenuHandler(RuntimeObject *self, KelpString name, void *code) {
    if (self)
        AddMenuHandler(View(self)->menuHandlers, name, code);
}

extern "C" RuntimeObject *WindowMenuBarGetter(RuntimeObject *self, int32_t) {
    RuntimeObject *bar = self ? View(self)->menuBar : nullptr;
    RuntimeLockObject(bar);
    return bar;
}

// A window already built takes the new bar at once, in place of its old one.
extern "C" void WindowMenuBarSetter(RuntimeObject *self, int32_t, RuntimeObject *bar) {
    if (!self)
        return;
    ViewRecord *view = View(self);
    RuntimeObject *old = view->menuBar;
    RuntimeLockObject(bar);
    view->menuBar = bar;
    RuntimeUnlockObject(old);
    if (view->pane)
        InstallViewMenuBar(view);
}

extern "C" uint8_t windowMenusVisibleGetter(RuntimeObject *self, int32_t) {
    return self ? View(self)->menuBarVisible : 0;
}

// Only the front window's bar shows or hides now; another window's flag
// takes effect when it comes to the front.
extern "C" void windowMenusVisibleSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (!self)
        return;
    ViewRecord *view = View(self);
    view->menuBarVisible = value ? 1 : 0;
    if (view->pane && view->pane == FrontWindow())
        value ? ShowMenuBar() : HideMenuBar();
}
