// An exception that no compiled code took goes to the process's handler,
// which the Application class installs; these are its slot and its texts.
#include "exceptions/unhandled.h"

#include "base/fatal_report.h"
#include "exceptions/exception_classes.h"
#include "objects/object_model.h"
#include "objects/text.h"

#include "kelp/exceptions.h"
#include "kelp/objects.h"

namespace kelp {
namespace {
UnhandledHandler gHandler = nullptr;
} // namespace

UnhandledHandler SetUnhandledHandler(UnhandledHandler handler) {
    UnhandledHandler old = gHandler;
    gHandler = handler;
    return old;
}

bool IsExceptionOfClass(RuntimeObject *object, const char *className) {
    ObjectDefinition *definition = ExceptionDefinitionNamed(className);
    return definition && RuntimeObjectIsa(object, ClassForDefinition(definition));
}

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
    if (!IsExceptionOfClass(exception, "RuntimeException"))
        return text;
    std::string_view message = objtext::View(record->message);
    if (!message.empty())
        text += "Exception Message: " + std::string(message) + "\r";
    if (record->errorNumber != 0)
        text += "Exception Error Number: " + std::to_string(record->errorNumber);
    return text;
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
