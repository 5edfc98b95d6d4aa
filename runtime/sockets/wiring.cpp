#include "sockets/wiring.h"

#include "objects/definitions.h"
#include "runloop/main_loop.h"
#include "sockets/socket_classes.h"
#include "sockets/socket_core.h"

namespace kelp {

void WireSockets() {
    for (DefinitionAccessor accessor :
         {&SocketCoreDefinition, &TCPSocketDefinition, &SocketDefinition, &ServerSocketDefinition,
          &NetworkInterfaceDefinition, &NetworkDefinition, &IPCSocketDefinition,
          &UDPSocketDefinition, &DatagramDefinition})
        AddIntrinsicClassAccessor(accessor);
    SetSocketPoller([](bool delegatesOnly) { PollSockets(delegatesOnly); });
}

} // namespace kelp
