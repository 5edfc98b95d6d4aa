// The language's "Graphics" class through its exports, as compiled code
// would call them.
#include "graphics/graphics_gtk.h"
#include "graphics/graphics_object.h"
#include "kelp/exceptions.h"
#include "kelp/graphics.h"
#include "kelp/objects.h"
#include "base/fatal_report.h"
#include "strings/kstring.h"
#include "support/language_class.h"
#include "support/xvfb.h"
#include "pixels.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <algorithm>
#include <string>
#include <vector>

namespace kelp::test {
namespace {

// An Integer array record of the language: index 0 unused, then the values.
struct IntArray {
    explicit IntArray(const std::vector<int32_t> &values) {
        record = static_cast<RuntimeArray *>(std::calloc(1, sizeof(RuntimeArray) + sizeof(int32_t)));
        storage.assign(values.size() + 1, 0);
        std::copy(values.begin(), values.end(), storage.begin() + 1);
        record->referenceCount = 1;
        record->buffer = values.empty() ? nullptr : storage.data();
        record->dimensions = 1;
        record->bufferLength = static_cast<int32_t>(storage.size() * sizeof(int32_t));
        record->growthStep = 16;
        record->upperBounds[0] = static_cast<int32_t>(values.size()) - (values.empty() ? 1 : 0);
    }
    ~IntArray() { std::free(record); }
    RuntimeArray *record;
    std::vector<int32_t> storage;
};

class GraphicsClass : public ::testing::Test {
protected:
    static constexpr int kWidth = 200, kHeight = 120;
    void SetUp() override {
        if (!RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
        RuntimeInitExternalClasses();
        graphics = GraphicsGTK::ForPixmap(kWidth, kHeight);
        object = NewGraphicsObject(graphics, true);
        ASSERT_NE(object, nullptr);
        drawable = graphics->Target()->Drawable();
    }
    void TearDown() override {
        if (object)
            RuntimeUnlockObject(object);
    }
    InkBox Ink() { return FindInk(drawable, 0, 0, kWidth, kHeight); }
    void Clear() { RuntimeGraphicsClearRect(object, 0, 0, kWidth, kHeight); }

    GraphicsGTK *graphics = nullptr;
    RuntimeObject *object = nullptr;
    GdkDrawable *drawable = nullptr;
};

TEST_F(GraphicsClass, IsTheRegisteredLibraryClass) {
    KelpString name = MakeText("Graphics");
    RuntimeClass *klass = RuntimeLookupClass(name);
    ASSERT_NE(klass, nullptr);
    EXPECT_EQ(object->klass, klass);
    EXPECT_STREQ(TextOf(klass->name), "Graphics");
    EXPECT_GE(klass->instanceSize, sizeof(GraphicsObject));
}

TEST_F(GraphicsClass, PropertiesStartAtTheirDefaultsAndRoundTrip) {
    KelpString font = graphicsTextFontGetter(object, 0);
    EXPECT_STREQ(TextOf(font), "System");
    EXPECT_EQ(graphicsTextSizeGetter(object, 0), 12);
    EXPECT_EQ(graphicsForeColorGetter(object, 0), 0x000000u);
    EXPECT_EQ(graphicsPenWidthGetter(object, 0), 1);
    EXPECT_EQ(graphicsWidthGetter(object, 0), kWidth);
    EXPECT_EQ(graphicsHeightGetter(object, 0), kHeight);
    EXPECT_EQ(graphicsFirstPageGetter(object, 0), 1);
    EXPECT_EQ(graphicsLastPageGetter(object, 0), 1);
    EXPECT_EQ(graphicsCopiesGetter(object, 0), 1);

    graphicsTextFontSetter(object, 0, MakeText("Arial"));
    EXPECT_STREQ(TextOf(graphicsTextFontGetter(object, 0)), "Arial");
    graphicsTextSizeSetter(object, 0, 18);
    EXPECT_EQ(graphicsTextSizeGetter(object, 0), 18);
    graphicsForeColorSetter(object, 0, 0x123456);
    EXPECT_EQ(graphicsForeColorGetter(object, 0), 0x123456u);
    graphicsPenWidthSetter(object, 0, 5);
    graphicsPenHeightSetter(object, 0, 3);
    EXPECT_EQ(graphicsPenWidthGetter(object, 0), 5);
    EXPECT_EQ(graphicsPenHeightGetter(object, 0), 3);
    graphicsUseOldRendererSetter(object, 0, 1);
    EXPECT_EQ(graphicsUseOldRendererGetter(object, 0), 1);
}

TEST_F(GraphicsClass, StyleFlagsAreIndependentBits) {
    graphicsBoldSetter(object, 0, 1);
    graphicsUnderlineSetter(object, 0, 1);
    EXPECT_EQ(graphicsBoldGetter(object, 0), 1);
    EXPECT_EQ(graphicsItalicGetter(object, 0), 0);
    EXPECT_EQ(graphicsUnderlineGetter(object, 0), 1);
    EXPECT_EQ(graphics->TextStyle(), kStyleBold | kStyleUnderline);
    graphicsBoldSetter(object, 0, 0);
    graphicsItalicSetter(object, 0, 1);
    EXPECT_EQ(graphics->TextStyle(), kStyleItalic | kStyleUnderline);
}

TEST_F(GraphicsClass, ShapesTakeXYWidthHeight) {
    graphicsForeColorSetter(object, 0, 0xFF0000);
    RuntimeGraphicsFillRect(object, 10, 20, 30, 40);
    InkBox box = Ink();
    EXPECT_EQ(box.left, 10);
    EXPECT_EQ(box.top, 20);
    EXPECT_EQ(box.right, 39);
    EXPECT_EQ(box.bottom, 59);
    Clear();
    EXPECT_EQ(Ink().count, 0);
    RuntimeGraphicsDrawRect(object, 10, 20, 30, 40);
    EXPECT_EQ(Ink().count, 2 * 30 + 2 * 38);
    Clear();
    RuntimeGraphicsDrawLine(object, 5, 5, 5, 50);
    box = Ink();
    EXPECT_EQ(box.left, 5);
    EXPECT_EQ(box.right, 5);
    Clear();
    RuntimeGraphicsFillOval(object, 50, 50, 20, 20);
    RuntimeGraphicsDrawOval(object, 100, 50, 20, 20);
    RuntimeGraphicsFillRoundRect(object, 10, 80, 40, 30, 10, 10);
    RuntimeGraphicsDrawRoundRect(object, 60, 80, 40, 30, 10, 10);
    RuntimeGraphicsDrawFocusRing(object, 120, 80, 40, 30);
    EXPECT_EQ(PixelAt(drawable, 60, 60), 0xFF0000u);
    EXPECT_EQ(PixelAt(drawable, 30, 95), 0xFF0000u);
    EXPECT_EQ(PixelAt(drawable, 80, 95), 0xFFFFFFu);
    EXPECT_EQ(PixelAt(drawable, 60, 95), 0xFF0000u);
}

TEST_F(GraphicsClass, ZeroAndNegativeSizesDrawNothing) {
    RuntimeGraphicsFillRect(object, 10, 10, 0, 10);
    RuntimeGraphicsFillRect(object, 10, 10, -5, 10);
    RuntimeGraphicsFillOval(object, 10, 10, 10, -1);
    RuntimeGraphicsDrawRect(object, 10, 10, -3, -3);
    RuntimeGraphicsFillRoundRect(object, 10, 10, 0, 0, 5, 5);
    EXPECT_EQ(Ink().count, 0);
}

TEST_F(GraphicsClass, PixelReadsAndWritesColourWords) {
    graphicsPixelSetter(object, 3, 4, 0x10EEA0);
    EXPECT_EQ(graphicsPixelGetter(object, 3, 4), 0x10EEA0u);
    EXPECT_EQ(PixelAt(drawable, 3, 4), 0x10EEA0u);
    EXPECT_EQ(graphicsPixelGetter(object, 5000, 5000), 0u);
    EXPECT_EQ(graphicsPixelGetter(object, -1, 0), 0u);
}

TEST_F(GraphicsClass, PolygonsFromIntegerArrays) {
    graphicsForeColorSetter(object, 0, 0x0000FF);
    IntArray triangle({10, 10, 80, 10, 10, 80});
    graphicsFillPolygon(object, triangle.record);
    EXPECT_EQ(PixelAt(drawable, 20, 20), 0x0000FFu);
    EXPECT_EQ(PixelAt(drawable, 70, 70), 0xFFFFFFu);
    Clear();
    graphicsDrawPolygon(object, triangle.record);
    EXPECT_EQ(PixelAt(drawable, 20, 20), 0xFFFFFFu);
    EXPECT_EQ(PixelAt(drawable, 10, 40), 0x0000FFu);
    Clear();
    IntArray empty({});
    graphicsFillPolygon(object, empty.record);
    graphicsFillPolygon(object, nullptr);
    EXPECT_EQ(Ink().count, 0);
    // An odd count closes on a last point with y 0; it must not read past the array.
    IntArray odd({30, 30, 90, 30, 60});
    graphicsFillPolygon(object, odd.record);
    EXPECT_GT(Ink().count, 0);
}

TEST_F(GraphicsClass, DrawStringPutsTheBaselineOnY) {
    graphicsTextFontSetter(object, 0, MakeText("Arial"));
    graphicsTextSizeSetter(object, 0, 16);
    KelpString text = MakeText("Hello");
    RuntimeGraphicsDrawString(object, text, 10, 40);
    const InkBox plain = Ink();
    ASSERT_GT(plain.count, 0);
    EXPECT_LE(plain.bottom, 40);
    EXPECT_GE(plain.bottom, 38);
    // With a wrap width the first line's baseline still lands on y.
    Clear();
    RuntimeGraphicsDrawStringCondensed(object, text, 10, 40, 150, 0);
    const InkBox wrapped = Ink();
    EXPECT_EQ(wrapped.top, plain.top);
    EXPECT_EQ(wrapped.bottom, plain.bottom);
    EXPECT_EQ(wrapped.count, plain.count);
    // Nil text draws nothing.
    Clear();
    RuntimeGraphicsDrawString(object, nullptr, 10, 40);
    EXPECT_EQ(Ink().count, 0);
}

TEST_F(GraphicsClass, CondenseCutsToTheWidth) {
    graphicsTextFontSetter(object, 0, MakeText("Arial"));
    KelpString text = MakeText("Page: 1 of a very long document title");
    const int whole = RuntimeGraphicsStringWidth(object, text);
    ASSERT_GT(whole, 100);
    RuntimeGraphicsDrawStringCondensed(object, text, 10, 40, 100, 1);
    InkBox box = Ink();
    EXPECT_LE(box.right, 110);
    EXPECT_GT(box.count, 0);
    // Without condensing the same width wraps instead: more lines, no cut.
    Clear();
    RuntimeGraphicsDrawStringCondensed(object, text, 10, 40, 100, 0);
    EXPECT_GT(Ink().bottom, box.bottom + 5);
}

TEST_F(GraphicsClass, TextMeasures) {
    graphicsTextFontSetter(object, 0, MakeText("Arial"));
    graphicsTextSizeSetter(object, 0, 12);
    const int height = RuntimeGraphicsTextHeight(object), ascent = RuntimeGraphicsTextAscent(object);
    EXPECT_GT(ascent, 0);
    EXPECT_GT(height, ascent);
    KelpString text = MakeText("one two three four five six");
    EXPECT_GT(RuntimeGraphicsStringWidth(object, text), 50);
    EXPECT_EQ(RuntimeGraphicsStringWidth(object, nullptr), 0);
    const int oneLine = RuntimeGraphicsStringHeight(object, text, 0);
    EXPECT_GT(RuntimeGraphicsStringHeight(object, text, 40), 2 * oneLine);
    EXPECT_EQ(RuntimeGraphicsStringDirection(object, text), -1);
}

TEST_F(GraphicsClass, TextOfEveryEncodingMeasuresTheSame) {
    graphicsTextFontSetter(object, 0, MakeText("Arial"));
    kelp::string utf8 = kelp::string::FromUTF8("caf\xC3\xA9 \xE2\x82\xAC");
    const uint32_t wide[] = {'c', 'a', 'f', 0xE9, ' ', 0x20AC};
    kelp::string utf16 = kelp::string::FromWide(wide, 6);
    kelp::string latin1 = kelp::string::FromBytes("caf\xE9", 4, 0x0201);
    kelp::string latin1AsUtf8 = kelp::string::FromUTF8("caf\xC3\xA9");
    const int width = RuntimeGraphicsStringWidth(object, utf8.Storage());
    EXPECT_GT(width, 20);
    EXPECT_EQ(RuntimeGraphicsStringWidth(object, utf16.Storage()), width);
    EXPECT_EQ(RuntimeGraphicsStringWidth(object, latin1.Storage()),
              RuntimeGraphicsStringWidth(object, latin1AsUtf8.Storage()));
    EXPECT_LT(RuntimeGraphicsStringWidth(object, latin1.Storage()), width);
}

TEST_F(GraphicsClass, StockIconsAreThirtyTwoSquare) {
    graphicsDrawStopIcon(object, 10, 10);
    graphicsDrawNoteIcon(object, 60, 10);
    graphicsDrawCautionIcon(object, 110, 10);
    for (int x : {10, 60, 110}) {
        InkBox box = FindInk(drawable, x, 10, 32, 32);
        EXPECT_GT(box.count, 50) << x;
    }
    EXPECT_EQ(FindInk(drawable, 0, 45, kWidth, kHeight - 45).count, 0);
    EXPECT_EQ(FindInk(drawable, 42, 0, 18, 45).count, 0);
}

// ------------------------------------------------------------ failures

struct PendingException {
    PendingException() { RuntimeEnterHandlerRegion(); }
    ~PendingException() { RuntimeLeaveHandlerRegion(); }
    // The class name of the exception raised, taking it; "" for none.
    std::string Take() {
        RuntimeObject *e = RuntimeTakeException();
        std::string name = e ? TextOf(e->klass->name) : "";
        if (e)
            RuntimeUnlockObject(e);
        return name;
    }
};

TEST(GraphicsClassFailures, NilObjectRaisesAndGivesNeutralResults) {
    RuntimeInitExternalClasses();
    PendingException pending;
    RuntimeGraphicsFillRect(nullptr, 0, 0, 10, 10);
    EXPECT_EQ(pending.Take(), "NilObjectException");
    EXPECT_EQ(RuntimeGraphicsStringWidth(nullptr, MakeText("x")), 0);
    EXPECT_EQ(pending.Take(), "NilObjectException");
    EXPECT_EQ(graphicsTextFontGetter(nullptr, 0), nullptr);
    EXPECT_EQ(pending.Take(), "NilObjectException");
    graphicsUseOldRendererSetter(nullptr, 0, 1);
    EXPECT_EQ(pending.Take(), "NilObjectException");
}

TEST(GraphicsClassFailures, FontNameOutsideTheListRaises) {
    RuntimeInitExternalClasses();
    PendingException pending;
    EXPECT_STREQ(TextOf(getFontName(0)), "System");
    EXPECT_EQ(pending.Take(), "");
    EXPECT_EQ(getFontName(getFontCount()), nullptr);
    EXPECT_EQ(pending.Take(), "OutOfBoundsException");
    EXPECT_EQ(getFontName(-1), nullptr);
    EXPECT_EQ(pending.Take(), "OutOfBoundsException");
}

int gReports = 0;
std::string gReportFile;
void CountReport(int, const char *file, int, const char *, const char *) {
    ++gReports;
    gReportFile = file ? file : "";
}

TEST(GraphicsClassFailures, MissingTargetIsReportedNotFollowed) {
    RuntimeInitExternalClasses();
    auto previous = SetFatalReportHook(CountReport);
    gReports = 0;
    RuntimeObject *object = NewGraphicsObject(new GraphicsGTK(nullptr), true);
    RuntimeGraphicsFillRect(object, 0, 0, 10, 10);
    RuntimeGraphicsDrawString(object, MakeText("x"), 0, 0);
    EXPECT_EQ(gReports, 2);
    EXPECT_EQ(gReportFile, "runpanes");
    EXPECT_EQ(graphicsWidthGetter(object, 0), 0);
    RuntimeUnlockObject(object);
    SetFatalReportHook(previous);
}

// A real offscreen target that says when it is deleted.
class WatchedTarget : public PixmapTarget {
public:
    WatchedTarget(bool *deleted) : PixmapTarget(4, 4), deleted_(deleted) {}
    ~WatchedTarget() override { *deleted_ = true; }

private:
    bool *deleted_;
};

TEST(GraphicsClassLife, OwnedDrawingStateDiesWithTheObject) {
    RuntimeInitExternalClasses();
    bool deleted = false;
    RuntimeObject *owner = NewGraphicsObject(new GraphicsGTK(new WatchedTarget(&deleted), true), true);
    RuntimeLockObject(owner);
    RuntimeUnlockObject(owner);
    EXPECT_FALSE(deleted);
    RuntimeUnlockObject(owner);
    EXPECT_TRUE(deleted);

    // A Paint event's object borrows: the Graphics outlives it.
    bool borrowedDeleted = false;
    GraphicsGTK *painting = new GraphicsGTK(new WatchedTarget(&borrowedDeleted), true);
    RuntimeObject *borrower = NewGraphicsObject(painting, false);
    RuntimeUnlockObject(borrower);
    EXPECT_FALSE(borrowedDeleted);
    delete painting;
    EXPECT_TRUE(borrowedDeleted);
}

TEST(GraphicsClassLife, DetachedObjectDrawsNothing) {
    RuntimeInitExternalClasses();
    RuntimeObject *object = NewGraphicsObject(GraphicsGTK::ForPixmap(10, 10), true);
    DetachGraphicsObject(object);
    EXPECT_EQ(GraphicsOfObject(object), nullptr);
    RuntimeGraphicsFillRect(object, 0, 0, 5, 5);
    EXPECT_EQ(graphicsWidthGetter(object, 0), 0);
    RuntimeUnlockObject(object);
}

} // namespace
} // namespace kelp::test
