// A caseless search between texts of different words brings both to one
// word first, so a character one side can't hold matches nothing instead of
// a literal "?".
#include "text_kit.h"

#include <gtest/gtest.h>

namespace {

using texttest::Arg;

TEST(InStr, TextsOfDifferentWordsMeetInOneWord) {
    const struct {
        const char *source;
        uint32_t sourceWord;
        const char *find;
        uint32_t findWord;
        int32_t expected;
    } cases[] = {
        {"What?", kEncodingASCII, "\xC3\xA9", kEncodingUTF8, 0},      // é is no "?"
        {"What?", kEncodingLatin1, "\xE2\x82\xAC", kEncodingUTF8, 0}, // nor is the euro
        {"caf\xE9!", kEncodingLatin1, "\xC3\x89!", kEncodingUTF8, 4}, // É finds é
        {"x\xE9y", kEncodingLatin1, "Y", kEncodingASCII, 3},          // ASCII meets all
        {"caf\xC3\xA9?", kEncodingUTF8, "\xE9?", kEncodingLatin1, 4}, // and the other way
    };
    for (const auto &c : cases) {
        Arg source(c.source, c.sourceWord), find(c.find, c.findWord);
        EXPECT_EQ(StringInStr(1, source, find), c.expected) << c.source << " / " << c.find;
    }
}

} // namespace
