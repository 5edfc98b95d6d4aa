#pragma once
// The one ASCII case fold of the runtime.  Names of exports, classes,
// events, libraries and fonts compare without regard to the case of ASCII
// letters and of nothing else: a byte above 127 folds to itself whatever the
// locale says, so a name matches the same way on every machine.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kelp {

constexpr unsigned char AsciiUpper(unsigned char c) {
    return c >= 'a' && c <= 'z' ? static_cast<unsigned char>(c - 32) : c;
}

constexpr unsigned char AsciiLower(unsigned char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<unsigned char>(c + 32) : c;
}

// True when the two texts differ at most in the case of ASCII letters.
constexpr bool AsciiEqualNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (AsciiUpper(static_cast<unsigned char>(a[i])) !=
            AsciiUpper(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

// The text with its ASCII letters lowered: a key for maps of such names.
inline std::string AsciiLowered(std::string_view text) {
    std::string key(text);
    for (char &c : key)
        c = static_cast<char>(AsciiLower(static_cast<unsigned char>(c)));
    return key;
}

// FNV-1a over the upper-cased bytes: equal under AsciiEqualNoCase means
// equal hashes.
constexpr size_t AsciiFoldedHash(std::string_view text) {
    uint64_t h = 1469598103934665603ull;
    for (char c : text)
        h = (h ^ AsciiUpper(static_cast<unsigned char>(c))) * 1099511628211ull;
    return static_cast<size_t>(h);
}

} // namespace kelp
