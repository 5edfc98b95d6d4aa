// Arrays held in object fields, and element reads for plug-ins that go
// through the array's own checked Get slot.
#include "arrays/array_family.h"

#include "exceptions/raise.h"

#include "kelp/arrays.h"

#include <cstring>

namespace {

RuntimeArray **FieldAt(RuntimeObject *object, int32_t offset) {
    return reinterpret_cast<RuntimeArray **>(reinterpret_cast<uint8_t *>(object) + offset);
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
    if (!object) {
        kelp::RaiseNilObject();
        return nullptr;
    }
    RuntimeArray *array = *FieldAt(object, offset);
    RuntimeLockArray(array);
    return array;
}

extern "C" void arraySetter(RuntimeObject *object, int32_t offset, RuntimeArray *value) {
    if (!object) {
        kelp::RaiseNilObject();
        return;
    }
    RuntimeArray **field = FieldAt(object, offset);
    RuntimeLockUnlockArrays(value, *field);
    *field = value;
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
