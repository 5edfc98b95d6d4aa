#pragma once
// The socket core: what every socket of the runtime is, whatever its
// protocol.  The core keeps the list of live sockets, the pending-event
// flags and the last error, and it is what the run loop drives.  Sockets
// never block and have no threads: each pass of the loop polls every
// socket, which moves bytes between the kernel and its queues and then
// hands its due events to its owner, a control of the language or a
// delegate inside the runtime.
//
// Failures never raise: they go into the last-error code and an Error event.
#include "kelp/records.h"

#include <cstdint>

namespace kelp {

// Codes the language sees as constants of SocketCore.  Any other code is a
// raw errno number.
enum SocketErrorCode : int32_t {
    kOpenDriverError = 100,
    kLostConnection = 102,
    kNameResolutionError = 103,
    kAddressInUseError = 105,
    kInvalidStateError = 106,
    kInvalidPortError = 107,
    kOutOfMemoryError = 108,
};

enum class SocketProtocol { kStream, kDatagram };

// The code a program sees for an errno, by protocol.  0 stays 0.
int32_t MapSocketErrno(int32_t err, SocketProtocol protocol);

// Bits of mEvents, the history since the last Reset (a pending set for UDP).
enum SocketEventBit : uint32_t {
    kEventConnected = 1,
    kEventError = 2,
    kEventData = 4,
    kEventSendComplete = 8,
    kEventRefill = 16,
    kEventProgress = 32,
};

// What kind of object owns a socket; the core acts on it by kind.
enum class SocketOwnerKind : uint8_t { kNone, kTCPSocket, kServerSocket, kUDPSocket };

// The fields every socket control of the language starts with.
struct SocketControlHead {
    RuntimeObject object;
    class SocketCore *socket;        // owned; made by the control's initializer
    int32_t port;                    // where Connect and Listen go
    int32_t lastErrorCode;           // LastErrorCode
    RuntimeObject *networkInterface; // counted; nil for the default interface
};

class SocketCore {
public:
    SocketCore(RuntimeObject *control, SocketOwnerKind kind);
    virtual ~SocketCore();
    SocketCore(const SocketCore &) = delete;
    SocketCore &operator=(const SocketCore &) = delete;

    // The core's step of Listen: lock a TCPSocket control, enter the list,
    // store the port.
    virtual void Listen(int32_t port);
    virtual void Poll() = 0;
    virtual void ProcessEvents() = 0;
    virtual bool HasPendingSends() { return false; }
    virtual bool HasUnreadData() { return false; }
    virtual void Purge() {}
    virtual void ClearSendBuffer() {}
    virtual int32_t GetLocalPort() { return -1; }
    virtual int32_t GetHandle() { return -1; }
    // Puts the descriptor back into the toolkit's wait, whatever it saw.
    virtual void RearmWatch() {}
    // Leaves the list; unless `final` (destructors) drops the control lock.
    virtual void Disconnect(bool final);
    // Back to idle; unread bytes survive unless `all`.
    virtual void Reset(bool all);

    // True for sockets whose events go to a runtime delegate, not a control.
    virtual bool HasDelegate() const { return false; }

    // mEvents, cleared by the reading (socketGetEvents).
    uint32_t TakeEvents();
    // The interface index chosen by the control, -1 for the default.
    int32_t InterfaceIndex() const;
    // The control's LastErrorCode, or nothing without a control.
    void SetControlError(int32_t code);

    // Polls with the control locked, so that a handler dropping the last
    // reference can't free the socket under its own Poll.  Answers nothing:
    // the socket may be gone when it returns.
    void PollSafely();

    RuntimeObject *mControl;              // not counted, except by the lock below
    RuntimeObject *mLifeHolder = nullptr; // a delegate's object, locked while polled
    SocketOwnerKind mOwnerKind;           // what mControl is
    uint32_t mBytesSent = 0;              // since the last SendProgress
    int32_t mPort = 0;                    // given to Listen or Connect
    bool mPendingConnected = false;       // a Connected event is due
    bool mPendingData = false;            // a DataAvailable event is due
    bool mPendingSendComplete = false;
    bool mPendingError = false;
    bool mPendingRefill = false; // a listening server wants more sockets
    bool mPendingProgress = false;
    int32_t mLastError = 0;      // in the codes above
    uint32_t mEvents = 0;        // SocketEventBit
    bool mConnected = false;     // the connection is up
    bool mControlLocked = false; // this socket holds a reference on mControl

protected:
    void AddToList();
    void LockControl();
    // After ProcessEvents: an error disconnects, and keeps unread bytes
    // readable when someone besides this socket holds the control.
    // Answers false when the socket may have been destroyed.
    bool Epilogue();
};

// The list of listening, connecting, connected and pooled sockets.
int SocketListCount();
SocketCore *SocketListAt(int index);

// One pass over the list, last to first; true when some socket has bytes
// to send or unread bytes.  delegatesOnly skips sockets with a control.
bool PollSockets(bool delegatesOnly);
// The busy flag of the last pass.
bool SocketsBusy();

// For the debugger's inspection: the sockets in the list that have a
// control, and the n-th such control with a reference for the caller (nil
// past the end).
int DebuggerSocketCount();
RuntimeObject *DebuggerSocketLookup(int index);

// While above 0 (a debugger stop), events for controls stay pending.
void AdjustSocketEventSuppression(int delta);
bool SocketEventsSuppressed();

// Binds the system calls once: 0, or kOpenDriverError.
int32_t SocketLayerStart();
int32_t SocketLayerFinish();
bool SocketLayerStarted();

// Live sockets, counted by constructors and destructors.
int LiveSocketCount();

} // namespace kelp
