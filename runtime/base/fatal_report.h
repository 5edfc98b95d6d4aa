#pragma once
// The runtime's assertion report, the failure channel for faults of the
// runtime or of the program that no language exception describes.  Each
// report is written as one line to standard error, then handed to whatever
// presents reports: the dialogs layer installs a modal dialog with OK and
// Cancel at bring-up, tests install recorders.  OK (and every report nobody
// presents) returns, and the program goes on behind the failed assertion;
// Cancel ends the process.

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

// What a report does after its line on standard error.  The bring-up
// installs the dialog; a test may take over (count reports, say) and put the
// previous one back.  Null presents nothing.  Returns the previous one.
using FatalReportHook = void (*)(int kind, const char *file, int line, const char *condition,
                                 const char *message);
FatalReportHook SetFatalReportHook(FatalReportHook hook);

// The report of a failed KELP_ASSERT: the condition text is the expression
// as written, unless the caller names the text the report shows.
void AssertionFailed(const char *file, int line, const char *expression,
                     const char *conditionText = nullptr, const char *message = "");

} // namespace kelp

// The runtime's one assertion.  It stays in the shipped program: a false
// condition is reported, and the code goes on behind it.
//     KELP_ASSERT(count >= 0, kFile);
//     KELP_ASSERT(super != nullptr, kFile, "super", "the class has no super");
#define KELP_ASSERT(cond, file, ...)                                                               \
    do {                                                                                           \
        if (!(cond))                                                                               \
            ::kelp::AssertionFailed(file, __LINE__, #cond __VA_OPT__(, ) __VA_ARGS__);             \
    } while (0)
