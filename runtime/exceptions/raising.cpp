// The runtime's own ways to raise: by class, by library class name with a
// message, and the three common ones.
#include "base/fatal_report.h"
#include "exceptions/exception_classes.h"
#include "exceptions/raise.h"
#include "objects/text.h"

#include "kelp/exceptions.h"
#include "kelp/objects.h"

#include <string>

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/exceptions/raising.cpp";

RuntimeClass *ExceptionClass(const char *name) {
    ObjectDefinition *definition = ExceptionDefinitionNamed(name);
    if (!definition)
        definition = LookupIntrinsicClass(name);
    RuntimeClass *exc = definition ? ClassForDefinition(definition) : nullptr;
    if (!exc)
        FatalReport(kFatalFailedAssertion, kFile, __LINE__, "exc", name);
    return exc;
}

RuntimeClass *CachedClass(RuntimeClass *&slot, const char *name) {
    if (!slot)
        slot = ExceptionClass(name);
    return slot;
}

RuntimeClass *gNilObjectClass = nullptr;
RuntimeClass *gIllegalCastClass = nullptr;
RuntimeClass *gOutOfBoundsClass = nullptr;

} // namespace

void RaiseOfClass(RuntimeClass *exceptionClass) {
    if (!exceptionClass) {
        FatalReport(kFatalFailedAssertion, kFile, __LINE__, "exclass", "");
        return;
    }
    RuntimeObject *exception = RuntimeNewObject(exceptionClass);
    RuntimeRaiseException(exception);
    RuntimeUnlockObject(exception);
}

void RaiseOfDefinition(ObjectDefinition *definition) {
    RaiseOfClass(definition ? ClassForDefinition(definition) : nullptr);
}

void RaiseNilObject() { RaiseOfClass(CachedClass(gNilObjectClass, "NilObjectException")); }
void RaiseIllegalCast() { RaiseOfClass(CachedClass(gIllegalCastClass, "IllegalCastException")); }
void RaiseOutOfBounds() { RaiseOfClass(CachedClass(gOutOfBoundsClass, "OutOfBoundsException")); }

void RaiseWithMessage(const char *className, const char *message, int errorNumber) {
    RuntimeClass *klass = ExceptionClass(className ? className : "RuntimeException");
    if (!klass)
        return;
    RuntimeObject *exception = RuntimeNewObject(klass);
    if (!exception)
        return;
    if (klass->instanceSize >= sizeof(RuntimeExceptionObject)) {
        auto *record = reinterpret_cast<RuntimeExceptionObject *>(exception);
        record->errorNumber = errorNumber;
        objtext::Release(record->message);
        record->message = (message && *message) ? objtext::Make(message) : nullptr;
    }
    RuntimeRaiseException(exception);
    RuntimeUnlockObject(exception);
}

} // namespace kelp

extern "C" void RuntimeRaiseFunctionNotFoundException(KelpString function, KelpString library) {
    std::string message = "Could not load " + std::string(kelp::objtext::View(function)) +
                          " from " + std::string(kelp::objtext::View(library));
    kelp::RaiseWithMessage("FunctionNotFoundException", message.c_str(), 0);
}
