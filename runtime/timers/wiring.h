#pragma once
namespace kelp {
// The Timer class.
void WireTimers();
} // namespace kelp
