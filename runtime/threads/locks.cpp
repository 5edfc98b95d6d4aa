// Semaphore and CriticalSection: scheduling objects on top of the run lock,
// with no system primitive beneath them.  A waiter yields until a release
// lets it go on.
#include "threads/thread_objects.h"

#include "base/fatal_report.h"
#include "exceptions/raise.h"
#include "objects/definitions.h"

#include "kelp/threads.h"

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/threads/locks.cpp";

SemaphoreObject *Sem(RuntimeObject *o) { return reinterpret_cast<SemaphoreObject *>(o); }
CriticalSectionObject *Section(RuntimeObject *o) {
    return reinterpret_cast<CriticalSectionObject *>(o);
}

} // namespace

ObjectDefinition *SemaphoreDefinition() {
    static const ParameterRow countParams[] = {{"initialCount", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"Constructor", nullptr, countParams, 1, KELP_ENTRY(Semaphore_Constructor)},
        {"Signal", nullptr, nullptr, 0, KELP_ENTRY(Semaphore_Signal)},
        {"TrySignal", &kTypeBoolean, nullptr, 0, KELP_ENTRY(Semaphore_TrySignal)},
        {"Release", nullptr, nullptr, 0, KELP_ENTRY(semaphore_release)},
    };
    static const ClassDescription description = {
        .name = "Semaphore",
        .instanceSize = sizeof(SemaphoreObject),
        .initializer = KELP_ENTRY(SemaphoreInitializer),
        .finalizer = KELP_ENTRY(SemaphoreFinalizer),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *CriticalSectionDefinition() {
    static const MethodRow methods[] = {
        {"Enter", nullptr, nullptr, 0, KELP_ENTRY(criticalsection_enter)},
        {"TryEnter", &kTypeBoolean, nullptr, 0, KELP_ENTRY(CriticalSection_TryEnter)},
        {"Leave", nullptr, nullptr, 0, KELP_ENTRY(criticalsection_leave)},
    };
    static const ClassDescription description = {
        .name = "CriticalSection",
        .instanceSize = sizeof(CriticalSectionObject),
        .initializer = KELP_ENTRY(CriticalSectionInitializer),
        .finalizer = KELP_ENTRY(CriticalSectionFinalizer),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" void SemaphoreInitializer(RuntimeObject *self) {
    if (!self)
        return;
    Sem(self)->maxCount = Sem(self)->count = 1;
    Sem(self)->waiters = new std::vector<ThreadRecord *>;
}

extern "C" void SemaphoreFinalizer(RuntimeObject *self) {
    if (self) {
        delete Sem(self)->waiters;
        Sem(self)->waiters = nullptr;
    }
}

extern "C" void Semaphore_Constructor(RuntimeObject *self, int32_t initialCount) {
    if (!self)
        return RaiseNilObject();
    if (initialCount < 1)
        return RaiseWithMessage("IllegalLockingException",
                                "Illegal initialCount for the Semaphore.", 1);
    Sem(self)->maxCount = Sem(self)->count = initialCount;
}

extern "C" void Semaphore_Signal(RuntimeObject *self) {
    if (!self)
        return RaiseNilObject();
    if (--Sem(self)->count >= 0)
        return;
    TakeRunLockForMainThread();
    WaitAmong(*Sem(self)->waiters);
}

extern "C" uint8_t Semaphore_TrySignal(RuntimeObject *self) {
    if (!self || Sem(self)->count < 1)
        return 0;
    --Sem(self)->count;
    return 1;
}

extern "C" void semaphore_release(RuntimeObject *self) {
    if (!self)
        return RaiseNilObject();
    SemaphoreObject *s = Sem(self);
    if (++s->count > s->maxCount) {
        s->count = s->maxCount;
        return RaiseWithMessage("IllegalLockingException",
                                "Called Semaphore.Release too many times.", 0);
    }
    if (ReleaseFirstWaiter(*s->waiters))
        Yield();
}

extern "C" void CriticalSectionInitializer(RuntimeObject *self) {
    if (self)
        Section(self)->waiters = new std::vector<ThreadRecord *>;
}

extern "C" void CriticalSectionFinalizer(RuntimeObject *self) {
    if (self) {
        delete Section(self)->waiters;
        Section(self)->waiters = nullptr;
    }
}

extern "C" void criticalsection_enter(RuntimeObject *self) {
    if (!self)
        return RaiseNilObject();
    TakeRunLockForMainThread();
    CriticalSectionObject *c = Section(self);
    while (c->lockCount > 0 && c->owner != CurrentThread())
        WaitAmong(*c->waiters);
    c->owner = CurrentThread();
    ++c->lockCount;
}

extern "C" uint8_t CriticalSection_TryEnter(RuntimeObject *self) {
    if (!self)
        return 0;
    TakeRunLockForMainThread();
    CriticalSectionObject *c = Section(self);
    if (c->lockCount > 0 && c->owner != CurrentThread())
        return 0;
    c->owner = CurrentThread();
    ++c->lockCount;
    return 1;
}

extern "C" void criticalsection_leave(RuntimeObject *self) {
    if (!self)
        return RaiseNilObject();
    CriticalSectionObject *c = Section(self);
    if (c->owner != CurrentThread() || c->lockCount <= 0)
        return RaiseWithMessage("IllegalLockingException",
                                "The thread which Entered the CriticalSection must be the thread "
                                "to Leave the CriticalSection",
                                2);
    --c->lockCount;
    KELP_ASSERT(c->lockCount >= 0, kFile, "lockCount >= 0");
    if (c->lockCount == 0) {
        c->owner = nullptr;
        if (ReleaseFirstWaiter(*c->waiters))
            Yield();
    }
}
