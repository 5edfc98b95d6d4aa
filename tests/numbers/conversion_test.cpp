// Float and integer conversions: truncation towards zero, and what a value
// outside the integer's range or NaN gives.
#include "kelp/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

TEST(FloatToInt, TruncatesTowardsZeroAndSaturates) {
    const struct {
        double in;
        int32_t out;
    } rows[] = {{0.0, 0},
                {2.9, 2},
                {-2.9, -2},
                {0.999999, 0},
                {-0.5, 0},
                {2147483647.0, INT32_MAX},
                {2147483648.5, INT32_MAX},
                {-2147483648.0, INT32_MIN},
                {-1e300, INT32_MIN},
                {1e300, INT32_MAX},
                {std::nan(""), 0},
                {std::numeric_limits<double>::infinity(), INT32_MAX}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.in);
        EXPECT_EQ(RuntimeFloatToInt(row.in), row.out);
    }
    // Every value of rnd() * n + 1 stays within 1 .. n, as the drill needs.
    for (int n = 1; n <= 87; ++n) {
        EXPECT_EQ(RuntimeFloatToInt(0.0 * n + 1), 1);
        EXPECT_EQ(RuntimeFloatToInt(0.99999904632568359375 * n + 1), n);
    }
}

TEST(FloatToUInt, ClampsAtBothEnds) {
    EXPECT_EQ(RuntimeFloatToUInt(-1.0), 0u);
    EXPECT_EQ(RuntimeFloatToUInt(3.7), 3u);
    EXPECT_EQ(RuntimeFloatToUInt(4294967295.0), UINT32_MAX);
    EXPECT_EQ(RuntimeFloatToUInt(1e20), UINT32_MAX);
    EXPECT_EQ(RuntimeFloatToUInt(std::nan("")), 0u);
}

TEST(IntToFloat, IsExactForEveryInteger) {
    EXPECT_EQ(RuntimeIntToFloat(INT32_MIN), -2147483648.0);
    EXPECT_EQ(RuntimeIntToFloat(-1), -1.0);
    EXPECT_EQ(RuntimeUIntToFloat(UINT32_MAX), 4294967295.0);
    for (int32_t v = -1000; v <= 1000; ++v)
        ASSERT_EQ(RuntimeFloatToInt(RuntimeIntToFloat(v)), v);
}

} // namespace
