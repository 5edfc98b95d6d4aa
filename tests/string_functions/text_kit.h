// Helpers of the string function tests: strings of a given word, reading
// results back (and releasing them), and 16-bit text.
#pragma once
#include "kelp/string_functions.h"
#include "kelp/strings.h"
#include "strings/kstring.h"

#include <string>

namespace texttest {

// A string record with the given word; empty text gives null, as the
// runtime represents it.
inline stringStorage *Make(const std::string &text, uint32_t word = kEncodingUTF8) {
    return kelp::string::FromBytes(text.data(), (long)text.size(), word).Release();
}

// Holds an argument for the length of a test and lets go of it after.
struct Arg {
    stringStorage *s;
    explicit Arg(const std::string &text, uint32_t word = kEncodingUTF8) : s(Make(text, word)) {}
    ~Arg() { RuntimeUnlockString(s); }
    operator stringStorage *() const { return s; }
    Arg(const Arg &) = delete;
    Arg &operator=(const Arg &) = delete;
};

// Takes a result: its bytes, and the reference released.
inline std::string Take(stringStorage *s) {
    std::string out =
        s ? std::string(reinterpret_cast<const char *>(s->buffer + 1), (size_t)s->length) : "";
    RuntimeUnlockString(s);
    return out;
}

inline uint32_t WordOf(stringStorage *s) { return s ? s->encoding : kEncodingASCII; }

// UTF-16 in machine order from ASCII text.
inline std::string Wide(const std::string &ascii) {
    std::string out;
    for (char c : ascii) {
        out += c;
        out += '\0';
    }
    return out;
}

} // namespace texttest
