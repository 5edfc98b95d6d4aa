#pragma once
// The VarType of a variant, cached by class.
#include "kelp/records.h"

#include <cstdint>

namespace kelp {
int32_t KindOf(RuntimeObject *v);
} // namespace kelp
