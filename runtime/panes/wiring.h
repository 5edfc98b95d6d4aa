#pragma once
namespace kelp {
// The keyboard state of the pane tree: the process's key snoop hook and the
// run loop's reader of the Escape key.
void WirePanes();
} // namespace kelp
