// The bring-up runs each registered step once, in its order.
#include "base/wiring.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<int> gSteps;
void StepLate() { gSteps.push_back(90); }
void StepEarly() { gSteps.push_back(10); }
void StepSockets() { gSteps.push_back(50); }
kelp::BringUpStep late(kelp::kBringUpLate, &StepLate);
kelp::BringUpStep early(kelp::kBringUpControlColours, &StepEarly);
kelp::BringUpStep sockets(kelp::kBringUpSockets, &StepSockets);

TEST(BringUp, StepsRunOnceInTheirOrder) {
    kelp::RunBringUpSteps();
    kelp::RunBringUpSteps();
    EXPECT_EQ(gSteps, (std::vector<int>{10, 50, 90}));
}

} // namespace
