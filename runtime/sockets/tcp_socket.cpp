#include "sockets/tcp_socket.h"

#include "sockets/address_text.h"
#include "sockets/socket_calls.h"
#include "sockets/socket_events.h"

#include "exceptions/call_event.h"
#include "exceptions/raise.h"
#include "runloop/main_loop.h"

#include "kelp/objects.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <mutex>
#include <thread>

namespace kelp {
namespace {

bool gRefillRunning = false; // a pool refill is under way somewhere

constexpr long kStagingSize = 1 << 20;
constexpr int32_t kSystemBufferSize = 1 << 20;

uint8_t *Staging() {
    static uint8_t *buffer = new uint8_t[kStagingSize];
    return buffer;
}

bool WouldBlock(int err) { return err == EAGAIN || err == EWOULDBLOCK || err == EINTR; }

// Drops a reference on the control; false when that was the last, so the
// control, and this socket with it, are gone.
bool Release(RuntimeObject *control) {
    bool last = control->referenceCount <= 1;
    RuntimeUnlockObject(control);
    return !last;
}

} // namespace

// A name looked up on a worker thread: the windows go on while a slow
// resolver answers, and the socket picks the answer up in a later Poll.
struct TCPSocketPosix::Lookup {
    std::mutex lock;
    bool done = false;
    sockaddr_storage address{};
    socklen_t length = 0;
};

// ---------------------------------------------------------------- TCPSocket

TCPSocket::TCPSocket(RuntimeObject *control, SocketOwnerKind kind, TCPSocketDelegate *delegate)
    : SocketCore(control, kind), mDelegate(delegate) {}

TCPSocket::~TCPSocket() = default;

void TCPSocket::ProcessEvents() {
    RuntimeObject *control = mControl;
    if (control)
        RuntimeLockObject(control);
    const bool toControl = !mDelegate && control && !SocketEventsSuppressed();
    const bool isServer = mOwnerKind == SocketOwnerKind::kServerSocket;
    if (mPendingConnected && (mDelegate || toControl)) {
        mPendingConnected = false;
        mConnected = true;
        mEvents |= kEventConnected;
        if (mDelegate)
            mDelegate->Connected(this);
        else if (!isServer)
            CallEvent(control, Hooks().connected);
    }
    if (mPendingData && (mDelegate || toControl)) {
        mPendingData = false;
        mEvents |= kEventData;
        if (mDelegate)
            mDelegate->DataAvailable(this);
        else if (!isServer)
            CallEvent(control, Hooks().dataAvailable);
    }
    if (mPendingSendComplete && (mDelegate || toControl)) {
        mPendingSendComplete = false;
        mEvents |= kEventSendComplete;
        uint8_t aborted = mAbortRequested ? 1 : 0;
        mAbortRequested = false;
        if (mDelegate)
            mDelegate->SendComplete(this);
        else if (!isServer)
            CallEvent(control, Hooks().sendComplete, aborted);
    }
    if (mPendingRefill) {
        if (gRefillRunning) {
            // Another refill is under way: this pass ends here.
            if (control)
                Release(control);
            return;
        }
        gRefillRunning = true;
        mEvents |= kEventRefill;
        if (!SocketEventsSuppressed()) {
            if (Refill()) {
                mPendingRefill = false;
            } else {
                gRefillRunning = false;
                ProcessEvents();
            }
        }
        gRefillRunning = false;
    }
    if (mPendingProgress && (mDelegate || toControl)) {
        mPendingProgress = false;
        uint32_t left = static_cast<uint32_t>(BytesLeftToSend());
        mEvents |= kEventProgress;
        if (mDelegate)
            mDelegate->SendProgress(this, mBytesSent, left);
        else if (!isServer &&
                 CallBooleanEvent(control, Hooks().sendProgress, static_cast<int32_t>(mBytesSent),
                                  static_cast<int32_t>(left)))
            mAbortRequested = true;
        mBytesSent = 0;
        if (BytesLeftToSend() == 0 || mAbortRequested) {
            mPendingSendComplete = true;
            mEvents |= kEventSendComplete;
        }
        if (mAbortRequested)
            ClearSendBuffer();
    }
    if (mPendingError && (mDelegate || toControl)) {
        mPendingError = false;
        mEvents |= kEventError;
        mConnected = false;
        if (mDelegate) {
            mDelegate->Error(this, mLastError);
        } else if (isServer) {
            CallEvent(control, Hooks().serverError, mLastError);
        } else {
            SetControlError(mLastError);
            CallEvent(control, Hooks().error);
        }
    }
    if (control && !Release(control))
        return;
    Epilogue();
}

void TCPSocket::RemoveSocket(TCPSocket *socket) {
    if (!mServer)
        return;
    mServer->remaining += 1;
    mPendingRefill = true;
    auto &active = mServer->activeList;
    for (size_t i = active.size(); i-- > 0;) {
        auto *head = reinterpret_cast<SocketControlHead *>(active[i]);
        if (head->socket == socket) {
            active.erase(active.begin() + static_cast<long>(i));
            break;
        }
    }
}

void TCPSocket::MakePoolSocket() {
    RuntimeObject *server = mServer->control;
    RuntimeLockObject(server);
    RuntimeObject *made = CallEvent<RuntimeObject *>(server, Hooks().addSocket);
    RuntimeUnlockObject(server);
    if (!made) {
        RaiseNilObject();
        return;
    }
    auto *head = reinterpret_cast<SocketControlHead *>(made);
    auto *socket = dynamic_cast<TCPSocketPosix *>(head->socket);
    if (!socket) {
        RuntimeUnlockObject(made);
        RaiseNilObject();
        return;
    }
    // The reference AddSocket handed over becomes the socket's lock.
    socket->Reset(true);
    socket->mControlLocked = true;
    socket->AddToList();
    mServer->freeList.push_back(made);
}

bool TCPSocket::Refill() {
    if (!mServer)
        return true;
    if (!mServer->control) {
        FatalReport(kFatalFailedAssertion, "sockets/tcp_socket.cpp", __LINE__, "control",
                    "Trying to fill the server socket up, but there was no control specified");
        return true;
    }
    auto wanted = [this](int count) {
        for (int i = 0; i < count && !ExceptionPending(); ++i)
            MakePoolSocket();
    };
    if (!mServer->filled) {
        RuntimeObject *server = mServer->control;
        RuntimeLockObject(server);
        mServer->filled = true;
        wanted(mServer->minimum + 10);
        RuntimeUnlockObject(server);
    } else if (static_cast<int32_t>(mServer->freeList.size()) < mServer->minimum) {
        wanted(10);
    }
    // A nil from AddSocket ends the refill; it is not tried again in a loop.
    return ExceptionPending() || static_cast<int32_t>(mServer->freeList.size()) >= mServer->minimum;
}

void TCPSocket::HandOff(int fd) {
    if (!mServer) {
        // A plain listener becomes the connection, and nothing listens more.
        CloseDescriptor();
        AdoptDescriptor(fd);
        mConnected = true;
        mPendingConnected = true;
        return;
    }
    if (mServer->freeList.empty() || mServer->remaining <= 0) {
        // The client sees its connection closed at once.
        Sys().close(fd);
        return;
    }
    RuntimeObject *control = mServer->freeList.back();
    mServer->freeList.pop_back();
    mServer->activeList.push_back(control);
    auto *socket = static_cast<TCPSocket *>(reinterpret_cast<SocketControlHead *>(control)->socket);
    socket->mListener = this;
    socket->AdoptDescriptor(fd);
    socket->mConnected = true;
    mServer->remaining -= 1;
    mPendingRefill = true;
    socket->mPendingConnected = true;
    RuntimeLockObject(control);
    socket->ProcessEvents();
    RuntimeUnlockObject(control);
}

void TCPSocket::Disconnect(bool final) {
    if (mListener) {
        TCPSocket *listener = mListener;
        mListener = nullptr;
        listener->RemoveSocket(this);
    }
    if (mServer) {
        for (int i = 0; i < SocketListCount(); ++i) {
            auto *other = dynamic_cast<TCPSocket *>(SocketListAt(i));
            if (other && other->mListener == this)
                other->mListener = nullptr;
        }
        // Pooled controls nobody took yet go with the listener; active
        // connections live on by themselves.
        std::unique_ptr<ServerRecord> record = std::move(mServer);
        while (!record->freeList.empty()) {
            RuntimeObject *pooled = record->freeList.back();
            record->freeList.pop_back();
            reinterpret_cast<SocketControlHead *>(pooled)->socket->Disconnect(false);
        }
    }
    SocketCore::Disconnect(final);
}

void TCPSocket::Reset(bool all) {
    SocketCore::Reset(all);
    mAddress.clear();
    mAbortRequested = false;
    mServerListening = false;
    mServer.reset();
    mListener = nullptr;
    if (mOwnerKind == SocketOwnerKind::kServerSocket) {
        mServer = std::make_unique<ServerRecord>();
        mServer->control = mControl;
        mServer->remaining = ServerMaximum(mControl);
        mServer->minimum = ServerMinimum(mControl);
    }
}

// ----------------------------------------------------------- TCPSocketPosix

TCPSocketPosix::TCPSocketPosix(RuntimeObject *control, SocketOwnerKind kind,
                               TCPSocketDelegate *delegate)
    : TCPSocket(control, kind, delegate), mReceiveQueue(std::make_unique<MemoryManager>()),
      mSendQueue(std::make_unique<MemoryManager>()) {
    TCPSocketPosix::Reset(true);
}

TCPSocketPosix::~TCPSocketPosix() { TCPSocketPosix::Disconnect(true); }

void TCPSocketPosix::CloseDescriptor() {
    if (mFD >= 0 && !mStandardStream)
        Sys().close(mFD);
    mFD = -1;
    mStandardStream = false;
    UpdateWatch();
}

void TCPSocketPosix::AdoptDescriptor(int fd) {
    mFD = fd;
    mListening = false;
    // Accepted sockets don't block: a large send from Poll must never stall
    // the loop.
    int flags = Sys().fcntl(fd, F_GETFL, 0);
    if (flags >= 0)
        Sys().fcntl(fd, F_SETFL, flags | O_NONBLOCK);
    UpdateWatch();
}

void TCPSocketPosix::AdoptStandardStream(int fd) {
    Reset(true);
    AddToList();
    mFD = fd;
    mStandardStream = true;
    mConnected = true;
    UpdateWatch();
}

void TCPSocketPosix::Disconnect(bool final) {
    if (mIsIPC && mOwnsPath && !mIPCPath.empty())
        Sys().unlink(mIPCPath.c_str());
    mOwnsPath = false;
    mLookup.reset();
    CloseDescriptor();
    if (final) {
        mReceiveQueue->Clear();
        mSendQueue->Clear();
    }
    TCPSocket::Disconnect(final);
}

void TCPSocketPosix::Reset(bool all) {
    TCPSocket::Reset(all);
    mLookup.reset();
    CloseDescriptor();
    mListening = false;
    mWritePending = false;
    if (all) {
        mReceiveQueue = std::make_unique<MemoryManager>();
        mSendQueue = std::make_unique<MemoryManager>();
    }
}

bool TCPSocketPosix::MakeDescriptor(int family) {
    mFD = Sys().socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (mFD < 0) {
        mFD = -1;
        HandleError(errno);
        return false;
    }
    // The largest send buffer the system takes, from 1 MiB down by quarters.
    for (int32_t size = kSystemBufferSize; size > 8192 && family != AF_UNIX;
         size = static_cast<int32_t>(size * 0.75)) {
        if (Sys().setsockopt(mFD, SOL_SOCKET, SO_SNDBUF, &size, sizeof size) == 0) {
            Sys().setsockopt(mFD, SOL_SOCKET, SO_RCVBUF, &size, sizeof size);
            mReceiveChunk = size;
            break;
        }
    }
    int flags = Sys().fcntl(mFD, F_GETFL, 0);
    Sys().fcntl(mFD, F_SETFL, (flags < 0 ? 0 : flags) | O_NONBLOCK);
    return true;
}

void TCPSocketPosix::Connect(const std::string &address, int32_t port) {
    Reset(true);
    LockControl();
    AddToList();
    mPort = port;
    mAddress = address;
    if (mIsIPC) {
        sockaddr_un target{};
        target.sun_family = AF_UNIX;
        if (mIPCPath.size() >= sizeof target.sun_path) {
            HandleError(ENAMETOOLONG);
            return;
        }
        if (!MakeDescriptor(AF_UNIX))
            return;
        memcpy(target.sun_path, mIPCPath.c_str(), mIPCPath.size() + 1);
        ConnectTo(reinterpret_cast<sockaddr *>(&target),
                  static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + mIPCPath.size() + 1));
        return;
    }
    sockaddr_storage target{};
    socklen_t length = 0;
    if (ParseNumericAddress(address, port, &target, &length)) {
        ConnectTo(reinterpret_cast<sockaddr *>(&target), length);
        return;
    }
    // A name: looked up on a worker, finished from Poll.
    auto lookup = std::make_shared<Lookup>();
    mLookup = lookup;
    std::thread([lookup, address, port] {
        sockaddr_storage found{};
        socklen_t foundLength = 0;
        bool ok = ResolveName(address, port, &found, &foundLength);
        std::lock_guard<std::mutex> guard(lookup->lock);
        if (ok) {
            lookup->address = found;
            lookup->length = foundLength;
        }
        lookup->done = true;
        // The socket watches no descriptor while it waits for the name.
        RequestDescriptorService();
    }).detach();
}

void TCPSocketPosix::FinishLookup() {
    sockaddr_storage target{};
    socklen_t length = 0;
    {
        std::lock_guard<std::mutex> guard(mLookup->lock);
        if (!mLookup->done)
            return;
        target = mLookup->address;
        length = mLookup->length;
    }
    mLookup.reset();
    if (length == 0) {
        HandleCode(kNameResolutionError);
        return;
    }
    ConnectTo(reinterpret_cast<sockaddr *>(&target), length);
}

void TCPSocketPosix::ConnectTo(const sockaddr *address, socklen_t length) {
    if (mFD < 0 && !MakeDescriptor(address->sa_family))
        return;
    int32_t chosen = InterfaceIndex();
    if (chosen != -1 && address->sa_family == AF_INET) {
        sockaddr_in local{};
        local.sin_family = AF_INET;
        local.sin_addr.s_addr = InterfaceAddress(chosen);
        if (Sys().bind(mFD, reinterpret_cast<sockaddr *>(&local), sizeof local) != 0) {
            HandleError(errno);
            return;
        }
    }
    if (Sys().connect(mFD, address, length) == 0) {
        mConnected = true;
        mPendingConnected = true;
        UpdateWatch();
        ProcessEvents();
        return;
    }
    int err = errno;
    if (err == EAGAIN || err == EALREADY || err == EINPROGRESS) {
        UpdateWatch();
        return;
    }
    HandleError(err);
}

void TCPSocketPosix::Listen(int32_t port) {
    Reset(true);
    SocketCore::Listen(port);
    if (mServer) {
        mServer->minimum = ServerMinimum(mControl);
        mPendingRefill = true;
    }
    int family = AF_UNIX;
    sockaddr_storage local{};
    socklen_t length = 0;
    if (mIsIPC) {
        auto *path = reinterpret_cast<sockaddr_un *>(&local);
        path->sun_family = AF_UNIX;
        if (mIPCPath.size() >= sizeof path->sun_path) {
            HandleError(ENAMETOOLONG);
            return;
        }
        memcpy(path->sun_path, mIPCPath.c_str(), mIPCPath.size() + 1);
        length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + mIPCPath.size() + 1);
    } else {
        family = ListenAddress(InterfaceIndex(), port, &local, &length);
    }
    if (!MakeDescriptor(family)) {
        if (family != AF_INET6)
            return;
        // No IPv6 on this machine: IPv4 alone.
        family = ListenAddress(-2, port, &local, &length);
        if (!MakeDescriptor(family))
            return;
    }
    int on = 1;
    if (!mIsIPC && Sys().setsockopt(mFD, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0) {
        HandleError(errno);
        return;
    }
    if (family == AF_INET6) {
        int off = 0; // IPv4 clients too, as mapped addresses
        Sys().setsockopt(mFD, IPPROTO_IPV6, IPV6_V6ONLY, &off, sizeof off);
    }
    if (Sys().bind(mFD, reinterpret_cast<sockaddr *>(&local), length) != 0) {
        HandleError(errno);
        return;
    }
    mOwnsPath = mIsIPC;
    mListening = true;
    // A pool is there to take bursts: the kernel may queue as many as it
    // allows.  A plain listener takes one connection, so a short queue.
    if (Sys().listen(mFD, mServer ? SOMAXCONN : 5) != 0) {
        HandleError(errno);
        return;
    }
    if (mServer)
        mServerListening = true;
    UpdateWatch();
}

void TCPSocketPosix::Poll() {
    if (mLookup) {
        FinishLookup();
        return;
    }
    if (mFD < 0)
        return;
    short events = 0;
    if ((mConnected || mListening) && mReceiveQueue->Count() < kReceiveQueueLimit)
        events |= POLLIN;
    if (!mConnected || mWritePending || HasPendingSends())
        events |= POLLOUT;
    if (mListening)
        events &= ~POLLOUT;
    if (!events) {
        UpdateWatch();
        return;
    }
    pollfd ready{mFD, events, 0};
    int result = Sys().poll(&ready, 1, 0);
    if (result < 0) {
        if (errno != EINTR)
            HandleError(errno);
        return;
    }
    if (result > 0) {
        const short hangup = POLLHUP | POLLERR;
        if ((events & POLLIN) && (ready.revents & (POLLIN | hangup))) {
            if (mListening) {
                sockaddr_storage peer{};
                socklen_t length = sizeof peer;
                int fd = Sys().accept(mFD, reinterpret_cast<sockaddr *>(&peer), &length);
                if (fd < 0) {
                    if (!WouldBlock(errno) && errno != ECONNABORTED) {
                        HandleError(errno);
                        return;
                    }
                } else {
                    HandOff(fd);
                }
            } else if (mConnected && !Receive()) {
                return;
            }
        }
        if (mFD >= 0 && (events & POLLOUT) && (ready.revents & (POLLOUT | hangup))) {
            if (!mConnected && !(mEvents & kEventError)) {
                // The connect finished, one way or the other.
                int err = 0;
                socklen_t size = sizeof err;
                if (!mIsIPC) {
                    sockaddr_storage peer{};
                    socklen_t length = sizeof peer;
                    if (Sys().getsockopt(mFD, SOL_SOCKET, SO_ERROR, &err, &size) == 0 && err) {
                        HandleError(err);
                        return;
                    }
                    if (Sys().getpeername(mFD, reinterpret_cast<sockaddr *>(&peer), &length) != 0) {
                        HandleError(errno);
                        return;
                    }
                }
                mConnected = true;
                mPendingConnected = true;
            } else if (mConnected) {
                mWritePending = false;
                Send();
            }
        }
        if (mFD >= 0 && (ready.revents & POLLNVAL) && !(mEvents & kEventError)) {
            HandleCode(mConnected ? kLostConnection : kNameResolutionError);
            return;
        }
    }
    UpdateWatch();
    ProcessEvents();
}

bool TCPSocketPosix::Receive() {
    long want = mReceiveChunk < kStagingSize ? mReceiveChunk : kStagingSize;
    ssize_t got = mStandardStream ? ::read(mFD, Staging(), static_cast<size_t>(want))
                                  : Sys().recv(mFD, Staging(), static_cast<size_t>(want), 0);
    if (got == 0) {
        HandleCode(kLostConnection);
        return false;
    }
    if (got < 0) {
        if (WouldBlock(errno))
            return true;
        HandleError(errno);
        return false;
    }
    if (!mReceiveQueue->Append(Staging(), got)) {
        HandleCode(kOutOfMemoryError);
        return false;
    }
    mPendingData = true;
    return true;
}

void TCPSocketPosix::Send() {
    long count = 0;
    const uint8_t *head = mSendQueue->Peek(&count);
    if (count <= 0)
        return;
    // No SIGPIPE: a peer that went away is an Error event, not the end of
    // the program.
    ssize_t sent = mStandardStream
                       ? ::write(mFD, head, static_cast<size_t>(count))
                       : Sys().send(mFD, head, static_cast<size_t>(count), MSG_NOSIGNAL);
    if (sent < 0) {
        if (WouldBlock(errno))
            mWritePending = true;
        else
            HandleError(errno);
        return;
    }
    mSendQueue->Consume(sent);
    mBytesSent += static_cast<uint32_t>(sent);
    mPendingProgress = true;
}

void TCPSocketPosix::UpdateWatch() {
    mWatch.SetDescriptor(mLookup ? -1 : mFD);
    unsigned interest = kWatchNone;
    if (mFD >= 0) {
        if ((mConnected || mListening) && mReceiveQueue->Count() < kReceiveQueueLimit)
            interest |= kWatchRead;
        if (!mListening && (!mConnected || mWritePending || HasPendingSends()))
            interest |= kWatchWrite;
    }
    mWatch.SetInterest(interest);
}

void TCPSocketPosix::Write(const void *bytes, long count) {
    if (count <= 0)
        return;
    if (!mSendQueue->Append(bytes, count)) {
        HandleCode(kOutOfMemoryError);
        return;
    }
    mWritePending = true;
    UpdateWatch();
}

std::string TCPSocketPosix::Read(long count) {
    if (count <= 0)
        return std::string();
    if (count > mReceiveQueue->Count())
        count = mReceiveQueue->Count();
    std::string out(static_cast<size_t>(count), '\0');
    mReceiveQueue->Copy(out.data(), count, true);
    UpdateWatch(); // room again: reading resumes
    return out;
}

std::string TCPSocketPosix::ReadAll() { return Read(mReceiveQueue->Count()); }

std::string TCPSocketPosix::Lookahead() {
    std::string out(static_cast<size_t>(mReceiveQueue->Count()), '\0');
    mReceiveQueue->Copy(out.data(), static_cast<long>(out.size()), false);
    return out;
}

std::string TCPSocketPosix::RemoteAddress() {
    if (mIsIPC)
        return mIPCPath;
    if (mFD < 0 || mStandardStream)
        return std::string();
    sockaddr_storage peer{};
    socklen_t length = sizeof peer;
    if (Sys().getpeername(mFD, reinterpret_cast<sockaddr *>(&peer), &length) != 0)
        return std::string();
    return AddressText(reinterpret_cast<sockaddr *>(&peer));
}

int32_t TCPSocketPosix::GetLocalPort() {
    if (mFD < 0 || mIsIPC || mStandardStream)
        return -1;
    sockaddr_storage local{};
    socklen_t length = sizeof local;
    if (Sys().getsockname(mFD, reinterpret_cast<sockaddr *>(&local), &length) != 0)
        return -1;
    return PortOf(reinterpret_cast<sockaddr *>(&local));
}

void TCPSocketPosix::HandleError(int32_t code) {
    HandleCode(MapSocketErrno(code, SocketProtocol::kStream));
}

void TCPSocketPosix::HandleCode(int32_t code) {
    if (code == 0)
        return;
    mLastError = code;
    mPendingError = true;
    SetControlError(mLastError);
    ProcessEvents();
}

void TCPSocketPosix::Flush() {
    while (mLastError == 0 && BytesLeftToSend() > 0 && mFD >= 0) {
        Poll();
        if (mLastError != 0 || mFD < 0 || BytesLeftToSend() == 0)
            break;
        // Wait for room in the kernel's buffer rather than spin.
        pollfd room{mFD, POLLOUT, 0};
        Sys().poll(&room, 1, 100);
    }
    ClearSendBuffer();
}

} // namespace kelp
