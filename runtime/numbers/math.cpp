// The language's number functions: thin calls of the C library, with the
// language's rules where they differ (Round halves away from zero, Sign of
// NaN is 0, integer conversions saturate).
#include "kelp/numbers.h"

#include <cmath>

extern "C" int32_t BitwiseAnd(int32_t a, int32_t b) { return a & b; }
extern "C" int32_t BitwiseOr(int32_t a, int32_t b) { return a | b; }
extern "C" int32_t BitwiseXor(int32_t a, int32_t b) { return a ^ b; }

extern "C" int32_t FPToInt(double value) { return RuntimeFloatToInt(value); }
extern "C" double IntToFP(int32_t value) { return value; }
extern "C" int32_t SingleToInt(float value) { return RuntimeFloatToInt(value); }

extern "C" double RuntimeAbs(double x) { return std::fabs(x); }
extern "C" double RuntimeACos(double x) { return std::acos(x); }
extern "C" double RuntimeASin(double x) { return std::asin(x); }
extern "C" double RuntimeATan(double x) { return std::atan(x); }
extern "C" double RuntimeATan2(double y, double x) { return std::atan2(y, x); }
extern "C" double RuntimeCeil(double x) { return std::ceil(x); }
extern "C" double RuntimeCos(double x) { return std::cos(x); }
extern "C" double RuntimeExp(double x) { return std::exp(x); }
extern "C" double RuntimeFloor(double x) { return std::floor(x); }
extern "C" double RuntimeLog(double x) { return std::log(x); }
extern "C" double RuntimeMax(double a, double b) { return a >= b ? a : b; }
extern "C" double RuntimeMin(double a, double b) { return a <= b ? a : b; }
extern "C" double RuntimePow(double base, double exponent) { return std::pow(base, exponent); }
extern "C" double RuntimeRound(double x) { return std::round(x); }
extern "C" int32_t RuntimeSign(double x) { return x > 0 ? 1 : x < 0 ? -1 : 0; }
extern "C" double RuntimeSin(double x) { return std::sin(x); }
extern "C" double RuntimeSqrt(double x) { return std::sqrt(x); }
extern "C" double RuntimeTan(double x) { return std::tan(x); }
