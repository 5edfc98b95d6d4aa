// The language's "Graphics" class through its exports, as compiled code
// would call them.
#include "base/fatal_report.h"
#include "graphics/graphics_gtk.h"
#include "graphics/graphics_object.h"
#include "kelp/exceptions.h"
#include "kelp/graphics.h"
#include "kelp/objects.h"
#include "pixels.h"
#include "strings/kstring.h"
#include "support/language_class.h"
#include "support/xvfb.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace kelp::test {
namespace {

// An Integer array record of the language: index 0 unused, then the values.
struct IntArray {
    explicit IntArray(const std::vector<int32_t> &values) {
        record =
            static_cast<RuntimeArray *>(std::calloc(1, sizeof(RuntimeArray) + sizeof(int32_t)));
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
        mGraphics = GraphicsGTK::ForPixmap(kWidth, kHeight);
        mObject = NewGraphicsObject(mGraphics, true);
        ASSERT_NE(mObject, nullptr);
        mDrawable = mGraphics->Target()->Drawable();
    }
    void TearDown() override {
        if (mObject)
            RuntimeUnlockObject(mObject);
    }
    InkBox Ink() { return FindInk(mDrawable, 0, 0, kWidth, kHeight); }
    void Clear() { RuntimeGraphicsClearRect(mObject, 0, 0, kWidth, kHeight); }

    GraphicsGTK *mGraphics = nullptr;
    RuntimeObject *mObject = nullptr;
    GdkDrawable *mDrawable = nullptr;
};

TEST_F(GraphicsClass, IsTheRegisteredLibraryClassWithItsDefaults) {
    KelpString name = MakeText("Graphics");
    RuntimeClass *klass = RuntimeLookupClass(name);
    ASSERT_NE(klass, nullptr);
    EXPECT_EQ(mObject->klass, klass);
    EXPECT_STREQ(TextOf(klass->name), "Graphics");
    EXPECT_GE(klass->instanceSize, sizeof(GraphicsObject));
    KelpString font = graphicsTextFontGetter(mObject, 0);
    EXPECT_STREQ(TextOf(font), "System");
    EXPECT_EQ(graphicsTextSizeGetter(mObject, 0), 12);
    EXPECT_EQ(graphicsForeColorGetter(mObject, 0), 0x000000u);
    EXPECT_EQ(graphicsPenWidthGetter(mObject, 0), 1);
    EXPECT_EQ(graphicsWidthGetter(mObject, 0), kWidth);
    EXPECT_EQ(graphicsHeightGetter(mObject, 0), kHeight);
    EXPECT_EQ(graphicsFirstPageGetter(mObject, 0), 1);
    EXPECT_EQ(graphicsLastPageGetter(mObject, 0), 1);
    EXPECT_EQ(graphicsCopiesGetter(mObject, 0), 1);
}

// x, y, width, height; a negative size draws the rectangle it points at.
TEST_F(GraphicsClass, RectanglesTakeXYWidthHeightOfEitherSign) {
    const struct {
        int32_t x, y, w, h;
        int left, top, right, bottom;
    } cases[] = {
        {10, 10, 30, 40, 10, 10, 39, 49},
        {40, 50, -30, -40, 10, 10, 39, 49},
        {10, 50, 30, -40, 10, 10, 39, 49},
        {40, 10, -30, 40, 10, 10, 39, 49},
    };
    graphicsForeColorSetter(mObject, 0, 0x0000FF);
    for (const auto &c : cases) {
        Clear();
        RuntimeGraphicsFillRect(mObject, c.x, c.y, c.w, c.h);
        InkBox box = Ink();
        EXPECT_EQ(box.count, 30 * 40) << c.w << "x" << c.h;
        EXPECT_EQ(box.left, c.left);
        EXPECT_EQ(box.top, c.top);
        EXPECT_EQ(box.right, c.right);
        EXPECT_EQ(box.bottom, c.bottom);
    }
}

TEST_F(GraphicsClass, StyleFlagsAreIndependentBits) {
    graphicsBoldSetter(mObject, 0, 1);
    graphicsUnderlineSetter(mObject, 0, 1);
    EXPECT_EQ(graphicsBoldGetter(mObject, 0), 1);
    EXPECT_EQ(graphicsItalicGetter(mObject, 0), 0);
    EXPECT_EQ(graphicsUnderlineGetter(mObject, 0), 1);
    EXPECT_EQ(mGraphics->TextStyle(), kStyleBold | kStyleUnderline);
    graphicsBoldSetter(mObject, 0, 0);
    graphicsItalicSetter(mObject, 0, 1);
    EXPECT_EQ(mGraphics->TextStyle(), kStyleItalic | kStyleUnderline);
}

TEST_F(GraphicsClass, ShapesTakeXYWidthHeight) {
    graphicsForeColorSetter(mObject, 0, 0xFF0000);
    RuntimeGraphicsDrawRect(mObject, 10, 20, 30, 40);
    EXPECT_EQ(Ink().count, 2 * 30 + 2 * 38);
    Clear();
    RuntimeGraphicsDrawLine(mObject, 5, 5, 5, 50);
    const InkBox box = Ink();
    EXPECT_EQ(box.left, 5);
    EXPECT_EQ(box.right, 5);
    Clear();
    RuntimeGraphicsFillOval(mObject, 50, 50, 20, 20);
    RuntimeGraphicsDrawOval(mObject, 100, 50, 20, 20);
    RuntimeGraphicsFillRoundRect(mObject, 10, 80, 40, 30, 10, 10);
    RuntimeGraphicsDrawRoundRect(mObject, 60, 80, 40, 30, 10, 10);
    RuntimeGraphicsDrawFocusRing(mObject, 120, 80, 40, 30);
    EXPECT_EQ(PixelAt(mDrawable, 60, 60), 0xFF0000u);
    EXPECT_EQ(PixelAt(mDrawable, 30, 95), 0xFF0000u);
    EXPECT_EQ(PixelAt(mDrawable, 80, 95), 0xFFFFFFu);
    EXPECT_EQ(PixelAt(mDrawable, 60, 95), 0xFF0000u);
}

TEST_F(GraphicsClass, ZeroSizesDrawNothing) {
    RuntimeGraphicsFillRect(mObject, 10, 10, 0, 10);
    RuntimeGraphicsFillRect(mObject, 10, 10, -5, 0);
    RuntimeGraphicsFillOval(mObject, 10, 10, 0, -1);
    RuntimeGraphicsDrawRect(mObject, 10, 10, 0, -3);
    RuntimeGraphicsFillRoundRect(mObject, 10, 10, 0, 0, 5, 5);
    EXPECT_EQ(Ink().count, 0);
}

TEST_F(GraphicsClass, PixelReadsAndWritesColourWords) {
    graphicsPixelSetter(mObject, 3, 4, 0x10EEA0);
    EXPECT_EQ(graphicsPixelGetter(mObject, 3, 4), 0x10EEA0u);
    EXPECT_EQ(PixelAt(mDrawable, 3, 4), 0x10EEA0u);
    EXPECT_EQ(graphicsPixelGetter(mObject, 5000, 5000), 0u);
    EXPECT_EQ(graphicsPixelGetter(mObject, -1, 0), 0u);
}

TEST_F(GraphicsClass, PolygonsFromIntegerArrays) {
    graphicsForeColorSetter(mObject, 0, 0x0000FF);
    IntArray triangle({10, 10, 80, 10, 10, 80});
    graphicsFillPolygon(mObject, triangle.record);
    EXPECT_EQ(PixelAt(mDrawable, 20, 20), 0x0000FFu);
    EXPECT_EQ(PixelAt(mDrawable, 70, 70), 0xFFFFFFu);
    Clear();
    graphicsDrawPolygon(mObject, triangle.record);
    EXPECT_EQ(PixelAt(mDrawable, 20, 20), 0xFFFFFFu);
    EXPECT_EQ(PixelAt(mDrawable, 10, 40), 0x0000FFu);
    Clear();
    IntArray empty({});
    graphicsFillPolygon(mObject, empty.record);
    graphicsFillPolygon(mObject, nullptr);
    EXPECT_EQ(Ink().count, 0);
    // An odd count closes on a last point with y 0; it must not read past the array.
    IntArray odd({30, 30, 90, 30, 60});
    graphicsFillPolygon(mObject, odd.record);
    EXPECT_GT(Ink().count, 0);
}

TEST_F(GraphicsClass, DrawStringPutsTheBaselineOnY) {
    graphicsTextFontSetter(mObject, 0, MakeText("Arial"));
    graphicsTextSizeSetter(mObject, 0, 16);
    KelpString text = MakeText("Hello");
    RuntimeGraphicsDrawString(mObject, text, 10, 40);
    const InkBox plain = Ink();
    ASSERT_GT(plain.count, 0);
    EXPECT_LE(plain.bottom, 40);
    EXPECT_GE(plain.bottom, 38);
    // With a wrap width the first line's baseline still lands on y.
    Clear();
    RuntimeGraphicsDrawStringCondensed(mObject, text, 10, 40, 150, 0);
    const InkBox wrapped = Ink();
    EXPECT_EQ(wrapped.top, plain.top);
    EXPECT_EQ(wrapped.bottom, plain.bottom);
    EXPECT_EQ(wrapped.count, plain.count);
    // Nil text draws nothing.
    Clear();
    RuntimeGraphicsDrawString(mObject, nullptr, 10, 40);
    EXPECT_EQ(Ink().count, 0);
}

TEST_F(GraphicsClass, CondenseCutsToTheWidth) {
    graphicsTextFontSetter(mObject, 0, MakeText("Arial"));
    KelpString text = MakeText("Page: 1 of a very long document title");
    const int whole = RuntimeGraphicsStringWidth(mObject, text);
    ASSERT_GT(whole, 100);
    RuntimeGraphicsDrawStringCondensed(mObject, text, 10, 40, 100, 1);
    InkBox box = Ink();
    EXPECT_LE(box.right, 110);
    EXPECT_GT(box.count, 0);
    // Without condensing the same width wraps instead: more lines, no cut.
    Clear();
    RuntimeGraphicsDrawStringCondensed(mObject, text, 10, 40, 100, 0);
    EXPECT_GT(Ink().bottom, box.bottom + 5);
}

TEST_F(GraphicsClass, TextMeasures) {
    graphicsTextFontSetter(mObject, 0, MakeText("Arial"));
    graphicsTextSizeSetter(mObject, 0, 12);
    const int height = RuntimeGraphicsTextHeight(mObject),
              ascent = RuntimeGraphicsTextAscent(mObject);
    EXPECT_GT(ascent, 0);
    EXPECT_GT(height, ascent);
    KelpString text = MakeText("one two three four five six");
    EXPECT_GT(RuntimeGraphicsStringWidth(mObject, text), 50);
    EXPECT_EQ(RuntimeGraphicsStringWidth(mObject, nullptr), 0);
    const int oneLine = RuntimeGraphicsStringHeight(mObject, text, 0);
    EXPECT_GT(RuntimeGraphicsStringHeight(mObject, text, 40), 2 * oneLine);
    EXPECT_EQ(RuntimeGraphicsStringDirection(mObject, text), -1);
}

TEST_F(GraphicsClass, TextOfEveryEncodingMeasuresTheSame) {
    graphicsTextFontSetter(mObject, 0, MakeText("Arial"));
    kelp::string utf8 = kelp::string::FromUTF8("caf\xC3\xA9 \xE2\x82\xAC");
    const uint32_t wide[] = {'c', 'a', 'f', 0xE9, ' ', 0x20AC};
    kelp::string utf16 = kelp::string::FromWide(wide, 6);
    kelp::string latin1 = kelp::string::FromBytes("caf\xE9", 4, 0x0201);
    kelp::string latin1AsUtf8 = kelp::string::FromUTF8("caf\xC3\xA9");
    const int width = RuntimeGraphicsStringWidth(mObject, utf8.Storage());
    EXPECT_GT(width, 20);
    EXPECT_EQ(RuntimeGraphicsStringWidth(mObject, utf16.Storage()), width);
    EXPECT_EQ(RuntimeGraphicsStringWidth(mObject, latin1.Storage()),
              RuntimeGraphicsStringWidth(mObject, latin1AsUtf8.Storage()));
    EXPECT_LT(RuntimeGraphicsStringWidth(mObject, latin1.Storage()), width);
}

TEST_F(GraphicsClass, StockIconsAreThirtyTwoSquare) {
    graphicsDrawStopIcon(mObject, 10, 10);
    graphicsDrawNoteIcon(mObject, 60, 10);
    graphicsDrawCautionIcon(mObject, 110, 10);
    for (int x : {10, 60, 110}) {
        InkBox box = FindInk(mDrawable, x, 10, 32, 32);
        EXPECT_GT(box.count, 50) << x;
    }
    EXPECT_EQ(FindInk(mDrawable, 0, 45, kWidth, kHeight - 45).count, 0);
    EXPECT_EQ(FindInk(mDrawable, 42, 0, 18, 45).count, 0);
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
    WatchedTarget(bool *deleted) : PixmapTarget(4, 4), mDeleted(deleted) {}
    ~WatchedTarget() override { *mDeleted = true; }

private:
    bool *mDeleted;
};

TEST(GraphicsClassLife, OwnedDrawingStateDiesWithTheObject) {
    RuntimeInitExternalClasses();
    bool deleted = false;
    RuntimeObject *owner =
        NewGraphicsObject(new GraphicsGTK(new WatchedTarget(&deleted), true), true);
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
