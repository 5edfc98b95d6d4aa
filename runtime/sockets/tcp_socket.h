#pragma once
// Stream sockets: TCP over IPv4 and IPv6, and Unix-domain paths for the
// IPC class.  A socket connects or listens, moves bytes between the kernel
// and two byte queues from its Poll, and reports by the core's events in a
// fixed order.  A listening socket whose control is a ServerSocket hands
// each connection to a pooled socket that the program made beforehand.
#include "sockets/socket_core.h"

#include "memory/byte_queue.h"
#include "runloop/descriptor_watch.h"

#include <sys/socket.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kelp {

class TCPSocket;

// Receives the events of a socket that belongs to the runtime itself.
class TCPSocketDelegate {
public:
    virtual ~TCPSocketDelegate() = default;
    virtual void Connected(TCPSocket *) {}
    virtual void DataAvailable(TCPSocket *) {}
    virtual void SendComplete(TCPSocket *) {}
    virtual void Error(TCPSocket *, int32_t) {}
    virtual void SendProgress(TCPSocket *, uint32_t, uint32_t) {}
};

// What a listening socket of a ServerSocket keeps about its pool.
struct ServerRecord {
    std::vector<RuntimeObject *> freeList;   // made controls waiting; each locked by its socket
    std::vector<RuntimeObject *> activeList; // controls holding a connection
    int32_t minimum = 1;                     // MinimumSocketsAvailable, taken at each Listen
    int32_t remaining = 1;                   // connections still allowed
    RuntimeObject *control = nullptr;        // the ServerSocket
    bool filled = false;                     // the first filling has run
};

// Bytes a socket keeps unread before it stops reading until the program
// reads: the kernel's own buffer then fills and the peer waits.
constexpr long kReceiveQueueLimit = 64L << 20;

class TCPSocket : public SocketCore {
public:
    TCPSocket(RuntimeObject *control, SocketOwnerKind kind, TCPSocketDelegate *delegate);
    ~TCPSocket() override;

    virtual void Connect(const std::string &address, int32_t port) = 0;
    virtual void Write(const void *bytes, long count) = 0;
    virtual std::string Read(long count) = 0;
    virtual std::string ReadAll() = 0;
    virtual std::string RemoteAddress() = 0;
    virtual void HandleError(int32_t code) = 0;
    virtual void RemoveSocket(TCPSocket *socket);
    virtual long BytesAvailable() = 0;
    virtual long BytesLeftToSend() = 0;
    virtual std::string Lookahead() = 0;

    void ProcessEvents() override;
    void Disconnect(bool final) override;
    void Reset(bool all) override;
    bool HasDelegate() const override { return mDelegate != nullptr; }

    // The pool's refill: answers whether the free list has the minimum.
    bool Refill();

    std::string mAddress;                  // where Connect goes
    TCPSocketDelegate *mDelegate;          // not owned
    bool mServerListening = false;         // IsListening of a ServerSocket
    std::unique_ptr<ServerRecord> mServer; // on a ServerSocket's listening socket
    TCPSocket *mListener = nullptr;        // on an accepted pool socket
    // SendComplete's userAborted, set by a SendProgress answer of true.  One
    // per socket: a flag shared by all would mark another socket's
    // completion as aborted when this one closes before its SendComplete.
    bool mAbortRequested = false;

protected:
    // Hands an accepted descriptor to this listener's control or pool.
    void HandOff(int fd);
    virtual void AdoptDescriptor(int fd) = 0;
    virtual void CloseDescriptor() = 0;
    void MakePoolSocket();
};

class TCPSocketPosix : public TCPSocket {
public:
    TCPSocketPosix(RuntimeObject *control, SocketOwnerKind kind,
                   TCPSocketDelegate *delegate = nullptr);
    ~TCPSocketPosix() override;

    void Listen(int32_t port) override;
    void Poll() override;
    bool HasPendingSends() override { return mSendQueue->Count() > 0; }
    bool HasUnreadData() override { return mReceiveQueue->Count() > 0; }
    void Purge() override { mReceiveQueue->Clear(); }
    void ClearSendBuffer() override { mSendQueue->Clear(); }
    int32_t GetLocalPort() override;
    int32_t GetHandle() override { return mFD; }
    void RearmWatch() override { mWatch.Rearm(); }
    void Disconnect(bool final) override;
    void Reset(bool all) override;

    void Connect(const std::string &address, int32_t port) override;
    void Write(const void *bytes, long count) override;
    std::string Read(long count) override;
    std::string ReadAll() override;
    std::string RemoteAddress() override;
    // An errno, mapped to the code a program sees; then the Error event.
    void HandleError(int32_t code) override;
    // A code of the socket layer itself, as it is.
    void HandleCode(int32_t code);
    long BytesAvailable() override { return mReceiveQueue->Count(); }
    long BytesLeftToSend() override { return mSendQueue->Count(); }
    std::string Lookahead() override;

    // Sends until the queue is empty or an error comes, waiting for the
    // kernel's room instead of spinning.
    void Flush();
    // Serves an existing descriptor (standard input or output) as a
    // connected socket; plain reads and writes, since it is no socket.
    void AdoptStandardStream(int fd);

    int mFD = -1;
    int32_t mReceiveChunk = 8192; // bytes asked of one recv
    bool mIsIPC = false;
    std::string mIPCPath;
    std::unique_ptr<MemoryManager> mReceiveQueue;
    std::unique_ptr<MemoryManager> mSendQueue;
    bool mListening = false;
    bool mWritePending = false;

protected:
    void AdoptDescriptor(int fd) override;
    void CloseDescriptor() override;

private:
    struct Lookup;
    bool MakeDescriptor(int family);
    void ConnectTo(const sockaddr *address, socklen_t length);
    void FinishLookup();
    bool Receive(); // false after an error
    void Send();
    void UpdateWatch();

    DescriptorWatch mWatch{-1, kWatchNone};
    std::shared_ptr<Lookup> mLookup; // a name being looked up off the main thread
    bool mOwnsPath = false;          // this socket made the IPC file
    bool mStandardStream = false;    // mFD is standard input or output
};

} // namespace kelp
