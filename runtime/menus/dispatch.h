#pragma once
// What happens when an item is chosen, and the cycle that enables items
// before a menu shows: the handlers of the focused control, the window and
// the application, the item's own events, and the keys of the bar.
#include "kelp/records.h"

#include <string>
#include <string_view>

namespace kelp {

class Window;

// The application's part, filled by the app layer's Wire function.
struct ApplicationMenuClient {
    RuntimeObject *(*menuBar)() = nullptr; // borrowed, or null
    void *(*handler)(std::string_view name) = nullptr;
    void (*enableMenuItems)() = nullptr;
    void (*quit)() = nullptr; // ends the application as its Quit does
};
void SetApplicationMenuClient(const ApplicationMenuClient &client);
const ApplicationMenuClient &ApplicationMenus();

// Looks for the handler of `item` and runs it (null window: the front
// one); true when one took it, and then the enable cycle has run.
bool DispatchMenuItem(RuntimeObject *item, Window *window);
// The enable cycle of a window's bar (null: the front window); `modal`
// leaves out AutoEnable, the items' EnableMenu and the application.
void RunEnableCycle(bool modal, Window *window);
// The accelerator search for a key of a window: true when an enabled item
// of the window's bar has it, the item then being dispatched.
bool OfferMenuKey(Window *window, int32_t character, int32_t modifiers);

// Enables every item of that name in the bar `window` shows: how a control
// switches on the standard items it can serve while the cycle runs.
void EnableMenuItemsNamed(Window *window, std::string_view name);
// The Name of a menu item, or empty for anything else.
std::string MenuItemName(RuntimeObject *item);

// The bar a window shows: its view's MenuBar, else for a document window
// the application's; borrowed, or null.
RuntimeObject *MenuBarOfWindow(Window *window);

} // namespace kelp
