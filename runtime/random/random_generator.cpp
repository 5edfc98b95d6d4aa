#include "random/random_generator.h"

#include <cmath>
#include <ctime>
#include <sys/random.h>

namespace kelp {

double RandomGenerator::Number() {
    const uint32_t high = mEngine() >> 5; // 27 bits
    const uint32_t low = mEngine() >> 6;  // 26 bits
    return (high * 67108864.0 + low) / 9007199254740992.0;
}

int32_t RandomGenerator::InRange(int32_t low, int32_t high) {
    if (high < low)
        std::swap(low, high);
    const double width = static_cast<double>(high) - low + 1; // up to 2^32: exact
    return static_cast<int32_t>(low + std::floor(Number() * width));
}

int32_t RandomGenerator::LessThan(int32_t limit) {
    return limit > 0 ? static_cast<int32_t>(std::floor(Number() * limit)) : 0;
}

uint32_t FreshSeed() {
    uint32_t seed = 0;
    if (getrandom(&seed, sizeof seed, GRND_NONBLOCK) == sizeof seed)
        return seed;
    struct timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<uint32_t>(now.tv_sec) ^ static_cast<uint32_t>(now.tv_nsec);
}

} // namespace kelp
