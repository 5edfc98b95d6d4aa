// The entry points of compiled code, on real records, including literal
// records laid down the way an image holds them.
#include "kelp/strings.h"
#include "report_counter.h"
#include "strings/kstring.h"
#include "strings/small_alloc.h"

#include <gtest/gtest.h>

#include <cstring>

using kelp::string;

namespace {

// A string constant as an image's data segment holds it: the record, then
// its length byte, text and NUL behind it.
struct alignas(8) Literal {
    stringStorage record;
    uint8_t text[16];
};

void MakeLiteral(Literal &l, const char *text) {
    size_t n = std::strlen(text);
    l.record.referenceCount = 1;
    l.record.buffer = l.text;
    l.record.capacity = static_cast<uint32_t>(n + 2);
    l.record.length = static_cast<int32_t>(n);
    l.record.encoding = kEncodingUTF8;
    l.text[0] = static_cast<uint8_t>(n);
    std::memcpy(l.text + 1, text, n + 1);
}

TEST(StringExports, LockAndUnlockCountAndAcceptNull) {
    EXPECT_EQ(RuntimeLockString(nullptr), nullptr);
    RuntimeUnlockString(nullptr);
    int64_t before = kelp::TotalAllocLen();
    stringStorage *s = string("abc").ExtractStringStorage();
    EXPECT_EQ(s->referenceCount, 1);
    EXPECT_EQ(RuntimeLockString(s), s);
    EXPECT_EQ(s->referenceCount, 2);
    RuntimeUnlockString(s);
    EXPECT_EQ(s->referenceCount, 1);
    RuntimeUnlockString(s); // the last release frees buffer and record
    EXPECT_EQ(kelp::TotalAllocLen(), before);
}

TEST(StringExports, AssignmentLocksBeforeItUnlocks) {
    stringStorage *s = string("self").ExtractStringStorage();
    RuntimeLockUnlockStrings(s, s); // assigning a string to itself
    EXPECT_EQ(s->referenceCount, 1);
    stringStorage *t = string("other").ExtractStringStorage();
    stringStorage *slot = s;
    RuntimeLockUnlockStrings(t, slot); // s dies, t gains the slot's reference
    slot = t;
    EXPECT_EQ(t->referenceCount, 2);
    RuntimeLockUnlockStrings(nullptr, slot);
    EXPECT_EQ(t->referenceCount, 1);
    RuntimeUnlockString(t);
}

TEST(StringExports, AddStringReturnsAnOwnedReferenceAndBorrowsItsArguments) {
    stringStorage *a = string("left").ExtractStringStorage();
    stringStorage *b = string::FromUTF8("right").ExtractStringStorage();
    stringStorage *sum = RuntimeAddString(a, b);
    ASSERT_NE(sum, nullptr);
    EXPECT_EQ(sum->referenceCount, 1);
    EXPECT_EQ(sum->encoding, kEncodingUTF8);
    EXPECT_STREQ(reinterpret_cast<char *>(sum->buffer + 1), "leftright");
    EXPECT_EQ(a->referenceCount, 1);
    EXPECT_EQ(b->referenceCount, 1);
    stringStorage *same = RuntimeAddString(a, nullptr);
    EXPECT_EQ(same, a);
    EXPECT_EQ(a->referenceCount, 2);
    EXPECT_EQ(RuntimeAddString(nullptr, nullptr), nullptr);
    for (stringStorage *s : {sum, same, a, b})
        RuntimeUnlockString(s);
}

TEST(StringExports, CompareFollowsTheLanguage) {
    stringStorage *a = string("Hello").ExtractStringStorage();
    stringStorage *b = string::FromUTF8("HELLO").ExtractStringStorage();
    stringStorage *c = string("help").ExtractStringStorage();
    EXPECT_EQ(RuntimeStringCompare(a, b), 0);
    EXPECT_LT(RuntimeStringCompare(a, c), 0);
    EXPECT_GT(RuntimeStringCompare(c, a), 0);
    EXPECT_EQ(RuntimeStringCompare(nullptr, nullptr), 0);
    EXPECT_LT(RuntimeStringCompare(nullptr, a), 0);
    EXPECT_GT(RuntimeStringCompare(a, nullptr), 0);
    EXPECT_EQ(a->referenceCount, 1);
    for (stringStorage *s : {a, b, c})
        RuntimeUnlockString(s);
}

TEST(StringExports, LiteralRecordsAreNeverWrittenOrFreed) {
    static Literal lit; // static data, as an image's segment would be
    MakeLiteral(lit, "Open");
    kelp::RegisterLiteralArea(&lit, sizeof lit);
    {
        string held = string::Wrap(&lit.record);
        EXPECT_EQ(lit.record.referenceCount, 2);
        held.MutableChar(0) = 'o'; // shared: the write goes to a copy
        EXPECT_STREQ(reinterpret_cast<char *>(lit.text + 1), "Open");
        EXPECT_EQ(lit.record.referenceCount, 1);
        string joined = string::Wrap(&lit.record) + string("ed");
        EXPECT_EQ(std::string(joined.View()), "Opened");
    }
    EXPECT_EQ(lit.record.referenceCount, 1);
    // Even a release too many leaves the literal's memory alone.
    strings_test::ReportCounter reports;
    RuntimeUnlockString(&lit.record);
    EXPECT_EQ(lit.record.referenceCount, 0);
    RuntimeUnlockString(&lit.record);
    EXPECT_EQ(reports.count(), 1);
    EXPECT_STREQ(reinterpret_cast<char *>(lit.text + 1), "Open");
    kelp::UnregisterLiteralArea(&lit);
    EXPECT_FALSE(kelp::IsInLiteralArea(&lit.record));
}

} // namespace
