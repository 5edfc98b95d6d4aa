#pragma once
// What the debugger link needs of the layers below it while it holds the
// program at a stop.  The link stands above sockets and serial ports, so
// each of them fills its slot here at wiring; an empty slot holds nothing.
namespace kelp {

// Set by DebugRuntimeInit: the program was built for debugging.
bool DebugModeOn();
void SetDebugModeOn(bool on);

// held == true: the layer delivers no events to the program's objects
// (socket events to controls, serial ticks) until called with false.  Calls
// nest: a layer counts them.
using StopHold = void (*)(bool held);
void SetSocketEventHold(StopHold hold);
void SetSerialTickHold(StopHold hold);
void HoldPortEvents(bool held);

// The socket poll the link runs while stopped: the socket layer's poller
// with its debugger flag set, so only the link's own sockets are served.
void PollSocketsForDebugger();

} // namespace kelp
