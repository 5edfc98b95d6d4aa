#pragma once
// Cell text is kept as UTF-8, the toolkit's own; these convert at the
// boundary with the language's strings.
#include "kelp/records.h"

#include <string>
#include <string_view>

namespace kelp::listbox {

std::string ToUtf8(KelpString text);
// A new string (the caller's reference); null for empty text.
KelpString MakeUtf8(std::string_view text);

} // namespace kelp::listbox
