// Live resizing and full screen on a real X server.  There is no window
// manager under the test server, so a user's drag of the frame is played by
// resizing the toplevel directly, and full screen is what the window itself
// asks the server for.
#include "window_fixture.h"

#include "kelp/windows.h"

#include <cstddef>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace kelp {
namespace {

std::vector<std::string> gLog;

ViewRecord *View(RuntimeObject *w) { return reinterpret_cast<ViewRecord *>(w); }
bool gCloseWhileResizing = false;

// The size the handler can read is logged with the event.
void OnResizing(RuntimeObject *self) {
    gLog.push_back("Resizing " + std::to_string(View(self)->width) + "x" +
                   std::to_string(View(self)->height));
    if (gCloseWhileResizing)
        RuntimeCloseWindow(self);
}
void OnResized(RuntimeObject *self) {
    gLog.push_back("Resized " + std::to_string(View(self)->width) + "x" +
                   std::to_string(View(self)->height));
}
void OnMoved(RuntimeObject *self) {
    gLog.push_back("Moved " + std::to_string(View(self)->left) + "," +
                   std::to_string(View(self)->top));
}

// The toplevel's place and size as the X server has them.
struct XGeometry {
    int x = 0, y = 0, width = 0, height = 0;
    bool operator==(const XGeometry &) const = default;
};
std::ostream &operator<<(std::ostream &out, const XGeometry &g) {
    return out << g.x << "," << g.y << " " << g.width << "x" << g.height;
}

struct Layout {
    int left = 100, top = 120, width = 300, height = 200;
    int frame = 4, placement = 2; // plain frame, centred: a known place
    bool liveResize = false, resizeable = true, fullScreen = false;
};

class WindowGeometryTest : public test::WindowFixture {
protected:
    void SetUp() override {
        gLog.clear();
        gCloseWhileResizing = false;
        SetUpWindowClass("wGeometry", {{"Resizing", reinterpret_cast<void *>(&OnResizing)},
                                       {"Resized", reinterpret_cast<void *>(&OnResized)},
                                       {"Moved", reinterpret_cast<void *>(&OnMoved)}});
    }

    RuntimeObject *Make(const Layout &l) {
        return MakeWith([l](RuntimeObject *self) {
            windowPosSetter(self, offsetof(ViewRecord, left), l.left);
            windowPosSetter(self, offsetof(ViewRecord, top), l.top);
            windowPosSetter(self, offsetof(ViewRecord, width), l.width);
            windowPosSetter(self, offsetof(ViewRecord, height), l.height);
            windowFrameSetter(self, 0, l.frame);
            windowPlacementSetter(self, 0, l.placement);
            windowLiveResizeSetter(self, 0, l.liveResize);
            windowGrowIconSetter(self, 0, l.resizeable);
            windowFullScreenSetter(self, 0, l.fullScreen);
        });
    }

    // What a user's drag of the frame does to the toplevel.
    void DragFrameTo(RuntimeObject *w, int width, int height) {
        gdk_window_resize(View(w)->pane->GtkWin()->window, width, height);
        gdk_flush();
    }

    XGeometry Query(RuntimeObject *w) {
        const test::XInfo i = WindowFixture::Query(w);
        return {i.x, i.y, i.width, i.height};
    }
};

// --- live resizing

// Resizing comes only with a live drag; a size the program sets is no drag.
TEST_F(WindowGeometryTest, ResizingArrivesBeforeResizedOnlyForALiveDrag) {
    const struct {
        const char *what;
        bool live, byProgram;
        std::vector<std::pair<int, int>> sizes;
        std::vector<std::string> log;
    } cases[] = {
        // clang-format off
        {"live drag", true, false, {{360, 240}, {420, 260}},
         {"Resizing 360x240", "Resized 360x240", "Resizing 420x260", "Resized 420x260"}},
        {"plain drag", false, false, {{330, 210}}, {"Resized 330x210"}},
        {"set by the program", true, true, {{380, 200}}, {"Resized 380x200"}},
        // clang-format on
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        Layout l;
        l.liveResize = c.live;
        RuntimeObject *w = Make(l);
        Settle(120);
        gLog.clear();
        for (const auto &[width, height] : c.sizes) {
            if (c.byProgram)
                windowPosSetter(w, offsetof(ViewRecord, width), width);
            else
                DragFrameTo(w, width, height);
            Settle(150);
        }
        EXPECT_EQ(gLog, c.log);
        EXPECT_EQ(Query(w).width, c.sizes.back().first);
        EXPECT_EQ(View(w)->pane->bounds.right, c.sizes.back().first);
        EXPECT_EQ(View(w)->pane->bounds.bottom, c.sizes.back().second);
        RuntimeCloseWindow(w);
    }
}

TEST_F(WindowGeometryTest, LiveResizeIsFixedOnceTheWindowExists) {
    Layout l;
    l.liveResize = true;
    RuntimeObject *w = Make(l);
    windowLiveResizeSetter(w, 0, 0);
    EXPECT_EQ(windowLiveResizeGetter(w, 0), 1);
    Settle(120);
    gLog.clear();
    DragFrameTo(w, 310, 230);
    Settle(120);
    ASSERT_FALSE(gLog.empty());
    EXPECT_EQ(gLog.front(), "Resizing 310x230");
}

TEST_F(WindowGeometryTest, AWindowClosedFromItsOwnResizingIsGoneWithoutResized) {
    Layout l;
    l.liveResize = true;
    RuntimeObject *w = Make(l);
    Settle(120);
    int before = getWindowCount();
    gLog.clear();
    gCloseWhileResizing = true;
    DragFrameTo(w, 340, 250);
    Settle(150);
    EXPECT_EQ(gLog, (std::vector<std::string>{"Resizing 340x250"}));
    EXPECT_EQ(View(w)->pane, nullptr);
    EXPECT_EQ(getWindowCount(), before - 1);
}

// --- full screen

// Full screen covers the screen, asked for by the program or in Layout, a
// fixed size grows for it, and leaving puts the window back where it was
// placed, fixed again if it was; asking twice must not forget the old
// bounds, and leaving when not full screen changes nothing.
TEST_F(WindowGeometryTest, FullScreenCoversTheScreenAndLeavingPutsTheWindowBack) {
    const struct {
        const char *what;
        bool resizeable, inLayout, twice;
    } cases[] = {
        {"plain", true, false, false},
        {"fixed size", false, false, false},
        {"asked for in Layout", true, true, false},
        {"asked for twice", true, false, true},
    };
    const XGeometry placed{(1280 - 300) / 2, (1024 - 200) / 3, 300, 200};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        Layout l;
        l.resizeable = c.resizeable;
        l.fullScreen = c.inLayout;
        RuntimeObject *w = Make(l);
        if (!c.inLayout) {
            Settle(120);
            ASSERT_EQ(Query(w), placed);
            windowFullScreenSetter(w, 0, 0); // not full screen: nothing to leave
            Settle(c.twice ? 100 : 0);
            EXPECT_EQ(Query(w), placed);
            gLog.clear();
            windowFullScreenSetter(w, 0, 1);
            if (c.twice) {
                Settle(150);
                windowFullScreenSetter(w, 0, 1);
            }
        }
        EXPECT_EQ(windowFullScreenGetter(w, 0), 1);
        Settle(200);
        EXPECT_EQ(Query(w), (XGeometry{0, 0, 1280, 1024}));
        EXPECT_EQ(View(w)->width, 1280);
        EXPECT_EQ(View(w)->height, 1024);
        if (!c.inLayout && !c.twice) {
            EXPECT_EQ(gLog, (std::vector<std::string>{"Moved 0,0", "Resized 1280x1024"}));
        }
        windowFullScreenSetter(w, 0, 0);
        Settle(200);
        EXPECT_EQ(Query(w), placed);
        EXPECT_EQ(View(w)->left, placed.x);
        EXPECT_EQ(View(w)->width, placed.width);
        EXPECT_EQ(windowFullScreenGetter(w, 0), 0);
        GtkWindow *top = GTK_WINDOW(View(w)->pane->GtkWin());
        EXPECT_EQ(gtk_window_get_resizable(top) != 0, c.resizeable);
        if (!c.resizeable) {
            // A size asked of the toolkit, as a window manager would on a
            // drag, no longer changes it.
            gtk_window_resize(top, 500, 400);
            Settle(150);
            EXPECT_EQ(Query(w), placed);
        }
        RuntimeCloseWindow(w);
    }
}

TEST_F(WindowGeometryTest, AWindowMadeResizableAgainCanBeResized) {
    Layout l;
    l.resizeable = false;
    RuntimeObject *w = Make(l);
    Settle(120);
    GtkWindow *top = GTK_WINDOW(View(w)->pane->GtkWin());
    gtk_window_resize(top, 500, 400);
    Settle(150);
    EXPECT_EQ(Query(w), (XGeometry{(1280 - 300) / 2, (1024 - 200) / 3, 300, 200}));
    windowGrowIconSetter(w, 0, 1);
    gtk_window_resize(top, 500, 400);
    Settle(150);
    EXPECT_EQ(Query(w).width, 500);
    EXPECT_EQ(Query(w).height, 400);
    gtk_window_resize(top, 120, 90); // and smaller than it was laid out
    Settle(150);
    EXPECT_EQ(Query(w).width, 120);
    EXPECT_EQ(Query(w).height, 90);
}

TEST_F(WindowGeometryTest, NilWindowIsTolerated) {
    windowFullScreenSetter(nullptr, 0, 1);
    EXPECT_EQ(windowFullScreenGetter(nullptr, 0), 0);
    EXPECT_EQ(windowLiveResizeGetter(nullptr, 0), 0);
}

} // namespace
} // namespace kelp
