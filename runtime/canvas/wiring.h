#pragma once

namespace kelp {

// Registers the Canvas, DragItem and Clipboard classes.
void WireCanvas();

} // namespace kelp
