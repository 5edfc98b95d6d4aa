#pragma once
namespace kelp {
// The Date class and the ParseDate function.
void WireDates();
} // namespace kelp
