// The Thread class: a POSIX thread that runs the object's Run event under
// the run lock.
#include "threads/thread_objects.h"

#include "base/fatal_report.h"
#include "exceptions/call_event.h"
#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "process/process_state.h"
#include "runloop/background_task.h"

#include "kelp/objects.h"
#include "kelp/startup.h"
#include "kelp/threads.h"

#include <cstddef>

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/threads/thread_class.cpp";

ObjectHook *gRun = nullptr;

ThreadObject *Thread(RuntimeObject *object) { return reinterpret_cast<ThreadObject *>(object); }

// Every pass of the run loop yields once, so that threads run while the
// main thread waits for events.
class ThreadBackgroundTask : public BackgroundTask {
public:
    ThreadBackgroundTask() : BackgroundTask(0) {}
    void Run() override {
        if (!ThreadSwitchingDisabled())
            Yield();
    }
};

// Exists while threads other than the main one do: an idle program without
// threads lets the loop wait for events instead of turning it every pass.
ThreadBackgroundTask *gSwitcher = nullptr;

void *Body(void *data) {
    auto *thread = static_cast<ThreadObject *>(data);
    ThreadRecord *record = thread->record;
    WaitForFirstTurn(record);
    KELP_ASSERT(CurrentThread() == record, kFile, "sCurrentThread");
    KELPInitStackChecker(uint32_t(thread->stackSize > 0 ? thread->stackSize : 0x10000));
    CallEvent(&thread->object, gRun);
    thread->record = nullptr;
    EndThreadRecord(record);
    RuntimeUnlockObject(&thread->object);
    if (ThreadsWithOwnerCount() == 0) {
        delete gSwitcher;
        gSwitcher = nullptr;
    }
    LeaveRun();
    return nullptr;
}

} // namespace

ObjectDefinition *ThreadDefinition() {
    static const PropertyRow properties[] = {
        {0, "Priority", &kTypeInteger, KELP_ENTRY(ThreadGetPriority), KELP_ENTRY(ThreadSetPriority),
         0},
        {0, "StackSize", &kTypeInteger, KELP_ENTRY(ThreadGetStackSize),
         KELP_ENTRY(ThreadSetStackSize), 0},
        {0, "State", &kTypeInteger, KELP_ENTRY(ThreadGetState), {}, 0},
        {0, "ThreadID", &kTypeInteger, KELP_ENTRY(ThreadGetID), {}, 0},
    };
    static const ParameterRow sleepParams[] = {{"milliseconds", &kTypeInteger},
                                               {"wakeEarly", &kTypeBoolean}};
    static const MethodRow methods[] = {
        {"Run", nullptr, nullptr, 0, KELP_ENTRY(threadRun)},
        {"Suspend", nullptr, nullptr, 0, KELP_ENTRY(ThreadSuspend)},
        {"Resume", nullptr, nullptr, 0, KELP_ENTRY(ThreadResume)},
        {"Sleep", nullptr, sleepParams, 2, KELP_ENTRY(ThreadSleep)},
    };
    static const EventRow events[] = {{"Run", "", nullptr, &gRun}};
    static const ClassDescription description = {
        .name = "Thread",
        .instanceSize = sizeof(ThreadObject),
        .initializer = KELP_ENTRY(ThreadInitializer),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" void ThreadInitializer(RuntimeObject *self) {
    if (self)
        Thread(self)->priority = 5;
}

extern "C" void threadRun(RuntimeObject *self) {
    if (!self)
        return RaiseNilObject();
    ThreadObject *thread = Thread(self);
    if (thread->record)
        return RaiseWithMessage("ThreadAlreadyRunningException",
                                "You cannot call Run on a thread that is already running.");
    TakeRunLockForMainThread();
    if (!gSwitcher)
        gSwitcher = new ThreadBackgroundTask;
    thread->record = AddThreadRecord(self, thread->priority);
    RuntimeLockObject(self); // for as long as the thread runs
    pthread_t id;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    const int failed = pthread_create(&id, &attributes, &Body, thread);
    pthread_attr_destroy(&attributes);
    KELP_ASSERT(failed == 0, kFile, "pthread_create");
    if (failed) {
        ThreadRecord *record = thread->record;
        thread->record = nullptr;
        EndThreadRecord(record);
        RuntimeUnlockObject(self);
        return;
    }
    Yield(); // the new thread gets going at once
}

extern "C" int32_t ThreadGetState(RuntimeObject *self, int32_t) {
    const ThreadRecord *r = self ? Thread(self)->record : nullptr;
    if (!r || (r->state & kThreadDead))
        return 4;
    if (r->state & kThreadWaiting)
        return 1;
    if (r->state & kThreadSuspended)
        return 2;
    if (r->state & kThreadSleeping)
        return 3;
    return 0;
}

extern "C" int32_t ThreadGetID(RuntimeObject *self, int32_t) {
    const ThreadRecord *r = self ? Thread(self)->record : nullptr;
    return r ? r->id : 0;
}

extern "C" int32_t ThreadGetPriority(RuntimeObject *self, int32_t) {
    return self ? Thread(self)->priority : 0;
}

extern "C" void ThreadSetPriority(RuntimeObject *self, int32_t, int32_t value) {
    if (!self || value < 1)
        return;
    ThreadObject *thread = Thread(self);
    if (thread->record)
        ChangePriority(thread->record, thread->priority, value);
    thread->priority = value;
}

extern "C" int32_t ThreadGetStackSize(RuntimeObject *self, int32_t) {
    if (!self)
        return 0;
    return Thread(self)->stackSize < 1 ? 0x10000 : Thread(self)->stackSize;
}

extern "C" void ThreadSetStackSize(RuntimeObject *self, int32_t, int32_t value) {
    if (self)
        Thread(self)->stackSize = value; // the created stack isn't affected
}

extern "C" void ThreadSleep(RuntimeObject *self, int32_t milliseconds, uint8_t wakeEarly) {
    if (self && Thread(self)->record)
        SleepThread(Thread(self)->record, uint32_t(milliseconds < 0 ? 0 : milliseconds),
                    wakeEarly != 0);
}

extern "C" void ThreadSuspend(RuntimeObject *self) {
    if (self && Thread(self)->record)
        SuspendThread(Thread(self)->record);
}

extern "C" void ThreadResume(RuntimeObject *self) {
    if (self && Thread(self)->record)
        ResumeThread(Thread(self)->record);
}

extern "C" void YieldToNextThread(void) {
    if (CurrentThread())
        Yield();
}

extern "C" RuntimeObject *KELPGetCurrentThread(void) {
    ThreadRecord *current = CurrentThread();
    RuntimeObject *owner = current ? current->owner : nullptr;
    if (owner)
        RuntimeLockObject(owner);
    return owner;
}
