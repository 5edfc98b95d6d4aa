#pragma once
// Addresses: numeric texts, names looked up by the resolver, the local
// interfaces, and the texts a program reads back.
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdint>
#include <string>

namespace kelp {

// A dotted IPv4 or a colon IPv6 text with the port; false for a name.
bool ParseNumericAddress(const std::string &text, int32_t port, sockaddr_storage *out,
                         socklen_t *length);
// Looks a name up (blocking: call it off the main thread).  The first IPv4
// address wins; an IPv6 one is taken when no IPv4 address came.
bool ResolveName(const std::string &name, int32_t port, sockaddr_storage *out, socklen_t *length);
// Wakes the toolkit's wait from another thread.
void WakeMainContext();

// Runs `work` on a worker thread and keeps the windows going until it ends.
void WaitOffMainThread(void (*work)(void *), void *context);

// The address to listen on: the chosen interface (index 0 and up), any
// address over IPv6 and IPv4 (-1), or any IPv4 address (-2).  Answers the
// family.
int ListenAddress(int32_t interfaceIndex, int32_t port, sockaddr_storage *out, socklen_t *length);

// Dotted text for IPv4 (an IPv4 address mapped into IPv6 included), the
// usual text for IPv6.
std::string AddressText(const sockaddr *address);
int32_t PortOf(const sockaddr *address);
// Four bytes in network order as dotted decimal text.
std::string DottedText(in_addr_t address);

// The non-loopback IPv4 interfaces, in the system's order.
struct InterfaceInfo {
    std::string name;
    in_addr_t address = 0; // network order; 0 when not found
    in_addr_t netmask = 0;
    in_addr_t broadcast = 0;
};
// The entry at `index` (-1 means 0); false when there is none.
bool FindInterface(int32_t index, InterfaceInfo *out);
int32_t InterfaceCount();
in_addr_t InterfaceAddress(int32_t index);
// "AA:BB:CC:DD:EE:FF", or "" when the interface has no hardware address.
std::string InterfaceMACAddress(int32_t index);

} // namespace kelp
