#include "threads/wiring.h"

#include "objects/definitions.h"
#include "runloop/main_loop.h"
#include "threads/scheduler.h"
#include "threads/thread_objects.h"

namespace kelp {
namespace {

// The calling thread sleeps in the scheduler: other threads run meanwhile,
// and with none the process waits in the scheduler's own sleep.
void SleepCurrentThread(int32_t milliseconds) {
    if (ThreadRecord *me = CurrentThread())
        SleepThread(me, static_cast<uint32_t>(milliseconds), false);
}

} // namespace

void WireThreads() {
    TakeRunLockForMainThread();
    AddIntrinsicClassAccessor(&ThreadDefinition);
    AddIntrinsicClassAccessor(&SemaphoreDefinition);
    AddIntrinsicClassAccessor(&CriticalSectionDefinition);
    AddIntrinsicClassAccessor(&MutexDefinition);
    SetThreadSleeper(&SleepCurrentThread);
}

} // namespace kelp
