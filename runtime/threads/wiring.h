#pragma once
namespace kelp {
// The main thread takes the run lock; the Thread, Semaphore,
// CriticalSection and Mutex classes.
void WireThreads();
} // namespace kelp
