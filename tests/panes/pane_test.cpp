// The pane tree on real windows: parents chosen by geometry, widgets placed
// in the window's fixed, enter/exit routing, focus, capture, and panes that
// close themselves from inside their own event.
#include "panes/pane.h"
#include "windows/window.h"

#include "graphics/graphics_base.h"
#include "graphics/pixels.h"
#include "runloop/main_loop.h"
#include "support/settle.h"
#include "support/xvfb.h"

#include "kelp/runloop.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace kelp {
namespace {

std::vector<std::string> gLog;

class LogPane : public SubPane {
public:
    LogPane(SubPane *parent, Rect r, std::string name, GtkWidget *w = nullptr, bool takes = false)
        : SubPane(parent, r, w), mName(std::move(name)), mTakes(takes) {}
    ~LogPane() override { gLog.push_back(mName + ".destroyed"); }
    bool MouseDown(int32_t x, int32_t y, int32_t) override {
        gLog.push_back(mName + ".down " + std::to_string(x) + "," + std::to_string(y));
        if (closeOnDown)
            Close();
        return mTakes;
    }
    void MouseDrag(int32_t, int32_t) override { ++drags; }
    void MouseUp(int32_t, int32_t) override { gLog.push_back(mName + ".up"); }
    void MouseEnter() override { gLog.push_back(mName + ".enter"); }
    void MouseExit() override { gLog.push_back(mName + ".exit"); }
    void GainFocus() override { gLog.push_back(mName + ".gain"); }
    void LoseFocus() override { gLog.push_back(mName + ".lose"); }
    bool PassesClicksThrough() override { return passes; }
    bool closeOnDown = false;
    bool passes = false;
    int drags = 0;

private:
    std::string mName;
    bool mTakes;
};

Rect R(int left, int top, int w, int h) { return RectFromXYWH(left, top, w, h); }

class PaneTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!test::RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
        gLog.clear();
        mWindow = new Window("Panes", 4, true, R(50, 60, 300, 200));
        mWindow->Show();
        Settle(80);
    }
    void TearDown() override {
        if (mWindow)
            mWindow->Close();
        Settle(10);
    }
    static void Settle(int ms) { test::Settle(ms); }
    Window *mWindow = nullptr;
};

TEST_F(PaneTest, ChildGivenToTheWindowGoesUnderTheLastPaneThatEnclosesIt) {
    auto *group = new LogPane(mWindow, R(10, 10, 200, 150), "group");
    auto *inner = new LogPane(mWindow, R(20, 20, 50, 30), "inner");
    auto *outside = new LogPane(mWindow, R(250, 10, 20, 20), "outside");
    EXPECT_EQ(inner->Parent(), group);
    EXPECT_EQ(outside->Parent(), mWindow);
    EXPECT_EQ(mWindow->PanesInCreationOrder(), (std::vector<SubPane *>{group, inner, outside}));
    // An empty rectangle encloses nothing.
    auto *empty = new LogPane(mWindow, R(0, 0, 0, 0), "empty");
    auto *later = new LogPane(mWindow, R(0, 0, 0, 0), "later");
    EXPECT_EQ(later->Parent(), mWindow);
    (void)empty;
}

TEST_F(PaneTest, WidgetIsPlacedInTheFixedAndNegativeSizesRequestNothing) {
    GtkWidget *button = gtk_button_new_with_label("OK");
    gtk_widget_show(button);
    auto *pane = new LogPane(mWindow, R(30, 40, -10, 25), "button", button);
    EXPECT_EQ(gtk_widget_get_parent(button), mWindow->Fixed());
    int w = 0, h = 0;
    gtk_widget_get_size_request(button, &w, &h);
    EXPECT_GE(w, 0); // the toolkit turns a request of 0 into 1
    EXPECT_LE(w, 1);
    EXPECT_EQ(h, 25);
    EXPECT_EQ(pane->width, -10); // the bounds keep what the layout said
    pane->SetBounds(R(60, 70, 80, 30), false);
    // A loaded machine may take longer than a few passes to allocate.
    for (int waited = 0; waited < 3000 && button->allocation.width != 80; waited += 20)
        Settle(20);
    EXPECT_EQ(button->allocation.x, 60);
    EXPECT_EQ(button->allocation.y, 70);
    EXPECT_EQ(button->allocation.width, 80);
}

TEST_F(PaneTest, MovingAParentMovesItsChildrenBySameOffset) {
    auto *group = new LogPane(mWindow, R(10, 10, 100, 100), "group");
    auto *inner = new LogPane(mWindow, R(20, 30, 10, 10), "inner");
    group->SetBounds(R(40, 50, 100, 100), false);
    EXPECT_EQ(inner->bounds.left, 50);
    EXPECT_EQ(inner->bounds.top, 70);
    EXPECT_EQ(inner->width, 10);
}

TEST_F(PaneTest, MovingBetweenNestedPanesExitsBeforeItEnters) {
    new LogPane(mWindow, R(10, 10, 50, 50), "a");
    new LogPane(mWindow, R(100, 10, 50, 50), "b");
    mWindow->MouseMove(20, 20);
    mWindow->MouseMove(110, 20);
    mWindow->MouseMove(5, 5);
    EXPECT_EQ(gLog, (std::vector<std::string>{"a.enter", "a.exit", "b.enter", "b.exit"}));
}

TEST_F(PaneTest, PressGoesToTheTopPaneThatTakesItAndCapturesIt) {
    auto *below = new LogPane(mWindow, R(10, 10, 100, 100), "below", nullptr, true);
    auto *over = new LogPane(mWindow, R(50, 50, 100, 100), "over", nullptr, false);
    ASSERT_EQ(over->Parent(), mWindow); // overlapping siblings, over on top
    over->passes = true;                // like static text: the click goes through
    EXPECT_TRUE(mWindow->MouseDown(60, 60, 0));
    EXPECT_EQ(gLog, (std::vector<std::string>{"over.down 60,60", "below.down 60,60"}));
    EXPECT_EQ(MouseCapturePane(), below);
    SetMouseCapturePane(nullptr);
}

TEST_F(PaneTest, DecliningNativePaneBecomesTheNativeClickPane) {
    auto *native = new LogPane(mWindow, R(10, 10, 100, 100), "native", nullptr, false);
    EXPECT_TRUE(mWindow->MouseDown(30, 30, 0));
    EXPECT_EQ(mWindow->nativeClickPane, native);
    EXPECT_EQ(MouseCapturePane(), nullptr);
}

TEST_F(PaneTest, PaneClosingItselfInItsEventIsDestroyedAfterTheEvent) {
    auto *pane = new LogPane(mWindow, R(10, 10, 50, 50), "self", nullptr, true);
    pane->closeOnDown = true;
    ASSERT_TRUE(pane->LockForEvent());
    pane->MouseDown(20, 20, 0);
    // Still alive while the event runs; gone when it is over.
    EXPECT_EQ(std::count(gLog.begin(), gLog.end(), "self.destroyed"), 0);
    EXPECT_TRUE(pane->UnlockAfterEvent());
    EXPECT_EQ(std::count(gLog.begin(), gLog.end(), "self.destroyed"), 1);
    EXPECT_TRUE(mWindow->PanesInCreationOrder().empty());
    EXPECT_TRUE(mWindow->Children().empty());
}

TEST_F(PaneTest, ClosingAPaneLetsGoOfFocusAndCaptureAndTellsReceivers) {
    struct Receiver : PaneDeathNotificationReceiver {
        void PaneDied(SubPane *pane) override { died.push_back(pane); }
        std::vector<SubPane *> died;
    } receiver;
    auto *pane = new LogPane(mWindow, R(10, 10, 50, 50), "p");
    SetFocus(pane);
    SetMouseCapturePane(pane);
    pane->Close();
    EXPECT_EQ(FocusPane(), nullptr);
    EXPECT_EQ(MouseCapturePane(), nullptr);
    ASSERT_EQ(receiver.died.size(), 1u);
    EXPECT_EQ(receiver.died[0], pane);
    EXPECT_EQ(gLog, (std::vector<std::string>{"p.gain", "p.lose", "p.destroyed"}));
}

TEST_F(PaneTest, HidingTheFocusPaneClearsTheFocus) {
    auto *pane = new LogPane(mWindow, R(10, 10, 50, 50), "p");
    SetFocus(pane);
    pane->SetVisible(false);
    EXPECT_EQ(FocusPane(), nullptr);
    EXPECT_FALSE(pane->visible);
}

TEST_F(PaneTest, DisablingTheFocusPaneKeepsActivationFromGivingItBack) {
    auto *pane = new LogPane(mWindow, R(10, 10, 50, 50), "p");
    mWindow->SetStoredFocus(pane);
    SetFocus(pane);
    pane->SetEnabled(false, false);
    EXPECT_EQ(FocusPane(), nullptr);
    EXPECT_EQ(mWindow->StoredFocus(), nullptr);
    mWindow->Activate();
    EXPECT_NE(FocusPane(), pane);
    SetFocus(nullptr);
}

TEST_F(PaneTest, ErasingInAChildPaneShowsTheWindowsBackColour) {
    mWindow->SetBackdropColor(true, 0x3366CC);
    struct Case {
        const char *what;
        GtkWidget *widget;
    } cases[] = {{"own window", gtk_drawing_area_new()}, {"shared window", gtk_label_new("")}};
    int top = 10;
    for (const Case &c : cases) {
        gtk_widget_show(c.widget);
        auto *pane = new LogPane(mWindow, R(10, top, 40, 30), c.what, c.widget);
        Settle(60);
        ASSERT_TRUE(GTK_WIDGET_REALIZED(c.widget)) << c.what;
        Graphics *g = pane->NewGraphics();
        ASSERT_NE(g, nullptr) << c.what;
        g->EraseRect(pane->bounds);
        delete g;
        gdk_flush();
        const bool own = !GTK_WIDGET_NO_WINDOW(c.widget);
        GdkDrawable *drawable = GDK_DRAWABLE(c.widget->window);
        EXPECT_EQ(test::PixelAt(drawable, own ? 20 : 30, own ? 15 : top + 15), 0x3366CCu) << c.what;
        top += 50;
    }
}

TEST_F(PaneTest, ClosingTheWindowClosesItsChildrenFirst) {
    auto *group = new LogPane(mWindow, R(10, 10, 100, 100), "group");
    new LogPane(mWindow, R(20, 20, 10, 10), "inner");
    (void)group;
    mWindow->Close();
    mWindow = nullptr;
    EXPECT_EQ(gLog, (std::vector<std::string>{"inner.destroyed", "group.destroyed"}));
}

TEST_F(PaneTest, RealButtonPressAndReleaseReachTheCapturedPane) {
    auto *pane = new LogPane(mWindow, R(10, 10, 100, 100), "canvas", nullptr, true);
    GdkWindow *gw = mWindow->GtkWin()->window;
    ASSERT_NE(gw, nullptr);
    gdk_test_simulate_button(gw, 40, 50, 1, GdkModifierType(0), GDK_BUTTON_PRESS);
    Settle(60);
    EXPECT_EQ(MouseCapturePane(), pane);
    gdk_test_simulate_button(gw, 40, 50, 1, GDK_BUTTON1_MASK, GDK_BUTTON_RELEASE);
    Settle(60);
    EXPECT_EQ(MouseCapturePane(), nullptr);
    EXPECT_EQ(std::count(gLog.begin(), gLog.end(), "canvas.up"), 1);
    // One press, though the window and the pointer both saw it.
    EXPECT_EQ(std::count_if(gLog.begin(), gLog.end(),
                            [](const std::string &e) { return e.rfind("canvas.down", 0) == 0; }),
              1);
}

TEST_F(PaneTest, TabWalksTheFocusablePanesInCreationOrderAndShiftTabGoesBack) {
    auto button = [] {
        GtkWidget *b = gtk_button_new_with_label("B");
        gtk_widget_show(b);
        return b;
    };
    auto *first = new LogPane(mWindow, R(10, 10, 60, 25), "first", button());
    new LogPane(mWindow, R(10, 40, 60, 25), "plain"); // no widget: never takes focus
    auto *second = new LogPane(mWindow, R(10, 70, 60, 25), "second", button());
    auto *third = new LogPane(mWindow, R(10, 100, 60, 25), "third", button());
    third->SetEnabled(false, false); // a disabled pane is passed over
    EXPECT_TRUE(mWindow->KeyDownWindow(9, 0, 0));
    EXPECT_EQ(FocusPane(), first);
    EXPECT_TRUE(mWindow->KeyDownWindow(9, 0, 0));
    EXPECT_EQ(FocusPane(), second);
    EXPECT_TRUE(mWindow->KeyDownWindow(9, 0, 0));
    EXPECT_EQ(FocusPane(), first); // wraps round
    EXPECT_TRUE(mWindow->KeyDownWindow(9, 0, kModShift));
    EXPECT_EQ(FocusPane(), second);
    // With Control held, Tab is no navigation key.
    EXPECT_FALSE(mWindow->KeyDownWindow(9, 0, kModControl));
    EXPECT_EQ(FocusPane(), second);
    SetFocus(nullptr);
}

TEST_F(PaneTest, PointerOverAPaneWithACursorShowsThatCursor) {
    GdkCursor *cross = gdk_cursor_new(GDK_CROSSHAIR);
    auto *pane = new LogPane(mWindow, R(10, 10, 100, 80), "cursor");
    pane->cursor = cross;
    GdkWindow *gw = mWindow->GtkWin()->window;
    int ox = 0, oy = 0;
    gdk_window_get_origin(gw, &ox, &oy);
    GdkDisplay *display = gdk_display_get_default();
    gdk_display_warp_pointer(display, gdk_display_get_default_screen(display), ox + 40, oy + 40);
    Settle(80);
    EXPECT_EQ(gdk_window_get_cursor(gw), cross);
    gdk_display_warp_pointer(display, gdk_display_get_default_screen(display), ox + 250, oy + 150);
    Settle(80);
    EXPECT_EQ(gdk_window_get_cursor(gw), nullptr); // the toolkit's default outside it
    pane->Close();
    gdk_cursor_unref(cross);
}

// UserCancelled reads the Escape key as the X server has it, so a long
// calculation can be cancelled before the program has any window.
TEST(EscapeKey, UserCancelledFollowsEscapeWithNoWindowOpen) {
    if (!test::RequireToolkitDisplay())
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
} // namespace kelp
