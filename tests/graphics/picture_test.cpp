// Pictures drawn into a Graphics: defaults, cutting to the picture's pixels,
// and scaled copies read back.
#include "fixture.h"

#include "graphics/picture_cut.h"

namespace kelp::test {
namespace {

TEST(PictureCut, DefaultsComeFromThePictureAndTheDestination) {
    PictureCut c;
    c.x = 5;
    c.y = 6;
    ASSERT_TRUE(CutPictureToStore(c, 40, 30));
    EXPECT_EQ(c.destWidth, 40);
    EXPECT_EQ(c.destHeight, 30);
    EXPECT_EQ(c.sourceWidth, 40);
    EXPECT_EQ(c.sourceHeight, 30);

    PictureCut scaled;
    scaled.destWidth = 80;
    scaled.destHeight = 60;
    ASSERT_TRUE(CutPictureToStore(scaled, 40, 30));
    // The source defaults to the destination's size, then is cut to the picture,
    // and the destination shrinks in proportion: half of it remains.
    EXPECT_EQ(scaled.sourceWidth, 40);
    EXPECT_EQ(scaled.destWidth, 40);
    EXPECT_EQ(scaled.sourceHeight, 30);
    EXPECT_EQ(scaled.destHeight, 30);
}

TEST(PictureCut, NegativeSourceShiftsTheDestinationAndKeepsTheScale) {
    PictureCut c;
    c.x = 100;
    c.destWidth = 200; // twice the source: scale 2
    c.sourceX = -10;
    c.sourceWidth = 100;
    c.destHeight = 50;
    c.sourceHeight = 50;
    ASSERT_TRUE(CutPictureToStore(c, 100, 50));
    EXPECT_EQ(c.sourceX, 0);
    EXPECT_EQ(c.sourceWidth, 90);
    EXPECT_EQ(c.x, 120); // 10 source pixels are 20 destination pixels
    EXPECT_EQ(c.destWidth, 180);
}

TEST(PictureCut, SourcePastTheEdgeIsShortened) {
    PictureCut c;
    c.destWidth = 60;
    c.sourceX = 10;
    c.sourceWidth = 30; // scale 2, and 10 pixels past a 30-wide picture
    ASSERT_TRUE(CutPictureToStore(c, 30, 30));
    EXPECT_EQ(c.sourceWidth, 20);
    EXPECT_EQ(c.destWidth, 40);
}

TEST(PictureCut, NothingLeftDrawsNothing) {
    PictureCut zero;
    zero.destWidth = 0;
    EXPECT_FALSE(CutPictureToStore(zero, 30, 30));
    PictureCut outside;
    outside.sourceX = 50;
    EXPECT_FALSE(CutPictureToStore(outside, 30, 30));
    PictureCut before;
    before.sourceX = -40;
    before.sourceWidth = 30;
    before.destWidth = 30;
    EXPECT_FALSE(CutPictureToStore(before, 30, 30));
    PictureCut empty;
    EXPECT_FALSE(CutPictureToStore(empty, 0, 10));
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
