// UserCancelled reads the Escape key as the X server has it, so a long
// calculation can be cancelled before the program has any window.  The key
// is pressed through the server's test extension, as a person would.
#include "support/xvfb.h"

#include "kelp/runloop.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

TEST(EscapeKey, UserCancelledFollowsEscapeWithNoWindowOpen) {
    if (!kelp::test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    if (std::system("command -v xdotool >/dev/null") != 0)
        GTEST_SKIP() << "xdotool is not installed";
    const struct {
        const char *action;
        uint8_t cancelled;
    } steps[] = {{"keydown", 1}, {"keyup", 0}, {"keydown", 1}, {"keyup", 0}};
    for (const auto &step : steps) {
        ASSERT_EQ(std::system(("xdotool " + std::string(step.action) + " Escape").c_str()), 0);
        EXPECT_EQ(getUserCancelled(), step.cancelled) << step.action;
    }
}

} // namespace
