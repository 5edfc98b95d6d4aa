#pragma once
// Work that must happen once, after the application's entry has returned:
// temporary files removed, libraries closed, a hidden menu bar shown again.
// A task is a heap object that links itself onto the shutdown list when made;
// its work is its destructor, and the run-down deletes the tasks newest
// first.  The list is used under the run lock, on one thread at a time.
#include <string>
#include <vector>

namespace kelp {

class runShutdownTask {
public:
    explicit runShutdownTask(const char *name = nullptr);
    // Unlinks the task; a task that isn't on the list is left as it is.
    virtual ~runShutdownTask();
    runShutdownTask(const runShutdownTask &) = delete;
    runShutdownTask &operator=(const runShutdownTask &) = delete;

    runShutdownTask *next = nullptr;
};

// Head of the list, or null.
runShutdownTask *ShutdownTaskListHead();

// While the list isn't empty: delete its head.  Tasks made during the
// run-down run too.
void RunShutdownTasks();

// Files and folders that live only for this run (for instance a sound
// resource written out to be played).  Removed at the run-down, a folder's
// contents first.
class TempFileShutDownTask : public runShutdownTask {
public:
    TempFileShutDownTask() : runShutdownTask("TempFileShutDownTask") {}
    ~TempFileShutDownTask() override;
    void Add(const std::string &path) { mPaths.push_back(path); }

private:
    std::vector<std::string> mPaths;
};

// Registers a path for removal at the run-down, making the one
// TempFileShutDownTask at the first call.
void RemoveAtShutdown(const std::string &path);

// Removes a file, or a folder with everything inside it from the leaves up.
// Paths already gone and entries that can't be removed are passed over.
void RemoveTree(const std::string &path);

} // namespace kelp
