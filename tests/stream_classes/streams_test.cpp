// The text and binary stream engines on real files in a private folder:
// line ends across buffer fills, positions, round trips, and the neutral
// answers of closed and read-only streams.
#include "files/unix_data_file.h"
#include "stream_classes/binary_data.h"
#include "stream_classes/string_mechanism.h"
#include "stream_classes/text_input.h"
#include "stream_classes/text_output.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace kelp {
namespace {

// A small fill, so that a few kilobytes cross many fills' edges.
constexpr int32_t kFill = 1024;

class StreamFiles : public ::testing::Test {
protected:
    void SetUp() override {
        char templ[] = "/tmp/kelp-streams-XXXXXX";
        ASSERT_NE(mkdtemp(templ), nullptr);
        mDir = templ;
    }
    void TearDown() override { std::system(("rm -rf '" + mDir + "'").c_str()); }

    std::string Write(const std::string &name, const std::string &bytes) {
        std::string path = mDir + "/" + name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }
    static std::unique_ptr<UnixDataFile> Open(const std::string &path, int permission) {
        auto file = std::make_unique<UnixDataFile>();
        EXPECT_TRUE(file->Open(path, permission));
        return file;
    }
    static std::vector<std::string> AllLines(TextInput &in, uint32_t encoding = kEncodingNotGiven) {
        std::vector<std::string> lines;
        for (int guard = 0; !in.IsEOF() && guard < 100000; ++guard)
            lines.emplace_back(in.ReadLine(encoding).View());
        return lines;
    }
    std::string mDir;
};

std::string Read(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST_F(StreamFiles, LineEndsSplitTheWayTheyShould) {
    // The next byte is the last of the first fill.
    const std::string pad(kFill - 1, 'x');
    struct Case {
        const char *what;
        std::string bytes;
        std::vector<std::string> lines;
    } cases[] = {
        {"empty file", "", {}},
        {"LF, CR, CRLF", "a\nb\rc\r\nd", {"a", "b", "c", "d"}},
        {"last line without end", "one\ntwo", {"one", "two"}},
        {"blank lines", "\n\r\n\r", {"", "", ""}},
        {"LF CR is two ends", "a\n\rb", {"a", "", "b"}},
        {"CRLF across fills", pad + "\r\nz", {pad, "z"}},
        {"CR ends a fill, next starts with text", pad + "\rz", {pad, "z"}},
        {"line longer than a fill", std::string(3000, 'q') + "\nw", {std::string(3000, 'q'), "w"}},
    };
    for (const Case &c : cases) {
        TextInput in(Open(Write("lines", c.bytes), UnixDataFile::kRead), kFill);
        EXPECT_EQ(AllLines(in), c.lines) << c.what;
        EXPECT_TRUE(in.IsEOF()) << c.what;
        EXPECT_EQ(in.ReadLine().Length(), 0) << c.what;
    }
}

// Random texts of CR, LF and letters, split by Python's universal newlines.
TEST_F(StreamFiles, RandomLineEndsAgreeWithPython) {
    std::mt19937 rng(1234);
    for (int round = 0; round < 20; ++round) {
        std::string bytes;
        size_t size = rng() % 6000;
        for (size_t i = 0; i < size; ++i) {
            unsigned r = rng() % 10;
            bytes += r == 0 ? '\r' : r == 1 ? '\n' : static_cast<char>('a' + r);
        }
        std::string path = Write("random", bytes);
        std::string script = "import sys; t=open(sys.argv[1],newline=None,encoding='latin-1')."
                             "read(); p=t.split('\\n'); p=p[:-1] if t.endswith('\\n') else p; "
                             "p=[] if t=='' else p; open(sys.argv[2],'w').write(repr(p))";
        std::string out = mDir + "/expected";
        ASSERT_EQ(std::system(("python3 -c \"" + script + "\" " + path + " " + out).c_str()), 0);
        TextInput in(Open(path, UnixDataFile::kRead), kFill);
        std::string mine = "[";
        for (const std::string &line : AllLines(in))
            mine += (mine.size() > 1 ? ", '" : "'") + line + "'";
        EXPECT_EQ(mine + "]", Read(out)) << "round " << round;
    }
}

TEST_F(StreamFiles, UTF16LinesGoByUnits) {
    // "A\r\nB" then a unit 0x0D0A, which is a letter, not a line end, and a
    // CRLF whose LF unit starts the second fill.
    std::u16string text = u"A\r\nB\u0d0aC";
    text += std::u16string(511 - text.size(), u'x') + u"\r\nZ";
    std::string bytes(reinterpret_cast<const char *>(text.data()), text.size() * 2);
    TextInput in(Open(Write("utf16", bytes), UnixDataFile::kRead), kFill);
    std::vector<std::string> lines = AllLines(in, kEncodingUTF16);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], std::string("A\0", 2));
    EXPECT_EQ(lines[1].size(), (511 - 3) * 2u);
    EXPECT_EQ(lines[2], std::string("Z\0", 2));
}

TEST_F(StreamFiles, PositionsAndReads) {
    TextInput in(Open(Write("pos", "first\r\nsecond\nthird"), UnixDataFile::kRead), kFill);
    EXPECT_EQ(in.ReadLine().View(), "first");
    EXPECT_EQ(in.Position(), 7); // the first byte of the next line
    EXPECT_EQ(in.Read(3).View(), "sec");
    EXPECT_EQ(in.ReadAll().View(), "ond\nthird");
    EXPECT_EQ(in.Read(5).Length(), 0);
    in.SetPosition(-4);
    EXPECT_EQ(in.Position(), 0);
    EXPECT_EQ(in.Read(100).View(), "first\r\nsecond\nthird"); // beyond the end: what is there
    EXPECT_EQ(in.Read(0).Length(), 0);
    in.SetPosition(0);
    EXPECT_EQ(in.ReadLine(kEncodingLatin1).Encoding(), kEncodingLatin1); // tagged, not converted
    EXPECT_EQ(in.ReadLine().Encoding(), kEncodingUTF8);
}

TEST_F(StreamFiles, ReadsPastTheBufferThenLines) {
    TextInput in(
        Open(Write("mix", "ab\n" + std::string(3000, 'a') + "\nnext\rlast"), UnixDataFile::kRead),
        kFill);
    EXPECT_EQ(in.ReadLine().View(), "ab"); // fills the buffer and finds both line ends
    EXPECT_EQ(in.Read(2000).Length(), 2000);
    EXPECT_EQ(in.ReadLine().Length(), 1000);
    EXPECT_EQ(in.ReadLine().View(), "next");
    EXPECT_EQ(in.Position(), 3 + 3001 + 5);
    EXPECT_EQ(in.ReadLine().View(), "last");
}

TEST_F(StreamFiles, ClosedStreamsAnswerNeutrally) {
    TextInput in(Open(Write("c", "abc"), UnixDataFile::kRead), kFill);
    in.Close();
    in.Close();
    EXPECT_FALSE(in.IsEOF());
    EXPECT_EQ(in.Read(2).Length(), 0);
    EXPECT_EQ(in.ReadLine().Length(), 0);
    EXPECT_EQ(in.Position(), 0);
    BinaryData data(std::make_unique<StringStorageMechanism>(string("xyz")));
    data.Close();
    EXPECT_EQ(data.ReadByte(), 0);
    data.WriteLong(5);
    EXPECT_EQ(data.LastError(), 0);
}

TEST_F(StreamFiles, TextOutputWritesBytesAndDelimiters) {
    std::string path = mDir + "/out.txt";
    auto file = std::make_unique<UnixDataFile>();
    ASSERT_TRUE(file->Create(path));
    TextOutput out(std::move(file));
    out.WriteLine(string::FromUTF8("h\xc3\xa9"));
    out.Write(string("no end"));
    out.mDelimiter = string("\r\n");
    out.WriteLine(string(""));
    out.WriteLine(string::FromBytes("\x00\x41", 2, kEncodingUTF16)); // delimiter follows in units
    out.Close();
    EXPECT_EQ(out.LastError(), 0);
    EXPECT_EQ(Read(path), std::string("h\xc3\xa9\nno end\r\n\x00\x41\r\x00\n\x00", 18));
}

TEST_F(StreamFiles, BinaryRoundTripInBothOrders) {
    for (bool little : {false, true}) {
        std::string path = mDir + "/bin";
        auto file = std::make_unique<UnixDataFile>();
        ASSERT_TRUE(file->Create(path));
        BinaryData out(std::move(file));
        out.mLittleEndian = little;
        out.WriteByte(300); // keeps the low byte
        out.WriteShort(-2);
        out.WriteLong(0x01020304);
        out.WriteSingle(1.5);
        out.WriteDouble(-2.25);
        out.WriteBoolean(true);
        out.WritePString(string(std::string(300, 'p').c_str())); // 256 bytes in all
        out.Write(string("tail"));
        out.Close();

        std::string bytes = Read(path);
        ASSERT_EQ(bytes.size(), 1 + 2 + 4 + 4 + 8 + 1 + 256 + 4u);
        EXPECT_EQ(bytes.substr(3, 4), little ? "\x04\x03\x02\x01" : "\x01\x02\x03\x04");

        BinaryData in(Open(path, UnixDataFile::kRead));
        in.mLittleEndian = little;
        EXPECT_EQ(in.ReadByte(), 44);
        EXPECT_EQ(in.ReadShort(), -2);
        EXPECT_EQ(in.ReadLong(), 0x01020304);
        EXPECT_EQ(in.ReadSingle(), 1.5);
        EXPECT_EQ(in.ReadDouble(), -2.25);
        EXPECT_TRUE(in.ReadBoolean());
        EXPECT_EQ(in.ReadPString(kEncodingASCII).View(), std::string(255, 'p'));
        EXPECT_EQ(in.Read(99, kEncodingASCII).View(), "tail");
        EXPECT_TRUE(in.IsEOF());
        EXPECT_EQ(in.ReadLong(), 0); // a short read gives 0
        EXPECT_EQ(in.Read(5, 0).Length(), 0);
    }
}

TEST_F(StreamFiles, StringStreamIsReadOnly) {
    BinaryData data(std::make_unique<StringStorageMechanism>(
        string::FromBytes("\x00\x07zz", 4, kEncodingUnknown)));
    EXPECT_EQ(data.ReadShort(), 7);
    EXPECT_EQ(data.Length(), 4);
    data.WriteByte(1); // no raise; the code tells
    EXPECT_EQ(data.LastError(), kMechanismReadOnly);
    EXPECT_EQ(data.Read(10, 0).View(), "zz");
    data.Close();
    EXPECT_EQ(data.LastError(), kMechanismReadOnly); // kept after close
}

TEST_F(StreamFiles, VanishedFileReadsToAnEnd) {
    std::string path = Write("gone", std::string(5000, 'g') + "\nlast");
    TextInput in(Open(path, UnixDataFile::kRead), kFill);
    ASSERT_EQ(std::remove(path.c_str()), 0); // the open descriptor keeps the bytes
    EXPECT_EQ(in.ReadLine().Length(), 5000);
    EXPECT_EQ(in.ReadLine().View(), "last");
    EXPECT_TRUE(in.IsEOF());
}

TEST_F(StreamFiles, FiveGigabyteSparseFile) {
    std::string path = mDir + "/sparse";
    auto file = std::make_unique<UnixDataFile>();
    ASSERT_TRUE(file->Create(path));
    const int64_t far = 5LL << 30;
    ASSERT_TRUE(file->SetLength(far + 4));
    file->SetPosition(far);
    ASSERT_TRUE(file->Write("TAIL", 4));
    BinaryData data(std::move(file));
    EXPECT_EQ(data.Length(), far + 4);
    data.SetPosition(far);
    EXPECT_EQ(data.Position(), far);
    EXPECT_EQ(data.Read(4, 0).View(), "TAIL");
    data.SetPosition((4LL << 30) + 1);
    EXPECT_EQ(data.ReadByte(), 0);
    EXPECT_EQ(data.Position(), (4LL << 30) + 2);
}

} // namespace
} // namespace kelp
