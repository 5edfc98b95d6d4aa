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

// The number functions where the language's rule is not the bare C one.
TEST(NumberFunctions, RoundingSignsAndIntegerForms) {
    struct Case {
        double value;
        double round;
        int32_t sign, fromSingle;
    } cases[] = {
        {2.5, 3.0, 1, 2},
        {-2.5, -3.0, -1, -2},
        {0.49999999999999994, 0.0, 1, 0},
        {-0.0, -0.0, 0, 0},
        {NAN, NAN, 0, 0},
        {1e10, 1e10, 1, INT32_MAX},
        {-1e10, -1e10, -1, INT32_MIN},
    };
    for (const Case &c : cases) {
        if (std::isnan(c.round))
            EXPECT_TRUE(std::isnan(RuntimeRound(c.value)));
        else
            EXPECT_EQ(RuntimeRound(c.value), c.round) << c.value;
        EXPECT_EQ(RuntimeSign(c.value), c.sign) << c.value;
        EXPECT_EQ(SingleToInt(static_cast<float>(c.value)), c.fromSingle) << c.value;
    }
    EXPECT_EQ(BitwiseXor(0x0F0F, 0x00FF), 0x0FF0);
    EXPECT_EQ(RuntimeMax(1.0, 2.0), 2.0);
    EXPECT_EQ(RuntimeMin(-1.0, 2.0), -1.0);
}
