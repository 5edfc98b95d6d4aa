// The colour model: words built from RGB, HSV and CMY and read back.
#include "kelp/graphics.h"

#include "graphics/geometry.h"
#include "process/process_state.h"
#include "support/xvfb.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

namespace {

// Words built from each model; out-of-range arguments clamp instead of
// producing garbage.
TEST(ColourWords, BuiltFromEachModel) {
    const struct Row {
        const char *name;
        uint32_t got, expected;
    } rows[] = {
        {"rgb", RuntimeRGB(0x12, 0x34, 0x56), 0x123456u},
        {"rgb clamped", RuntimeRGB(300, -5, 255), 0xFF00FFu},
        {"rgb clamped far", RuntimeRGB(-1, 256, 1000000), 0x00FFFFu},
        {"hsv red", RuntimeHSV(0.0, 1.0, 1.0), 0xFF0000u},
        {"hsv green", RuntimeHSV(1.0 / 3.0, 1.0, 1.0), 0x00FF00u},
        {"hsv blue", RuntimeHSV(2.0 / 3.0, 1.0, 1.0), 0x0000FFu},
        {"hsv yellow", RuntimeHSV(1.0 / 6.0, 1.0, 1.0), 0xFFFF00u},
        {"hsv grey: 127.5 rounds up", RuntimeHSV(0.5, 0.0, 0.5), 0x808080u},
        {"hsv black", RuntimeHSV(0.3, 0.7, 0.0), 0x000000u},
        // Hue 1 is held below 1: still red, not a wrap into the next sector.
        {"hsv hue 1", RuntimeHSV(1.0, 1.0, 1.0), 0xFF0000u},
        {"hsv clamped", RuntimeHSV(-3.0, 5.0, 2.0), 0xFF0000u},
        {"cmy white", RuntimeCMY(0.0, 0.0, 0.0), 0xFFFFFFu},
        {"cmy black", RuntimeCMY(1.0, 1.0, 1.0), 0x000000u},
        {"cmy green", RuntimeCMY(1.0, 0.0, 1.0), 0x00FF00u},
    };
    for (const Row &row : rows)
        EXPECT_EQ(row.got, row.expected) << row.name;
}

TEST(ColourWords, ChannelsReadBack) {
    const uint32_t c = RuntimeRGB(10, 200, 255);
    EXPECT_EQ(readColorRed(c), 10);
    EXPECT_EQ(readColorGreen(c), 200);
    EXPECT_EQ(readColorBlue(c), 255);
    EXPECT_DOUBLE_EQ(readColorCyan(c), 245.0 / 255.0);
    EXPECT_DOUBLE_EQ(readColorMagenta(c), 55.0 / 255.0);
    EXPECT_DOUBLE_EQ(readColorYellow(c), 0.0);
    // CMY read back builds the same word again.
    const uint32_t back = 0x3366CC;
    EXPECT_EQ(RuntimeCMY(readColorCyan(back), readColorMagenta(back), readColorYellow(back)), back);
}

TEST(ColourWords, HSVReadBackMatchesConstruction) {
    // Every colour of a coarse cube survives word -> HSV -> word.
    for (int r = 0; r < 256; r += 51)
        for (int g = 0; g < 256; g += 17)
            for (int b = 0; b < 256; b += 85) {
                const uint32_t c = RuntimeRGB(r, g, b);
                const double h = readColorHue(c), s = readColorSaturation(c), v = readColorValue(c);
                ASSERT_GE(h, 0.0);
                ASSERT_LT(h, 1.0);
                ASSERT_EQ(RuntimeHSV(h, s, v), c) << std::hex << c;
            }
    // Magenta's hue comes out negative before the wrap: it must read 5/6.
    EXPECT_NEAR(readColorHue(0xFF00FF), 5.0 / 6.0, 1e-9);
    EXPECT_DOUBLE_EQ(readColorSaturation(0x000000), 0.0);
}

TEST(ColourWords, ChannelWideningRoundTrips) {
    for (uint32_t word : {0x000000u, 0xFFFFFFu, 0x123456u, 0x80FF01u}) {
        kelp::RGBColor rgb = kelp::ColorWordToRGB(word);
        EXPECT_EQ(kelp::RGBToColorWord(rgb), word);
    }
    EXPECT_EQ(kelp::ColorWordToRGB(0xFF0000).red, 65535);
}

TEST(ThemeColours, ConstantsAndStyleSlots) {
    EXPECT_EQ(getLightTingeColor(), 0xFFFFFFu);
    EXPECT_EQ(getDarkTingeColor(), 0xAAAAAAu);
    if (!kelp::Theme().coloursRead) {
        // Nothing read yet: the fixed fallbacks.
        EXPECT_EQ(getFillColor(), 0xDDDDDDu);
        EXPECT_EQ(getFrameColor(), 0x000000u);
        EXPECT_EQ(getDarkBevelColor(), 0xAAAAAAu);
        EXPECT_EQ(getLightBevelColor(), 0xFFFFFFu);
    }
    if (!kelp::test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    kelp::ReadTheme();
    ASSERT_TRUE(kelp::Theme().coloursRead);
    GtkStyle *style = gtk_rc_get_style_by_paths(gtk_settings_get_default(), "GtkWidget",
                                                "GtkWidget", gtk_widget_get_type());
    if (!style) // no theme styles widgets: they show the toolkit's own style
        style = gtk_widget_get_default_style();
    ASSERT_NE(style, nullptr);
    auto word = [](const GdkColor &c) {
        return kelp::RGBToColorWord(kelp::RGBColor{c.red, c.green, c.blue});
    };
    EXPECT_EQ(getFrameColor(), word(style->dark[GTK_STATE_NORMAL]));
    EXPECT_EQ(getFillColor(), word(style->bg[GTK_STATE_NORMAL]));
    EXPECT_EQ(getTextColor(), word(style->text[GTK_STATE_NORMAL]));
    EXPECT_EQ(getLightBevelColor(), word(style->base[GTK_STATE_NORMAL]));
    EXPECT_EQ(getDarkBevelColor(), word(style->bg[GTK_STATE_ACTIVE]));
    EXPECT_EQ(getHilightColor(), word(style->bg[GTK_STATE_SELECTED]));
    EXPECT_EQ(GetDisabledTextColor(), word(style->fg[GTK_STATE_INSENSITIVE]));
    // The default theme's slots differ, so a mixed-up slot shows.
    EXPECT_NE(getFillColor(), getLightBevelColor());
}

} // namespace
