#include "runloop/background_task.h"

#include "runloop/clock.h"

#include "kelp/runloop.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <vector>

namespace kelp {
namespace {

std::vector<BackgroundTask *> &Registry() {
    static std::vector<BackgroundTask *> registry;
    return registry;
}

gboolean RunFromTimeout(gpointer data) {
    static_cast<BackgroundTask *>(data)->Run();
    return TRUE;
}

bool gScannedOnce = false;
int32_t gBaseTick = 0;
int32_t gLastEventTick = 0;
bool gWaitState = false;
int gAutoWaitCounter = 0;

bool gUserCancelled = false;
KeyStateReader gEscapeReader = nullptr;
DebuggerService gDebuggerService = nullptr;

int32_t gLastServiceTick = 0;
int32_t gLastCancelCheckTick = 0;

} // namespace

BackgroundTask::BackgroundTask(int32_t periodTicks) : period(periodTicks) {
    int64_t ms = static_cast<int64_t>(periodTicks < 0 ? 0 : periodTicks) * 1000 / 60;
    timeoutId = g_timeout_add(static_cast<guint>(ms), &RunFromTimeout, this);
    Registry().push_back(this);
}

BackgroundTask::~BackgroundTask() {
    RemoveTimeout();
    auto &r = Registry();
    r.erase(std::remove(r.begin(), r.end(), this), r.end());
}

void BackgroundTask::RemoveTimeout() {
    if (timeoutId != 0) {
        g_source_remove(timeoutId);
        timeoutId = 0;
    }
}

int BackgroundTaskCount() { return static_cast<int>(Registry().size()); }

bool AnyUntimedBackgroundTask() {
    for (BackgroundTask *task : Registry())
        if (task->timeoutId == 0)
            return true;
    return false;
}

void ScanBackgroundTasks(bool skipTimed) {
    int32_t now = TickCount();
    if (!gScannedOnce) {
        gScannedOnce = true;
        gBaseTick = now;
        gLastEventTick = now;
    }
    if (gAutoWaitCounter < 1 && !gWaitState && now - gLastEventTick > 15)
        gWaitState = true;
    auto &r = Registry();
    for (int i = static_cast<int>(r.size()) - 1; i >= 0; --i) {
        if (i >= static_cast<int>(r.size())) {
            i = static_cast<int>(r.size());
            continue;
        }
        BackgroundTask *task = r[static_cast<size_t>(i)];
        if (skipTimed && task->timeoutId != 0)
            continue;
        if (now >= task->lastRun + task->period) {
            task->lastRun = TickCount();
            task->Run();
        }
    }
}

bool WaitStateSet() { return gWaitState; }
void NoteUserEvent() {
    gLastEventTick = TickCount();
    gWaitState = false;
}
void AdjustAutoWaitCounter(int delta) { gAutoWaitCounter += delta; }

bool UserCancelledFlag() { return gUserCancelled; }
void SetUserCancelledFlag(bool value) { gUserCancelled = value; }

void SetEscapeKeyReader(KeyStateReader reader) { gEscapeReader = reader; }
bool EscapeKeyDown() { return gEscapeReader && gEscapeReader(); }

void SetDebuggerService(DebuggerService service) { gDebuggerService = service; }

} // namespace kelp

// Called at every loop back-edge of compiled code: when nothing is due this
// is one clock read and one comparison.
extern "C" void RuntimeBackgroundTask(void) {
    using namespace kelp;
    int32_t now = TickCount();
    if (now == gLastServiceTick)
        return;
    gLastServiceTick = now;
    ScanBackgroundTasks(false);
    // A clock that stepped back refreshes the check as well.
    if (now < gLastCancelCheckTick || now > gLastCancelCheckTick + 60) {
        gUserCancelled = EscapeKeyDown();
        gLastCancelCheckTick = now;
    }
    if (gDebuggerService)
        gDebuggerService();
    // The service's own time does not count towards the next call.
    gLastServiceTick = TickCount();
}

extern "C" void DisableAutoWaitCursor(void) { kelp::AdjustAutoWaitCounter(1); }
extern "C" void EnableAutoWaitCursor(void) { kelp::AdjustAutoWaitCounter(-1); }
