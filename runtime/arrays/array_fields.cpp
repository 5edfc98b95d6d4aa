// The generic accessors of an array field at a fixed place in an object,
// which several classes' property rows share (the field holds a counted
// reference), and element reads for plug-ins that go through the array's
// own checked Get slot.
#include "arrays/array_family.h"

#include "exceptions/raise.h"
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

// Slot 0 of a one-dimensional array of the caller's element type; null
// (NilObjectException raised) for a null array.
template <typename Get> Get GetSlot(RuntimeArray *array) {
    if (!array) {
        kelp::RaiseNilObject();
        return nullptr;
    }
    return reinterpret_cast<Get>(array->operations[kArraySlotGet]);
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

extern "C" int32_t RuntimeDirectReadIntArray(RuntimeArray *array, int32_t index) {
    auto get = GetSlot<kelp_array1_get_i32>(array);
    return get ? get(array, index) : 0;
}

extern "C" stringStorage *RuntimeDirectReadStringArray(RuntimeArray *array, int32_t index) {
    auto get = GetSlot<kelp_array1_get_str>(array);
    return get ? get(array, index) : nullptr;
}

extern "C" RuntimeObject *RuntimeDirectReadObjectArray(RuntimeArray *array, int32_t index) {
    auto get = GetSlot<kelp_array1_get_obj>(array);
    return get ? get(array, index) : nullptr;
}
