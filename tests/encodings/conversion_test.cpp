// Every encoding of the iconv table converted to UTF-8 and back, checked
// against Python's codecs (or the iconv program where Python has no codec),
// and the rules for text that can't be converted.
#include "oracle.h"

#include "strings/kstring.h"

#include <gtest/gtest.h>

#include <sstream>

using enctest::FromHex;
using enctest::ToHex;
using kelp::string;

namespace {

struct OracleRow {
    uint32_t word;
    std::string codec, bytes, utf8;
};

// Bytes where the C library's table and Python's differ, left out of the
// comparison: the runtime follows the C library.
struct Difference {
    uint32_t word;
    uint8_t byte;
    const char *what;
};
const Difference kDifferences[] = {
    {0, 0xC6, "U+0394 here, U+2206 in Python"},
    {0, 0xF0, "a private-use character here, U+F8FF in Python"},
    {7, 0xFF, "U+00A4 here, U+20AC in Python"},
    {1288, 0xDE, "a combining tilde that the C library joins to the character before"},
};

bool Differs(uint32_t word, const std::string &bytes) {
    for (const Difference &d : kDifferences)
        if (d.word == word && bytes.size() == 1 && (uint8_t)bytes[0] == d.byte)
            return true;
    return false;
}

// One row per encoding: the single-byte lines joined into one sample.
std::vector<OracleRow> PythonRows() {
    std::istringstream lines(
        enctest::RunCommand("python3 " KELP_SOURCE_DIR "/tests/encodings/codec_oracle.py"));
    std::vector<OracleRow> rows;
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        OracleRow row;
        std::string bytes, utf8;
        fields >> row.word >> row.codec >> bytes >> utf8;
        if (Differs(row.word, FromHex(bytes)))
            continue;
        if (rows.empty() || rows.back().word != row.word)
            rows.push_back(row);
        rows.back().bytes += FromHex(bytes);
        rows.back().utf8 += FromHex(utf8);
    }
    return rows;
}

std::string Convert(const std::string &bytes, uint32_t from, uint32_t to) {
    string source = string::FromBytes(bytes.data(), (long)bytes.size(), from);
    string result = kelp::ConvertEncoding(source, to);
    EXPECT_EQ(result.Encoding(), to);
    return std::string(result.View());
}

// Where Python has no codec: every byte from 0x20 that the iconv program
// converts on its own, and what it makes of them.
void ToolSample(const char *name, std::string *bytes, std::string *utf8) {
    std::string lines;
    for (int b = 0x20; b < 0x100; ++b)
        lines += std::string(1, (char)b) + "\n";
    std::istringstream converted(enctest::IconvTool(lines, name, "UTF-8", true));
    std::string line;
    for (int b = 0x20; b < 0x100 && std::getline(converted, line); ++b) {
        if (line.empty())
            continue; // no character for this byte
        bytes->push_back((char)b);
        *utf8 += line;
    }
}

TEST(Conversion, EveryEncodingOfTheTableToUTF8AndBackAgreesWithPython) {
    std::vector<OracleRow> rows = PythonRows();
    ASSERT_EQ(rows.size(), 53u) << "python3 must run the oracle";
    for (const OracleRow &row : rows) {
        SCOPED_TRACE(testing::Message() << row.word << " " << row.codec);
        const char *name = kelp::IconvNameForEncoding(row.word);
        ASSERT_NE(name, nullptr);
        std::string bytes = row.bytes, utf8 = row.utf8;
        if (row.codec == "-") {
            ToolSample(name, &bytes, &utf8);
            ASSERT_GT(bytes.size(), 150u);
        }
        if (row.word == kEncodingUTF8)
            continue; // the same word converts to itself
        EXPECT_EQ(ToHex(Convert(bytes, row.word, kEncodingUTF8)), ToHex(utf8));
        EXPECT_EQ(ToHex(Convert(utf8, kEncodingUTF8, row.word)), ToHex(bytes));
    }
}

TEST(Conversion, TheRulesForWhatCantBeConverted) {
    struct Case {
        const char *name;
        std::string bytes;
        uint32_t from, to;
        std::string expected;
        uint32_t expectedWord;
    } cases[] = {
        {"no counterpart in Latin-1: one ? per source byte",
         "a\xE2\x82\xAC"
         "b",
         kEncodingUTF8, kEncodingLatin1, "a???b", kEncodingLatin1},
        {"a bad byte of UTF-8 is skipped as ?", "x\xFFy", kEncodingUTF8, kEncodingLatin1, "x?y",
         kEncodingLatin1},
        {"a bad byte at the very end fails: the source comes back", "xy\xFF", kEncodingUTF8,
         kEncodingLatin1, "xy\xFF", kEncodingUTF8},
        {"unknown target word: the source", "\xE9t\xE9", kEncodingLatin1, 0x0777, "\xE9t\xE9",
         kEncodingLatin1},
        {"UCS4 has no iconv name: the source", "\xE9", kEncodingLatin1, 0x0C000100, "\xE9",
         kEncodingLatin1},
        {"unknown source word: no conversion", "\xE9", kEncodingUnknown, kEncodingUTF8, "\xE9",
         kEncodingUnknown},
        {"ASCII bytes copy without iconv", "plain", kEncodingUTF8, kEncodingLatin1, "plain",
         kEncodingLatin1},
        {"ASCII to a word without a name still relabels", "plain", kEncodingASCII, 0x0777, "plain",
         0x0777},
        {"into UTF-16 a missing character is a 16-bit ?",
         "\x81"
         "A",
         1280, kEncodingUTF16, std::string("?\0A\0", 4), kEncodingUTF16},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        string source = string::FromBytes(c.bytes.data(), (long)c.bytes.size(), c.from);
        string result = kelp::ConvertEncoding(source, c.to);
        EXPECT_EQ(ToHex(std::string(result.View())), ToHex(c.expected));
        EXPECT_EQ(result.Encoding(), c.expectedWord);
    }
}

} // namespace
