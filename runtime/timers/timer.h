#pragma once
// Timer of the authoring language: a plain object that fires Action from a
// toolkit timeout, so it fires inside the toolkit iteration of any pass of
// the run loop, at any nesting depth.
#include "kelp/records.h"

#include <cstdint>

namespace kelp {

struct ObjectDefinition;

enum TimerMode : int32_t { kTimerModeOff = 0, kTimerModeSingle = 1, kTimerModeMultiple = 2 };

// A receiver of the actionSource interface, newest first.
struct ActionReceiverLink {
    ActionReceiverLink *next;
    RuntimeObject *receiver; // counted
};

struct TimerRecord {
    RuntimeObject object;
    int32_t mode;
    int32_t period;     // milliseconds, never below 1
    int32_t lastFired;  // MilliClock at the last arming, less 2^31
    int32_t enabled;    // Boolean in a word
    uint32_t timeoutId; // 0 when nothing is armed
    ActionReceiverLink *receivers;
};

ObjectDefinition *TimerDefinition();

// While held (the debugger link's stop) a due timer lets its moment pass
// and stays armed, so nothing of the program runs.  Calls nest.
void HoldTimers(bool held);

} // namespace kelp
