#pragma once

namespace kelp {

// The control classes; the window's hooks for its controls; how a handler
// compiled into a window finds the window and the containers of a control.
void WireControls();

} // namespace kelp
