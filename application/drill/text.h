// Text: the drill's handle on a runtime string.
//
// The drill holds every string as the runtime's own stringStorage record, as
// compiled code of an image does, and reaches the runtime only through the
// exported string functions.  Text owns one reference and gives it back when
// it goes; copying a Text takes another reference.  A null record is the
// empty string.
//
// Literals are written "some words"_k.  Each distinct literal becomes one
// long-lived record with a count that never falls to zero, the way an image's
// string constants are laid out; using it costs one lock and no allocation.
#pragma once

#include "kelp/kelp.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace sumbrook {

class Text {
public:
    Text() = default;
    Text(const Text &other);
    Text(Text &&other) noexcept : mStorage(other.mStorage) { other.mStorage = nullptr; }
    Text &operator=(const Text &other);
    Text &operator=(Text &&other) noexcept;
    ~Text();

    // Takes over a reference the caller owns (a runtime function's result).
    static Text Adopt(stringStorage *owned) {
        Text t;
        t.mStorage = owned;
        return t;
    }
    // Takes a new reference to a record somebody else owns.
    static Text Borrow(stringStorage *borrowed);

    stringStorage *get() const { return mStorage; }
    // Hands the reference over to the caller, who must unlock it.
    stringStorage *release() {
        stringStorage *s = mStorage;
        mStorage = nullptr;
        return s;
    }

    int32_t Length() const { return mStorage ? mStorage->length : 0; }
    bool Empty() const { return Length() == 0; }
    // The bytes of the text (no length byte); valid while this Text lives.
    std::string_view View() const;
    std::string ToStd() const { return std::string(View()); }

    // Concatenation through the runtime's RuntimeAddString.
    friend Text operator+(const Text &a, const Text &b);
    Text &operator+=(const Text &b);

    // The runtime's comparison: case-insensitive, as the language compares.
    friend bool SameText(const Text &a, const Text &b);

private:
    stringStorage *mStorage = nullptr;
};

namespace detail {

template <std::size_t N> struct FixedChars {
    char chars[N]{};
    constexpr FixedChars(const char (&s)[N]) {
        for (std::size_t i = 0; i < N; ++i)
            chars[i] = s[i];
    }
};

// The layout of an image's string constant: the record, then the length byte,
// the text and a NUL.
template <std::size_t N> struct LiteralBlock {
    stringStorage record;
    uint8_t bytes[N + 1];
    explicit LiteralBlock(const char (&s)[N]) {
        const std::size_t len = N - 1;
        bytes[0] = static_cast<uint8_t>(len < 255 ? len : 255);
        for (std::size_t i = 0; i < N; ++i)
            bytes[i + 1] = static_cast<uint8_t>(s[i]);
        record.referenceCount = 1; // the reference nobody releases
        record.buffer = bytes;
        record.capacity = static_cast<uint32_t>(N + 1);
        record.length = static_cast<int32_t>(len);
        record.encoding = kEncodingUTF8;
    }
};

template <FixedChars S> stringStorage *LiteralStorage() {
    if constexpr (sizeof(S.chars) == 1) {
        return nullptr; // "" is the null string
    } else {
        static LiteralBlock<sizeof(S.chars)> block(S.chars);
        return &block.record;
    }
}

} // namespace detail

inline namespace literals {
template <detail::FixedChars S> Text operator""_k() {
    return Text::Borrow(detail::LiteralStorage<S>());
}
} // namespace literals

// Str of a whole number, through the runtime's StringStr.
Text Str(int32_t value);

} // namespace sumbrook
