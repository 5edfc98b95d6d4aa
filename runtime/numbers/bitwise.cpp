// The Bitwise module: logic and shifts on unsigned 32-bit words, narrowed to
// a count of low bits the way a program asks for a byte or a short.
#include "kelp/numbers.h"

namespace {

uint32_t MaskOf(int32_t bits) {
    return bits > 0 && bits < 32 ? (uint32_t{1} << bits) - 1 : 0xFFFFFFFFu;
}

int32_t WidthOf(int32_t bits) { return bits > 0 && bits < 32 ? bits : 32; }

} // namespace

extern "C" uint32_t RuntimeBitwiseAnd(uint32_t a, uint32_t b) { return a & b; }
extern "C" uint32_t RuntimeBitwiseOr(uint32_t a, uint32_t b) { return a | b; }
extern "C" uint32_t RuntimeBitwiseXor(uint32_t a, uint32_t b) { return a ^ b; }

extern "C" uint32_t RuntimeBitwiseShiftLeft(uint32_t value, int32_t shift, int32_t bits) {
    if (shift < 0)
        shift = 0;
    return shift >= WidthOf(bits) ? 0 : (value << shift) & MaskOf(bits);
}

extern "C" uint32_t RuntimeBitwiseShiftRight(uint32_t value, int32_t shift, int32_t bits) {
    if (shift < 0)
        shift = 0;
    return shift >= WidthOf(bits) ? 0 : (value & MaskOf(bits)) >> shift;
}

extern "C" uint32_t RuntimeOnesCompliment(uint32_t value, int32_t bits) {
    return ~value & MaskOf(bits);
}
