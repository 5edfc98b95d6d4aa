#pragma once
// Hooks around raising and the handler of exceptions that no code took.
#include "kelp/records.h"

#include <cstdint>
#include <string>

namespace kelp {

// Called with each exception at RuntimeRaiseException (the debugger link
// sets it).  Returns the previous hook.
using RaiseHook = void (*)(RuntimeObject *exception);
RaiseHook SetRaiseHook(RaiseHook hook);

// Open handler regions on this thread.
int32_t HandlerRegionDepth();

// The process's handler of unhandled exceptions; null means none, and an
// unhandled exception is then a failed assertion.  Returns the previous one.
using UnhandledHandler = void (*)(RuntimeObject *exception);
UnhandledHandler SetUnhandledHandler(UnhandledHandler handler);

// The standard handler, installed at start-up: the application's
// UnhandledException event, then the message and the end of the run.
void StandardUnhandledHandler(RuntimeObject *exception);
void InstallStandardUnhandledHandler();

// The application's "UnhandledException" event, supplied by the Application
// class: returns true when the application dealt with the exception.
using UnhandledEvent = bool (*)(RuntimeObject *exception);
void SetUnhandledExceptionEvent(UnhandledEvent event);
// True while that event runs.
bool InUnhandledExceptionEvent();

// How an EndException ends the run: the window classes close all windows.
void SetCloseAllWindows(void (*closeAllWindows)());

// The message of the dialog for an unhandled exception, and its explanation
// ("" when the exception has neither message nor error number).
std::string UnhandledMessageText(RuntimeObject *exception);
std::string UnhandledExplanationText(RuntimeObject *exception);

} // namespace kelp
