#include "timers/timer.h"

#include "runloop/clock.h"

#include "exceptions/call_event.h"
#include "objects/action_interfaces.h"
#include "objects/definitions.h"
#include "objects/object_model.h"

#include "kelp/objects.h"
#include "kelp/runloop.h"

#include <gtk/gtk.h>

#include <cstddef>

namespace kelp {
namespace {

ObjectHook *gAction = nullptr;
int32_t gHoldCount = 0;

TimerRecord *Record(RuntimeObject *object) { return reinterpret_cast<TimerRecord *>(object); }

int32_t Now() { return static_cast<int32_t>(MilliClock() - 2147483648u); }

void Disarm(TimerRecord *timer) {
    if (timer->timeoutId != 0) {
        g_source_remove(timer->timeoutId);
        timer->timeoutId = 0;
    }
}

gboolean Fire(gpointer data);

void Arm(TimerRecord *timer) {
    timer->timeoutId = g_timeout_add(static_cast<guint>(timer->period), &Fire, timer);
}

gboolean Fire(gpointer data) {
    auto *timer = static_cast<TimerRecord *>(data);
    RuntimeObject *object = &timer->object;
    // A disabled or held timer lets its moment pass and stays as it is.
    if (timer->enabled == 0 || gHoldCount > 0)
        return TRUE;
    void *code = FindEventHandler(object, gAction);
    // Before the event, so that a single-shot handler sees ModeOff and may
    // re-arm by assigning Mode.
    if (timer->mode != kTimerModeMultiple) {
        timer->timeoutId = 0;
        timer->mode = kTimerModeOff;
    }
    // The handler may drop the last reference (close its window): keep the
    // record alive until the answer to the toolkit is known.
    RuntimeLockObject(object);
    uint32_t firingId = timer->timeoutId;
    if (code)
        CallHandlerCode(code, object);
    // Repeat only while this very source is still the armed one: a handler
    // that assigned Mode or Period armed a new source and removed this one.
    bool again = timer->mode == kTimerModeMultiple && timer->timeoutId == firingId && firingId != 0;
    RuntimeUnlockObject(object);
    return again ? TRUE : FALSE;
}

} // namespace

void HoldTimers(bool held) { gHoldCount += held ? 1 : -1; }

ObjectDefinition *TimerDefinition() {
    static const PropertyRow properties[] = {
        {0, "Mode", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(timerModeSetter),
         offsetof(TimerRecord, mode)},
        {0, "Period", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(timerPeriodSetter),
         offsetof(TimerRecord, period)},
        {0, "Enabled", &kTypeBoolean, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(TimerRecord, enabled)},
        {0, "ModeOff", &kTypeInteger, {}, {}, kTimerModeOff, 0, true},
        {0, "ModeSingle", &kTypeInteger, {}, {}, kTimerModeSingle, 0, true},
        {0, "ModeMultiple", &kTypeInteger, {}, {}, kTimerModeMultiple, 0, true},
    };
    static const TypeRecord receiverType{kTypeObjectOf, nullptr, nullptr, 0,
                                         &ActionNotificationReceiverInterfaceDefinition};
    static const ParameterRow receiverParams[] = {{"receiver", &receiverType}};
    static const MethodRow methods[] = {
        {"Reset", nullptr, nullptr, 0, KELP_ENTRY(RuntimeTimerReset)},
        {"addActionNotificationReceiver", nullptr, receiverParams, 1,
         KELP_ENTRY(TimerAddActionNotificationReceiver)},
        {"removeActionNotificationReceiver", nullptr, receiverParams, 1,
         KELP_ENTRY(TimerRemoveActionNotificationReceiver)},
    };
    static const EventRow events[] = {{"Action", "", nullptr, &gAction}};
    static const DefinitionAccessor interfaces[] = {&ActionSourceInterfaceDefinition};
    static const ClassDescription description = {
        .name = "Timer",
        .instanceSize = sizeof(TimerRecord),
        .initializer = KELP_ENTRY(RuntimeTimerConstructor),
        .finalizer = KELP_ENTRY(RuntimeTimerDestructor),
        .properties = properties,
        .methods = methods,
        .events = events,
        .interfaces = interfaces,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" void RuntimeTimerConstructor(RuntimeObject *self) {
    if (!self)
        return;
    TimerRecord *timer = Record(self);
    timer->period = 1000;
    timer->enabled = 1;
    timer->timeoutId = 0;
    timer->lastFired = Now();
    // Mode stays off: a timer arms only when Mode is assigned.
}

extern "C" void RuntimeTimerDestructor(RuntimeObject *self) {
    if (!self)
        return;
    TimerRecord *timer = Record(self);
    Disarm(timer);
    while (ActionReceiverLink *link = timer->receivers) {
        timer->receivers = link->next;
        RuntimeUnlockObject(link->receiver);
        delete link;
    }
}

extern "C" void timerModeSetter(RuntimeObject *self, int32_t, int32_t mode) {
    if (!self)
        return;
    TimerRecord *timer = Record(self);
    // Every assignment, of the same value too, restarts the full period.
    timer->mode = mode;
    timer->lastFired = Now();
    Disarm(timer);
    if (mode != kTimerModeOff)
        Arm(timer);
}

extern "C" void timerPeriodSetter(RuntimeObject *self, int32_t, int32_t period) {
    if (!self)
        return;
    TimerRecord *timer = Record(self);
    timer->period = period < 1 ? 1 : period;
    Disarm(timer);
    if (timer->mode != kTimerModeOff)
        Arm(timer);
}

extern "C" void RuntimeTimerReset(RuntimeObject *self) {
    // Records the time only; the armed timeout alone decides the next firing.
    if (self)
        Record(self)->lastFired = Now();
}

extern "C" void TimerAddActionNotificationReceiver(RuntimeObject *self, RuntimeObject *receiver) {
    if (!self || !receiver)
        return;
    TimerRecord *timer = Record(self);
    RuntimeLockObject(receiver);
    timer->receivers = new ActionReceiverLink{timer->receivers, receiver};
}

extern "C" void TimerRemoveActionNotificationReceiver(RuntimeObject *self,
                                                      RuntimeObject *receiver) {
    if (!self)
        return;
    ActionReceiverLink **at = &Record(self)->receivers;
    while (*at) {
        if ((*at)->receiver == receiver) {
            ActionReceiverLink *gone = *at;
            *at = gone->next;
            RuntimeUnlockObject(gone->receiver);
            delete gone;
            return;
        }
        at = &(*at)->next;
    }
}
