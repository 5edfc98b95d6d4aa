// The runtime's own alerts, on the message window.
#include "dialogs/alert.h"

#include "dialogs/message_window.h"

#include "base/fatal_report.h"
#include "process/display.h"

#include <cstdio>
#include <cstdlib>

namespace kelp {

bool RunStopAlert(const std::string &message, const std::string &explanation,
                  AlertButtons buttons) {
    MessageWindowSpec spec;
    spec.message = message;
    spec.explanation = explanation;
    spec.icon = kIconStop;
    spec.cancelVisible = buttons == AlertButtons::kOkCancel;
    spec.cancelButton = spec.cancelVisible ? kButtonCancel : kButtonAction;
    spec.closeBoxAnswer = kButtonAction; // closing a report goes on, as OK does
    // A report may come from anywhere: only the toolkit runs while it waits.
    return RunMessageWindow(spec, MessageWait::kToolkitOnly) != kButtonCancel;
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
