#pragma once
// The runtime's own alerts: the one builder of the modal error dialogs that
// the runtime shows by itself (the assertion report, the notice of an
// exception no code took).  The language's message dialogs will be built
// on it.
#include <string>

namespace kelp {

enum class AlertButtons { kOk, kOkCancel };

// Shows a modal error alert with the message, the explanation below it when
// there is one, and the buttons; waits for the user.  True when the answer
// was OK.  Needs a display (the caller checks DisplayAvailable).
bool RunStopAlert(const std::string &message, const std::string &explanation, AlertButtons buttons);

// The assertion report's dialog: "Runtime Error ..." with OK and Cancel;
// Cancel ends the process.  Without a display it shows nothing.  Installed
// as the presenter of assertion reports at bring-up.
void PresentFatalReport(int kind, const char *file, int line, const char *condition,
                        const char *message);

} // namespace kelp
