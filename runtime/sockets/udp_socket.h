#pragma once
// Datagram sockets over IPv4: one bound port that sends and receives whole
// datagrams, with broadcast always allowed and multicast groups joined on
// request.  A pass reads at most one datagram and sends at most one, and
// fires at most one event.
#include "sockets/socket_core.h"

#include "runloop/descriptor_watch.h"

#include <cstdint>
#include <deque>
#include <string>

namespace kelp {

struct DatagramData {
    std::string address; // dotted text
    int32_t port = 0;
    std::string data;
};

class UDPSocket : public SocketCore {
public:
    using SocketCore::SocketCore;

    virtual void Open(int32_t port) = 0;
    virtual void Send(const DatagramData &datagram) = 0;
    // The oldest received datagram; false when none waits.
    virtual bool Receive(DatagramData *out) = 0;
    virtual bool JoinGroup(const std::string &group) = 0;
    virtual bool LeaveGroup(const std::string &group) = 0;
    virtual void SetSendToSelf(bool flag) = 0;
    virtual void SetRouterHops(int32_t hops) = 0;
    virtual std::string BroadcastAddress() = 0;
    int32_t PacketsAvailable() const { return static_cast<int32_t>(mIncoming.size()); }
    int32_t PacketsLeftToSend() const { return static_cast<int32_t>(mOutgoing.size()); }

    bool HasPendingSends() override { return !mOutgoing.empty(); }
    bool HasUnreadData() override { return !mIncoming.empty(); }

    int32_t mRouterHops = 1;
    bool mSendToSelf = true;
    std::deque<DatagramData> mIncoming;
    std::deque<DatagramData> mOutgoing;
};

class UDPSocketPosix : public UDPSocket {
public:
    explicit UDPSocketPosix(RuntimeObject *control);
    void RearmWatch() override { mWatch.Rearm(); }
    ~UDPSocketPosix() override;

    void Open(int32_t port) override;
    void Send(const DatagramData &datagram) override;
    bool Receive(DatagramData *out) override;
    bool JoinGroup(const std::string &group) override;
    bool LeaveGroup(const std::string &group) override;
    void SetSendToSelf(bool flag) override;
    void SetRouterHops(int32_t hops) override;
    std::string BroadcastAddress() override;

    void Poll() override;
    void ProcessEvents() override;
    void Purge() override { mIncoming.clear(); }
    int32_t GetLocalPort() override;
    int32_t GetHandle() override { return mFD; }
    void Disconnect(bool final) override;
    void Reset(bool all) override;

    // Records an errno, mapped, and fires Error: nothing for 0.
    void ReportError(int32_t code);
    // The same for a code of the socket layer itself, as it is.
    void ReportCode(int32_t code);

    int mFD = -1;

private:
    void ReadOne();
    void SendOne();
    bool Membership(const std::string &group, int option);
    bool SetOption(int option, int value);
    void UpdateWatch();

    DescriptorWatch mWatch{-1, kWatchNone};
};

} // namespace kelp
