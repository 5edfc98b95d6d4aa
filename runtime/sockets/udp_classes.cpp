// UDPSocket and Datagram of the language.
#include "sockets/socket_classes.h"
#include "sockets/socket_events.h"
#include "sockets/udp_socket.h"

#include "encodings/text_encoding.h"
#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/objects.h"
#include "kelp/sockets.h"
#include "kelp/strings.h"

#include <cstddef>
#include <cstdlib>

namespace kelp {

namespace {

struct DatagramRecord {
    RuntimeObject object;
    stringStorage *address; // Address
    stringStorage *data;    // Data
    int32_t port;           // Port
};

SocketControlRecord *Control(RuntimeObject *self) {
    return reinterpret_cast<SocketControlRecord *>(self);
}
UDPSocketPosix *Datagrams(RuntimeObject *self) {
    return self ? dynamic_cast<UDPSocketPosix *>(Control(self)->head.socket) : nullptr;
}

} // namespace

void OpenDatagramSocket(RuntimeObject *self) {
    UDPSocketPosix *socket = Datagrams(self);
    if (!socket)
        return;
    RuntimeLockObject(self);
    Control(self)->head.lastErrorCode = 0;
    if (socket->mConnected) {
        socket->Disconnect(false);
        socket->Reset(true);
    }
    socket->Open(Control(self)->head.port);
    if (socket->mConnected) {
        socket->SetSendToSelf(Control(self)->sendToSelf != 0);
        socket->SetRouterHops(Control(self)->routerHops);
    }
    RuntimeUnlockObject(self);
}

namespace {

// The destination of a datagram with port 0: "address:port" in its address
// text, else the socket's own Port.
void Send(RuntimeObject *self, DatagramData datagram) {
    UDPSocketPosix *socket = Datagrams(self);
    if (!socket)
        return;
    if (datagram.port == 0) {
        size_t colon = datagram.address.rfind(':');
        if (colon != std::string::npos) {
            datagram.port = std::atoi(datagram.address.c_str() + colon + 1);
            datagram.address.resize(colon);
        } else {
            datagram.port = Control(self)->head.port;
        }
    }
    RuntimeLockObject(self);
    socket->Send(datagram);
    RuntimeUnlockObject(self);
}

} // namespace

ObjectDefinition *DatagramDefinition() {
    static const PropertyRow properties[] = {
        {0, "Address", &kTypeString, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(DatagramRecord, address)},
        {0, "Data", &kTypeString, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(DatagramRecord, data)},
        {0, "Port", &kTypeInteger, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(DatagramRecord, port)},
    };
    static const ClassDescription description = {
        .name = "Datagram",
        .instanceSize = sizeof(DatagramRecord),
        .finalizer = KELP_ENTRY(RuntimeDatagramFinalizer),
        .properties = properties,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *UDPSocketDefinition() {
    static const TypeRecord encodingType{kTypeObjectOf, nullptr, nullptr, 0,
                                         &TextEncodingDefinition};
    static const TypeRecord datagramType{kTypeObjectOf, nullptr, nullptr, 0, &DatagramDefinition};
    static const PropertyRow properties[] = {
        {0, "RouterHops", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(UDPSocketRouterHops),
         offsetof(SocketControlRecord, routerHops)},
        {0, "SendToSelf", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_ENTRY(UDPSocketSetLoopback),
         offsetof(SocketControlRecord, sendToSelf)},
        {0, "PacketsAvailable", &kTypeInteger, KELP_ENTRY(PacketsAvailableGetter), {}, 0},
        {0, "PacketsLeftToSend", &kTypeInteger, KELP_ENTRY(UDPSocketPacketsLeftToSend), {}, 0},
        {0, "BroadcastAddress", &kTypeString, KELP_ENTRY(UDPSocketGetBroadcast), {}, 0},
    };
    static const ParameterRow groupParams[] = {{"Group", &kTypeString}};
    static const ParameterRow writeParams[] = {{"Address", &kTypeString}, {"Data", &kTypeString}};
    static const ParameterRow datagramParams[] = {{"data", &datagramType}};
    static const ParameterRow readParams[] = {{"encoding", &encodingType, "Nil"}};
    static const MethodRow methods[] = {
        {"JoinMulticastGroup", &kTypeBoolean, groupParams, 1, KELP_ENTRY(SocketJoinMulticastGroup)},
        {"LeaveMulticastGroup", nullptr, groupParams, 1, KELP_ENTRY(SocketLeaveMulticastGroup)},
        {"Write", nullptr, writeParams, 2, KELP_ENTRY(UDPSocketWrite)},
        {"Write", nullptr, datagramParams, 1, KELP_ENTRY(UDPSocketWriteDatagram)},
        {"Read", &datagramType, readParams, 1, KELP_ENTRY(UDPReadDatagram)},
    };
    static const ClassDescription description = {
        .name = "UDPSocket",
        .super = &SocketCoreDefinition,
        .instanceSize = sizeof(SocketControlRecord),
        .initializer = KELP_ENTRY(RuntimeUDPSocketConstructor),
        .finalizer = KELP_ENTRY(RuntimeUDPSocketDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" void RuntimeUDPSocketConstructor(RuntimeObject *self) {
    if (!self || Control(self)->head.socket)
        return;
    Control(self)->routerHops = 1;
    Control(self)->sendToSelf = 1;
    Control(self)->head.socket = new UDPSocketPosix(self);
}

extern "C" void RuntimeUDPSocketDestructor(RuntimeObject *self) { RuntimeSocketDestructor(self); }

extern "C" void UDPSocketRouterHops(RuntimeObject *self, int32_t, int32_t hops) {
    if (!self)
        return;
    Control(self)->routerHops = hops;
    if (UDPSocketPosix *socket = Datagrams(self))
        socket->SetRouterHops(hops);
}

extern "C" void UDPSocketSetLoopback(RuntimeObject *self, int32_t, uint8_t sendToSelf) {
    if (!self)
        return;
    Control(self)->sendToSelf = sendToSelf ? 1 : 0;
    if (UDPSocketPosix *socket = Datagrams(self))
        socket->SetSendToSelf(sendToSelf != 0);
}

extern "C" int32_t PacketsAvailableGetter(RuntimeObject *self, int32_t) {
    UDPSocketPosix *socket = Datagrams(self);
    return socket ? socket->PacketsAvailable() : 0;
}

extern "C" int32_t UDPSocketPacketsLeftToSend(RuntimeObject *self, int32_t) {
    UDPSocketPosix *socket = Datagrams(self);
    return socket ? socket->PacketsLeftToSend() : 0;
}

extern "C" KelpString UDPSocketGetBroadcast(RuntimeObject *self, int32_t) {
    UDPSocketPosix *socket = Datagrams(self);
    if (!socket)
        return nullptr;
    return string(socket->BroadcastAddress().c_str()).ExtractStringStorage();
}

extern "C" uint8_t SocketJoinMulticastGroup(RuntimeObject *self, KelpString group) {
    UDPSocketPosix *socket = Datagrams(self);
    return socket && socket->JoinGroup(BytesOf(group)) ? 1 : 0;
}

extern "C" void SocketLeaveMulticastGroup(RuntimeObject *self, KelpString group) {
    if (UDPSocketPosix *socket = Datagrams(self))
        socket->LeaveGroup(BytesOf(group));
}

extern "C" void UDPSocketWrite(RuntimeObject *self, KelpString address, KelpString data) {
    Send(self, {BytesOf(address), 0, BytesOf(data)});
}

extern "C" void UDPSocketWriteDatagram(RuntimeObject *self, RuntimeObject *datagram) {
    if (!datagram)
        return;
    auto *record = reinterpret_cast<DatagramRecord *>(datagram);
    Send(self, {BytesOf(record->address), record->port, BytesOf(record->data)});
}

extern "C" RuntimeObject *UDPReadDatagram(RuntimeObject *self, RuntimeObject *encoding) {
    UDPSocketPosix *socket = Datagrams(self);
    DatagramData received;
    if (!socket || !socket->Receive(&received))
        return nullptr;
    RuntimeObject *object = NewObjectOfDefinition(DatagramDefinition());
    if (!object)
        return nullptr;
    auto *record = reinterpret_cast<DatagramRecord *>(object);
    record->address = string(received.address.c_str()).ExtractStringStorage();
    record->data = ReceivedText(received.data, encoding);
    record->port = received.port;
    return object;
}

extern "C" void RuntimeDatagramFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    auto *record = reinterpret_cast<DatagramRecord *>(self);
    RuntimeUnlockString(record->address);
    RuntimeUnlockString(record->data);
    record->address = record->data = nullptr;
}
