// The report line on standard error, and the hand-over to the presenter.
#include "base/fatal_report.h"

#include <cstdio>

namespace kelp {
namespace {
FatalReportHook gHook = nullptr;
} // namespace

const char *FatalReportKindText(int kind) {
    switch (kind) {
    case kFatalPluginTOCLoadFailure: return "Plugin TOC Load Failure";
    case kFatalInvalidClassDefinition: return "Invalid Class Definition";
    case kFatalUnknownClass: return "Unknown Class";
    case kFatalFailedAssertion: return "Failed Assertion";
    case kFatalUnableToWriteToHandle: return "Unable to Write to Handle";
    case kFatalCarbonLibRequired: return "CarbonLib 1.1 or Later Required";
    case kFatalCannotConnectToDebugger: return "Cannot Connect to Debugger";
    case kFatalUnhandledException: return "Unhandled Exception";
    default: return "";
    }
}

FatalReportHook SetFatalReportHook(FatalReportHook hook) {
    FatalReportHook old = gHook;
    gHook = hook;
    return old;
}

void AssertionFailed(const char *file, int line, const char *expression, const char *conditionText,
                     const char *message) {
    FatalReport(kFatalFailedAssertion, file, line, conditionText ? conditionText : expression,
                message);
}

} // namespace kelp

extern "C" void FatalReport(int kind, const char *file, int line, const char *condition,
                            const char *message) {
    const char *kindText = kelp::FatalReportKindText(kind);
    if (!file)
        file = "";
    if (!condition)
        condition = "";
    if (!message)
        message = "";

    // One line for logs and tests, always, before anything can block.
    std::fprintf(stderr, "Runtime Error %d: %s: %s: %d: Failure Condition: %s%s%s\n", kind,
                 kindText, file, line, condition, *message ? ": " : "", message);
    std::fflush(stderr);

    if (kelp::gHook)
        kelp::gHook(kind, file, line, condition, message);
}
