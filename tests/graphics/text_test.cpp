// Text: the font mapping, metrics, measuring, wrapping and cutting.
#include "fixture.h"

#include "graphics/font_mapping.h"

#include <pango/pango.h>

#include <string>

namespace kelp::test {
namespace {

// Text drawn in Arial at size 12 unless a case says otherwise.
class Text : public PixmapDrawing {
protected:
    void SetUp() override {
        PixmapDrawing::SetUp();
        if (IsSkipped())
            return;
        g->SetTextFont("Arial");
        g->SetTextSize(12);
    }
};

// The family Pango really loads for a description.
std::string LoadedFamily(const PangoFontDescription *d) {
    PangoContext *context = gdk_pango_context_get();
    PangoFont *font = pango_context_load_font(context, d);
    std::string family;
    if (font) {
        PangoFontDescription *real = pango_font_describe(font);
        family = pango_font_description_get_family(real);
        pango_font_description_free(real);
        g_object_unref(font);
    }
    g_object_unref(context);
    return family;
}

// How a font of the language becomes a description the toolkit loads:
// its sizes are pixels, the theme's (size 0) stays in points.
TEST_F(Text, FontSpecsBecomeLoadableDescriptions) {
    const int boldItalic = kStyleBold | kStyleItalic;
    struct Row {
        FontSpec spec;
        int pixels;         // the description's absolute size; 0 for the theme's points
        const char *family; // what is loaded; "" for the theme's, nullptr for any
    };
    const Row rows[] = {
        {{"Arial", 12, 0}, 12, "Liberation Sans"},
        {{"Arial", 1, 0}, 1, "Liberation Sans"},
        {{"Arial", 50000000, 0}, kMaxFontPoints, "Liberation Sans"},
        {{"Arial", 0, 0}, 0, "Liberation Sans"},
        {{"Arial", -7, 0}, 0, "Liberation Sans"},
        {{"Arial", 14, boldItalic}, 14, "Liberation Sans"},
        {{"System", 0, 0}, 0, ""},
        {{"SmallSystem", 0, 0}, 0, ""},
        {{"system", 0, 0}, 0, ""},
        {{"", 0, 0}, 0, ""},
        {{"No Such Family Xyzzy", 12, 0}, 12, nullptr},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.spec.name + " " + std::to_string(row.spec.size));
        PangoFontDescription *d = MakeFontDescription(row.spec);
        ASSERT_NE(d, nullptr);
        EXPECT_EQ(pango_font_description_get_size(d),
                  (row.pixels ? row.pixels : DefaultFontSize()) * PANGO_SCALE);
        EXPECT_EQ(pango_font_description_get_size_is_absolute(d), row.pixels != 0);
        if (!row.family) {
            EXPECT_FALSE(LoadedFamily(d).empty());
        } else if (!*row.family) {
            EXPECT_EQ(pango_font_description_get_family(d), DefaultFontFamily());
        } else {
            EXPECT_EQ(LoadedFamily(d), row.family);
        }
        const bool styled = row.spec.style == boldItalic;
        EXPECT_EQ(pango_font_description_get_weight(d),
                  styled ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
        EXPECT_EQ(pango_font_description_get_style(d),
                  styled ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
        pango_font_description_free(d);
    }
}

TEST_F(Text, FontIsRebuiltOnlyWhenAFieldChanges) {
    g->UpdateFont();
    const PangoFontDescription *first = g->FontDescription();
    g->SetTextFont("Arial");
    g->SetTextSize(12);
    g->SetTextStyle(0);
    g->UpdateFont();
    EXPECT_EQ(g->FontDescription(), first);
    g->SetTextSize(20);
    g->UpdateFont();
    EXPECT_EQ(pango_font_description_get_size(g->FontDescription()), 20 * PANGO_SCALE);
}

TEST_F(Text, MetricsGrowWithTheSize) {
    const int a12 = g->Ascent(), d12 = g->Descent(), h12 = g->TextHeight();
    EXPECT_GT(a12, 0);
    EXPECT_GT(d12, 0);
    EXPECT_EQ(h12, a12 + d12);
    g->SetTextSize(30);
    EXPECT_GT(g->TextHeight(), 2 * h12);
}

TEST_F(Text, WidthsMeasureThePixels) {
    g->SetTextSize(14);
    EXPECT_EQ(g->TextWidth(""), 0);
    const int one = g->TextWidth("MMMM");
    // Size 14 is 14 pixels to the em, and Arial's M is 1706/2048 of an em.
    EXPECT_NEAR(one, 4 * 14 * 1706 / 2048, 2);
    EXPECT_GT(g->TextWidth("MMMMMMMM"), one + one / 2);
    Colour(0x000000);
    g->DrawText("MMMM", 10, 40, 0);
    InkBox box = Ink();
    EXPECT_GE(box.left, 10);
    EXPECT_LE(box.right, 10 + one);
    EXPECT_GE(box.right - box.left + 1, one - 4);
}

// Capitals sit on the baseline y and reach up no further than the ascent;
// an underline goes below it.
TEST_F(Text, BaselineIsYAndUnderlineGoesBelow) {
    g->SetTextSize(20);
    Colour(0x000000);
    g->DrawText("HHH", 10, 50, 0);
    const InkBox plain = Ink();
    ASSERT_GT(plain.count, 0);
    EXPECT_GE(plain.bottom, 48);
    EXPECT_LE(plain.bottom, 50);
    EXPECT_GE(plain.top, 50 - g->Ascent() - 1);
    const int plainBottom = plain.bottom;
    g->EraseRect(RectFromXYWH(0, 0, kWidth, kHeight));
    g->SetTextStyle(kStyleUnderline);
    g->DrawText("HHH", 10, 50, 0);
    InkBox box = Ink();
    EXPECT_GT(box.bottom, plainBottom);
    // A second plain drawing has no underline left over.
    g->EraseRect(RectFromXYWH(0, 0, kWidth, kHeight));
    g->SetTextStyle(0);
    g->DrawText("HHH", 10, 50, 0);
    EXPECT_EQ(Ink().bottom, plainBottom);
}

TEST_F(Text, WrappedTextStaysInItsWidthAndGrowsDown) {
    const std::string text = "one two three four five six seven eight nine ten";
    const int oneLine = g->WrappedHeight(text, 0);
    const int wrapped = g->WrappedHeight(text, 60);
    EXPECT_GE(wrapped, 3 * oneLine);
    Colour(0x000000);
    g->DrawTextWrapped(text, RectFromXYWH(10, 5, 60, 200), 0);
    InkBox box = Ink();
    EXPECT_GE(box.left, 10);
    EXPECT_LE(box.right, 70);
    EXPECT_GT(box.bottom - box.top, 2 * oneLine);
    // Unwrapped measures are unaffected by the wrapped layout before them.
    EXPECT_EQ(g->WrappedHeight(text, 0), oneLine);
}

TEST_F(Text, CentredAndRightAlignment) {
    Colour(0x000000);
    g->DrawTextWrapped("ab", RectFromXYWH(0, 0, 200, 40), 2);
    EXPECT_GT(Ink().left, 150);
    g->EraseRect(RectFromXYWH(0, 0, kWidth, kHeight));
    g->DrawTextWrapped("ab", RectFromXYWH(0, 0, 200, 40), 1);
    InkBox box = Ink();
    EXPECT_GT(box.left, 80);
    EXPECT_LT(box.right, 120);
}

// Condensed text: drawn whole when it fits, cut with an ellipsis that ends
// near the limit when not, and nothing when even the ellipsis is too wide.
TEST_F(Text, CondensedTextIsCutWithAnEllipsis) {
    enum Expect { Whole, Cut, Nothing };
    const struct Row {
        const char *text;
        int width;
        Expect expect;
    } rows[] = {{"Hi", 150, Whole},
                {"A rather long line that cannot fit", 80, Cut},
                {"Something long enough to cut", 5, Nothing}};
    Colour(0x000000);
    for (const Row &row : rows) {
        SCOPED_TRACE(row.text);
        g->EraseRect(RectFromXYWH(0, 0, kWidth, kHeight));
        g->DrawText(row.text, 10, 30, 0);
        const InkBox whole = Ink();
        g->EraseRect(RectFromXYWH(0, 0, kWidth, kHeight));
        g->DrawStringCondensed(row.text, 10, 30, row.width, "...");
        const InkBox box = Ink();
        EXPECT_EQ(g->TextStyle(), 0); // the condensed bit is put back
        if (row.expect == Nothing) {
            EXPECT_EQ(box.count, 0);
        } else if (row.expect == Whole) {
            EXPECT_EQ(box.count, whole.count);
            EXPECT_EQ(box.right, whole.right);
        } else {
            EXPECT_LE(box.right, 10 + row.width);
            EXPECT_GT(box.right, 10 + row.width - 30);
        }
    }
}

TEST_F(Text, FitTextFindsTheLongestFittingPrefix) {
    const std::string text = "The quick brown fox jumps over the lazy dog";
    for (int width : {1, 15, 40, 100, 170}) {
        const int n = g->FitText(text, width, false);
        EXPECT_LE(g->TextWidth(text.substr(0, n)), width) << width;
        if (n < static_cast<int>(text.size())) {
            EXPECT_GT(g->TextWidth(text.substr(0, n + 1)), width) << width;
        }
    }
    EXPECT_EQ(g->FitText(text, 10000, false), static_cast<int>(text.size()));
    // Word breaks end on a blank.
    const int n = g->FitText(text, 100, true);
    ASSERT_GT(n, 0);
    EXPECT_EQ(text[n - 1], ' ');
}

TEST_F(Text, FitTextNeverSplitsACharacter) {
    const std::string text =
        "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xE2\x82\xAC\xE2\x82\xAC";
    for (int width = 1; width < 120; width += 3) {
        const int n = g->FitText(text, width, false);
        ASSERT_TRUE(n == static_cast<int>(text.size()) ||
                    (static_cast<uint8_t>(text[n]) & 0xC0) != 0x80)
            << "cut inside a character at " << n;
    }
}

TEST_F(Text, BadTextIsDrawnNotRefused) {
    Colour(0x000000);
    const std::string latin1 = "caf\xE9 \xFF\xFE";
    EXPECT_GT(g->TextWidth(latin1), 0);
    g->DrawText(latin1, 10, 30, 0);
    EXPECT_GT(Ink().count, 0);
}

TEST(FontList, SystemComesFirstAndFamiliesFollow) {
    if (!RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    EXPECT_EQ(FontFamilyName(0), "System");
    const int count = FontFamilyCount();
    ASSERT_GT(count, 1);
    bool liberation = false;
    for (int i = 1; i < count; ++i)
        liberation |= FontFamilyName(i) == "Liberation Sans";
    EXPECT_TRUE(liberation);
    EXPECT_EQ(FontFamilyName(count), "");
    EXPECT_EQ(FontFamilyName(-1), "");
}

} // namespace
} // namespace kelp::test
