// Pictures drawn into a Graphics: defaults, cutting to the picture's pixels,
// and scaled copies read back.
#include "fixture.h"

#include "graphics/picture_cut.h"

namespace kelp::test {
namespace {

// Defaults come from the picture and the destination; a source reaching past
// either edge is shortened and the destination follows at the same scale.
TEST(PictureCut, DefaultsAndCutsKeepTheScale) {
    constexpr int32_t D = kPictureSizeDefault;
    const struct Row {
        const char *name;
        PictureCut in;
        int32_t pictureWidth, pictureHeight;
        bool drawn;
        PictureCut out; // checked only when drawn
    } rows[] = {
        // clang-format off
        {"all defaults", {5, 6, D, D, 0, 0, D, D}, 40, 30, true, {5, 6, 40, 30, 0, 0, 40, 30}},
        // The source takes the destination's size, is cut to the picture, and
        // the destination shrinks in proportion.
        {"bigger destination", {0, 0, 80, 60, 0, 0, D, D}, 40, 30, true, {0, 0, 40, 30, 0, 0, 40, 30}},
        // Scale 2: 10 source pixels before the edge are 20 destination pixels.
        {"negative source", {100, 0, 200, 50, -10, 0, 100, 50}, 100, 50, true, {120, 0, 180, 50, 0, 0, 90, 50}},
        {"past the right edge", {0, 0, 60, D, 10, 0, 30, D}, 30, 30, true, {0, 0, 40, 30, 10, 0, 20, 30}},
        {"zero destination", {0, 0, 0, D, 0, 0, D, D}, 30, 30, false, {}},
        {"source outside", {0, 0, D, D, 50, 0, D, D}, 30, 30, false, {}},
        {"source wholly before", {0, 0, 30, D, -40, 0, 30, D}, 30, 30, false, {}},
        {"empty picture", {0, 0, D, D, 0, 0, D, D}, 0, 10, false, {}},
        // clang-format on
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        PictureCut c = row.in;
        ASSERT_EQ(CutPictureToStore(c, row.pictureWidth, row.pictureHeight), row.drawn);
        if (!row.drawn)
            continue;
        EXPECT_EQ(c.x, row.out.x);
        EXPECT_EQ(c.y, row.out.y);
        EXPECT_EQ(c.destWidth, row.out.destWidth);
        EXPECT_EQ(c.destHeight, row.out.destHeight);
        EXPECT_EQ(c.sourceX, row.out.sourceX);
        EXPECT_EQ(c.sourceWidth, row.out.sourceWidth);
        EXPECT_EQ(c.sourceHeight, row.out.sourceHeight);
    }
}

using PictureDrawing = PixmapDrawing;

TEST_F(PictureDrawing, CopiesAndScalesAnotherPicture) {
    std::unique_ptr<GraphicsGTK> picture(GraphicsGTK::ForPixmap(20, 10));
    picture->SetForeColor(ColorWordToRGB(0xFF0000));
    picture->FillRect(RectFromXYWH(0, 0, 10, 10));
    picture->SetForeColor(ColorWordToRGB(0x0000FF));
    picture->FillRect(RectFromXYWH(10, 0, 10, 10));
    GdkDrawable *source = picture->Target()->Drawable();

    g->DrawDrawableScaled(source, RectFromXYWH(0, 0, 20, 10), RectFromXYWH(5, 5, 20, 10));
    EXPECT_EQ(At(5, 5), 0xFF0000u);
    EXPECT_EQ(At(24, 14), 0x0000FFu);
    EXPECT_EQ(Ink().count, 200);

    g->EraseRect(RectFromXYWH(0, 0, kWidth, kHeight));
    g->DrawDrawableScaled(source, RectFromXYWH(0, 0, 20, 10), RectFromXYWH(50, 50, 80, 40));
    InkBox box = Ink();
    EXPECT_EQ(box.left, 50);
    EXPECT_EQ(box.right, 129);
    EXPECT_EQ(box.bottom, 89);
    EXPECT_EQ(At(60, 70), 0xFF0000u);
    EXPECT_EQ(At(120, 70), 0x0000FFu);

    // A source rectangle outside the picture is refused, not read.
    g->EraseRect(RectFromXYWH(0, 0, kWidth, kHeight));
    g->DrawDrawableScaled(source, RectFromXYWH(15, 0, 20, 10), RectFromXYWH(0, 0, 20, 10));
    g->DrawDrawableScaled(nullptr, RectFromXYWH(0, 0, 20, 10), RectFromXYWH(0, 0, 20, 10));
    EXPECT_EQ(Ink().count, 0);
}

} // namespace
} // namespace kelp::test
