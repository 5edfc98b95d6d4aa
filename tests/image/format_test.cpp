// The stored image: trailer arithmetic, segments that may be absent, loose
// files, and the symbol table, on real files.
#include "support/image_builder.h"

#include "image/image_format.h"
#include "image/loader.h"
#include "kelp/image.h"

#include <gtest/gtest.h>

using kelp::test::ImageBuilder;
using kelp::test::TempDir;
namespace img = kelp::image;

namespace {

std::vector<uint8_t> Filled(size_t n, uint8_t seed) {
    std::vector<uint8_t> v(n);
    for (size_t i = 0; i < n; ++i)
        v[i] = uint8_t(seed + i * 7);
    return v;
}

TEST(ImageFile, LCountsTheSizeWordsAndLocatesTheFirstSegment) {
    img::Segments s;
    const size_t sizes[6] = {1769498, 83033, 49709, 0, 1398814, 80008};
    for (int i = 0; i < 6; ++i)
        s.bytes[i] = Filled(sizes[i], uint8_t(i));
    const auto tail = img::EncodeAppendedImage(s);
    EXPECT_EQ(kelp::ReadU32(tail.data() + tail.size() - 13), 3381086u);
    EXPECT_EQ(tail.size(), 3381099u);
    EXPECT_EQ(std::string(tail.end() - 9, tail.end()), "CehNehDeh");

    TempDir dir;
    std::vector<uint8_t> file = Filled(1000, 99); // stands for the runtime's own bytes
    file.insert(file.end(), tail.begin(), tail.end());
    ASSERT_TRUE(kelp::test::WriteFileBytes(dir / "app", file));
    img::Segments back;
    std::string error;
    ASSERT_EQ(img::ReadAppendedImage(dir / "app", back, error), img::ReadStatus::kOk) << error;
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(back.bytes[i], s.bytes[i]) << img::SegmentName(i);
    EXPECT_FALSE(back.present[img::kSymbols]) << "size 0 means absent";
    EXPECT_TRUE(back.present[img::kResources]);
    // Resource offset: runtime bytes, then five size words and three segments.
    EXPECT_EQ(back.resourceFileOffset, 1000u + 5 * 4 + 1769498 + 83033 + 49709);
}

TEST(ImageFile, WithoutTheMagicAtTheVeryEndThereIsNoImage) {
    ImageBuilder b;
    b.Ret();
    auto tail = img::EncodeAppendedImage(b.Build());
    tail.push_back('\n'); // a valid image, one byte from the end
    TempDir dir;
    ASSERT_TRUE(kelp::test::WriteFileBytes(dir / "f", tail));
    img::Segments s;
    std::string error;
    EXPECT_EQ(img::ReadAppendedImage(dir / "f", s, error), img::ReadStatus::kNoTrailer);
    ASSERT_TRUE(kelp::test::WriteFileBytes(dir / "short", {'D', 'e', 'h'}));
    EXPECT_EQ(img::ReadAppendedImage(dir / "short", s, error), img::ReadStatus::kNoTrailer);
    EXPECT_EQ(img::ReadAppendedImage(dir / "missing", s, error), img::ReadStatus::kUnreadable);
}

TEST(ImageFile, OptionalSegmentsWithTheTopBitSetAreAbsentAndTakeNoBytes) {
    std::vector<uint8_t> image;
    kelp::AppendU32(image, 1);
    image.push_back(0xC3);
    kelp::AppendU32(image, 0);
    kelp::AppendU32(image, 0);
    kelp::AppendU32(image, 0x80000000u); // symbols
    kelp::AppendU32(image, 0xFFFFFFFFu); // resources
    kelp::AppendU32(image, 2);           // options: two unknown bytes
    image.push_back(9);
    image.push_back(9);
    const uint32_t length = uint32_t(image.size());
    kelp::AppendU32(image, length);
    image.insert(image.end(), img::kTrailerMagic, img::kTrailerMagic + 9);
    TempDir dir;
    ASSERT_TRUE(kelp::test::WriteFileBytes(dir / "app", image));
    img::Segments s;
    std::string error;
    ASSERT_EQ(img::ReadAppendedImage(dir / "app", s, error), img::ReadStatus::kOk) << error;
    EXPECT_FALSE(s.present[img::kSymbols]);
    EXPECT_FALSE(s.present[img::kResources]);
    EXPECT_EQ(s.bytes[img::kOptions], (std::vector<uint8_t>{9, 9}));
    EXPECT_EQ(s.bytes[img::kCode], (std::vector<uint8_t>{0xC3}));
}

TEST(ImageFile, LooseFilesAreReadWholeAndMissingOnesLeaveEmptySegments) {
    TempDir dir;
    ASSERT_TRUE(kelp::test::WriteFileBytes(dir / "code.dat", {0xC3}));
    ASSERT_TRUE(kelp::test::WriteFileBytes(dir / "rsrc.dat", {1, 2, 3}));
    img::Segments s;
    EXPECT_TRUE(img::ReadLooseFiles(dir.path(), s));
    EXPECT_EQ(s.bytes[img::kCode].size(), 1u);
    EXPECT_EQ(s.bytes[img::kResources].size(), 3u);
    EXPECT_TRUE(s.bytes[img::kData].empty());
    EXPECT_FALSE(s.present[img::kOptions]);
    EXPECT_EQ(s.resourceFileOffset, 0u);
    TempDir empty;
    EXPECT_FALSE(img::ReadLooseFiles(empty.path(), s));
}

TEST(ImageFile, LinkRecordsCutOffAtEveryPointAreCaught) {
    // A complete soft import record, then every shorter prefix of it.
    std::vector<uint8_t> record = {4, 9, 0, 0, 0, 3, 'f', 'o', 'o', 0, 2, 'l', 'b', 0};
    for (size_t n = 1; n <= record.size(); ++n) {
        img::LinkTableReader reader(record.data(), n);
        img::LinkRecord r;
        std::string error;
        const bool got = reader.Next(r, error);
        if (n == record.size()) {
            ASSERT_TRUE(got) << error;
            EXPECT_EQ(r.name, "foo");
            EXPECT_EQ(r.library, "lb");
            EXPECT_EQ(r.value, 9u);
        } else {
            EXPECT_FALSE(got) << n;
            EXPECT_NE(error.find("cut off"), std::string::npos) << n;
        }
    }
}

TEST(SymbolTable, NamesTheFunctionThatHoldsAnAddress) {
    ImageBuilder b;
    b.Ret();               // 0: entry
    b.Bytes({0x90, 0x90}); // 1..2: first
    b.Ret();               // 3
    b.Bytes({0x90, 0x90}); // 4..5: second
    b.Ret();
    b.AddSymbol(0, "entry");
    b.AddSymbol(1, "first");
    b.AddSymbol(4, "second");
    img::PreparedImage p;
    std::string error;
    ASSERT_TRUE(img::PrepareImage(b.Build(), p, error)) << error;
    const char *name = nullptr;
    uint32_t offset = 99;
    ASSERT_TRUE(LookupCodeSymbol(p.code + 5, &name, &offset));
    EXPECT_STREQ(name, "second");
    EXPECT_EQ(offset, 1u);
    ASSERT_TRUE(LookupCodeSymbol(p.code + 2, &name, &offset));
    EXPECT_STREQ(name, "first");
    EXPECT_FALSE(LookupCodeSymbol(p.code + 7, &name, &offset)) << "past the code";
    EXPECT_FALSE(LookupCodeSymbol(&offset, &name, &offset));
}

TEST(SymbolTable, DamagedTablesGiveNoNamesAndNoCrash) {
    std::vector<img::SymbolRow> rows;
    std::string error;
    const std::vector<uint8_t> tooMany = {0xFF, 0xFF, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_FALSE(img::ParseSymbols(tooMany.data(), tooMany.size(), rows, error));
    const std::vector<uint8_t> noEnd = {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 'a', 'b'};
    EXPECT_FALSE(img::ParseSymbols(noEnd.data(), noEnd.size(), rows, error));
    EXPECT_NE(error.find("without its end"), std::string::npos);
}

} // namespace
