// What happens to an exception that no compiled code took: the application
// may deal with it in its UnhandledException event; otherwise the user is
// told which class of exception ended the program, and the run ends.
#include "exceptions/unhandled.h"

#include "exceptions/exception_classes.h"
#include "base/fatal_report.h"
#include "objects/object_model.h"
#include "objects/text.h"
#include "process/quit.h"
#include "process/display.h"

#include "kelp/exceptions.h"
#include "kelp/objects.h"

#include <gtk/gtk.h>

#include <cstdio>

namespace kelp {
namespace {

UnhandledHandler gHandler = nullptr;
UnhandledEvent gEvent = nullptr;
bool gInEvent = false;
void (*gCloseAllWindows)() = nullptr;

bool IsOfDefinition(RuntimeObject *object, const char *name) {
    ObjectDefinition *definition = ExceptionDefinitionNamed(name);
    return definition && RuntimeObjectIsa(object, ClassForDefinition(definition));
}

void ShowUnhandledMessage(const std::string &message, const std::string &explanation) {
    if (!DisplayAvailable()) {
        std::fprintf(stderr, "%s\n", message.c_str());
        if (!explanation.empty())
            std::fprintf(stderr, "%s\n", explanation.c_str());
        std::fflush(stderr);
        return;
    }
    GtkWidget *dialog = gtk_message_dialog_new(nullptr, GTK_DIALOG_MODAL, GTK_MESSAGE_ERROR,
                                               GTK_BUTTONS_OK, "%s", message.c_str());
    if (!explanation.empty())
        gtk_message_dialog_format_secondary_text(GTK_MESSAGE_DIALOG(dialog), "%s",
                                                 explanation.c_str());
    gtk_dialog_run(GTK_DIALOG(dialog));
    gtk_widget_destroy(dialog);
}

} // namespace

UnhandledHandler SetUnhandledHandler(UnhandledHandler handler) {
    UnhandledHandler old = gHandler;
    gHandler = handler;
    return old;
}

void InstallStandardUnhandledHandler() { gHandler = &StandardUnhandledHandler; }

void SetUnhandledExceptionEvent(UnhandledEvent event) { gEvent = event; }
bool InUnhandledExceptionEvent() { return gInEvent; }

void SetCloseAllWindows(void (*closeAllWindows)()) { gCloseAllWindows = closeAllWindows; }

std::string UnhandledMessageText(RuntimeObject *exception) {
    RuntimeClass *klass = GetObjectClass(exception);
    std::string_view name = objtext::View(klass ? klass->name : nullptr);
    return "An exception of class " + std::string(name) +
           " was not handled.  The application must shut down.";
}

std::string UnhandledExplanationText(RuntimeObject *exception) {
    std::string text;
    if (!exception)
        return text;
    auto *record = reinterpret_cast<RuntimeExceptionObject *>(exception);
    // Only objects of RuntimeException carry the two fields.
    if (!IsOfDefinition(exception, "RuntimeException"))
        return text;
    std::string_view message = objtext::View(record->message);
    if (!message.empty())
        text += "Exception Message: " + std::string(message) + "\r";
    if (record->errorNumber != 0)
        text += "Exception Error Number: " + std::to_string(record->errorNumber);
    return text;
}

void StandardUnhandledHandler(RuntimeObject *exception) {
    if (!exception)
        return;
    bool isEnd = IsOfDefinition(exception, "EndException");
    if (!isEnd && gEvent) {
        gInEvent = true;
        bool dealtWith = gEvent(exception);
        gInEvent = false;
        if (dealtWith)
            return;
    }
    if (QuitRequested())
        return;
    if (isEnd) {
        if (gCloseAllWindows)
            gCloseAllWindows();
    } else {
        ShowUnhandledMessage(UnhandledMessageText(exception), UnhandledExplanationText(exception));
    }
    RequestQuit();
}

} // namespace kelp

extern "C" void RuntimeUnhandledException(RuntimeObject *exception) {
    if (kelp::gHandler) {
        // The handler may release what the raiser holds; keep the object
        // alive until it is done.
        RuntimeLockObject(exception);
        kelp::gHandler(exception);
        RuntimeUnlockObject(exception);
        return;
    }
    FatalReport(kFatalFailedAssertion, "runtime/exceptions/unhandled.cpp", __LINE__, "0", "");
}
