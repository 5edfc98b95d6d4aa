#pragma once
// Hooks around raising, the slot of the handler of exceptions that no code
// took, and the texts that tell the user of one.
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

// The process's handler of unhandled exceptions.  The Application class
// installs the standard one at bring-up (the application's event, then the
// notice and the end of the run); null means none, and an unhandled
// exception is then a failed assertion.  Returns the previous one.
using UnhandledHandler = void (*)(RuntimeObject *exception);
UnhandledHandler SetUnhandledHandler(UnhandledHandler handler);

// True when the object is of the named library exception class or of a
// class derived from it.
bool IsExceptionOfClass(RuntimeObject *object, const char *className);

// The message of the notice of an unhandled exception, and its explanation
// ("" when the exception has neither message nor error number).
std::string UnhandledMessageText(RuntimeObject *exception);
std::string UnhandledExplanationText(RuntimeObject *exception);

} // namespace kelp
