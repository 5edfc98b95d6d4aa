#pragma once
namespace kelp {
// Registers the EditField class.
void WireEditFields();
} // namespace kelp
