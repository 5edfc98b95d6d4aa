// Window(index) walks the windows from the front, each as a new reference.
#include "window_fixture.h"

#include "kelp/windows.h"

namespace kelp {
namespace {

class WindowIndexTest : public test::WindowFixture {
protected:
    void SetUp() override { SetUpWindowClass("wIndexed", {}); }
};

TEST_F(WindowIndexTest, EachWindowOnceFromTheFrontAndNilOutside) {
    const int32_t before = getWindowCount();
    std::vector<RuntimeObject *> ours;
    for (int i = 0; i < 3; ++i) {
        ours.push_back(MakeWith([](RuntimeObject *) {}));
        RuntimeShowWindow(ours.back());
    }
    Settle(50);
    ASSERT_EQ(getWindowCount(), before + 3);
    std::vector<int32_t> held;
    for (RuntimeObject *w : ours)
        held.push_back(w->referenceCount);
    std::vector<RuntimeObject *> seen;
    for (int32_t i = 0; i < getWindowCount(); ++i) {
        RuntimeObject *w = getWindow(i);
        ASSERT_NE(w, nullptr) << i;
        seen.push_back(w);
    }
    for (size_t i = 0; i < ours.size(); ++i) {
        EXPECT_EQ(std::count(seen.begin(), seen.end(), ours[i]), 1);
        EXPECT_EQ(ours[i]->referenceCount, held[i] + 1) << "Window(i) hands out a reference";
    }
    // A window brought forward becomes Window(0).
    BringToFront(View(ours[1])->pane);
    EXPECT_EQ(getWindow(0), ours[1]);
    RuntimeUnlockObject(ours[1]);
    for (RuntimeObject *w : seen)
        RuntimeUnlockObject(w);
    EXPECT_EQ(getWindow(getWindowCount()), nullptr);
    EXPECT_EQ(getWindow(-1), nullptr);
}

} // namespace
} // namespace kelp
