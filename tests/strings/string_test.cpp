// The string class: records, references, views, substrings and writes.
#include "report_counter.h"
#include "strings/kstring.h"
#include "strings/small_alloc.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using kelp::string;
using strings_test::ReportCounter;

namespace {

int Count(const string &s) { return s.Storage() ? s.Storage()->referenceCount : 0; }
std::string Text(const string &s) { return std::string(s.View()); }

TEST(StringRecord, EmptyIsNullAndCStringsAreAscii) {
    string empty;
    EXPECT_EQ(empty.Storage(), nullptr);
    EXPECT_EQ(empty.Length(), 0);
    EXPECT_STREQ(empty.CString(), "");
    EXPECT_EQ(empty.PString()[0], 0);

    EXPECT_EQ(string("").Storage(), nullptr); // zero length is always null

    string hello("hello");
    ASSERT_NE(hello.Storage(), nullptr);
    const stringStorage *r = hello.Storage();
    EXPECT_EQ(r->referenceCount, 1);
    EXPECT_EQ(r->length, 5);
    EXPECT_EQ(r->capacity, 7u);
    EXPECT_EQ(r->encoding, kEncodingASCII);
    EXPECT_EQ(r->buffer[0], 5);
    EXPECT_EQ(r->buffer[6], 0);
    EXPECT_STREQ(hello.CString(), "hello");
}

TEST(StringRecord, BytesStayUnknownUntilLabelled) {
    string raw("abc", 3);
    EXPECT_EQ(raw.Encoding(), kEncodingUnknown);
    EXPECT_EQ(string::FromUTF8("abc").Encoding(), kEncodingUTF8);
    EXPECT_EQ(string("abc", 0).Storage(), nullptr);
    EXPECT_EQ(string("abc", -4).Storage(), nullptr);
}

TEST(StringRecord, NullCStringIsReportedAndEmpty) {
    ReportCounter reports;
    string s(static_cast<const char *>(nullptr));
    EXPECT_EQ(s.Storage(), nullptr);
    EXPECT_EQ(reports.count(), 1);
    EXPECT_EQ(reports.last(), "str");
}

TEST(StringRecord, LongTextHas255InItsLengthByte) {
    std::string text(300, 'x');
    string s(text.c_str());
    EXPECT_EQ(s.Length(), 300);
    EXPECT_EQ(s.PString()[0], 255);
    EXPECT_EQ(s.Storage()->capacity, 302u);
    EXPECT_EQ(s.CString()[300], 0);
    string exact(std::string(255, 'y').c_str());
    EXPECT_EQ(exact.PString()[0], 255);
    string below(std::string(254, 'y').c_str());
    EXPECT_EQ(below.PString()[0], 254);
}

TEST(StringRecord, NulInsideTextCountsAndSurvivesJoins) {
    string s = string::FromBytes("ab\0cd", 5, kEncodingASCII);
    EXPECT_EQ(s.Length(), 5);
    EXPECT_STREQ(s.CString(), "ab"); // the C view stops at the NUL
    string joined = s + string("ef");
    EXPECT_EQ(joined.Length(), 7);
    EXPECT_EQ(Text(joined), std::string("ab\0cdef", 7));
    EXPECT_NE(s, string("ab")); // the NUL is part of the text
}

TEST(StringRecord, WideCharactersBecomeSixteenBitUnits) {
    const uint32_t chars[] = {0x41, 0x10042, 0x263A};
    string s = string::FromWide(chars, 3);
    ASSERT_NE(s.Storage(), nullptr);
    EXPECT_EQ(s.Encoding(), kEncodingUTF16);
    EXPECT_EQ(s.Length(), 6);
    EXPECT_EQ(s.Storage()->capacity, 9u);
    const uint8_t *b = s.PString();
    EXPECT_EQ(b[0], 6);
    uint16_t units[3];
    std::memcpy(units, b + 1, 6);
    EXPECT_EQ(units[0], 0x41);
    EXPECT_EQ(units[1], 0x42); // low 16 bits only
    EXPECT_EQ(units[2], 0x263A);
    EXPECT_EQ(b[7], 0);
    EXPECT_EQ(b[8], 0);
}

TEST(StringReferences, CopiesShareAndAssignmentMovesReferences) {
    string a("shared");
    {
        string b = a;
        EXPECT_EQ(b.Storage(), a.Storage());
        EXPECT_EQ(Count(a), 2);
        string c("other");
        c = a;
        EXPECT_EQ(Count(a), 3);
        c = c; // self-assignment changes nothing
        EXPECT_EQ(Count(a), 3);
        string d = std::move(c);
        EXPECT_EQ(c.Storage(), nullptr);
        EXPECT_EQ(Count(a), 3);
    }
    EXPECT_EQ(Count(a), 1);
    string same = a;
    a = std::move(same); // both held the record: one reference remains
    EXPECT_EQ(Count(a), 1);
    EXPECT_EQ(same.Storage(), nullptr);
}

TEST(StringReferences, WrapAdoptAndExtractFollowTheBoundaryRules) {
    string owner("text");
    stringStorage *record = owner.Storage();
    {
        string borrowed = string::Wrap(record);
        EXPECT_EQ(record->referenceCount, 2);
        stringStorage *handed = borrowed.ExtractStringStorage();
        EXPECT_EQ(handed, record);
        EXPECT_EQ(record->referenceCount, 3);
        string adopted = string::Adopt(handed); // takes that reference over
        EXPECT_EQ(record->referenceCount, 3);
    }
    EXPECT_EQ(record->referenceCount, 1);
    stringStorage *released = owner.Release();
    EXPECT_EQ(owner.Storage(), nullptr);
    EXPECT_EQ(released->referenceCount, 1);
    string::Adopt(released); // frees it
}

TEST(StringReferences, EveryRecordIsGivenBack) {
    int64_t before = kelp::TotalAllocLen();
    {
        string a("alpha");
        string b = string::FromUTF8("beta");
        string c = a + b + string(std::string(400, 'z').c_str());
        string d = mid(c, 3, 20);
        d.MutableChar(0) = 'Q';
        c += "tail";
        string e = string::FromWide(reinterpret_cast<const uint32_t *>(U"wide"), 4);
        // Fresh chunks place a buffer right behind its record: each must
        // still be freed.
        for (int i = 0; i < 600; ++i)
            string fresh(std::to_string(i * 7919).c_str());
    }
    EXPECT_EQ(kelp::TotalAllocLen(), before);
}

// Left, Right and Mid of "abcdef": an empty result is the null record, and
// a result that is the whole text is the same record.
TEST(Substrings, LeftRightAndMid) {
    const string s("abcdef");
    const struct Row {
        const char *name;
        string got;
        const char *text; // nullptr: the same record as the source
    } rows[] = {
        {"left 0", left(s, 0), ""},          {"left -3", left(s, -3), ""},
        {"left 6", left(s, 6), nullptr},     {"left 100", left(s, 100), nullptr},
        {"left 2", left(s, 2), "ab"},        {"right 2", right(s, 2), "ef"},
        {"right 0", right(s, 0), ""},        {"right 6", right(s, 6), nullptr},
        {"mid 0", mid(s, 0), nullptr},       {"mid -2", mid(s, -2), nullptr},
        {"mid 4", mid(s, 4), "ef"},          {"mid 6", mid(s, 6), ""},
        {"mid 60", mid(s, 60), ""},          {"mid 5 0", mid(s, 5, 0), ""},
        {"mid 0 6", mid(s, 0, 6), nullptr},  {"mid 1 3", mid(s, 1, 3), "bcd"},
        {"mid 4 100", mid(s, 4, 100), "ef"}, {"mid -2 4", mid(s, -2, 4), "ab"}, // eats the length
        {"mid -4 4", mid(s, -4, 4), ""},     {"mid 6 1", mid(s, 6, 1), ""},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        if (!row.text) {
            EXPECT_EQ(row.got.Storage(), s.Storage());
        } else if (!*row.text) {
            EXPECT_EQ(row.got.Storage(), nullptr);
        } else {
            EXPECT_EQ(Text(row.got), row.text);
        }
    }
    EXPECT_EQ(mid(string(), 0).Storage(), nullptr);
    // Shared results hold their own reference.
    EXPECT_EQ(Count(s), 7);
    string latin = string::FromBytes("\xe9t\xe9", 3, kEncodingLatin1);
    EXPECT_EQ(left(latin, 1).Encoding(), kEncodingLatin1);
    EXPECT_EQ(right(latin, 1).Encoding(), kEncodingLatin1);
}

TEST(Substrings, TrimmingTakesBlanksAndTabsOnly) {
    string s(" \t x y \t ");
    EXPECT_EQ(Text(ltrim(s)), "x y \t ");
    EXPECT_EQ(Text(rtrim(s)), " \t x y");
    EXPECT_EQ(Text(trim(s)), "x y");
    EXPECT_EQ(Text(trim(string("\nx\r"))), "\nx\r");
    EXPECT_EQ(trim(string(" \t ")).Storage(), nullptr);
    string clean("clean");
    EXPECT_EQ(trim(clean).Storage(), clean.Storage());
}

TEST(StringWrites, MutableCharCopiesASharedRecord) {
    string a("text");
    string b = a;
    b.MutableChar(0) = 'n';
    EXPECT_EQ(Text(a), "text");
    EXPECT_EQ(Text(b), "next");
    EXPECT_NE(a.Storage(), b.Storage());
    EXPECT_EQ(Count(a), 1);
    stringStorage *own = b.Storage();
    b.MutableChar(3) = 's'; // sole holder: written in place
    EXPECT_EQ(b.Storage(), own);
    EXPECT_EQ(Text(b), "nexs");
}

TEST(StringWrites, MutableCharOutOfRangeIsReported) {
    ReportCounter reports;
    string s("abc");
    s.MutableChar(3) = 'x';
    EXPECT_EQ(reports.count(), 1);
    s.MutableChar(-1) = 'x';
    EXPECT_EQ(reports.count(), 2);
    EXPECT_EQ(Text(s), "abc");
    string empty;
    empty.MutableChar(0) = 'x';
    EXPECT_EQ(reports.count(), 3);
    EXPECT_EQ(reports.last(), "not pos");
    EXPECT_EQ(empty.Storage(), nullptr);
}

TEST(StringWrites, SetEncodingRelabelsWithoutTouchingOtherHolders) {
    string a = string::FromBytes("abc", 3, kEncodingUnknown);
    string b = a;
    b.SetEncoding(kEncodingLatin1);
    EXPECT_EQ(a.Encoding(), kEncodingUnknown);
    EXPECT_EQ(b.Encoding(), kEncodingLatin1);
    EXPECT_EQ(Text(b), "abc");
    string empty;
    empty.SetEncoding(kEncodingUTF8);
    EXPECT_EQ(empty.Storage(), nullptr);
}

TEST(StringWrites, Utf16ViewInsistsOnItsEncoding) {
    ReportCounter reports;
    string ascii("ab");
    const uint16_t *units = ascii.UTF16Units();
    EXPECT_EQ(reports.count(), 1);
    ASSERT_NE(units, nullptr);
    EXPECT_EQ(units[0], 0);
    const uint32_t chars[] = {'h', 'i'};
    string wide = string::FromWide(chars, 2);
    wide.UTF16Units();
    EXPECT_EQ(reports.count(), 1);
}

TEST(StringChars, UnicodeCharInEachEncoding) {
    string e = string::UnicodeChar(0xE9, kEncodingUTF8);
    EXPECT_EQ(e.Encoding(), kEncodingUTF8);
    EXPECT_EQ(Text(e), "\xc3\xa9");
    string wide = string::UnicodeChar(0x263A, kEncodingUTF16);
    EXPECT_EQ(wide.Length(), 2);
    uint16_t unit;
    std::memcpy(&unit, wide.CString(), 2);
    EXPECT_EQ(unit, 0x263A);
    string latin = string::UnicodeChar(0xE9, kEncodingLatin1);
    EXPECT_EQ(latin.Encoding(), kEncodingLatin1);
    EXPECT_EQ(Text(latin), "\xe9");
    EXPECT_EQ(Text(string::UnicodeChar(0x1F600, kEncodingUTF8)), "\xf0\x9f\x98\x80");
}

} // namespace
