// RuntimeException and its subclasses.  The subclasses add no members: they
// differ only by class, which is what a Catch tests.
#include "exceptions/exception_classes.h"

#include "objects/text.h"

#include "kelp/exceptions.h"

#include <iterator>

namespace kelp {
namespace {

// Each subclass: a function-local definition built from the same rows.
template <const char *Name> ObjectDefinition *SubclassDefinition() {
    static const ClassDescription description = {
        .name = Name,
        .super = RuntimeExceptionDefinition,
        .instanceSize = sizeof(RuntimeExceptionObject),
        .targetFlags = {1, 0, 0},
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

#define KELP_EXCEPTION_NAMES(X)                                                                    \
    X(NilObjectException)                                                                          \
    X(ServiceNotAvailableException)                                                                \
    X(NoOpenTransportException)                                                                    \
    X(RegistryAccessErrorException)                                                                \
    X(IllegalCastException)                                                                        \
    X(InvalidParentException)                                                                      \
    X(StackOverflowException)                                                                      \
    X(TypeMismatchException)                                                                       \
    X(OutOfBoundsException)                                                                        \
    X(OutOfMemoryException)                                                                        \
    X(KeyNotFoundException)                                                                        \
    X(EndException)                                                                                \
    X(ThreadAlreadyRunningException)                                                               \
    X(UnsupportedFormatException)                                                                  \
    X(KeyChainException)                                                                           \
    X(OLEException)                                                                                \
    X(FunctionNotFoundException)                                                                   \
    X(IllegalLockingException)

#define KELP_DECLARE_NAME(n) constexpr char k##n[] = #n;
KELP_EXCEPTION_NAMES(KELP_DECLARE_NAME)

struct NamedDefinition {
    const char *name;
    DefinitionAccessor accessor;
};
#define KELP_ROW(n) {#n, &SubclassDefinition<k##n>},
const NamedDefinition kExceptionClasses[] = {{"RuntimeException", &RuntimeExceptionDefinition},
                                             KELP_EXCEPTION_NAMES(KELP_ROW)};

const PropertyRow kExceptionProperties[] = {
    {0x4, "ErrorNumber", &kTypeInteger, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
     offsetof(RuntimeExceptionObject, errorNumber)},
    {0x4, "Message", &kTypeString, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
     offsetof(RuntimeExceptionObject, message)},
};

} // namespace

ObjectDefinition *RuntimeExceptionDefinition() {
    static const ClassDescription description = {
        .name = "RuntimeException",
        .instanceSize = sizeof(RuntimeExceptionObject),
        .targetFlags = {1, 0, 0},
        .finalizer = KELP_ENTRY(RuntimeExceptionFinalizer),
        .properties = kExceptionProperties,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *ExceptionDefinitionNamed(const char *name) {
    for (const NamedDefinition &row : kExceptionClasses)
        if (objtext::SameName(row.name, name))
            return row.accessor();
    return nullptr;
}

void RegisterExceptionClasses() {
    for (const NamedDefinition &row : kExceptionClasses)
        AddIntrinsicClassAccessor(row.accessor);
}

} // namespace kelp

extern "C" void RuntimeExceptionFinalizer(RuntimeObject *exception) {
    if (!exception)
        return;
    auto *record = reinterpret_cast<RuntimeExceptionObject *>(exception);
    kelp::objtext::Release(record->message);
    record->message = nullptr;
}
