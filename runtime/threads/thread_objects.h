#pragma once
// The objects of the thread and lock classes.  The C++ members they need
// (the waiter lists, the lock file's path) are made by the initialisers and
// freed by the finalisers, as objects are plain zeroed memory.
#include "threads/scheduler.h"

#include <string>
#include <vector>

namespace kelp {

struct ObjectDefinition;

struct ThreadObject {
    RuntimeObject object;
    ThreadRecord *record; // while running, else null
    int32_t priority;
    int32_t stackSize;
};

struct SemaphoreObject {
    RuntimeObject object;
    int32_t maxCount;
    int32_t count;
    std::vector<ThreadRecord *> *waiters;
};

// CriticalSection, and Mutex with its lock file behind.
struct CriticalSectionObject {
    RuntimeObject object;
    int32_t lockCount;
    ThreadRecord *owner;
    std::vector<ThreadRecord *> *waiters;
};

struct MutexObject {
    CriticalSectionObject section;
    std::string *lockPath; // the lock file, in the temporary folder
    int32_t lockFd;        // open while the file lock is held, else -1
};

ObjectDefinition *ThreadDefinition();
ObjectDefinition *SemaphoreDefinition();
ObjectDefinition *CriticalSectionDefinition();
ObjectDefinition *MutexDefinition();

// The Run event of Thread.
void RunThreadBody(ThreadObject *thread);

} // namespace kelp
