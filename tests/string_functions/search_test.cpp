// InStr, Replace, CountFields, NthField, Split and Join: caseless text
// searches counted in characters, exact byte searches, and long texts that
// take the long-pattern search.
#include "kelp/arrays.h"
#include "text_kit.h"

#include <gtest/gtest.h>

#include <string>

using namespace texttest;

namespace {

struct InStrRow {
    int32_t start;
    const char *source, *find;
    int32_t text, bytes; // InStr and InStrB
};
const InStrRow kInStr[] = {
    {1, "Hello", "LL", 3, 0},
    {1, "Hello", "ll", 3, 3},
    {4, "Hello", "l", 4, 4},
    {5, "Hello", "l", 0, 0},
    {7, "Hello", "", 7, 7},
    {-3, "Hello", "", -3, -3},
    {1, "", "x", 0, 0},
    {0, "Hello", "H", 1, 1},
    {-9, "Hello", "o", 5, 5},
    {6, "Hello", "o", 0, 0},
    {1, "Hello", "Hello!", 0, 0},
    {1,
     "a\xC3\xA9"
     "b\xC3\xA9",
     "b", 3, 4}, // é is one character, two bytes
    {3,
     "a\xC3\xA9"
     "b\xC3\xA9",
     "\xC3\xA9", 4, 5},
    {1,
     "stra\xC3\x9F"
     "e \xC3\x89t\xC3\xA9",
     "\xC3\xA9T\xC3\x89", 8, 0}, // caseless beyond ASCII
};

TEST(InStr, TextIsCaselessAndInCharactersBytesAreExact) {
    for (const InStrRow &row : kInStr) {
        SCOPED_TRACE(std::string(row.source) + " / " + row.find + " @" + std::to_string(row.start));
        Arg s(row.source), f(row.find);
        EXPECT_EQ(StringInStr(row.start, s, f), row.text);
        EXPECT_EQ(StringExtendsInStr(s, row.start, f), row.text);
        EXPECT_EQ(StringDBCSInStr(row.start, s, f), row.text);
        EXPECT_EQ(StringInStrB(row.start, s, f), row.bytes);
        EXPECT_EQ(StringExtendsInStrB(s, row.start, f), row.bytes);
    }
}

TEST(InStr, LongTextsFindTheFirstMatchByEitherSearch) {
    // Long patterns over long texts take the skip-table search; the result
    // must be the first match, as a plain scan finds it.
    std::string text(200000, 'a');
    for (size_t i = 0; i < text.size(); i += 7)
        text[i] = 'b';
    const std::string needle = "xyzzyabcab";
    text.replace(150001, needle.size(), needle);
    text.replace(180001, needle.size(), needle);
    Arg s(text, kEncodingASCII), f(needle, kEncodingASCII);
    EXPECT_EQ(StringInStrB(1, s, f), 150002);
    EXPECT_EQ(StringInStrB(150003, s, f), 180002);
    EXPECT_EQ(StringInStrB(180003, s, f), 0);
    EXPECT_EQ(StringInStr(1, s, f), 150002);
    Arg upper("XYZZYABCAB", kEncodingASCII);
    EXPECT_EQ(StringInStr(1, s, upper), 150002);
    EXPECT_EQ(StringInStrB(1, s, upper), 0);
    // Repeated bytes in the pattern keep their last position in the table.
    Arg rep("aaaabaaaab", kEncodingASCII);
    EXPECT_EQ((long)StringInStrB(1, s, rep), (long)text.find("aaaabaaaab") + 1);
    Arg tail(text.substr(text.size() - 6), kEncodingASCII);
    EXPECT_EQ((long)StringInStrB(1, s, tail), (long)text.find(text.substr(text.size() - 6)) + 1);
}

TEST(InStr, SixteenBitTextCountsUnitsAndMixedWordsAreBroughtTogether) {
    Arg s(Wide("Hello"), kEncodingUTF16), f(Wide("LO"), kEncodingUTF16);
    EXPECT_EQ(StringInStr(1, s, f), 4);
    Arg narrow("lo", kEncodingUTF8);
    EXPECT_EQ(StringInStr(1, s, narrow), 4);
    EXPECT_EQ(StringInStr(5, s, narrow), 0);
}

struct ReplaceRow {
    const char *source, *find, *with;
    const char *one, *all, *oneB, *allB;
};
const ReplaceRow kReplace[] = {
    {"a-b-c", "-", "+", "a+b-c", "a+b+c", "a+b-c", "a+b+c"},
    {"Abcabc", "ABC", "x", "xabc", "xx", "Abcabc", "Abcabc"},
    {"aaaa", "aa", "b", "baa", "bb", "baa", "bb"}, // matches don't overlap
    {"abc", "", "x", "abc", "abc", "abc", "abc"},
    {"", "a", "x", "", "", "", ""},
    {"abc", "abc", "", "", "", "", ""},
    {"x\xC3\xA9y\xC3\x89", "\xC3\xA9", "e", "xey\xC3\x89", "xeye", "xey\xC3\x89", "xey\xC3\x89"},
    {"no match", "zz", "y", "no match", "no match", "no match", "no match"},
};

TEST(Replace, FirstOrAllMatchesCaselessOrExact) {
    for (const ReplaceRow &row : kReplace) {
        SCOPED_TRACE(std::string(row.source) + " / " + row.find);
        Arg s(row.source), f(row.find), w(row.with);
        EXPECT_EQ(Take(StringReplace(s, f, w)), row.one);
        EXPECT_EQ(Take(StringReplaceAll(s, f, w)), row.all);
        EXPECT_EQ(Take(StringReplaceB(s, f, w)), row.oneB);
        EXPECT_EQ(Take(StringReplaceAllB(s, f, w)), row.allB);
    }
    Arg s("keep"), f("zz"), w("y");
    stringStorage *same = StringReplaceAll(s, f, w);
    EXPECT_EQ(same, s.s);
    Take(same);
    stringStorage *r = StringReplaceAll(s, Arg("e"), w);
    EXPECT_EQ(WordOf(r), kEncodingUTF8);
    EXPECT_EQ(Take(r), "kyyp");
}

TEST(Fields, CountNthAndSplitAgree) {
    struct Row {
        const char *source, *sep;
        int32_t count;
    } rows[] = {{"a,b", "", 1},
                {"", ",", 0},
                {"a,b,,c", ",", 4},
                {"a,b,", ",", 3},
                {"xAy"
                 "ay",
                 "A", 3},
                {"one--two--", "--", 3},
                {"\xC3\xA9x\xC3\x89", "\xC3\xA9", 3}};
    for (const Row &row : rows) {
        SCOPED_TRACE(std::string(row.source) + " / " + row.sep);
        Arg s(row.source), sep(row.sep);
        const int32_t count = StringCountFields(s, sep);
        EXPECT_EQ(count, row.count);
        if (*row.sep == 0 || *row.source == 0)
            continue;
        RuntimeArray *parts = StringSplit(s, sep);
        ASSERT_NE(parts, nullptr);
        ASSERT_EQ(parts->upperBounds[0], count - 1);
        auto *e = static_cast<stringStorage **>(parts->buffer);
        for (int32_t n = 1; n <= count; ++n)
            EXPECT_EQ(Take(StringNthField(s, sep, n)), Take(RuntimeLockString(e[n - 1])));
        EXPECT_EQ(Take(StringNthField(s, sep, count + 1)), "");
        RuntimeUnlockArray(parts);
    }
    Arg ab("a,b"), comma(","), none("");
    EXPECT_EQ(Take(StringNthField(ab, comma, 3)), "");
    EXPECT_EQ(Take(StringNthField(ab, comma, 0)), "");
    EXPECT_EQ(Take(StringNthField(ab, none, 1)), "");
    EXPECT_EQ(Take(StringNthField(ab, comma, 2)), "b");
    // Byte forms are exact.
    Arg mixed("xAyay"), a("a");
    EXPECT_EQ(StringCountFieldsB(mixed, a), 2);
    EXPECT_EQ(StringCountFields(mixed, a), 3);
    EXPECT_EQ(Take(StringNthFieldB(mixed, a, 2)), "y");
    EXPECT_EQ(Take(StringNthField(mixed, a, 2)), "y");
}

TEST(Split, EmptySeparatorCutsUnitsAndEmptySourceGivesNoElements) {
    Arg s("a\xC3\xA9"
          "c"),
        none("");
    RuntimeArray *chars = StringSplit(s, none);
    ASSERT_EQ(chars->upperBounds[0], 2);
    auto *e = static_cast<stringStorage **>(chars->buffer);
    EXPECT_EQ(Take(RuntimeLockString(e[1])), "\xC3\xA9");
    EXPECT_EQ(WordOf(e[1]), kEncodingUTF8);
    RuntimeUnlockArray(chars);
    RuntimeArray *bytes = StringSplitB(s, none);
    ASSERT_EQ(bytes->upperBounds[0], 3);
    e = static_cast<stringStorage **>(bytes->buffer);
    EXPECT_EQ(WordOf(e[1]), kEncodingUnknown);
    RuntimeUnlockArray(bytes);
    RuntimeArray *empty = StringSplit(nullptr, Arg(","));
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->upperBounds[0], -1);
    RuntimeUnlockArray(empty);
}

TEST(Join, JoinsWithTheSeparatorAndTakesOneWord) {
    Arg s("a,b\xC3\xA9,,c"), comma(","), dash(" - ");
    RuntimeArray *parts = StringSplit(s, comma);
    stringStorage *joined = StringJoin(parts, dash);
    EXPECT_EQ(WordOf(joined), kEncodingUTF8);
    EXPECT_EQ(Take(joined), "a - b\xC3\xA9 -  - c");
    EXPECT_EQ(Take(StringJoin(parts, nullptr)), "ab\xC3\xA9"
                                                "c");
    RuntimeUnlockArray(parts);
    EXPECT_EQ(Take(StringJoin(nullptr, comma)), "");
    RuntimeArray *one = CreateArray(1, kArrayString, 0);
    static_cast<stringStorage **>(one->buffer)[0] = Make("solo");
    stringStorage *solo = StringJoin(one, comma);
    EXPECT_EQ(solo, static_cast<stringStorage **>(one->buffer)[0]);
    EXPECT_EQ(Take(solo), "solo");
    RuntimeUnlockArray(one);
    // Latin-1 and UTF-8 elements meet in UTF-8.
    RuntimeArray *mixed = CreateArray(1, kArrayString, 1);
    static_cast<stringStorage **>(mixed->buffer)[0] = Make("\xE9", kEncodingLatin1);
    static_cast<stringStorage **>(mixed->buffer)[1] = Make("\xE2\x82\xAC");
    EXPECT_EQ(Take(StringJoin(mixed, comma)), "\xC3\xA9,\xE2\x82\xAC");
    RuntimeUnlockArray(mixed);
}

} // namespace
