// The host's calls as plug-ins reach them: a test plug-in builds pictures
// from its pixels, inverts and copies them through locked descriptions, and
// converts text (checked against iconv); a plug-in of the first interface
// version has its records converted; Variants answer by name.
#include "pictures/drawable.h"
#include "pictures/picture_object.h"
#include "plugins/database_registry.h"
#include "plugins/host.h"
#include "test_plugins.h"

#include "objects/text.h"
#include "support/xvfb.h"

#include "kelp/exceptions.h"
#include "kelp/objects.h"
#include "kelp/pictures.h"
#include "kelp/plugin.h"
#include "kelp/strings.h"
#include "kelp/variants.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <cstdio>
#include <string>
#include <tuple>

namespace kelp::plugins {
namespace {

// The bytes iconv makes of `text` in `encoding`.
std::string Iconv(const std::string &text, const char *encoding) {
    const std::string command =
        std::string("printf '%s' '") + text + "' | iconv -f UTF-8 -t " + encoding;
    FILE *pipe = popen(command.c_str(), "r");
    std::string out;
    for (int c; pipe && (c = fgetc(pipe)) != EOF;)
        out += char(c);
    if (pipe)
        pclose(pipe);
    return out;
}

TEST(PluginHostCalls, ConvertStringAgreesWithIconv) {
    LoadTestPlugins();
    auto recode = reinterpret_cast<KelpString (*)(KelpString, int32_t)>(
        Entry("HostCalls.Recode(s As String, encoding As Integer) As String"));
    struct Case {
        uint32_t word;
        const char *iconvName;
        const char *text;
    } cases[] = {
        {0x0201, "ISO-8859-1", "Grüße, ½ Äpfel"}, {0x0500, "CP1252", "5 € für „alle“"},
        {0x0100, "UTF-16LE", "Zahl π ≈ 3,14"},    {0x0920, "EUC-JP", "さんすう"},
        {0x0000, "MACINTOSH", "Café über"},
    };
    for (const Case &c : cases) {
        KelpString source = objtext::Make(c.text);
        source->encoding = kEncodingUTF8;
        KelpString converted = recode(source, int32_t(c.word));
        ASSERT_NE(converted, nullptr) << c.iconvName;
        EXPECT_EQ(std::string(objtext::View(converted)), Iconv(c.text, c.iconvName)) << c.iconvName;
        EXPECT_EQ(converted->encoding, c.word) << c.iconvName;
        KelpString back = recode(converted, int32_t(kEncodingUTF8));
        EXPECT_EQ(objtext::View(back), c.text) << c.iconvName;
        RuntimeUnlockString(back);
        RuntimeUnlockString(converted);
        objtext::Release(source);
    }
}

TEST(PluginHostCalls, VersionOneRecordsAreConverted) {
    LoadTestPlugins();
    void *library = dlopen(KELP_BIN_DIR "/libKPOldStyle.so", RTLD_LAZY | RTLD_NOLOAD);
    auto *old = static_cast<KELPcontrolV1 *>(library ? dlsym(library, "oldKnob") : nullptr);
    Registered *knob = FindRegistered("OldKnob");
    ASSERT_TRUE(old && knob && knob->klass);
    dlclose(library);
    const KELPcontrol *now = knob->controlRecord;
    // Width and height 100; the row past the exports table is gone.
    EXPECT_EQ(std::tuple(now->version, now->defaultWidth, now->defaultHeight, now->methodCount),
              std::tuple(4, 100, 100, 1));
    EXPECT_EQ(old->klass, knob->klass); // written back for the plug-in
    // The five-word properties work on the host's accessors; the methods
    // are called from a real image (image_run_test).
    RuntimeObject *control = PluginNewInstance("OldKnob");
    KelpString label = objtext::Make("dial"), read = nullptr;
    int32_t turns = 0;
    EXPECT_TRUE(KELPSetPropValueInt(control, "Turns", 12) &&
                KELPSetPropValueString(control, "Label", label));
    EXPECT_TRUE(KELPGetPropValueInt(control, "Turns", &turns) &&
                KELPGetPropValueString(control, "Label", &read));
    EXPECT_EQ(turns, 12);
    EXPECT_EQ(objtext::View(read), "dial");
    RuntimeUnlockString(read);
    objtext::Release(label);
    RuntimeUnlockObject(control);
    // Kept for the database classes, from the other plug-in's main entry.
    ASSERT_EQ(RegisteredDataSources().size(), 1u);
    EXPECT_EQ(RegisteredDataSources()[0].name, "HostCallsSource");
    EXPECT_EQ(RegisteredDBEngines().size(), 1u);
}

TEST(PluginHostCalls, VariantsAnswerByName) {
    KelpString text = objtext::Make("3.75");
    RuntimeObject *values[] = {intToVariant(42), stringToVariant(text), booleanToVariant(1)};
    objtext::Release(text);
    struct Case {
        int which;
        const char *name;
        bool asNumber, asString; // read as Integer and Double; as String
        double number;
        const char *string;
    } cases[] = {
        {0, "Type", true, false, 2, ""},        {0, "IntegerValue", true, false, 42, ""},
        {0, "value", true, true, 42, "42"},     {0, "StringValue", false, true, 0, "42"},
        {1, "Type", true, false, 8, ""},        {1, "DoubleValue", true, false, 3.75, ""},
        {1, "Value", true, true, 3.75, "3.75"}, {2, "Colour", false, false, 0, ""},
    };
    for (const Case &c : cases) {
        RuntimeObject *v = values[c.which];
        int32_t i = -1;
        double d = -1;
        KelpString s = nullptr;
        EXPECT_EQ(KELPGetPropValueInt(v, c.name, &i) != 0, c.asNumber) << c.which << c.name;
        EXPECT_EQ(KELPGetPropValueDouble(v, c.name, &d) != 0, c.asNumber) << c.which << c.name;
        EXPECT_EQ(KELPGetPropValueString(v, c.name, &s) != 0, c.asString) << c.which << c.name;
        if (c.asNumber) {
            EXPECT_EQ(i, int32_t(c.number)) << c.which << c.name;
            EXPECT_EQ(d, c.number) << c.which << c.name;
        }
        EXPECT_EQ(objtext::View(s), c.string) << c.which << c.name;
        RuntimeUnlockString(s);
    }
    int32_t flag = 0;
    EXPECT_TRUE(KELPGetPropValueBool(values[2], "BooleanValue", &flag) && flag == 1);
    RuntimeObject *date = nullptr; // "3.75" is no date: the raise stays inside
    EXPECT_FALSE(KELPGetPropValueObject(values[1], "DateValue", &date));
    EXPECT_EQ(RuntimePendingException(), nullptr);
    for (RuntimeObject *v : values)
        RuntimeUnlockObject(v);
}

class PluginPictures : public ::testing::Test {
protected:
    void SetUp() override {
        if (!test::RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
        LoadTestPlugins();
    }
    using Picture = RuntimeObject *;
    Picture Ramp(int32_t w, int32_t h, int32_t layout) {
        return reinterpret_cast<Picture (*)(int32_t, int32_t, int32_t)>(
            Entry("HostCalls.Ramp(w As Integer, h As Integer, layout As Integer) As Picture"))(
            w, h, layout);
    }
    static uint32_t RampPixel(int32_t x, int32_t y) {
        return uint32_t(40 * x & 0xFF) << 16 | uint32_t(60 * y & 0xFF) << 8 | 0x80;
    }
};

// Each layout builds the ramp; the plug-in then inverts it through a locked
// pixbuf and copies it through the locked pixmap.
TEST_F(PluginPictures, BuiltLockedInvertedAndCopied) {
    auto invert =
        reinterpret_cast<uint8_t (*)(Picture)>(Entry("HostCalls.Invert(p As Picture) As Boolean"));
    auto copy =
        reinterpret_cast<Picture (*)(Picture)>(Entry("HostCalls.Copy(p As Picture) As Picture"));
    struct Case {
        int32_t layout;
        bool masked;
    } cases[] = {
        {KELP_PIXELS_RGB24, false}, {KELP_PIXELS_XRGB32, false}, {KELP_PIXELS_RGBA32, true}};
    for (const Case &c : cases) {
        Picture p = Ramp(5, 4, c.layout);
        ASSERT_NE(StoreOf(p), nullptr) << c.layout;
        EXPECT_EQ(std::pair(StoreOf(p)->Width(), StoreOf(p)->Height()), std::pair(5, 4));
        for (int32_t y = 0; y < 4; ++y)
            for (int32_t x = 0; x < 5; ++x)
                ASSERT_EQ(StoreOf(p)->GetPixel(x, y), RampPixel(x, y)) << c.layout << x << y;
        RuntimeObject *mask = KELPGetPictureMask(p, 0);
        EXPECT_EQ(mask != nullptr, c.masked) << c.layout;
        if (DrawablePane *m = StoreOf(mask)) { // odd columns were transparent
            EXPECT_EQ(std::pair(m->GetPixel(0, 2), m->GetPixel(1, 2)), std::pair(0u, 0xFFFFFFu));
        }
        ASSERT_TRUE(invert(p));
        Picture twin = copy(p);
        for (int32_t y = 0; y < 4; ++y)
            for (int32_t x = 0; x < 5; ++x) {
                ASSERT_EQ(StoreOf(p)->GetPixel(x, y), RampPixel(x, y) ^ 0xFFFFFFu) << x << y;
                ASSERT_EQ(StoreOf(twin)->GetPixel(x, y), RampPixel(x, y) ^ 0xFFFFFFu) << x << y;
            }
        for (RuntimeObject *o : {mask, twin, p})
            RuntimeUnlockObject(o);
    }
    // Sizes a Rect can't hold, too many pixels, a layout nobody defined.
    EXPECT_EQ(Ramp(0, 4, KELP_PIXELS_RGB24), nullptr);
    EXPECT_EQ(Ramp(40000, 1, KELP_PIXELS_RGB24), nullptr);
    EXPECT_EQ(Ramp(5000, 5000, KELP_PIXELS_XRGB32), nullptr);
    EXPECT_EQ(Ramp(2, 2, 7), nullptr);
    KELPpictureDescription d{};
    EXPECT_FALSE(lockPictureDescription(nullptr, &d, KELP_PICTURE_GDK_PIXBUF));
    EXPECT_FALSE(invert(nullptr));
}

// A plug-in drawing on a picture's Graphics: the style it sets is the style
// it reads, its GC draws in the ForeColor, and pictures scale into a rect.
TEST_F(PluginPictures, GraphicsCallsOnAPicture) {
    Picture canvas = NewPictureOfSize(20, 20);
    RuntimeObject *g = pictureGraphicsGetter(canvas, 0);
    ASSERT_NE(g, nullptr);
    KelpString arial = objtext::Make("Arial");
    const KELPgraphicsStyle set{arial, 14, 1, 0, 1, 0x336699};
    KELPSetGraphicsStyle(g, &set);
    objtext::Release(arial);
    KELPgraphicsStyle got{};
    KELPGetGraphicsFontStyle(g, &got);
    EXPECT_EQ(objtext::View(got.font), "Arial");
    EXPECT_EQ(std::tuple(got.size, got.bold, got.italic, got.underline, got.color),
              std::tuple(14, 1, 0, 1, 0x336699u));
    RuntimeUnlockString(got.font);

    auto *gc = static_cast<GdkGC *>(KELPGraphicsDC(g));
    ASSERT_NE(gc, nullptr);
    gdk_draw_rectangle(static_cast<GdkDrawable *>(KELPGraphicsGdkDrawable(g)), gc, TRUE, 0, 0, 5,
                       5);
    g_object_unref(gc);
    KELPPictureClearCache(canvas); // drawn behind the runtime's back

    Picture ramp = Ramp(2, 2, KELP_PIXELS_RGB24);
    const KelpRect into{10, 10, 14, 14}; // top, left, bottom, right: 2 x 2 scaled to 4 x 4
    KELPDrawPicturePrimitive(g, ramp, &into);
    struct Case {
        int x, y;
        uint32_t rgb;
    } pixels[] = {{2, 2, 0x336699},          {6, 6, 0xFFFFFF},          {10, 10, RampPixel(0, 0)},
                  {12, 10, RampPixel(1, 0)}, {11, 13, RampPixel(0, 1)}, {13, 13, RampPixel(1, 1)},
                  {14, 14, 0xFFFFFF}};
    Picture copy = KELPBuildPictureFromGWorld(StoreOf(canvas)->Pixmap(), 0);
    ASSERT_NE(copy, nullptr);
    for (const Case &c : pixels) {
        EXPECT_EQ(StoreOf(canvas)->GetPixel(c.x, c.y), c.rgb) << c.x << "," << c.y;
        EXPECT_EQ(StoreOf(copy)->GetPixel(c.x, c.y), c.rgb) << c.x << "," << c.y;
    }
    EXPECT_EQ(KELPGetPictureMask(canvas, 0), nullptr);
    RuntimeObject *mask = KELPGetPictureMask(canvas, 1);
    EXPECT_NE(mask, nullptr);
    for (RuntimeObject *o : {mask, copy, ramp, g, canvas})
        RuntimeUnlockObject(o);
}

} // namespace
} // namespace kelp::plugins
