// The pointer crossing a language window's edge, moved by the X server
// itself: the view's MouseEnter and MouseExit fire once per crossing.
#include "window_fixture.h"

#include "kelp/windows.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kelp {
namespace {

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
