#pragma once
// Unicode helpers behind string comparison and UnicodeChar.
#include "strings/kstring.h"

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

// One code point at `p` (see UTF8DecodeAndAdvance), without moving.
uint32_t UTF8Decode(const uint8_t *p, const uint8_t *end);
// Over `count` code points forward (skipping continuation bytes), stopping
// at `end`; backward stopping at `start`.
const uint8_t *AdvanceUTF8(const uint8_t *p, const uint8_t *end, long count);
const uint8_t *BackupUTF8(const uint8_t *p, const uint8_t *start, long count);
// True when no code point of the text has another case.
bool UTF8IsCaseless(const uint8_t *text, long length);

// Drops the one-entry conversion cache (and the two references it holds).
void ClearConversionCache();

} // namespace kelp

namespace kelp {

// Case changes of whole texts; the encoding word stays.  On UTF-8 each code
// point goes through the case maps and is re-encoded; on UTF-16 each unit.
// Capitalize raises each code point that starts a word (the text's start,
// or behind a code point of IsTextWhitespace) and lowers every other.  The bytes are
// read as UTF-8 (or 16-bit units) whatever the word says: the caller picks
// the function by the word.  An empty text comes back as it is.
// The one whitespace set of the text functions: trimming cuts it, and a
// word starts behind any of it for title case.
bool IsTextWhitespace(uint32_t c);

string UTF8ToUpper(const string &s);
string UTF8ToLower(const string &s);
string UTF8Capitalize(const string &s);
string UCS2ToUpper(const string &s);
string UCS2ToLower(const string &s);
string UCS2Capitalize(const string &s);

} // namespace kelp
