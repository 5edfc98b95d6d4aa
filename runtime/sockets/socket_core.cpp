#include "sockets/socket_core.h"

#include "sockets/socket_calls.h"

#include "runloop/main_loop.h"

#include "kelp/objects.h"

#include <fcntl.h>
#include <ifaddrs.h>
#include <netdb.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <vector>

namespace kelp {
namespace {

std::vector<SocketCore *> &List() {
    static std::vector<SocketCore *> list;
    return list;
}

bool gStarted = false;
bool gBusy = false;
int gLiveSockets = 0;
int gSuppression = 0;

// The sockets whose Poll is under way, innermost last, each with whether a
// nested loop's service passed it over.  Compared by address only: an entry
// may be gone by the time its Poll returns.
struct PollUnderWay {
    const SocketCore *socket;
    bool passedOver;
};
std::vector<PollUnderWay> &InPoll() {
    static std::vector<PollUnderWay> polling;
    return polling;
}

// ioctl and fcntl are variadic; the table holds plain forms of them.
int CallIoctl(int fd, unsigned long request, ...) {
    va_list args;
    va_start(args, request);
    void *argument = va_arg(args, void *);
    va_end(args);
    return ::ioctl(fd, request, argument);
}
int CallFcntl(int fd, int command, ...) {
    va_list args;
    va_start(args, command);
    long argument = va_arg(args, long);
    va_end(args);
    return ::fcntl(fd, command, argument);
}

} // namespace

SocketCalls &Sys() {
    static SocketCalls calls = {
        ::socket,      ::connect,     ::bind,        ::listen,       ::accept,   ::getpeername,
        ::getsockname, ::getsockopt,  ::setsockopt,  ::send,         ::recv,     ::sendto,
        ::recvfrom,    ::poll,        ::close,       &CallFcntl,     &CallIoctl, ::unlink,
        ::getifaddrs,  ::freeifaddrs, ::getaddrinfo, ::freeaddrinfo,
    };
    return calls;
}

int32_t MapSocketErrno(int32_t err, SocketProtocol protocol) {
    bool tcp = protocol == SocketProtocol::kStream;
    switch (err) {
    case EPERM:
    case EACCES: return kInvalidPortError;
    case EADDRNOTAVAIL: return tcp ? err : kInvalidPortError;
    case ENOENT: return tcp ? kNameResolutionError : err;
    case ENETUNREACH:
    case ENOTCONN:
    case ETIMEDOUT:
    case ECONNREFUSED: return kNameResolutionError;
    case ENOMEM:
    case ENFILE:
    case ENOBUFS: return kOutOfMemoryError;
    case EPIPE:
    case ECONNABORTED: return kLostConnection;
    case ENETRESET:
    case ECONNRESET: return tcp ? kLostConnection : err;
    case EADDRINUSE: return kAddressInUseError;
    default: return err;
    }
}

int32_t SocketLayerStart() {
    // Every call of the table exists on POSIX, so binding can't fail here.
    Sys();
    gStarted = true;
    return 0;
}
int32_t SocketLayerFinish() { return 0; }
bool SocketLayerStarted() { return gStarted; }

int LiveSocketCount() { return gLiveSockets; }
int SocketListCount() { return static_cast<int>(List().size()); }
SocketCore *SocketListAt(int index) {
    return index >= 0 && index < SocketListCount() ? List()[static_cast<size_t>(index)] : nullptr;
}

int DebuggerSocketCount() {
    return static_cast<int>(std::count_if(List().begin(), List().end(),
                                          [](SocketCore *s) { return s->mControl != nullptr; }));
}

RuntimeObject *DebuggerSocketLookup(int index) {
    for (SocketCore *socket : List()) {
        if (!socket->mControl)
            continue;
        if (index-- == 0) {
            RuntimeLockObject(socket->mControl);
            return socket->mControl;
        }
    }
    return nullptr;
}

void AdjustSocketEventSuppression(int delta) { gSuppression += delta; }
bool SocketEventsSuppressed() { return gSuppression > 0; }
bool SocketsBusy() { return gBusy; }

bool PollSockets(bool delegatesOnly) {
    if (!gStarted)
        return false;
    bool busy = false;
    auto &list = List();
    // Any handler may add or remove sockets: the index is checked against
    // the live count at every step.
    for (int i = static_cast<int>(list.size()) - 1; i >= 0; --i) {
        if (i >= static_cast<int>(list.size()))
            continue;
        SocketCore *socket = list[static_cast<size_t>(i)];
        if (!socket->mControl || !delegatesOnly)
            socket->PollSafely();
        if (i < static_cast<int>(list.size())) {
            socket = list[static_cast<size_t>(i)];
            if (socket->HasPendingSends() || socket->HasUnreadData())
                busy = true;
        }
    }
    gBusy = busy;
    return busy;
}

SocketCore::SocketCore(RuntimeObject *control, SocketOwnerKind kind)
    : mControl(control), mOwnerKind(kind) {
    ++gLiveSockets;
    SocketLayerStart();
}

SocketCore::~SocketCore() {
    auto &list = List();
    auto at = std::find(list.rbegin(), list.rend(), this);
    if (at != list.rend())
        list.erase(std::next(at).base());
    --gLiveSockets;
}

void SocketCore::AddToList() {
    auto &list = List();
    if (std::find(list.begin(), list.end(), this) == list.end())
        list.push_back(this);
}

void SocketCore::LockControl() {
    if (mControl && !mControlLocked) {
        RuntimeLockObject(mControl);
        mControlLocked = true;
    }
}

void SocketCore::Listen(int32_t port) {
    if (mOwnerKind == SocketOwnerKind::kTCPSocket)
        LockControl();
    AddToList();
    mPort = port;
}

void SocketCore::Disconnect(bool final) {
    auto &list = List();
    auto at = std::find(list.rbegin(), list.rend(), this);
    if (at != list.rend())
        list.erase(std::next(at).base());
    if (!final && mControlLocked) {
        mControlLocked = false;
        RuntimeUnlockObject(mControl); // may be the last reference: nothing after
    }
}

void SocketCore::Reset(bool all) {
    mConnected = false;
    mControlLocked = false;
    mPendingConnected = mPendingSendComplete = mPendingError = false;
    mPendingRefill = mPendingProgress = false;
    if (all)
        mPendingData = false;
    mLastError = 0;
    mEvents = 0;
    mPort = 0;
    mBytesSent = 0;
}

uint32_t SocketCore::TakeEvents() {
    uint32_t events = mEvents;
    mEvents = 0;
    return events;
}

int32_t SocketCore::InterfaceIndex() const {
    if (!mControl || mOwnerKind == SocketOwnerKind::kNone)
        return -1;
    RuntimeObject *chosen = reinterpret_cast<SocketControlHead *>(mControl)->networkInterface;
    if (!chosen)
        return -1;
    return *reinterpret_cast<int32_t *>(reinterpret_cast<char *>(chosen) + sizeof(RuntimeObject));
}

void SocketCore::SetControlError(int32_t code) {
    if (mControl && mOwnerKind != SocketOwnerKind::kNone)
        reinterpret_cast<SocketControlHead *>(mControl)->lastErrorCode = code;
}

void SocketCore::PollSafely() {
    auto &polling = InPoll();
    // A handler of this socket opened a dialog or a menu: the service of
    // that nested loop leaves the socket alone rather than enter its
    // handlers twice.  Its watch has fired, so it is put back into the wait
    // once its own poll is over, and the next pass sees what came meanwhile.
    if (ServicingOutsideLoop()) {
        for (PollUnderWay &entry : polling)
            if (entry.socket == this) {
                entry.passedOver = true;
                return;
            }
    }
    RuntimeObject *control = mControl ? mControl : mLifeHolder;
    if (control)
        RuntimeLockObject(control);
    polling.push_back({this, false});
    Poll();
    const bool passedOver = polling.back().passedOver;
    polling.pop_back();
    // Without a locked owner the socket lives on only while it is listed.
    const bool alive = control || std::find(List().begin(), List().end(), this) != List().end();
    if (passedOver && alive)
        RearmWatch();
    if (control)
        RuntimeUnlockObject(control);
}

bool SocketCore::Epilogue() {
    if (!(mEvents & kEventError))
        return true;
    bool heldElsewhere =
        mControl && mControl->referenceCount - (mControlLocked ? 1 : 0) > 0 && !HasDelegate();
    if (!mControl || heldElsewhere || HasDelegate()) {
        Disconnect(false);
        Reset(false);
        return true;
    }
    // Nobody but this socket's lock holds the control: it goes away with
    // the lock, and this socket with it.
    Disconnect(false);
    return false;
}

} // namespace kelp
