#pragma once
// Text between the language's strings and the toolkit, which takes only
// valid UTF-8.
#include "kelp/records.h"

#include <string>
#include <string_view>

namespace kelp {

// The string as valid UTF-8: converted from its encoding, and any byte
// that is still not UTF-8 replaced by U+FFFD, so the widget never sees it.
std::string ToUtf8(KelpString text);
// A new string marked UTF-8 (the caller owns it); null for "".
KelpString MakeUtf8(std::string_view text);
// Characters of UTF-8 text.
int32_t CharCount(std::string_view utf8);
// Byte offset of character `chars` (clamped to the end).
size_t ByteOffset(std::string_view utf8, int32_t chars);

} // namespace kelp
