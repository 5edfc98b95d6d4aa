#pragma once
// Text between compiled code and the system, which speaks UTF-8.
#include "strings/kstring.h"

#include <string>

namespace kelp {

// The bytes of a string in UTF-8; empty for nil.
inline std::string SystemText(stringStorage *s) {
    if (!s)
        return {};
    const string utf8 = GetUTF8String(string::Wrap(s));
    return std::string(utf8.View());
}

// A new reference to text that came from the system.
inline stringStorage *FromSystem(const std::string &text) {
    return string::FromUTF8(text).ExtractStringStorage();
}

} // namespace kelp
