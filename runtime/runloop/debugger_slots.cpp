#include "runloop/debugger_slots.h"

#include "runloop/main_loop.h"

namespace kelp {
namespace {
bool gDebugMode = false;
StopHold gSocketHold = nullptr;
StopHold gSerialHold = nullptr;
} // namespace

bool DebugModeOn() { return gDebugMode; }
void SetDebugModeOn(bool on) { gDebugMode = on; }

void SetSocketEventHold(StopHold hold) { gSocketHold = hold; }
void SetSerialTickHold(StopHold hold) { gSerialHold = hold; }

void HoldPortEvents(bool held) {
    if (gSocketHold)
        gSocketHold(held);
    if (gSerialHold)
        gSerialHold(held);
}

void PollSocketsForDebugger() { RunSocketPoller(true); }

} // namespace kelp
