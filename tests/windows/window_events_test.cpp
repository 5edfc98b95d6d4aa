// Events a person causes in a window of the language: keys, presses and
// drags, and the run ending when the last window goes.
#include "window_fixture.h"

#include "graphics/graphics_base.h"
#include "graphics/graphics_object.h"
#include "objects/text.h"
#include "process/quit.h"

#include "kelp/runloop.h"
#include "kelp/startup.h"
#include "kelp/windows.h"

#include <gdk/gdkkeysyms.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kelp {
namespace {

std::vector<std::string> gEvents;

uint8_t OnKeyDown(RuntimeObject *, KelpString key) {
    gEvents.push_back("KeyDown " + std::string(objtext::View(key)));
    return 1;
}
uint8_t OnMouseDown(RuntimeObject *, int32_t x, int32_t y) {
    gEvents.push_back("MouseDown " + std::to_string(x) + "," + std::to_string(y));
    return 1;
}
uint8_t OnMouseDownCloses(RuntimeObject *self, int32_t, int32_t) {
    gEvents.push_back("MouseDown");
    RuntimeCloseWindow(self);
    return 1;
}
void OnMouseDrag(RuntimeObject *, int32_t, int32_t) {
    if (gEvents.empty() || gEvents.back() != "MouseDrag")
        gEvents.push_back("MouseDrag");
}
void OnMouseUp(RuntimeObject *, int32_t, int32_t) { gEvents.push_back("MouseUp"); }
void OnClose(RuntimeObject *) { gEvents.push_back("Close"); }
void OnActivate(RuntimeObject *) { gEvents.push_back("Activate"); }
void OnDeactivate(RuntimeObject *) { gEvents.push_back("Deactivate"); }
void OnLayout(RuntimeObject *self) {
    windowPosSetter(self, offsetof(ViewRecord, width), 200);
    windowPosSetter(self, offsetof(ViewRecord, height), 150);
    reinterpret_cast<ViewRecord *>(self)->frame = 4;
    reinterpret_cast<ViewRecord *>(self)->placement = 2;
}

class WindowEventsTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!test::RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
        gEvents.clear();
        ResetRunState();
        mKlass = test::MakeSubclass("Window", "wEvents");
        ASSERT_NE(mKlass, nullptr);
        for (const auto &[name, code] : {std::pair<const char *, void *>{"Layout", Code(&OnLayout)},
                                         {"KeyDown", Code(&OnKeyDown)},
                                         {"MouseDown", Code(&OnMouseDown)},
                                         {"MouseDrag", Code(&OnMouseDrag)},
                                         {"MouseUp", Code(&OnMouseUp)},
                                         {"Close", Code(&OnClose)}})
            ASSERT_TRUE(test::SetEventHandler(mKlass, name, code)) << name;
    }
    void TearDown() override { ResetRunState(); }
    template <typename F> static void *Code(F *f) { return reinterpret_cast<void *>(f); }
    static void Settle(int ms) { test::Settle(ms); }
    static ViewRecord *View(RuntimeObject *w) { return reinterpret_cast<ViewRecord *>(w); }
    static GdkWindow *GdkOf(RuntimeObject *w) { return View(w)->pane->GtkWin()->window; }
    // The window's GdkWindow once the server shows it; null if it never does.
    static GdkWindow *Shown(RuntimeObject *w) {
        test::SettleUntil([w] { return GdkOf(w) && gdk_window_is_viewable(GdkOf(w)); });
        Settle(20); // and the expose and focus notices that follow the map
        return GdkOf(w) && gdk_window_is_viewable(GdkOf(w)) ? GdkOf(w) : nullptr;
    }
    static bool EventsReach(size_t n) {
        return test::SettleUntil([n] { return gEvents.size() >= n; });
    }
    RuntimeClass *mKlass = nullptr;
};

TEST_F(WindowEventsTest, KeyPressReachesKeyDownAsText) {
    RuntimeObject *w = RuntimeNewObject(mKlass);
    GdkWindow *gw = Shown(w);
    ASSERT_NE(gw, nullptr);
    gdk_test_simulate_key(gw, -1, -1, GDK_a, GdkModifierType(0), GDK_KEY_PRESS);
    gdk_test_simulate_key(gw, -1, -1, GDK_Return, GdkModifierType(0), GDK_KEY_PRESS);
    EventsReach(2);
    Settle(20); // and nothing more
    EXPECT_EQ(gEvents, (std::vector<std::string>{"KeyDown a", "KeyDown \r"}));
    RuntimeCloseWindow(w);
    RuntimeUnlockObject(w);
}

TEST_F(WindowEventsTest, PressDragAndReleaseGoToTheWindowThatTookThePress) {
    RuntimeObject *w = RuntimeNewObject(mKlass);
    GdkWindow *gw = Shown(w);
    ASSERT_NE(gw, nullptr);
    gdk_test_simulate_button(gw, 30, 40, 1, GdkModifierType(0), GDK_BUTTON_PRESS);
    ASSERT_TRUE(EventsReach(1));
    EXPECT_EQ(gEvents.front(), "MouseDown 30,40");
    EXPECT_EQ(MouseCapturePane(), View(w)->pane);
    gdk_test_simulate_button(gw, 30, 40, 1, GDK_BUTTON1_MASK, GDK_BUTTON_RELEASE);
    test::SettleUntil([] { return gEvents.back() == "MouseUp"; });
    EXPECT_EQ(gEvents.back(), "MouseUp");
    EXPECT_EQ(MouseCapturePane(), nullptr);
    RuntimeCloseWindow(w);
    RuntimeUnlockObject(w);
}

TEST_F(WindowEventsTest, ClosingTheLastWindowEndsARunWithAutoQuit) {
    RuntimeRegisterAppObject(nullptr);
    static RuntimeObject *w;
    w = RuntimeNewObject(mKlass);
    g_timeout_add(
        80,
        [](gpointer) -> gboolean {
            RuntimeCloseWindow(w);
            return FALSE;
        },
        nullptr);
    RuntimeRun(); // blocks in the toolkit until the window is gone
    EXPECT_TRUE(QuitRequested());
    EXPECT_EQ(View(w)->pane, nullptr);
    EXPECT_EQ(std::count(gEvents.begin(), gEvents.end(), "Close"), 1);
    RuntimeUnlockObject(w);
}

TEST_F(WindowEventsTest, RunEndClosesTheWindowsThatAreLeft) {
    RuntimeRegisterAppObject(nullptr);
    RuntimeObject *a = RuntimeNewObject(mKlass);
    RuntimeObject *b = RuntimeNewObject(mKlass);
    g_timeout_add(
        50,
        [](gpointer) -> gboolean {
            RequestQuit();
            return FALSE;
        },
        nullptr);
    RuntimeRun();
    EXPECT_EQ(getWindowCount(), 0);
    EXPECT_EQ(std::count(gEvents.begin(), gEvents.end(), "Close"), 2);
    EXPECT_EQ(getAppObject(), nullptr);
    RuntimeUnlockObject(a);
    RuntimeUnlockObject(b);
}

TEST_F(WindowEventsTest, WindowClosedFromItsOwnMouseDownLeavesNoCapture) {
    test::SetEventHandler(mKlass, "MouseDown", reinterpret_cast<void *>(&OnMouseDownCloses));
    RuntimeObject *w = RuntimeNewObject(mKlass);
    GdkWindow *gw = Shown(w);
    ASSERT_NE(gw, nullptr);
    gdk_test_simulate_button(gw, 20, 20, 1, GdkModifierType(0), GDK_BUTTON_PRESS);
    EventsReach(2);
    EXPECT_EQ(gEvents, (std::vector<std::string>{"MouseDown", "Close"}));
    EXPECT_EQ(View(w)->pane, nullptr);
    EXPECT_EQ(MouseCapturePane(), nullptr);
    Settle(20); // further passes touch nothing of the closed window
    RuntimeUnlockObject(w);
}

TEST_F(WindowEventsTest, FocusMovingBetweenWindowsActivatesAndDeactivates) {
    test::SetEventHandler(mKlass, "Activate", reinterpret_cast<void *>(&OnActivate));
    test::SetEventHandler(mKlass, "Deactivate", reinterpret_cast<void *>(&OnDeactivate));
    RuntimeObject *a = RuntimeNewObject(mKlass);
    RuntimeObject *b = RuntimeNewObject(mKlass);
    // A loaded machine maps windows and moves the focus late: wait for
    // each (boundedly), so that a late event fails the test, not a fixed
    // sleep, and a missing one is a failure, not a crash.
    auto settleUntil = [](const std::function<bool()> &done) { test::SettleUntil(done); };
    auto gdkOf = &GdkOf;
    auto viewable = [&] {
        return gdkOf(a) && gdkOf(b) && gdk_window_is_viewable(gdkOf(a)) &&
               gdk_window_is_viewable(gdkOf(b));
    };
    settleUntil(viewable);
    ASSERT_TRUE(viewable());
    GdkWindow *aw = gdkOf(a), *bw = gdkOf(b);
    settleUntil([&] { return !gEvents.empty(); }); // a window may take the focus as it maps
    // No window manager runs: give the input focus the way one would.
    gEvents.clear();
    gdk_window_focus(aw, GDK_CURRENT_TIME);
    settleUntil([&] { return FrontWindow() == View(a)->pane && !gEvents.empty(); });
    ASSERT_FALSE(gEvents.empty());
    EXPECT_EQ(gEvents.back(), "Activate");
    EXPECT_EQ(FrontWindow(), View(a)->pane);
    gEvents.clear();
    gdk_window_focus(bw, GDK_CURRENT_TIME);
    settleUntil([&] { return gEvents.size() >= 2; });
    EXPECT_EQ(gEvents, (std::vector<std::string>{"Deactivate", "Activate"}));
    EXPECT_EQ(FrontWindow(), View(b)->pane);
    RuntimeCloseWindow(a);
    RuntimeCloseWindow(b);
    RuntimeUnlockObject(a);
    RuntimeUnlockObject(b);
}

TEST_F(WindowEventsTest, GraphicsPropertyDrawsAtOnceOutsideAnyPaint) {
    RuntimeObject *w = RuntimeNewObject(mKlass);
    ASSERT_NE(Shown(w), nullptr);
    RuntimeObject *graphics = windowGraphicsGetter(w, 0);
    Graphics *g = GraphicsOfObject(graphics);
    ASSERT_NE(g, nullptr);
    g->SetForeColor(ColorWordToRGB(0x00ff00));
    g->FillRect(RectFromXYWH(0, 0, 20, 20));
    gdk_flush();
    GdkImage *image = gdk_drawable_get_image(View(w)->pane->GtkWin()->window, 5, 5, 1, 1);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(gdk_image_get_pixel(image, 0, 0) & 0xffffff, 0x00ff00u);
    g_object_unref(image);
    RuntimeObject *same = windowGraphicsGetter(w, 0);
    EXPECT_EQ(same, graphics); // one Graphics object per window
    RuntimeUnlockObject(same);
    RuntimeCloseWindow(w);
    EXPECT_EQ(GraphicsOfObject(graphics), nullptr); // kept past the close, it draws nothing
    RuntimeUnlockObject(graphics);
    RuntimeUnlockObject(w);
}

} // namespace
} // namespace kelp
