#pragma once
// The bars shown in view windows, one clone of the window's MenuBar each.
#include "windows/runtime_view.h"

namespace kelp {

class XMenuGTK;

// The view's menu client, for the Wire function.
ViewMenuClient WindowBarClient();
// The clone a window shows, or null.
XMenuGTK *WindowBarClone(Window *window);

} // namespace kelp
