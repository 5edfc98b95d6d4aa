#include "app/unhandled_exceptions.h"

#include "app/application.h"
#include "dialogs/alert.h"
#include "exceptions/unhandled.h"
#include "process/display.h"
#include "process/quit.h"
#include "windows/window.h"

#include <cstdio>
#include <string>

namespace kelp {
namespace {

// The notice on standard error without a display, else in a stop alert.
void ShowUnhandledNotice(const std::string &message, const std::string &explanation) {
    if (!DisplayAvailable()) {
        std::fprintf(stderr, "%s\n", message.c_str());
        if (!explanation.empty())
            std::fprintf(stderr, "%s\n", explanation.c_str());
        std::fflush(stderr);
        return;
    }
    RunStopAlert(message, explanation, AlertButtons::kOk);
}

} // namespace

void StandardUnhandledHandler(RuntimeObject *exception) {
    if (!exception)
        return;
    const bool isEnd = IsExceptionOfClass(exception, "EndException");
    if (!isEnd && FireApplicationUnhandledException(exception))
        return;
    if (QuitRequested())
        return;
    if (isEnd)
        CloseAllWindows();
    else
        ShowUnhandledNotice(UnhandledMessageText(exception), UnhandledExplanationText(exception));
    RequestQuit();
}

} // namespace kelp
