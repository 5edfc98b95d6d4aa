// Numbers as text and text as numbers, shared by Str, Format, Val and CDbl.
#pragma once
#include <string>

namespace kelp::text {

enum class NumberMode { kFixed, kExponent };

// The value with `digits` digits: after the point in fixed mode, in all in
// exponent mode.  Always a "." for the point, never a negative zero.
std::string NumberToText(double value, NumberMode mode, int digits);

// The locale's decimal point and thousands separator ("." and "," when the
// locale leaves them empty).
std::string LocaleDecimalPoint();
std::string LocaleThousandsSeparator();

} // namespace kelp::text
