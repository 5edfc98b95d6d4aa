// Live resizing and full screen on a real X server.  There is no window
// manager under the test server, so a user's drag of the frame is played by
// resizing the toplevel directly, and full screen is what the window itself
// asks the server for.
#include "windows/runtime_view.h"

#include "objects/text.h"
#include "runloop/main_loop.h"
#include "support/language_class.h"
#include "support/xvfb.h"
#include "window_fixture.h"

#include "kelp/objects.h"
#include "kelp/runloop.h"
#include "kelp/windows.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

// Last: the X headers define names that the test framework also uses.
#include <X11/Xlib.h>
#include <gdk/gdkx.h>
#undef None
#undef Bool

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
        XGeometry g;
        GtkWidget *top = View(w)->pane ? View(w)->pane->GtkWin() : nullptr;
        if (!top || !top->window)
            return g;
        Display *dpy = GDK_WINDOW_XDISPLAY(top->window);
        ::Window xid = GDK_WINDOW_XID(top->window), child;
        XWindowAttributes attrs;
        XGetWindowAttributes(dpy, xid, &attrs);
        XTranslateCoordinates(dpy, xid, attrs.root, 0, 0, &g.x, &g.y, &child);
        g.width = attrs.width;
        g.height = attrs.height;
        return g;
    }
};

// --- live resizing

TEST_F(WindowGeometryTest, LiveResizeGivesResizingWithTheDraggedSizeBeforeResized) {
    Layout l;
    l.liveResize = true;
    RuntimeObject *w = Make(l);
    Settle(120);
    gLog.clear();
    DragFrameTo(w, 360, 240);
    Settle(120);
    DragFrameTo(w, 420, 260);
    Settle(120);
    EXPECT_EQ(gLog, (std::vector<std::string>{"Resizing 360x240", "Resized 360x240",
                                              "Resizing 420x260", "Resized 420x260"}));
    EXPECT_EQ(View(w)->pane->width, 420);
    EXPECT_EQ(View(w)->pane->bounds.right, 420);
    EXPECT_EQ(View(w)->pane->bounds.bottom, 260);
}

TEST_F(WindowGeometryTest, WithoutLiveResizeOnlyResizedArrives) {
    RuntimeObject *w = Make(Layout{});
    Settle(120);
    gLog.clear();
    DragFrameTo(w, 330, 210);
    Settle(120);
    EXPECT_EQ(gLog, (std::vector<std::string>{"Resized 330x210"}));
}

TEST_F(WindowGeometryTest, ASizeSetByTheProgramIsNoDrag) {
    Layout l;
    l.liveResize = true;
    RuntimeObject *w = Make(l);
    Settle(120);
    gLog.clear();
    windowPosSetter(w, offsetof(ViewRecord, width), 380);
    Settle(150);
    EXPECT_EQ(gLog, (std::vector<std::string>{"Resized 380x200"}));
    EXPECT_EQ(Query(w).width, 380);
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

TEST_F(WindowGeometryTest, FullScreenCoversTheScreenAndLeavingPutsTheWindowBack) {
    RuntimeObject *w = Make(Layout{});
    Settle(120);
    XGeometry before = Query(w);
    ASSERT_EQ(before.width, 300);
    gLog.clear();
    windowFullScreenSetter(w, 0, 1);
    EXPECT_EQ(windowFullScreenGetter(w, 0), 1);
    Settle(200);
    EXPECT_EQ(Query(w), (XGeometry{0, 0, 1280, 1024}));
    EXPECT_EQ(gLog, (std::vector<std::string>{"Moved 0,0", "Resized 1280x1024"}));
    EXPECT_EQ(View(w)->width, 1280);
    EXPECT_EQ(View(w)->height, 1024);

    gLog.clear();
    windowFullScreenSetter(w, 0, 0);
    Settle(200);
    XGeometry after = Query(w);
    EXPECT_EQ(after, before);
    EXPECT_EQ(View(w)->left, before.x);
    EXPECT_EQ(View(w)->width, before.width);
    EXPECT_EQ(windowFullScreenGetter(w, 0), 0);
}

TEST_F(WindowGeometryTest, AFixedSizeWindowGrowsForFullScreenAndIsFixedAgainAfter) {
    Layout l;
    l.resizeable = false;
    RuntimeObject *w = Make(l);
    Settle(120);
    XGeometry before = Query(w);
    ASSERT_EQ(before.width, 300); // a fixed size is still the size laid out
    ASSERT_EQ(before.height, 200);
    windowFullScreenSetter(w, 0, 1);
    Settle(200);
    EXPECT_EQ(Query(w).width, 1280);
    EXPECT_EQ(Query(w).height, 1024);
    windowFullScreenSetter(w, 0, 0);
    Settle(200);
    EXPECT_EQ(Query(w), before);
    EXPECT_FALSE(gtk_window_get_resizable(GTK_WINDOW(View(w)->pane->GtkWin())));
    // A size asked of the toolkit, as a window manager would on a drag,
    // no longer changes it.
    gtk_window_resize(GTK_WINDOW(View(w)->pane->GtkWin()), 500, 400);
    Settle(150);
    EXPECT_EQ(Query(w).width, before.width);
    EXPECT_EQ(Query(w).height, before.height);
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

TEST_F(WindowGeometryTest, FullScreenAskedForInLayoutTakesEffectWhenBuilt) {
    Layout l;
    l.fullScreen = true;
    RuntimeObject *w = Make(l);
    EXPECT_EQ(windowFullScreenGetter(w, 0), 1);
    Settle(200);
    EXPECT_EQ(Query(w), (XGeometry{0, 0, 1280, 1024}));
    // Leaving goes back to the bounds the window was placed at.
    windowFullScreenSetter(w, 0, 0);
    Settle(200);
    XGeometry g = Query(w);
    EXPECT_EQ(g.width, 300);
    EXPECT_EQ(g.height, 200);
    EXPECT_EQ(g.x, (1280 - 300) / 2);
}

TEST_F(WindowGeometryTest, SettingTheSameStateTwiceChangesNothing) {
    RuntimeObject *w = Make(Layout{});
    Settle(120);
    XGeometry before = Query(w);
    windowFullScreenSetter(w, 0, 0); // not full screen: nothing to leave
    Settle(100);
    EXPECT_EQ(Query(w), before);
    windowFullScreenSetter(w, 0, 1);
    Settle(150);
    windowFullScreenSetter(w, 0, 1); // a second entry must not forget the old bounds
    Settle(100);
    windowFullScreenSetter(w, 0, 0);
    Settle(200);
    EXPECT_EQ(Query(w), before);
}

TEST_F(WindowGeometryTest, NilWindowIsTolerated) {
    windowFullScreenSetter(nullptr, 0, 1);
    EXPECT_EQ(windowFullScreenGetter(nullptr, 0), 0);
    EXPECT_EQ(windowLiveResizeGetter(nullptr, 0), 0);
}

} // namespace
} // namespace kelp
