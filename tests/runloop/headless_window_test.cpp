// This test program never opens a display: windows must fail with a clear
// message and leave the program running, and the loop must go on.
#include "runloop/main_loop.h"
#include "windows/runtime_view.h"

#include "support/language_class.h"

#include "kelp/objects.h"
#include "kelp/windows.h"

#include <gtest/gtest.h>

#include <string>

namespace kelp {
namespace {

int gOpens = 0;
void OnOpen(RuntimeObject *) { ++gOpens; }

TEST(HeadlessWindow, ShowingAWindowWithoutDisplaySaysSoAndReturns) {
    RuntimeClass *klass = test::MakeSubclass("Window", "wHeadless");
    ASSERT_NE(klass, nullptr);
    ASSERT_TRUE(test::SetEventHandler(klass, "Open", reinterpret_cast<void *>(&OnOpen)));
    testing::internal::CaptureStderr();
    RuntimeObject *w = RuntimeNewObject(klass);
    RuntimeShowModal(w); // no window: returns instead of waiting forever
    RuntimeShowWindow(w);
    std::string err = testing::internal::GetCapturedStderr();
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(reinterpret_cast<ViewRecord *>(w)->pane, nullptr);
    EXPECT_EQ(gOpens, 0);
    EXPECT_NE(err.find("Window: no X display is available"), std::string::npos) << err;
    EXPECT_EQ(getWindowCount(), 0);
    MainLoopStep(false); // the loop goes on without windows
    RuntimeCloseWindow(w);
    RuntimeUnlockObject(w);
}

} // namespace
} // namespace kelp
