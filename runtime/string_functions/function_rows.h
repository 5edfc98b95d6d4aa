#pragma once
// The text functions' rows of the intrinsic function table.
#include "objects/definitions.h"

#include <span>

namespace kelp {

std::span<const MethodRow> StringFunctionRows();

} // namespace kelp
