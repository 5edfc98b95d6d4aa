#include "runloop/clock.h"

#include <time.h>

namespace kelp {

int32_t TickCount() {
    // Elapsed real time since an arbitrary start, like times(), but read
    // through the vDSO: compiled code asks for it at every loop back-edge,
    // where a system call per read would cost more than the loop body.  The
    // coarse clock's few milliseconds are finer than one tick.
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    int64_t ticks = static_cast<int64_t>(now.tv_sec) * 60 + now.tv_nsec / 16666667;
    // Wrap like the 32-bit counter compiled code expects.
    return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(ticks)));
}

uint32_t MilliClockForTicks(int32_t ticks) {
    int64_t ms = static_cast<int64_t>(ticks) * 50 / 3 + 2147483648LL;
    return static_cast<uint32_t>(static_cast<uint64_t>(ms));
}

uint32_t MilliClock() { return MilliClockForTicks(TickCount()); }

} // namespace kelp
