// TCPSocket against peers written in python3: the events in their order for
// each way a connection goes, the bytes that arrive, and what is left
// readable after an error.
#include "sockets/socket_kit.h"
#include "sockets/tcp_socket.h"
#include "strings/kstring.h"

#include <sys/resource.h>

namespace kelp {
namespace {

using test::EventLog;
using test::Peer;
using test::PumpUntil;

std::string gWriteOnConnect;
bool gAbortAnswer = false;
bool gReadOnData = true;
std::string gReceived;

void OnConnected(RuntimeObject *self) {
    EventLog::All().push_back("Connected");
    if (!gWriteOnConnect.empty())
        SocketWrite(self, test::MakeText(gWriteOnConnect.c_str()));
}
void OnData(RuntimeObject *self) {
    EventLog::All().push_back("Data");
    if (gReadOnData)
        gReceived += test::TextAndRelease(SocketReadAll(self, nullptr));
}
uint8_t OnProgress(RuntimeObject *, int32_t, int32_t) {
    EventLog::All().push_back("Progress");
    return gAbortAnswer ? 1 : 0;
}
void OnComplete(RuntimeObject *, uint8_t aborted) {
    EventLog::All().push_back(aborted ? "Complete(aborted)" : "Complete");
}
void OnError(RuntimeObject *self) {
    EventLog::All().push_back("Error " + std::to_string(socketLastErrorCode(self, 0)));
}

RuntimeClass *LoggingTCPClass() {
    static RuntimeClass *klass = [] {
        RuntimeClass *k = test::MakeSubclass("TCPSocket", "LoggingSocket");
        test::SetEventHandler(k, "Connected", reinterpret_cast<void *>(&OnConnected));
        test::SetEventHandler(k, "DataAvailable", reinterpret_cast<void *>(&OnData));
        test::SetEventHandler(k, "SendProgress", reinterpret_cast<void *>(&OnProgress));
        test::SetEventHandler(k, "SendComplete", reinterpret_cast<void *>(&OnComplete));
        test::SetEventHandler(k, "Error", reinterpret_cast<void *>(&OnError));
        return k;
    }();
    return klass;
}

// One connection served per run; the mode says how.
const char kServer[] = R"(
import socket, struct, sys, time
family = socket.AF_INET6 if sys.argv[1] == '::1' else socket.AF_INET
s = socket.socket(family); s.bind((sys.argv[1], 0)); s.listen(1)
print(s.getsockname()[1], flush=True)
c, _ = s.accept(); mode = sys.argv[2]
if mode == 'echo':
    data = b''
    while not data.endswith(b'\n'):
        d = c.recv(65536)
        if not d: break
        data += d
    # Later than the pass that reports the send complete, so the order of
    # the events across passes is the same on every run.
    time.sleep(0.2)
    c.sendall(data); c.close()
elif mode == 'reset':
    c.recv(5)
    c.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack('ii', 1, 0)); c.close()
elif mode == 'halfclose':
    c.sendall(b'bye'); c.shutdown(socket.SHUT_WR); c.recv(100); c.close()
elif mode == 'drain':
    n = 0
    while True:
        d = c.recv(1 << 20)
        if not d: break
        n += len(d)
    print(n, flush=True)
)";

TEST(TCPSocket, EventsInOrderForEachWayAConnectionGoes) {
    struct Case {
        const char *name;
        const char *host; // where the peer listens; null: nothing listens
        const char *mode;
        std::string write;
        bool abort;
        bool readOnData;
        const char *events;
        std::string received; // by the handlers, or left unread after the error
    };
    const std::string big(4 << 20, 'b');
    const char *const echoed = "Connected, Progress, Complete, Data, Error 102";
    // clang-format off
    const Case cases[] = {
        {"echo", "127.0.0.1", "echo", "ping\n", false, true, echoed, "ping\n"},
        {"echo over IPv6", "::1", "echo", "ping6\n", false, true, echoed, "ping6\n"},
        {"closed port", nullptr, "", "", false, true, "Error 103", ""},
        {"reset after the first bytes", "127.0.0.1", "reset", "hello", false, true,
         "Connected, Progress, Complete, Error 102", ""},
        {"half-close: bytes stay readable after the error", "127.0.0.1", "halfclose", "", false,
         false, "Connected, Data, Error 102", "bye"},
        {"SendProgress answering true drops the rest", "127.0.0.1", "drain", big, true, true,
         "Connected, Progress, Complete(aborted)", ""},
    };
    // clang-format on
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        EventLog::All().clear();
        gReceived.clear();
        gWriteOnConnect = c.write;
        gAbortAnswer = c.abort;
        gReadOnData = c.readOnData;
        std::unique_ptr<Peer> peer;
        int port = test::FreePort();
        if (c.host) {
            peer = std::make_unique<Peer>(Peer::Python(kServer, {c.host, c.mode}));
            port = std::stoi(peer->Line());
        }
        RuntimeObject *socket = RuntimeNewObject(LoggingTCPClass());
        stringSetter(socket, offsetof(SocketControlRecord, address),
                     test::MakeText(c.host ? c.host : "127.0.0.1"));
        SocketPortSetter(socket, 0, port);
        SocketConnect(socket);
        EXPECT_TRUE(PumpUntil([&] {
            const auto &log = EventLog::All();
            return !log.empty() && (log.back().rfind("Error", 0) == 0 ||
                                    (c.abort && log.back() == "Complete(aborted)"));
        })) << test::Joined(EventLog::All());
        EXPECT_EQ(test::Joined(EventLog::Folded()), c.events);
        if (c.readOnData)
            EXPECT_EQ(gReceived, c.received);
        else
            EXPECT_EQ(test::TextAndRelease(SocketReadAll(socket, nullptr)), c.received);
        if (c.abort) {
            EXPECT_EQ(TCPSocketBytesLeftToSend(socket, 0), 0);
            socketClose(socket);
            ASSERT_TRUE(PumpUntil([&] { return peer->Done(); }));
            EXPECT_LT(std::stol(peer->Output()), static_cast<long>(big.size()));
        }
        EXPECT_EQ(SocketIsConnected(socket, 0), 0);
        RuntimeUnlockObject(socket);
    }
}

TEST(TCPSocket, DisconnectReportsLostConnectionButCloseIsSilent) {
    // "localhost" is taken as 127.0.0.1 by Connect; a direct connect looks
    // the name up on the resolver's thread.
    struct Case {
        const char *name;
        bool direct;
        void (*end)(RuntimeObject *);
        std::vector<std::string> events;
    };
    const Case cases[] = {
        {"Disconnect", false, &SocketDisconnect, {"Connected", "Error 102"}},
        {"Close", false, &socketClose, {"Connected"}},
        {"Close, the name looked up", true, &socketClose, {"Connected"}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        EventLog::All().clear();
        gWriteOnConnect.clear();
        Peer peer(Peer::Python(kServer, {"127.0.0.1", "echo"}));
        RuntimeObject *socket = RuntimeNewObject(LoggingTCPClass());
        stringSetter(socket, offsetof(SocketControlRecord, address), test::MakeText("localhost"));
        SocketPortSetter(socket, 0, std::stoi(peer.Line()));
        if (c.direct)
            socketDirectConnect(socket, test::MakeText("localhost"), SocketPortGetter(socket, 0));
        else
            SocketConnect(socket);
        ASSERT_TRUE(PumpUntil([] { return !EventLog::All().empty(); }));
        EXPECT_EQ(test::TextAndRelease(socketRemoteAddressGetter(socket, 0)), "127.0.0.1");
        c.end(socket);
        PumpUntil([] { return false; }, 50);
        EXPECT_EQ(test::Joined(EventLog::All()), test::Joined(c.events));
        EXPECT_EQ(SocketGetHandle(socket, 0), -1);
        RuntimeUnlockObject(socket);
    }
}

TEST(TCPSocket, PlainListenTakesOneConnectionAndReportsTheChosenPort) {
    EventLog::All().clear();
    gWriteOnConnect = "welcome\n";
    RuntimeObject *socket = RuntimeNewObject(LoggingTCPClass());
    SocketPortSetter(socket, 0, 0);
    SocketListen(socket);
    int port = SocketPortGetter(socket, 0);
    ASSERT_GT(port, 0);
    // Two clients: the first is served; the second finds nobody listening.
    const char client[] = R"(
import socket, sys
out = []
for i in range(2):
    try:
        c = socket.create_connection(('127.0.0.1', int(sys.argv[1])), timeout=3)
        out.append(c.recv(100).decode().strip() or 'closed')
    except OSError as e:
        out.append('refused')
print(' '.join(out), flush=True)
)";
    Peer peer(Peer::Python(client, {std::to_string(port)}));
    ASSERT_TRUE(PumpUntil([&] { return peer.Done(); }));
    EXPECT_EQ(peer.Output(), "welcome refused\n");
    socketClose(socket);
    RuntimeUnlockObject(socket);
}

TEST(TCPSocket, DescriptorsAboveTheSelectLimitWork) {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    if (limit.rlim_max < 2048)
        GTEST_SKIP() << "the descriptor limit is below 2048";
    rlimit raised = limit;
    raised.rlim_cur = 2048;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &raised), 0);
    std::vector<int> filler;
    while (filler.empty() || filler.back() < 1100)
        filler.push_back(open("/dev/null", O_RDONLY));
    EventLog::All().clear();
    gReceived.clear();
    gWriteOnConnect = "high\n";
    gReadOnData = true;
    Peer peer(Peer::Python(kServer, {"127.0.0.1", "echo"}));
    RuntimeObject *socket = RuntimeNewObject(LoggingTCPClass());
    stringSetter(socket, offsetof(SocketControlRecord, address), test::MakeText("127.0.0.1"));
    SocketPortSetter(socket, 0, std::stoi(peer.Line()));
    SocketConnect(socket);
    EXPECT_GT(SocketGetHandle(socket, 0), 1023);
    EXPECT_TRUE(PumpUntil([] { return gReceived == "high\n"; }));
    socketClose(socket);
    RuntimeUnlockObject(socket);
    for (int fd : filler)
        close(fd);
    setrlimit(RLIMIT_NOFILE, &limit);
}

TEST(TCPSocket, AHundredMegabytesEachWayWithTheReceiveQueueCapped) {
    const long total = 100L << 20;
    EventLog::All().clear();
    gWriteOnConnect.clear();
    gReadOnData = false;
    gAbortAnswer = false;
    // Out: one Write of 100 MB to a peer that counts what it drains.
    Peer drain(Peer::Python(kServer, {"127.0.0.1", "drain"}));
    RuntimeObject *out = RuntimeNewObject(LoggingTCPClass());
    socketDirectConnect(out, test::MakeText("127.0.0.1"), std::stoi(drain.Line()));
    std::string big(static_cast<size_t>(total), 'o');
    stringStorage *text = string::FromBytes(big.data(), total, kEncodingUnknown).Release();
    SocketWrite(out, text);
    RuntimeUnlockString(text);
    ASSERT_TRUE(PumpUntil([&] { return TCPSocketBytesLeftToSend(out, 0) == 0; }, 60000));
    socketClose(out);
    ASSERT_TRUE(PumpUntil([&] { return drain.Done(); }));
    EXPECT_EQ(drain.Output(), std::to_string(total) + "\n");
    RuntimeUnlockObject(out);
    // In: the peer sends 100 MB that nobody reads; the queue stops at its
    // limit, and reading lets the rest in.
    const char flood[] = R"(
import socket
s = socket.socket(); s.bind(('127.0.0.1', 0)); s.listen(1)
print(s.getsockname()[1], flush=True)
c, _ = s.accept(); c.sendall(b'i' * (100 << 20)); c.close()
)";
    Peer sender(Peer::Python(flood));
    RuntimeObject *in = RuntimeNewObject(LoggingTCPClass());
    socketDirectConnect(in, test::MakeText("127.0.0.1"), std::stoi(sender.Line()));
    ASSERT_TRUE(PumpUntil([&] { return SocketBytesAvailable(in, 0) >= kReceiveQueueLimit; }));
    PumpUntil([] { return false; }, 300);
    EXPECT_LT(SocketBytesAvailable(in, 0), kReceiveQueueLimit + (1 << 20));
    long got = 0;
    PumpUntil(
        [&] {
            got += static_cast<long>(test::TextAndRelease(socketRead(in, 1 << 24, nullptr)).size());
            return got == total && !EventLog::All().empty() &&
                   EventLog::All().back() == "Error 102";
        },
        60000);
    EXPECT_EQ(got, total);
    RuntimeUnlockObject(in);
}

TEST(TCPSocket, EventsWaitThroughADebuggerStopAndThenComeInOrder) {
    EventLog::All().clear();
    gReceived.clear();
    gWriteOnConnect = "held\n";
    gReadOnData = true;
    gAbortAnswer = false;
    Peer peer(Peer::Python(kServer, {"127.0.0.1", "echo"}));
    RuntimeObject *socket = RuntimeNewObject(LoggingTCPClass());
    AdjustSocketEventSuppression(1);
    socketDirectConnect(socket, test::MakeText("127.0.0.1"), std::stoi(peer.Line()));
    PumpUntil([] { return false; }, 300);
    EXPECT_TRUE(EventLog::All().empty()) << test::Joined(EventLog::All());
    AdjustSocketEventSuppression(-1);
    ASSERT_TRUE(PumpUntil([] { return gReceived == "held\n"; }));
    EXPECT_EQ(test::Joined(EventLog::Folded()), "Connected, Progress, Complete, Data");
    socketClose(socket);
    RuntimeUnlockObject(socket);
}

// Holds the connections it is given; for `nested`, later writes to two.
const char kHolder[] = R"(
import socket, sys, time
s = socket.socket(); s.bind(('127.0.0.1', 0)); s.listen(64)
print(s.getsockname()[1], flush=True)
held = [s.accept()[0] for _ in range(int(sys.argv[1]))]
if sys.argv[2] == 'nested':
    time.sleep(0.5); held[0].sendall(b'first\n')
    time.sleep(0.3); held[0].sendall(b'second\n'); held[1].sendall(b'other\n')
time.sleep(30)
)";

gboolean SetFlag(gpointer flag) { return *static_cast<bool *>(flag) = true, FALSE; }

// The loop's passes until `flag`, with no timer of its own to keep them
// coming; a backstop fails the test instead of hanging it.
int StepUntil(const bool &flag) {
    bool late = false;
    guint backstop = g_timeout_add(5000, &SetFlag, &late);
    int passes = 0;
    for (; !flag && !late; ++passes)
        MainLoopStep(true);
    if (!late)
        g_source_remove(backstop);
    EXPECT_FALSE(late);
    return passes;
}

std::vector<RuntimeObject *> Connected(RuntimeClass *klass, int count, const char *mode) {
    static std::unique_ptr<Peer> peer;
    peer = std::make_unique<Peer>(Peer::Python(kHolder, {std::to_string(count), mode}));
    const int port = std::stoi(peer->Line());
    std::vector<RuntimeObject *> sockets;
    for (int i = 0; i < count; ++i) {
        sockets.push_back(RuntimeNewObject(klass));
        socketDirectConnect(sockets.back(), test::MakeText("127.0.0.1"), port);
        // The peer takes them in this order.
        EXPECT_TRUE(PumpUntil([&] { return SocketIsConnected(sockets.back(), 0) == 1; }));
    }
    return sockets;
}

void CloseAll(const std::vector<RuntimeObject *> &sockets) {
    for (RuntimeObject *socket : sockets) {
        socketClose(socket);
        RuntimeUnlockObject(socket);
    }
}

TEST(TCPSocket, IdleConnectionsLetTheLoopSleepUntilADeadline) {
    std::vector<RuntimeObject *> sockets = Connected(LoggingTCPClass(), 20, "idle");
    // What earlier cases left ready is served first.
    for (int i = 0; i < 100 && g_main_context_pending(nullptr); ++i)
        MainLoopStep(false);
    bool due = false;
    g_timeout_add(1000, &SetFlag, &due);
    // The deadline's own wake-up, and at most a stray one before it.
    EXPECT_LE(StepUntil(due), 2);
    CloseAll(sockets);
}

// The first socket's DataAvailable runs a nested toolkit loop, as a native
// dialog does, until the second socket's data has come.
RuntimeObject *gDialogOwner = nullptr;
GMainLoop *gDialog = nullptr;
int gHandlerDepth = 0, gDeepestHandler = 0;
bool gSecondArrived = false;
void OnDataWithDialog(RuntimeObject *self) {
    const int depth = self == gDialogOwner ? 1 : 0;
    gDeepestHandler = std::max(gDeepestHandler, gHandlerDepth += depth);
    std::string text = test::TextAndRelease(SocketReadAll(self, nullptr));
    EventLog::All().push_back(text.substr(0, text.size() - 1) + (gDialog ? " in dialog" : ""));
    if (self == gDialogOwner && text == "first\n") {
        gDialog = g_main_loop_new(nullptr, FALSE);
        guint backstop = g_timeout_add(
            5000,
            [](gpointer loop) -> gboolean {
                return g_main_loop_quit(static_cast<GMainLoop *>(loop)), FALSE;
            },
            gDialog);
        g_main_loop_run(gDialog);
        g_source_remove(backstop);
        g_main_loop_unref(gDialog);
        gDialog = nullptr;
    } else if (self != gDialogOwner && gDialog) {
        g_main_loop_quit(gDialog);
    }
    gSecondArrived = text == "second\n";
    gHandlerDepth -= depth;
}

TEST(TCPSocket, ANestedLoopServesOtherSocketsButNeverReentersAHandler) {
    RuntimeClass *klass = test::MakeSubclass("TCPSocket", "DialogSocket");
    test::SetEventHandler(klass, "DataAvailable", reinterpret_cast<void *>(&OnDataWithDialog));
    EventLog::All().clear();
    std::vector<RuntimeObject *> sockets = Connected(klass, 2, "nested");
    gDialogOwner = sockets[0];
    // The first socket's second line came while its handler was in the
    // dialog: the pass after it brings that line without a timer's help.
    StepUntil(gSecondArrived);
    EXPECT_EQ(gDeepestHandler, 1);
    EXPECT_EQ(test::Joined(EventLog::All()), "first, other in dialog, second");
    CloseAll(sockets);
}

TEST(TCPSocket, StandardStreamsServeAsConnectedSockets) {
    // Each stream in turn is a pipe for the while of the case.
    struct Case {
        int fd;
        RuntimeObject *(*make)();
    };
    for (const Case &c : {Case{0, &RuntimeStdInputAsSocket}, Case{1, &RuntimeStdOutputAsSocket}}) {
        SCOPED_TRACE(c.fd);
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        int saved = dup(c.fd);
        dup2(ends[c.fd == 0 ? 0 : 1], c.fd);
        EventLog::All().clear();
        RuntimeObject *socket = c.make();
        EXPECT_EQ(SocketIsConnected(socket, 0), 1);
        std::string got;
        if (c.fd == 0) {
            ASSERT_EQ(write(ends[1], "typed", 5), 5);
            EXPECT_TRUE(PumpUntil([&] { return SocketBytesAvailable(socket, 0) == 5; }));
            got = test::TextAndRelease(SocketReadAll(socket, nullptr));
        } else {
            SocketWrite(socket, test::MakeText("printed"));
            EXPECT_TRUE(PumpUntil([&] { return TCPSocketBytesLeftToSend(socket, 0) == 0; }));
            char buffer[16] = {};
            got = std::string(buffer, static_cast<size_t>(read(ends[0], buffer, sizeof buffer)));
        }
        EXPECT_EQ(got, c.fd == 0 ? "typed" : "printed");
        socketClose(socket);
        RuntimeUnlockObject(socket);
        dup2(saved, c.fd);
        close(saved);
        close(ends[0]);
        close(ends[1]);
        // Closing the socket leaves the process's own stream open.
        EXPECT_NE(fcntl(c.fd, F_GETFD), -1);
    }
}

} // namespace
} // namespace kelp
