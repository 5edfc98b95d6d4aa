#pragma once
namespace kelp {
// Registers the EditField class and the styled text classes.
void WireEditFields();
} // namespace kelp
