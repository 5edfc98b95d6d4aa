#pragma once
// The socket classes of the language and their records.
#include "sockets/socket_core.h"

#include <cstdint>
#include <string>

namespace kelp {

struct ObjectDefinition;

// TCPSocket, Socket and UDPSocket objects.
struct SocketControlRecord {
    SocketControlHead head;
    stringStorage *address; // TCP: where Connect goes
    int32_t routerHops;     // UDP: 1 at construction
    int32_t sendToSelf;     // UDP: true at construction
};

struct ServerSocketRecord {
    SocketControlHead head; // head.socket: the listening TCPSocketPosix
    int32_t minimum;        // MinimumSocketsAvailable, at least 1
    int32_t maximum;        // MaximumSocketsConnected, at least 1
};

struct NetworkInterfaceRecord {
    RuntimeObject object;
    int32_t index; // -1: the first non-loopback interface
};

ObjectDefinition *SocketCoreDefinition();
ObjectDefinition *TCPSocketDefinition();
ObjectDefinition *SocketDefinition();
ObjectDefinition *ServerSocketDefinition();
ObjectDefinition *NetworkInterfaceDefinition();
ObjectDefinition *NetworkDefinition();
ObjectDefinition *UDPSocketDefinition();
ObjectDefinition *DatagramDefinition();
ObjectDefinition *IPCSocketDefinition();

// Connect of a UDPSocket: opens its Port with the stored options.
void OpenDatagramSocket(RuntimeObject *self);

// A string of received bytes: the given TextEncoding's word, or none.
stringStorage *ReceivedText(const std::string &bytes, RuntimeObject *encoding);
std::string BytesOf(stringStorage *text);

} // namespace kelp
