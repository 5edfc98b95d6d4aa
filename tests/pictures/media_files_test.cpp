// FolderItem's sounds, movies, vector pictures and JPEG on real files: a
// WAVE that Python wrote played into the sound sink, a JPEG decoded again
// by the toolkit's converter in a process of its own.
#include "support/class_kit.h"
#include "support/image_builder.h"
#include "support/xvfb.h"

#include "folder_items/folder_item_object.h"
#include "folder_items/folder_item_unix.h"
#include "runloop/background_task.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <thread>

namespace kelp {
namespace {

using test::ReadFileBytes;

RuntimeObject *Item(const std::string &path) {
    return NewFolderItem(std::make_unique<FolderItemImpUnix>(path));
}
uint32_t Word(const std::vector<uint8_t> &b, size_t at, bool big) {
    uint32_t v = 0;
    for (int i = 0; i < 4; ++i)
        v |= uint32_t(b[at + i]) << (big ? 24 - 8 * i : 8 * i);
    return v;
}

TEST(MediaFiles, OnlyRiffAndFormFilesOpenAsSoundsAndMoviesAreNil) {
    test::TempDir dir;
    ASSERT_EQ(std::system(
                  ("python3 " KELP_SOURCE_DIR "/tests/sound/make_waves.py " + dir.path()).c_str()),
              0);
    std::ofstream(dir / "form.aiff") << "FORM\0\0\0\4AIFF";
    std::ofstream(dir / "text.wav") << "not a sound at all";
    std::ofstream(dir / "short.wav") << "RIF";
    for (auto [name, isSound] : {std::pair{"u8.wav", true},
                                 {"form.aiff", true},
                                 {"text.wav", false},
                                 {"short.wav", false},
                                 {"missing", false},
                                 {"", false}}) {
        RuntimeObject *item = Item(dir / name);
        RuntimeObject *sound = FolderItemOpenSound(item);
        EXPECT_EQ(sound != nullptr, isSound) << name;
        EXPECT_EQ(FolderItemOpenMovie(item), nullptr);
        EXPECT_EQ(FolderItemOpenResourceMovie(item, 128), nullptr);
        RuntimeUnlockObject(sound);
        RuntimeUnlockObject(item);
    }
    // The sink gets what Python wrote: 8-bit samples (i * 7) % 256, as 16 bits.
    const std::string sink = dir / "sink";
    setenv("KELP_SOUND_SINK", sink.c_str(), 1);
    RuntimeObject *item = Item(dir / "u8.wav");
    RuntimeObject *sound = FolderItemOpenSound(item);
    soundPlay(sound);
    for (int i = 0; i < 1200 && soundIsPlaying(sound); ++i) { // ticks of the run loop
        ScanBackgroundTasks(false);
        std::this_thread::sleep_for(std::chrono::milliseconds(17));
    }
    unsetenv("KELP_SOUND_SINK");
    std::vector<int16_t> played;
    const std::vector<uint8_t> b = ReadFileBytes(sink);
    for (size_t at = 0; at + 8 <= b.size(); at += 8 + Word(b, at + 4, false))
        for (size_t i = 0; std::memcmp(&b[at], "DATA", 4) == 0 && i < Word(b, at + 4, false);
             i += 2)
            played.push_back(int16_t(b[at + 8 + i] | b[at + 9 + i] << 8));
    ASSERT_EQ(played.size(), 10000u);
    for (size_t i = 0; i < played.size(); ++i)
        ASSERT_EQ(played[i], int16_t(((i * 7) % 256 - 128) * 256)) << i;
    RuntimeUnlockObject(sound);
    RuntimeUnlockObject(item);
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
    const std::string file = dir / "halves.jpg";
    RuntimeObject *jpeg = Item(file);
    FolderItemSaveAsJPEG(jpeg, picture);
    EXPECT_EQ(FolderItemGetLastError(jpeg, 0), 0);
    // Raw RGB pixdata: "GdkP", length, type, stride, width, height, pixels.
    ASSERT_EQ(std::system(("gdk-pixbuf-pixdata '" + file + "' '" + file + ".raw'").c_str()), 0);
    const std::vector<uint8_t> b = ReadFileBytes(file + ".raw");
    ASSERT_GE(b.size(), 24u);
    ASSERT_EQ(Word(b, 8, true), 0x01010001u);
    ASSERT_EQ(Word(b, 16, true), 32u);
    ASSERT_EQ(Word(b, 20, true), 16u);
    auto near = [](uint32_t a, uint32_t c) { // JPEG is lossy: within a few steps
        for (int shift : {0, 8, 16})
            if (std::abs(int(a >> shift & 255) - int(c >> shift & 255)) > 24)
                return false;
        return true;
    };
    for (auto [x, y, colour] : {std::tuple{4, 4, 0xFF0000u},
                                {10, 12, 0xFF0000u},
                                {20, 4, 0x0000FFu},
                                {28, 12, 0x0000FFu}}) {
        const size_t at = 24 + y * Word(b, 12, true) + x * 3;
        ASSERT_LT(at + 2, b.size());
        EXPECT_TRUE(near(b[at] << 16 | b[at + 1] << 8 | b[at + 2], colour)) << x << "," << y;
    }
    // A vector picture opens as the picture the file holds.
    RuntimeObject *opened = FolderItemOpenVectorImage(jpeg);
    ASSERT_NE(opened, nullptr);
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
