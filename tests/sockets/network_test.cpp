// The machine's interfaces against what `ip` reports, and name look-ups
// against python3's resolver.
#include "sockets/socket_kit.h"

#include <sstream>

namespace kelp {
namespace {

using test::Peer;
using test::PumpUntil;
using test::TextAndRelease;

std::string RunToEnd(std::vector<std::string> argv) {
    Peer peer(std::move(argv));
    PumpUntil([&] { return peer.Done(); });
    return peer.Output();
}

TEST(Network, InterfacesAreTheNonLoopbackIPv4OnesThatIpLists) {
    // "2: eth0    inet 192.0.2.2/24 brd 192.0.2.255 ...", loopback left out.
    std::istringstream lines(RunToEnd({"ip", "-o", "-4", "addr", "show"}));
    std::vector<std::string> addresses, masks, broadcasts;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string index, name, inet, cidr, brd, broadcast;
        words >> index >> name >> inet >> cidr >> brd >> broadcast;
        std::string address = cidr.substr(0, cidr.find('/'));
        if (address == "127.0.0.1")
            continue;
        int bits = std::stoi(cidr.substr(cidr.find('/') + 1));
        uint32_t mask = bits ? ~0u << (32 - bits) : 0;
        addresses.push_back(address);
        masks.push_back(std::to_string(mask >> 24) + "." + std::to_string((mask >> 16) & 255) +
                        "." + std::to_string((mask >> 8) & 255) + "." + std::to_string(mask & 255));
        broadcasts.push_back(brd == "brd" ? broadcast : "0.0.0.0");
    }
    ASSERT_EQ(SystemGetNetworkInterfaceCount(nullptr), static_cast<int32_t>(addresses.size()));
    EXPECT_EQ(GetNetworkInterfaceObject(nullptr, static_cast<int32_t>(addresses.size())), nullptr);
    EXPECT_EQ(GetNetworkInterfaceObject(nullptr, -2), nullptr);
    for (int32_t i = -1; i < static_cast<int32_t>(addresses.size()); ++i) {
        SCOPED_TRACE(i);
        size_t at = i < 0 ? 0 : static_cast<size_t>(i);
        RuntimeObject *chosen = GetNetworkInterfaceObject(nullptr, i);
        ASSERT_NE(chosen, nullptr);
        EXPECT_EQ(TextAndRelease(SystemGetIPAddress(chosen, 0)), addresses[at]);
        EXPECT_EQ(TextAndRelease(SystemGetSubnetMask(chosen, 0)), masks[at]);
        // A UDP socket on that interface reports its broadcast address.
        RuntimeObject *udp = RuntimeNewObject(test::MakeSubclass("UDPSocket", "PlainUDP"));
        objSetter(udp, offsetof(SocketControlHead, networkInterface), chosen);
        EXPECT_EQ(TextAndRelease(UDPSocketGetBroadcast(udp, 0)), broadcasts[at]);
        EXPECT_EQ(TextAndRelease(socketLocalAddressGetter(udp, 0)), addresses[at]);
        RuntimeUnlockObject(udp);
        RuntimeUnlockObject(chosen);
    }
}

TEST(Network, LookupsAgreeWithPython) {
    const char resolver[] = R"(
import socket
print(socket.gethostbyname('localhost'))
print(socket.getaddrinfo('127.0.0.1', None, 0, socket.SOCK_STREAM, 0,
                         socket.AI_CANONNAME | socket.AI_PASSIVE)[0][3] or '127.0.0.1')
)";
    std::istringstream answers(RunToEnd(test::Peer::Python(resolver)));
    std::string address, name;
    std::getline(answers, address);
    std::getline(answers, name);
    RuntimeObject *network = SystemGetNetwork(nullptr);
    EXPECT_EQ(TextAndRelease(NetworkLookupIPAddress(network, test::MakeText("localhost"))),
              address);
    EXPECT_EQ(TextAndRelease(NetworkLookupDNSAddress(network, test::MakeText("127.0.0.1"))), name);
    EXPECT_EQ(TextAndRelease(NetworkLookupIPAddress(network, test::MakeText("::1"))), "::1");
    EXPECT_EQ(TextAndRelease(NetworkLookupIPAddress(network, test::MakeText("no such.host"))), "");
    RuntimeUnlockObject(network);
}

} // namespace
} // namespace kelp
