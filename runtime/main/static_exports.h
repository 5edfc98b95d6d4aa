#pragma once
#include "kelp/records.h"

#include <cstddef>

namespace kelp {
// The rows built into the program, in no particular order.
const RelocEntry *StaticExportRows();
size_t StaticExportCount();
} // namespace kelp
