#include "sockets/address_text.h"

#include "sockets/socket_calls.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <glib.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <strings.h>
#include <thread>

namespace kelp {

bool ParseNumericAddress(const std::string &text, int32_t port, sockaddr_storage *out,
                         socklen_t *length) {
    *out = sockaddr_storage{};
    auto *v4 = reinterpret_cast<sockaddr_in *>(out);
    if (inet_pton(AF_INET, text.c_str(), &v4->sin_addr) == 1) {
        v4->sin_family = AF_INET;
        v4->sin_port = htons(static_cast<uint16_t>(port));
        *length = sizeof(sockaddr_in);
        return true;
    }
    // "[::1]" as well as "::1".
    std::string bare = text;
    if (bare.size() > 2 && bare.front() == '[' && bare.back() == ']')
        bare = bare.substr(1, bare.size() - 2);
    auto *v6 = reinterpret_cast<sockaddr_in6 *>(out);
    if (inet_pton(AF_INET6, bare.c_str(), &v6->sin6_addr) == 1) {
        v6->sin6_family = AF_INET6;
        v6->sin6_port = htons(static_cast<uint16_t>(port));
        *length = sizeof(sockaddr_in6);
        return true;
    }
    return false;
}

bool ResolveName(const std::string &name, int32_t port, sockaddr_storage *out, socklen_t *length) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (name.empty() || Sys().getaddrinfo(name.c_str(), nullptr, &hints, &found) != 0)
        return false;
    bool ok = false;
    for (addrinfo *entry = found; entry; entry = entry->ai_next) {
        if (entry->ai_family != AF_INET && entry->ai_family != AF_INET6)
            continue;
        if (ok && entry->ai_family != AF_INET)
            continue;
        memcpy(out, entry->ai_addr, entry->ai_addrlen);
        *length = entry->ai_addrlen;
        ok = true;
        if (entry->ai_family == AF_INET)
            break;
    }
    Sys().freeaddrinfo(found);
    if (ok) {
        if (out->ss_family == AF_INET)
            reinterpret_cast<sockaddr_in *>(out)->sin_port = htons(static_cast<uint16_t>(port));
        else
            reinterpret_cast<sockaddr_in6 *>(out)->sin6_port = htons(static_cast<uint16_t>(port));
    }
    return ok;
}

void WakeMainContext() { g_main_context_wakeup(nullptr); }

void WaitOffMainThread(void (*work)(void *), void *context) {
    std::atomic<bool> done{false};
    std::thread worker([&] {
        work(context);
        done = true;
        WakeMainContext();
    });
    // The toolkit's sources go on meanwhile, as in a modal wait: windows
    // repaint, and timers and sockets may fire their events.
    while (!done)
        g_main_context_iteration(nullptr, TRUE);
    worker.join();
}

int ListenAddress(int32_t interfaceIndex, int32_t port, sockaddr_storage *out, socklen_t *length) {
    *out = sockaddr_storage{};
    if (interfaceIndex == -1) {
        auto *v6 = reinterpret_cast<sockaddr_in6 *>(out);
        v6->sin6_family = AF_INET6;
        v6->sin6_addr = in6addr_any;
        v6->sin6_port = htons(static_cast<uint16_t>(port));
        *length = sizeof(sockaddr_in6);
        return AF_INET6;
    }
    auto *v4 = reinterpret_cast<sockaddr_in *>(out);
    v4->sin_family = AF_INET;
    v4->sin_addr.s_addr = interfaceIndex < 0 ? htonl(INADDR_ANY) : InterfaceAddress(interfaceIndex);
    v4->sin_port = htons(static_cast<uint16_t>(port));
    *length = sizeof(sockaddr_in);
    return AF_INET;
}

std::string DottedText(in_addr_t address) {
    const auto *b = reinterpret_cast<const uint8_t *>(&address);
    char text[16];
    snprintf(text, sizeof text, "%u.%u.%u.%u", b[0], b[1], b[2], b[3]);
    return text;
}

std::string AddressText(const sockaddr *address) {
    if (address->sa_family == AF_INET)
        return DottedText(reinterpret_cast<const sockaddr_in *>(address)->sin_addr.s_addr);
    if (address->sa_family == AF_INET6) {
        const in6_addr &a = reinterpret_cast<const sockaddr_in6 *>(address)->sin6_addr;
        if (IN6_IS_ADDR_V4MAPPED(&a)) {
            in_addr_t v4;
            memcpy(&v4, a.s6_addr + 12, 4);
            return DottedText(v4);
        }
        char text[INET6_ADDRSTRLEN];
        if (inet_ntop(AF_INET6, &a, text, sizeof text))
            return text;
    }
    return std::string();
}

int32_t PortOf(const sockaddr *address) {
    if (address->sa_family == AF_INET)
        return ntohs(reinterpret_cast<const sockaddr_in *>(address)->sin_port);
    if (address->sa_family == AF_INET6)
        return ntohs(reinterpret_cast<const sockaddr_in6 *>(address)->sin6_port);
    return -1;
}

namespace {

in_addr_t AddressOf(const sockaddr *a) {
    return a && a->sa_family == AF_INET ? reinterpret_cast<const sockaddr_in *>(a)->sin_addr.s_addr
                                        : 0;
}

// One walker serves every query: the non-loopback IPv4 entries, counted.
int32_t WalkInterfaces(int32_t index, InterfaceInfo *out) {
    ifaddrs *list = nullptr;
    if (Sys().getifaddrs(&list) != 0)
        return 0;
    int32_t position = 0;
    int32_t wanted = index == -1 ? 0 : index;
    for (ifaddrs *entry = list; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_INET)
            continue;
        if (AddressOf(entry->ifa_addr) == htonl(INADDR_LOOPBACK))
            continue;
        if (out && position == wanted) {
            out->name = entry->ifa_name ? entry->ifa_name : "";
            out->address = AddressOf(entry->ifa_addr);
            out->netmask = AddressOf(entry->ifa_netmask);
            out->broadcast =
                (entry->ifa_flags & IFF_BROADCAST) ? AddressOf(entry->ifa_broadaddr) : 0;
            Sys().freeifaddrs(list);
            return 1;
        }
        ++position;
    }
    Sys().freeifaddrs(list);
    return out ? 0 : position;
}

} // namespace

bool FindInterface(int32_t index, InterfaceInfo *out) { return WalkInterfaces(index, out) == 1; }
int32_t InterfaceCount() { return WalkInterfaces(0, nullptr); }

in_addr_t InterfaceAddress(int32_t index) {
    InterfaceInfo info;
    return FindInterface(index, &info) ? info.address : 0;
}

std::string InterfaceMACAddress(int32_t index) {
    InterfaceInfo info;
    if (!FindInterface(index, &info))
        return std::string();
    int fd = Sys().socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return std::string();
    // Asked by name directly: no table of interfaces to outgrow.
    ifreq request{};
    snprintf(request.ifr_name, sizeof request.ifr_name, "%s", info.name.c_str());
    std::string text;
    if (Sys().ioctl(fd, SIOCGIFHWADDR, &request) == 0) {
        const auto *b = reinterpret_cast<const uint8_t *>(request.ifr_hwaddr.sa_data);
        char buffer[18];
        snprintf(buffer, sizeof buffer, "%02X:%02X:%02X:%02X:%02X:%02X", b[0], b[1], b[2], b[3],
                 b[4], b[5]);
        text = buffer;
    }
    Sys().close(fd);
    return text;
}

} // namespace kelp
