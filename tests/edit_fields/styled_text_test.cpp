// StyledText on its own store and on a field's buffer, and the printer
// that draws a field's text in blocks: every line must land exactly once,
// whatever the block height, which the test sees as bands of ink rows in
// pictures.
#include "controls/control_fixture.h"
#include "field_text.h"

#include "edit_fields/styled_text.h"
#include "graphics/graphics_object.h"
#include "objects/definitions.h"
#include "pictures/picture_object.h"
#include "strings/kstring.h"

#include "kelp/edit_fields.h"
#include "kelp/exceptions.h"
#include "kelp/pictures.h"

#include <filesystem>
#include <random>

namespace kelp::test {
namespace {

RuntimeObject *NewStyled(std::string_view text) {
    RuntimeObject *st = RuntimeNewObject(ClassForDefinition(StyledTextDefinition()));
    KelpString t = Utf8(text);
    StyledTextSetter(st, 0, t);
    objtext::Release(t);
    return st;
}

std::string RaisedClass(const std::function<void()> &act) {
    RuntimeEnterHandlerRegion();
    act();
    RuntimeObject *e = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    std::string name = e ? std::string(objtext::View(e->klass->name)) : "";
    RuntimeUnlockObject(e);
    return name;
}

TEST(StyledText, RunsSplitMergeAndAnswerOverRanges) {
    RuntimeObject *st = RuntimeNewObject(ClassForDefinition(StyledTextDefinition()));
    EXPECT_EQ(StyledTextRunCountGetter(st, 0), 1);
    EXPECT_EQ(StyledTextParagraphCountGetter(st, 0), 0);
    KelpString text = Utf8("hello big world");
    StyledTextSetter(st, 0, text);
    objtext::Release(text);
    StyledTextSetBold(st, 6, 3, 1); // "big": head, middle, tail
    EXPECT_EQ(StyledTextRunCountGetter(st, 0), 3);
    EXPECT_EQ(StyledTextGetBold(st, 7, 2), 1);
    EXPECT_EQ(StyledTextGetBold(st, 6, 3), 0); // 6 ends "hello ": a mixed range
    StyledTextSetSize(st, 0, 5, 18);
    KelpString arial = Utf8("Arial");
    StyledTextSetFont(st, 10, 5, arial);
    objtext::Release(arial);
    struct Ask {
        int32_t start, length;
        int32_t size;
        const char *font;
    } asks[] = {
        {0, 4, 18, ""},      // inside the first run
        {0, 5, 18, ""},      // its end lies on a boundary: still the first
        {0, 9, -1, ""},      // mixed sizes
        {11, 3, 0, "Arial"}, // the last run
        {6, 9, 0, ""},       // mixed fonts
    };
    for (const Ask &a : asks) {
        EXPECT_EQ(StyledTextGetSize(st, a.start, a.length), a.size) << a.start << "," << a.length;
        EXPECT_EQ(Taken(StyledTextGetFont(st, a.start, a.length)), a.font) << a.start;
    }
    StyledTextSetBold(st, 6, 3, 0);
    StyledTextSetSize(st, 0, 5, 0);
    KelpString none = nullptr;
    StyledTextSetFont(st, 10, 5, none);
    EXPECT_EQ(StyledTextRunCountGetter(st, 0), 1);
    // A run handed out is a copy.
    RuntimeObject *run = StyledTextRunGetter(st, 0);
    reinterpret_cast<StyleRunRecord *>(run)->bold = 1;
    EXPECT_EQ(StyledTextGetBold(st, 0, 15), 0);
    EXPECT_EQ(RaisedClass([&] { RuntimeUnlockObject(StyledTextRunGetter(st, 5)); }),
              "OutOfBoundsException");
    EXPECT_EQ(RaisedClass([&] { AppendStyledTextRun(st, nullptr); }), "NilObjectException");
    AppendStyledTextRun(st, run); // appended as given: bold
    EXPECT_EQ(Taken(StyledTextGetter(st, 0)), "hello big worldhello big world");
    EXPECT_EQ(StyledTextRunCountGetter(st, 0), 2);
    RuntimeUnlockObject(run);
    RuntimeUnlockObject(st);
}

TEST(StyledText, ParagraphsComeFromTheLineEnds) {
    struct Case {
        const char *text;
        int32_t count;
        int32_t lastStart, lastLength;
    } cases[] = {
        {"", 0, 0, 0},
        {"a", 1, 0, 1},
        {"a\rb", 2, 2, 1},
        {"a\rb\r", 2, 2, 1},
        {"ab\r\n\r\ncd", 2, 6, 2},
        {"\xc3\xa4\xc3\xb6\rx", 2, 3, 1},
    };
    for (const Case &c : cases) {
        RuntimeObject *st = NewStyled(c.text);
        EXPECT_EQ(StyledTextParagraphCountGetter(st, 0), c.count) << c.text;
        // Past the end gives the last paragraph found.
        RuntimeObject *p = StyledTextParagraphGetter(st, 99);
        auto *r = reinterpret_cast<ParagraphRecord *>(p);
        EXPECT_EQ(r->range.startPos, c.lastStart) << c.text;
        EXPECT_EQ(r->range.length, c.lastLength) << c.text;
        RuntimeUnlockObject(p);
        RuntimeUnlockObject(st);
    }
    RuntimeObject *st = NewStyled("left\rmiddle\rright");
    StyledTextSetBold(st, 7, 2, 1); // "middle" in three runs
    StyledTextSetAlignment(st, 1, 1);
    for (int i = 0; i < 3; ++i) {
        RuntimeObject *p = StyledTextParagraphGetter(st, i);
        EXPECT_EQ(reinterpret_cast<ParagraphRecord *>(p)->alignment, i == 1 ? 1 : 0) << i;
        RuntimeUnlockObject(p);
    }
    RuntimeUnlockObject(st);
}

// Random style changes against a plain model: one style per character.
// The runs must be exactly the model's maximal stretches of equal style.
TEST(StyledText, RandomStyleChangesKeepRunsMaximal) {
    std::mt19937 random(1234);
    const std::string text = "The quick brown fox jumps over the lazy dog.";
    const int32_t n = static_cast<int32_t>(text.size());
    RuntimeObject *st = NewStyled(text);
    std::vector<std::pair<int, int>> model(text.size(), {0, 0}); // bold, size
    for (int step = 0; step < 2000; ++step) {
        int32_t start = static_cast<int32_t>(random() % n);
        int32_t length = 1 + static_cast<int32_t>(random() % (n - start));
        int value = static_cast<int>(random() % 2);
        if (random() % 2) {
            StyledTextSetBold(st, start, length, static_cast<uint8_t>(value));
            for (int32_t i = start; i < start + length; ++i)
                model[static_cast<size_t>(i)].first = value;
        } else {
            StyledTextSetSize(st, start, length, value ? 14 : 0);
            for (int32_t i = start; i < start + length; ++i)
                model[static_cast<size_t>(i)].second = value ? 14 : 0;
        }
        std::vector<std::string> expected, got;
        for (int32_t i = 0; i < n; ++i) {
            if (i == 0 || model[static_cast<size_t>(i)] != model[static_cast<size_t>(i) - 1])
                expected.push_back(std::to_string(model[static_cast<size_t>(i)].first) + "/" +
                                   std::to_string(model[static_cast<size_t>(i)].second) + ":");
            expected.back() += text[static_cast<size_t>(i)];
        }
        for (int32_t i = 0; i < StyledTextRunCountGetter(st, 0); ++i) {
            RuntimeObject *run = StyledTextRunGetter(st, i);
            auto *r = reinterpret_cast<StyleRunRecord *>(run);
            got.push_back(std::to_string(r->bold) + "/" + std::to_string(r->size) + ":" +
                          std::string(objtext::View(r->text)));
            RuntimeUnlockObject(run);
        }
        ASSERT_EQ(got, expected) << "step " << step;
    }
    RuntimeUnlockObject(st);
}

class StyledFieldTest : public ControlFixture {
protected:
    RuntimeObject *StyledField() {
        mView = MakeWindow(420, 300, [](RuntimeObject *view) {
            Add(view, "EditField", "F", [](MassData &m) {
                m.Int("Left", 10).Int("Top", 10).Int("Width", 400).Int("Height", 280);
                m.Bool("MultiLine", true).Bool("Styled", true).Text("TextFont", "Arial");
                m.Int("TextSize", 12);
            });
        });
        return Find(mView, "F");
    }
    // Bands of rows holding ink (dark pixels) in a picture.
    static std::vector<std::pair<int, int>> InkBands(RuntimeObject *picture) {
        GdkPixmap *pixmap = StoreOf(picture)->Pixmap();
        int w, h;
        gdk_drawable_get_size(pixmap, &w, &h);
        GdkPixbuf *pixels =
            gdk_pixbuf_get_from_drawable(nullptr, pixmap, gdk_rgb_get_colormap(), 0, 0, 0, 0, w, h);
        std::vector<std::pair<int, int>> bands;
        const int stride = gdk_pixbuf_get_rowstride(pixels),
                  channels = gdk_pixbuf_get_n_channels(pixels);
        const guchar *data = gdk_pixbuf_get_pixels(pixels);
        bool inBand = false;
        for (int y = 0; y < h; ++y) {
            bool ink = false;
            for (int x = 0; x < w && !ink; ++x)
                ink = data[y * stride + x * channels] < 128;
            if (ink && !inBand)
                bands.push_back({y, y});
            if (ink)
                bands.back().second = y;
            inBand = ink;
        }
        g_object_unref(pixels);
        return bands;
    }
    static RuntimeObject *WhitePicture(int w, int h) {
        RuntimeObject *picture = NewPictureOfSize(w, h);
        RuntimeObject *g = pictureGraphicsGetter(picture, 0);
        GraphicsOfObject(g)->SetForeColor(ColorWordToRGB(0xffffff));
        GraphicsOfObject(g)->FillRect(Rect{0, 0, static_cast<int16_t>(h), static_cast<int16_t>(w)});
        RuntimeUnlockObject(g);
        return picture;
    }
    RuntimeObject *mView = nullptr;
};

TEST_F(StyledFieldTest, RunsRoundTripThroughTheFieldsBuffer) {
    RuntimeObject *f = StyledField();
    RuntimeObject *st = NewStyled("plain bold red");
    StyledTextSetBold(st, 6, 4, 1);
    StyledTextSetColor(st, 11, 3, 0xff0000);
    StyledTextSetSize(st, 11, 3, 20);
    StyledTextObjectSetter(f, 0, st);
    RuntimeObject *back = StyledTextObjectGetter(f, 0);
    EXPECT_EQ(Taken(StyledTextGetter(back, 0)), "plain bold red");
    struct Ask {
        int32_t start, length;
        uint8_t bold;
        int32_t color, size;
    } asks[] = {{0, 5, 0, 0, 12}, {6, 4, 1, 0, 12}, {11, 3, 0, 0xff0000, 20}, {0, 14, 0, -1, -1}};
    for (const Ask &a : asks) {
        EXPECT_EQ(StyledTextGetBold(back, a.start, a.length), a.bold) << a.start;
        EXPECT_EQ(StyledTextGetColor(back, a.start, a.length), a.color) << a.start;
        EXPECT_EQ(StyledTextGetSize(back, a.start, a.length), a.size) << a.start;
    }
    RuntimeUnlockObject(back);
    RuntimeUnlockObject(st);
}

TEST_F(StyledFieldTest, DrawBlockPagesEveryLineExactlyOnce) {
    RuntimeObject *f = StyledField();
    std::string text;
    for (int i = 1; i <= 40; ++i)
        text += "Line " + std::to_string(i) + "\r";
    std::string longWord(300, 'W');
    struct Case {
        std::string text;
        int32_t width, block;
        size_t lines; // bands expected in all blocks together
    } cases[] = {
        {text, 380, 150, 40},
        {text, 380, 37, 40}, // a block of about two lines
        {text, 380, 5, 40},  // smaller than a line: one line each all the same
        {"a b c d e f g h i j k l m n o p", 40, 60, 0}, // wrapped at blanks
        {longWord, 380, 1000, 0}, // one word wider than the line: cut between letters
    };
    for (const Case &c : cases) {
        KelpString t = Utf8(c.text);
        editTextSetter(f, 0, t);
        objtext::Release(t);
        RuntimeObject *st = StyledTextObjectGetter(f, 0);
        StyledTextSetBold(st, 0, 6, 1); // a bold first line, taller ones later
        StyledTextSetSize(st, 20, 8, 18);
        RuntimeUnlockObject(st);
        // Block k is drawn at k * pitch of one tall picture, with blank
        // rows between blocks, so a band never spans two blocks.
        const int32_t pitch = std::max(c.block, 40) + 10, most = std::min(60, 30000 / pitch);
        RuntimeObject *picture = WhitePicture(400, pitch * most);
        RuntimeObject *g = pictureGraphicsGetter(picture, 0);
        RuntimeObject *printer = editStyleTextPrinter(f, g, c.width);
        int32_t blocks = 0;
        for (; !styledPrinterEOF(printer) && blocks < most; ++blocks)
            styledPrinterDrawBlock(printer, 0, blocks * pitch, c.block);
        EXPECT_LT(blocks, most) << "the printer never reached its end";
        auto bands = InkBands(picture);
        for (const auto &band : bands) { // each line inside its own block
            if (c.block >= 30) {
                EXPECT_LT(band.second % pitch, c.block) << band.first;
            }
        }
        // The same lines as one block holding all of them gives.
        RuntimeObject *whole = WhitePicture(400, 4000);
        RuntimeObject *wg = pictureGraphicsGetter(whole, 0);
        RuntimeObject *once = editStyleTextPrinter(f, wg, c.width);
        styledPrinterDrawBlock(once, 0, 0, 4000);
        EXPECT_TRUE(styledPrinterEOF(once));
        const size_t reference = InkBands(whole).size();
        EXPECT_EQ(bands.size(), reference) << c.text.substr(0, 20) << " block " << c.block;
        if (c.lines > 0)
            EXPECT_EQ(bands.size(), c.lines) << " block " << c.block;
        else
            EXPECT_GT(bands.size(), 1u) << "wrapped into lines";
        for (RuntimeObject *o : {once, wg, whole})
            RuntimeUnlockObject(o);
        if (c.block == 150) {
            std::filesystem::create_directories("screenshots");
            GdkPixbuf *pb =
                gdk_pixbuf_get_from_drawable(nullptr, StoreOf(picture)->Pixmap(),
                                             gdk_rgb_get_colormap(), 0, 0, 0, 0, 400, 2 * pitch);
            gdk_pixbuf_save(pb, "screenshots/styled_text_blocks.png", "png", nullptr, nullptr);
            g_object_unref(pb);
        }
        RuntimeUnlockObject(printer);
        RuntimeUnlockObject(g);
        RuntimeUnlockObject(picture);
    }
}

} // namespace
} // namespace kelp::test
