#pragma once
// The standard handler of exceptions that no compiled code took, installed
// at bring-up: the application may deal with the exception in its
// UnhandledException event; otherwise the user is told which class of
// exception ended the program, and the run ends.  An EndException closes
// the windows quietly instead.
#include "kelp/records.h"

namespace kelp {

void StandardUnhandledHandler(RuntimeObject *exception);

} // namespace kelp
