#pragma once
// Threads of the authoring language are real POSIX threads of which exactly
// one runs at a time: they all pass one process-wide lock, the run lock, and
// a thread gives it up only when it yields.  Which thread runs next is the
// runtime's choice, by weighted entries in a queue: a thread of priority 5
// has five entries and gets five times the turns of a thread of priority 1.
// Everything here is used with the run lock held.
#include "kelp/records.h"

#include <pthread.h>

#include <cstdint>
#include <vector>

namespace kelp {

enum ThreadStateBits : uint32_t {
    kThreadSuspended = 1,
    kThreadSleeping = 2,
    kThreadWaiting = 4,
    kThreadDead = 8,
};

struct ThreadRecord {
    pthread_t threadID{};
    uintptr_t stackLow = 0, stackTop = 0;
    RuntimeObject *owner = nullptr; // the Thread object; null for the main thread
    ThreadRecord *next = nullptr;   // ThreadList
    uint32_t wakeTime = 0;          // MilliClock when a sleep ends
    uint32_t sleepStart = 0;        // MilliClock when it began (for wrap-round)
    int32_t suspendCount = 0;       // above 0 the thread can't run
    int32_t priority = 5;
    bool wakeEarly = false; // may run while asleep when nothing else can
    uint32_t state = 0;     // ThreadStateBits
    int32_t id = 0;         // what ThreadID reads: 1, 2, ... in order of Run
};

// The main thread's record, made on first use by the thread that takes the
// run lock then (the main thread, at wiring).
void TakeRunLockForMainThread();
ThreadRecord *CurrentThread();
ThreadRecord *MainThreadRecord();

// Gives the run to the next thread the queue picks, and waits until this
// thread's turn comes again.  Only the current thread may yield.
void Yield();

// Makes a record for a new thread (not yet started) with its queue entries,
// and takes it out again at its end (its record freed by the next yield).
ThreadRecord *AddThreadRecord(RuntimeObject *owner, int32_t priority);
void EndThreadRecord(ThreadRecord *record);
// Waits until the scheduler gives this new thread its first turn.
void WaitForFirstTurn(ThreadRecord *record);
// At the end of a thread's body: picks the next thread and lets the run
// lock go for good.
void LeaveRun();

// Raises or lowers the number of a running thread's queue entries.
void ChangePriority(ThreadRecord *record, int32_t from, int32_t to);

// Sleep, suspend and resume as the Thread class offers them; each yields
// when the thread is the current one.
void SleepThread(ThreadRecord *record, uint32_t milliseconds, bool wakeEarly);
void SuspendThread(ThreadRecord *record);
void ResumeThread(ThreadRecord *record);

// The common step of every lock: the current thread waits among `waiters`
// until a release lets it go on.
void WaitAmong(std::vector<ThreadRecord *> &waiters);
// Lets the first waiter go on; true when there was one.
bool ReleaseFirstWaiter(std::vector<ThreadRecord *> &waiters);

// Held execution (the debugger link): background yields are skipped.
void SetThreadSwitchingDisabled(bool disabled);
bool ThreadSwitchingDisabled();

// Threads with a Thread object, for the debugger link.
int32_t ThreadsWithOwnerCount();
ThreadRecord *ThreadWithOwnerAt(int32_t index);

} // namespace kelp
