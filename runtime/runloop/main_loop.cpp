#include "runloop/main_loop.h"

#include "process/quit.h"
#include "runloop/background_task.h"
#include "runloop/pollable.h"

#include "kelp/runloop.h"

#include <gtk/gtk.h>

#include <time.h>

#include <atomic>

namespace kelp {
namespace {

WindowLoopClient gWindows;
ApplicationLoopClient gApplication;
SerialPortPoller gSerialPoller = nullptr;
ThreadSleeper gThreadSleeper = nullptr;
SocketPoller gSocketPoller = nullptr;
bool gBlockWhenIdle = true;
bool gAppRunning = false;
bool gRunEntered = false;

// The dispatch depth of MainLoopStep's iteration under way, or -1.  Nested
// steps (modal windows, DoEvents) save and restore it.
int gOwnDepth = -1;
std::atomic<bool> gServiceRequested{false};
int gServicing = 0; // services under way, nested in handlers' dialogs

gboolean ServiceOutsideLoop(gpointer) {
    gServiceRequested = false;
    // The loop's own pass follows its iteration and services everything in
    // order.
    if (InLoopOwnIteration())
        return G_SOURCE_REMOVE;
    ++gServicing;
    PollAllPollables();
    if (gSerialPoller)
        gSerialPoller();
    if (gSocketPoller)
        gSocketPoller(false);
    --gServicing;
    return G_SOURCE_REMOVE;
}

} // namespace

void SetWindowLoopClient(const WindowLoopClient &client) { gWindows = client; }
int LiveWindowCount() { return gWindows.windowCount ? gWindows.windowCount() : 0; }
void DestroyAllWindows() {
    if (gWindows.destroyAllWindows)
        gWindows.destroyAllWindows();
}

void SetApplicationLoopClient(const ApplicationLoopClient &client) { gApplication = client; }

namespace {
bool AutoQuitOn() { return gApplication.autoQuitOn && gApplication.autoQuitOn(); }
} // namespace

void SetSerialPortPoller(SerialPortPoller poller) { gSerialPoller = poller; }
void SetThreadSleeper(ThreadSleeper sleeper) { gThreadSleeper = sleeper; }
void SetSocketPoller(SocketPoller poller) { gSocketPoller = poller; }
void RunSocketPoller(bool fromDebugger) {
    if (gSocketPoller)
        gSocketPoller(fromDebugger);
}

void RequestDescriptorService() {
    if (gServiceRequested.exchange(true))
        return;
    // Attaching wakes a waiting context, from whichever thread.
    g_idle_add_full(G_PRIORITY_DEFAULT, &ServiceOutsideLoop, nullptr, nullptr);
}

bool ServicingOutsideLoop() { return gServicing > 0; }
bool InLoopOwnIteration() { return gOwnDepth >= 0 && g_main_depth() == gOwnDepth; }

bool BlockWhenIdle() { return gBlockWhenIdle; }
bool AppRunning() { return gAppRunning; }

void ResetRunState() {
    gRunEntered = false;
    gAppRunning = false;
    ClearQuitRequest();
}

void MainLoopStep(bool block) {
    if (gWindows.preStep)
        gWindows.preStep();
    bool dragging = gWindows.mouseCaptureStep && gWindows.mouseCaptureStep();
    if (dragging || AnyUntimedBackgroundTask())
        block = false;
    // A program that is about to quit for want of windows must not wait for
    // an event that may never come: the auto-quit test below ends it.
    if (block && gAppRunning && AutoQuitOn() && LiveWindowCount() == 0)
        block = false;
    const int outerDepth = gOwnDepth;
    gOwnDepth = g_main_depth() + 1;
    gtk_main_iteration_do(block ? TRUE : FALSE);
    gOwnDepth = outerDepth;
    if (gWindows.focusIdle)
        gWindows.focusIdle();
    PollAllPollables();
    if (gSerialPoller)
        gSerialPoller();
    if (gSocketPoller)
        gSocketPoller(false);
    SetUserCancelledFlag(false);
    if (LiveWindowCount() == 0 && gAppRunning && AutoQuitOn() && gApplication.quitForWantOfWindows)
        gApplication.quitForWantOfWindows();
    ScanBackgroundTasks(true);
}

} // namespace kelp

extern "C" void RuntimeRun(void) {
    using namespace kelp;
    if (gRunEntered)
        return;
    gRunEntered = true;
    gAppRunning = true;
    while (!QuitRequested())
        MainLoopStep(gBlockWhenIdle);
    DestroyAllWindows();
    if (gApplication.releaseApplication)
        gApplication.releaseApplication();
    gAppRunning = false;
}

extern "C" void RuntimeDoEvents(RuntimeObject *, int32_t milliseconds) {
    using namespace kelp;
    bool saved = gBlockWhenIdle;
    gBlockWhenIdle = false;
    MainLoopStep(false);
    gBlockWhenIdle = saved;
    if (milliseconds >= 0) {
        struct timespec pause = {milliseconds / 1000, (milliseconds % 1000) * 1000000L};
        nanosleep(&pause, nullptr);
    }
}

extern "C" uint8_t getUserCancelled(void) {
    gtk_main_iteration_do(FALSE);
    kelp::SetUserCancelledFlag(kelp::EscapeKeyDown());
    return kelp::UserCancelledFlag() ? 1 : 0;
}

extern "C" void AppSleepCurrentThread(RuntimeObject *, int32_t milliseconds) {
    if (milliseconds <= 0)
        return;
    if (kelp::gThreadSleeper) {
        kelp::gThreadSleeper(milliseconds);
        return;
    }
    struct timespec pause = {milliseconds / 1000, (milliseconds % 1000) * 1000000L};
    nanosleep(&pause, nullptr);
}
