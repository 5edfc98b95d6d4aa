#include "shutdown/shutdown_task.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

namespace kelp {
namespace {
runShutdownTask *gShutdownTaskList = nullptr;
TempFileShutDownTask *gTempFiles = nullptr;
} // namespace

runShutdownTask::runShutdownTask(const char *) {
    next = gShutdownTaskList;
    gShutdownTaskList = this;
}

runShutdownTask::~runShutdownTask() {
    for (runShutdownTask **link = &gShutdownTaskList; *link; link = &(*link)->next) {
        if (*link == this) {
            *link = next;
            break;
        }
    }
}

runShutdownTask *ShutdownTaskListHead() { return gShutdownTaskList; }

void RunShutdownTasks() {
    while (runShutdownTask *head = gShutdownTaskList) {
        delete head;
        // A destructor that didn't unlink (it can't, the base does) would
        // spin here; the base destructor always takes the head off.
    }
}

void RemoveTree(const std::string &path) {
    struct stat st;
    if (lstat(path.c_str(), &st) != 0)
        return;
    // A link is removed, never followed: its target isn't ours.
    if (S_ISDIR(st.st_mode)) {
        if (DIR *dir = opendir(path.c_str())) {
            while (dirent *entry = readdir(dir)) {
                const std::string name = entry->d_name;
                if (name == "." || name == "..")
                    continue;
                RemoveTree(path + "/" + name);
            }
            closedir(dir);
        }
        rmdir(path.c_str());
        return;
    }
    std::remove(path.c_str());
}

TempFileShutDownTask::~TempFileShutDownTask() {
    for (const std::string &path : mPaths)
        RemoveTree(path);
    if (gTempFiles == this)
        gTempFiles = nullptr;
}

void RemoveAtShutdown(const std::string &path) {
    if (!gTempFiles)
        gTempFiles = new TempFileShutDownTask;
    gTempFiles->Add(path);
}

} // namespace kelp
