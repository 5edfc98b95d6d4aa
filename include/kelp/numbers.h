/* The runtime's number exports, as compiled code calls them. */
#ifndef KELP_NUMBERS_H
#define KELP_NUMBERS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Truncates towards zero; NaN gives 0 and values beyond the range give the
 * nearest end of the range. */
int32_t RuntimeFloatToInt(double value);
uint32_t RuntimeFloatToUInt(double value);
double RuntimeIntToFloat(int32_t value);
double RuntimeUIntToFloat(uint32_t value);

/* The language's number functions.  Max and Min of a NaN give the other
 * operand only when it is the first; Round halves away from zero; Sign is
 * -1, 0 or 1 (0 for NaN).  The rest are the C library's. */
int32_t BitwiseAnd(int32_t a, int32_t b);
int32_t BitwiseOr(int32_t a, int32_t b);
int32_t BitwiseXor(int32_t a, int32_t b);
int32_t FPToInt(double value);
double IntToFP(int32_t value);
int32_t SingleToInt(float value);
double RuntimeAbs(double x);
double RuntimeACos(double x);
double RuntimeASin(double x);
double RuntimeATan(double x);
double RuntimeATan2(double y, double x);
double RuntimeCeil(double x);
double RuntimeCos(double x);
double RuntimeExp(double x);
double RuntimeFloor(double x);
double RuntimeLog(double x);
double RuntimeMax(double a, double b);
double RuntimeMin(double a, double b);
double RuntimePow(double base, double exponent);
double RuntimeRound(double x);
int32_t RuntimeSign(double x);
double RuntimeSin(double x);
double RuntimeSqrt(double x);
double RuntimeTan(double x);

/* The Bitwise module on the low `bits` bits of a 32-bit value (1 to 32; any
 * other count means 32).  Shifts are logical and a shift of `bits` or more
 * gives 0; a negative shift leaves the value as it is.  Cannot fail. */
uint32_t RuntimeBitwiseAnd(uint32_t a, uint32_t b);
uint32_t RuntimeBitwiseOr(uint32_t a, uint32_t b);
uint32_t RuntimeBitwiseXor(uint32_t a, uint32_t b);
uint32_t RuntimeBitwiseShiftLeft(uint32_t value, int32_t shift, int32_t bits);
uint32_t RuntimeBitwiseShiftRight(uint32_t value, int32_t shift, int32_t bits);
uint32_t RuntimeOnesCompliment(uint32_t value, int32_t bits);

#ifdef __cplusplus
}
#endif

#endif
