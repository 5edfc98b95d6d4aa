#pragma once
// The runtime's assertion reporter.  Each report is written as one line to
// standard error, then shown in a modal dialog with OK and Cancel when a
// display exists.  OK (and every report without a display) returns, and the
// program goes on behind the failed assertion; Cancel ends the process.

enum FatalReportKind {
    kFatalPluginTOCLoadFailure = 1,
    kFatalInvalidClassDefinition = 2,
    kFatalUnknownClass = 3,
    kFatalFailedAssertion = 4,
    kFatalUnableToWriteToHandle = 5,
    kFatalCarbonLibRequired = 6,
    kFatalCannotConnectToDebugger = 7,
    kFatalUnhandledException = 8,
};

extern "C" void FatalReport(int kind, const char *file, int line, const char *condition,
                            const char *message);

namespace kelp {

// The text of a report kind, or "" for a kind without one.
const char *FatalReportKindText(int kind);

// Tests and tools may take over what a report does after its line on standard
// error (for instance count reports, or answer the dialog).  Null restores
// the dialog.  The previous hook is returned.
using FatalReportHook = void (*)(int kind, const char *file, int line, const char *condition,
                                 const char *message);
FatalReportHook SetFatalReportHook(FatalReportHook hook);

} // namespace kelp

// An assertion that stays in the shipped program: reports and goes on.
#define KELP_ASSERT(cond, file)                                                                    \
    do {                                                                                           \
        if (!(cond))                                                                               \
            FatalReport(kFatalFailedAssertion, file, __LINE__, #cond, "");                         \
    } while (0)
