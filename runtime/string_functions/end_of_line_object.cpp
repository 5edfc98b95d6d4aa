// The EndOfLine object of the language: one for the process, standing for
// the platform's line end in expressions such as `s + EndOfLine`.
#include "string_functions/end_of_line_object.h"

#include "kelp/objects.h"
#include "kelp/string_functions.h"

#include "objects/definitions.h"

namespace kelp {

// The class carries no state of its own: the line-end functions only need
// to know that the operand is the EndOfLine value, not what it holds.  It
// is available in console and GUI programs alike.
ObjectDefinition *EndOfLineDefinition() {
    static const ClassDescription description = {
        .name = "EndOfLine",
        .targetFlags = {1, 0, 0},
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}
} // namespace kelp

extern "C" RuntimeObject *RuntimeGetEndOfLineObject(void) {
    // Made on first use and kept for the life of the process, so every
    // caller sees the same object; each caller gets its own reference.
    static RuntimeObject *const instance = kelp::NewObjectOfDefinition(kelp::EndOfLineDefinition());
    if (instance)
        RuntimeLockObject(instance);
    return instance;
}
