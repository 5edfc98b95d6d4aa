#pragma once
// The generator behind the Random class: a Mersenne twister per object, so
// that two objects seeded alike give the same numbers and no object disturbs
// the sequence of `rnd`.  A Number takes two 32-bit outputs and makes a
// double with 53 random bits, the usual way to fill a double's mantissa.
#include <cstdint>
#include <random>

namespace kelp {

class RandomGenerator {
public:
    explicit RandomGenerator(uint32_t seed) : mEngine(seed) {}
    void Seed(uint32_t seed) { mEngine.seed(seed); }
    // From 0 up to but not including 1.
    double Number();
    // From low to high, both included; the bounds may come in either order.
    int32_t InRange(int32_t low, int32_t high);
    // From 0 to limit - 1; 0 when limit is not positive.
    int32_t LessThan(int32_t limit);

private:
    std::mt19937 mEngine;
};

// A seed from the system's entropy source, else from the clocks.
uint32_t FreshSeed();

} // namespace kelp
