// Names of the vocabulary that do real work on this platform and need a
// process of their own around them: Print and Input on the real standard
// descriptors, Daemonize, the program's own file, and the walk over objects.
#include "support/class_kit.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace kelp::test;

namespace {

// Runs body with descriptor fd on the file at path, then puts it back.
template <typename F> void WithDescriptorOn(int fd, const char *path, int flags, F body) {
    fflush(stdout);
    const int saved = dup(fd);
    const int file = open(path, flags, 0600);
    ASSERT_GE(file, 0);
    dup2(file, fd);
    close(file);
    body();
    fflush(stdout);
    dup2(saved, fd);
    close(saved);
}

std::string ReadAll(const std::string &path) {
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(ConsoleAndObjects, PrintAndInputUseTheStandardDescriptors) {
    const std::string out = "/tmp/vocab-print-" + std::to_string(getpid());
    const std::string in = out + ".in";
    std::ofstream(in) << "first line\nsecond\n";
    WithDescriptorOn(1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, [] {
        RuntimeConsolePrint(Lit("printed"));
        RuntimeConsolePrint(nullptr);
    });
    EXPECT_EQ(ReadAll(out), "printed\n\n");
    std::vector<std::string> lines;
    WithDescriptorOn(0, in.c_str(), O_RDONLY, [&] {
        for (int i = 0; i < 3; ++i) {
            KelpString line = RuntimeConsoleInput();
            lines.push_back(Str(line));
            RuntimeUnlockString(line);
        }
    });
    EXPECT_EQ(lines, (std::vector<std::string>{"first line", "second", ""}));
    unlink(out.c_str());
    unlink(in.c_str());
}

TEST(ConsoleAndObjects, DaemonizeGoesOnInANewSessionAndTheStarterEnds) {
    const std::string report = "/tmp/vocab-daemon-" + std::to_string(getpid());
    const pid_t starter = fork();
    ASSERT_GE(starter, 0);
    if (starter == 0) {
        if (!DaemonizeApp(nullptr))
            _exit(3);
        char cwd[PATH_MAX] = "";
        const bool haveCwd = getcwd(cwd, sizeof cwd) != nullptr;
        FILE *f = std::fopen(report.c_str(), "w");
        if (f) {
            std::fprintf(f, "%d %d %s %d\n", int(getpid()), int(getsid(0)), haveCwd ? cwd : "?",
                         isatty(0) || fcntl(0, F_GETFD) < 0 ? 0 : 1);
            std::fclose(f);
        }
        _exit(0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(starter, &status, 0), starter);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    std::string text;
    for (int i = 0; i < 100 && text.find('\n') == std::string::npos; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        text = ReadAll(report);
    }
    int pid = 0, sid = 0, stdinOpen = 0;
    char cwd[PATH_MAX] = "";
    ASSERT_EQ(std::sscanf(text.c_str(), "%d %d %s %d", &pid, &sid, cwd, &stdinOpen), 4) << text;
    EXPECT_NE(pid, starter);
    EXPECT_EQ(sid, pid) << "the detached process leads a session of its own";
    EXPECT_STREQ(cwd, "/");
    EXPECT_EQ(stdinOpen, 1) << "standard input stays open, on /dev/null";
    unlink(report.c_str());
}

TEST(ConsoleAndObjects, TheProgramsFileAndTheObjectWalk) {
    RuntimeObject *file = AppFolderItemGetter(nullptr, 0);
    KelpString path = FileShellPathGetter(file, 0);
    char expected[PATH_MAX];
    ASSERT_NE(realpath(KELP_BIN_DIR "/test_vocabulary", expected), nullptr);
    EXPECT_EQ(Str(path), expected);
    RuntimeUnlockString(path);
    RuntimeUnlockObject(file);

    // Three new objects are the first three the cursor gives, newest first.
    RuntimeObject *made[3];
    for (RuntimeObject *&o : made)
        o = RuntimeNewObject(RuntimeLookupClass(Lit("Collection")));
    RuntimeObject *cursor = RuntimeNewObject(RuntimeLookupClass(Lit("ObjectCursor")));
    ASSERT_NE(cursor, nullptr);
    const int32_t count = objectCursorCountGetter(cursor, 0);
    int32_t walked = 0;
    std::vector<RuntimeObject *> firsts;
    while (RuntimeObject *o = objectCursorNextObject(cursor)) {
        if (walked >= 1 && walked <= 3) // 0 is the cursor itself
            firsts.push_back(o);
        ++walked;
        RuntimeUnlockObject(o);
    }
    EXPECT_EQ(walked, count);
    EXPECT_EQ(firsts, (std::vector<RuntimeObject *>{made[2], made[1], made[0]}));
    EXPECT_EQ(objectCursorGetItem(cursor, count), nullptr);
    RuntimeUnlockObject(cursor);
    for (RuntimeObject *o : made) {
        EXPECT_EQ(o->referenceCount, 1);
        RuntimeUnlockObject(o);
    }
}

} // namespace
