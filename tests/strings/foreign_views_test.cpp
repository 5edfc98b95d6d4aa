// The views of a string that declared external functions take.
#include "kelp/strings.h"
#include "strings/kstring.h"

#include <gtest/gtest.h>

#include <cstring>

using kelp::string;

namespace {

TEST(ForeignViews, CAndPascalTextsWideTextAndFourCharacterCodes) {
    string text = string::FromBytes("caf\xE9", 4, kEncodingLatin1);
    EXPECT_STREQ(StringGetCString(text.Storage()), "caf\xE9");
    EXPECT_EQ(StringToCString(text.Storage()), StringGetCString(text.Storage()));
    EXPECT_STREQ(StringGetCString(nullptr), "");
    const uint8_t *p = StringToPString(text.Storage());
    EXPECT_EQ(p[0], 4);
    EXPECT_EQ(std::memcmp(p + 1, "caf\xE9", 4), 0);
    EXPECT_EQ(StringGetPString(nullptr)[0], 0);

    string wide = string::Adopt(StringToWString(text.Storage()));
    EXPECT_EQ(wide.Encoding(), kEncodingUTF16);
    EXPECT_EQ(wide.View(), std::string("c\0a\0f\0\xE9\0", 8));
    string utf8 = string::Adopt(StringToCFString(text.Storage()));
    EXPECT_EQ(utf8.View(), "caf\xC3\xA9");

    struct Case {
        const char *text;
        uint32_t code;
    } codes[] = {
        {"TEXT", 0x54455854}, {"ttx", 0x74747820}, {"", 0x20202020}, {"LONGER", 0x4C4F4E47}};
    for (const Case &c : codes) {
        string s(c.text);
        EXPECT_EQ(StringToOSType(s.Storage()), c.code) << c.text;
    }
}

} // namespace
