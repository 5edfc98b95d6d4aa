#pragma once

namespace kelp {
// The classes and functions of services this platform lacks.
void WireStubs();
} // namespace kelp
