// When the program stops: the first line connects and stops, later lines
// stop by breakpoint and step mode, and a stop waits for the IDE with
// everything of the program's own held.  The common path of
// RuntimeDebuggerEntry, which a debug build runs at every line, is one
// mode test and one byte read.
#include "debugger/link_state.h"

#include "arrays/array_family.h"
#include "base/ascii.h"
#include "base/fatal_report.h"
#include "exceptions/unhandled.h"
#include "objects/object_model.h"
#include "objects/text.h"
#include "runloop/background_task.h"
#include "runloop/clock.h"
#include "runloop/debugger_slots.h"
#include "runloop/pollable.h"
#include "threads/scheduler.h"
#include "timers/timer.h"

#include "kelp/debugger.h"
#include "kelp/image.h"

#include <algorithm>
#include <cstdlib>

namespace kelp::debugger {
namespace {

constexpr const char *kFile = "runtime/debugger/session.cpp";
constexpr int32_t kConnectTicks = 300;
constexpr int kWaitSliceMs = 10; // the longest a stopped program sleeps at once

LinkState gLink;

class DSDelegate final : public DebuggerDelegate {
public:
    void CommandReceived(const std::string &command, const std::string &data) override {
        RunCommand(command, data);
    }
    void ConnectionMade() override { gLink.connected = true; }
    void ConnectionLost() override { QuitLink(); }
    void LineDropped() override { ReplyError("LINE", ""); }
};
DSDelegate gDelegate;

// The poll step: what runs while the link connects and while it waits.
void PollStep(int timeoutMs) {
    PollAllPollables();
    PollSocketsForDebugger();
    ScanBackgroundTasks(false);
    if (gLink.connection)
        gLink.connection->Poll(timeoutMs);
}

// Reads what the IDE sent while the program runs, and stops if it asked.
void ServiceWhileRunning() {
    if (!gLink.connection || gLink.inLink)
        return;
    gLink.connection->Poll(0);
    if (gLink.breakRequested)
        RuntimeDebuggerBreak();
}

class DELPoller final : public Pollable {
public:
    void Poll() override { ServiceWhileRunning(); }
};
// Made once and never destroyed: it stays registered until the process
// ends, and the registry may be gone before static destructors would run.
DELPoller *gPoller = nullptr;

void Send(std::string_view command, std::string_view data) {
    if (gLink.connection)
        gLink.connection->Send(command, data);
}

void TakeOffWatch(std::vector<uintptr_t> &list, uintptr_t item, const char *message) {
    auto it = std::find(list.begin(), list.end(), item);
    if (it == list.end())
        return;
    list.erase(it);
    Send(message, HexNumber(item, kAddressBytes));
}

ObjectFinalizeHook gNextFinalizeHook = nullptr;
arrays::ArrayFreedHook gNextArrayHook = nullptr;
RaiseHook gNextRaiseHook = nullptr;

void ArrayFreed(RuntimeArray *array) {
    TakeOffWatch(gLink.arrayWatch, reinterpret_cast<uintptr_t>(array), "ADN");
    if (gNextArrayHook)
        gNextArrayHook(array);
}

void Wait();

void ExceptionRaised(RuntimeObject *exception) {
    if (gNextRaiseHook)
        gNextRaiseHook(exception);
    if (!gLink.trap || gLink.inLink || !gLink.connection ||
        IsExceptionOfClass(exception, "EndException"))
        return;
    gLink.inLink = true;
    RuntimeClass *klass = GetObjectClass(exception);
    Send("TRAP", klass ? objtext::View(klass->name) : std::string_view());
    gLink.stopFrame = reinterpret_cast<uintptr_t>(__builtin_frame_address(0));
    gLink.stopReturn = 0;
    Wait();
    gLink.inLink = false;
}

// Connects to the IDE, or ends the process when none answers in time.
void Start() {
    if (AsciiEqualNoCase(gLink.address, "127.0.0.1"))
        gLink.connection = std::make_unique<IPCSocketConnection>();
    else
        gLink.connection = std::make_unique<TCPSocketConnection>(gLink.address);
    gLink.connection->AddDelegate(&gDelegate);
    gLink.connection->Connect();
    const int32_t start = TickCount();
    while (!gLink.connected) {
        if (TickCount() - start > kConnectTicks) {
            FatalReport(kFatalCannotConnectToDebugger, kFile, __LINE__,
                        "Could not locate the target IDE for debugging.",
                        "Since we could not locate the target IDE to start a debug session, "
                        "this application will now exit.");
            std::exit(1);
        }
        PollStep(kWaitSliceMs);
    }
    gNextFinalizeHook = SetObjectFinalizeHook(&RuntimeDebugDestructor);
    gNextRaiseHook = SetRaiseHook(&ExceptionRaised);
    gNextArrayHook = arrays::SetArrayFreedHook(&ArrayFreed);
    gLink.imageBase = reinterpret_cast<uintptr_t>(CodeBase());
    if (!gPoller) {
        gPoller = new DELPoller;
        AddPollable(gPoller);
    }
    SetDebuggerService(&ServiceWhileRunning);
}

// Holds threads, timers, serial ticks and socket events, and serves the IDE
// until a command resumes.
void Wait() {
    gLink.breakRequested = false;
    const bool switchingWasDisabled = ThreadSwitchingDisabled();
    SetThreadSwitchingDisabled(true);
    HoldTimers(true);
    HoldPortEvents(true);
    gLink.resume = false;
    while (!gLink.resume)
        PollStep(kWaitSliceMs);
    HoldPortEvents(false);
    HoldTimers(false);
    SetThreadSwitchingDisabled(switchingWasDisabled);
}

bool StopDue(int32_t mode, uintptr_t frame) {
    switch (mode) {
    case kStep: return true;
    case kStepOver: return gLink.stepFrame <= frame;
    case kStepOut: return gLink.stepFrame < frame;
    default: return false;
    }
}

// The slow path of a line: start, or decide on a stop and make it.
__attribute__((noinline)) void Line(int32_t line, uintptr_t frame, uintptr_t returnAddress) {
    gLink.inLink = true;
    const bool first = !gLink.connection;
    if (first)
        Start();
    else if (!gLink.connection->IsConnected()) { // shut down: nobody to stop for
        gLink.inLink = false;
        return;
    }
    const bool breakpoint = line >= 0 && static_cast<size_t>(line) < gLink.breakpoints.size() &&
                            gLink.breakpoints[static_cast<size_t>(line)] != 0;
    if (first || breakpoint || StopDue(gLink.stepMode, frame)) {
        gLink.stepMode = kRun;
        gLink.stopFrame = frame;
        gLink.stopReturn = returnAddress;
        Send("BREAK", HexNumber(static_cast<uint32_t>(line), 4));
        Wait();
    }
    gLink.inLink = false;
}

} // namespace

LinkState &Link() { return gLink; }

void QuitLink() {
    if (gLink.connection)
        gLink.connection->Disconnect();
    std::exit(1);
}

} // namespace kelp::debugger

using namespace kelp;
using namespace kelp::debugger;

extern "C" {

void DebugRuntimeInit(void) { SetDebugModeOn(true); }

void RemoteDebuggerStartup(stringStorage *address) {
    std::string_view text = objtext::View(address);
    if (!text.empty())
        gLink.address.assign(text);
}

// Built with frame pointers (see the folder's flags), so the caller's frame
// is the word this function's frame points at.
void RuntimeDebuggerEntry(int32_t line) {
    if (gLink.inLink)
        return;
    if (gLink.stepMode == kRun &&
        (line < 0 || static_cast<size_t>(line) >= gLink.breakpoints.size() ||
         gLink.breakpoints[static_cast<size_t>(line)] == 0))
        return;
    auto *ownFrame = static_cast<uintptr_t *>(__builtin_frame_address(0));
    Line(line, ownFrame[0], reinterpret_cast<uintptr_t>(__builtin_return_address(0)));
}

void RuntimeDebuggerBreak(void) {
    if (gLink.inLink)
        return;
    gLink.inLink = true;
    if (!gLink.connection)
        Start();
    if (!gLink.connection->IsConnected()) {
        gLink.inLink = false;
        return;
    }
    auto *ownFrame = static_cast<uintptr_t *>(__builtin_frame_address(0));
    gLink.stepMode = kRun;
    gLink.stopFrame = ownFrame[0];
    gLink.stopReturn = reinterpret_cast<uintptr_t>(__builtin_return_address(0));
    Send("BREAK", "");
    Wait();
    gLink.inLink = false;
}

void RuntimeDebuggerShutdown(void) {
    if (gLink.connection)
        gLink.connection->Disconnect();
}

void RuntimeDebugDestructor(RuntimeObject *object) {
    if (object)
        TakeOffWatch(gLink.objectWatch, reinterpret_cast<uintptr_t>(object), "ODN");
    if (gNextFinalizeHook)
        gNextFinalizeHook(object);
}

} // extern "C"
