#pragma once
// The run loop's clocks.  Both are computed on each use from the process
// clock, so they stay right across sleeps and need no thread of their own.
#include <cstdint>

namespace kelp {

// Sixtieths of a second of elapsed real time (the monotonic clock); wraps
// as a signed 32-bit count.
int32_t TickCount();

// Milliseconds at one-tick resolution: TickCount * 50 / 3 + 2^31, modulo 2^32.
uint32_t MilliClock();

// MilliClock for a tick count (the same formula, for callers holding one).
uint32_t MilliClockForTicks(int32_t ticks);

} // namespace kelp
