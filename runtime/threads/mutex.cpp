// Mutex: a critical section over a lock file, so that it excludes other
// processes too.  The file lock is the system's (flock), which the kernel
// lets go when a process ends, so a lock file left behind by a program that
// crashed is simply taken over.
#include "threads/thread_objects.h"

#include "base/fatal_report.h"
#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "objects/text.h"

#include "kelp/threads.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdlib>

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/threads/mutex.cpp";

MutexObject *Mx(RuntimeObject *o) { return reinterpret_cast<MutexObject *>(o); }

std::string TemporaryFolder() {
    const char *base = std::getenv("TMPDIR");
    return base && *base ? base : "/tmp";
}

// A name is one file in the temporary folder: a slash can't lead elsewhere.
std::string LockPathFor(std::string_view name) {
    std::string file(name);
    for (char &c : file)
        if (c == '/')
            c = '_';
    if (file.empty() || file == "." || file == "..")
        file = "_" + file;
    return TemporaryFolder() + "/" + file;
}

bool TryLockFile(MutexObject *m) {
    if (!m->lockPath)
        return false;
    const int fd = open(m->lockPath->c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        return false;
    if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
        close(fd);
        return false;
    }
    m->lockFd = fd;
    return true;
}

void Take(MutexObject *m) {
    m->section.owner = CurrentThread();
    ++m->section.lockCount;
}

} // namespace

ObjectDefinition *MutexDefinition() {
    static const ParameterRow nameParams[] = {{"name", &kTypeString}};
    static const MethodRow methods[] = {
        {"Constructor", nullptr, nameParams, 1, KELP_ENTRY(MutexContructor)},
        {"Enter", nullptr, nullptr, 0, KELP_ENTRY(MutexLock)},
        {"TryEnter", &kTypeBoolean, nullptr, 0, KELP_ENTRY(MutexTryLock)},
        {"Leave", nullptr, nullptr, 0, KELP_ENTRY(MutexUnlock)},
    };
    static const ClassDescription description = {
        .name = "Mutex",
        .instanceSize = sizeof(MutexObject),
        .initializer = KELP_ENTRY(MutexInitializer),
        .finalizer = KELP_ENTRY(MutexFinalizer),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" void MutexInitializer(RuntimeObject *self) {
    if (!self)
        return;
    Mx(self)->section.waiters = new std::vector<ThreadRecord *>;
    Mx(self)->lockFd = -1;
}

extern "C" void MutexFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    MutexObject *m = Mx(self);
    if (m->lockFd >= 0)
        close(m->lockFd);
    m->lockFd = -1;
    delete m->lockPath;
    m->lockPath = nullptr;
    delete m->section.waiters;
    m->section.waiters = nullptr;
}

extern "C" void MutexContructor(RuntimeObject *self, KelpString name) {
    if (!self)
        return RaiseNilObject();
    MutexObject *m = Mx(self);
    std::string path;
    if (objtext::View(name).empty()) {
        std::string pattern = TemporaryFolder() + "/kp_mutex_XXXXXX";
        const int fd = mkstemp(pattern.data());
        if (fd >= 0) {
            close(fd);
            path = pattern;
        }
    } else {
        path = LockPathFor(objtext::View(name));
        const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
        if (fd >= 0)
            close(fd);
        else
            path.clear();
    }
    KELP_ASSERT(!path.empty(), kFile, "mutex->mLockFile");
    delete m->lockPath;
    m->lockPath = path.empty() ? nullptr : new std::string(path);
}

extern "C" void MutexLock(RuntimeObject *self) {
    if (!self)
        return RaiseNilObject();
    TakeRunLockForMainThread();
    MutexObject *m = Mx(self);
    if (m->section.lockCount > 0 && m->section.owner == CurrentThread())
        return Take(m);
    while (!TryLockFile(m)) {
        if (m->section.lockCount > 0) {
            WaitAmong(*m->section.waiters); // a thread of ours holds it
        } else {
            // Another process holds it: nobody here will wake us, so look
            // again after a moment, letting the other threads run.
            if (!m->lockPath)
                return;
            SleepThread(CurrentThread(), 10, false);
        }
    }
    Take(m);
}

extern "C" uint8_t MutexTryLock(RuntimeObject *self) {
    if (!self)
        return 0;
    TakeRunLockForMainThread();
    MutexObject *m = Mx(self);
    if ((m->section.lockCount > 0 && m->section.owner == CurrentThread()) ||
        (m->section.lockCount == 0 && TryLockFile(m))) {
        Take(m);
        return 1;
    }
    return 0;
}

extern "C" void MutexUnlock(RuntimeObject *self) {
    if (!self)
        return RaiseNilObject();
    MutexObject *m = Mx(self);
    if (m->section.owner != CurrentThread() || m->section.lockCount <= 0)
        return RaiseWithMessage(
            "IllegalLockingException",
            "The thread which Signaled the Mutex must be the thread to Release the Mutex", 3);
    if (--m->section.lockCount > 0)
        return;
    close(m->lockFd); // ends the file lock
    m->lockFd = -1;
    m->section.owner = nullptr;
    if (ReleaseFirstWaiter(*m->section.waiters))
        Yield();
}
