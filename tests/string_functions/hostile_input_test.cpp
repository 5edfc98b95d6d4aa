// Damaged and extreme arguments: every function gives its neutral or
// specified result and leaves its arguments as they were.
#include "kelp/arrays.h"
#include "text_kit.h"

#include <gtest/gtest.h>

#include <climits>

using namespace texttest;

namespace {

TEST(HostileInput, ExtremeCountsAndPositionsGiveEmptyOrWholeTexts) {
    Arg s("h\xC3\xA9llo");
    const int32_t extremes[] = {INT32_MIN, INT32_MIN + 1, -1, 0, INT32_MAX - 1, INT32_MAX};
    for (int32_t a : extremes) {
        SCOPED_TRACE(a);
        for (int32_t b : extremes) {
            const std::string mid3 = Take(StringDBCSMid3(s, a, b));
            const std::string midB = Take(StringMid3(s, a, b));
            EXPECT_LE(mid3.size(), 6u);
            EXPECT_LE(midB.size(), 6u);
        }
        EXPECT_LE(Take(StringDBCSLeft(s, a)).size(), 6u);
        EXPECT_LE(Take(StringDBCSRight(s, a)).size(), 6u);
        EXPECT_LE(Take(StringDBCSMid2(s, a)).size(), 6u);
        EXPECT_LE(Take(StringLeft(s, a)).size(), 6u);
        EXPECT_LE(Take(StringMid2(s, a)).size(), 6u);
        const int32_t found = StringInStr(a, s, Arg("l"));
        EXPECT_TRUE(found == 0 || found == 3) << found;
        const int32_t foundB = StringInStrB(a, s, Arg("l"));
        EXPECT_TRUE(foundB == 0 || foundB == 4) << foundB;
        EXPECT_EQ(Take(StringNthField(s, Arg("l"), a)), a == 1 ? "h\xC3\xA9" : "");
    }
    EXPECT_EQ(Take(StringDBCSMid3(s, INT32_MIN, INT32_MAX)), "");
    EXPECT_EQ(Take(StringDBCSMid3(s, 2, INT32_MAX)), "\xC3\xA9llo");
    EXPECT_EQ(s.s->referenceCount, 1);
}

TEST(HostileInput, MalformedUtf8IsCountedNotTrusted) {
    // A lead byte with its continuation missing, stray continuations, and a
    // lead byte at the very end.
    Arg bad("\xC3"
            "a\x80\x80"
            "b\xE2\x82",
            kEncodingUTF8);
    EXPECT_EQ(StringDBCSLen(bad), 4);
    EXPECT_EQ(Take(StringDBCSRight(bad, 1)), "\xE2\x82");
    EXPECT_LE(Take(StringDBCSMid3(bad, 2, 100)).size(), 7u);
    EXPECT_EQ(StringInStr(1, bad, Arg("B")), 3);
    EXPECT_LE(Take(StringUCase(bad)).size(), 20u);
    EXPECT_LE(Take(runTrim(bad)).size(), 7u);
    RuntimeArray *parts = StringSplit(bad, nullptr);
    ASSERT_NE(parts, nullptr);
    EXPECT_EQ(parts->upperBounds[0], 3);
    RuntimeUnlockArray(parts);
    // Odd byte counts in 16-bit text lose the half unit, nothing more.
    Arg odd(std::string("a\0b", 3), kEncodingUTF16);
    EXPECT_EQ(StringDBCSLen(odd), 1);
    EXPECT_EQ(StringInStr(1, odd, Arg(Wide("A"), kEncodingUTF16)), 1);
    EXPECT_EQ(Take(StringDBCSMid3(odd, 2, 5)), "b");
}

TEST(HostileInput, MalformedMasksAndNumbersGiveTextNotFaults) {
    const char *masks[] = {"\\",      "#\\",          ";;;;;",
                           "e",       "E+",           "e-",
                           "...",     ",,,",          "%%%",
                           "#.#e+e+", "0e0e0",        "\\;;\\",
                           "+-+-",    "Scientific;x", "#########################################"};
    for (const char *mask : masks) {
        SCOPED_TRACE(mask);
        for (double v : {0.0, -1.5, 123456789.0, 1e300, -1e-300}) {
            const std::string out = Take(StringFormat(v, Arg(mask, kEncodingASCII)));
            EXPECT_LT(out.size(), 400u);
        }
    }
    EXPECT_EQ(Take(StringFormat(5, Arg("#\\", kEncodingASCII))), "5");
    EXPECT_EQ(Take(StringFormat(-1, Arg(";;;;;", kEncodingASCII))), "");
    const char *numbers[] = {
        "&h", "&hZZZZZZZZZZZZZZZZ", "1e999999", "-", "e5", "0x", "1..2", "&b", "  ", "\x80\xFF"};
    for (const char *text : numbers) {
        SCOPED_TRACE(text);
        const double v = StringVal(Arg(text, kEncodingASCII));
        EXPECT_TRUE(v == v) << "no NaN from " << text;
    }
    EXPECT_EQ(StringVal(Arg("1..2", kEncodingASCII)), 1);
    EXPECT_EQ(StringVal(Arg("&h", kEncodingASCII)), 0);
}

TEST(HostileInput, NullArgumentsEverywhere) {
    EXPECT_EQ(StringInStr(1, nullptr, nullptr), 0);
    EXPECT_EQ(StringInStrB(1, nullptr, nullptr), 0);
    EXPECT_EQ(Take(StringReplaceAll(nullptr, nullptr, nullptr)), "");
    Arg s("abc");
    stringStorage *same = StringReplaceAll(s, nullptr, nullptr);
    EXPECT_EQ(same, s.s);
    Take(same);
    EXPECT_EQ(Take(StringReplace(s, Arg("b"), nullptr)), "ac");
    EXPECT_EQ(StringCountFields(nullptr, nullptr), 0);
    EXPECT_EQ(Take(StringNthField(nullptr, nullptr, 1)), "");
    EXPECT_EQ(Take(StringJoin(nullptr, nullptr)), "");
    EXPECT_EQ(Take(StringLCase(nullptr)), "");
    EXPECT_EQ(Take(StringTitleCase(nullptr)), "");
    EXPECT_EQ(Take(runLTrim(nullptr)), "");
    EXPECT_EQ(StringVal(nullptr), 0);
    EXPECT_EQ(Take(StringDBCSMid2(nullptr, 1)), "");
    EXPECT_EQ(Take(StringMid3(nullptr, 1, 1)), "");
    EXPECT_EQ(Take(StringRight(nullptr, 1)), "");
}

} // namespace
