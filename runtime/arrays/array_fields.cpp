// The generic accessors of an array field at a fixed place in an object,
// which several classes' property rows share.  The field holds a counted
// reference.
#include "objects/standard_exceptions.h"

#include "kelp/arrays.h"
#include "kelp/objects.h"

#include <cstring>

namespace {

// The field's address, or null (with NilObjectException or
// OutOfBoundsException) for a null object or an offset outside it.
RuntimeArray **ArrayField(RuntimeObject *object, int32_t offset) {
    if (!object) {
        kelp::RaiseStandardException(kelp::StandardException::kNilObject);
        return nullptr;
    }
    if (offset < static_cast<int32_t>(sizeof(RuntimeObject)) || !object->klass ||
        static_cast<uint32_t>(offset) + sizeof(RuntimeArray *) > object->klass->instanceSize) {
        kelp::RaiseStandardException(kelp::StandardException::kOutOfBounds);
        return nullptr;
    }
    return reinterpret_cast<RuntimeArray **>(reinterpret_cast<unsigned char *>(object) + offset);
}

} // namespace

extern "C" RuntimeArray *arrayGetter(RuntimeObject *object, int32_t offset) {
    RuntimeArray **field = ArrayField(object, offset);
    if (!field)
        return nullptr;
    RuntimeArray *value = nullptr;
    std::memcpy(&value, field, sizeof value);
    RuntimeLockArray(value);
    return value;
}

extern "C" void arraySetter(RuntimeObject *object, int32_t offset, RuntimeArray *value) {
    RuntimeArray **field = ArrayField(object, offset);
    if (!field)
        return;
    RuntimeArray *old = nullptr;
    std::memcpy(&old, field, sizeof old);
    RuntimeLockUnlockArrays(value, old); // the same array twice is safe
    std::memcpy(field, &value, sizeof value);
}
