// rnd: the runtime's random source.  A single 32-bit signed state word, zero
// until the first use seeds it from the clock.  The step is a multiplicative
// congruential step by Schrage's method with the divisor 12773, which images
// rely on to see the same sequences as before; only the low 20 bits of the
// state make the result.
#include "kelp/random.h"

#include <cstdint>
#include <ctime>

namespace {

int32_t gState = 0;

void Step() {
    const int32_t q = gState / 12773;
    const int32_t r = gState % 12773;
    // 16807 * r stays below 2^31 for r < 12773, and 2836 * q for any state,
    // so the difference is computed without overflow.
    int32_t next = 16807 * r - 2836 * q;
    if (next <= 0)
        next += 0x7FFFFFFF;
    gState = next;
}

void Seed(uint32_t value) {
    gState = static_cast<int32_t>(value & 0x7FFFFFFFu);
    if (gState == 0)
        gState = 1;
    for (int i = 0; i < 7; ++i)
        Step();
}

} // namespace

extern "C" double rnd(void) {
    if (gState == 0)
        Seed(static_cast<uint32_t>(std::time(nullptr)));
    Step();
    return static_cast<double>(gState & 0xFFFFF) * 9.5367431640625e-7;
}

extern "C" void RuntimeRandomSeed(uint32_t seed) { Seed(seed); }
