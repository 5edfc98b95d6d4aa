#pragma once
// The library classes of the menus, which the Wire function registers, and
// the events the enable cycle and the dispatch fire on items.
namespace kelp {

struct ObjectDefinition;
struct ObjectHook;

ObjectDefinition *MenuItemDefinition();
ObjectDefinition *MenuBarDefinition();
ObjectDefinition *QuitMenuItemDefinition();
ObjectDefinition *PrefsMenuItemDefinition();
ObjectDefinition *AppleMenuItemDefinition();
ObjectDefinition *MenuBarInstallerDefinition();
ObjectDefinition *ContextualMenuDefinition();

// MenuItem's Action() As Boolean and EnableMenu().
ObjectHook *MenuActionHook();
ObjectHook *EnableMenuHook();

} // namespace kelp
