/* Threads and locks, as compiled code calls them.  Threads are cooperative:
 * exactly one runs at a time, and the run passes at yields (loop back edges
 * through RuntimeBackgroundTask, YieldToNextThread, sleeps, suspends and
 * waits on a lock).  Misuse raises ThreadAlreadyRunningException or
 * IllegalLockingException (ErrorNumber 0 to 3) and returns. */
#ifndef KELP_THREADS_H
#define KELP_THREADS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Thread: Priority 5 at first; Run starts the Run event on a thread of its
 * own and yields to it. */
void ThreadInitializer(RuntimeObject *thread);
void threadRun(RuntimeObject *thread);
/* 0 running, 1 waiting on a lock, 2 suspended, 3 sleeping, 4 not running. */
int32_t ThreadGetState(RuntimeObject *thread, int32_t parameter);
/* 1, 2, ... in the order threads were started; 0 when not running. */
int32_t ThreadGetID(RuntimeObject *thread, int32_t parameter);
int32_t ThreadGetPriority(RuntimeObject *thread, int32_t parameter);
/* A value below 1 is ignored; a running thread's share changes at once. */
void ThreadSetPriority(RuntimeObject *thread, int32_t parameter, int32_t priority);
/* Reads back as set, or 0x10000 when below 1; the stack itself is the
 * system's default. */
int32_t ThreadGetStackSize(RuntimeObject *thread, int32_t parameter);
void ThreadSetStackSize(RuntimeObject *thread, int32_t parameter, int32_t bytes);
/* wakeEarly lets a sleeper run when nothing else can. */
void ThreadSleep(RuntimeObject *thread, int32_t milliseconds, uint8_t wakeEarly);
void ThreadSuspend(RuntimeObject *thread);
/* Wakes a sleeper too. */
void ThreadResume(RuntimeObject *thread);
void YieldToNextThread(void);
/* The Thread object of the current thread with a new reference; null on the
 * main thread. */
RuntimeObject *KELPGetCurrentThread(void);

/* Semaphore: a count of 1 unless the constructor gives another (below 1
 * raises, ErrorNumber 1).  Signal waits while the count is used up;
 * Release past the initial count raises (ErrorNumber 0). */
void SemaphoreInitializer(RuntimeObject *semaphore);
void SemaphoreFinalizer(RuntimeObject *semaphore);
void Semaphore_Constructor(RuntimeObject *semaphore, int32_t initialCount);
void Semaphore_Signal(RuntimeObject *semaphore);
uint8_t Semaphore_TrySignal(RuntimeObject *semaphore);
void semaphore_release(RuntimeObject *semaphore);

/* CriticalSection: re-entrant; Leave by another thread raises
 * (ErrorNumber 2). */
void CriticalSectionInitializer(RuntimeObject *section);
void CriticalSectionFinalizer(RuntimeObject *section);
void criticalsection_enter(RuntimeObject *section);
uint8_t CriticalSection_TryEnter(RuntimeObject *section);
void criticalsection_leave(RuntimeObject *section);

/* Mutex: a CriticalSection that also excludes other processes, through a
 * lock file of that name in the temporary folder (a new temporary file
 * without a name).  Leave by another thread raises (ErrorNumber 3). */
void MutexInitializer(RuntimeObject *mutex);
void MutexFinalizer(RuntimeObject *mutex);
void MutexContructor(RuntimeObject *mutex, KelpString name);
void MutexLock(RuntimeObject *mutex);
uint8_t MutexTryLock(RuntimeObject *mutex);
void MutexUnlock(RuntimeObject *mutex);

#ifdef __cplusplus
}
#endif

#endif
