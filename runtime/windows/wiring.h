#pragma once
namespace kelp {
// The Window and MDIWindow classes, and the run loop's window client (the
// deferred notices, the held press, the focus pane's Idle, the count).
void WireWindows();
} // namespace kelp
