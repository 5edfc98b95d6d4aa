// The BMP reader against files Python's standard library wrote, hostile and
// truncated files, the writer checked by Python, and the fuzz corpus replayed.
#include "bitmaps/bmp_codec.h"

#include <gtest/gtest.h>

#include <dirent.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace kelp {
namespace {

std::string ReadFile(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

bool Decode(const std::string &bytes, RGBImage &image, std::string *error = nullptr) {
    return DecodeBmp(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size(), image, error);
}

class BmpFiles : public ::testing::Test {
protected:
    void SetUp() override {
        char templ[] = "/tmp/kelp-bmp-XXXXXX";
        ASSERT_NE(mkdtemp(templ), nullptr);
        mDir = templ;
        ASSERT_EQ(std::system(("python3 " KELP_BMP_WRITER " " + mDir).c_str()), 0);
    }
    void TearDown() override { std::system(("rm -rf '" + mDir + "'").c_str()); }
    std::string mDir;
};

const char *const kWritten[] = {"bits1",      "bits4",  "bits4_short_palette", "bits8",
                                "bits8_core", "bits24", "bits24_top_down",     "bits32"};

TEST_F(BmpFiles, DecodesWhatPythonWrotePixelByPixel) {
    for (const char *name : kWritten) {
        std::string bmp = ReadFile(mDir + "/" + name + ".bmp");
        std::string expected = ReadFile(mDir + "/" + name + ".rgb");
        RGBImage image;
        std::string error;
        ASSERT_TRUE(Decode(bmp, image, &error)) << name << ": " << error;
        ASSERT_EQ(image.rgb.size(), expected.size()) << name;
        for (size_t i = 0; i < expected.size(); i += 3)
            ASSERT_EQ(0, std::memcmp(&image.rgb[i], &expected[i], 3))
                << name << " pixel " << i / 3 % image.width << "," << i / 3 / image.width;
    }
}

TEST_F(BmpFiles, EveryTruncationFailsCleanly) {
    for (const char *name : kWritten) {
        std::string bmp = ReadFile(mDir + "/" + name + ".bmp");
        for (size_t cut = 0; cut < bmp.size(); ++cut) {
            // A heap copy of exactly the kept bytes, so the sanitizer sees any overrun.
            std::vector<uint8_t> part(bmp.begin(), bmp.begin() + static_cast<long>(cut));
            RGBImage image;
            bool ok = DecodeBmp(part.data(), part.size(), image);
            // Only the padding of the last row may be missing... and even that is refused.
            EXPECT_FALSE(ok) << name << " cut at " << cut;
            EXPECT_TRUE(image.rgb.empty());
        }
    }
}

// A 24-bit 2x2 file with one field replaced.
std::string Patched(size_t offset, std::vector<uint8_t> bytes) {
    std::string f("BM\x46\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x02\0\0\0\x02\0\0\0\x01\0\x18\0", 30);
    f.append(24, '\0');
    f.append(16, '\x7f');
    for (size_t i = 0; i < bytes.size(); ++i)
        f[offset + i] = static_cast<char>(bytes[i]);
    return f;
}

TEST(BmpHostile, RefusedWithAReason) {
    struct Case {
        const char *what;
        std::string bytes;
        const char *error;
    } cases[] = {
        {"not BM", "XM" + Patched(0, {}).substr(2), "not a BMP file"},
        {"header size 0", Patched(14, {0, 0, 0, 0}), "unknown header size"},
        {"header size huge", Patched(14, {0, 0, 0, 0x40}), "unknown header size"},
        {"zero width", Patched(18, {0, 0, 0, 0}), "picture size out of range"},
        {"negative width", Patched(18, {0xff, 0xff, 0xff, 0xff}), "picture size out of range"},
        {"huge dimensions", Patched(18, {0xff, 0x7f, 0, 0, 0xff, 0x7f, 0, 0}),
         "picture size out of range"},
        {"most negative height", Patched(22, {0, 0, 0, 0x80}), "picture size out of range"},
        {"rows past the data", Patched(22, {0x09, 0, 0, 0}), "pixel rows past the end of the data"},
        {"pixel offset past the data", Patched(10, {0xff, 0xff, 0xff, 0x7f}),
         "pixel rows past the end of the data"},
        {"palette offset past the data", Patched(10, {0xff, 0xff, 0, 0}).replace(28, 1, "\x08"),
         "pixel offset past the end of the data"},
        {"bit count 16", Patched(28, {16}), "unsupported bit count"},
        {"bit count 0", Patched(28, {0}), "unsupported bit count"},
    };
    for (const Case &c : cases) {
        RGBImage image;
        std::string error;
        EXPECT_FALSE(Decode(c.bytes, image, &error)) << c.what;
        EXPECT_EQ(error, c.error) << c.what;
    }
    RGBImage image;
    ASSERT_TRUE(Decode(Patched(0, {}), image)); // the unpatched file is fine
    EXPECT_EQ(image.rgb, std::vector<uint8_t>(12, 0x7f));
    EXPECT_FALSE(DecodeBmp(nullptr, 100, image));
}

TEST_F(BmpFiles, WriterOutputReadsBackInPython) {
    const int w = 7, h = 4;
    std::vector<uint8_t> rgba(w * h * 4);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            uint8_t *p = &rgba[(y * w + x) * 4];
            p[0] = (x * 37 + y * 11) & 255;
            p[1] = (x * 5 + y * 71) & 255;
            p[2] = (x * y * 3 + 7) & 255;
            p[3] = 0xEE; // a fourth channel is skipped
        }
    std::string file = EncodeBmp(rgba.data(), w, h, w * 4, 4, 96, 72);
    std::ofstream(mDir + "/out.bmp", std::ios::binary) << file;
    EXPECT_EQ(std::system(("python3 " KELP_BMP_WRITER " --check " + mDir + "/out.bmp 7 4").c_str()),
              0);
    EXPECT_EQ(static_cast<uint8_t>(file[38]) | static_cast<uint8_t>(file[39]) << 8, 3780); // 96 dpi
    EXPECT_EQ(static_cast<uint8_t>(file[42]) | static_cast<uint8_t>(file[43]) << 8, 2835); // 72 dpi
    EXPECT_TRUE(EncodeBmp(rgba.data(), 0, h, w * 4, 4).empty());
}

TEST(BmpFuzzCorpus, ReplaysEveryFile) {
    DIR *dir = opendir(KELP_BMP_CORPUS);
    ASSERT_NE(dir, nullptr);
    int files = 0;
    while (dirent *entry = readdir(dir)) {
        if (entry->d_name[0] == '.')
            continue;
        std::string bytes = ReadFile(std::string(KELP_BMP_CORPUS "/") + entry->d_name);
        std::vector<uint8_t> copy(bytes.begin(), bytes.end());
        EXPECT_EQ(LLVMFuzzerTestOneInput(copy.data(), copy.size()), 0) << entry->d_name;
        ++files;
    }
    closedir(dir);
    EXPECT_GE(files, 8);
}

} // namespace
} // namespace kelp
