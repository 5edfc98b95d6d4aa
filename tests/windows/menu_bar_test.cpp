// Hiding the menu bar comes with the promise that it comes back at the
// run-down.
#include "shutdown/shutdown_task.h"
#include "windows/menu_bar.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<bool> gMenuBar;
void RecordMenuBar(bool visible) { gMenuBar.push_back(visible); }

TEST(ShutdownTasks, AHiddenMenuBarIsShownAgainOnceOrAtTheRunDown) {
    auto old = kelp::SetMenuBarVisibility(&RecordMenuBar);
    gMenuBar.clear();
    kelp::HideMenuBar();
    kelp::HideMenuBar();
    EXPECT_TRUE(kelp::MenuBarHidden());
    kelp::ShowMenuBar();
    EXPECT_FALSE(kelp::MenuBarHidden());
    EXPECT_EQ(gMenuBar, (std::vector<bool>{false, true}));
    EXPECT_EQ(kelp::ShutdownTaskListHead(), nullptr) << "no task while the bar is shown";
    kelp::HideMenuBar();
    kelp::RunShutdownTasks();
    EXPECT_FALSE(kelp::MenuBarHidden());
    EXPECT_EQ(gMenuBar, (std::vector<bool>{false, true, false, true}));
    kelp::SetMenuBarVisibility(old);
}

} // namespace
