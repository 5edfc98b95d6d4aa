#pragma once
// Internal side of the export table (the C exports are in kelp/image.h).
#include "kelp/image.h"

#include <string_view>

namespace kelp {

// Export names compare without regard to ASCII case.
bool NamesMatch(std::string_view a, std::string_view b);

// The first row whose name matches, or null.
const RelocEntry *FindExport(std::string_view name);

} // namespace kelp
