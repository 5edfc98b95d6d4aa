// Shapes on an offscreen picture, checked pixel by pixel.
#include "fixture.h"

#include <string>

namespace kelp::test {
namespace {

using Shapes = PixmapDrawing;

// Rectangles cover exactly their pixels, a frame the edge of the same ones,
// and one given right to left is the same rectangle.
TEST_F(Shapes, RectanglesCoverExactlyTheirPixels) {
    EXPECT_EQ(Ink().count, 0); // a new picture is white
    const struct Row {
        const char *name;
        Rect rect; // top, left, bottom, right
        bool frame;
        int left, top, right, bottom, count;
    } rows[] = {
        {"fill", RectFromXYWH(10, 20, 30, 15), false, 10, 20, 39, 34, 30 * 15},
        {"frame", RectFromXYWH(10, 20, 30, 15), true, 10, 20, 39, 34, 2 * 30 + 2 * 13},
        {"right to left", Rect{30, 50, 10, 20}, false, 20, 10, 49, 29, 30 * 20},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        g->EraseRect(RectFromXYWH(0, 0, kWidth, kHeight));
        Colour(0x0000FF);
        if (row.frame)
            g->FrameRect(row.rect);
        else
            g->FillRect(row.rect);
        const InkBox box = Ink();
        EXPECT_EQ(box.left, row.left);
        EXPECT_EQ(box.top, row.top);
        EXPECT_EQ(box.right, row.right);
        EXPECT_EQ(box.bottom, row.bottom);
        EXPECT_EQ(box.count, row.count);
        EXPECT_EQ(At(row.right, row.bottom), 0x0000FFu);
    }
}

TEST_F(Shapes, EmptyAndNegativeSizesDrawNothing) {
    Colour(0x000000);
    g->FillRect(RectFromXYWH(10, 10, 0, 20));
    g->FillRect(RectFromXYWH(10, 10, 20, 0));
    g->FrameRect(RectFromXYWH(10, 10, 0, 0));
    g->FillOval(RectFromXYWH(10, 10, 0, 5));
    g->FrameRoundRect(RectFromXYWH(10, 10, 0, 0), 4, 4);
    g->DrawStockIcon(0, 5, 5, 0, -3);
    g->DrawPolygon(nullptr, 0, true);
    EXPECT_EQ(Ink().count, 0);
}

TEST_F(Shapes, LinesStayOnePixelWideWhateverThePen) {
    Colour(0x000000);
    g->SetPenSize(5, 5);
    g->MoveTo(10, 50);
    g->LineTo(100, 50);
    EXPECT_EQ(g->PenX(), 100);
    EXPECT_EQ(g->PenY(), 50);
    InkBox box = Ink();
    EXPECT_EQ(box.top, 50);
    EXPECT_EQ(box.bottom, 50);
    EXPECT_EQ(box.left, 10);
    EXPECT_GE(box.right, 99);
    EXPECT_EQ(g->PenWidth(), 5); // remembered, just not drawn
}

// Ovals and round rectangles fill their box but leave its corners; their
// frames leave the middle hollow.
TEST_F(Shapes, RoundedShapesLeaveTheCornersAndFramesAreHollow) {
    struct Spot {
        int x, y;
    };
    const struct Row {
        const char *name;
        void (*draw)(GraphicsGTK &, const Rect &, bool frame);
        Rect box;
        Spot inked[2], corners[2], middle;
    } rows[] = {
        {"oval",
         [](GraphicsGTK &gr, const Rect &r, bool frame) {
             frame ? gr.FrameOval(r) : gr.FillOval(r);
         },
         RectFromXYWH(20, 20, 40, 30),
         {{40, 35}, {40, 35}},
         {{20, 20}, {59, 49}},
         {40, 35}},
        {"round rect",
         [](GraphicsGTK &gr, const Rect &r, bool frame) {
             frame ? gr.FrameRoundRect(r, 20, 20) : gr.FillRoundRect(r, 20, 20);
         },
         RectFromXYWH(10, 10, 60, 40),
         {{40, 10}, {10, 30}}, // middles of the top and left edges
         {{10, 10}, {69, 49}},
         {40, 30}},
    };
    Colour(0x008000);
    for (const Row &row : rows) {
        for (bool frame : {false, true}) {
            SCOPED_TRACE(std::string(row.name) + (frame ? " frame" : " fill"));
            g->EraseRect(RectFromXYWH(0, 0, kWidth, kHeight));
            row.draw(*g, row.box, frame);
            const InkBox box = Ink();
            EXPECT_EQ(box.left, row.box.left);
            EXPECT_EQ(box.top, row.box.top);
            EXPECT_EQ(box.right, row.box.right - 1);
            EXPECT_EQ(box.bottom, row.box.bottom - 1);
            for (const Spot &p : row.corners)
                EXPECT_EQ(At(p.x, p.y), 0xFFFFFFu) << p.x << "," << p.y;
            EXPECT_EQ(At(row.middle.x, row.middle.y), frame ? 0xFFFFFFu : 0x008000u);
            if (!frame) {
                for (const Spot &p : row.inked)
                    EXPECT_EQ(At(p.x, p.y), 0x008000u) << p.x << "," << p.y;
            }
        }
    }
}

TEST_F(Shapes, EraseOffscreenPaintsWhiteAndKeepsTheColour) {
    Colour(0x123456);
    g->FillRect(RectFromXYWH(0, 0, 50, 50));
    g->EraseRect(RectFromXYWH(10, 10, 10, 10));
    EXPECT_EQ(At(15, 15), 0xFFFFFFu);
    EXPECT_EQ(At(5, 5), 0x123456u);
    g->FillRect(RectFromXYWH(60, 60, 5, 5));
    EXPECT_EQ(At(62, 62), 0x123456u);
}

TEST_F(Shapes, PolygonFillsAndOutlines) {
    Colour(0x0000FF);
    const int32_t triangle[] = {10, 10, 60, 10, 10, 60};
    g->DrawPolygon(triangle, 6, true);
    EXPECT_EQ(At(20, 20), 0x0000FFu);
    EXPECT_EQ(At(55, 55), 0xFFFFFFu);
    InkBox box = Ink();
    EXPECT_EQ(box.left, 10);
    EXPECT_EQ(box.top, 10);
    EXPECT_EQ(box.right, 60);
    EXPECT_EQ(box.bottom, 60);
}

TEST_F(Shapes, PixelsSetAndRead) {
    g->SetPixel(7, 9, ColorWordToRGB(0xABCDEF));
    EXPECT_EQ(At(7, 9), 0xABCDEFu);
    EXPECT_EQ(Ink().count, 1);
    RGBColor rgb;
    ASSERT_TRUE(g->GetPixel(7, 9, rgb));
    EXPECT_EQ(RGBToColorWord(rgb), 0xABCDEFu);
    EXPECT_EQ(g->ForeColor().red, 0); // the pen colour came back
    EXPECT_FALSE(g->GetPixel(-1, 5, rgb));
    EXPECT_FALSE(g->GetPixel(kWidth, 5, rgb));
}

TEST_F(Shapes, OriginMovesEveryDrawing) {
    Colour(0xFF0000);
    g->SetOrigin(5, 10);
    g->FillRect(RectFromXYWH(20, 20, 10, 10));
    InkBox box = Ink();
    EXPECT_EQ(box.left, 15);
    EXPECT_EQ(box.top, 10);
}

TEST_F(Shapes, ClipLimitsDrawingAndIsRestored) {
    Colour(0x000000);
    {
        ClipSaver saver(*g);
        Rect clip = RectFromXYWH(20, 20, 10, 10);
        g->SetClipRect(&clip);
        EXPECT_TRUE(g->HasClip());
        g->FillRect(RectFromXYWH(0, 0, 100, 100));
        InkBox box = Ink();
        EXPECT_EQ(box.left, 20);
        EXPECT_EQ(box.top, 20);
        EXPECT_EQ(box.right, 29);
        EXPECT_EQ(box.bottom, 29);
    }
    EXPECT_FALSE(g->HasClip());
    g->FillRect(RectFromXYWH(100, 100, 5, 5));
    EXPECT_EQ(At(102, 102), 0x000000u);
}

TEST_F(Shapes, StateSaverPutsEverythingBack) {
    Colour(0x112233);
    g->SetTextFont("Arial");
    g->SetTextSize(14);
    g->SetPenSize(2, 3);
    g->MoveTo(4, 5);
    {
        GraphicsStateSaver saver(*g);
        Colour(0xFFFFFF);
        g->SetTextFont("System");
        g->SetTextSize(30);
        g->SetTextStyle(kStyleBold);
        g->SetPenSize(9, 9);
        g->MoveTo(50, 50);
        Rect clip = RectFromXYWH(0, 0, 5, 5);
        g->SetClipRect(&clip);
    }
    EXPECT_EQ(RGBToColorWord(g->ForeColor()), 0x112233u);
    EXPECT_EQ(g->TextFont(), "Arial");
    EXPECT_EQ(g->TextSize(), 14);
    EXPECT_EQ(g->TextStyle(), 0);
    EXPECT_EQ(g->PenWidth(), 2);
    EXPECT_EQ(g->PenHeight(), 3);
    EXPECT_EQ(g->PenX(), 4);
    EXPECT_FALSE(g->HasClip());
    // The restored colour is the one that draws, unclipped.
    g->FillRect(RectFromXYWH(100, 100, 4, 4));
    EXPECT_EQ(At(102, 102), 0x112233u);
}

TEST_F(Shapes, FocusRingIsDashedAndSolidLinesFollow) {
    Colour(0x000000);
    g->DrawFocusRing(RectFromXYWH(10, 10, 40, 20));
    InkBox ring = Ink();
    EXPECT_EQ(ring.left, 10);
    EXPECT_EQ(ring.top, 10);
    EXPECT_EQ(ring.right, 49);
    EXPECT_EQ(ring.bottom, 29);
    EXPECT_LT(ring.count, 2 * 40 + 2 * 18); // gaps in the dashes
    g->MoveTo(10, 80);
    g->LineTo(110, 80);
    EXPECT_EQ(FindInk(drawable, 10, 80, 100, 1).count, 100);
}

TEST_F(Shapes, StockIconsDrawInTheirBox) {
    g->DrawStockIcon(0, 20, 30, 32, 32);
    InkBox box = Ink();
    EXPECT_GT(box.count, 50);
    EXPECT_GE(box.left, 20);
    EXPECT_GE(box.top, 30);
    EXPECT_LE(box.right, 51);
    EXPECT_LE(box.bottom, 61);
    g->DrawStockIcon(7, 100, 30, 32, 32); // no such icon
    EXPECT_EQ(FindInk(drawable, 100, 30, 32, 32).count, 0);
}

TEST_F(Shapes, PatternKindsAndOrigin) {
    g->SetPatternKind(1);
    EXPECT_EQ(g->Pattern()[0], 0x55);
    EXPECT_EQ(g->Pattern()[1], 0xAA);
    g->SetPatternKind(2);
    EXPECT_EQ(g->Pattern()[0], 0xFF);
    EXPECT_EQ(g->Pattern()[1], 0x00);
    g->SetPatternKind(3);
    EXPECT_EQ(g->Pattern()[5], 0xAA);
    g->SetPatternKind(99);
    EXPECT_EQ(g->Pattern()[5], 0xFF);
    const uint8_t bytes[8] = {0x01, 0, 0, 0, 0, 0, 0, 0x80};
    g->SetPatternOrigin(1, 1);
    g->SetPattern(bytes);
    // One row down and one bit over: row 7 shows row 0 rotated by one.
    EXPECT_EQ(g->ShiftedPattern()[7], 0x02);
    EXPECT_EQ(g->ShiftedPattern()[6], 0x01);
}

} // namespace
} // namespace kelp::test
