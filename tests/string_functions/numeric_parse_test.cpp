// The strict number reading: which texts are numbers, and what they are worth.
#include "text_kit.h"

#include "string_functions/numeric_parse.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

using namespace texttest;

namespace {

bool Parse(const std::string &text, double *value, uint32_t word = kEncodingUTF8) {
    const kelp::string s = kelp::string::FromBytes(text.data(), (long)text.size(), word);
    return kelp::ParseNumberStrict(s, value);
}

struct Valid {
    const char *text;
    double value;
};
const Valid kValid[] = {
    // Digits, sign, point.
    {"0", 0},
    {"42", 42},
    {"+7", 7},
    {"-7", -7},
    {"1.5", 1.5},
    {"-.5", -0.5},
    {".25", 0.25},
    {"5.", 5},
    {"007", 7},
    // Whitespace at both ends, of all four kinds.
    {"  12", 12},
    {"12  ", 12},
    {"\t\n\r 3.5 \r\n\t", 3.5},
    {" -8 ", -8},
    // Commas group the digits before the point.
    {"1,000", 1000},
    {"1,234,567.5", 1234567.5},
    {"-12,34", -1234},
    {"1,2,3", 123},
    // Exponent with each marker, behind a digit, optional sign.
    {"1e3", 1000},
    {"1E3", 1000},
    {"1d3", 1000},
    {"1D3", 1000},
    {"2.5e-2", 0.025},
    {"2.5E+2", 250},
    {".5e1", 5},
    {"5.e1", 50},
    {"1,000e1", 10000},
    {" 1e2 ", 100},
    // Base prefixes in either case, read as Val reads them.
    {"&hFF", 255},
    {"&HfF", 255},
    {"&hFFFFFFFF", -1},
    {"&h7FFFFFFF", 2147483647},
    {"&o17", 15},
    {"&O777", 511},
    {"&b101", 5},
    {"&B0", 0},
    {"&h1F  ", 31},
    {"&h10\t", 16},
};

TEST(ParseNumberStrict, AcceptsEveryWrittenFormWithItsValue) {
    for (const Valid &row : kValid) {
        SCOPED_TRACE(row.text);
        double value = -12345;
        ASSERT_TRUE(Parse(row.text, &value));
        EXPECT_DOUBLE_EQ(value, row.value);
        // Without a place for the value the answer is the same.
        EXPECT_TRUE(Parse(row.text, nullptr));
    }
}

const char *const kInvalid[] = {
    // Nothing there.
    "",
    " ",
    "\t\r\n",
    // Signs without digits, or more than one sign.
    "+",
    "-",
    "+-1",
    "--1",
    "1-",
    "- 1",
    // Points.
    ".",
    "-.",
    "1.2.3",
    "..5",
    // Commas that group nothing, or behind the point.
    ",5",
    "5,",
    "1,,000",
    "1,.5",
    "1.000,5",
    ",",
    // Exponent markers without a digit in front or digits behind.
    "e5",
    ".e5",
    "-e5",
    "1e",
    "1e+",
    "1E-",
    "1d",
    "1e5.5",
    "1e5e5",
    "1e 5",
    "1x5",
    // Other characters anywhere.
    "12abc",
    "abc",
    "1 000",
    "$5",
    "5%",
    "0x1F",
    "inf",
    "nan",
    "\v5",
    "5\f",
    "\xc2\xa0"
    "5",
    // Prefixes: a known letter, then digits of that base only.
    "&",
    "&h",
    "&q12",
    "&hG",
    "&h1G",
    "&o8",
    "&b102",
    "&h 1F",
    " &hFF",
    "&h-1",
};

TEST(ParseNumberStrict, RejectsEverythingElseAndLeavesTheValueAlone) {
    for (const char *text : kInvalid) {
        SCOPED_TRACE(text);
        double value = -12345;
        EXPECT_FALSE(Parse(text, &value));
        EXPECT_EQ(value, -12345);
    }
}

TEST(ParseNumberStrict, InnerNulAndDamagedBytesAreNotNumbers) {
    double value = 0;
    EXPECT_FALSE(Parse(std::string("12\0"
                                   "3",
                                   4),
                       &value));
    EXPECT_FALSE(Parse(std::string("\0"
                                   "1",
                                   2),
                       &value));
    EXPECT_FALSE(Parse(std::string("1\0", 2), &value));
    EXPECT_FALSE(Parse("1\xff", &value));
    EXPECT_FALSE(Parse("\x80\x80", &value));
    // A long run of digits is still a number, read to the nearest double.
    EXPECT_TRUE(Parse(std::string(400, '9'), &value));
    EXPECT_TRUE(std::isinf(value));
    EXPECT_TRUE(Parse("0." + std::string(500, '0') + "1", &value));
    EXPECT_EQ(value, 0);
}

TEST(ParseNumberStrict, SixteenBitTextIsReadAsItsCharacters) {
    double value = 0;
    EXPECT_TRUE(Parse(Wide(" -1,024.5e1 "), &value, kEncodingUTF16));
    EXPECT_DOUBLE_EQ(value, -10245);
    EXPECT_TRUE(Parse(Wide("&hff"), &value, kEncodingUTF16));
    EXPECT_EQ(value, 255);
    EXPECT_FALSE(Parse(Wide("1x"), &value, kEncodingUTF16));
    // Plain ASCII and unknown words hold the same digits.
    EXPECT_TRUE(Parse("3.25", &value, kEncodingASCII));
    EXPECT_EQ(value, 3.25);
    EXPECT_TRUE(Parse("-4", &value, 0xFFFF));
    EXPECT_EQ(value, -4);
}

// Where Val and the strict reading both take a text, they agree on its value.
TEST(ParseNumberStrict, AgreesWithValOnEveryValidTextWithoutCommas) {
    for (const Valid &row : kValid) {
        const std::string text = row.text;
        if (text.find(',') != std::string::npos || text.find_first_of("dD") != std::string::npos)
            continue;
        SCOPED_TRACE(text);
        double strict = 0;
        ASSERT_TRUE(Parse(text, &strict));
        Arg s(text);
        EXPECT_DOUBLE_EQ(StringVal(s), strict);
    }
}

} // namespace
