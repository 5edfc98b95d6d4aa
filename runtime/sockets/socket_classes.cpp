#include "sockets/socket_classes.h"

#include "sockets/address_text.h"
#include "sockets/socket_events.h"
#include "sockets/tcp_socket.h"

#include "encodings/text_encoding.h"
#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/arrays.h"
#include "kelp/objects.h"
#include "kelp/sockets.h"
#include "kelp/strings.h"

#include <unistd.h>

#include <cstddef>
#include <strings.h>

namespace kelp {

SocketHooks &Hooks() {
    static SocketHooks hooks;
    return hooks;
}

namespace {

SocketControlHead *Head(RuntimeObject *self) { return reinterpret_cast<SocketControlHead *>(self); }
SocketControlRecord *Control(RuntimeObject *self) {
    return reinterpret_cast<SocketControlRecord *>(self);
}
ServerSocketRecord *Server(RuntimeObject *self) {
    return reinterpret_cast<ServerSocketRecord *>(self);
}
// The stream socket of a TCPSocket or ServerSocket; null for others.
TCPSocketPosix *Stream(RuntimeObject *self) {
    return self ? dynamic_cast<TCPSocketPosix *>(Head(self)->socket) : nullptr;
}

stringStorage *Text(const std::string &bytes) {
    return string::FromBytes(bytes.data(), static_cast<long>(bytes.size()), kEncodingASCII)
        .ExtractStringStorage();
}

const TypeRecord kEncodingType{kTypeObjectOf, nullptr, nullptr, 0, &TextEncodingDefinition};
const TypeRecord kInterfaceType{kTypeObjectOf, nullptr, nullptr, 0, &NetworkInterfaceDefinition};

} // namespace

stringStorage *ReceivedText(const std::string &bytes, RuntimeObject *encoding) {
    uint32_t word = encoding ? WordOfEncodingObject(encoding) : kEncodingUnknown;
    return string::FromBytes(bytes.data(), static_cast<long>(bytes.size()), word)
        .ExtractStringStorage();
}

std::string BytesOf(stringStorage *text) {
    return text && text->length > 0 ? std::string(reinterpret_cast<const char *>(text->buffer + 1),
                                                  static_cast<size_t>(text->length))
                                    : std::string();
}

int32_t ServerMinimum(RuntimeObject *server) { return server ? Server(server)->minimum : 1; }
int32_t ServerMaximum(RuntimeObject *server) { return server ? Server(server)->maximum : 1; }

ObjectDefinition *SocketCoreDefinition() {
    static const PropertyRow properties[] = {
        {0, "Port", &kTypeInteger, KELP_ENTRY(SocketPortGetter), KELP_ENTRY(SocketPortSetter), 0},
        {0, "LocalAddress", &kTypeString, KELP_ENTRY(socketLocalAddressGetter), {}, 0},
        {0, "LastErrorCode", &kTypeInteger, KELP_ENTRY(socketLastErrorCode), {}, 0},
        {0, "IsConnected", &kTypeBoolean, KELP_ENTRY(SocketIsConnected), {}, 0},
        {0, "NetworkInterface", &kInterfaceType, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(SocketControlHead, networkInterface)},
        {0, "Handle", &kTypeInteger, KELP_ENTRY(SocketGetHandle), {}, 0},
        {0, "OpenDriverError", &kTypeInteger, {}, {}, kOpenDriverError, 0, true},
        {0, "LostConnection", &kTypeInteger, {}, {}, kLostConnection, 0, true},
        {0, "NameResolutionError", &kTypeInteger, {}, {}, kNameResolutionError, 0, true},
        {0, "AddressInUseError", &kTypeInteger, {}, {}, kAddressInUseError, 0, true},
        {0, "InvalidStateError", &kTypeInteger, {}, {}, kInvalidStateError, 0, true},
        {0, "InvalidPortError", &kTypeInteger, {}, {}, kInvalidPortError, 0, true},
        {0, "OutOfMemoryError", &kTypeInteger, {}, {}, kOutOfMemoryError, 0, true},
    };
    static const MethodRow methods[] = {
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(socketClose)},
        {"Poll", nullptr, nullptr, 0, KELP_ENTRY(socketPoll)},
        {"Purge", nullptr, nullptr, 0, KELP_ENTRY(SocketPurge)},
        {"Connect", nullptr, nullptr, 0, KELP_ENTRY(SocketConnect)},
    };
    static const EventRow events[] = {
        {"DataAvailable", "", nullptr, &Hooks().dataAvailable},
        {"Error", "", nullptr, &Hooks().error},
        {"SendComplete", "userAborted As Boolean", nullptr, &Hooks().sendComplete},
    };
    static const ClassDescription description = {
        .name = "SocketCore",
        .instanceSize = sizeof(SocketControlRecord),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *TCPSocketDefinition() {
    static const PropertyRow properties[] = {
        {0, "Address", &kTypeString, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(SocketControlRecord, address)},
        {0, "RemoteAddress", &kTypeString, KELP_ENTRY(socketRemoteAddressGetter), {}, 0},
        {0, "PPPStatus", &kTypeInteger, KELP_ENTRY(socketPPPStatus), {}, 0},
        {0, "BytesAvailable", &kTypeInteger, KELP_ENTRY(SocketBytesAvailable), {}, 0},
        {0, "BytesLeftToSend", &kTypeInteger, KELP_ENTRY(TCPSocketBytesLeftToSend), {}, 0},
    };
    static const ParameterRow readParams[] = {{"byteCount", &kTypeInteger},
                                              {"encoding", &kEncodingType, "Nil"}};
    static const ParameterRow encodingParams[] = {{"encoding", &kEncodingType, "Nil"}};
    static const ParameterRow writeParams[] = {{"Text", &kTypeString}};
    static const MethodRow methods[] = {
        {"Listen", nullptr, nullptr, 0, KELP_ENTRY(SocketListen)},
        {"Read", &kTypeString, readParams, 2, KELP_ENTRY(socketRead)},
        {"ReadAll", &kTypeString, encodingParams, 1, KELP_ENTRY(SocketReadAll)},
        {"Lookahead", &kTypeString, encodingParams, 1, KELP_ENTRY(socketLookahead)},
        {"Write", nullptr, writeParams, 1, KELP_ENTRY(SocketWrite)},
        {"Disconnect", nullptr, nullptr, 0, KELP_ENTRY(SocketDisconnect)},
        {"EOF", &kTypeBoolean, nullptr, 0, KELP_ENTRY(TCPSocketEof)},
        {"ReadError", &kTypeBoolean, nullptr, 0, KELP_ENTRY(socketHadError)},
        {"WriteError", &kTypeBoolean, nullptr, 0, KELP_ENTRY(socketHadError)},
        {"Flush", nullptr, nullptr, 0, KELP_ENTRY(TCPSocketFlush)},
        {"PPPConnect", nullptr, nullptr, 0, KELP_ENTRY(socketPPPConnect)},
        {"PPPDisconnect", nullptr, nullptr, 0, KELP_ENTRY(socketPPPDisconnect)},
    };
    static const EventRow events[] = {
        {"Connected", "", nullptr, &Hooks().connected},
        {"SendProgress", "bytesSent As Integer, bytesLeft As Integer", "Boolean",
         &Hooks().sendProgress},
    };
    static const ClassDescription description = {
        .name = "TCPSocket",
        .super = &SocketCoreDefinition,
        .instanceSize = sizeof(SocketControlRecord),
        .initializer = KELP_ENTRY(RuntimeSocketConstructor),
        .finalizer = KELP_ENTRY(RuntimeSocketDestructor),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *SocketDefinition() {
    static const ClassDescription description = {
        .name = "Socket",
        .super = &TCPSocketDefinition,
        .instanceSize = sizeof(SocketControlRecord),
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *ServerSocketDefinition() {
    static const TypeRecord tcpType{kTypeObjectOf, nullptr, nullptr, 0, &TCPSocketDefinition};
    static const TypeRecord tcpArray{kTypeArray, nullptr, &tcpType, 1};
    static const PropertyRow properties[] = {
        {0, "Port", &kTypeInteger, KELP_ENTRY(ServerSocketPortGetter),
         KELP_ENTRY(ServerSocketPortSetter), 0},
        {0, "MinimumSocketsAvailable", &kTypeInteger, KELP_ENTRY(intGetter),
         KELP_ENTRY(ServerSocketSetMinSockets), offsetof(ServerSocketRecord, minimum)},
        {0, "MaximumSocketsConnected", &kTypeInteger, KELP_ENTRY(intGetter),
         KELP_ENTRY(ServerSocketSetMaxSockets), offsetof(ServerSocketRecord, maximum)},
        {0, "LocalAddress", &kTypeString, KELP_ENTRY(socketLocalAddressGetter), {}, 0},
        {0, "IsListening", &kTypeBoolean, KELP_ENTRY(serverSocketIsListening), {}, 0},
        {0, "NetworkInterface", &kInterfaceType, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(SocketControlHead, networkInterface)},
        {0, "Handle", &kTypeInteger, KELP_ENTRY(ServerSocketGetHandle), {}, 0},
    };
    static const MethodRow methods[] = {
        {"Listen", nullptr, nullptr, 0, KELP_ENTRY(ServerSocketListen)},
        {"StopListening", nullptr, nullptr, 0, KELP_ENTRY(ServerSocketClose)},
        {"ActiveConnections", &tcpArray, nullptr, 0, KELP_ENTRY(ServerSocketGetActiveSockets)},
    };
    static const EventRow events[] = {
        {"AddSocket", "", "TCPSocket", &Hooks().addSocket},
        {"Error", "ErrorCode As Integer", nullptr, &Hooks().serverError},
    };
    static const ClassDescription description = {
        .name = "ServerSocket",
        .instanceSize = sizeof(ServerSocketRecord),
        .initializer = KELP_ENTRY(RuntimeServerSocketConstructor),
        .finalizer = KELP_ENTRY(RuntimeServerSocketDestructor),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

// ------------------------------------------------------------- SocketCore

extern "C" void RuntimeSocketConstructor(RuntimeObject *self) {
    if (self && !Head(self)->socket)
        Head(self)->socket = new TCPSocketPosix(self, SocketOwnerKind::kTCPSocket);
}

extern "C" void RuntimeSocketDestructor(RuntimeObject *self) {
    if (!self)
        return;
    delete Head(self)->socket;
    Head(self)->socket = nullptr;
    RuntimeUnlockObject(Head(self)->networkInterface);
    Head(self)->networkInterface = nullptr;
    RuntimeUnlockString(Control(self)->address);
    Control(self)->address = nullptr;
}

extern "C" int32_t SocketPortGetter(RuntimeObject *self, int32_t) {
    if (!self || !Head(self)->socket)
        return 0;
    int32_t local = Head(self)->socket->GetLocalPort();
    return local != -1 ? local : Head(self)->port;
}

extern "C" void SocketPortSetter(RuntimeObject *self, int32_t, int32_t port) {
    if (self)
        Head(self)->port = port;
}

extern "C" KelpString socketLocalAddressGetter(RuntimeObject *self, int32_t) {
    if (!self || !Head(self)->socket)
        return nullptr;
    return Text(DottedText(InterfaceAddress(Head(self)->socket->InterfaceIndex())));
}

extern "C" int32_t socketLastErrorCode(RuntimeObject *self, int32_t) {
    return self ? Head(self)->lastErrorCode : 0;
}

extern "C" uint8_t SocketIsConnected(RuntimeObject *self, int32_t) {
    return self && Head(self)->socket && Head(self)->socket->mConnected ? 1 : 0;
}

extern "C" int32_t SocketGetHandle(RuntimeObject *self, int32_t) {
    return self && Head(self)->socket ? Head(self)->socket->GetHandle() : -1;
}

extern "C" void socketClose(RuntimeObject *self) {
    if (!self || !Head(self)->socket)
        return;
    RuntimeLockObject(self);
    Head(self)->socket->Disconnect(false);
    Head(self)->socket->Reset(true);
    RuntimeUnlockObject(self);
}

extern "C" void socketPoll(RuntimeObject *self) {
    if (self && Head(self)->socket)
        Head(self)->socket->Poll();
}

extern "C" void SocketPurge(RuntimeObject *self) {
    if (self && Head(self)->socket)
        Head(self)->socket->Purge();
}

namespace {

void ConnectTCP(RuntimeObject *self, const std::string &address, int32_t port) {
    TCPSocketPosix *socket = Stream(self);
    if (!socket)
        return;
    RuntimeLockObject(self);
    if (socket->mEvents != 0)
        socket->Poll();
    socket->Disconnect(false);
    socket->Reset(true);
    std::string target = strcasecmp(address.c_str(), "localhost") == 0 ? "127.0.0.1" : address;
    Head(self)->lastErrorCode = 0;
    socket->Connect(target, port);
    RuntimeUnlockObject(self);
}

} // namespace

extern "C" void SocketConnect(RuntimeObject *self) {
    if (!self || !Head(self)->socket)
        return;
    if (!Stream(self)) {
        OpenDatagramSocket(self);
        return;
    }
    ConnectTCP(self, BytesOf(Control(self)->address), Head(self)->port);
}

extern "C" void socketDirectConnect(RuntimeObject *self, KelpString address, int32_t port) {
    if (self && Stream(self))
        ConnectTCP(self, BytesOf(address), port);
}

extern "C" int32_t socketGetEvents(RuntimeObject *self) {
    return self && Head(self)->socket ? static_cast<int32_t>(Head(self)->socket->TakeEvents()) : 0;
}

extern "C" KelpString socketRemoteAddressGetter(RuntimeObject *self, int32_t) {
    TCPSocketPosix *socket = Stream(self);
    return socket ? Text(socket->RemoteAddress()) : nullptr;
}

// Dial-up links are the system's business on this platform.
extern "C" int32_t socketPPPStatus(RuntimeObject *, int32_t) { return 0; }
extern "C" void socketPPPConnect(RuntimeObject *) {}
extern "C" void socketPPPDisconnect(RuntimeObject *) {}

extern "C" int32_t SocketBytesAvailable(RuntimeObject *self, int32_t) {
    TCPSocketPosix *socket = Stream(self);
    return socket ? static_cast<int32_t>(socket->BytesAvailable()) : 0;
}

extern "C" int32_t TCPSocketBytesLeftToSend(RuntimeObject *self, int32_t) {
    TCPSocketPosix *socket = Stream(self);
    return socket ? static_cast<int32_t>(socket->BytesLeftToSend()) : 0;
}

extern "C" void SocketListen(RuntimeObject *self) {
    TCPSocketPosix *socket = Stream(self);
    if (!socket)
        return;
    RuntimeLockObject(self);
    if (socket->mEvents != 0)
        socket->Poll();
    socket->Disconnect(false);
    socket->Reset(true);
    Head(self)->lastErrorCode = 0;
    socket->Listen(Head(self)->port);
    RuntimeUnlockObject(self);
}

extern "C" KelpString socketRead(RuntimeObject *self, int32_t count, RuntimeObject *encoding) {
    TCPSocketPosix *socket = Stream(self);
    return socket ? ReceivedText(socket->Read(count), encoding) : nullptr;
}

extern "C" KelpString SocketReadAll(RuntimeObject *self, RuntimeObject *encoding) {
    TCPSocketPosix *socket = Stream(self);
    return socket ? ReceivedText(socket->ReadAll(), encoding) : nullptr;
}

extern "C" KelpString socketLookahead(RuntimeObject *self, RuntimeObject *encoding) {
    TCPSocketPosix *socket = Stream(self);
    return socket ? ReceivedText(socket->Lookahead(), encoding) : nullptr;
}

extern "C" void SocketWrite(RuntimeObject *self, KelpString text) {
    TCPSocketPosix *socket = Stream(self);
    if (socket && text && text->length > 0)
        socket->Write(text->buffer + 1, text->length);
}

extern "C" void SocketDisconnect(RuntimeObject *self) {
    TCPSocketPosix *socket = Stream(self);
    if (!socket)
        return;
    RuntimeLockObject(self);
    bool wasConnected = socket->mConnected;
    socket->Disconnect(false);
    socket->Reset(true);
    if (wasConnected) {
        socket->mLastError = kLostConnection;
        socket->mPendingError = true;
        socket->SetControlError(kLostConnection);
        socket->ProcessEvents();
    }
    RuntimeUnlockObject(self);
}

extern "C" uint8_t TCPSocketEof(RuntimeObject *self) {
    TCPSocketPosix *socket = Stream(self);
    return !socket || (!socket->mConnected && socket->BytesAvailable() == 0) ? 1 : 0;
}

extern "C" uint8_t socketHadError(RuntimeObject *self) {
    return self && Head(self)->lastErrorCode != 0 ? 1 : 0;
}

extern "C" void TCPSocketFlush(RuntimeObject *self) {
    TCPSocketPosix *socket = Stream(self);
    if (!socket)
        return;
    RuntimeLockObject(self);
    socket->Flush();
    RuntimeUnlockObject(self);
}

extern "C" void pluginSocketListen(RuntimeObject *self) { SocketListen(self); }
extern "C" KelpString pluginSocketRead(RuntimeObject *self, int32_t count) {
    return socketRead(self, count, nullptr);
}
extern "C" KelpString pluginSocketReadAll(RuntimeObject *self) {
    return SocketReadAll(self, nullptr);
}
extern "C" KelpString pluginSocketLookahead(RuntimeObject *self) {
    return socketLookahead(self, nullptr);
}

namespace {
RuntimeObject *StandardStreamSocket(int fd) {
    RuntimeObject *object = NewObjectOfDefinition(TCPSocketDefinition());
    if (TCPSocketPosix *socket = Stream(object))
        socket->AdoptStandardStream(fd);
    return object;
}
} // namespace

extern "C" RuntimeObject *RuntimeStdInputAsSocket(void) { return StandardStreamSocket(0); }
extern "C" RuntimeObject *RuntimeStdOutputAsSocket(void) { return StandardStreamSocket(1); }

// ----------------------------------------------------------- ServerSocket

extern "C" void RuntimeServerSocketConstructor(RuntimeObject *self) {
    if (!self)
        return;
    ServerSocketRecord *server = Server(self);
    if (server->minimum < 1)
        server->minimum = 1;
    if (server->maximum < 1)
        server->maximum = 1;
    if (!server->head.socket)
        server->head.socket = new TCPSocketPosix(self, SocketOwnerKind::kServerSocket);
}

extern "C" void RuntimeServerSocketDestructor(RuntimeObject *self) {
    if (!self)
        return;
    delete Head(self)->socket;
    Head(self)->socket = nullptr;
    RuntimeUnlockObject(Head(self)->networkInterface);
    Head(self)->networkInterface = nullptr;
}

extern "C" int32_t ServerSocketPortGetter(RuntimeObject *self, int32_t) {
    return self && Head(self)->socket ? Head(self)->socket->GetLocalPort() : -1;
}

extern "C" void ServerSocketPortSetter(RuntimeObject *self, int32_t, int32_t port) {
    if (self)
        Head(self)->port = port;
}

extern "C" void ServerSocketSetMinSockets(RuntimeObject *self, int32_t, int32_t count) {
    if (self)
        Server(self)->minimum = count < 1 ? 1 : count;
}

extern "C" void ServerSocketSetMaxSockets(RuntimeObject *self, int32_t, int32_t count) {
    if (!self)
        return;
    Server(self)->maximum = count < 1 ? 1 : count;
    // Before Listen the record starts from the new maximum.
    TCPSocketPosix *socket = Stream(self);
    if (socket && socket->mServer && !socket->mServerListening)
        socket->mServer->remaining = Server(self)->maximum;
}

extern "C" uint8_t serverSocketIsListening(RuntimeObject *self, int32_t) {
    TCPSocketPosix *socket = Stream(self);
    return socket && socket->mServerListening ? 1 : 0;
}

extern "C" int32_t ServerSocketGetHandle(RuntimeObject *self, int32_t) {
    return SocketGetHandle(self, 0);
}

extern "C" void ServerSocketListen(RuntimeObject *self) {
    TCPSocketPosix *socket = Stream(self);
    if (!socket)
        return;
    RuntimeLockObject(self);
    if (socket->mLastError != 0 || socket->mListening) {
        socket->Disconnect(false);
        socket->Reset(true);
    }
    socket->Listen(Head(self)->port);
    RuntimeUnlockObject(self);
}

extern "C" void ServerSocketClose(RuntimeObject *self) {
    TCPSocketPosix *socket = Stream(self);
    if (!socket)
        return;
    RuntimeLockObject(self);
    socket->Disconnect(false);
    socket->Reset(true);
    RuntimeUnlockObject(self);
}

extern "C" RuntimeArray *ServerSocketGetActiveSockets(RuntimeObject *self) {
    TCPSocketPosix *socket = Stream(self);
    size_t count = socket && socket->mServer ? socket->mServer->activeList.size() : 0;
    RuntimeArray *array = CreateArray(1, kArrayObject, static_cast<int32_t>(count) - 1);
    if (!array)
        return nullptr;
    auto set = reinterpret_cast<kelp_array1_set_obj>(array->operations[kArraySlotSet]);
    for (size_t i = 0; i < count; ++i)
        set(array, socket->mServer->activeList[i], static_cast<int32_t>(i));
    return array;
}
