#pragma once
// Unicode helpers behind string comparison and UnicodeChar.
#include <cstdint>

namespace kelp {

// Case maps of the Basic Multilingual Plane; other characters stay as they
// are.
uint32_t UnicodeCharToUpper(uint32_t c);
uint32_t UnicodeCharToLower(uint32_t c);
// -1, 0 or 1; with `fold` both sides are compared in upper case.
int UnicodeCharCompare(uint32_t a, uint32_t b, bool fold);

// One code point from the lead byte's top bits (1 to 4 bytes); the
// continuation bytes are not checked.  Never reads at or beyond `end`.
uint32_t UTF8DecodeAndAdvance(const uint8_t *&p, const uint8_t *end);
// 1 to 4 bytes for values below 0x200000 (0 bytes otherwise), then a NUL.
int UTF8Encode(uint32_t c, uint8_t out[5]);

// Code point by code point (16-bit unit by unit), at equality the shorter
// text first.  -1, 0 or 1.
int UTF8StringCompare(const uint8_t *a, long lengthA, const uint8_t *b, long lengthB, bool fold);
int UCS2StringCompare(const uint8_t *a, long unitsA, const uint8_t *b, long unitsB, bool fold);

// Drops the one-entry conversion cache (and the two references it holds).
void ClearConversionCache();

} // namespace kelp
