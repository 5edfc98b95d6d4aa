/* The socket classes as compiled code calls them: TCPSocket, ServerSocket,
 * UDPSocket, Datagram, IPCSocket, NetworkInterface and Network.
 *
 * Failures of the network never raise: they set LastErrorCode and fire the
 * Error event.  A nil self does nothing and answers 0, nil or "".  The
 * getters take the property row's parameter as their second argument. */
#ifndef KELP_SOCKETS_H
#define KELP_SOCKETS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------- SocketCore, TCPSocket */

void RuntimeSocketConstructor(RuntimeObject *self);
void RuntimeSocketDestructor(RuntimeObject *self);
int32_t SocketPortGetter(RuntimeObject *self, int32_t parameter);
void SocketPortSetter(RuntimeObject *self, int32_t parameter, int32_t port);
KelpString socketLocalAddressGetter(RuntimeObject *self, int32_t parameter);
int32_t socketLastErrorCode(RuntimeObject *self, int32_t parameter);
uint8_t SocketIsConnected(RuntimeObject *self, int32_t parameter);
int32_t SocketGetHandle(RuntimeObject *self, int32_t parameter);
/* Close: no event. */
void socketClose(RuntimeObject *self);
void socketPoll(RuntimeObject *self);
void SocketPurge(RuntimeObject *self);
/* Connect of a TCPSocket (to Address and Port) or a UDPSocket (opens Port). */
void SocketConnect(RuntimeObject *self);
/* Connects to the given address and port without changing the properties. */
void socketDirectConnect(RuntimeObject *self, KelpString address, int32_t port);
/* The history of events since the last Reset; cleared by the reading. */
int32_t socketGetEvents(RuntimeObject *self);
KelpString socketRemoteAddressGetter(RuntimeObject *self, int32_t parameter);
int32_t socketPPPStatus(RuntimeObject *self, int32_t parameter);
void socketPPPConnect(RuntimeObject *self);
void socketPPPDisconnect(RuntimeObject *self);
int32_t SocketBytesAvailable(RuntimeObject *self, int32_t parameter);
int32_t TCPSocketBytesLeftToSend(RuntimeObject *self, int32_t parameter);
void SocketListen(RuntimeObject *self);
KelpString socketRead(RuntimeObject *self, int32_t count, RuntimeObject *encoding);
KelpString SocketReadAll(RuntimeObject *self, RuntimeObject *encoding);
KelpString socketLookahead(RuntimeObject *self, RuntimeObject *encoding);
void SocketWrite(RuntimeObject *self, KelpString text);
/* When connected: Close, then LostConnection and the Error event. */
void SocketDisconnect(RuntimeObject *self);
uint8_t TCPSocketEof(RuntimeObject *self);
uint8_t socketHadError(RuntimeObject *self);
void TCPSocketFlush(RuntimeObject *self);

/* The same for plug-ins, with no encoding. */
void pluginSocketListen(RuntimeObject *self);
KelpString pluginSocketRead(RuntimeObject *self, int32_t count);
KelpString pluginSocketReadAll(RuntimeObject *self);
KelpString pluginSocketLookahead(RuntimeObject *self);

/* Standard input and output as connected TCPSocket objects (owned). */
RuntimeObject *RuntimeStdInputAsSocket(void);
RuntimeObject *RuntimeStdOutputAsSocket(void);

/* ------------------------------------------------------------ ServerSocket */

void RuntimeServerSocketConstructor(RuntimeObject *self);
void RuntimeServerSocketDestructor(RuntimeObject *self);
int32_t ServerSocketPortGetter(RuntimeObject *self, int32_t parameter);
void ServerSocketPortSetter(RuntimeObject *self, int32_t parameter, int32_t port);
void ServerSocketSetMinSockets(RuntimeObject *self, int32_t parameter, int32_t count);
void ServerSocketSetMaxSockets(RuntimeObject *self, int32_t parameter, int32_t count);
uint8_t serverSocketIsListening(RuntimeObject *self, int32_t parameter);
int32_t ServerSocketGetHandle(RuntimeObject *self, int32_t parameter);
void ServerSocketListen(RuntimeObject *self);
/* StopListening. */
void ServerSocketClose(RuntimeObject *self);
/* The active connections in their order (owned array of TCPSocket). */
RuntimeArray *ServerSocketGetActiveSockets(RuntimeObject *self);

/* ------------------------------------------------------ UDPSocket, Datagram */

void RuntimeUDPSocketConstructor(RuntimeObject *self);
void RuntimeUDPSocketDestructor(RuntimeObject *self);
void UDPSocketRouterHops(RuntimeObject *self, int32_t parameter, int32_t hops);
void UDPSocketSetLoopback(RuntimeObject *self, int32_t parameter, uint8_t sendToSelf);
int32_t PacketsAvailableGetter(RuntimeObject *self, int32_t parameter);
int32_t UDPSocketPacketsLeftToSend(RuntimeObject *self, int32_t parameter);
KelpString UDPSocketGetBroadcast(RuntimeObject *self, int32_t parameter);
uint8_t SocketJoinMulticastGroup(RuntimeObject *self, KelpString group);
void SocketLeaveMulticastGroup(RuntimeObject *self, KelpString group);
void UDPSocketWrite(RuntimeObject *self, KelpString address, KelpString data);
void UDPSocketWriteDatagram(RuntimeObject *self, RuntimeObject *datagram);
/* The next received Datagram (owned), or nil. */
RuntimeObject *UDPReadDatagram(RuntimeObject *self, RuntimeObject *encoding);
void RuntimeDatagramFinalizer(RuntimeObject *self);

/* ---------------------------------------------------------------- IPCSocket */

void IPCSocketInitializer(RuntimeObject *self);
void IPCSocketFinalizer(RuntimeObject *self);
void IPCSocketConnect(RuntimeObject *self);
void IPCSocketListen(RuntimeObject *self);
void IPCSocketClose(RuntimeObject *self);
void IPCSocketPoll(RuntimeObject *self);
void IPCSocketFlush(RuntimeObject *self);
uint8_t IPCSocketEOF(RuntimeObject *self);
uint8_t IPCSocketHadError(RuntimeObject *self);
uint8_t IPCSocketIsConnected(RuntimeObject *self, int32_t parameter);
int32_t IPCSocketGetHandle(RuntimeObject *self, int32_t parameter);
int32_t IPCSocketLastErrorGetter(RuntimeObject *self, int32_t parameter);
KelpString IPCSocketRead(RuntimeObject *self, int32_t count, RuntimeObject *encoding);
KelpString IPCSocketReadAll(RuntimeObject *self, RuntimeObject *encoding);
KelpString IPCSocketLookahead(RuntimeObject *self, RuntimeObject *encoding);
void IPCSocketWrite(RuntimeObject *self, KelpString text);

/* -------------------------------------------------- interfaces and Network */

/* System.Network: a new Network object (owned). */
RuntimeObject *SystemGetNetwork(RuntimeObject *system);
/* Non-loopback IPv4 interfaces. */
int32_t SystemGetNetworkInterfaceCount(RuntimeObject *system);
/* The interface at index (-1: the first), or nil past the count. */
RuntimeObject *GetNetworkInterfaceObject(RuntimeObject *system, int32_t index);
void NetworkInterfaceCtor(RuntimeObject *self);
KelpString SystemGetIPAddress(RuntimeObject *networkInterface, int32_t parameter);
KelpString SystemGetSubnetMask(RuntimeObject *networkInterface, int32_t parameter);
KelpString SystemGetMACAddress(RuntimeObject *networkInterface, int32_t parameter);
/* Network.IsConnected: false on this platform. */
uint8_t NetworkSafeToConnect(RuntimeObject *self);
KelpString NetworkLookupIPAddress(RuntimeObject *self, KelpString name);
KelpString NetworkLookupDNSAddress(RuntimeObject *self, KelpString address);

#ifdef __cplusplus
}
#endif

#endif
