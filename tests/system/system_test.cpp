// The System object against the real system: the log socket, standard
// error, the environment, libraries found by name, and a private X server
// whose pointer xdotool moves.
#include "support/class_kit.h"
#include "support/image_builder.h"
#include "support/xvfb.h"

#include "kelp/system.h"

#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <gdk/gdkx.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace {

using kelp::test::Lit;
using kelp::test::Str;

std::string Take(stringStorage *s) {
    std::string text = Str(s);
    RuntimeUnlockString(s);
    return text;
}

TEST(SystemObject, EnvironmentAndStandardError) {
    RuntimeObject *system = getSystemObject();
    SystemSetEnvVariable(system, Lit("KELP_SYSTEM_TEST"), Lit("caf\xc3\xa9 $HOME"));
    EXPECT_STREQ(std::getenv("KELP_SYSTEM_TEST"), "caf\xc3\xa9 $HOME");
    EXPECT_EQ(Take(SystemGetEnvVariable(system, Lit("KELP_SYSTEM_TEST"))), "caf\xc3\xa9 $HOME");
    SystemSetEnvVariable(system, Lit("KELP_SYSTEM_TEST"), nullptr);
    EXPECT_STREQ(std::getenv("KELP_SYSTEM_TEST"), "");
    EXPECT_EQ(Take(SystemGetEnvVariable(system, Lit("KELP_NOT_SET_ANYWHERE"))), "");
    EXPECT_EQ(Take(SystemGetEnvVariable(system, nullptr)), "");

    testing::internal::CaptureStderr();
    SystemDebugLogger(system, Lit("100% done"));
    SystemDebugLogger(system, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "100% done\n");
    RuntimeUnlockObject(system);
}

TEST(SystemObject, FunctionsAreFoundByNameAndRemembered) {
    void *cosine = LoadFunctionPointerFromLibrary(Lit("cos"), Lit("libm.so.6"));
    ASSERT_NE(cosine, nullptr);
    EXPECT_DOUBLE_EQ(reinterpret_cast<double (*)(double)>(cosine)(0.0), 1.0);
    struct Row {
        const char *function, *library;
        bool found;
    } rows[] = {
        {"sqrt", "libm", true},           // through the development package's linker script
        {"cos", "no-such-library", true}, // a name found once answers whatever the library
        {"no_such_function", "libm.so.6", false},
        {"strlen", "no-such-library", false},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(std::string(row.function) + " in " + row.library);
        EXPECT_EQ(IsFunctionAvailable(nullptr, Lit(row.function), Lit(row.library)) != 0,
                  row.found);
    }
    EXPECT_EQ(LoadFunctionPointerFromLibrary(Lit("cos"), Lit("other")), cosine);
}

// The log reaches the system's log socket with the user facility, the
// level's priority and the message unharmed.  Runs only where this test may
// stand in for the log daemon (no /dev/log yet, and allowed to make one).
TEST(SystemObject, LogReachesTheLogSocketAtTheLevelsPriority) {
    struct stat st;
    if (stat("/dev/log", &st) == 0)
        GTEST_SKIP() << "a log daemon owns /dev/log";
    const int fd = socket(AF_UNIX, SOCK_DGRAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, "/dev/log");
    if (bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0) {
        close(fd);
        GTEST_SKIP() << "may not create /dev/log";
    }
    timeval wait{5, 0};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait);
    struct Row {
        int32_t level;
        int priority;
    } rows[] = {{1000, 0}, {1003, 3}, {1007, 7}, {1008, 6}, {42, 6}};
    for (const Row &row : rows) {
        SystemLogger(nullptr, row.level, Lit("100% %s %n"));
        char datagram[512] = {};
        const ssize_t n = recv(fd, datagram, sizeof datagram - 1, 0);
        ASSERT_GT(n, 0) << row.level;
        const std::string text(datagram, size_t(n));
        EXPECT_EQ(text.rfind("<" + std::to_string(8 + row.priority) + ">", 0), 0u) << text;
        EXPECT_NE(text.find("]: 100% %s %n"), std::string::npos) << text;
    }
    close(fd);
    unlink("/dev/log");
}

TEST(SystemObject, PointerAndPixelsComeFromTheScreen) {
    if (!kelp::test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    Display *x = GDK_DISPLAY_XDISPLAY(gdk_display_get_default());
    XSetWindowBackground(x, DefaultRootWindow(x), 0x3366CC);
    XClearWindow(x, DefaultRootWindow(x));
    XSync(x, False);
    EXPECT_EQ(systemPixel(nullptr, 10, 10), 0x3366CC);
    EXPECT_EQ(systemPixel(nullptr, -5, 99999), 0); // off the screen
    ASSERT_EQ(std::system("xdotool mousemove 123 45 mousedown 1"), 0);
    EXPECT_EQ(getMouseX(nullptr, 0), 123);
    EXPECT_EQ(getMouseY(nullptr, 0), 45);
    EXPECT_EQ(getMouseDown(nullptr, 0), 1);
    ASSERT_EQ(std::system("xdotool mouseup 1"), 0);
    EXPECT_EQ(getMouseDown(nullptr, 0), 0);
}

// A program's command line, as its compiled code reads it.
TEST(SystemObject, CommandLineStartsWithTheProgramsOwnPath) {
    using kelp::test::Reg;
    kelp::test::ImageBuilder b;
    b.Prologue();
    b.MovImm(Reg::RDI, 0);
    b.CallImport("SystemGetCommandLine");
    b.PutsString(Reg::RAX);
    b.Epilogue();
    const auto result = kelp::test::RunAppended(b.Build(), {"first", "two words"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out.find(" first two words\n"), std::string::npos) << result.out;
    EXPECT_EQ(result.out[0], '/');
}

} // namespace
