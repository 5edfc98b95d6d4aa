// The runtime's alerts on the toolkit's message dialog.
#include "dialogs/alert.h"

#include "base/fatal_report.h"
#include "process/display.h"

#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>

namespace kelp {

bool RunStopAlert(const std::string &message, const std::string &explanation,
                  AlertButtons buttons) {
    GtkWidget *dialog = gtk_message_dialog_new(
        nullptr, GTK_DIALOG_MODAL, GTK_MESSAGE_ERROR,
        buttons == AlertButtons::kOkCancel ? GTK_BUTTONS_OK_CANCEL : GTK_BUTTONS_OK, "%s",
        message.c_str());
    if (!explanation.empty())
        gtk_message_dialog_format_secondary_text(GTK_MESSAGE_DIALOG(dialog), "%s",
                                                 explanation.c_str());
    const gint response = gtk_dialog_run(GTK_DIALOG(dialog));
    gtk_widget_destroy(dialog);
    return response != GTK_RESPONSE_CANCEL;
}

void PresentFatalReport(int kind, const char *file, int line, const char *condition,
                        const char *message) {
    if (!DisplayAvailable())
        return; // no one to ask: go on as after OK
    char head[128];
    std::snprintf(head, sizeof head, "Runtime Error %d: %s\n", kind, FatalReportKindText(kind));
    const std::string text = std::string(head) +
                             "Press OK to Continue\nPress Cancel to Quit.\n\n"
                             "Please report what caused this error\nalong with the information "
                             "below.\n\n" +
                             file + ": " + std::to_string(line) +
                             "\nFailure Condition: " + condition + "\n" + message;
    if (!RunStopAlert(text, "", AlertButtons::kOkCancel))
        std::exit(0);
}

} // namespace kelp
