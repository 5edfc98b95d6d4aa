#pragma once
// Hiding the menu bar, with the promise that it comes back: while the bar is
// hidden a shutdown task exists whose destructor shows it again, so a
// program that ends with the bar hidden leaves it shown.  The bar is the
// front window's GtkMenuBar; hiding or showing it resizes the window so
// that its content keeps its size.  Without a front window or a bar only
// the state changes.
namespace kelp {

void HideMenuBar();
void ShowMenuBar();
bool MenuBarHidden();

} // namespace kelp
