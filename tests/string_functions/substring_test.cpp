// Left, Right, Mid, Len, Asc and Chr over byte and character counts, in
// UTF-8, UTF-16 and single-byte text.
#include "text_kit.h"

#include <gtest/gtest.h>

using namespace texttest;

namespace {

struct CountRow {
    const char *text;
    uint32_t word;
    int32_t count;
    const char *left, *right;
};

// "é" is two bytes and "€" three in UTF-8.
const CountRow kLeftRight[] = {
    {"Hello", kEncodingUTF8, 2, "He", "lo"},
    {"Hello", kEncodingUTF8, 0, "", ""},
    {"Hello", kEncodingUTF8, -3, "", ""},
    {"Hello", kEncodingUTF8, 1000, "Hello", "Hello"},
    {"", kEncodingUTF8, 3, "", ""},
    {"h\xC3\xA9llo", kEncodingUTF8, 2, "h\xC3\xA9", "lo"},
    {"\xE2\x82\xAC"
     "5\xC3\xA9",
     kEncodingUTF8, 1, "\xE2\x82\xAC", "\xC3\xA9"},
    {"\xE2\x82\xAC"
     "5\xC3\xA9",
     kEncodingUTF8, 2,
     "\xE2\x82\xAC"
     "5",
     "5\xC3\xA9"},
    {"h\xE9llo", kEncodingLatin1, 2, "h\xE9", "lo"},
};

TEST(TextLeftRight, CountCharactersByTheWordOfTheString) {
    for (const CountRow &row : kLeftRight) {
        SCOPED_TRACE(std::string(row.text) + " " + std::to_string(row.count));
        Arg s(row.text, row.word);
        stringStorage *l = StringDBCSLeft(s, row.count);
        EXPECT_EQ(WordOf(l), *row.left ? row.word : kEncodingASCII);
        EXPECT_EQ(Take(l), row.left);
        EXPECT_EQ(Take(StringDBCSRight(s, row.count)), row.right);
    }
    // The whole text asked for is the same record.
    Arg s("abc");
    stringStorage *same = StringDBCSLeft(s, 10);
    EXPECT_EQ(same, s.s);
    Take(same);
    EXPECT_EQ(Take(StringDBCSLeft(nullptr, 3)), "");
}

TEST(TextLeftRight, SixteenBitTextCountsUnits) {
    Arg s(Wide("abcd"), kEncodingUTF16);
    EXPECT_EQ(Take(StringDBCSLeft(s, 3)), Wide("abc"));
    EXPECT_EQ(Take(StringDBCSRight(s, 1)), Wide("d"));
    EXPECT_EQ(StringDBCSLen(s), 4);
    EXPECT_EQ(Take(StringDBCSMid3(s, 2, 2)), Wide("bc"));
    EXPECT_EQ(StringDBCSAsc(s), 'a');
}

TEST(ByteLeftRightMid, CountBytesWhateverTheWord) {
    Arg s("h\xC3\xA9llo");
    EXPECT_EQ(Take(StringLeft(s, 2)), "h\xC3");
    EXPECT_EQ(Take(StringRight(s, 3)), "llo");
    EXPECT_EQ(Take(StringMid2(s, 3)), "\xA9llo");
    EXPECT_EQ(Take(StringMid3(s, 2, 2)), "\xC3\xA9");
    EXPECT_EQ(Take(StringMid3(s, 0, 2)), "h"); // the place before the start eats into the length
    EXPECT_EQ(Take(StringMid3(s, 99, 2)), "");
    EXPECT_EQ(Take(StringMid2(s, -5)), "h\xC3\xA9llo");
    EXPECT_EQ(StringLen(s), 6);
    EXPECT_EQ(StringLen(nullptr), 0);
    EXPECT_EQ(StringAsc(s), 'h');
    Arg high("\xC3");
    EXPECT_EQ(StringAsc(high), 0xC3);
    EXPECT_EQ(StringAsc(nullptr), 0);
}

struct MidRow {
    const char *text;
    int32_t pos, len; // len < -100: the two-argument form
    const char *expected;
};
const MidRow kMid[] = {
    {"abcdef", -1, 4, "ab"},
    {"abcdef", 1, 3, "abc"},
    {"abcdef", 4, 100, "def"},
    {"abcdef", 7, 1, ""},
    {"abcdef", 2, 0, ""},
    {"abcdef", 3, -1, ""},
    {"abcdef", 0, 1, ""},
    {"abcdef", 3, -1000, "cdef"},
    {"abcdef", 0, -1000, "abcdef"},
    {"\xE2\x82\xAC"
     "a\xC3\xA9z",
     2, 2, "a\xC3\xA9"},
    {"\xE2\x82\xAC"
     "a\xC3\xA9z",
     3, -1000, "\xC3\xA9z"},
    {"", 1, 1, ""},
};

TEST(TextMid, StartsAndLengthsInCharacters) {
    for (const MidRow &row : kMid) {
        SCOPED_TRACE(std::string(row.text) + " " + std::to_string(row.pos) + " " +
                     std::to_string(row.len));
        Arg s(row.text);
        if (row.len < -100)
            EXPECT_EQ(Take(StringDBCSMid2(s, row.pos)), row.expected);
        else
            EXPECT_EQ(Take(StringDBCSMid3(s, row.pos, row.len)), row.expected);
    }
}

TEST(TextLenAscChr, ReadAndMakeSingleCharacters) {
    Arg mixed("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"); // a é € and an emoji
    EXPECT_EQ(StringDBCSLen(mixed), 4);
    EXPECT_EQ(StringLen(mixed), 10);
    Arg euro("\xE2\x82\xAC!");
    EXPECT_EQ(StringDBCSAsc(euro), 0x20AC);
    Arg latin("\xE9", kEncodingLatin1);
    EXPECT_EQ(StringDBCSLen(latin), 1);
    EXPECT_EQ(StringDBCSAsc(latin), 0xE9);
    EXPECT_EQ(StringDBCSAsc(nullptr), 0);
    EXPECT_EQ(StringDBCSLen(nullptr), 0);

    stringStorage *a = StringChr(65);
    EXPECT_EQ(WordOf(a), kEncodingASCII);
    EXPECT_EQ(Take(a), "A");
    stringStorage *high = StringChr(0x1E9);
    EXPECT_EQ(WordOf(high), kEncodingUnknown);
    EXPECT_EQ(Take(high), "\xE9");
    stringStorage *nul = StringChr(0);
    EXPECT_EQ(StringLen(nul), 1);
    Take(nul);
    stringStorage *pair = StringDBCSChr(0x82A0);
    EXPECT_EQ(WordOf(pair), kEncodingUnknown);
    EXPECT_EQ(Take(pair), "\x82\xA0");
    stringStorage *one = StringDBCSChr(97);
    EXPECT_EQ(WordOf(one), kEncodingASCII);
    EXPECT_EQ(Take(one), "a");
    EXPECT_EQ(Take(StringDBCSChr(200)), "\xC8");
}

} // namespace
