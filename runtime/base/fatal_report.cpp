#include "base/fatal_report.h"

#include "process/display.h"

#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>

namespace kelp {
namespace {
FatalReportHook gHook = nullptr;
} // namespace

const char *FatalReportKindText(int kind) {
    switch (kind) {
    case 1: return "Plugin TOC Load Failure";
    case 2: return "Invalid Class Definition";
    case 3: return "Unknown Class";
    case 4: return "Failed Assertion";
    case 5: return "Unable to Write to Handle";
    case 6: return "CarbonLib 1.1 or Later Required";
    case 7: return "Cannot Connect to Debugger";
    case 8: return "Unhandled Exception";
    default: return "";
    }
}

FatalReportHook SetFatalReportHook(FatalReportHook hook) {
    FatalReportHook old = gHook;
    gHook = hook;
    return old;
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

    if (kelp::gHook) {
        kelp::gHook(kind, file, line, condition, message);
        return;
    }
    if (!kelp::DisplayAvailable())
        return; // no one to ask: go on as after OK

    GtkWidget *dialog = gtk_message_dialog_new(
        nullptr, GTK_DIALOG_MODAL, GTK_MESSAGE_ERROR, GTK_BUTTONS_OK_CANCEL,
        "Runtime Error %d: %s\nPress OK to Continue\nPress Cancel to Quit.\n\n"
        "Please report what caused this error\nalong with the information below.\n\n"
        "%s: %d\nFailure Condition: %s\n%s",
        kind, kindText, file, line, condition, message);
    gint response = gtk_dialog_run(GTK_DIALOG(dialog));
    gtk_widget_destroy(dialog);
    if (response == GTK_RESPONSE_CANCEL)
        std::exit(0);
}
