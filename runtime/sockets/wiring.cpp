#include "sockets/wiring.h"

#include "objects/definitions.h"
#include "runloop/debugger_slots.h"
#include "runloop/main_loop.h"
#include "sockets/socket_classes.h"
#include "sockets/socket_core.h"

extern "C" {
int32_t socketPPPStatus(RuntimeObject *, int32_t);
void socketPPPConnect(RuntimeObject *);
void socketPPPDisconnect(RuntimeObject *);
RuntimeObject *SystemGetNetwork(RuntimeObject *);
int32_t SystemGetNetworkInterfaceCount(RuntimeObject *);
RuntimeObject *GetNetworkInterfaceObject(RuntimeObject *, int32_t);
}

namespace kelp {

ObjectDefinition *SystemDefinition(); // system/system_object.cpp

namespace {

// System stands below the sockets, so its network members come from here.
void AddNetworkRowsToSystem() {
    static const TypeRecord networkType{kTypeObjectOf, nullptr, nullptr, 0, &NetworkDefinition};
    static const TypeRecord interfaceType{kTypeObjectOf, nullptr, nullptr, 0,
                                          &NetworkInterfaceDefinition};
    static const PropertyRow properties[] = {
        {0, "PPPStatus", &kTypeInteger, KELP_ENTRY(socketPPPStatus), {}, 0},
        {0,
         "NetworkInterfaceCount",
         &kTypeInteger,
         KELP_ENTRY(SystemGetNetworkInterfaceCount),
         {},
         0},
        {0, "Network", &networkType, KELP_ENTRY(SystemGetNetwork), {}, 0},
    };
    static const ParameterRow indexParams[] = {{"index", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"PPPConnect", nullptr, nullptr, 0, KELP_ENTRY(socketPPPConnect)},
        {"PPPDisconnect", nullptr, nullptr, 0, KELP_ENTRY(socketPPPDisconnect)},
        {"GetNetworkInterface", &interfaceType, indexParams, 1,
         KELP_ENTRY(GetNetworkInterfaceObject)},
    };
    ExtendDefinition(SystemDefinition(), properties, methods);
}

} // namespace

void WireSockets() {
    for (DefinitionAccessor accessor :
         {&SocketCoreDefinition, &TCPSocketDefinition, &SocketDefinition, &ServerSocketDefinition,
          &NetworkInterfaceDefinition, &NetworkDefinition, &IPCSocketDefinition,
          &UDPSocketDefinition, &DatagramDefinition})
        AddIntrinsicClassAccessor(accessor);
    SetSocketPoller([](bool delegatesOnly) { PollSockets(delegatesOnly); });
    // A debugger stop keeps socket events for the program's objects pending.
    SetSocketEventHold([](bool held) { AdjustSocketEventSuppression(held ? 1 : -1); });
    AddNetworkRowsToSystem();
}

} // namespace kelp
