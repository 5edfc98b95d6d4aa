// The resource store as the image reader fills it: images with resource and
// option records are prepared in this process and the store is read back.
#include "support/image_builder.h"
#include "support/xvfb.h"

#include "base/fatal_report.h"
#include "image/loader.h"
#include "kelp/resources.h"
#include "resources/resource_store.h"
#include "resources/sound_file.h"
#include "shutdown/shutdown_task.h"

#include <gtest/gtest.h>

#include <gtk/gtk.h>
#include <sys/stat.h>

#include <cstring>
#include <string>
#include <vector>

using kelp::test::ImageBuilder;
namespace img = kelp::image;

namespace {

std::vector<std::string> gReports;
void CollectReport(int, const char *, int, const char *condition, const char *message) {
    gReports.push_back(std::string(condition) + "|" + message);
}

class ResourceStore : public ::testing::Test {
protected:
    void SetUp() override {
        kelp::ClearResourcesForTest();
        gReports.clear();
        mOld = kelp::SetFatalReportHook(&CollectReport);
    }
    void TearDown() override {
        kelp::SetFatalReportHook(mOld);
        kelp::ClearResourcesForTest();
    }
    void Load(ImageBuilder &b) {
        img::PreparedImage p;
        std::string error;
        ASSERT_TRUE(img::PrepareImage(b.Build(), p, error)) << error;
    }
    static std::string Text(stringStorage *s) {
        return s ? std::string(reinterpret_cast<const char *>(s->buffer + 1), size_t(s->length))
                 : "";
    }
    kelp::FatalReportHook mOld = nullptr;
};

TEST_F(ResourceStore, RowsKeepTheirOrderAndTheFirstOfTwoEqualRowsWins) {
    ImageBuilder b;
    b.AddResource("TEXT", 128, std::string("first"));
    b.AddResource("WAVE", 128, std::string("RIFF...."));
    b.AddResource("TEXT", 128, std::string("second"));
    b.AddResource("KPPl", 65535, std::string("plug-in bytes"));
    Load(b);
    ASSERT_EQ(kelp::ResourceCount(), 4u);
    EXPECT_EQ(kelp::ResourceAt(1).type, kelp::kResourceWave);
    const kelp::ResourceRow text = kelp::FindResource(kelp::kResourceText, 128);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(text.data), text.length), "first");
    EXPECT_EQ(text.fileOffset, 0u) << "resources of an image not read from a file have no offset";
    const kelp::ResourceRow plugin = kelp::FindResource(kelp::kResourcePlugin, 65535);
    EXPECT_EQ(plugin.length, 13u);
    const kelp::ResourceRow none = kelp::FindResource(kelp::kResourceText, 129);
    EXPECT_EQ(none.data, nullptr);
    EXPECT_EQ(none.type, 0u);
    EXPECT_TRUE(gReports.empty());
}

TEST_F(ResourceStore, AnIndexPastTheEndIsAFailedAssertion) {
    kelp::AddResource(kelp::kResourceText, 1, reinterpret_cast<const uint8_t *>("x"), 1, 0);
    const kelp::ResourceRow row = kelp::ResourceAt(1);
    EXPECT_EQ(row.data, nullptr);
    EXPECT_EQ(gReports, std::vector<std::string>{"index < GetCount()|"});
}

TEST_F(ResourceStore, TextResourcesKeepTheirBytesAndTakeTheDefaultEncoding) {
    ImageBuilder b;
    b.AddResource("TEXT", 7, std::vector<uint8_t>{'c', 'a', 'f', 0xE9, '\r', '\n'});
    Load(b);
    stringStorage *s = RuntimeGetTextFileFromResourceManager(7);
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(Text(s), "caf\xE9\r\n");
    EXPECT_EQ(s->encoding, kEncodingLatin1);
    EXPECT_EQ(RuntimeGetTextFileFromResourceManager(8), nullptr);
}

TEST_F(ResourceStore, VersionBlockFromTheOptionsFeedsTheApplicationProperties) {
    ImageBuilder b;
    // Stored most significant byte first, as the application's image has
    // them: read as they lie, MajorVersion 1 reads 0x01000000.
    const int32_t words[6] = {0x01000000, 2, 3, 4, 5, 6};
    b.SetVersion(words, "1.2", "Version 1.2.3", "pkg");
    EXPECT_EQ(AppIntegerVersionStuffGetter(nullptr, 0), -1) << "no version block yet";
    Load(b);
    // StageCode (3) is word 4 and NonReleaseVersion (4) word 3; 6 is no property.
    const int32_t want[] = {0x01000000, 2, 3, 5, 4, 6, -1};
    for (int32_t i = 0; i < 7; ++i)
        EXPECT_EQ(AppIntegerVersionStuffGetter(nullptr, i), want[i]) << "property " << i;
    stringStorage *shortVersion = AppStringVersionStuffGetter(nullptr, 0);
    stringStorage *longVersion = AppStringVersionStuffGetter(nullptr, 1);
    stringStorage *package = AppStringVersionStuffGetter(nullptr, 2);
    EXPECT_EQ(Text(shortVersion), "1.2");
    EXPECT_EQ(Text(longVersion), "Version 1.2.3");
    EXPECT_EQ(Text(package), "pkg");
    ASSERT_NE(shortVersion, nullptr);
    EXPECT_EQ(shortVersion->encoding, kEncodingUTF8);
    const kelp::ResourceRow vers = kelp::FindResource(kelp::kResourceVersion, 0);
    EXPECT_EQ(vers.length, 24u + 4 + 14 + 4);
}

TEST_F(ResourceStore, DamagedSegmentsKeepTheRowsBeforeTheDamage) {
    ImageBuilder b;
    b.AddResource("TEXT", 1, std::string("ok"));
    b.AddResource("TEXT", 2, std::string("cut"));
    b.Resources().resize(b.Resources().size() - 2); // the second record's data cut off
    b.Options() = {7, 1, 4, 4, 0};                  // an unknown type, then an icon cut off
    Load(b);
    EXPECT_EQ(kelp::ResourceCount(), 1u);
    ASSERT_EQ(gReports.size(), 3u);
    EXPECT_NE(gReports[0].find("more than its segment holds"), std::string::npos) << gReports[0];
    EXPECT_NE(gReports[1].find("Unknown option record of type 7"), std::string::npos)
        << gReports[1];
    EXPECT_NE(gReports[2].find("runs past the end of its segment"), std::string::npos)
        << gReports[2];
}

TEST_F(ResourceStore, CursorBitsAreMirroredAndTheHotSpotReadBigEndian) {
    std::vector<uint8_t> cursor(68, 0);
    cursor[0] = 0x80;                     // leftmost pixel of the first row
    cursor[32] = 0x01;                    // rightmost pixel of the mask's first row
    cursor[64] = 0x00, cursor[65] = 0x03; // row 3
    cursor[66] = 0x00, cursor[67] = 0x0C; // column 12
    ImageBuilder b;
    b.AddResource("CURS", 5, cursor);
    b.AddResource("CURS", 6, std::vector<uint8_t>(67, 0)); // too short to be a cursor
    Load(b);
    kelp::CursorBits bits;
    ASSERT_TRUE(kelp::FindCursorBits(5, bits));
    EXPECT_EQ(bits.image[0], 0x01);
    EXPECT_EQ(bits.mask[0], 0x80);
    EXPECT_EQ(bits.hotRow, 3);
    EXPECT_EQ(bits.hotColumn, 12);
    EXPECT_FALSE(kelp::FindCursorBits(6, bits));
    EXPECT_FALSE(kelp::FindCursorBits(7, bits));
}

TEST_F(ResourceStore, DatabaseRecordsGiveNameAndBytesOnlyWhenTheyFit) {
    std::vector<uint8_t> good = {3, 0, 0, 0, 'd', 'b', '1', 2, 0, 0, 0, 0xFE, 0xED};
    std::vector<uint8_t> bad = {200, 0, 0, 0, 'd'};
    ImageBuilder b;
    b.AddResource("DBAS", 1, good);
    b.AddResource("DBAS", 2, bad);
    Load(b);
    kelp::DatabaseResource db;
    ASSERT_TRUE(kelp::FindDatabaseResource(1, db));
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(db.name), db.nameLength), "db1");
    EXPECT_EQ(db.length, 2u);
    EXPECT_EQ(db.data[0], 0xFE);
    EXPECT_FALSE(kelp::FindDatabaseResource(2, db));
}

TEST_F(ResourceStore, EachSoundRequestWritesItsOwnTemporaryFileRemovedAtTheRunDown) {
    ImageBuilder b;
    const std::string wave = "RIFF-wave-bytes";
    b.AddResource("WAVE", 3, wave);
    Load(b);
    kelp::SoundSource first, second;
    ASSERT_TRUE(kelp::SoundResourceSource(3, "/proc/self/exe", first));
    ASSERT_TRUE(kelp::SoundResourceSource(3, "/proc/self/exe", second));
    EXPECT_NE(first.path, second.path);
    EXPECT_EQ(kelp::test::ReadFileBytes(first.path),
              std::vector<uint8_t>(wave.begin(), wave.end()));
    EXPECT_FALSE(kelp::SoundResourceSource(4, "/proc/self/exe", first));
    kelp::RunShutdownTasks();
    struct stat st;
    EXPECT_NE(stat(first.path.c_str(), &st), 0);
    EXPECT_NE(stat(second.path.c_str(), &st), 0);
}

TEST_F(ResourceStore, RowsFromAnAppendedImageKnowWhereTheirBytesLieInTheFile) {
    ImageBuilder b;
    b.Ret();
    b.AddResource("TEXT", 1, std::string("first text"));
    b.AddResource("WAVE", 2, std::string("RIFF and the rest"));
    kelp::test::TempDir dir;
    ASSERT_TRUE(kelp::test::WriteAppended(b.Build(), dir / "app"));
    img::Segments segments;
    std::string error;
    ASSERT_EQ(img::ReadAppendedImage(dir / "app", segments, error), img::ReadStatus::kOk) << error;
    img::PreparedImage p;
    ASSERT_TRUE(img::PrepareImage(std::move(segments), p, error)) << error;
    const auto file = kelp::test::ReadFileBytes(dir / "app");
    for (uint32_t id : {1u, 2u}) {
        const kelp::ResourceRow row = kelp::ResourceAt(id - 1);
        ASSERT_NE(row.fileOffset, 0u);
        ASSERT_LE(size_t(row.fileOffset) + row.length, file.size());
        EXPECT_EQ(std::memcmp(file.data() + row.fileOffset, row.data, row.length), 0) << id;
    }
}

TEST_F(ResourceStore, WindowIconsGoToTheToolkitLastOneFirst) {
    if (!kelp::test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    ImageBuilder b;
    std::vector<uint8_t> red(2 * 2 * 4), blue(3 * 3 * 4);
    for (size_t i = 0; i < red.size(); i += 4)
        red[i] = 0xFF, red[i + 3] = 0xFF;
    for (size_t i = 0; i < blue.size(); i += 4)
        blue[i + 2] = 0xFF, blue[i + 3] = 0x80;
    b.AddIcon(2, 2, red);
    b.AddIcon(3, 3, blue);
    Load(b);
    GList *icons = gtk_window_get_default_icon_list();
    ASSERT_EQ(g_list_length(icons), 2u);
    auto *first = static_cast<GdkPixbuf *>(icons->data);
    auto *second = static_cast<GdkPixbuf *>(icons->next->data);
    EXPECT_EQ(gdk_pixbuf_get_width(first), 3);
    EXPECT_EQ(gdk_pixbuf_get_width(second), 2);
    const guchar *px = gdk_pixbuf_get_pixels(first);
    EXPECT_EQ(px[2], 0xFF);
    EXPECT_EQ(px[3], 0x80);
    g_list_free(icons);
    EXPECT_EQ(kelp::ResourceCount(), 0u) << "icons are no resources";
}

} // namespace
