// Str, Format, Val, CDbl, Hex, Oct and Bin, digit for digit.
#include "text_kit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace texttest;

namespace {

struct StrRow {
    double value;
    const char *text;
};
const StrRow kStr[] = {
    {0, "0"},
    {-0.0, "0"},
    {1.5, "1.5"},
    {-1.5, "-1.5"},
    {0.1, "0.1"},
    {1000000, "1000000"},
    {999999.5, "999999.5"},
    {1234567, "1.234567e+6"},
    {-1234567, "-1.234567e+6"},
    {0.000001, "1.000000e-06"},
    {0.00001, "0.00001"},
    {123.456789, "123.4568"},
    {42, "42"},
    {-87, "-87"},
    {1e100, "1.000000e+100"},
    {2.5e-10, "2.500000e-10"},
    {1e10, "1.000000e+10"},
    {-0.0000001, "-1.000000e-07"},
    {0.1 + 0.2, "0.3"},
};

TEST(Str, SevenSignificantDigitsInFixedOrExponentForm) {
    for (const StrRow &row : kStr) {
        SCOPED_TRACE(row.value);
        stringStorage *s = StringStr(row.value);
        EXPECT_EQ(WordOf(s), kEncodingASCII);
        EXPECT_EQ(Take(s), row.text);
    }
    EXPECT_EQ(Take(StringStr(std::nan(""))), "NaN");
    EXPECT_EQ(Take(StringStr(-std::nan(""))), "NaN");
    EXPECT_EQ(Take(StringStr(std::numeric_limits<double>::infinity())), "inf");
    EXPECT_EQ(Take(StringStr(-std::numeric_limits<double>::infinity())), "-inf");
}

struct FormatRow {
    double value;
    const char *mask, *text;
};
const FormatRow kFormat[] = {
    {0, "#.##;-#.##;\\z\\e\\r\\o", "zero"},
    {1234567.891, "#,###.00", "1,234,567.89"},
    {5, "abc#", "5"},
    {-5, "#", "5"},
    {-5, "-#", "-5"},
    {-5, "#;(#)", "(5)"},
    {5, "+#", "+5"},
    {0, "+#", "0"},
    {3.14159, "0.00", "3.14"},
    {3.1, "0.00", "3.10"},
    {3.1, "#.##", "3.1"},
    {7, "000", "007"},
    {7, "###", "7"},
    {1234, "#", "1234"},
    {1234, "#,##0", "1,234"},
    {123, "#,##0", "123"},
    {1234567, "#,#", "1,234,567"},
    {0.256, "#%", "26%"},
    {0.5, "0.0%", "50.0%"},
    {1234.5, "Scientific", "1.234500E+3"},
    {-1234.5, "scientific", "-1.234500E+3"},
    {0.00012, "0.00e+", "1.20e-04"},
    {1500000, "#.##e+", "1.5e+6"},
    {1500000, "#.##e-", "1.5e6"},
    {12, "\\$#.00", "$12.00"},
    {12, "#\\;#", "1;2"},
    {1, "", ""},
    {2.5, "#.#;#.#;z", "2.5"},
    {-2.5, "#.#;;z", ""},
    {12.5, "#.", "12."},
};

TEST(Format, MasksOfOneToThreeSections) {
    for (const FormatRow &row : kFormat) {
        SCOPED_TRACE(std::string(row.mask) + " " + std::to_string(row.value));
        Arg mask(row.mask, kEncodingASCII);
        stringStorage *s = StringFormat(row.value, mask);
        if (*row.text) {
            EXPECT_EQ(WordOf(s), kEncodingASCII);
        }
        EXPECT_EQ(Take(s), row.text);
    }
    EXPECT_EQ(Take(StringFormat(12, nullptr)), "");
    // Escaped multi-byte characters go out whole.
    Arg euro("#\\\xE2\x82\xAC", kEncodingUTF8);
    stringStorage *s = StringFormat(3, euro);
    EXPECT_EQ(WordOf(s), kEncodingUTF8);
    EXPECT_EQ(Take(s), "3\xE2\x82\xAC");
    // Absurd place counts are bounded, not allocated in full.
    Arg many("0." + std::string(100000, '0'), kEncodingASCII);
    const std::string out = Take(StringFormat(1.5, many));
    EXPECT_EQ(out.substr(0, 4), "1.50");
    EXPECT_EQ(out.size(), 2u + 100000u);
}

struct ValRow {
    const char *text;
    double value;
};
const ValRow kVal[] = {
    {"&hFFFFFFFF", -1}, {"&q12", 0},    {"12abc", 12},      {"  1.5", 1.5}, {"", 0},
    {"&h10", 16},       {"&HfF", 255},  {"&o17", 15},       {"&b101", 5},   {"&b1021", 5},
    {"&h1G", 16 + 16},  {"-3e2", -300}, {"abc", 0},         {"1,5", 1},     {"&", 0},
    {".5", 0.5},        {"+7", 7},      {"&h100000000", 0}, {"\t\n42", 42},
};

TEST(Val, ReadsTheLeadingNumberOrABasePrefix) {
    for (const ValRow &row : kVal) {
        SCOPED_TRACE(row.text);
        Arg s(row.text, kEncodingASCII);
        EXPECT_EQ(StringVal(s), row.value);
    }
    EXPECT_EQ(StringVal(nullptr), 0);
    Arg wide(Wide("2.25"), kEncodingUTF16);
    EXPECT_EQ(StringVal(wide), 2.25);
    // Str and Val round-trip every whole number the drill prints.
    for (int v = -100000; v <= 100000; v += 37) {
        stringStorage *s = StringStr(v);
        ASSERT_EQ(StringVal(s), v);
        RuntimeUnlockString(s);
    }
}

TEST(CDbl, DropsThousandsSeparatorsOfTheLocale) {
    Arg s("1,234.5", kEncodingASCII);
    EXPECT_EQ(runCDbl(s), 1234.5);
    EXPECT_EQ(runCDbl(nullptr), 0);
    Arg hex("&hFF", kEncodingASCII);
    EXPECT_EQ(runCDbl(hex), 255);
}

TEST(HexOctBin, UnsignedDigitsWithoutLeadingZeros) {
    EXPECT_EQ(Take(RuntimeHex(255)), "FF");
    EXPECT_EQ(Take(RuntimeHex(0)), "0");
    EXPECT_EQ(Take(RuntimeHex(-1)), "FFFFFFFF");
    EXPECT_EQ(Take(RuntimeOct(8)), "10");
    EXPECT_EQ(Take(RuntimeOct(-1)), "37777777777");
    EXPECT_EQ(Take(RuntimeBin(5)), "101");
    EXPECT_EQ(Take(RuntimeBin(INT32_MIN)), "1" + std::string(31, '0'));
    stringStorage *s = RuntimeHex(10);
    EXPECT_EQ(WordOf(s), kEncodingASCII);
    Take(s);
}

} // namespace
