#pragma once
namespace kelp {
// The Sound class.
void WireSound();
} // namespace kelp
