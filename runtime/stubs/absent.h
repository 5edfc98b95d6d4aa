#pragma once
// The one shape of a service this platform lacks: a function that ignores
// its arguments (taking no reference from them) and answers the neutral
// value of its result: nil, 0, false, the empty string, or nothing.
#include "kelp/records.h"

#define KELP_ABSENT(result, name, ...)                                                             \
    extern "C" result name(__VA_ARGS__) { return static_cast<result>(0); }

namespace kelp {
// Raises ServiceNotAvailableException saying which service is missing.
void RaiseServiceAbsent(const char *service);
} // namespace kelp
