#pragma once
// Work that is due at intervals.  A task is armed with a toolkit timeout of
// its period, so it also runs inside the toolkit's own nested loops; one
// whose timeout was removed is run by the loop alone, and keeps the loop
// from blocking while it is registered.
#include <cstdint>

namespace kelp {

class BackgroundTask {
public:
    // period in ticks (sixtieths of a second).
    explicit BackgroundTask(int32_t period);
    virtual ~BackgroundTask();
    BackgroundTask(const BackgroundTask &) = delete;
    BackgroundTask &operator=(const BackgroundTask &) = delete;

    virtual void Run() = 0;

    // Leaves the task to the loop's own scans.
    void RemoveTimeout();

    uint32_t timeoutId = 0;
    int32_t lastRun = 0;
    int32_t period = 0;
};

int BackgroundTaskCount();
// True when some registered task has no timeout of its own.
bool AnyUntimedBackgroundTask();

// Runs the due tasks, last registered first.  skipTimed leaves out tasks
// that have a timeout (the loop's pass); compiled code's call runs all.
void ScanBackgroundTasks(bool skipTimed);

// The wait state of long calculations: set when no event came for a while
// and the auto-wait counter allows it.  Nothing reads it to change the
// cursor on this platform.
bool WaitStateSet();
void NoteUserEvent();
void AdjustAutoWaitCounter(int delta);

// The user-cancel byte: Escape held, read at most once a second from
// compiled code's back-edge calls and cleared each pass of the loop.
bool UserCancelledFlag();
void SetUserCancelledFlag(bool value);

// Escape key state, from the keyboard snooper of the pane layer.
using KeyStateReader = bool (*)();
void SetEscapeKeyReader(KeyStateReader reader);
bool EscapeKeyDown();

// The debugger link's service at back-edges; null when no link is active.
using DebuggerService = void (*)();
void SetDebuggerService(DebuggerService service);

} // namespace kelp
