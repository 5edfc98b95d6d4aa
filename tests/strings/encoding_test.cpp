// Encodings in concatenation, comparison and conversion.
#include "strings/encodings.h"
#include "strings/kstring.h"

#include <gtest/gtest.h>

#include <string>

using kelp::CommonEncoding;
using kelp::string;

namespace {

constexpr uint32_t kMacJapanese = 0x0001; // has no conversion name

std::string Text(const string &s) { return std::string(s.View()); }
string Bytes(const char *text, uint32_t encoding) {
    return string::FromBytes(text, static_cast<long>(std::char_traits<char>::length(text)),
                             encoding);
}
string Utf16(const char16_t *text) {
    return string::FromBytes(text, static_cast<long>(std::char_traits<char16_t>::length(text) * 2),
                             kEncodingUTF16);
}

TEST(EncodingCombination, TheRulesInOrder) {
    // Equal words stay.
    EXPECT_EQ(CommonEncoding(kEncodingLatin1, kEncodingLatin1, false), kEncodingLatin1);
    EXPECT_EQ(CommonEncoding(kEncodingUnknown, kEncodingUnknown, false), kEncodingUnknown);
    // ASCII and UTF-8 meet in UTF-8.
    EXPECT_EQ(CommonEncoding(kEncodingASCII, kEncodingUTF8, false), kEncodingUTF8);
    EXPECT_EQ(CommonEncoding(kEncodingUTF8, kEncodingASCII, false), kEncodingUTF8);
    // ASCII yields to any word outside the Unicode family, on either side.
    EXPECT_EQ(CommonEncoding(kEncodingASCII, kEncodingLatin1, false), kEncodingLatin1);
    EXPECT_EQ(CommonEncoding(kEncodingLatin1, kEncodingASCII, false), kEncodingLatin1);
    EXPECT_EQ(CommonEncoding(kEncodingASCII, kEncodingUnknown, false), kEncodingUnknown);
    // ...but not to UTF-16, whose bytes are no ASCII.
    EXPECT_EQ(CommonEncoding(kEncodingASCII, kEncodingUTF16, false), kEncodingUnknown);
    EXPECT_EQ(CommonEncoding(kEncodingASCII, kEncodingUTF16, true), kEncodingUTF16);
    // Forced: UTF-16 only when one side is UTF-16 and neither is UTF-8.
    EXPECT_EQ(CommonEncoding(kEncodingUTF16, kEncodingLatin1, true), kEncodingUTF16);
    EXPECT_EQ(CommonEncoding(kEncodingUTF16, kEncodingUTF8, true), kEncodingUTF8);
    EXPECT_EQ(CommonEncoding(kEncodingLatin1, kMacJapanese, true), kEncodingUTF8);
    EXPECT_EQ(CommonEncoding(kEncodingLatin1, kEncodingUTF8, false), kEncodingUnknown);
}

TEST(Concatenation, EmptySidesGiveTheOtherRecord) {
    string a("abc");
    string joined = a + string();
    EXPECT_EQ(joined.Storage(), a.Storage());
    string joined2 = string() + a;
    EXPECT_EQ(joined2.Storage(), a.Storage());
    EXPECT_EQ(a.Storage()->referenceCount, 3);
    EXPECT_EQ((string() + string()).Storage(), nullptr);
}

// Two sides meet in the word the combination rules give; bytes are
// converted only where the words differ and both can be converted.
TEST(Concatenation, SidesMeetInTheCommonWord) {
    const std::string utf16 = std::string(reinterpret_cast<const char *>(u"h\u00e9\u00e8!"), 8);
    const struct Row {
        const char *name;
        string left, right;
        uint32_t encoding;
        std::string bytes;
    } rows[] = {
        {"ascii and utf-8", string("a"), string::FromUTF8("b"), kEncodingUTF8, "ab"},
        {"ascii and latin-1", string("caf"), Bytes("\xe9", kEncodingLatin1), kEncodingLatin1,
         "caf\xe9"},
        {"latin-1 twice", Bytes("x\xe9", kEncodingLatin1), Bytes("\xe8", kEncodingLatin1),
         kEncodingLatin1, "x\xe9\xe8"},
        {"utf-8 and latin-1", string::FromUTF8("\xc3\xa9-"), Bytes("\xe9", kEncodingLatin1),
         kEncodingUTF8, "\xc3\xa9-\xc3\xa9"},
        {"latin-1 and utf-8", Bytes("\xe8", kEncodingLatin1), string::FromUTF8("\xc3\xa9"),
         kEncodingUTF8, "\xc3\xa8\xc3\xa9"},
        {"utf-16 and latin-1", Utf16(u"h\u00e9"), Bytes("\xe8!", kEncodingLatin1), kEncodingUTF16,
         utf16},
        {"unknown and utf-8", Bytes("\xff\xfe", kEncodingUnknown), string::FromUTF8("\xc3\xa9"),
         kEncodingUnknown, "\xff\xfe\xc3\xa9"},
        {"latin-1 and unknown", Bytes("\xe9", kEncodingLatin1), Bytes("z", kEncodingUnknown),
         kEncodingUnknown, "\xe9z"},
        // Text that can't be converted is joined as unknown, not mislabelled.
        {"unconvertible", Bytes("\x82\xa0", kMacJapanese), Bytes("\xe9", kEncodingLatin1),
         kEncodingUnknown, "\x82\xa0\xe9"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        string joined = row.left + row.right;
        EXPECT_EQ(joined.Encoding(), row.encoding);
        EXPECT_EQ(Text(joined), row.bytes);
    }
}

TEST(Concatenation, AppendOperatorsKeepTheirWords) {
    string s = string::FromUTF8("x");
    s += "yz";
    EXPECT_EQ(s.Encoding(), kEncodingUTF8);
    EXPECT_EQ(Text(s), "xyz");
    string empty;
    empty += "abc"; // a C string behind nothing stays unlabelled
    EXPECT_EQ(empty.Encoding(), kEncodingUnknown);
    string kept("k");
    stringStorage *record = kept.Storage();
    kept += "";
    kept += string();
    EXPECT_EQ(kept.Storage(), record);
    string latin = Bytes("\xe9", kEncodingLatin1);
    latin += string::FromUTF8("\xc3\xa8");
    EXPECT_EQ(latin.Encoding(), kEncodingUTF8);
    EXPECT_EQ(Text(latin), "\xc3\xa9\xc3\xa8");
}

TEST(Concatenation, OneByteBehind) {
    EXPECT_EQ((string() + 'a').Encoding(), kEncodingASCII);
    EXPECT_EQ((string::FromUTF8("x") + 'a').Encoding(), kEncodingUTF8);
    EXPECT_EQ((Bytes("x", kEncodingLatin1) + 'a').Encoding(), kEncodingLatin1);
    string high = string("x") + static_cast<char>(0xE9);
    EXPECT_EQ(high.Encoding(), kEncodingUnknown);
    EXPECT_EQ(Text(high), "x\xe9");
    EXPECT_EQ(Text(string("ab") + '\0'), std::string("ab\0", 3));
}

// The language's comparison: caseless in every encoding and across them,
// the shorter text first, ordered by folded character.
TEST(Comparison, CaselessInEveryEncodingShorterFirst) {
    const struct Row {
        string a, b;
        int sign;
    } rows[] = {
        {string("abc"), string("ABC"), 0},
        {string::FromUTF8("abc"), string::FromUTF8("ABC"), 0},
        {Bytes("abc", kEncodingLatin1), Bytes("ABC", kEncodingLatin1), 0},
        {Utf16(u"abc"), Utf16(u"ABC"), 0},
        {Bytes("abc", kEncodingUnknown), Bytes("ABC", kEncodingUnknown), 0},
        {string("abc"), Utf16(u"ABC"), 0},
        {string::FromUTF8("caf\xc3\xa9"), string::FromUTF8("CAF\xc3\x89"), 0},
        {Bytes("caf\xe9", kEncodingLatin1), string::FromUTF8("CAF\xc3\x89"), 0},
        {Utf16(u"\u00e9t\u00e9"), Utf16(u"\u00c9T\u00c9"), 0},
        {string::FromUTF8("\xc3\xa9"), string::FromUTF8("e"), 1},
        {string("ab"), string("abc"), -1},
        {string("abc"), string("ab"), 1},
        {string("apple"), string("BANANA"), -1},
        {string(), string("a"), -1},
        {string("a"), string(), 1},
        {string(), string(), 0},
        {Utf16(u"ab"), Utf16(u"abc"), -1},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE("row " + std::to_string(i));
        const int got = kelp::LanguageCompare(rows[i].a, rows[i].b);
        EXPECT_EQ((got > 0) - (got < 0), rows[i].sign);
        EXPECT_EQ(rows[i].a == rows[i].b, rows[i].sign == 0);
    }
}

TEST(Comparison, ClassFormsUseTheTableOrExactBytes) {
    EXPECT_EQ(string("Open").Compare(string("oPEN")), 0);
    EXPECT_NE(string("Open").CompareWithCase(string("oPEN")), 0);
    EXPECT_LT(string("ABC").CompareWithCase(string("abc")), 0);
    EXPECT_EQ(string("abc").CompareWithCase(string("abc")), 0);
    EXPECT_LT(string("ab").CompareWithCase(string("abc")), 0);
    // Macintosh Roman high half folds through the table.
    EXPECT_EQ(Bytes("\x87", 0).Compare(Bytes("\xe7", 0)), 0);
    EXPECT_EQ(Bytes("\x8a", 0).Compare(Bytes("\x80", 0)), 0);
    EXPECT_NE(Bytes("\x8a", 0).CompareWithCase(Bytes("\x80", 0)), 0);
}

TEST(UpperCaseTable, LettersAndTheRomanHighHalf) {
    for (int c = 'a'; c <= 'z'; ++c)
        EXPECT_EQ(kelp::kUpperCaseTable[c], c - 32);
    for (int c = 0; c < 128; ++c) {
        if (c < 'a' || c > 'z') {
            EXPECT_EQ(kelp::kUpperCaseTable[c], c);
        }
    }
    EXPECT_EQ(kelp::kUpperCaseTable[0x87], 0xE7);
    EXPECT_EQ(kelp::kUpperCaseTable[0x88], 0xCB);
    EXPECT_EQ(kelp::kUpperCaseTable[0x8A], 0x80);
    EXPECT_EQ(kelp::kUpperCaseTable[0xE7], 0xE7); // upper stays upper
    EXPECT_EQ(kelp::kUpperCaseTable[0xCF], 0xCE);
}

TEST(SameEncoding, ReconcilesWithoutTouchingCompatibleBytes) {
    string a, b;
    EXPECT_EQ(kelp::ConvertToSameEncoding(a, b), kEncodingASCII);
    string latin = Bytes("\xe9", kEncodingLatin1);
    EXPECT_EQ(kelp::ConvertToSameEncoding(a, latin), kEncodingLatin1);
    string ascii("a");
    stringStorage *before = latin.Storage();
    EXPECT_EQ(kelp::ConvertToSameEncoding(ascii, latin), kEncodingLatin1);
    EXPECT_EQ(latin.Storage(), before);
    string unknown = Bytes("?", kEncodingUnknown);
    EXPECT_EQ(kelp::ConvertToSameEncoding(unknown, latin), kEncodingUnknown);
    string utf8 = string::FromUTF8("\xc3\xa8");
    EXPECT_EQ(kelp::ConvertToSameEncoding(utf8, latin), kEncodingUTF8);
    EXPECT_EQ(Text(latin), "\xc3\xa9");
}

TEST(Conversion, ByteCopiesWhereTheTargetHoldsAscii) {
    string ascii("plain");
    string latin = kelp::ConvertEncoding(ascii, kEncodingLatin1);
    EXPECT_EQ(latin.Encoding(), kEncodingLatin1);
    EXPECT_EQ(Text(latin), "plain");
    string utf8 = string::FromUTF8("plain too");
    EXPECT_EQ(Text(kelp::ConvertEncoding(utf8, kEncodingLatin1)), "plain too");
    EXPECT_EQ(kelp::ConvertEncoding(utf8, kEncodingUTF8).Storage(), utf8.Storage());
    EXPECT_EQ(kelp::ConvertEncoding(string(), kEncodingUTF8).Storage(), nullptr);
}

TEST(Conversion, ThroughIconvBothWays) {
    string latin = Bytes("d\xe9j\xe0", kEncodingLatin1);
    string utf8 = kelp::GetUTF8String(latin);
    EXPECT_EQ(utf8.Encoding(), kEncodingUTF8);
    EXPECT_EQ(Text(utf8), "d\xc3\xa9j\xc3\xa0");
    string back = kelp::ConvertToSystemEncoding(utf8);
    EXPECT_EQ(Text(back), "d\xe9j\xe0");
    string wide = kelp::GetUTF16String(utf8);
    EXPECT_EQ(wide.Encoding(), kEncodingUTF16);
    EXPECT_EQ(Text(wide), std::string(reinterpret_cast<const char *>(u"d\u00e9j\u00e0"), 8));
    // Unknown bytes are read as the system default; the source keeps its word.
    string unknown = Bytes("\xe9", kEncodingUnknown);
    EXPECT_EQ(Text(kelp::GetUTF16String(unknown)),
              std::string(reinterpret_cast<const char *>(u"\u00e9"), 2));
    EXPECT_EQ(unknown.Encoding(), kEncodingUnknown);
}

TEST(Conversion, MissingCharactersBecomeQuestionMarks) {
    string utf8 = string::FromUTF8("a\xe2\x98\xba"
                                   "b"); // a smiley between letters
    string latin = kelp::ConvertEncoding(utf8, kEncodingLatin1);
    EXPECT_EQ(latin.Encoding(), kEncodingLatin1);
    EXPECT_EQ(Text(latin), "a???b"); // one per source byte
}

TEST(Conversion, FailuresGiveTheSourceBack) {
    string text = string::FromUTF8("\xc3\xa9");
    string none = kelp::ConvertEncoding(text, kMacJapanese);
    EXPECT_EQ(none.Storage(), text.Storage());
    EXPECT_EQ(kelp::ConvertEncoding(text, kEncodingUnknown).Storage(), text.Storage());
    // Damaged UTF-8 that ends in the middle of a character.
    string broken = string::FromUTF8("ok\xc3");
    string out = kelp::ConvertEncoding(broken, kEncodingLatin1);
    EXPECT_EQ(out.Storage(), broken.Storage());
    EXPECT_EQ(out.Encoding(), kEncodingUTF8);
}

TEST(Conversion, TheSameConversionTwiceGivesTheSameRecord) {
    string latin = Bytes("\xe9t\xe9", kEncodingLatin1);
    string first = kelp::ConvertEncoding(latin, kEncodingUTF8);
    string second = kelp::ConvertEncoding(latin, kEncodingUTF8);
    EXPECT_EQ(first.Storage(), second.Storage());
    string wide = kelp::ConvertEncoding(latin, kEncodingUTF16);
    EXPECT_NE(wide.Storage(), first.Storage());
    EXPECT_EQ(wide.Encoding(), kEncodingUTF16);
    // A failed conversion must not leave an old result answering for others.
    string other = Bytes("\xe8", kEncodingLatin1);
    kelp::ConvertEncoding(other, kMacJapanese);
    string third = kelp::ConvertEncoding(other, kEncodingUTF16);
    EXPECT_EQ(Text(third), std::string(reinterpret_cast<const char *>(u"\u00e8"), 2));
    kelp::ClearConversionCache();
}

TEST(UnicodeHelpers, DecodingNeverRunsPastTheEnd) {
    const uint8_t text[] = {0xF0, 0x9F}; // a four-byte lead cut short
    const uint8_t *p = text;
    kelp::UTF8DecodeAndAdvance(p, text + 2);
    EXPECT_EQ(p, text + 2);
    uint8_t out[5];
    EXPECT_EQ(kelp::UTF8Encode(0x20AC, out), 3);
    EXPECT_EQ(std::string(reinterpret_cast<char *>(out)), "\xe2\x82\xac");
    EXPECT_EQ(kelp::UnicodeCharToUpper(0xE9), 0xC9u);
    EXPECT_EQ(kelp::UnicodeCharToLower(0x391), 0x3B1u); // Greek Alpha
    EXPECT_EQ(kelp::UnicodeCharCompare('a', 'A', true), 0);
    EXPECT_EQ(kelp::UnicodeCharCompare('a', 'A', false), 1);
}

} // namespace

namespace {

using kelp::string;

std::string Bytes16(const char16_t *text) {
    return std::string(reinterpret_cast<const char *>(text),
                       std::char_traits<char16_t>::length(text) * 2);
}

TEST(CaseChanges, Utf8TextChangesByCodePoint) {
    string s = string::FromUTF8("stra\xc3\x9f"
                                "e \xc3\xa9t\xc3\xa9 \xce\xb1\xce\xb2 \xe2\x98\xba");
    string upper = kelp::UTF8ToUpper(s);
    EXPECT_EQ(upper.Encoding(), kEncodingUTF8);
    // ß has no single upper-case form here and stays; é and Greek letters rise.
    EXPECT_EQ(std::string(upper.View()), "STRA\xc3\x9f"
                                         "E \xc3\x89T\xc3\x89 \xce\x91\xce\x92 \xe2\x98\xba");
    EXPECT_EQ(std::string(kelp::UTF8ToLower(upper).View()),
              "stra\xc3\x9f"
              "e \xc3\xa9t\xc3\xa9 \xce\xb1\xce\xb2 \xe2\x98\xba");
    string title = kelp::UTF8Capitalize(string::FromUTF8("\xc3\xa9"
                                                         "cole DU\tsOIR\nx"));
    EXPECT_EQ(std::string(title.View()), "\xc3\x89"
                                         "cole Du\tSoir\nX");
    EXPECT_EQ(kelp::UTF8ToUpper(string()).Storage(), nullptr);
}

TEST(CaseChanges, Utf16TextChangesByUnit) {
    string s = string::FromBytes(u"h\u00e9llo w\u00f6rld", 22, kEncodingUTF16);
    EXPECT_EQ(std::string(kelp::UCS2ToUpper(s).View()), Bytes16(u"H\u00c9LLO W\u00d6RLD"));
    EXPECT_EQ(std::string(kelp::UCS2Capitalize(s).View()), Bytes16(u"H\u00e9llo W\u00f6rld"));
    EXPECT_EQ(std::string(kelp::UCS2ToLower(kelp::UCS2ToUpper(s)).View()), std::string(s.View()));
    EXPECT_EQ(kelp::UCS2ToUpper(s).Encoding(), kEncodingUTF16);
}

TEST(CaseChanges, CaselessTextAndWalkingOverCodePoints) {
    const char *digits = "12-34 \xe2\x98\xba";
    EXPECT_TRUE(kelp::UTF8IsCaseless(reinterpret_cast<const uint8_t *>(digits), 9));
    const char *word = "ab\xc3\xa9";
    EXPECT_FALSE(kelp::UTF8IsCaseless(reinterpret_cast<const uint8_t *>(word), 4));
    EXPECT_FALSE(kelp::UTF8IsCaseless(reinterpret_cast<const uint8_t *>("--x"), 3));

    const auto *text = reinterpret_cast<const uint8_t *>("a\xc3\xa9\xe2\x98\xba"
                                                         "b");
    const uint8_t *end = text + 7;
    EXPECT_EQ(kelp::AdvanceUTF8(text, end, 1), text + 1);
    EXPECT_EQ(kelp::AdvanceUTF8(text, end, 2), text + 3);
    EXPECT_EQ(kelp::AdvanceUTF8(text, end, 3), text + 6);
    EXPECT_EQ(kelp::AdvanceUTF8(text, end, 99), end);
    EXPECT_EQ(kelp::BackupUTF8(end, text, 2), text + 3);
    EXPECT_EQ(kelp::BackupUTF8(end, text, 99), text);
    EXPECT_EQ(kelp::UTF8Decode(text + 3, end), 0x263Au);
}

} // namespace
