// Title case starts a word behind every code point of the whitespace set
// that trimming cuts, and behind nothing else.
#include "text_kit.h"

#include <gtest/gtest.h>

namespace {

using texttest::Arg;
using texttest::Take;

TEST(Titlecase, AWordStartsBehindEachCodePointThatTrimmingCuts) {
    const struct {
        const char *between; // UTF-8 of the code point between "a" and "b"
        bool startsWord;
    } cases[] = {
        {"\xC2\xA0", true},                              // no-break space
        {"\xC2\x85", true},                              // next line
        {"\xE2\x80\x87", true},                          // figure space
        {"\xE2\x80\xAF", true},                          // narrow no-break space
        {"\xE3\x80\x80", true},                          // ideographic space
        {"\t", true},           {"\xE2\x80\x8B", false}, // zero-width space: not in the set
        {"-", false},
    };
    for (const auto &c : cases) {
        const std::string text = std::string("a") + c.between + "b";
        Arg s(text);
        const std::string expected = std::string("A") + c.between + (c.startsWord ? "B" : "b");
        EXPECT_EQ(Take(StringTitleCase(s)), expected) << text;
        // Trimming cuts the same set.
        Arg padded(std::string(c.between) + "x" + c.between);
        EXPECT_EQ(Take(runTrim(padded)) == "x", c.startsWord) << text;
    }
    // Sixteen-bit text follows the same set.
    Arg wide(std::string("a\0\xA0\0b\0", 6), kEncodingUTF16);
    EXPECT_EQ(Take(StringTitleCase(wide)), std::string("A\0\xA0\0B\0", 6));
}

} // namespace
