#include "debugger/connection.h"

#include "runloop/clock.h"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace kelp::debugger {
namespace {

constexpr int32_t kRetryTicks = 6; // a tenth of a second between attempts

int NewSocket(int family) { return socket(family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0); }

// connect() on a non-blocking socket: the socket while the answer may still
// come, -1 (socket closed) when it was refused at once.
int Begin(int fd, const sockaddr *address, socklen_t length) {
    if (fd < 0)
        return -1;
    if (connect(fd, address, length) == 0 || errno == EINPROGRESS)
        return fd;
    close(fd);
    return -1;
}

} // namespace

std::string LocalSocketPath() { return "/tmp/KPLocalDebug." + std::to_string(getuid()); }

DebuggerConnection::~DebuggerConnection() { CloseSocket(); }

void DebuggerConnection::AddDelegate(DebuggerDelegate *delegate) { mDelegates.push_back(delegate); }

bool DebuggerConnection::Send(std::string_view text) {
    if (!mConnected)
        return false;
    std::string line(text);
    line += '\r';
    size_t sent = 0;
    while (sent < line.size()) {
        ssize_t n = send(mFd, line.data() + sent, line.size() - sent, MSG_NOSIGNAL);
        if (n > 0) {
            sent += static_cast<size_t>(n);
            continue;
        }
        if (n < 0 && (errno == EAGAIN || errno == EINTR)) {
            pollfd p{mFd, POLLOUT, 0};
            poll(&p, 1, 100);
            continue;
        }
        Error(kErrorConnectionLost);
        return false;
    }
    return true;
}

bool DebuggerConnection::Send(std::string_view command, std::string_view data) {
    std::string text(command);
    if (!data.empty()) {
        text += ' ';
        text += data;
    }
    return Send(text);
}

void DebuggerConnection::CloseSocket() {
    if (mFd >= 0)
        close(mFd);
    mFd = -1;
    mConnected = mInProgress = false;
}

void DebuggerConnection::Disconnect() {
    CloseSocket();
    mClosed = true;
}

void DebuggerConnection::Connect() {
    CloseSocket();
    mClosed = false;
    mFd = StartConnect();
    mInProgress = mFd >= 0;
    mNextAttemptTick = TickCount() + kRetryTicks;
}

void DebuggerConnection::Connected() {
    if (!PeerAllowed(mFd)) {
        CloseSocket();
        return;
    }
    mConnected = true;
    mInProgress = false;
    for (size_t i = mDelegates.size(); i-- > 0;)
        mDelegates[i]->ConnectionMade();
}

void DebuggerConnection::DataAvailable() {
    char chunk[4096];
    ssize_t n = recv(mFd, chunk, sizeof chunk, 0);
    if (n == 0 || (n < 0 && errno != EAGAIN && errno != EINTR)) {
        Error(kErrorConnectionLost);
        return;
    }
    if (n > 0)
        mInput.Feed(chunk, static_cast<size_t>(n));
    std::string command, data;
    for (;;) {
        LineSplitter::Result r = mInput.Next(command, data);
        if (r == LineSplitter::Result::kNone)
            break;
        for (size_t i = mDelegates.size(); i-- > 0;) {
            if (r == LineSplitter::Result::kLine)
                mDelegates[i]->CommandReceived(command, data);
            else
                mDelegates[i]->LineDropped();
        }
        // A command may have dropped the connection (QUIT ends the process
        // before this, but a delegate may only disconnect).
        if (!mConnected)
            break;
    }
}

void DebuggerConnection::Error(int code) {
    bool wasConnected = mConnected;
    Disconnect();
    if (code == kErrorConnectionLost && wasConnected)
        for (size_t i = mDelegates.size(); i-- > 0;)
            mDelegates[i]->ConnectionLost();
}

void DebuggerConnection::Poll(int timeoutMs) {
    if (mFd < 0) {
        if (mClosed || TickCount() < mNextAttemptTick) {
            if (timeoutMs > 0)
                poll(nullptr, 0, timeoutMs);
            return;
        }
        Connect();
        if (mFd < 0)
            return;
    }
    pollfd p{mFd, static_cast<short>(mConnected ? POLLIN : POLLOUT), 0};
    if (poll(&p, 1, timeoutMs) <= 0)
        return;
    if (mInProgress) {
        int error = 0;
        socklen_t length = sizeof error;
        getsockopt(mFd, SOL_SOCKET, SO_ERROR, &error, &length);
        if (error != 0 || (p.revents & (POLLERR | POLLHUP))) {
            // Not listening yet: try again after a while, until the caller
            // gives up.
            CloseSocket();
            mNextAttemptTick = TickCount() + kRetryTicks;
            return;
        }
        Connected();
        return;
    }
    if (p.revents & (POLLIN | POLLHUP | POLLERR))
        DataAvailable();
}

int TCPSocketConnection::StartConnect() {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    std::string port = std::to_string(kTcpPort);
    if (getaddrinfo(mAddress.c_str(), port.c_str(), &hints, &found) != 0 || !found)
        return -1;
    int fd = Begin(NewSocket(found->ai_family), found->ai_addr, found->ai_addrlen);
    freeaddrinfo(found);
    if (fd >= 0) {
        int on = 1; // one line is one packet: no wait for more
        setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    return fd;
}

int IPCSocketConnection::StartConnect() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::string path = LocalSocketPath();
    if (path.size() >= sizeof address.sun_path)
        return -1;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return Begin(NewSocket(AF_UNIX), reinterpret_cast<sockaddr *>(&address), sizeof address);
}

bool IPCSocketConnection::PeerAllowed(int fd) {
    ucred peer{};
    socklen_t length = sizeof peer;
    return getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 && peer.uid == getuid();
}

} // namespace kelp::debugger
