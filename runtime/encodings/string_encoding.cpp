// The encoding of a string as the language asks about it: Encoding,
// DefineEncoding, ConvertEncoding, and a guess at Japanese text.
#include "encodings/text_encoding.h"

#include "strings/kstring.h"

#include "kelp/encodings.h"

namespace kelp {
namespace {

constexpr uint32_t kISO2022JP = 2080, kEUCJP = 2336, kShiftJIS = 2561;

enum class Guess { Unknown, ShiftJIS, EUCJP, Either, Escape };

// Reads the bytes until the guess is settled.  Each step moves at least one
// byte, so the scan ends at the text's end.
Guess GuessJapanese(const uint8_t *p, long length) {
    const uint8_t *end = p + length;
    Guess guess = Guess::Unknown;
    auto next = [&](const uint8_t *at) -> int { return at + 1 < end ? at[1] : -1; };
    while (p < end && (guess == Guess::Unknown || guess == Guess::Either)) {
        uint8_t c = *p;
        int n = next(p);
        if (c == 27) {
            int n2 = p + 2 < end ? p[2] : -1;
            if ((n == '$' && (n2 == 'B' || n2 == '@')) || n == 'K')
                return Guess::Escape;
        } else if ((c >= 129 && c <= 141) || (c >= 143 && c <= 159)) {
            return Guess::ShiftJIS;
        } else if (c == 142) {
            if ((n >= 64 && n <= 126) || (n >= 128 && n <= 160) || (n >= 224 && n <= 252))
                return Guess::ShiftJIS;
            if (n >= 161 && n <= 222)
                guess = Guess::Either;
        } else if (c >= 161 && c <= 223) {
            if (n >= 240 && n <= 254)
                return Guess::EUCJP;
            if (n >= 161 && n <= 223) {
                guess = Guess::Either;
            } else if (n >= 224 && n <= 239) {
                // Scan on: a later byte above 128 outside 141..159 and
                // 253..254 decides.
                for (const uint8_t *q = p + 2; q < end; ++q) {
                    if (*q > 128 && !(*q >= 141 && *q <= 159) && !(*q >= 253 && *q <= 254)) {
                        return *q >= 161 ? Guess::EUCJP : Guess::ShiftJIS;
                    }
                }
                guess = Guess::Either;
            } else if (n >= 0 && n < 160) {
                return Guess::ShiftJIS;
            }
            ++p; // the pair is read
        } else if (c >= 240 && c <= 254) {
            return Guess::EUCJP;
        } else if (c >= 224 && c <= 239) {
            if ((n >= 64 && n <= 126) || (n >= 128 && n <= 160))
                return Guess::ShiftJIS;
            if (n >= 253 && n <= 254)
                return Guess::EUCJP;
            if (n >= 161 && n <= 252)
                guess = Guess::Either;
            ++p;
        }
        ++p;
    }
    return guess;
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *StringGetEncoding(KelpString s) {
    if (!s)
        return SharedTextEncoding(kEncodingASCII);
    return SharedTextEncoding(s->encoding);
}

extern "C" KelpString StringSetEncoding(KelpString s, RuntimeObject *encoding) {
    if (!s)
        return nullptr;
    string text = string::Wrap(s);
    uint32_t word = WordOfEncodingObject(encoding);
    if (text.Encoding() == word)
        return text.ExtractStringStorage();
    // A new record: the caller's record is shared and keeps its word.
    return string::FromBytes(text.CString(), text.Length(), word).ExtractStringStorage();
}

extern "C" KelpString StringConvertEncoding(KelpString s, RuntimeObject *encoding) {
    if (!s)
        return nullptr;
    string text = string::Wrap(s);
    uint32_t word = WordOfEncodingObject(encoding);
    if (text.Encoding() == word)
        return text.ExtractStringStorage();
    return ConvertEncoding(text, word).ExtractStringStorage();
}

extern "C" RuntimeObject *guessJapaneseEncoding(KelpString s) {
    if (!s)
        return SharedTextEncoding(kEncodingASCII);
    if (s->encoding != kEncodingUnknown)
        return SharedTextEncoding(s->encoding);
    string text = string::Wrap(s);
    switch (GuessJapanese(reinterpret_cast<const uint8_t *>(text.CString()), text.Length())) {
    case Guess::Escape: return SharedTextEncoding(kISO2022JP);
    case Guess::EUCJP: return SharedTextEncoding(kEUCJP);
    case Guess::ShiftJIS: return SharedTextEncoding(kShiftJIS);
    default: return nullptr;
    }
}
