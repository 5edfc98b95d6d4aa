// Pictures on the test X server: stores, surfaces, the copy path with mask
// and transparency, and BMP files and resources checked pixel by pixel.
#include "support/class_kit.h"
#include "support/image_builder.h"
#include "support/xvfb.h"

#include "bitmaps/pixel_ops.h"
#include "pictures/picture_object.h"
#include "resources/resource_store.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace kelp {
namespace {

using test::Lit;

class Pictures : public ::testing::Test {
protected:
    void SetUp() override {
        if (!test::RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
        RuntimeEnterHandlerRegion();
    }
    void TearDown() override {
        if (RuntimeObject *e = RuntimeTakeException()) {
            ADD_FAILURE() << "unexpected " << test::Str(e->klass->name);
            RuntimeUnlockObject(e);
        }
        RuntimeLeaveHandlerRegion();
        for (RuntimeObject *o : mObjects)
            RuntimeUnlockObject(o);
    }
    RuntimeObject *Keep(RuntimeObject *o) {
        mObjects.push_back(o);
        return o;
    }
    RuntimeObject *Picture(int w, int h) { return Keep(newPicture(w, h, 32)); }
    RuntimeObject *SurfaceOf(RuntimeObject *p) { return Keep(pictureRGBSurfaceGetter(p, 0)); }
    RuntimeObject *GraphicsOf(RuntimeObject *p) { return Keep(pictureGraphicsGetter(p, 0)); }
    void Fill(RuntimeObject *p, uint32_t color, int x, int y, int w, int h) {
        RuntimeObject *g = GraphicsOf(p);
        graphicsForeColorSetter(g, 0, color);
        RuntimeGraphicsFillRect(g, x, y, w, h);
    }
    std::string Raised() {
        RuntimeObject *e = RuntimeTakeException();
        if (!e)
            return "";
        std::string text = test::Str(e->klass->name) + ": " +
                           test::Str(reinterpret_cast<RuntimeExceptionObject *>(e)->message);
        RuntimeUnlockObject(e);
        return text;
    }
    std::vector<RuntimeObject *> mObjects;
};

TEST_F(Pictures, NewPicturesAreWhiteAndTakePixels) {
    RuntimeObject *p = Picture(10, 10);
    RuntimeObject *s = SurfaceOf(p);
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 10; ++x)
            ASSERT_EQ(rgbSurfaceGetPixel(s, x, y), 0xFFFFFFu);
    rgbSurfaceSetPixel(s, 3, 4, 0x123456);
    EXPECT_EQ(rgbSurfaceGetPixel(s, 3, 4), 0x123456u); // the cache was dropped
    Fill(p, 0x00FF00, 0, 0, 2, 2);                     // Graphics drawing drops it too
    EXPECT_EQ(rgbSurfaceGetPixel(s, 1, 1), 0x00FF00u);
    EXPECT_EQ(rgbSurfaceGetPixel(s, -1, 0), 0u);
    EXPECT_EQ(rgbSurfaceGetPixel(s, 10, 0), 0u);
    EXPECT_EQ(pictureWidthGetter(p, 0), 10);
    EXPECT_EQ(PictureDepthGetter(p, 0), 32);

    RuntimeObject *tiny = Picture(0, -3); // allocated at 1 x 1, reports its own size
    EXPECT_EQ(pictureWidthGetter(tiny, 0), 0);
    EXPECT_EQ(pictureHeightGetter(tiny, 0), -3);
    RuntimeObject *vector = Keep(newPicture(5, 5, 0));
    EXPECT_EQ(pictureRGBSurfaceGetter(vector, 0), nullptr);
    EXPECT_EQ(pictureWidthGetter(vector, 0), 5); // a vector picture keeps the size it was given
}

TEST_F(Pictures, FloodFillAndTransform) {
    RuntimeObject *p = Picture(20, 12);
    RuntimeObject *g = GraphicsOf(p);
    graphicsForeColorSetter(g, 0, 0x000000);
    RuntimeGraphicsDrawRect(g, 2, 2, 10, 6); // a closed frame
    RuntimeObject *s = SurfaceOf(p);
    rgbSurfaceSeedFill(s, 5, 5, 0xFF0000);
    int red = 0;
    for (int y = 0; y < 12; ++y)
        for (int x = 0; x < 20; ++x)
            red += rgbSurfaceGetPixel(s, x, y) == 0xFF0000;
    EXPECT_EQ(red, 8 * 4); // the inside of the frame, nothing more
    EXPECT_EQ(rgbSurfaceGetPixel(s, 15, 10), 0xFFFFFFu);
    rgbSurfaceSeedFill(s, 20, 0, 0);
    EXPECT_EQ(Raised(), "OutOfBoundsException: ");

    RuntimeArray *map = CreateArray(1, 0, 255);
    auto set = reinterpret_cast<kelp_array1_set_i32>(map->operations[kArraySlotSet]);
    for (int i = 0; i < 256; ++i)
        set(map, 255 - i, i);
    rgbSurfaceTransform(s, map);
    EXPECT_EQ(rgbSurfaceGetPixel(s, 5, 5), 0x00FFFFu);
    EXPECT_EQ(rgbSurfaceGetPixel(s, 15, 10), 0x000000u);
    RuntimeArray *shortMap = CreateArray(1, 0, 254);
    rgbSurfaceTransformRGB(s, map, shortMap, map);
    EXPECT_EQ(Raised(), "RuntimeException: Transform map UBound must be 255, not 254");
    EXPECT_EQ(rgbSurfaceGetPixel(s, 5, 5), 0x00FFFFu); // unchanged
    RuntimeUnlockArray(map);
    RuntimeUnlockArray(shortMap);
}

TEST_F(Pictures, TransparencyMasksAndScaling) {
    RuntimeObject *src = Picture(2, 2);
    RuntimeObject *ss = SurfaceOf(src);
    rgbSurfaceSetPixel(ss, 0, 0, 0xFFFFFF);
    rgbSurfaceSetPixel(ss, 1, 0, 0xFFFFFE);
    rgbSurfaceSetPixel(ss, 0, 1, 0x0000FF);
    rgbSurfaceSetPixel(ss, 1, 1, 0xFF0000);
    struct Case {
        const char *what;
        int transparent;
        bool mask;
        uint32_t topLeft, topRight;
    } cases[] = {
        {"opaque", 0, false, 0xFFFFFF, 0xFFFFFE},
        {"white transparent", 1, false, 0x00FF00, 0xFFFFFE},
    };
    for (const Case &c : cases) {
        RuntimeObject *dst = Picture(4, 4);
        Fill(dst, 0x00FF00, 0, 0, 4, 4);
        pictureTransparentSetter(src, 0, c.transparent);
        RuntimeGraphicsDrawPicture(GraphicsOf(dst), src, 0, 0, -10000, -10000, 0, 0, -10000,
                                   -10000);
        RuntimeObject *ds = SurfaceOf(dst);
        EXPECT_EQ(rgbSurfaceGetPixel(ds, 0, 0), c.topLeft) << c.what;
        EXPECT_EQ(rgbSurfaceGetPixel(ds, 1, 0), c.topRight) << c.what;
        EXPECT_EQ(rgbSurfaceGetPixel(ds, 1, 1), 0xFF0000u) << c.what;
        EXPECT_EQ(rgbSurfaceGetPixel(ds, 2, 2), 0x00FF00u) << c.what;
    }

    // Nearest-neighbour: 2 x 2 drawn at 4 x 4 is four solid blocks.
    pictureTransparentSetter(src, 0, 0);
    RuntimeObject *big = Picture(4, 4);
    RuntimeGraphicsDrawPicture(GraphicsOf(big), src, 0, 0, 4, 4, 0, 0, 2, 2);
    RuntimeObject *bs = SurfaceOf(big);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(rgbSurfaceGetPixel(bs, x, y), rgbSurfaceGetPixel(ss, x / 2, y / 2));

    // A mask wins over Transparent: black shows, white hides, grey blends.
    pictureTransparentSetter(src, 0, 1);
    RuntimeObject *mask = Keep(pictureMaskGetter(src, 0));
    RuntimeObject *ms = SurfaceOf(mask);
    EXPECT_EQ(rgbSurfaceGetPixel(ms, 0, 0), 0u); // a new mask shows everything
    rgbSurfaceSetPixel(ms, 1, 1, 0xFFFFFF);
    rgbSurfaceSetPixel(ms, 0, 1, 0x808080);
    RuntimeObject *dst = Picture(2, 2);
    Fill(dst, 0x000000, 0, 0, 2, 2);
    RuntimeGraphicsDrawPicture(GraphicsOf(dst), src, 0, 0, -10000, -10000, 0, 0, -10000, -10000);
    RuntimeObject *ds = SurfaceOf(dst);
    EXPECT_EQ(rgbSurfaceGetPixel(ds, 0, 0), 0xFFFFFFu); // Transparent ignored
    EXPECT_EQ(rgbSurfaceGetPixel(ds, 1, 1), 0x000000u); // hidden
    uint32_t half = rgbSurfaceGetPixel(ds, 0, 1);       // blue at half alpha on black
    EXPECT_EQ(half & 0xFFFF00, 0u);
    EXPECT_NEAR(static_cast<int>(half & 0xFF), 128, 2);
}

TEST_F(Pictures, RotationBetweenStores) {
    RuntimeObject *a = Picture(5, 5), *b = Picture(5, 5);
    rgbSurfaceSetPixel(SurfaceOf(a), 4, 2, 0xFF0000); // right of the centre
    ASSERT_TRUE(PixMapRotate(StoreOf(a), StoreOf(b), M_PI / 2, kRotateFillWhite));
    EXPECT_EQ(rgbSurfaceGetPixel(SurfaceOf(b), 2, 0), 0xFF0000u); // now above it
    EXPECT_EQ(rgbSurfaceGetPixel(SurfaceOf(b), 4, 2), 0xFFFFFFu);
    test::ReportRecorder reports;
    EXPECT_FALSE(PixMapRotate(StoreOf(a), StoreOf(a), 1.0, 0));
    EXPECT_TRUE(reports.Has("srcDP and dstDP and srcDP != dstDP"));
}

class PictureFiles : public Pictures {
protected:
    void SetUp() override {
        Pictures::SetUp();
        if (IsSkipped())
            return;
        ASSERT_EQ(std::system(("python3 " KELP_BMP_WRITER " '" + mDir.path() + "'").c_str()), 0);
    }
    std::string ReadFile(const std::string &path) {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    void ExpectPixels(RuntimeObject *picture, const std::string &rgb, const char *what) {
        ASSERT_NE(picture, nullptr) << what;
        RuntimeObject *s = SurfaceOf(picture);
        int w = pictureWidthGetter(picture, 0), h = pictureHeightGetter(picture, 0);
        ASSERT_EQ(static_cast<size_t>(w * h * 3), rgb.size()) << what;
        for (int i = 0; i < w * h; ++i) {
            uint32_t expected = static_cast<uint8_t>(rgb[i * 3]) << 16 |
                                static_cast<uint8_t>(rgb[i * 3 + 1]) << 8 |
                                static_cast<uint8_t>(rgb[i * 3 + 2]);
            ASSERT_EQ(rgbSurfaceGetPixel(s, i % w, i / w), expected) << what << " pixel " << i;
        }
    }
    test::TempDir mDir;
};

TEST_F(PictureFiles, OpenAsPictureReadsBMPFilesPixelByPixel) {
    for (const char *name :
         {"bits1", "bits4", "bits8_core", "bits24", "bits24_top_down", "bits32"}) {
        // Renamed without its ending: found by its first bytes.
        std::string path = mDir / (std::string(name) + " data");
        rename((mDir / (std::string(name) + ".bmp")).c_str(), path.c_str());
        RuntimeObject *item = Keep(RuntimeGetFolderItem(Lit(path), 0));
        RuntimeObject *picture = FolderItemOpenImage(item, 0);
        Keep(picture);
        ExpectPixels(picture, ReadFile(mDir / (std::string(name) + ".rgb")), name);
    }
    std::ofstream(mDir / "broken.bin") << "BM\x10\0\0\0";
    EXPECT_EQ(FolderItemOpenImage(Keep(RuntimeGetFolderItem(Lit(mDir / "broken.bin"), 0)), 0),
              nullptr);
    RuntimeObject *any = Keep(RuntimeGetFolderItem(Lit(mDir / "x"), 0));
    EXPECT_EQ(FolderItemOpenImage(any, 7), nullptr);
    EXPECT_EQ(Raised(),
              "UnsupportedFormatException: OpenAsPicture doesn't support format 7 in Linux");
}

TEST_F(PictureFiles, SaveAsPictureWritesABMPPythonReads) {
    const int w = 7, h = 4;
    RuntimeObject *p = Picture(w, h);
    RuntimeObject *s = SurfaceOf(p);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            rgbSurfaceSetPixel(s, x, y,
                               ((x * 37 + y * 11) & 255) << 16 | ((x * 5 + y * 71) & 255) << 8 |
                                   ((x * y * 3 + 7) & 255));
    RuntimeObject *item = Keep(RuntimeGetFolderItem(Lit(mDir / "saved.bmp"), 0));
    FolderItemSaveAsPicture(item, p, 350);
    EXPECT_EQ(std::system(
                  ("python3 " KELP_BMP_WRITER " --check '" + mDir / "saved.bmp" + "' 7 4").c_str()),
              0);
    RuntimeObject *again = Keep(FolderItemOpenImage(item, 0));
    EXPECT_EQ(rgbSurfaceGetPixel(SurfaceOf(again), 6, 3), rgbSurfaceGetPixel(s, 6, 3));
    FolderItemSaveAsPicture(item, p, 100);
    EXPECT_EQ(Raised(),
              "UnsupportedFormatException: SaveAsPicture doesn't support format 100 in Linux.");

    KelpString packed = PicturePacker(p);
    ASSERT_NE(packed, nullptr);
    ASSERT_EQ(packed->length, 8 + w * h * 4);
    uint32_t word;
    std::memcpy(&word, packed->buffer + 1 + 8 + (3 * w + 6) * 4, 4);
    EXPECT_EQ(word, rgbSurfaceGetPixel(s, 6, 3));
    RuntimeUnlockString(packed);
}

TEST_F(PictureFiles, BitmapResourcesOfTheImage) {
    static std::string bytes; // resource rows point at bytes that stay
    bytes = ReadFile(mDir / "bits8.bmp");
    AddResource(kResourceBitmap, 7, reinterpret_cast<const uint8_t *>(bytes.data()),
                static_cast<uint32_t>(bytes.size()), 0);
    ExpectPixels(Keep(RuntimeGetBitmapFromResourceManager(7)), ReadFile(mDir / "bits8.rgb"),
                 "resource 7");
    EXPECT_EQ(RuntimeGetBitmapFromResourceManager(4242), nullptr);
}

} // namespace
} // namespace kelp
