// The runtime's random source: seeding, the step with its divisor, and the
// range of results.
#include "kelp/random.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

// The first results after a seeding, worked out from the generator's rule
// (state' = 16807 * (state mod 12773) - 2836 * (state div 12773), plus
// 0x7FFFFFFF when not positive; seven results dropped; low 20 bits / 2^20).
TEST(Random, SeededSequenceFollowsTheStepRule) {
    RuntimeRandomSeed(1);
    EXPECT_DOUBLE_EQ(rnd(), 0.1813507080078125);
    EXPECT_DOUBLE_EQ(rnd(), 0.26560211181640625);
    EXPECT_DOUBLE_EQ(rnd(), 0.2530794143676758);

    RuntimeRandomSeed(12345);
    EXPECT_DOUBLE_EQ(rnd(), 0.1578378677368164);
    EXPECT_DOUBLE_EQ(rnd(), 0.8327369689941406);
    EXPECT_DOUBLE_EQ(rnd(), 0.5742511749267578);
}

TEST(Random, SeedIsMaskedToThirtyOneBitsAndZeroBecomesOne) {
    RuntimeRandomSeed(1);
    const double a1 = rnd(), a2 = rnd();
    RuntimeRandomSeed(0);
    EXPECT_DOUBLE_EQ(rnd(), a1);
    EXPECT_DOUBLE_EQ(rnd(), a2);
    RuntimeRandomSeed(0x80000000u); // masks to zero, so it seeds with 1
    EXPECT_DOUBLE_EQ(rnd(), a1);
    RuntimeRandomSeed(0x80000001u); // masks to one
    EXPECT_DOUBLE_EQ(rnd(), a1);
}

TEST(Random, ResultsStayInTheUnitRangeOnTwentyBitSteps) {
    RuntimeRandomSeed(987654321u);
    double lowest = 1, highest = 0;
    for (int i = 0; i < 200000; ++i) {
        const double v = rnd();
        ASSERT_GE(v, 0.0);
        ASSERT_LT(v, 1.0);
        // Every result is a whole number of 2^-20 steps.
        const double scaled = v * 1048576.0;
        ASSERT_EQ(scaled, static_cast<double>(static_cast<int64_t>(scaled)));
        if (v < lowest)
            lowest = v;
        if (v > highest)
            highest = v;
    }
    EXPECT_LT(lowest, 0.01);
    EXPECT_GT(highest, 0.99);
}

TEST(Random, DifferentSeedsGiveDifferentSequences) {
    RuntimeRandomSeed(5);
    const double a = rnd(), b = rnd();
    RuntimeRandomSeed(6);
    const double c = rnd(), d = rnd();
    EXPECT_FALSE(a == c && b == d);
}

} // namespace
