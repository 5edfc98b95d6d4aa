// ServerSocket and its pool: curl served over HTTP, a burst of ten thousand
// connections from python3 against the pool's maximum, and the refill rules.
#include "sockets/socket_kit.h"

#include "sockets/socket_core.h"

namespace kelp {
namespace {

using test::Peer;
using test::PumpUntil;

int gAdded = 0;
bool gAddNil = false;
RuntimeClass *gPoolClass = nullptr;
std::vector<std::string> gServed; // events of the pool sockets

RuntimeObject *OnAddSocket(RuntimeObject *) {
    ++gAdded;
    return gAddNil ? nullptr : RuntimeNewObject(gPoolClass);
}

// A pool socket that answers one HTTP request and closes.
void HttpData(RuntimeObject *self) {
    gServed.push_back("Data");
    std::string seen = test::TextAndRelease(socketLookahead(self, nullptr));
    if (seen.find("\r\n\r\n") == std::string::npos)
        return;
    RuntimeUnlockString(SocketReadAll(self, nullptr));
    SocketWrite(self, test::MakeText("HTTP/1.0 200 OK\r\nContent-Length: 14\r\n"
                                     "Connection: close\r\n\r\nserved by kelp"));
}
void HttpConnected(RuntimeObject *) { gServed.push_back("Connected"); }
uint8_t HttpProgress(RuntimeObject *, int32_t, int32_t) {
    gServed.push_back("Progress");
    return 0;
}
void HttpComplete(RuntimeObject *self, uint8_t) {
    gServed.push_back("Complete");
    socketClose(self);
}

// A pool socket that echoes what comes.
void EchoData(RuntimeObject *self) { SocketWrite(self, SocketReadAll(self, nullptr)); }

RuntimeClass *ServerClass() {
    static RuntimeClass *klass = [] {
        RuntimeClass *k = test::MakeSubclass("ServerSocket", "TestServer");
        test::SetEventHandler(k, "AddSocket", reinterpret_cast<void *>(&OnAddSocket));
        return k;
    }();
    return klass;
}

RuntimeClass *PoolClass(bool http) {
    static RuntimeClass *httpClass = [] {
        RuntimeClass *k = test::MakeSubclass("TCPSocket", "HttpSocket");
        test::SetEventHandler(k, "Connected", reinterpret_cast<void *>(&HttpConnected));
        test::SetEventHandler(k, "DataAvailable", reinterpret_cast<void *>(&HttpData));
        test::SetEventHandler(k, "SendProgress", reinterpret_cast<void *>(&HttpProgress));
        test::SetEventHandler(k, "SendComplete", reinterpret_cast<void *>(&HttpComplete));
        return k;
    }();
    static RuntimeClass *echoClass = [] {
        RuntimeClass *k = test::MakeSubclass("TCPSocket", "EchoSocket");
        test::SetEventHandler(k, "DataAvailable", reinterpret_cast<void *>(&EchoData));
        return k;
    }();
    return http ? httpClass : echoClass;
}

RuntimeObject *StartServer(bool http, int minimum, int maximum) {
    gPoolClass = PoolClass(http);
    gAdded = 0;
    gAddNil = false;
    gServed.clear();
    RuntimeObject *server = RuntimeNewObject(ServerClass());
    ServerSocketSetMinSockets(server, 0, minimum);
    ServerSocketSetMaxSockets(server, 0, maximum);
    ServerSocketPortSetter(server, 0, 0);
    ServerSocketListen(server);
    return server;
}

TEST(ServerSocket, CurlIsServedByAPooledSocket) {
    RuntimeObject *server = StartServer(true, 2, 4);
    int port = ServerSocketPortGetter(server, 0);
    ASSERT_GT(port, 0);
    EXPECT_EQ(serverSocketIsListening(server, 0), 1);
    Peer curl({"curl", "-s", "--max-time", "10", "http://127.0.0.1:" + std::to_string(port) + "/"});
    ASSERT_TRUE(PumpUntil([&] { return curl.Done() && gServed.size() >= 4; }))
        << test::Joined(gServed) << " / " << curl.Output();
    EXPECT_EQ(curl.Output(), "served by kelp");
    EXPECT_EQ(test::Joined(gServed), "Connected, Data, Progress, Complete");
    // The first refill made minimum + 10; the one connection took one,
    // which leaves more than the minimum: no second round.
    EXPECT_EQ(gAdded, 12);
    ServerSocketClose(server);
    EXPECT_EQ(serverSocketIsListening(server, 0), 0);
    EXPECT_EQ(ServerSocketPortGetter(server, 0), -1);
    RuntimeUnlockObject(server);
}

TEST(ServerSocket, BurstBeyondTheMaximumIsClosedAndTheNextIsServedAfterOneEnds) {
    // Ten thousand clients at once; the pool serves its maximum and closes
    // the rest at once.  Then all hang up, and one more is served.
    const char burst[] = R"(
import resource, socket, sys, time
port, count = int(sys.argv[1]), int(sys.argv[2])
soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
resource.setrlimit(resource.RLIMIT_NOFILE, (min(hard, count + 200), hard))
conns = [socket.create_connection(('127.0.0.1', port)) for i in range(count)]
served = closed = 0
for c in conns:
    c.settimeout(10)
    try:
        c.sendall(b'x')
        d = c.recv(1)
    except OSError:
        d = b''
    if d == b'x': served += 1
    else: closed += 1
for c in conns: c.close()
time.sleep(0.5)
c = socket.create_connection(('127.0.0.1', port)); c.settimeout(10); c.sendall(b'y')
print(served, closed, c.recv(1).decode(), flush=True)
)";
    struct Case {
        int clients, maximum;
        std::string expected;
    };
    const Case cases[] = {
        {10000, 100, "100 9900 y\n"},
        {20, 20, "20 0 y\n"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.clients);
        RuntimeObject *server = StartServer(false, 5, c.maximum);
        int port = ServerSocketPortGetter(server, 0);
        Peer peer(Peer::Python(burst, {std::to_string(port), std::to_string(c.clients)}));
        ASSERT_TRUE(PumpUntil([&] { return peer.Done(); }, 120000));
        EXPECT_EQ(peer.Output(), c.expected);
        RuntimeUnlockObject(server);
    }
}

TEST(ServerSocket, AddSocketReturningNilRaisesInTheListeningPass) {
    RuntimeObject *server = StartServer(false, 1, 1);
    gAddNil = true;
    RuntimeEnterHandlerRegion();
    PollSockets(false);
    RuntimeObject *raised = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    ASSERT_NE(raised, nullptr);
    EXPECT_STREQ(test::TextOf(raised->klass->name), "NilObjectException");
    EXPECT_EQ(gAdded, 1);
    RuntimeUnlockObject(raised);
    RuntimeUnlockObject(server);
}

} // namespace
} // namespace kelp
