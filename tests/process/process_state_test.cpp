// Process-wide values: the theme read from the toolkit (with a real X server
// where it is read), the argument copies, the stack limit and the application
// object as compiled code gets it.
#include "support/xvfb.h"

#include "kelp/startup.h"
#include "process/process_state.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(ThemeFont, TheFirstWordIsTheNameAndTheSecondTheSize) {
    std::string name = "unset";
    int32_t size = -1;
    kelp::ParseThemeFont("Cantarell 11", name, size);
    EXPECT_EQ(name, "Cantarell");
    EXPECT_EQ(size, 11);
    // A family of two words keeps its first word, and its size reads 0 -> 10.
    kelp::ParseThemeFont("DejaVu Sans 9", name, size);
    EXPECT_EQ(name, "DejaVu");
    EXPECT_EQ(size, 10);
    kelp::ParseThemeFont("", name, size);
    EXPECT_EQ(name, "Sans");
    EXPECT_EQ(size, 10);
    // No property: nothing changes.
    name = "kept";
    size = 7;
    kelp::ParseThemeFont(nullptr, name, size);
    EXPECT_EQ(name, "kept");
    EXPECT_EQ(size, 7);
}

TEST(ThemeFont, TheThemeOfARealDisplayIsRead) {
    if (!kelp::test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    kelp::ReadTheme();
    const kelp::ThemeDefaults &theme = kelp::Theme();
    EXPECT_FALSE(theme.fontName.empty());
    EXPECT_GT(theme.fontSize, 0);
    ASSERT_TRUE(theme.coloursRead);
    // The default style's text is darker than its base, in any sane theme.
    const auto &base = theme.colours[4], &text = theme.colours[6];
    EXPECT_GT(base.red + base.green + base.blue, text.red + text.green + text.blue);
}

TEST(ProcessArguments, CopiesSurviveChangesToTheOriginalVector) {
    char a0[] = "prog", a1[] = "--first", a2[] = "doc.txt";
    char *argv[] = {a0, a1, a2, nullptr};
    kelp::SetProcessArguments(3, argv);
    argv[1] = a2; // as the toolkit compacts the vector in place
    a2[0] = 'X';
    char **copy = KELPGetCommandLineForUnix();
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(kelp::ProcessArgumentCount(), 3);
    EXPECT_STREQ(copy[0], "prog");
    EXPECT_STREQ(copy[1], "--first");
    EXPECT_STREQ(copy[2], "doc.txt");
    EXPECT_EQ(copy[3], nullptr);
}

TEST(StackChecker, TheLimitLiesTheGivenBytesBelowTheCaller) {
    KELPInitStackChecker(0x40000);
    char here;
    const uintptr_t position = reinterpret_cast<uintptr_t>(&here);
    EXPECT_EQ(kelp::StackBase() - kelp::StackLimit(), 0x40000u);
    // The recorded position is within a few frames of this one.
    EXPECT_LT(position > kelp::StackBase() ? position - kelp::StackBase()
                                           : kelp::StackBase() - position,
              4096u);
}

TEST(StartupExports, ApplicationObjectIsHandedOutAsStored) {
    RuntimeObject object{};
    kelp::SetApplicationObject(&object);
    EXPECT_EQ(getAppObject(), &object);
    EXPECT_EQ(object.referenceCount, 0) << "getAppObject doesn't lock";
    kelp::SetApplicationObject(nullptr);
    EXPECT_EQ(getAppObject(), nullptr);
    EXPECT_EQ(RuntimeExit(), 0);
}

} // namespace
