#pragma once
// The few string operations the object runtime needs: class and event names,
// exception messages.  Kept in one place so that the object runtime depends
// on the string class through a narrow seam.
#include "kelp/records.h"

#include <cstddef>
#include <string_view>

namespace kelp::objtext {

// A new string holding `text` (ASCII); the caller owns the reference.
KelpString Make(std::string_view text);
void Retain(KelpString s);
void Release(KelpString s);

// The bytes of a string; empty for null.
std::string_view View(KelpString s);

// Name comparison as the language does it: ASCII letters without case.
bool SameName(std::string_view a, std::string_view b);
inline bool SameName(KelpString a, KelpString b) { return SameName(View(a), View(b)); }

} // namespace kelp::objtext
