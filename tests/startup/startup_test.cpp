// Process start-up values, the bring-up order and the run-down's shutdown
// tasks, with real files and (where the theme is read) a real X server.
#include "support/image_builder.h"
#include "support/xvfb.h"

#include "kelp/startup.h"
#include "shutdown/menu_bar.h"
#include "shutdown/shutdown_task.h"
#include "startup/bring_up.h"
#include "startup/process_state.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <fstream>
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

// --------------------------------------------------------------- shutdown

std::vector<std::string> gRan;

class NamedTask : public kelp::runShutdownTask {
public:
    explicit NamedTask(std::string name) : name_(std::move(name)) {}
    ~NamedTask() override {
        gRan.push_back(name_);
        // A task made during the run-down runs too.
        if (name_ == "spawner")
            new NamedTask("late");
    }

private:
    std::string name_;
};

TEST(ShutdownTasks, RunNewestFirstIncludingTasksMadeWhileRunning) {
    gRan.clear();
    kelp::RunShutdownTasks(); // an empty list returns at once
    EXPECT_TRUE(gRan.empty());
    new NamedTask("A");
    new NamedTask("spawner");
    new NamedTask("B");
    kelp::RunShutdownTasks();
    EXPECT_EQ(gRan, (std::vector<std::string>{"B", "spawner", "late", "A"}));
    EXPECT_EQ(kelp::ShutdownTaskListHead(), nullptr);
}

TEST(ShutdownTasks, ATaskDeletedEarlyLeavesTheList) {
    gRan.clear();
    auto *a = new NamedTask("A");
    auto *b = new NamedTask("B");
    auto *c = new NamedTask("C");
    delete b;
    EXPECT_EQ(kelp::ShutdownTaskListHead(), c);
    EXPECT_EQ(c->next, a);
    kelp::RunShutdownTasks();
    EXPECT_EQ(gRan, (std::vector<std::string>{"B", "C", "A"}));
}

TEST(ShutdownTasks, TemporaryFoldersAreRemovedFromTheLeavesUp) {
    kelp::test::TempDir dir;
    const std::string top = dir / "tmpfolder";
    ASSERT_EQ(mkdir(top.c_str(), 0755), 0);
    ASSERT_EQ(mkdir((top + "/inner").c_str(), 0755), 0);
    ASSERT_EQ(mkdir((top + "/inner/deeper").c_str(), 0755), 0);
    std::ofstream(top + "/inner/deeper/f.wav") << "x";
    std::ofstream(top + "/g.wav") << "y";
    const std::string file = dir / "single.wav";
    std::ofstream(file) << "z";
    // A link inside is removed, never followed.
    const std::string outside = dir / "keep.txt";
    std::ofstream(outside) << "keep";
    ASSERT_EQ(symlink(outside.c_str(), (top + "/link").c_str()), 0);
    kelp::RemoveAtShutdown(top);
    kelp::RemoveAtShutdown(file);
    kelp::RemoveAtShutdown(dir / "already-gone");
    kelp::RunShutdownTasks();
    struct stat st;
    EXPECT_NE(stat(top.c_str(), &st), 0);
    EXPECT_NE(stat(file.c_str(), &st), 0);
    EXPECT_EQ(stat(outside.c_str(), &st), 0);
}

std::vector<bool> gMenuBar;
void RecordMenuBar(bool visible) { gMenuBar.push_back(visible); }

TEST(ShutdownTasks, AHiddenMenuBarIsShownAgainOnceOrAtTheRunDown) {
    auto old = kelp::SetMenuBarVisibility(&RecordMenuBar);
    gMenuBar.clear();
    kelp::HideMenuBar();
    kelp::HideMenuBar();
    EXPECT_TRUE(kelp::MenuBarHidden());
    kelp::ShowMenuBar();
    EXPECT_FALSE(kelp::MenuBarHidden());
    EXPECT_EQ(gMenuBar, (std::vector<bool>{false, true}));
    EXPECT_EQ(kelp::ShutdownTaskListHead(), nullptr) << "no task while the bar is shown";
    kelp::HideMenuBar();
    kelp::RunShutdownTasks();
    EXPECT_FALSE(kelp::MenuBarHidden());
    EXPECT_EQ(gMenuBar, (std::vector<bool>{false, true, false, true}));
    kelp::SetMenuBarVisibility(old);
}

// --------------------------------------------------------------- bring-up

std::vector<int> gSteps;
void StepLate() { gSteps.push_back(90); }
void StepEarly() { gSteps.push_back(10); }
void StepSockets() { gSteps.push_back(50); }
kelp::BringUpStep late(kelp::kBringUpLate, &StepLate);
kelp::BringUpStep early(kelp::kBringUpControlColours, &StepEarly);
kelp::BringUpStep sockets(kelp::kBringUpSockets, &StepSockets);

TEST(BringUp, StepsRunOnceInTheirOrder) {
    kelp::RunBringUpSteps();
    kelp::RunBringUpSteps();
    EXPECT_EQ(gSteps, (std::vector<int>{10, 50, 90}));
}

} // namespace
