// Case changes, the Unicode trims, StrComp and line ends.
#include "text_kit.h"

#include <gtest/gtest.h>

using namespace texttest;

namespace {

TEST(Case, UpperLowerAndTitleByEncoding) {
    Arg s("h\xC3\xA9llo w\xC3\x96rld");
    EXPECT_EQ(Take(StringUCase(s)), "H\xC3\x89LLO W\xC3\x96RLD");
    EXPECT_EQ(Take(StringLCase(s)), "h\xC3\xA9llo w\xC3\xB6rld");
    stringStorage *t = StringTitleCase(s);
    EXPECT_EQ(WordOf(t), kEncodingUTF8);
    EXPECT_EQ(Take(t), "H\xC3\xA9llo W\xC3\xB6rld");
    Arg wide(Wide("ab Cd"), kEncodingUTF16);
    EXPECT_EQ(Take(StringUCase(wide)), Wide("AB CD"));
    EXPECT_EQ(Take(StringTitleCase(wide)), Wide("Ab Cd"));
    // Other encodings: the C library's byte tables, and title case leaves them.
    Arg ascii("MiXed 1", kEncodingASCII);
    EXPECT_EQ(Take(StringLCase(ascii)), "mixed 1");
    stringStorage *same = StringTitleCase(ascii);
    EXPECT_EQ(same, ascii.s);
    Take(same);
    EXPECT_EQ(Take(StringUCase(nullptr)), "");
}

struct TrimRow {
    const char *text;
    uint32_t word;
    const char *both, *leftOnly, *rightOnly;
};
const TrimRow kTrim[] = {
    {"  a b \t", kEncodingUTF8, "a b", "a b \t", "  a b"},
    {"\xE3\x80\x80x\xC2\xA0\r\n", kEncodingUTF8, "x", "x\xC2\xA0\r\n",
     "\xE3\x80\x80x"}, // ideographic and no-break spaces
    {"   ", kEncodingUTF8, "", "", ""},
    {"\xC3\xA9", kEncodingUTF8, "\xC3\xA9", "\xC3\xA9", "\xC3\xA9"},
    {" \xA0x\xA0 ", kEncodingLatin1, "x", "x\xA0 ", " \xA0x"},
    {"\x0B\x0Cy", kEncodingASCII, "y", "y", "\x0B\x0Cy"},
};

TEST(Trim, CutsTheWhitespaceSetFromEitherEnd) {
    for (const TrimRow &row : kTrim) {
        SCOPED_TRACE(row.text);
        Arg s(row.text, row.word);
        stringStorage *both = runTrim(s);
        if (*row.both) {
            EXPECT_EQ(WordOf(both), row.word);
        }
        EXPECT_EQ(Take(both), row.both);
        EXPECT_EQ(Take(runLTrim(s)), row.leftOnly);
        EXPECT_EQ(Take(runRTrim(s)), row.rightOnly);
    }
    Arg clean("abc");
    stringStorage *same = runTrim(clean);
    EXPECT_EQ(same, clean.s);
    Take(same);
    EXPECT_EQ(Take(runTrim(nullptr)), "");
    Arg wide(Wide(" q "), kEncodingUTF16);
    EXPECT_EQ(Take(runTrim(wide)), Wide("q"));
}

TEST(StrComp, RawBytesOrCharactersWithoutFolding) {
    Arg a("a"), A("A"), ab("ab"), e("\xC3\xA9"), z("z");
    EXPECT_EQ(StringStrCompare(a, A, 0), 1);
    EXPECT_EQ(StringStrCompare(A, a, 0), -1);
    EXPECT_EQ(StringStrCompare(nullptr, nullptr, 0), 0);
    EXPECT_EQ(StringStrCompare(nullptr, a, 0), -1);
    EXPECT_EQ(StringStrCompare(a, nullptr, 1), 1);
    EXPECT_EQ(StringStrCompare(a, ab, 0), -1);
    EXPECT_EQ(StringStrCompare(ab, a, 1), 1);
    EXPECT_EQ(StringStrCompare(a, A, 1), 1);
    EXPECT_EQ(StringStrCompare(e, z, 1), 1);
    EXPECT_EQ(StringStrCompare(e, z, 0), 1);
    Arg latin("\xE9", kEncodingLatin1);
    EXPECT_EQ(StringStrCompare(latin, e, 1), 0); // one character in two encodings
    EXPECT_NE(StringStrCompare(latin, e, 0), 0);
}

TEST(LineEnds, ConventionsAndRewriting) {
    EXPECT_EQ(Take(RuntimeEndOfLine()), "\n");
    EXPECT_EQ(Take(getMacEndOfLine()), "\r");
    EXPECT_EQ(Take(getWin32EndOfLine()), "\r\n");
    stringStorage *first = getUNIXEndOfLine(), *second = getUNIXEndOfLine();
    EXPECT_EQ(first, second); // built once
    Take(first);
    Take(second);
    Arg text("a\r\nb\rc\nd"), crlf("\r\n");
    EXPECT_EQ(Take(RuntimeReplaceLineEndings(text, crlf)), "a\r\nb\r\nc\r\nd");
    EXPECT_EQ(Take(RuntimeReplaceLineEndings(nullptr, crlf)), "");
    Arg word("ab");
    EXPECT_EQ(Take(RuntimeEndOfLineAdd(nullptr, word)), "\nab");
    EXPECT_EQ(Take(RuntimeEndOfLineAddRight(nullptr, word)), "ab\n");
    Arg lf("\n");
    EXPECT_EQ(RuntimeEndOfLineCompare(nullptr, lf), 0);
    EXPECT_NE(RuntimeEndOfLineCompare(nullptr, word), 0);
}

} // namespace
