#include "sockets/udp_socket.h"

#include "sockets/address_text.h"
#include "sockets/socket_calls.h"
#include "sockets/socket_events.h"

#include "exceptions/call_event.h"

#include "kelp/objects.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace kelp {

UDPSocketPosix::UDPSocketPosix(RuntimeObject *control)
    : UDPSocket(control, SocketOwnerKind::kUDPSocket) {}

UDPSocketPosix::~UDPSocketPosix() { UDPSocketPosix::Disconnect(true); }

void UDPSocketPosix::Disconnect(bool final) {
    if (mFD >= 0)
        Sys().close(mFD);
    mFD = -1;
    UpdateWatch();
    SocketCore::Disconnect(final);
}

void UDPSocketPosix::Reset(bool all) {
    SocketCore::Reset(all);
    if (mFD >= 0)
        Sys().close(mFD);
    mFD = -1;
    if (all)
        mIncoming.clear();
    mOutgoing.clear();
    UpdateWatch();
}

void UDPSocketPosix::ReportError(int32_t code) {
    if (code == 0)
        return;
    SetControlError(code);
    ReportCode(MapSocketErrno(code, SocketProtocol::kDatagram));
}

void UDPSocketPosix::ReportCode(int32_t code) {
    if (code == 0)
        return;
    mLastError = code;
    mEvents |= kEventError;
    ProcessEvents();
}

void UDPSocketPosix::Open(int32_t port) {
    Reset(true);
    SocketCore::Listen(port);
    if (SocketLayerStart() != 0) {
        ReportCode(kOpenDriverError);
        return;
    }
    mFD = Sys().socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (mFD < 0) {
        mFD = -1;
        ReportCode(kOpenDriverError);
        return;
    }
    sockaddr_in local{};
    local.sin_family = AF_INET;
    local.sin_port = htons(static_cast<uint16_t>(port));
    int32_t chosen = InterfaceIndex();
    local.sin_addr.s_addr = chosen == -1 ? htonl(INADDR_ANY) : InterfaceAddress(chosen);
    if (Sys().bind(mFD, reinterpret_cast<sockaddr *>(&local), sizeof local) != 0) {
        ReportError(errno);
        return;
    }
    int on = 1;
    if (Sys().setsockopt(mFD, SOL_SOCKET, SO_BROADCAST, &on, sizeof on) != 0) {
        ReportError(errno);
        return;
    }
    mConnected = true;
    UpdateWatch();
}

int32_t UDPSocketPosix::GetLocalPort() {
    if (mFD < 0)
        return -1;
    sockaddr_storage local{};
    socklen_t length = sizeof local;
    if (Sys().getsockname(mFD, reinterpret_cast<sockaddr *>(&local), &length) != 0)
        return -1;
    return PortOf(reinterpret_cast<sockaddr *>(&local));
}

void UDPSocketPosix::Poll() {
    if (mFD < 0 || !mConnected)
        return;
    // Readiness, not the byte count, says a datagram waits: one of zero
    // length shows no bytes, and must still be taken off the queue so that
    // it does not hold up the datagrams behind it.
    pollfd ready{mFD, POLLIN, 0};
    bool waiting = Sys().poll(&ready, 1, 0) > 0 && (ready.revents & (POLLIN | POLLERR));
    if (!waiting && mOutgoing.empty()) {
        UpdateWatch();
        return;
    }
    if (waiting)
        ReadOne();
    if (mFD >= 0 && !mOutgoing.empty())
        SendOne();
    UpdateWatch();
    ProcessEvents();
}

void UDPSocketPosix::ReadOne() {
    int size = 0;
    if (Sys().ioctl(mFD, FIONREAD, &size) != 0 || size < 0)
        size = 0;
    std::string data(static_cast<size_t>(size) + 1, '\0');
    sockaddr_in from{};
    socklen_t length = sizeof from;
    ssize_t got = Sys().recvfrom(mFD, data.data(), data.size(), MSG_DONTWAIT,
                                 reinterpret_cast<sockaddr *>(&from), &length);
    if (got < 0) {
        if (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)
            ReportError(errno);
        return;
    }
    if (got == 0)
        return; // an empty datagram carries nothing to deliver
    data.resize(static_cast<size_t>(got));
    mIncoming.push_back({DottedText(from.sin_addr.s_addr), ntohs(from.sin_port), std::move(data)});
    mEvents |= kEventData;
}

void UDPSocketPosix::Send(const DatagramData &datagram) {
    if (!mConnected) {
        ReportCode(kInvalidStateError);
        return;
    }
    mOutgoing.push_back(datagram);
    SendOne();
}

void UDPSocketPosix::SendOne() {
    DatagramData datagram = std::move(mOutgoing.front());
    mOutgoing.pop_front();
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_port = htons(static_cast<uint16_t>(datagram.port));
    // Only dotted addresses: a name is not looked up, and must not turn
    // into the broadcast address that a failed conversion would give.
    if (inet_pton(AF_INET, datagram.address.c_str(), &target.sin_addr) != 1) {
        ReportCode(kNameResolutionError);
        return;
    }
    if (Sys().sendto(mFD, datagram.data.data(), datagram.data.size(), MSG_DONTWAIT,
                     reinterpret_cast<sockaddr *>(&target), sizeof target) < 0) {
        ReportError(errno);
        return;
    }
    mEvents |= kEventSendComplete;
}

bool UDPSocketPosix::Receive(DatagramData *out) {
    if (mIncoming.empty())
        return false;
    *out = std::move(mIncoming.front());
    mIncoming.pop_front();
    return true;
}

void UDPSocketPosix::ProcessEvents() {
    RuntimeObject *control = mControl;
    if (control && !SocketEventsSuppressed()) {
        RuntimeLockObject(control);
        if (mEvents & kEventData) {
            mEvents &= ~kEventData;
            CallEvent(control, Hooks().dataAvailable);
        } else if (mEvents & kEventError) {
            mEvents &= ~kEventError;
            mConnected = false;
            SetControlError(mLastError);
            CallEvent(control, Hooks().error);
        } else if (mEvents & kEventSendComplete) {
            mEvents &= ~kEventSendComplete;
            CallEvent(control, Hooks().sendComplete, static_cast<uint8_t>(0));
        }
        RuntimeUnlockObject(control);
    }
    Epilogue();
}

bool UDPSocketPosix::Membership(const std::string &group, int option) {
    if (mFD < 0 || !mConnected) {
        ReportCode(kInvalidStateError);
        return false;
    }
    ip_mreq request{};
    request.imr_multiaddr.s_addr = inet_addr(group.c_str());
    int32_t chosen = InterfaceIndex();
    request.imr_interface.s_addr = chosen == -1 ? htonl(INADDR_ANY) : InterfaceAddress(chosen);
    if (Sys().setsockopt(mFD, IPPROTO_IP, option, &request, sizeof request) != 0) {
        ReportError(errno);
        return false;
    }
    return true;
}

bool UDPSocketPosix::JoinGroup(const std::string &group) {
    return Membership(group, IP_ADD_MEMBERSHIP);
}
bool UDPSocketPosix::LeaveGroup(const std::string &group) {
    return Membership(group, IP_DROP_MEMBERSHIP);
}

bool UDPSocketPosix::SetOption(int option, int value) {
    if (Sys().setsockopt(mFD, IPPROTO_IP, option, &value, sizeof value) == 0 ||
        errno == ENOPROTOOPT)
        return true;
    ReportError(errno);
    return false;
}

void UDPSocketPosix::SetSendToSelf(bool flag) {
    mSendToSelf = flag;
    if (mFD >= 0)
        SetOption(IP_MULTICAST_LOOP, flag ? 1 : 0);
}

void UDPSocketPosix::SetRouterHops(int32_t hops) {
    mRouterHops = hops;
    if (mFD < 0)
        return;
    Sys().setsockopt(mFD, IPPROTO_IP, IP_TTL, &hops, sizeof hops);
    SetOption(IP_MULTICAST_TTL, hops);
}

std::string UDPSocketPosix::BroadcastAddress() {
    InterfaceInfo info;
    FindInterface(InterfaceIndex(), &info);
    return DottedText(info.broadcast);
}

void UDPSocketPosix::UpdateWatch() {
    mWatch.SetDescriptor(mFD);
    unsigned interest = kWatchNone;
    if (mFD >= 0 && mConnected)
        interest = kWatchRead | (mOutgoing.empty() ? kWatchNone : kWatchWrite);
    // Datagrams go one a pass: waiting for room keeps the rest moving
    // without a timer.
    mWatch.SetInterest(interest);
}

} // namespace kelp
