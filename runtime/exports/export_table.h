#pragma once
// The export name index: every function an image may bind, by name.  The
// static rows are built into the program and handed over by the roof at
// bring-up; class registration and plug-ins add rows while the program runs
// (AddExport, declared with the C exports in kelp/image.h).
#include "kelp/image.h"

#include <cstddef>
#include <string_view>

namespace kelp {

// Export names compare without regard to ASCII case.
bool NamesMatch(std::string_view a, std::string_view b);

// The rows built into the program, in no particular order; they stay the
// caller's.  Indexed before any row added at run time.
void SetStaticExportRows(const RelocEntry *rows, size_t count);
size_t StaticExportRowCount();

// The first row whose name matches, or null.
const RelocEntry *FindExport(std::string_view name);

} // namespace kelp
