// Without an X display: every graphics call still returns, with the neutral
// results, and nothing crashes.
#include "graphics/font_mapping.h"
#include "graphics/graphics_gtk.h"
#include "graphics/graphics_object.h"
#include "kelp/graphics.h"
#include "kelp/objects.h"
#include "process/display.h"
#include "support/language_class.h"

#include <gtest/gtest.h>

namespace kelp::test {
namespace {

// The test programs run each case in a process of its own; a case that finds
// the display already up (all cases in one process) has nothing to check.
#define REQUIRE_HEADLESS()                                                                         \
    if (DisplayAvailable())                                                                        \
    GTEST_SKIP() << "a display is already open in this process"

TEST(Headless, OffscreenPictureHasNoPixmapAndDrawsNothing) {
    REQUIRE_HEADLESS();
    std::unique_ptr<GraphicsGTK> g(GraphicsGTK::ForPixmap(50, 40));
    EXPECT_EQ(g->Target()->Drawable(), nullptr);
    g->SetForeColor(ColorWordToRGB(0xFF0000));
    g->FillRect(RectFromXYWH(0, 0, 10, 10));
    g->FrameOval(RectFromXYWH(0, 0, 10, 10));
    g->MoveTo(0, 0);
    g->LineTo(10, 10);
    g->DrawText("text", 0, 10, 0);
    g->DrawTextWrapped("text", RectFromXYWH(0, 0, 10, 10), 1);
    g->DrawStringCondensed("a long text", 0, 10, 5, "...");
    g->DrawStockIcon(0, 0, 0, 32, 32);
    g->DrawFocusRing(RectFromXYWH(0, 0, 10, 10));
    const int32_t points[] = {0, 0, 5, 5, 0, 5};
    g->DrawPolygon(points, 6, true);
    EXPECT_EQ(g->TextWidth("text"), 0);
    EXPECT_EQ(g->WrappedHeight("text", 10), 0);
    EXPECT_EQ(g->Ascent(), 0);
    EXPECT_EQ(g->TextHeight(), 0);
    RGBColor rgb;
    EXPECT_FALSE(g->GetPixel(1, 1, rgb));
    g->LineTo(1, 1);
    EXPECT_EQ(g->PenX(), 1); // the pen still moves
}

TEST(Headless, FontsFallBackToTheSystemEntryAlone) {
    REQUIRE_HEADLESS();
    EXPECT_EQ(MakeFontDescription(FontSpec{"Arial", 12, 0}), nullptr);
    EXPECT_EQ(getFontCount(), 1);
    EXPECT_STREQ(TextOf(getFontName(0)), "System");
    EXPECT_EQ(DefaultFontFamily(), "Sans");
    EXPECT_EQ(DefaultFontSize(), 10);
}

TEST(Headless, LanguageObjectKeepsItsStateAndMeasuresZero) {
    REQUIRE_HEADLESS();
    RuntimeInitExternalClasses();
    RuntimeObject *object = NewGraphicsObject(GraphicsGTK::ForPixmap(30, 20), true);
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(graphicsWidthGetter(object, 0), 30);
    EXPECT_EQ(graphicsHeightGetter(object, 0), 20);
    graphicsTextSizeSetter(object, 0, 20);
    EXPECT_EQ(graphicsTextSizeGetter(object, 0), 20);
    graphicsForeColorSetter(object, 0, 0xABCDEF);
    EXPECT_EQ(graphicsForeColorGetter(object, 0), 0xABCDEFu);
    RuntimeGraphicsFillRect(object, 0, 0, 10, 10);
    RuntimeGraphicsDrawStringCondensed(object, MakeText("text"), 0, 10, 5, 1);
    graphicsDrawStopIcon(object, 0, 0);
    graphicsPixelSetter(object, 1, 1, 0xFFFFFF);
    EXPECT_EQ(graphicsPixelGetter(object, 1, 1), 0u);
    EXPECT_EQ(RuntimeGraphicsStringWidth(object, MakeText("text")), 0);
    EXPECT_EQ(RuntimeGraphicsTextHeight(object), 0);
    RuntimeUnlockObject(object);
}

} // namespace
} // namespace kelp::test
