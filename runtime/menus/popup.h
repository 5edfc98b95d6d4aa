#pragma once
// Menus that pop up: an item's own menu at a point of the screen, the
// contextual menus of windows and controls.
#include "kelp/records.h"

#include <cstdint>

namespace kelp {

class Window;
class XMenuGTK;

// Pops the item's menu up at (x, y) on the screen and waits until it
// closes: the chosen item's object with a new reference, or null.  Nothing
// is dispatched.
RuntimeObject *PopUpAndChoose(RuntimeObject *item, int32_t x, int32_t y);
// The global pointer position.
void PointerOnScreen(int32_t &x, int32_t &y);
// The window's contextual menu at a point of its content, for the window's
// slot: true when one was built.
bool OfferContextualMenu(Window *window, int32_t x, int32_t y);

} // namespace kelp
