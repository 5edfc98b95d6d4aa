// An independent copy of the generator's rule, so that a test can know the
// draws a picker is about to see and work out its result by the rule alone.
#pragma once

#include <cstdint>

namespace drilltest {

class ReferenceRnd {
public:
    explicit ReferenceRnd(uint32_t seed) {
        state_ = static_cast<int64_t>(seed & 0x7FFFFFFFu);
        if (state_ == 0)
            state_ = 1;
        for (int i = 0; i < 7; ++i)
            Step();
    }
    double Next() {
        Step();
        return static_cast<double>(state_ & 0xFFFFF) / 1048576.0;
    }
    // fRandomTo(n) by its rule.
    int32_t To(int32_t n) { return static_cast<int32_t>(Next() * n + 1); }

private:
    void Step() {
        const int64_t q = state_ / 12773, r = state_ % 12773;
        int64_t next = 16807 * r - 2836 * q;
        if (next <= 0)
            next += 0x7FFFFFFF;
        state_ = next;
    }
    int64_t state_ = 1;
};

} // namespace drilltest
