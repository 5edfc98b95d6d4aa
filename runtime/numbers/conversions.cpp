// Conversions between the language's floats and integers.  The language
// truncates towards zero; values the integer can't hold saturate and NaN
// gives 0, where the bare machine instruction would give a garbage value.
#include "kelp/numbers.h"

#include <cmath>

extern "C" int32_t RuntimeFloatToInt(double value) {
    if (std::isnan(value))
        return 0;
    if (value >= 2147483647.0)
        return INT32_MAX;
    if (value <= -2147483648.0)
        return INT32_MIN;
    return static_cast<int32_t>(value);
}

extern "C" uint32_t RuntimeFloatToUInt(double value) {
    if (std::isnan(value) || value <= 0.0)
        return 0;
    if (value >= 4294967295.0)
        return UINT32_MAX;
    return static_cast<uint32_t>(value);
}

extern "C" double RuntimeIntToFloat(int32_t value) { return static_cast<double>(value); }

extern "C" double RuntimeUIntToFloat(uint32_t value) { return static_cast<double>(value); }
