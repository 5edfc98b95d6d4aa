#include "threads/scheduler.h"

#include "base/fatal_report.h"
#include "runloop/clock.h"

#include <algorithm>
#include <ctime>

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/threads/scheduler.cpp";

struct QueueEntry {
    ThreadRecord *thread;
    bool ranThisRound;
};

// The run lock, and the condition a thread waits on for its turn: a
// waiting thread sleeps instead of spinning on the lock.
pthread_mutex_t gRunLock = PTHREAD_MUTEX_INITIALIZER;
pthread_cond_t gTurn = PTHREAD_COND_INITIALIZER;

ThreadRecord gMainThread;
bool gMainThreadMade = false;
ThreadRecord *gCurrent = nullptr;
ThreadRecord *gThreadList = nullptr;
std::vector<ThreadRecord *> gDeadThreads; // freed by the next thread to get the run
std::vector<QueueEntry> gRunQueue;
bool gSwitchingDisabled = false;
int32_t gLastId = 0;

void InsertEntries(ThreadRecord *record, int32_t count) {
    for (int32_t i = 0; i < count; ++i)
        gRunQueue.insert(gRunQueue.begin(), QueueEntry{record, false});
}

void RemoveEntries(ThreadRecord *record, int32_t count) {
    for (auto it = gRunQueue.begin(); it != gRunQueue.end() && count > 0;) {
        if (it->thread == record) {
            it = gRunQueue.erase(it);
            --count;
        } else {
            ++it;
        }
    }
}

bool Runnable(const ThreadRecord *t, uint32_t now) {
    // now < sleepStart: the clock went round during the sleep.
    return now >= t->wakeTime || now < t->sleepStart;
}

// Milliseconds until the first sleeper wakes; at least 1, so that a program
// whose every thread waits on a lock doesn't spin the processor.
uint32_t ShortestSleep(uint32_t now) {
    uint32_t shortest = 0;
    for (const QueueEntry &e : gRunQueue) {
        if (e.thread->suspendCount > 0)
            continue;
        const int32_t left = int32_t(e.thread->wakeTime - now);
        if (left >= 1 && (shortest == 0 || uint32_t(left) < shortest))
            shortest = uint32_t(left);
    }
    return shortest ? shortest : 1;
}

ThreadRecord *PickNextThread(bool block) {
    for (;;) {
        const uint32_t now = MilliClock();
        QueueEntry *taken = nullptr, *firstRan = nullptr, *early = nullptr;
        for (QueueEntry &e : gRunQueue) {
            const ThreadRecord *t = e.thread;
            if (t->suspendCount > 0)
                continue;
            if (Runnable(t, now)) {
                if (!e.ranThisRound) {
                    taken = &e;
                    break;
                }
                if (!firstRan)
                    firstRan = &e;
            } else if (t->wakeEarly && !e.ranThisRound && !early) {
                early = &e;
            }
        }
        if (!taken)
            taken = early;
        if (!taken && firstRan) {
            for (QueueEntry &e : gRunQueue)
                e.ranThisRound = false;
            taken = firstRan;
        }
        if (taken) {
            taken->ranThisRound = true;
            taken->thread->state = 0;
            return taken->thread;
        }
        if (!block)
            return nullptr;
        const uint32_t ms = ShortestSleep(now);
        timespec pause = {time_t(ms / 1000), long(ms % 1000) * 1000000L};
        nanosleep(&pause, nullptr);
    }
}

// Lets the run go to gCurrent and waits until it comes back to `me`.
void WaitForTurn(ThreadRecord *me) {
    if (gCurrent == me)
        return;
    pthread_cond_broadcast(&gTurn);
    while (gCurrent != me)
        pthread_cond_wait(&gTurn, &gRunLock);
}

void FreeDeadThreads() {
    for (auto it = gDeadThreads.begin(); it != gDeadThreads.end();) {
        KELP_ASSERT(*it != gCurrent, kFile, "sDeadThreadList != sCurrentThread");
        if (*it == gCurrent) {
            ++it;
            continue;
        }
        delete *it;
        it = gDeadThreads.erase(it);
    }
}

void Unlink(ThreadRecord *record) {
    for (ThreadRecord **at = &gThreadList; *at; at = &(*at)->next)
        if (*at == record) {
            *at = record->next;
            return;
        }
}

} // namespace

void TakeRunLockForMainThread() {
    if (gMainThreadMade)
        return;
    gMainThreadMade = true;
    pthread_mutex_lock(&gRunLock);
    gMainThread.threadID = pthread_self();
    gMainThread.next = gThreadList;
    gThreadList = &gMainThread;
    InsertEntries(&gMainThread, gMainThread.priority);
    gCurrent = &gMainThread;
}

ThreadRecord *CurrentThread() { return gCurrent; }
ThreadRecord *MainThreadRecord() { return gMainThreadMade ? &gMainThread : nullptr; }

void Yield() {
    ThreadRecord *me = gCurrent;
    KELP_ASSERT(me, kFile, "sCurrentThread");
    if (!me)
        return;
    KELP_ASSERT(pthread_equal(pthread_self(), me->threadID), kFile,
                "pthread_equal( current, sCurrentThread->mThreadID )");
    gCurrent = PickNextThread(true);
    WaitForTurn(me);
    FreeDeadThreads();
}

ThreadRecord *AddThreadRecord(RuntimeObject *owner, int32_t priority) {
    auto *record = new ThreadRecord;
    record->owner = owner;
    record->priority = priority;
    record->id = ++gLastId;
    record->next = gThreadList;
    gThreadList = record;
    InsertEntries(record, priority);
    return record;
}

void WaitForFirstTurn(ThreadRecord *record) {
    pthread_mutex_lock(&gRunLock);
    while (gCurrent != record)
        pthread_cond_wait(&gTurn, &gRunLock);
    record->threadID = pthread_self();
}

void EndThreadRecord(ThreadRecord *record) {
    Unlink(record);
    RemoveEntries(record, int32_t(gRunQueue.size()));
    record->owner = nullptr;
    record->state = kThreadDead;
    gDeadThreads.push_back(record);
}

void LeaveRun() {
    gCurrent = PickNextThread(true);
    pthread_cond_broadcast(&gTurn);
    pthread_mutex_unlock(&gRunLock);
}

void ChangePriority(ThreadRecord *record, int32_t from, int32_t to) {
    if (to > from)
        InsertEntries(record, to - from);
    else
        RemoveEntries(record, from - to);
    record->priority = to;
}

void SleepThread(ThreadRecord *record, uint32_t milliseconds, bool wakeEarly) {
    const uint32_t now = MilliClock();
    record->wakeTime = now + milliseconds;
    record->sleepStart = now;
    record->wakeEarly = wakeEarly;
    record->state |= kThreadSleeping;
    if (record == gCurrent)
        Yield();
}

void SuspendThread(ThreadRecord *record) {
    ++record->suspendCount;
    record->state |= kThreadSuspended;
    if (record == gCurrent)
        Yield();
}

void ResumeThread(ThreadRecord *record) {
    record->suspendCount = std::max(0, record->suspendCount - 1);
    record->state &= ~uint32_t(kThreadSuspended | kThreadSleeping);
    // A sleeper wakes too.
    record->wakeTime = record->sleepStart = MilliClock() - 1;
}

void WaitAmong(std::vector<ThreadRecord *> &waiters) {
    ThreadRecord *me = gCurrent;
    if (!me)
        return;
    waiters.push_back(me);
    ++me->suspendCount;
    me->state |= kThreadWaiting;
    Yield();
    me->state &= ~uint32_t(kThreadWaiting);
}

bool ReleaseFirstWaiter(std::vector<ThreadRecord *> &waiters) {
    if (waiters.empty())
        return false;
    ThreadRecord *first = waiters.front();
    waiters.erase(waiters.begin());
    first->suspendCount = std::max(0, first->suspendCount - 1);
    return true;
}

void SetThreadSwitchingDisabled(bool disabled) { gSwitchingDisabled = disabled; }
bool ThreadSwitchingDisabled() { return gSwitchingDisabled; }

int32_t ThreadsWithOwnerCount() {
    int32_t n = 0;
    for (ThreadRecord *t = gThreadList; t; t = t->next)
        n += t->owner != nullptr;
    return n;
}

ThreadRecord *ThreadWithOwnerAt(int32_t index) {
    for (ThreadRecord *t = gThreadList; t; t = t->next)
        if (t->owner && index-- == 0)
            return t;
    return nullptr;
}

} // namespace kelp
