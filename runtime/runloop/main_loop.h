#pragma once
// One pass of the run loop, and the services other subsystems hook into it.
#include <cstdint>

namespace kelp {

// Window and pane work of a pass, supplied by the window layer.
struct WindowLoopClient {
    void (*preStep)() = nullptr;          // deferred notices and shows, newest window first
    bool (*mouseCaptureStep)() = nullptr; // true while a held press drags
    void (*focusIdle)() = nullptr;        // Idle on the focus pane
    int (*windowCount)() = nullptr;
    void (*destroyAllWindows)() = nullptr;
};
void SetWindowLoopClient(const WindowLoopClient &client);
int LiveWindowCount();
void DestroyAllWindows();

// What the loop asks of the application object, supplied by the
// Application class.
struct ApplicationLoopClient {
    // True when an application object is registered and its AutoQuit is on.
    bool (*autoQuitOn)() = nullptr;
    // The quit sequence that a program without windows goes through.
    void (*quitForWantOfWindows)() = nullptr;
    // The end of RuntimeRun drops the registered application object.
    void (*releaseApplication)() = nullptr;
};
void SetApplicationLoopClient(const ApplicationLoopClient &client);

// Serial ports and sockets are serviced once a pass.
using SerialPortPoller = void (*)();
using SocketPoller = void (*)(bool fromDebugger);
void SetSerialPortPoller(SerialPortPoller poller);
void SetSocketPoller(SocketPoller poller);
// Runs the socket layer's poller, if one is set.
void RunSocketPoller(bool fromDebugger);

// A toolkit iteration that is not the loop's own (a native dialog, an open
// menu, a handler's own gtk_main) does not reach the pass that services
// serial ports and sockets.  A descriptor watch that fires there asks for a
// service of its own, which runs as soon as that loop goes round again.
// Safe from any thread: a finished name lookup asks the same way.
void RequestDescriptorService();
// True while that service runs; a socket whose own poll is under way is
// left alone then, so none of its handlers is entered twice.
bool ServicingOutsideLoop();
// True inside a dispatch of MainLoopStep's own toolkit iteration.
bool InLoopOwnIteration();

// How Application.SleepCurrentThread sleeps: the thread scheduler puts the
// calling thread to sleep and lets the others run meanwhile.  Without one
// the whole process sleeps.
using ThreadSleeper = void (*)(int32_t milliseconds);
void SetThreadSleeper(ThreadSleeper sleeper);

// The eleven steps between two toolkit events.  `block` lets the toolkit
// wait for an event when nothing else needs the processor.  Re-entrant:
// modal windows and DoEvents call it from inside handlers.
void MainLoopStep(bool block);

// The loop's own blocking mode: set, except for the one pass of DoEvents.
bool BlockWhenIdle();
// True while RuntimeRun is inside its loop.
bool AppRunning();

// Lets a process run the loop again (tests): clears the once-only flag of
// RuntimeRun and the quit flag.
void ResetRunState();

} // namespace kelp
