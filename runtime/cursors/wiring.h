#pragma once
namespace kelp {
// The MouseCursor, _Cursors, Screen and TrayItem classes.
void WireCursors();
} // namespace kelp
