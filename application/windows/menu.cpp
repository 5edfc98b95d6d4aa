// Menu, the drill's one menu bar: File and Info, built item by item on
// first use and shared by every window, each of which shows a live copy.
#include "windows/kit.h"
#include "windows/trace.h"
#include "windows/windows.h"

#include <cstdio>
#include <string>

namespace sumbrook::ui {
namespace {

struct ItemRow {
    const char *parent; // null: a title in the bar
    const char *klass;  // MenuItem or QuitMenuItem
    const char *name, *text, *shortcut;
    bool autoEnable;
};

// Only Quit enables itself; End This Round waits for the practice window
// and the Info items for App.EnableMenuItems.
constexpr ItemRow kItems[] = {
    {nullptr, "MenuItem", "UntitledMenu0", "File", nullptr, false},
    {"UntitledMenu0", "MenuItem", "FileEndThisRound", "End This Round", nullptr, false},
    {"UntitledMenu0", "QuitMenuItem", "FileQuit", "Quit", "Ctrl+Q", true},
    {nullptr, "MenuItem", "Info", "Info", nullptr, false},
    {"Info", "MenuItem", "InfoAbout", "About...", nullptr, false},
    {"Info", "MenuItem", "InfoHelp", "Help", "Ctrl+H", false},
};

RuntimeClass *LibraryClass(const char *name) { return RuntimeLookupClass(Constant(name)); }

RuntimeObject *Build() {
    RuntimeClass *menu = Subclass("MenuBar", "Menu");
    RuntimeObject *bar = menu ? RuntimeNewObject(menu) : nullptr;
    for (const ItemRow &row : kItems) {
        RuntimeClass *klass = LibraryClass(row.klass);
        RuntimeObject *parent = row.parent ? RuntimeMenuItemLookup(bar, Constant(row.parent)) : bar;
        if (!klass || !parent) {
            std::fprintf(stderr, "sumbrook: menu item %s has no place\n", row.name);
            continue;
        }
        RuntimeObject *item = RuntimeNewObject(klass);
        RuntimeMenuItemNameSetter(item, 0, Constant(row.name));
        RuntimeMenuItemTextSetter(item, 0, Constant(row.text));
        if (row.shortcut)
            RuntimeMenuItemCommandKeySetter(item, 0, Constant(row.shortcut));
        RuntimeMenuItemAutoEnableSetter(item, 0, row.autoEnable);
        RuntimeMenuItemAppend(parent, item);
        RuntimeUnlockObject(item); // its menu holds it now
        if (parent != bar)
            RuntimeUnlockObject(parent);
    }
    return bar;
}

} // namespace

RuntimeObject *MenuBar() {
    static RuntimeObject *bar = Build(); // for the process's life
    return bar;
}

void EnableMenuItem(const char *name) {
    if (RuntimeObject *item = RuntimeMenuItemLookup(MenuBar(), Constant(name))) {
        RuntimeEnableMenu(item);
        RuntimeUnlockObject(item);
    }
}

void TraceMenu() {
    for (const ItemRow &row : kItems) {
        if (!row.parent)
            continue;
        RuntimeObject *item = RuntimeMenuItemLookup(MenuBar(), Constant(row.name));
        const bool on = item && RuntimeMenuItemEnabledGetter(item, 0);
        RuntimeUnlockObject(item);
        TraceEvent((std::string("menu ") + row.name + (on ? " on" : " off")).c_str(), nullptr);
    }
}

} // namespace sumbrook::ui
