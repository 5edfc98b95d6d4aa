#pragma once
// Hiding the menu bar, with the promise that it comes back: while the bar is
// hidden a shutdown task exists whose destructor shows it again, so a
// program that ends with the bar hidden leaves it shown.
namespace kelp {

// Supplied by the window classes: shows or hides the front window's
// GtkMenuBar and resizes the window so that its content keeps its size.
// Does nothing without a front window or a bar.
using MenuBarVisibility = void (*)(bool visible);
MenuBarVisibility SetMenuBarVisibility(MenuBarVisibility apply);

void HideMenuBar();
void ShowMenuBar();
bool MenuBarHidden();

} // namespace kelp
