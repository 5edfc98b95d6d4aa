#include "menus/dispatch.h"

#include "menus/classes.h"
#include "menus/menu.h"

#include "base/ascii.h"
#include "controls/control.h"
#include "exceptions/call_event.h"
#include "objects/definitions.h"
#include "process/process_state.h"
#include "windows/menu_handlers.h"
#include "windows/runtime_view.h"

#include "kelp/menus.h"
#include "kelp/objects.h"

#include <string>
#include <vector>

namespace kelp {
namespace {

ApplicationMenuClient gApp;
bool gInCycle = false; // an EnableMenuItems handler that asks for the cycle again

RuntimeViewWindow *ViewWindow(Window *window) { return dynamic_cast<RuntimeViewWindow *>(window); }

// The control whose pane has the focus in this window, or null.
RuntimeObject *FocusedControl(Window *window) {
    SubPane *focus = FocusPane();
    if (!focus || !window || !window->Contains(focus))
        return nullptr;
    auto *pane = dynamic_cast<ControlPane *>(focus);
    return pane ? pane->Control() : nullptr;
}

bool CallHandler(void *code, RuntimeObject *object, int32_t index) {
    return code && CallHandlerCode<uint8_t>(code, object, index) != 0;
}

// Whether any of the three handler maps knows the name.
bool HasHandler(RuntimeObject *control, ViewRecord *view, std::string_view name) {
    return (control && FindMenuHandler(Ctl(control)->menuHandlers, name)) ||
           (view && FindMenuHandler(view->menuHandlers, name)) ||
           (gApp.handler && gApp.handler(name));
}

// Titles enabled, leaves disabled, all the way down.
void Reset(XMenuGTK *menu) {
    for (RuntimeObject *child : std::vector<RuntimeObject *>(menu->mChildren)) {
        XMenuGTK *imp = MenuImpOf(child);
        if (!imp)
            continue;
        if (imp->HasChildren()) {
            imp->Enable();
            Reset(imp);
        } else {
            imp->Disable();
        }
    }
}

void AutoEnable(XMenuGTK *bar, RuntimeObject *control, ViewRecord *view) {
    std::vector<XMenuGTK *> menus{bar};
    for (size_t i = 0; i < menus.size(); ++i)
        for (RuntimeObject *child : std::vector<RuntimeObject *>(menus[i]->mChildren)) {
            XMenuGTK *imp = MenuImpOf(child);
            if (!imp)
                continue;
            if (imp->HasChildren())
                menus.push_back(imp);
            if (!imp->mAutoEnable)
                continue;
            if (imp->HasChildren() || HasHandler(control, view, imp->mName) ||
                FindEventHandler(child, MenuActionHook()))
                imp->Enable();
        }
}

void FireEnableMenu(XMenuGTK *menu) {
    for (RuntimeObject *child : std::vector<RuntimeObject *>(menu->mChildren)) {
        RuntimeLockObject(child);
        CallEvent(child, EnableMenuHook());
        if (XMenuGTK *imp = MenuImpOf(child))
            FireEnableMenu(imp);
        RuntimeUnlockObject(child);
    }
}

} // namespace

void SetApplicationMenuClient(const ApplicationMenuClient &client) { gApp = client; }
const ApplicationMenuClient &ApplicationMenus() { return gApp; }

RuntimeObject *MenuBarOfWindow(Window *window) {
    RuntimeViewWindow *viewWindow = ViewWindow(window);
    ViewRecord *view = viewWindow ? viewWindow->View() : nullptr;
    if (view && view->menuBar)
        return view->menuBar;
    // Document windows show the application's bar unless they have their
    // own; dialogs and floating windows show none of it.
    if (window && LayerOfKind(window->kind) != kLayerDocument)
        return nullptr;
    return gApp.menuBar ? gApp.menuBar() : nullptr;
}

void EnableMenuItemsNamed(Window *window, std::string_view name) {
    XMenuGTK *bar = MenuImpOf(MenuBarOfWindow(window));
    if (!bar || name.empty())
        return;
    std::vector<XMenuGTK *> menus{bar};
    for (size_t i = 0; i < menus.size(); ++i)
        for (RuntimeObject *child : menus[i]->mChildren) {
            XMenuGTK *imp = MenuImpOf(child);
            if (imp && imp->HasChildren())
                menus.push_back(imp);
            else if (imp && imp->mName == name)
                imp->Enable();
        }
}

std::string MenuItemName(RuntimeObject *item) {
    XMenuGTK *imp = MenuImpOf(item);
    return imp ? imp->mName : std::string();
}

bool DispatchMenuItem(RuntimeObject *item, Window *window) {
    XMenuGTK *imp = MenuImpOf(item);
    if (!imp)
        return false;
    if (!window)
        window = FrontWindow();
    RuntimeLockObject(item);
    const std::string name = imp->mName;
    const int32_t index = imp->mIndex;
    SubPane *focusAtStart = FocusPane();
    bool taken = false;
    RuntimeViewWindow *viewWindow = ViewWindow(window);
    if (viewWindow && viewWindow->LockForEvent()) {
        if (RuntimeObject *control = FocusedControl(viewWindow)) {
            RuntimeLockObject(control);
            taken = CallHandler(FindMenuHandler(Ctl(control)->menuHandlers, name), control, index);
            RuntimeUnlockObject(control);
        }
        ViewRecord *view = viewWindow->View();
        if (!taken && view && !viewWindow->IsClosing())
            taken = CallHandler(FindMenuHandler(view->menuHandlers, name), &view->object, index);
        viewWindow->UnlockAfterEvent();
    }
    if (!taken && gApp.handler)
        taken = CallHandler(gApp.handler(name), ApplicationObject(), index);
    if (!taken)
        taken = CallBooleanEvent(item, MenuActionHook());
    if (!taken && focusAtStart && FocusPane() == focusAtStart)
        taken = focusAtStart->MenuSelected(item);
    if (taken)
        RunEnableCycle(false, nullptr);
    RuntimeUnlockObject(item);
    return taken;
}

void RunEnableCycle(bool modal, Window *window) {
    if (gInCycle)
        return;
    if (!window)
        window = FrontWindow();
    RuntimeViewWindow *viewWindow = ViewWindow(window);
    if (window && !viewWindow)
        return; // a message dialog or the like: its bar, if any, stays as it is
    gInCycle = true;
    ViewRecord *view = viewWindow ? viewWindow->View() : nullptr;
    RuntimeObject *bar = MenuBarOfWindow(window);
    RuntimeLockObject(bar);
    RuntimeObject *control = FocusedControl(window);
    if (XMenuGTK *barImp = MenuImpOf(bar)) {
        Reset(barImp);
        if (!modal)
            AutoEnable(barImp, control, view);
        if (!modal)
            FireEnableMenu(barImp);
    }
    SubPane *focus = FocusPane();
    if (focus && window && window->Contains(focus) && focus != window)
        focus->EnableMenuItems();
    if (view && viewWindow->View() == view) {
        RuntimeLockObject(&view->object);
        CallEvent(&view->object, ViewEnableMenuItemsHook());
        RuntimeUnlockObject(&view->object);
    }
    if (!modal && gApp.enableMenuItems)
        gApp.enableMenuItems();
    RuntimeUnlockObject(bar);
    gInCycle = false;
}

bool OfferMenuKey(Window *window, int32_t character, int32_t modifiers) {
    uint32_t mask = 0;
    if (modifiers & kModOption)
        mask |= GDK_MOD1_MASK;
    if (modifiers & kModShift)
        mask |= GDK_SHIFT_MASK;
    if (modifiers & kModControl)
        mask |= GDK_CONTROL_MASK;
    // Every shortcut holds Control: a key without modifiers is no shortcut.
    if (!mask || !window || character <= 0 || character > 0xff)
        return false;
    RunEnableCycle(IsModalKind(window->kind), window);
    const std::string key(1, static_cast<char>(character));
    for (const AccelRow &row : AcceleratorTable()) {
        // The language compares texts without case: "Q" is the key q.
        if (row.modifiers != mask || !AsciiEqualNoCase(row.key, key) ||
            row.item->GetWindow() != window || !row.item->mEnabled)
            continue;
        RuntimeObject *object = row.item->Root()->FindObject(row.item);
        if (!object)
            continue;
        // Taken even when no handler wanted it: the toolkit's own
        // accelerator must not choose the item a second time.
        DispatchMenuItem(object, window);
        return true;
    }
    return false;
}

} // namespace kelp

using namespace kelp;

extern "C" void enableMenuItems(void) { RunEnableCycle(false, nullptr); }

extern "C" uint8_t QuitMenuAction(RuntimeObject *self) {
    // A subclass's own Action comes first; the default one is this function.
    void *code = self ? FindEventHandler(self, MenuActionHook()) : nullptr;
    if (code && code != reinterpret_cast<void *>(&QuitMenuAction) &&
        CallHandlerCode<uint8_t>(code, self) != 0)
        return 1;
    if (gApp.quit)
        gApp.quit();
    return 1;
}

// There are no preferences to show: the item is left to the focus pane.
extern "C" uint8_t PrefsMenuAction(RuntimeObject *) { return 0; }

extern "C" RuntimeObject *getAppleMenuFolder(void) { return nullptr; }

extern "C" RuntimeObject *RuntimeMenuReference(RuntimeObject *window, KelpString name) {
    static RuntimeClass *windowClass = ClassForDefinition(WindowDefinition());
    ViewRecord *view =
        RuntimeObjectIsa(window, windowClass) ? reinterpret_cast<ViewRecord *>(window) : nullptr;
    RuntimeObject *bar = view && view->menuBar ? view->menuBar
                         : gApp.menuBar        ? gApp.menuBar()
                                               : nullptr;
    return bar ? RuntimeMenuItemLookup(bar, name) : nullptr;
}
