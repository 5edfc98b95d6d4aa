#pragma once
namespace kelp {
// The object runtime's own library class ("Runtime").
void WireObjects();
} // namespace kelp
