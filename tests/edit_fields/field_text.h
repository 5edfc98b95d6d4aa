#pragma once
// Texts into and out of the runtime's strings, for the field tests.
#include "objects/text.h"
#include "strings/kstring.h"

#include <string>
#include <string_view>

namespace kelp::test {

inline KelpString Utf8(std::string_view text) {
    return string::FromUTF8(text).ExtractStringStorage();
}

// The bytes of a string handed to the caller, which lets go of it.
inline std::string Taken(KelpString s) {
    std::string out(objtext::View(s));
    objtext::Release(s);
    return out;
}

} // namespace kelp::test
