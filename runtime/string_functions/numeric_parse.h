// Whether a text is a number as the language writes one, and its value.
#pragma once
#include "strings/kstring.h"

namespace kelp {

// The strict reading behind IsNumeric.  A text of another 16-bit word is
// read as its UTF-8 form first, as Val does.
//
// "&h", "&o" or "&b" at the very start (either case) takes digits of base
// 16, 8 or 2, at least one, and may end in whitespace; the value is the one
// Val gives (a 32-bit pattern read as signed, so "&hFFFFFFFF" is -1).
//
// Otherwise: optional whitespace (blank, tab, line feed, carriage return),
// at most one sign, digits with commas between them before the point, at
// most one point, at least one digit in all, an optional exponent (e, E, d
// or D, an optional sign, at least one digit), optional whitespace.  The
// commas group digits, so "1,000" is 1000.
//
// Returns false for anything else, the empty text included, and then leaves
// `*value` alone.  `value` may be null when only the answer matters.
bool ParseNumberStrict(const string &text, double *value);

} // namespace kelp
