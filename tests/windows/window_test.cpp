// Windows of the language on a real X server: what the server reports for
// title, size and position, pixels painted by the Paint event, and the
// order of events from open to close.
#include "window_fixture.h"

#include "graphics/graphics_base.h"
#include "graphics/graphics_object.h"
#include "objects/text.h"
#include "process/quit.h"

#include "kelp/runloop.h"
#include "kelp/windows.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace kelp {
namespace {

std::vector<std::string> gLog;
bool gRefuse = false;
bool gCloseInOpen = false;
uint32_t gPaintColour = 0;

void OnOpen(RuntimeObject *self) {
    gLog.push_back("Open");
    if (gCloseInOpen)
        RuntimeCloseWindow(self);
}
void OnClose(RuntimeObject *) { gLog.push_back("Close"); }
uint8_t OnCancelClose(RuntimeObject *, uint8_t quitting) {
    gLog.push_back(quitting ? "CancelClose(quitting)" : "CancelClose");
    return gRefuse ? 1 : 0;
}
void OnMoved(RuntimeObject *) { gLog.push_back("Moved"); }
void OnResized(RuntimeObject *) { gLog.push_back("Resized"); }
void OnPaint(RuntimeObject *, RuntimeObject *graphics) {
    gLog.push_back("Paint");
    Graphics *g = GraphicsOfObject(graphics);
    ASSERT_NE(g, nullptr);
    g->SetForeColor(ColorWordToRGB(gPaintColour));
    g->FillRect(RectFromXYWH(10, 10, 50, 40));
}

class WindowTest : public test::WindowFixture {
protected:
    void SetUp() override {
        gLog.clear();
        gRefuse = gCloseInOpen = false;
        SetUpWindowClass("wTest", {{"Open", reinterpret_cast<void *>(&OnOpen)},
                                   {"Close", reinterpret_cast<void *>(&OnClose)},
                                   {"CancelClose", reinterpret_cast<void *>(&OnCancelClose)},
                                   {"Moved", reinterpret_cast<void *>(&OnMoved)},
                                   {"Resized", reinterpret_cast<void *>(&OnResized)}});
    }

    RuntimeObject *Make(int left, int top, int width, int height, const char *title, int frame = 0,
                        int placement = 0) {
        return MakeWith([=](RuntimeObject *self) {
            windowPosSetter(self, offsetof(ViewRecord, left), left);
            windowPosSetter(self, offsetof(ViewRecord, top), top);
            windowPosSetter(self, offsetof(ViewRecord, width), width);
            windowPosSetter(self, offsetof(ViewRecord, height), height);
            KelpString t = test::MakeText(title);
            windowTitleSetter(self, 0, t);

            objtext::Release(t);
            View(self)->frame = frame;
            View(self)->placement = placement;
        });
    }
};

TEST_F(WindowTest, ShownOnTheNextPassWithTitleSizeAndPlace) {
    RuntimeObject *w = Make(100, 120, 400, 300, "Sumbrook Drill", 1);
    ASSERT_NE(View(w)->pane, nullptr);
    EXPECT_FALSE(GTK_WIDGET_VISIBLE(View(w)->pane->GtkWin())); // deferred to the pre-step
    Settle(150);
    test::XInfo info = Query(w);
    EXPECT_TRUE(info.mapped);
    EXPECT_EQ(info.title, "Sumbrook Drill");
    EXPECT_EQ(info.width, 400);
    EXPECT_EQ(info.height, 300);
    // A movable modal frame is centred on the main screen, a third down.
    EXPECT_EQ(info.x, (1280 - 400) / 2);
    EXPECT_EQ(info.y, (1024 - 300) / 3);
    EXPECT_EQ(View(w)->left, info.x);
    EXPECT_EQ(gLog.front(), "Open");
}

TEST_F(WindowTest, DocumentWindowsStaggerFromTheTopOne) {
    RuntimeObject *a = Make(0, 0, 200, 150, "A");
    RuntimeObject *b = Make(0, 0, 200, 150, "B");
    Settle(150);
    test::XInfo ia = Query(a), ib = Query(b);
    EXPECT_EQ(ia.x, 10);
    EXPECT_EQ(ia.y, 50);
    EXPECT_EQ(ib.x, 30);
    EXPECT_EQ(ib.y, 70);
}

TEST_F(WindowTest, BoundsLargerThanTheScreenAreKeptInside) {
    RuntimeObject *w = Make(0, 0, 3000, 2000, "Huge", 4, 4);
    // Left 2 in, top 25 down, right and bottom 2 inside the screen.
    EXPECT_EQ(View(w)->left, 2);
    EXPECT_EQ(View(w)->top, 25);
    EXPECT_EQ(View(w)->left + View(w)->width, 1278);
    EXPECT_EQ(View(w)->top + View(w)->height, 1022);
}

TEST_F(WindowTest, PaintEventDrawsIntoTheWindow) {
    ASSERT_TRUE(test::SetEventHandler(klass, "Paint", reinterpret_cast<void *>(&OnPaint)));
    gPaintColour = 0xff0000;
    RuntimeObject *w = Make(0, 0, 120, 100, "Paint", 4, 2);
    windowHasBackColorSetter(w, 0, 1);
    windowBackColorSetter(w, 0, 0x0000ff);
    Settle(200);
    formRefresh(w, 1);
    GdkWindow *gw = View(w)->pane->GtkWin()->window;
    GdkImage *image = gdk_drawable_get_image(gw, 0, 0, 120, 100);
    ASSERT_NE(image, nullptr);
    guint32 inside = gdk_image_get_pixel(image, 30, 30);
    guint32 outside = gdk_image_get_pixel(image, 100, 80);
    g_object_unref(image);
    EXPECT_EQ(inside & 0xffffff, 0xff0000u);
    EXPECT_EQ(outside & 0xffffff, 0x0000ffu); // the back colour erased the rest
    EXPECT_NE(std::find(gLog.begin(), gLog.end(), "Paint"), gLog.end());
}

TEST_F(WindowTest, CloseFiresCancelCloseThenCloseAndTearsDown) {
    RuntimeObject *w = Make(0, 0, 100, 100, "C");
    Settle(60);
    gLog.clear();
    int before = getWindowCount();
    RuntimeCloseWindow(w);
    EXPECT_EQ(gLog, (std::vector<std::string>{"CancelClose", "Close"}));
    EXPECT_EQ(View(w)->pane, nullptr);
    EXPECT_EQ(getWindowCount(), before - 1);
    RuntimeCloseWindow(w); // a second close does nothing
    EXPECT_EQ(gLog.size(), 2u);
}

TEST_F(WindowTest, RefusedCloseKeepsTheWindow) {
    RuntimeObject *w = Make(0, 0, 100, 100, "R");
    gRefuse = true;
    RuntimeCloseWindow(w);
    EXPECT_NE(View(w)->pane, nullptr);
    EXPECT_EQ(gLog.back(), "CancelClose");
}

TEST_F(WindowTest, QuitAsksEachWindowAndARefusalStopsIt) {
    RuntimeRegisterAppObject(nullptr);
    RuntimeObject *w = Make(0, 0, 100, 100, "Q");
    gLog.clear();
    gRefuse = true;
    ApplicationQuit(nullptr, 0);
    EXPECT_FALSE(QuitRequested());
    EXPECT_EQ(gLog, (std::vector<std::string>{"CancelClose(quitting)"}));
    gRefuse = false;
    ApplicationQuit(nullptr, 0);
    EXPECT_TRUE(QuitRequested());
    EXPECT_EQ(View(w)->pane, nullptr);
    ReleaseRegisteredApplication();
}

TEST_F(WindowTest, ShowModalReturnsWhenTheWindowIsHidden) {
    RuntimeObject *w = Make(0, 0, 100, 100, "M", 1);
    static RuntimeObject *target;
    target = w;
    g_timeout_add(
        50,
        [](gpointer) -> gboolean {
            RuntimeHideWindow(target);
            return FALSE;
        },
        nullptr);
    RuntimeShowModal(w);
    EXPECT_FALSE(View(w)->pane->shown);
}

TEST_F(WindowTest, ShowModalOnAWindowClosedInItsOwnOpenReturnsAtOnce) {
    gCloseInOpen = true;
    RuntimeObject *w = Make(0, 0, 100, 100, "Gone", 1);
    EXPECT_EQ(View(w)->pane, nullptr);
    RuntimeShowModal(w); // builds again, Open closes again, and it returns
    EXPECT_EQ(View(w)->pane, nullptr);
    EXPECT_EQ(std::count(gLog.begin(), gLog.end(), "Close"), 2);
}

TEST_F(WindowTest, MovingAfterCreationDeliversMovedOnTheNextPass) {
    RuntimeObject *w = Make(0, 0, 100, 100, "Mv", 4, 2);
    Settle(100);
    gLog.clear();
    windowPosSetter(w, offsetof(ViewRecord, left), 200);
    EXPECT_TRUE(gLog.empty());
    Settle(100);
    EXPECT_EQ(std::count(gLog.begin(), gLog.end(), "Moved"), 1);
    EXPECT_EQ(Query(w).x, 200);
    windowPosSetter(w, offsetof(ViewRecord, width), 250);
    Settle(100);
    EXPECT_EQ(Query(w).width, 250);
    EXPECT_EQ(std::count(gLog.begin(), gLog.end(), "Resized"), 1);
}

// The implicit instance is found by its class name in any case, made when
// asked for first, and gone once closed.
TEST_F(WindowTest, ImplicitInstanceIsFoundByClassNameInAnyCaseUntilClosed) {
    KelpString asked = test::MakeText("WTEST");
    EXPECT_EQ(RuntimeGetImplicitWindow(asked), nullptr); // the construction fills it
    objtext::Release(asked);
    RuntimeObject *w = Make(0, 0, 80, 80, "I");
    for (const char *spelling : {"wtest", "WTest", "wTest"}) {
        KelpString name = test::MakeText(spelling);
        RuntimeObject *found = RuntimeGetImplicitWindow(name);
        EXPECT_EQ(found, w) << spelling;
        RuntimeUnlockObject(found);
        objtext::Release(name);
    }
    RuntimeCloseWindow(w);
    KelpString name = test::MakeText("wTest");
    EXPECT_EQ(RuntimeGetImplicitWindow(name), nullptr);
    objtext::Release(name);
}

TEST_F(WindowTest, QuitWalkTakesAWindowWithoutItsViewAsARefusal) {
    RuntimeObject *w = Make(0, 0, 80, 80, "Orphan");
    RuntimeViewWindow *pane = View(w)->pane;
    ASSERT_NE(pane, nullptr);
    View(w)->pane = nullptr; // the view has let go of its window
    EXPECT_FALSE(CloseViewWindowsForQuit());
    EXPECT_EQ(std::count(gLog.begin(), gLog.end(), "Close"), 0);
    View(w)->pane = pane;
    EXPECT_TRUE(CloseViewWindowsForQuit());
}

TEST_F(WindowTest, MinimumSizeHoldsAgainstASmallerResize) {
    RuntimeObject *w = Make(0, 0, 300, 200, "Min", 4, 2);
    View(w)->minWidth = 250;
    View(w)->minHeight = 150;
    Settle(100);
    // As a user dragging the frame would: ask the toolkit for less.
    gtk_window_resize(GTK_WINDOW(View(w)->pane->GtkWin()), 100, 100);
    // The server answers in its own time on a loaded machine: wait for the
    // size to settle rather than for a fixed while.
    test::XInfo info = Query(w);
    for (int i = 0; i < 100 && (info.width != 250 || info.height != 150); ++i) {
        Settle(20);
        info = Query(w);
    }
    Settle(100); // and a smaller size must not follow
    info = Query(w);
    EXPECT_EQ(info.width, 250);
    EXPECT_EQ(info.height, 150);
}

TEST_F(WindowTest, ZeroAndNegativeSizesMakeAWindowWithoutACrash) {
    RuntimeObject *w = Make(0, 0, 0, -20, "Z", 4, 2);
    ASSERT_NE(View(w)->pane, nullptr);
    Settle(60);
    EXPECT_TRUE(Query(w).mapped);
}

// The pointer crossing a window's edge, moved by the X server itself: the
// view's MouseEnter and MouseExit fire once per crossing.
std::vector<std::string> gCrossings;
void OnMouseEnter(RuntimeObject *) { gCrossings.push_back("MouseEnter"); }
void OnMouseExit(RuntimeObject *) { gCrossings.push_back("MouseExit"); }

class WindowCrossingTest : public test::WindowFixture {
protected:
    void SetUp() override {
        SetUpWindowClass("wCrossing", {{"MouseEnter", reinterpret_cast<void *>(&OnMouseEnter)},
                                       {"MouseExit", reinterpret_cast<void *>(&OnMouseExit)}});
        gCrossings.clear();
    }
    void WarpTo(int x, int y) {
        Display *display = GDK_DISPLAY_XDISPLAY(gdk_display_get_default());
        XWarpPointer(display, 0L, DefaultRootWindow(display), 0, 0, 0, 0, x, y);
        XFlush(display);
        Settle(60);
    }
};

TEST_F(WindowCrossingTest, CrossingTheEdgeFiresEnterThenExit) {
    RuntimeObject *w = MakeWith([](RuntimeObject *self) {
        windowPosSetter(self, offsetof(ViewRecord, width), 160);
        windowPosSetter(self, offsetof(ViewRecord, height), 120);
    });
    WarpTo(1, 1);
    Settle(100);
    const Rect r = View(w)->pane->CurrentScreenBounds();
    gCrossings.clear();
    WarpTo(r.left + 40, r.top + 40);
    WarpTo(r.left + 60, r.top + 50); // moving inside crosses nothing
    WarpTo(r.right + 30, r.bottom + 30);
    EXPECT_EQ(gCrossings, (std::vector<std::string>{"MouseEnter", "MouseExit"}));
}

} // namespace
} // namespace kelp
