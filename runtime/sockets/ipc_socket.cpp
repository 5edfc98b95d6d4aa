// IPCSocket: a stream over a Unix-domain path.  The object of the language
// holds a runtime socket whose delegate turns the socket's calls into the
// object's events; the socket is also polled once a pass as a pollable.
#include "sockets/socket_classes.h"
#include "sockets/socket_events.h"
#include "sockets/tcp_socket.h"

#include "encodings/text_encoding.h"
#include "exceptions/call_event.h"
#include "objects/definitions.h"
#include "runloop/pollable.h"

#include "kelp/objects.h"
#include "kelp/sockets.h"
#include "kelp/strings.h"

#include <cstddef>

namespace kelp {
namespace {

class IPCSocketEventManager : public TCPSocketDelegate, public Pollable {
public:
    explicit IPCSocketEventManager(RuntimeObject *owner) : mOwningControl(owner) {
        mSocket.mLifeHolder = owner;
        AddPollable(this);
    }
    void Connected(TCPSocket *) override { CallEvent(mOwningControl, Hooks().ipcConnected); }
    void DataAvailable(TCPSocket *) override { CallEvent(mOwningControl, Hooks().ipcData); }
    void Error(TCPSocket *, int32_t code) override;
    void Poll() override { mSocket.PollSafely(); }

    RuntimeObject *mOwningControl; // not counted: it owns this manager
    TCPSocketPosix mSocket{nullptr, SocketOwnerKind::kNone, this};
};

struct IPCSocketRecord {
    RuntimeObject object;
    IPCSocketEventManager *manager; // owned
    stringStorage *path;            // Path
    int32_t lastErrorCode;          // LastErrorCode
};

IPCSocketRecord *Record(RuntimeObject *self) { return reinterpret_cast<IPCSocketRecord *>(self); }
TCPSocketPosix *Socket(RuntimeObject *self) {
    return self && Record(self)->manager ? &Record(self)->manager->mSocket : nullptr;
}

void IPCSocketEventManager::Error(TCPSocket *, int32_t code) {
    Record(mOwningControl)->lastErrorCode = code;
    CallEvent(mOwningControl, Hooks().ipcError);
}

// Connect and Listen share their start: an empty path is an error event.
TCPSocketPosix *Prepare(RuntimeObject *self) {
    TCPSocketPosix *socket = Socket(self);
    if (!socket)
        return nullptr;
    Record(self)->lastErrorCode = 0;
    std::string path = BytesOf(Record(self)->path);
    if (path.empty()) {
        Record(self)->manager->Error(socket, kInvalidStateError);
        return nullptr;
    }
    socket->Disconnect(false);
    socket->Reset(true);
    socket->mIPCPath = path;
    socket->mIsIPC = true;
    return socket;
}

} // namespace

ObjectDefinition *IPCSocketDefinition() {
    static const TypeRecord encodingType{kTypeObjectOf, nullptr, nullptr, 0,
                                         &TextEncodingDefinition};
    static const PropertyRow properties[] = {
        {0, "Path", &kTypeString, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(IPCSocketRecord, path)},
        {0, "LastErrorCode", &kTypeInteger, KELP_ENTRY(IPCSocketLastErrorGetter), {}, 0},
        {0, "IsConnected", &kTypeBoolean, KELP_ENTRY(IPCSocketIsConnected), {}, 0},
        {0, "Handle", &kTypeInteger, KELP_ENTRY(IPCSocketGetHandle), {}, 0},
    };
    static const ParameterRow readParams[] = {{"byteCount", &kTypeInteger},
                                              {"encoding", &encodingType, "Nil"}};
    static const ParameterRow encodingParams[] = {{"encoding", &encodingType, "Nil"}};
    static const ParameterRow writeParams[] = {{"Text", &kTypeString}};
    static const MethodRow methods[] = {
        {"Connect", nullptr, nullptr, 0, KELP_ENTRY(IPCSocketConnect)},
        {"Listen", nullptr, nullptr, 0, KELP_ENTRY(IPCSocketListen)},
        {"Read", &kTypeString, readParams, 2, KELP_ENTRY(IPCSocketRead)},
        {"ReadAll", &kTypeString, encodingParams, 1, KELP_ENTRY(IPCSocketReadAll)},
        {"Lookahead", &kTypeString, encodingParams, 1, KELP_ENTRY(IPCSocketLookahead)},
        {"Write", nullptr, writeParams, 1, KELP_ENTRY(IPCSocketWrite)},
        {"Poll", nullptr, nullptr, 0, KELP_ENTRY(IPCSocketPoll)},
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(IPCSocketClose)},
        {"EOF", &kTypeBoolean, nullptr, 0, KELP_ENTRY(IPCSocketEOF)},
        {"ReadError", &kTypeBoolean, nullptr, 0, KELP_ENTRY(IPCSocketHadError)},
        {"WriteError", &kTypeBoolean, nullptr, 0, KELP_ENTRY(IPCSocketHadError)},
        {"Flush", nullptr, nullptr, 0, KELP_ENTRY(IPCSocketFlush)},
    };
    static const EventRow events[] = {
        {"Connected", "", nullptr, &Hooks().ipcConnected},
        {"DataAvailable", "", nullptr, &Hooks().ipcData},
        {"Error", "", nullptr, &Hooks().ipcError},
    };
    static const ClassDescription description = {
        .name = "IPCSocket",
        .instanceSize = sizeof(IPCSocketRecord),
        .initializer = KELP_ENTRY(IPCSocketInitializer),
        .finalizer = KELP_ENTRY(IPCSocketFinalizer),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" void IPCSocketInitializer(RuntimeObject *self) {
    if (self && !Record(self)->manager)
        Record(self)->manager = new IPCSocketEventManager(self);
}

extern "C" void IPCSocketFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    delete Record(self)->manager;
    Record(self)->manager = nullptr;
    RuntimeUnlockString(Record(self)->path);
    Record(self)->path = nullptr;
}

extern "C" void IPCSocketConnect(RuntimeObject *self) {
    RuntimeLockObject(self);
    if (TCPSocketPosix *socket = Prepare(self))
        socket->Connect("", 0);
    RuntimeUnlockObject(self);
}

extern "C" void IPCSocketListen(RuntimeObject *self) {
    RuntimeLockObject(self);
    if (TCPSocketPosix *socket = Prepare(self))
        socket->Listen(0);
    RuntimeUnlockObject(self);
}

extern "C" void IPCSocketClose(RuntimeObject *self) {
    if (TCPSocketPosix *socket = Socket(self)) {
        socket->Disconnect(false);
        socket->Reset(true);
    }
}

extern "C" void IPCSocketPoll(RuntimeObject *self) {
    if (TCPSocketPosix *socket = Socket(self))
        socket->Poll();
}

extern "C" void IPCSocketFlush(RuntimeObject *self) {
    if (TCPSocketPosix *socket = Socket(self)) {
        socket->Poll();
        socket->ClearSendBuffer();
    }
}

extern "C" uint8_t IPCSocketEOF(RuntimeObject *self) {
    TCPSocketPosix *socket = Socket(self);
    return !socket || (!socket->mConnected && socket->BytesAvailable() == 0) ? 1 : 0;
}

extern "C" uint8_t IPCSocketHadError(RuntimeObject *self) {
    return self && Record(self)->lastErrorCode != 0 ? 1 : 0;
}

extern "C" uint8_t IPCSocketIsConnected(RuntimeObject *self, int32_t) {
    TCPSocketPosix *socket = Socket(self);
    return socket && socket->mConnected ? 1 : 0;
}

extern "C" int32_t IPCSocketGetHandle(RuntimeObject *self, int32_t) {
    TCPSocketPosix *socket = Socket(self);
    return socket ? socket->GetHandle() : -1;
}

extern "C" int32_t IPCSocketLastErrorGetter(RuntimeObject *self, int32_t) {
    return self ? Record(self)->lastErrorCode : 0;
}

extern "C" KelpString IPCSocketRead(RuntimeObject *self, int32_t count, RuntimeObject *encoding) {
    TCPSocketPosix *socket = Socket(self);
    return socket ? ReceivedText(socket->Read(count), encoding) : nullptr;
}

extern "C" KelpString IPCSocketReadAll(RuntimeObject *self, RuntimeObject *encoding) {
    TCPSocketPosix *socket = Socket(self);
    return socket ? ReceivedText(socket->ReadAll(), encoding) : nullptr;
}

extern "C" KelpString IPCSocketLookahead(RuntimeObject *self, RuntimeObject *encoding) {
    TCPSocketPosix *socket = Socket(self);
    return socket ? ReceivedText(socket->Lookahead(), encoding) : nullptr;
}

extern "C" void IPCSocketWrite(RuntimeObject *self, KelpString text) {
    TCPSocketPosix *socket = Socket(self);
    if (socket && text && text->length > 0)
        socket->Write(text->buffer + 1, text->length);
}
