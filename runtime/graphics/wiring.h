#pragma once
namespace kelp {
// The Graphics class.
void WireGraphics();
} // namespace kelp
