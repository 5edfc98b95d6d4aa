#pragma once
// The application's and the windows' rows of the intrinsic function table.
#include "objects/definitions.h"

#include <span>

namespace kelp {

std::span<const MethodRow> ApplicationFunctionRows();

} // namespace kelp
