#pragma once
// What the running window manager can do for us.  Kept apart because the
// X headers it needs clash with the names of the window code.

namespace kelp {

// True when a window manager runs that takes full-screen requests; without
// one, a window has to cover the screen by itself.
bool WindowManagerDoesFullScreen();

} // namespace kelp
