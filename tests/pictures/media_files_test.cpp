// The FolderItem calls for sounds, movies, vector pictures and JPEG on real
// files: a WAVE that Python wrote played into the sound sink, and a JPEG
// decoded again by the toolkit's own converter in another process.
#include "support/class_kit.h"
#include "support/image_builder.h"
#include "support/xvfb.h"

#include "folder_items/folder_item_object.h"
#include "folder_items/folder_item_unix.h"
#include "runloop/background_task.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <thread>

namespace kelp {
namespace {

using test::ReadFileBytes;

RuntimeObject *Item(const std::string &path) {
    return NewFolderItem(std::make_unique<FolderItemImpUnix>(path));
}

// The 16-bit samples the sink was given, from its DATA records.
std::vector<int16_t> SinkSamples(const std::string &sink) {
    const std::vector<uint8_t> b = ReadFileBytes(sink);
    std::vector<int16_t> out;
    for (size_t at = 0; at + 8 <= b.size();) {
        uint32_t length;
        std::memcpy(&length, &b[at + 4], 4);
        if (std::memcmp(&b[at], "DATA", 4) == 0)
            for (size_t i = 0; i + 1 < length; i += 2)
                out.push_back(int16_t(b[at + 8 + i] | b[at + 9 + i] << 8));
        at += 8 + length;
    }
    return out;
}

TEST(MediaFiles, OnlyRiffAndFormFilesOpenAsSoundsAndMoviesAreNil) {
    test::TempDir dir;
    ASSERT_EQ(std::system(
                  ("python3 " KELP_SOURCE_DIR "/tests/sound/make_waves.py " + dir.path()).c_str()),
              0);
    std::ofstream(dir / "form.aiff") << "FORM\0\0\0\4AIFF";
    std::ofstream(dir / "text.wav") << "not a sound at all";
    std::ofstream(dir / "short.wav") << "RIF";
    struct Case {
        const char *name;
        bool sound;
    } cases[] = {{"u8.wav", true},     {"form.aiff", true}, {"text.wav", false},
                 {"short.wav", false}, {"missing", false},  {"", false}};
    for (const Case &c : cases) {
        RuntimeObject *item = Item(dir / c.name);
        RuntimeObject *sound = FolderItemOpenSound(item);
        EXPECT_EQ(sound != nullptr, c.sound) << c.name;
        EXPECT_EQ(FolderItemOpenMovie(item), nullptr);
        EXPECT_EQ(FolderItemOpenResourceMovie(item, 128), nullptr);
        RuntimeUnlockObject(sound);
        RuntimeUnlockObject(item);
    }

    // What Python wrote reaches the device: 8-bit samples (i * 7) % 256.
    const std::string sink = dir / "sink";
    setenv("KELP_SOUND_SINK", sink.c_str(), 1);
    RuntimeObject *item = Item(dir / "u8.wav");
    RuntimeObject *sound = FolderItemOpenSound(item);
    ASSERT_NE(sound, nullptr);
    soundPlay(sound);
    for (int i = 0; i < 1200 && soundIsPlaying(sound); ++i) { // ticks of the run loop
        ScanBackgroundTasks(false);
        std::this_thread::sleep_for(std::chrono::milliseconds(17));
    }
    unsetenv("KELP_SOUND_SINK");
    const std::vector<int16_t> played = SinkSamples(sink);
    ASSERT_EQ(played.size(), 10000u);
    for (size_t i = 0; i < played.size(); ++i)
        ASSERT_EQ(played[i], int16_t(((i * 7) % 256 - 128) * 256)) << i;
    RuntimeUnlockObject(sound);
    RuntimeUnlockObject(item);
}

// The pixels of an image file as the toolkit's converter decodes them in a
// process of its own (raw RGB pixdata, big-endian header).
std::vector<uint32_t> DecodedElsewhere(const std::string &file, int *w, int *h) {
    const std::string out = file + ".pixdata";
    if (std::system(("gdk-pixbuf-pixdata '" + file + "' '" + out + "'").c_str()) != 0)
        return {};
    const std::vector<uint8_t> b = ReadFileBytes(out);
    auto word = [&](size_t at) {
        return uint32_t(b[at] << 24 | b[at + 1] << 16 | b[at + 2] << 8 | b[at + 3]);
    };
    if (b.size() < 24 || std::memcmp(b.data(), "GdkP", 4) != 0 || word(8) != 0x01010001)
        return {};
    const uint32_t stride = word(12);
    *w = int(word(16)), *h = int(word(20));
    std::vector<uint32_t> pixels;
    for (int y = 0; y < *h; ++y)
        for (int x = 0; x < *w; ++x) {
            const size_t at = 24 + y * stride + x * 3;
            pixels.push_back(at + 2 < b.size() ? b[at] << 16 | b[at + 1] << 8 | b[at + 2] : 0xDEAD);
        }
    return pixels;
}

TEST(MediaFiles, JpegAndVectorPicturesThroughRealFiles) {
    if (!test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    test::TempDir dir;
    RuntimeObject *picture = newPicture(32, 16, 32);
    RuntimeObject *g = pictureGraphicsGetter(picture, 0);
    graphicsForeColorSetter(g, 0, 0xFF0000);
    RuntimeGraphicsFillRect(g, 0, 0, 16, 16);
    graphicsForeColorSetter(g, 0, 0x0000FF);
    RuntimeGraphicsFillRect(g, 16, 0, 16, 16);
    RuntimeObject *jpeg = Item(dir / "halves.jpg");
    FolderItemSaveAsJPEG(jpeg, picture);
    EXPECT_EQ(FolderItemGetLastError(jpeg, 0), 0);
    int w = 0, h = 0;
    const std::vector<uint32_t> pixels = DecodedElsewhere(dir / "halves.jpg", &w, &h);
    ASSERT_EQ(w, 32);
    ASSERT_EQ(h, 16);
    auto near = [](uint32_t a, uint32_t b) { // JPEG is lossy: within a few steps
        for (int shift : {0, 8, 16})
            if (std::abs(int(a >> shift & 255) - int(b >> shift & 255)) > 24)
                return false;
        return true;
    };
    for (auto [x, y, colour] : {std::tuple{4, 4, 0xFF0000u},
                                {10, 12, 0xFF0000u},
                                {20, 4, 0x0000FFu},
                                {28, 12, 0x0000FFu}})
        EXPECT_TRUE(near(pixels[y * w + x], colour))
            << x << "," << y << std::hex << " " << pixels[y * w + x];

    // A vector picture opens as the picture the file holds.
    RuntimeObject *opened = FolderItemOpenVectorImage(jpeg);
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(pictureWidthGetter(opened, 0), 32);
    RuntimeObject *surface = pictureRGBSurfaceGetter(opened, 0);
    EXPECT_TRUE(near(rgbSurfaceGetPixel(surface, 28, 12), 0x0000FF));

    // A folder can't take the bytes: the error is kept, nothing raises.
    RuntimeObject *folder = Item(dir.path() + "/");
    FolderItemSaveAsJPEG(folder, picture);
    EXPECT_NE(FolderItemGetLastError(folder, 0), 0);
    for (RuntimeObject *o : {surface, opened, folder, jpeg, g, picture})
        RuntimeUnlockObject(o);
}

} // namespace
} // namespace kelp
