// Canvases in real windows: backdrop and Paint read back as pixels from the
// X server, presses, drags and keys sent as real X input, scrolling, and
// drawing into a picture.
#include "canvas/canvas_fixture.h"

#include "graphics/graphics_object.h"

#include "kelp/canvas.h"
#include "kelp/graphics.h"
#include "kelp/menus.h"
#include "kelp/pictures.h"

#include <filesystem>

namespace kelp::test {
namespace {

int gPaints = 0;
void PaintBlueSquare(RuntimeObject *, RuntimeObject *g) {
    ++gPaints;
    graphicsForeColorSetter(g, 0, 0x0000ff);
    RuntimeGraphicsFillRect(g, 10, 10, 20, 20);
}
void PaintGreenCorner(RuntimeObject *, RuntimeObject *g) {
    graphicsForeColorSetter(g, 0, 0x00ff00);
    RuntimeGraphicsFillRect(g, 0, 0, 10, 10);
}
void PaintAndRefresh(RuntimeObject *me, RuntimeObject *g) {
    PaintBlueSquare(me, g);
    RuntimeControlRefresh(me);
}
uint8_t RefuseMouseDown(RuntimeObject *me, int32_t x, int32_t y) {
    Events().push_back("refused " + NameOf(me) + " " + std::to_string(x) + "," + std::to_string(y));
    return 0;
}
void LogDrag(RuntimeObject *me, int32_t x, int32_t y) {
    Events().push_back("MouseDrag " + NameOf(me) + " " + std::to_string(x) + "," +
                       std::to_string(y));
}
void LogMouseUpAt(RuntimeObject *me, int32_t x, int32_t y) {
    Events().push_back("MouseUp " + NameOf(me) + " " + std::to_string(x) + "," + std::to_string(y));
}
uint8_t LogKey(RuntimeObject *me, KelpString key) {
    std::string text(objtext::View(key));
    std::string shown = text.size() == 1 && text[0] < 32 ? "#" + std::to_string(text[0]) : text;
    Events().push_back("KeyDown " + NameOf(me) + " " + shown);
    return 1;
}
void LogGotFocus(RuntimeObject *me) { Events().push_back("GotFocus " + NameOf(me)); }
void LogLostFocus(RuntimeObject *me) { Events().push_back("LostFocus " + NameOf(me)); }
void LogEnableMenuItems(RuntimeObject *me) { Events().push_back("EnableMenuItems " + NameOf(me)); }

TEST_F(CanvasTest, BackdropIsCutNotScaledAndPaintDrawsFromTheCorner) {
    gPaints = 0;
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "Canvas", "Small", [](MassData &m) { Box(m, 20, 20, 100, 80); },
            {{"Paint", H(&PaintBlueSquare)}});
        Add(view, "Canvas", "Big", [](MassData &m) { Box(m, 150, 20, 60, 50); });
    });
    RuntimeObject *small = Find(w, "Small"), *big = Find(w, "Big");
    RuntimeObject *red = Filled(40, 30, 0xff0000), *green = Filled(500, 400, 0x00ff00);
    canvasBackdropSetter(small, 0, red);
    canvasBackdropSetter(big, 0, green);
    RuntimeUnlockObject(red);
    RuntimeUnlockObject(green);
    Settle(150);
    ExpectPixels(w, {
                        {20, 20, 0xff0000, "backdrop at the corner"},
                        {59, 49, 0xff0000, "backdrop's last pixel"},
                        {60, 30, 0xffffff, "right of a smaller backdrop"},
                        {25, 50, 0xffffff, "below a smaller backdrop"},
                        {30, 30, 0x0000ff, "Paint over the backdrop, pane-relative"},
                        {49, 49, 0x0000ff, "Paint's last pixel"},
                        {50, 45, 0xff0000, "past Paint's square"},
                        {150, 20, 0x00ff00, "a bigger backdrop"},
                        {209, 69, 0x00ff00, "a bigger backdrop, cut at the corner"},
                        {210, 69, 0xffffff, "nothing right of the canvas"},
                        {209, 70, 0xffffff, "nothing below the canvas"},
                    });
    EXPECT_GE(gPaints, 1);
    std::filesystem::create_directories("screenshots");
    EXPECT_TRUE(SaveScreenshot(Fixed(w), "screenshots/canvas_backdrop_and_paint.png"));
    // A backdrop of nil leaves the canvas to Paint alone.
    canvasBackdropSetter(small, 0, nullptr);
    Settle(120);
    ExpectPixels(w, {{20, 20, 0xffffff, "backdrop gone"}, {30, 30, 0x0000ff, "Paint stays"}});
}

TEST_F(CanvasTest, APaintThatRefreshesItsCanvasGetsLaterExposesNotRecursion) {
    gPaints = 0;
    RuntimeObject *w = MakeWindow(200, 100, [](RuntimeObject *view) {
        Add(view, "Canvas", "Busy", [](MassData &m) { Box(m, 0, 0, 100, 100); },
            {{"Paint", H(&PaintAndRefresh)}});
    });
    int before = gPaints;
    Settle(200);
    EXPECT_GT(gPaints, before) << "each Refresh brings a further expose";
    // The Graphics property's object outlives the window without a handle,
    // also while the program still holds the canvas.
    RuntimeObject *busy = Find(w, "Busy");
    RuntimeLockObject(busy);
    RuntimeObject *g = canvasGraphicsGetter(busy, 0);
    ASSERT_NE(GraphicsOfObject(g), nullptr);
    RuntimeCloseWindow(w);
    Settle(50);
    EXPECT_EQ(GraphicsOfObject(g), nullptr);
    RuntimeGraphicsFillRect(g, 0, 0, 5, 5); // draws nothing, touches nothing
    RuntimeUnlockObject(g);
    RuntimeUnlockObject(busy);
}

TEST_F(CanvasTest, PressesDragsAndReleasesArriveRelativeToTheCanvas) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "Canvas", "Below", [](MassData &m) { Box(m, 10, 10, 200, 150); },
            {{"MouseDown", H(&TakeMouseDown)},
             {"MouseDrag", H(&LogDrag)},
             {"MouseUp", H(&LogMouseUpAt)}});
        // On top of the first, refusing: its presses fall through.
        Add(view, "Canvas", "Above", [](MassData &m) { Box(m, 50, 50, 50, 50); },
            {{"MouseDown", H(&RefuseMouseDown)}});
    });
    struct Case {
        int x, y, x2, y2;
        std::vector<std::string> events;
    };
    const Case cases[] = {
        {30, 40, 30, 40, {"MouseDown Below 20,30", "MouseUp Below 20,30"}},
        {60, 70, 60, 70, {"refused Above 10,20", "MouseDown Below 50,60", "MouseUp Below 50,60"}},
    };
    for (const Case &c : cases) {
        Events().clear();
        ASSERT_TRUE(ClickAt(Fixed(w), c.x, c.y));
        Settle(120);
        EXPECT_EQ(Events(), c.events);
    }
    Events().clear();
    Gesture("mousemove " + At(w, 20, 20) + " mousedown 1 sleep 0.2 mousemove " + At(w, 120, 90) +
            " sleep 0.2 mouseup 1");
    ASSERT_GE(Events().size(), 3u);
    EXPECT_EQ(Events().front(), "MouseDown Below 10,10");
    EXPECT_EQ(Events().back(), "MouseUp Below 110,80");
    EXPECT_NE(std::find(Events().begin(), Events().end(), "MouseDrag Below 110,80"),
              Events().end());
}

TEST_F(CanvasTest, TabMovesTheFocusUnlessTheCanvasTakesTabs) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "Canvas", "Plain",
            [](MassData &m) { Box(m, 10, 10, 80, 80).Bool("AcceptFocus", true); },
            {{"KeyDown", H(&LogKey)},
             {"GotFocus", H(&LogGotFocus)},
             {"LostFocus", H(&LogLostFocus)},
             {"EnableMenuItems", H(&LogEnableMenuItems)}});
        Add(view, "Canvas", "Tabs",
            [](MassData &m) {
                Box(m, 100, 10, 80, 80).Bool("AcceptFocus", true).Bool("AcceptTabs", true);
            },
            {{"KeyDown", H(&LogKey)}, {"GotFocus", H(&LogGotFocus)}});
        Add(view, "Canvas", "Deaf", [](MassData &m) { Box(m, 200, 10, 80, 80); },
            {{"GotFocus", H(&LogGotFocus)}});
    });
    Focus(w);
    Events().clear();
    struct Step {
        const char *key; // null: the menu cycle runs
        std::vector<std::string> events;
    };
    const Step steps[] = {
        {"a", {"KeyDown Plain a"}},
        {nullptr, {"EnableMenuItems Plain"}},
        {"Tab", {"LostFocus Plain", "GotFocus Tabs"}},
        {"Tab", {"KeyDown Tabs #9"}},
    };
    for (const Step &s : steps) {
        if (s.key)
            Key(s.key);
        else
            enableMenuItems();
        EXPECT_EQ(Events(), s.events) << (s.key ? s.key : "menu cycle");
        Events().clear();
    }
}

TEST_F(CanvasTest, ScrollMovesPixelsAndControlsAndZeroDoesNothing) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "Canvas", "Sheet", [](MassData &m) { Box(m, 0, 0, 200, 150); });
        Add(view, "Canvas", "Chip", [](MassData &m) { Box(m, 20, 20, 10, 10); });
    });
    RuntimeObject *sheet = Find(w, "Sheet"), *chip = Find(w, "Chip");
    ASSERT_EQ(CanvasPaneOf(chip)->Parent(), CanvasPaneOf(sheet)) << "the chip lies on the sheet";
    RuntimeObject *board = Filled(200, 150, 0xffffff);
    StoreOf(board)->SetPixel(100, 50, 0x123456);
    canvasBackdropSetter(sheet, 0, board);
    RuntimeUnlockObject(board);
    Settle(120);
    canvasScroll(sheet, 0, 0, 0, 0, -10000, -10000, 1);
    EXPECT_EQ(CanvasPaneOf(chip)->bounds.left, 20) << "no shift for a scroll of nothing";
    ExpectPixels(w, {{100, 50, 0x123456, "before"}});
    // The pixels move; only the uncovered band is exposed and drawn again.
    canvasScroll(sheet, 15, 5, 0, 0, -10000, -10000, 0);
    Settle(120);
    ExpectPixels(w, {{115, 55, 0x123456, "moved"}, {100, 50, 0xffffff, "left behind"}});
    EXPECT_EQ(CanvasPaneOf(chip)->bounds.left, 20) << "controls stay without scrollControls";
    canvasScroll(sheet, 15, 5, 0, 0, -10000, -10000, 1);
    EXPECT_EQ(CanvasPaneOf(chip)->bounds.left, 35);
    EXPECT_EQ(CanvasPaneOf(chip)->bounds.top, 25);
}

TEST_F(CanvasTest, DrawIntoPaintsCanvasesAndWindowsIntoAPicture) {
    RuntimeObject *w =
        MakeWindow(200, 150,
                   [](RuntimeObject *view) {
                       Add(view, "Canvas", "Art", [](MassData &m) { Box(m, 30, 40, 60, 50); },
                           {{"Paint", H(&PaintBlueSquare)}});
                   },
                   {{"Paint", H(&PaintGreenCorner)}});
    RuntimeObject *art = Find(w, "Art");
    RuntimeObject *red = Filled(20, 20, 0xff0000);
    canvasBackdropSetter(art, 0, red);
    RuntimeUnlockObject(red);
    RuntimeObject *target = Filled(120, 100, 0xffffff);
    RuntimeObject *g = pictureGraphicsGetter(target, 0);
    RuntimeControlDrawInto(art, g, 5, 8);
    DrawablePane *store = StoreOf(target);
    struct Px {
        int x, y;
        uint32_t rgb;
        const char *what;
    } rows[] = {
        {5, 8, 0xff0000, "backdrop at the given corner"},
        {14, 17, 0xff0000, "backdrop under Paint's square's start"},
        {15, 18, 0x0000ff, "Paint, relative to the corner"},
        {34, 37, 0x0000ff, "Paint's last pixel"},
        {4, 8, 0xffffff, "left of the corner"},
        {70, 70, 0xffffff, "past the canvas"},
    };
    for (const Px &p : rows)
        EXPECT_EQ(store->GetPixel(p.x, p.y), p.rgb) << p.what;
    // The whole window: its back colour, its Paint, then the canvas.
    store->Fill(0x000000);
    formDrawInto(w, g, 2, 3);
    Px window[] = {
        {1, 3, 0x000000, "left of the window's corner"},
        {2, 3, 0x00ff00, "the window's Paint"},
        {11, 12, 0x00ff00, "the window's Paint, last pixel"},
        {12, 13, 0xffffff, "the window's back colour"},
        {32, 43, 0xff0000, "the canvas's backdrop"},
        {52, 63, 0x0000ff, "the canvas's Paint"},
        {118, 98, 0xffffff, "inside the window still"},
    };
    for (const Px &p : window)
        EXPECT_EQ(store->GetPixel(p.x, p.y), p.rgb) << p.what;
    RuntimeUnlockObject(g);
    RuntimeUnlockObject(target);
}

// What lies behind a control: the window's colour, Backdrop and Paint seen
// from a point of the window, and no canvas.
TEST_F(CanvasTest, DrawBackgroundShowsTheWindowBehindAPoint) {
    RuntimeObject *w =
        MakeWindow(200, 150,
                   [](RuntimeObject *view) {
                       Add(view, "Canvas", "Art", [](MassData &m) { Box(m, 30, 40, 60, 50); },
                           {{"Paint", H(&PaintBlueSquare)}});
                   },
                   {{"Paint", H(&PaintGreenCorner)}});
    windowHasBackColorSetter(w, 0, 1);
    windowBackColorSetter(w, 0, 0x336699);
    RuntimeObject *red = Filled(30, 30, 0xff0000);
    windowBackdropSetter(w, 0, red);
    RuntimeUnlockObject(red);
    RuntimeObject *target = Filled(80, 80, 0x000000);
    RuntimeObject *g = pictureGraphicsGetter(target, 0);
    formDrawBackground(w, g, 5, 5);
    struct Px {
        int x, y;
        uint32_t rgb;
        const char *what;
    } rows[] = {
        {0, 0, 0x00ff00, "the window's Paint at (5, 5)"},
        {4, 4, 0x00ff00, "its last pixel"},
        {5, 5, 0xff0000, "the Backdrop"},
        {24, 24, 0xff0000, "the Backdrop's last pixel"},
        {25, 25, 0x336699, "the back colour"},
        {40, 50, 0x336699, "under the canvas: not drawn"},
    };
    DrawablePane *store = StoreOf(target);
    for (const Px &p : rows)
        EXPECT_EQ(store->GetPixel(p.x, p.y), p.rgb) << p.what;
    RuntimeUnlockObject(g);
    RuntimeUnlockObject(target);
    // The screen shows the same Backdrop under the window's Paint.
    formRefresh(w, 1);
    Settle(150);
    ExpectPixels(w, {{5, 5, 0x00ff00, "Paint on screen"},
                     {20, 20, 0xff0000, "Backdrop on screen"},
                     {35, 20, 0x336699, "back colour on screen"}});
}

} // namespace
} // namespace kelp::test
