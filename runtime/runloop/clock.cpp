#include "runloop/clock.h"

#include <sys/times.h>
#include <unistd.h>

namespace kelp {
namespace {

double ClockTicksPerSecond() {
    static const double rate = [] {
        long r = sysconf(_SC_CLK_TCK);
        return r > 0 ? static_cast<double>(r) : 100.0;
    }();
    return rate;
}

} // namespace

int32_t TickCount() {
    struct tms unused;
    clock_t now = times(&unused);
    double ticks = static_cast<double>(now) / ClockTicksPerSecond() * 60.0;
    // Truncate, then wrap like the 32-bit counter compiled code expects.
    return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(static_cast<int64_t>(ticks))));
}

uint32_t MilliClockForTicks(int32_t ticks) {
    int64_t ms = static_cast<int64_t>(ticks) * 50 / 3 + 2147483648LL;
    return static_cast<uint32_t>(static_cast<uint64_t>(ms));
}

uint32_t MilliClock() { return MilliClockForTicks(TickCount()); }

} // namespace kelp
