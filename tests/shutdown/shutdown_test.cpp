// The run-down's shutdown tasks: their order, early deletion, and temporary
// files and folders removed with real files.
#include "support/image_builder.h"

#include "shutdown/shutdown_task.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> gRan;

class NamedTask : public kelp::runShutdownTask {
public:
    explicit NamedTask(std::string name) : mName(std::move(name)) {}
    ~NamedTask() override {
        gRan.push_back(mName);
        // A task made during the run-down runs too.
        if (mName == "spawner")
            new NamedTask("late");
    }

private:
    std::string mName;
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

} // namespace
