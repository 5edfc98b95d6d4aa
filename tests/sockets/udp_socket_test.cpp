// UDPSocket and Datagram with a python3 peer: datagrams in order, empty and
// large ones, replies by "address:port", and the errors of bad requests.
#include "sockets/socket_kit.h"

#include <netinet/ip.h>

namespace kelp {
namespace {

using test::EventLog;
using test::Peer;
using test::PumpUntil;

struct Received {
    std::string address, data;
    int32_t port;
};
std::vector<Received> gDatagrams;

void UDPData(RuntimeObject *self) {
    EventLog::All().push_back("Data");
    while (RuntimeObject *d = UDPReadDatagram(self, nullptr)) {
        auto *fields = reinterpret_cast<stringStorage **>(reinterpret_cast<char *>(d) +
                                                          KELP_OBJECT_FIELDS_OFFSET);
        gDatagrams.push_back({test::TextOf(fields[0]),
                              std::string(reinterpret_cast<const char *>(fields[1]->buffer + 1),
                                          static_cast<size_t>(fields[1]->length)),
                              *reinterpret_cast<int32_t *>(fields + 2)});
        RuntimeUnlockObject(d);
    }
}
void UDPError(RuntimeObject *self) {
    EventLog::All().push_back("Error " + std::to_string(socketLastErrorCode(self, 0)));
}
void UDPComplete(RuntimeObject *, uint8_t) { EventLog::All().push_back("Complete"); }

RuntimeObject *NewUDP() {
    static RuntimeClass *klass = [] {
        RuntimeClass *k = test::MakeSubclass("UDPSocket", "LoggingUDP");
        test::SetEventHandler(k, "DataAvailable", reinterpret_cast<void *>(&UDPData));
        test::SetEventHandler(k, "Error", reinterpret_cast<void *>(&UDPError));
        test::SetEventHandler(k, "SendComplete", reinterpret_cast<void *>(&UDPComplete));
        return k;
    }();
    EventLog::All().clear();
    gDatagrams.clear();
    return RuntimeNewObject(klass);
}

TEST(UDPSocket, DatagramsArriveInOrderAndAnEmptyOneHoldsNothingUp) {
    RuntimeObject *udp = NewUDP();
    SocketPortSetter(udp, 0, 0);
    SocketConnect(udp);
    ASSERT_EQ(SocketIsConnected(udp, 0), 1);
    int port = SocketPortGetter(udp, 0);
    const char sender[] = R"(
import socket, sys
s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM); s.bind(('127.0.0.1', 0))
print(s.getsockname()[1], flush=True)
to = ('127.0.0.1', int(sys.argv[1]))
for d in [b'', b'a', b'b' * 60000, b'', b'last']:
    s.sendto(d, to)
s.settimeout(10)
print(s.recvfrom(100)[0].decode(), flush=True)
)";
    Peer peer(Peer::Python(sender, {std::to_string(port)}));
    int peerPort = std::stoi(peer.Line());
    ASSERT_TRUE(PumpUntil([] { return gDatagrams.size() >= 3; }));
    PumpUntil([] { return false; }, 50);
    ASSERT_EQ(gDatagrams.size(), 3u);
    const char *expected[] = {"a", nullptr, "last"};
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(gDatagrams[i].address, "127.0.0.1");
        EXPECT_EQ(gDatagrams[i].port, peerPort);
        EXPECT_EQ(gDatagrams[i].data, expected[i] ? expected[i] : std::string(60000, 'b'));
    }
    UDPSocketWrite(udp, test::MakeText(("127.0.0.1:" + std::to_string(peerPort)).c_str()),
                   test::MakeText("thanks"));
    ASSERT_TRUE(PumpUntil([&] { return peer.Done(); }));
    EXPECT_EQ(peer.Output(), "thanks\n");
    EXPECT_EQ(PacketsAvailableGetter(udp, 0), 0);
    RuntimeUnlockObject(udp);
}

TEST(UDPSocket, BadRequestsGiveTheirErrorEvents) {
    // Holds a port so that a second bind finds it taken.
    const char holder[] = R"(
import socket, time
s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM); s.bind(('0.0.0.0', 0))
print(s.getsockname()[1], flush=True); time.sleep(30)
)";
    Peer peer(Peer::Python(holder));
    int taken = std::stoi(peer.Line());
    struct Case {
        const char *name;
        bool open;
        int port;
        void (*act)(RuntimeObject *);
        std::string events;
    };
    const Case cases[] = {
        {"write before Connect", false, 0,
         [](RuntimeObject *u) {
             UDPSocketWrite(u, test::MakeText("127.0.0.1:9"), test::MakeText("x"));
         },
         "Error 106"},
        {"write to a name", true, 0,
         [](RuntimeObject *u) {
             UDPSocketWrite(u, test::MakeText("localhost:9"), test::MakeText("x"));
         },
         "Error 103"},
        {"join before Connect", false, 0,
         [](RuntimeObject *u) {
             EXPECT_EQ(SocketJoinMulticastGroup(u, test::MakeText("239.1.2.3")), 0);
         },
         "Error 106"},
        {"join a group that is no group", true, 0,
         [](RuntimeObject *u) {
             EXPECT_EQ(SocketJoinMulticastGroup(u, test::MakeText("10.0.0.1")), 0);
         },
         "Error 22"},
        {"a port already bound", true, taken, [](RuntimeObject *) {}, "Error 105"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        RuntimeObject *udp = NewUDP();
        SocketPortSetter(udp, 0, c.port);
        if (c.open)
            SocketConnect(udp);
        c.act(udp);
        EXPECT_EQ(test::Joined(EventLog::All()), c.events);
        RuntimeUnlockObject(udp);
    }
}

TEST(UDPSocket, MulticastReachesTheGroupAndComesBackOnlyWhenAsked) {
    const std::string group = "239.255.42.99";
    // A python3 member of the group on a port of its own.
    const char member[] = R"(
import socket, struct, sys
s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM); s.bind(('', 0))
s.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP,
             struct.pack('4s4s', socket.inet_aton(sys.argv[1]), bytes(4)))
print(s.getsockname()[1], flush=True); s.settimeout(10)
print(s.recvfrom(100)[0].decode(), flush=True)
)";
    Peer peer(Peer::Python(member, {group}));
    const std::string memberPort = peer.Line();
    struct Case {
        const char *name;
        uint8_t sendToSelf;
        bool leave;
        size_t ownCopies;
    };
    const Case cases[] = {
        {"looped back", 1, false, 1},
        {"not looped back", 0, false, 0},
        {"after leaving", 1, true, 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        RuntimeObject *udp = NewUDP();
        UDPSocketSetLoopback(udp, 0, c.sendToSelf);
        SocketConnect(udp);
        if (!SocketJoinMulticastGroup(udp, test::MakeText(group.c_str()))) {
            RuntimeUnlockObject(udp);
            GTEST_SKIP() << "no multicast route: " << test::Joined(EventLog::All());
        }
        if (c.leave)
            SocketLeaveMulticastGroup(udp, test::MakeText(group.c_str()));
        std::string self = group + ":" + std::to_string(SocketPortGetter(udp, 0));
        UDPSocketWrite(udp, test::MakeText(self.c_str()), test::MakeText("to self"));
        UDPSocketWrite(udp, test::MakeText((group + ":" + memberPort).c_str()),
                       test::MakeText("to the group"));
        PumpUntil([] { return !gDatagrams.empty(); }, 300);
        EXPECT_EQ(gDatagrams.size(), c.ownCopies);
        RuntimeUnlockObject(udp);
    }
    ASSERT_TRUE(PumpUntil([&] { return peer.Done(); }));
    EXPECT_EQ(peer.Output(), "to the group\n");
}

TEST(UDPSocket, OptionsReachTheKernel) {
    struct Case {
        int hops;
        uint8_t sendToSelf;
    };
    for (const Case &c : {Case{7, 0}, Case{1, 1}}) {
        RuntimeObject *udp = NewUDP();
        UDPSocketRouterHops(udp, 0, c.hops);
        UDPSocketSetLoopback(udp, 0, c.sendToSelf);
        SocketConnect(udp);
        int fd = SocketGetHandle(udp, 0);
        auto option = [fd](int level, int name) {
            int value = -1;
            socklen_t size = sizeof value;
            getsockopt(fd, level, name, &value, &size);
            return value;
        };
        EXPECT_EQ(option(IPPROTO_IP, IP_TTL), c.hops);
        EXPECT_EQ(option(IPPROTO_IP, IP_MULTICAST_TTL), c.hops);
        EXPECT_EQ(option(IPPROTO_IP, IP_MULTICAST_LOOP), c.sendToSelf);
        EXPECT_EQ(option(SOL_SOCKET, SO_BROADCAST), 1);
        EXPECT_TRUE(EventLog::All().empty()) << test::Joined(EventLog::All());
        RuntimeUnlockObject(udp);
    }
}

} // namespace
} // namespace kelp
