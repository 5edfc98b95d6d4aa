#pragma once
// The program's end of the link to the IDE.  The program is the client: it
// connects, the IDE listens.  The link has its own small socket code on
// POSIX calls, served from the debugger's own poll step, so it works the
// same whether or not the program uses sockets of the language.
#include "debugger/wire_format.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelp::debugger {

// Told of what comes over a connection.
class DebuggerDelegate {
public:
    virtual ~DebuggerDelegate() = default;
    virtual void CommandReceived(const std::string &command, const std::string &data) = 0;
    virtual void ConnectionMade() = 0;
    virtual void ConnectionLost() = 0;
    // A line longer than the cap was dropped.
    virtual void LineDropped() = 0;
};

// The code the socket callbacks pass to Error when the peer is gone.
constexpr int kErrorConnectionLost = 102;
constexpr int kTcpPort = 13897;

class DebuggerConnection {
public:
    DebuggerConnection() = default;
    virtual ~DebuggerConnection();
    DebuggerConnection(const DebuggerConnection &) = delete;
    DebuggerConnection &operator=(const DebuggerConnection &) = delete;

    // One line, the carriage return added.  False when the peer is gone.
    bool Send(std::string_view text);
    bool Send(std::string_view command, std::string_view data);
    // Drops the connection for good.
    void Disconnect();
    // Starts connecting; Poll finishes it, and tries again every tenth of a
    // second while the peer isn't there yet.
    void Connect();
    bool IsConnected() const { return mConnected; }

    // Serves the socket once, waiting at most timeoutMs for something to do.
    void Poll(int timeoutMs);

    // Delegates hear of events last registered first.
    void AddDelegate(DebuggerDelegate *delegate);

protected:
    // A new non-blocking socket with connect() begun, or -1.
    virtual int StartConnect() = 0;
    // Whether the peer at the other end may drive this program.
    virtual bool PeerAllowed(int) { return true; }

private:
    void Connected();
    void DataAvailable();
    void Error(int code);
    void CloseSocket();

    int mFd = -1;
    bool mConnected = false;
    bool mInProgress = false; // connect() begun, not yet answered
    bool mClosed = false;     // dropped for good: no more attempts
    int32_t mNextAttemptTick = 0;
    LineSplitter mInput;
    std::vector<DebuggerDelegate *> mDelegates;
};

// TCP to a host on port 13897.
class TCPSocketConnection final : public DebuggerConnection {
public:
    explicit TCPSocketConnection(std::string address) : mAddress(std::move(address)) {}

private:
    int StartConnect() override;
    std::string mAddress;
};

// The Unix-domain socket of this user (LocalSocketPath), whose listener must
// run under the same user id.
class IPCSocketConnection final : public DebuggerConnection {
private:
    int StartConnect() override;
    bool PeerAllowed(int fd) override;
};

// "/tmp/KPLocalDebug." followed by the user id: one IDE per user, so that
// users of one machine can't reach each other's programs.
std::string LocalSocketPath();

} // namespace kelp::debugger
