// Ticks and Microseconds, the clocks a program reads to time itself.
#include "runloop/clock.h"

#include "kelp/runloop.h"

#include <time.h>

extern "C" int32_t RuntimeTicks(void) { return kelp::TickCount(); }

extern "C" double RuntimeMicroseconds(void) {
    // The fine clock: a program measures short stretches with it.
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}
