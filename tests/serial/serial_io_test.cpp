// Bytes through a Serial object to and from real far ends: the master side
// of a pseudo-terminal, and pyserial on a pair of terminals that socat
// joins.  Events are checked in the order the program sees them.
#include "pty_peer.h"

#include "serial/port_list.h"
#include "serial/serial_port.h"

#include "runloop/descriptor_watch.h"
#include "runloop/main_loop.h"
#include "support/image_builder.h"

#include "kelp/arrays.h"
#include "kelp/exceptions.h"
#include "kelp/objects.h"
#include "kelp/serial.h"
#include "kelp/strings.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace kelp::test {
namespace {

// Waits (2 s at most) until the port's device holds `count` bytes that the
// far end wrote: a pseudo-terminal hands them over a moment later.
void AwaitWaiting(RuntimeObject *serial, int count) {
    int waiting = 0;
    for (int i = 0; i < 200 && waiting < count; ++i, usleep(10000))
        ioctl(GetPosixDescriptor(serial, 0), FIONREAD, &waiting);
}

// Runs blocking passes of the loop until `done`.  Only the descriptor
// watch can end a pass early; a watchdog ends the wait after 5 s, and the
// answer says whether it had to.
template <class Done> bool LoopUntil(Done done) {
    static bool fired;
    fired = false;
    guint watchdog = g_timeout_add(
        5000, [](gpointer) -> gboolean { return fired = true, FALSE; }, nullptr);
    while (!done() && !fired)
        MainLoopStep(true);
    if (!fired)
        g_source_remove(watchdog);
    return !fired;
}

// Every byte value to pyserial on the far end of a terminal pair that socat
// joins, and back reversed, while the loop sleeps in the toolkit's wait.
TEST(SerialIO, EveryByteValueToAPyserialPeerAndBack) {
    TempDir dir;
    const std::string a = dir / "a", b = dir / "b";
    const pid_t socat = fork();
    if (socat == 0) {
        execlp("socat", "socat", ("pty,raw,echo=0,link=" + a).c_str(),
               ("pty,raw,echo=0,link=" + b).c_str(), static_cast<char *>(nullptr));
        _exit(127);
    }
    struct stat info;
    for (int i = 0; i < 250 && (stat(a.c_str(), &info) != 0 || stat(b.c_str(), &info) != 0); ++i)
        usleep(20000);
    // pyserial empties its input when it opens: we write once it says so.
    FILE *peer = popen(("/usr/bin/python3 -c \"import serial, sys\n"
                        "s = serial.Serial(sys.argv[1], 9600, timeout=5); print(1, flush=True)\n"
                        "got = s.read(256); s.write(got[::-1]); s.flush(); print(len(got))\" " +
                        b)
                           .c_str(),
                       "r");
    char line[16] = {};
    ASSERT_STREQ(fgets(line, sizeof line, peer), "1\n");
    std::string all;
    for (int i = 0; i < 256; ++i)
        all.push_back(static_cast<char>(i));
    RuntimeObject *serial = NewTestSerial(a);
    SerialOf(serial)->baud = 8;
    Write(serial, all);
    EXPECT_TRUE(LoopUntil([&] { return SerialBytesAvailable(serial, 0) >= 256; }))
        << "the loop slept through arriving data";
    EXPECT_EQ(Take(serialReadAll(serial, nullptr)), std::string(all.rbegin(), all.rend()));
    EXPECT_EQ(SerialEvents().at(0), "data");
    EXPECT_STREQ(fgets(line, sizeof line, peer), "256\n");
    EXPECT_EQ(pclose(peer), 0);
    RuntimeUnlockObject(serial);
    kill(socat, SIGTERM);
    waitpid(socat, nullptr, 0);
}

TEST(SerialIO, AVanishingDeviceClosesThePortWithOneError) {
    Pty pty;
    RuntimeObject *serial = NewTestSerial(pty.path);
    ASSERT_TRUE(serialOpen(serial));
    pty.CloseSlave();
    const int watches = DescriptorWatchCount();
    pty.CloseMaster();
    EXPECT_TRUE(LoopUntil([] { return !SerialEvents().empty(); }));
    for (int i = 0; i < 5; ++i)
        MainLoopStep(false);
    EXPECT_EQ(SerialEvents(), std::vector<std::string>{"error 5"});
    EXPECT_EQ(GetPosixDescriptor(serial, 0), -1);
    EXPECT_EQ(DescriptorWatchCount(), watches - 1);
    // Writing tries the device again, which is gone: nothing is queued.
    Write(serial, "x");
    EXPECT_EQ(SerialEvents().back(), "error 2");
    EXPECT_EQ(SerialBytesLeftToSend(serial, 0), 0);
    RuntimeUnlockObject(serial);
}

// Opening fails with the codes a program tests for.  The refusals need an
// ordinary user (the superuser passes both), so a child takes each on.
TEST(SerialIO, FailedOpensReportTheirCodes) {
    if (geteuid() != 0)
        GTEST_SKIP() << "needs root to become an ordinary user";
    Pty held, closed;
    fchmod(held.slave, 0666), fchmod(closed.slave, 0600);
    RuntimeObject *holder = NewTestSerial(held.path);
    ASSERT_TRUE(serialOpen(holder));
    const int fd = GetPosixDescriptor(holder, 0);
    EXPECT_TRUE(serialOpen(holder)) << "open twice";
    EXPECT_EQ(GetPosixDescriptor(holder, 0), fd);
    const std::pair<std::string, const char *> cases[] = {
        {held.path, "error 100"}, {closed.path, "error 100"}, {"/dev/ttyS-none", "error 2"}};
    for (const auto &[path, events] : cases) {
        int answer[2];
        ASSERT_EQ(pipe(answer), 0);
        const pid_t child = fork();
        if (child == 0) {
            if (setgid(65534) != 0 || setuid(65534) != 0)
                _exit(2);
            std::string text = serialOpen(NewTestSerial(path)) ? "opened" : "";
            for (const std::string &e : SerialEvents())
                text += e;
            _exit(write(answer[1], text.data(), text.size()) < 0);
        }
        close(answer[1]);
        char text[64] = {};
        EXPECT_GT(read(answer[0], text, sizeof text - 1), 0);
        close(answer[0]);
        waitpid(child, nullptr, 0);
        EXPECT_STREQ(text, events) << path;
    }
    RuntimeUnlockObject(holder);
}

TEST(SerialIO, QueuesBetweenTheProgramAndTheDevice) {
    Pty pty;
    termios found{}, now{};
    tcgetattr(pty.master, &found);
    RuntimeObject *serial = NewTestSerial(pty.path);
    SerialOf(serial)->baud = 8; // Baud9600
    Write(serial, "ab");        // a write opens a closed port
    EXPECT_EQ(pty.ReadMaster(2, 2000), "ab");

    // Bytes come in only with a service pass; reading runs one itself.
    ASSERT_EQ(write(pty.master, "12345", 5), 5);
    AwaitWaiting(serial, 5);
    EXPECT_EQ(SerialBytesAvailable(serial, 0), 0);
    serialTick(serial);
    EXPECT_EQ(SerialBytesAvailable(serial, 0), 5);
    ASSERT_EQ(write(pty.master, "67", 2), 2);
    AwaitWaiting(serial, 2);
    EXPECT_EQ(SerialBytesAvailable(serial, 0), 5);
    EXPECT_EQ(SerialEof(serial), 1) << "EOF looks at the output only";
    EXPECT_EQ(Take(serialLookahead(serial, nullptr)), "12345");
    KelpString read = serialRead(serial, 100, nullptr);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->encoding, kEncodingUnknown);
    EXPECT_EQ(Take(read), "1234567") << "more than waiting gives what there is";
    // One DataAvailable for each pass that brought bytes: the tick's, the read's.
    EXPECT_EQ(SerialEvents(), (std::vector<std::string>{"data", "data"}));

    ASSERT_EQ(write(pty.master, "zz", 2), 2);
    AwaitWaiting(serial, 2);
    Write(serial, "done");
    serialFlush(serial);
    EXPECT_EQ(SerialBytesAvailable(serial, 0) + SerialBytesLeftToSend(serial, 0), 0);
    EXPECT_EQ(pty.ReadMaster(4, 2000), "done");

    // Close puts back what open found; the speed chosen survives Close and Open.
    serialClose(serial);
    tcgetattr(pty.master, &now);
    EXPECT_EQ(now.c_lflag, found.c_lflag);
    EXPECT_EQ(now.c_iflag, found.c_iflag);
    ASSERT_TRUE(serialOpen(serial));
    tcgetattr(pty.master, &now);
    EXPECT_EQ(cfgetospeed(&now), static_cast<speed_t>(B9600));
    EXPECT_EQ(SerialOf(serial)->baud, 8);
    EXPECT_EQ(SerialOf(serial)->lastErrorCode, 0);
    RuntimeUnlockObject(serial);
}

TEST(SerialIO, PortListNamesTheTestTerminal) {
    Pty pty;
    unsetenv("KELP_SERIAL_TEST_PORTS");
    const int32_t machine = getSerialPortCount(nullptr, 0);
    setenv("KELP_SERIAL_TEST_PORTS", (pty.path + ":/dev/no-such-port").c_str(), 1);
    const int32_t count = getSerialPortCount(nullptr, 0);
    unsetenv("KELP_SERIAL_TEST_PORTS");
    EXPECT_EQ(count, machine + 1);
    setenv("KELP_SERIAL_TEST_PORTS", pty.path.c_str(), 1);
    for (int32_t index : {-1, count - 1, count}) {
        RuntimeEnterHandlerRegion();
        RuntimeObject *port = getSerialPort(nullptr, index);
        RuntimeObject *raised = RuntimeTakeException();
        RuntimeLeaveHandlerRegion();
        EXPECT_EQ(raised != nullptr, index != count - 1) << index;
        EXPECT_EQ(SerialPortPath(port), index == count - 1 ? pty.path : "");
        RuntimeUnlockObject(port), RuntimeUnlockObject(raised);
    }
    unsetenv("KELP_SERIAL_TEST_PORTS");
    EXPECT_EQ(getSerialPortByPath(nullptr, nullptr), nullptr);
}

// A pseudo-terminal has no modem lines: they read off, driving the
// outputs is no error, and the trace logs what the program drives.
TEST(SerialIO, LinesOfADeviceWithoutModemLines) {
    Pty pty;
    RuntimeObject *serial = NewTestSerial(pty.path);
    ASSERT_TRUE(serialOpen(serial));
    for (int32_t line : {kLineDTR, kLineRTS, kLineCTS, kLineDCD, kLineRI, kLineDSR})
        EXPECT_EQ(LineStateGetter(serial, line), 0) << line;
    lineTrace(serial, 1);
    testing::internal::CaptureStderr();
    LineStateSetter(serial, kLineDTR, 1);
    LineStateSetter(serial, kLineCTS, 1); // an input: not ours to drive
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Serial " + pty.path + ": DTR set on\n");
    EXPECT_EQ(SerialOf(serial)->dataTerminalReady, 1);
    EXPECT_EQ(SerialOf(serial)->lastErrorCode, 0);

    const std::pair<std::vector<int32_t>, int32_t> cases[] = {
        {{kLineCTS, kLineDCD}, 12}, {{kLineCTS, -1, kLineDCD}, 0}, {{}, 0}};
    for (const auto &[list, mask] : cases) {
        RuntimeArray *lines = CreateArray(1, kArrayInt32, static_cast<int32_t>(list.size()) - 1);
        for (size_t i = 0; i < list.size(); ++i)
            reinterpret_cast<kelp_array1_set_i32>(lines->operations[kArraySlotSet])(
                lines, list[i], static_cast<int32_t>(i));
        SerialWatchLineArray(serial, lines);
        EXPECT_EQ(SerialOf(serial)->watchedLines, mask);
        RuntimeUnlockArray(lines);
    }
    serialTick(serial);
    EXPECT_TRUE(SerialEvents().empty());
    RuntimeUnlockObject(serial);
}

} // namespace
} // namespace kelp::test
