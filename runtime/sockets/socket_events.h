#pragma once
// The events of the socket classes, as the sockets fire them at controls.
// The hooks are filled when the classes are converted.
#include "kelp/records.h"

#include <cstdint>

namespace kelp {

struct ObjectHook;

struct SocketHooks {
    ObjectHook *connected = nullptr;     // TCPSocket.Connected
    ObjectHook *dataAvailable = nullptr; // SocketCore.DataAvailable
    ObjectHook *sendComplete = nullptr;  // SocketCore.SendComplete(userAborted)
    ObjectHook *sendProgress = nullptr;  // TCPSocket.SendProgress(sent, left) As Boolean
    ObjectHook *error = nullptr;         // SocketCore.Error
    ObjectHook *serverError = nullptr;   // ServerSocket.Error(code)
    ObjectHook *addSocket = nullptr;     // ServerSocket.AddSocket As TCPSocket
    ObjectHook *ipcConnected = nullptr;  // IPCSocket.Connected
    ObjectHook *ipcData = nullptr;       // IPCSocket.DataAvailable
    ObjectHook *ipcError = nullptr;      // IPCSocket.Error
};
SocketHooks &Hooks();

// The ServerSocket's MinimumSocketsAvailable, read at each Listen.
int32_t ServerMinimum(RuntimeObject *server);
int32_t ServerMaximum(RuntimeObject *server);

} // namespace kelp
