// A test IDE on a real socket drives a real image through the runtime
// program: each row of the table is one debug session, a list of lines the
// IDE sends and the reply it waits for, checked against the wire format.
#include "support/image_builder.h"
#include "timers/timer.h"

#include <gtest/gtest.h>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <cstring>
#include <future>
#include <map>
#include <ostream>
#include <regex>
#include <string>
#include <vector>

namespace {

using kelp::test::ImageBuilder;
using kelp::test::Reg;

std::string LocalPath() { return "/tmp/KPLocalDebug." + std::to_string(getuid()); }

// Main (lines 1 to 5) calls Sub (lines 10, 11) twice.  Its locals, below
// its frame: a string, a Timer, a 2-dimensional Integer array (bounds 3, 4)
// and a variant boxing "boxed".  Between lines 4 and 5 it lets the Timer
// and the array go, and raises and takes an EndException and a
// KeyNotFoundException.
kelp::image::Segments DebugImage(const std::string &address) {
    ImageBuilder b;
    auto line = [&](int n) {
        b.MovImm(Reg::RDI, static_cast<uint64_t>(n));
        b.CallImport("RuntimeDebuggerEntry");
    };
    const uint32_t toMain = b.Jump(ImageBuilder::When::Always);
    const uint32_t sub = b.Here();
    b.AddSymbol(sub, "Sub");
    b.Prologue();
    line(10);
    line(11);
    b.Epilogue();
    b.SetJumpTarget(toMain, b.Here());
    b.AddSymbol(b.Here(), "Main");
    b.Prologue();
    b.AddImm(Reg::RSP, -32);
    b.LoadString(Reg::RDI, address);
    b.CallImport("RemoteDebuggerStartup");
    b.CallImport("DebugRuntimeInit");
    b.LoadString(Reg::RAX, "hello");
    b.StoreMem(Reg::RBP, -8, Reg::RAX);
    kelp::test::NewObjectOf(b, "Timer");
    b.StoreMem(Reg::RBP, -16, Reg::RAX);
    b.MovImm(Reg::RDI, 2);
    b.MovImm(Reg::RSI, 0); // Integer elements
    b.MovImm(Reg::RDX, 3);
    b.MovImm(Reg::RCX, 4);
    b.MovImm(Reg::RAX, 0);
    b.CallImport("CreateArray");
    b.StoreMem(Reg::RBP, -24, Reg::RAX);
    b.LoadString(Reg::RDI, "boxed");
    b.CallImport("stringToVariant");
    b.StoreMem(Reg::RBP, -32, Reg::RAX);
    line(1);
    line(2);
    b.CallLocal(sub);
    line(3);
    b.CallLocal(sub);
    line(4);
    b.LoadMem(Reg::RDI, Reg::RBP, -16);
    b.CallImport("RuntimeUnlockObject");
    b.LoadMem(Reg::RDI, Reg::RBP, -24);
    b.CallImport("RuntimeUnlockArray");
    b.CallImport("RuntimeEnterHandlerRegion");
    for (const char *exception : {"EndException", "KeyNotFoundException"}) {
        kelp::test::NewObjectOf(b, exception);
        b.StoreMem(Reg::RBP, -16, Reg::RAX);
        b.MovReg(Reg::RDI, Reg::RAX);
        b.CallImport("RuntimeRaiseException");
        b.CallImport("RuntimeTakeException");
        kelp::test::UnlockObject(b, Reg::RAX);
        b.LoadMem(Reg::RDI, Reg::RBP, -16);
        b.CallImport("RuntimeUnlockObject");
    }
    b.CallImport("RuntimeLeaveHandlerRegion");
    line(5);
    b.PutsText("done");
    b.AddImm(Reg::RSP, 32);
    b.Epilogue();
    return b.Build();
}

// The IDE's side: listens first, then takes the program's connection.
class TestIde {
public:
    explicit TestIde(bool tcp) {
        if (tcp) {
            mListen = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
            int on = 1;
            setsockopt(mListen, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
            sockaddr_in a{};
            a.sin_family = AF_INET;
            a.sin_port = htons(13897);
            a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            mBound = bind(mListen, reinterpret_cast<sockaddr *>(&a), sizeof a) == 0;
        } else {
            unlink(LocalPath().c_str());
            mListen = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
            sockaddr_un a{};
            a.sun_family = AF_UNIX;
            std::strcpy(a.sun_path, LocalPath().c_str());
            mBound = bind(mListen, reinterpret_cast<sockaddr *>(&a), sizeof a) == 0;
        }
        mBound = mBound && listen(mListen, 1) == 0;
    }
    ~TestIde() {
        Close();
        close(mListen);
        unlink(LocalPath().c_str());
    }
    bool Bound() const { return mBound; }
    // In a child process: becomes user nobody, listens on this user's path,
    // tells `ready`, and takes every connection until killed or 20 s are up
    // (a program that took the connection then loses it without a report).
    static void ListenAsOtherUser(int ready) {
        alarm(20);
        const std::string path = LocalPath(); // this user's, not nobody's
        if (setgid(65534) != 0 || setuid(65534) != 0)
            return;
        int fd = socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un a{};
        a.sun_family = AF_UNIX;
        std::strcpy(a.sun_path, path.c_str());
        if (bind(fd, reinterpret_cast<sockaddr *>(&a), sizeof a) != 0 || listen(fd, 8) != 0)
            return;
        chmod(a.sun_path, 0777);
        if (write(ready, "r", 1) != 1)
            return;
        for (;;)
            accept(fd, nullptr, nullptr);
    }
    bool Accept() {
        pollfd p{mListen, POLLIN, 0};
        if (poll(&p, 1, 10000) <= 0)
            return false;
        mPeer = accept4(mListen, nullptr, nullptr, SOCK_CLOEXEC);
        return mPeer >= 0;
    }
    void SendRaw(const std::string &bytes) {
        ASSERT_EQ(send(mPeer, bytes.data(), bytes.size(), MSG_NOSIGNAL), ssize_t(bytes.size()));
    }
    // The next line without its carriage return; "<closed>" at the end,
    // "<timeout>" when nothing came for 10 s.
    std::string Receive() {
        for (;;) {
            size_t end = mInput.find('\r');
            if (end != std::string::npos) {
                std::string line = mInput.substr(0, end);
                mInput.erase(0, end + 1);
                return line;
            }
            pollfd p{mPeer, POLLIN, 0};
            if (poll(&p, 1, 10000) <= 0)
                return "<timeout>";
            char chunk[4096];
            ssize_t n = recv(mPeer, chunk, sizeof chunk, 0);
            if (n <= 0)
                return "<closed>";
            mInput.append(chunk, size_t(n));
        }
    }
    void Close() {
        if (mPeer >= 0)
            close(mPeer);
        mPeer = -1;
    }

private:
    int mListen = -1, mPeer = -1;
    bool mBound = false;
    std::string mInput;
};

// One line of a session.  `send` goes out with a carriage return ("" sends
// nothing, a leading "~" sends the rest without one); `expect` is the
// pattern of the next reply ("" waits for none).  A reply's first group is
// kept under `capture`.  Both may name kept values: {O} is the value as it
// came, {O+34} or {F-8} the sum as a 16-digit address.  Replies that
// match `skip` may come before the expected one.
struct Exchange {
    Exchange(std::string s, std::string e, std::string c = "", std::string k = "")
        : send(std::move(s)), expect(std::move(e)), capture(std::move(c)), skip(std::move(k)) {}
    std::string send, expect, capture;
    std::string skip; // replies of this pattern may come first
};

struct Session {
    const char *name;
    std::string address;
    std::vector<Exchange> lines;
    std::vector<std::string> after; // every line that comes after the table
    bool closeAtEnd;                // the IDE goes away mid-stop
    int status;
    bool runsToEnd;
};

std::string Expand(const std::string &text, const std::map<std::string, std::string> &kept) {
    static const std::regex kRef(R"(\{([A-Z])(?:([+-])([0-9A-F]+))?\})");
    std::string out;
    auto begin = std::sregex_iterator(text.begin(), text.end(), kRef);
    size_t last = 0;
    for (auto it = begin; it != std::sregex_iterator(); ++it) {
        const std::smatch &m = *it;
        out += text.substr(last, size_t(m.position()) - last);
        last = size_t(m.position() + m.length());
        auto found = kept.find(m[1]);
        std::string value = found == kept.end() ? "?" : found->second;
        if (m[2].matched) {
            uint64_t v = std::stoull(value, nullptr, 16), d = std::stoull(m[3], nullptr, 16);
            char hex[17];
            std::snprintf(hex, sizeof hex, "%016llX",
                          static_cast<unsigned long long>(m[2] == "+" ? v + d : v - d));
            value = hex;
        }
        out += value;
    }
    return out + text.substr(last);
}

const std::string kHex8 = "[0-9A-F]{8}", kHex16 = "[0-9A-F]{16}";
const std::string kSfr = "SFR " + kHex16 + " " + kHex8 + ":([0-9A-F]{2})* " + kHex8;
// The Timer's Period field, read past its getter.
std::string PeriodField() {
    char hex[8];
    std::snprintf(hex, sizeof hex, "%zX", offsetof(kelp::TimerRecord, period));
    return std::string("{O+") + hex + "}";
}

const Session kSessions[] = {
    {"StepsOverInAndOut",
     "127.0.0.1",
     {{"", "BREAK 00000001"},
      {"STEP", "BREAK 00000002"},
      {"STEPOVER", "BREAK 00000003"}, // both lines of Sub pass
      {"step", "BREAK 0000000A"},     // into the second call
      {"STEPOUT", "BREAK 00000004"},
      {"RUN", ""}},
     {},
     false,
     0,
     true},
    {"BreakpointInsideASteppedOverCall",
     "127.0.0.1",
     {{"", "BREAK 00000001"},
      {"BRLA 10", ""},
      {"BR B", ""},
      {"STEP", "BREAK 00000002"},
      {"STEPOVER", "BREAK 0000000B"},
      {"BRC 0000000B", ""},
      {"RUN", ""}},
     {},
     false,
     0,
     true},
    {"ReadsAndWritesValuesOverTcp",
     "localhost",
     {{"", "BREAK 00000001"},
      {"SC", "SFR (" + kHex16 + ") 08000100:4D61696E " + kHex8, "F"}, // "Main"
      {"", "SC", "", kSfr},                                           // older frames, named or not
      {"DS {F-8}", "VALS {F-8} " + kHex8 + ":68656C6C6F"},            // "hello"
      {"DL {F-10}", "VAL64 {F-10} (" + kHex16 + ")", "O"},
      {"DO {F-10}", "VALO {F-10} {O} Timer"},
      {"DOC {O}", "VALOC {O} Timer"},
      {"DPVI {O} 0 Period", "VALPVI {O} 0 Period (" + kHex8 + ")", "P"},
      {"DW " + PeriodField(), "VAL32 " + PeriodField() + " {P}"},
      {"SW " + PeriodField() + " 3E7", ""},
      {"dpvi {O} 0 period", "VALPVI {O} 0 period 000003E7"},
      {"DPVB {O} 0 Enabled", "VALPVB {O} 0 Enabled 0[01]"},
      {"DL {F-18}", "VAL64 {F-18} (" + kHex16 + ")", "A"},
      {"DABB {A}", "VALABB {A} 00000000 00000003 00000004"},
      {"DV {F-20}", "VALV {F-20} " + kHex8 + ":626F786564"}, // "boxed"
      {"SS {F-8} 08000100:776F726C64", ""},
      {"DS {F-8}", "VALS {F-8} 08000100:776F726C64"}, // "world"
      {"DB {F-8}", "VAL8 {F-8} [0-9A-F]{2}"},
      {"DH {F-8}", "VAL16 {F-8} [0-9A-F]{4}"},
      {"PID", "PID"},
      {"TOC", "TOC " + kHex16},
      {"OWLS {O}", ""},
      {"OWLS {O}", ""},
      {"AWLS {A}", ""},
      {"AWLS {A}", ""},
      {"AWLR {A}", ""},
      {"RUN", ""}},
     {"ODN {O}"}, // once, and no ADN: the array was taken off once
     false,
     0,
     true},
    {"BadInputIsAnsweredAndTheIdeMayVanish",
     "127.0.0.1",
     {{"", "BREAK 00000001"},
      {"DW 12G4", "ERR DW 12G4"},
      {"DW", "ERR DW"},
      {"SW 10", "ERR SW 10"},
      {"DL 0000000000000008", "ERR DL 0000000000000008"},
      {"DW 11223344556677889", "ERR DW 11223344556677889"},
      {"SL FFFFFFFFFFFFFFF8 1", "ERR SL FFFFFFFFFFFFFFF8 1"},
      {"DS 10", "ERR DS 10"},
      {"DOC 1", "ERR DOC 1"},
      {"DABB 0", "ERR DABB 0"},
      {"DPVI 8 0 Period", "ERR DPVI 8 0 Period"},
      {"SS 8 zz", "ERR SS 8 zz"},
      {"BRLA FFFFFFFF", "ERR BRLA FFFFFFFF"},
      {"BRLA 4", ""},
      {"BR 4", "ERR BR 4"},
      {"FROB 1", ""},
      {"PID\rTOC", "PID"}, // the unknown command said nothing
      {"", "TOC " + kHex16},
      {"~" + std::string(70000, 'A') + "\r", "ERR LINE"},
      {"~PI", ""},
      {"D", "PID"}},
     {},
     true,
     1,
     false},
    {"TrapStopsOnRaisedExceptionsButTheEnd",
     "127.0.0.1",
     {{"", "BREAK 00000001"}, {"TRAP 1", ""}, {"RUN", "TRAP KeyNotFoundException"}, {"RUN", ""}},
     {},
     false,
     0,
     true},
    {"QuitEndsTheProgram",
     "127.0.0.1",
     {{"", "BREAK 00000001"}, {"QUIT", ""}},
     {},
     false,
     1,
     false},
};

void PrintTo(const Session &s, std::ostream *out) { *out << s.name; }

class DebugSession : public testing::TestWithParam<Session> {};

TEST_P(DebugSession, RepliesFollowTheWireFormat) {
    const Session &s = GetParam();
    TestIde ide(s.address != "127.0.0.1");
    ASSERT_TRUE(ide.Bound());
    kelp::test::TempDir dir;
    const std::string program = dir / "app";
    ASSERT_TRUE(kelp::test::WriteAppended(DebugImage(s.address), program));
    auto run = std::async(std::launch::async, [&] { return kelp::test::Run(program, {}); });
    ASSERT_TRUE(ide.Accept());
    std::map<std::string, std::string> kept;
    for (const Exchange &e : s.lines) {
        if (!e.send.empty())
            ide.SendRaw(e.send[0] == '~' ? e.send.substr(1) : Expand(e.send, kept) + "\r");
        if (e.expect.empty())
            continue;
        std::string reply = ide.Receive();
        while (!e.skip.empty() && std::regex_match(reply, std::regex(e.skip)))
            reply = ide.Receive();
        std::smatch m;
        ASSERT_TRUE(std::regex_match(reply, m, std::regex(Expand(e.expect, kept))))
            << "sent " << e.send.substr(0, 40) << ", got " << reply;
        if (!e.capture.empty())
            kept[e.capture] = m[1];
    }
    if (s.closeAtEnd) {
        ide.Close();
    } else {
        for (const std::string &expected : s.after)
            EXPECT_EQ(ide.Receive(), Expand(expected, kept));
        EXPECT_EQ(ide.Receive(), "<closed>");
    }
    kelp::test::RunResult result = run.get();
    EXPECT_EQ(result.status, s.status) << result.err;
    EXPECT_EQ(result.out, s.runsToEnd ? "done\n" : "");
}

INSTANTIATE_TEST_SUITE_P(Sessions, DebugSession, testing::ValuesIn(kSessions),
                         [](const auto &row) { return std::string(row.param.name); });

// Connecting to a listener of another user would let that user drive the
// program: the link refuses it, as if nobody listened.
TEST(DebugLink, AListenerOfAnotherUserIsRefused) {
    if (getuid() != 0)
        GTEST_SKIP() << "needs root to listen as another user";
    unlink(LocalPath().c_str());
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t other = fork();
    if (other == 0) {
        TestIde::ListenAsOtherUser(ready[1]);
        _exit(0);
    }
    close(ready[1]);
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1); // listening
    close(ready[0]);
    kelp::test::TempDir dir;
    const std::string program = dir / "app";
    ASSERT_TRUE(kelp::test::WriteAppended(DebugImage("127.0.0.1"), program));
    kelp::test::RunResult result = kelp::test::Run(program, {});
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
    unlink(LocalPath().c_str());
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("Could not locate the target IDE for debugging."), std::string::npos);
}

TEST(DebugLink, WithoutAnIdeTheProgramEndsWithTheReport) {
    unlink(LocalPath().c_str());
    kelp::test::TempDir dir;
    const std::string program = dir / "app";
    ASSERT_TRUE(kelp::test::WriteAppended(DebugImage("127.0.0.1"), program));
    kelp::test::RunResult result = kelp::test::Run(program, {});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("Could not locate the target IDE for debugging."), std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find("Since we could not locate the target IDE to start a debug "
                              "session, this application will now exit."),
              std::string::npos);
    EXPECT_EQ(result.out, "");
}

} // namespace
