#pragma once
// Classes of the authoring language made the way an image's class set-up
// makes them: RuntimeNewClass on a library class, the base's rows copied,
// the image's own fields behind the base's, handlers stored in event rows.
#include "kelp/records.h"

#include <cstdint>

namespace kelp::test {

// A new string of ASCII text; the caller owns the reference.
KelpString MakeText(const char *text);
// The text of a string ("" for null).
const char *TextOf(KelpString s);

// A subclass of the library class `baseName` with `extraBytes` of fields
// behind the base's instance size.  Registers the library's classes first.
RuntimeClass *MakeSubclass(const char *baseName, const char *name, uint32_t extraBytes = 0);

// Stores `code` in the class's event row of this name (the most derived).
// False when the class has no such event.
bool SetEventHandler(RuntimeClass *klass, const char *eventName, void *code);

// Byte offset of the first field an image subclass adds behind its base.
inline uint32_t SubclassFieldsOffset(RuntimeClass *klass) {
    return klass->base ? klass->base->instanceSize : KELP_OBJECT_FIELDS_OFFSET;
}

} // namespace kelp::test
