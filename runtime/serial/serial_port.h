#pragma once
// The service of every Serial object by the run loop, and what the class
// definition shares with the device code.
#include "serial/serial_record.h"

namespace kelp {

struct ObjectHook;

// The Serial class's events, filled when its definition is built.
struct SerialEventHooks {
    ObjectHook *dataAvailable = nullptr;
    ObjectHook *error = nullptr;
    ObjectHook *lineStateChanged = nullptr;
};
extern SerialEventHooks gSerialHooks;

// One service pass of every open Serial, newest first; the run loop calls
// it once a pass.  Handlers may make and drop Serial objects meanwhile.
void PollSerialPorts();

// While held (the debugger stopped the program) the passes do nothing;
// holds nest.
void HoldSerialTicks(bool hold);

// LineChangeNotification with an array of line constants: their OR, up to
// a -1, which ends the list and watches nothing.
void SerialWatchLineArray(RuntimeObject *self, RuntimeArray *lines);

struct ObjectDefinition;
ObjectDefinition *SerialDefinition();

} // namespace kelp
