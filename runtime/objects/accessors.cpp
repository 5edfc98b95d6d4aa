// Accessors of a field at a byte offset, shared by the property rows of many
// classes.  Compiled code calls them with the object and the row's offset.
#include "objects/text.h"

#include "kelp/objects.h"
#include "objects/standard_exceptions.h"

#include <cstring>

namespace {

// The field's address, or null (with NilObjectException) for a null object
// or an offset that points back into the object header.
template <typename T> T *Field(RuntimeObject *object, int32_t offset) {
    if (!object) {
        kelp::RaiseStandardException(kelp::StandardException::kNilObject);
        return nullptr;
    }
    if (offset < static_cast<int32_t>(sizeof(RuntimeObject)) || !object->klass ||
        static_cast<uint32_t>(offset) + sizeof(T) > object->klass->instanceSize) {
        kelp::RaiseStandardException(kelp::StandardException::kOutOfBounds);
        return nullptr;
    }
    return reinterpret_cast<T *>(reinterpret_cast<unsigned char *>(object) + offset);
}

template <typename T> T Get(RuntimeObject *object, int32_t offset) {
    T value{};
    if (T *field = Field<T>(object, offset))
        std::memcpy(&value, field, sizeof(T));
    return value;
}

template <typename T> void Set(RuntimeObject *object, int32_t offset, T value) {
    if (T *field = Field<T>(object, offset))
        std::memcpy(field, &value, sizeof(T));
}

} // namespace

extern "C" int32_t intGetter(RuntimeObject *o, int32_t off) { return Get<int32_t>(o, off); }
extern "C" void intSetter(RuntimeObject *o, int32_t off, int32_t v) { Set(o, off, v); }
extern "C" uint8_t boolGetter(RuntimeObject *o, int32_t off) { return Get<uint8_t>(o, off); }
extern "C" void boolSetter(RuntimeObject *o, int32_t off, uint8_t v) {
    Set<uint8_t>(o, off, v ? 1 : 0);
}
extern "C" int16_t shortGetter(RuntimeObject *o, int32_t off) { return Get<int16_t>(o, off); }
extern "C" void shortSetter(RuntimeObject *o, int32_t off, int16_t v) { Set(o, off, v); }
extern "C" float singleGetter(RuntimeObject *o, int32_t off) { return Get<float>(o, off); }
extern "C" void singleSetter(RuntimeObject *o, int32_t off, float v) { Set(o, off, v); }
extern "C" double doubleGetter(RuntimeObject *o, int32_t off) { return Get<double>(o, off); }
extern "C" void doubleSetter(RuntimeObject *o, int32_t off, double v) { Set(o, off, v); }

extern "C" RuntimeObject *objGetter(RuntimeObject *o, int32_t off) {
    RuntimeObject *value = Get<RuntimeObject *>(o, off);
    RuntimeLockObject(value);
    return value;
}

extern "C" void objSetter(RuntimeObject *o, int32_t off, RuntimeObject *value) {
    if (RuntimeObject **field = Field<RuntimeObject *>(o, off)) {
        RuntimeObject *old = *field;
        RuntimeLockObject(value); // lock first: storing the same object is safe
        *field = value;
        RuntimeUnlockObject(old);
    }
}

extern "C" KelpString stringGetter(RuntimeObject *o, int32_t off) {
    KelpString value = Get<KelpString>(o, off);
    kelp::objtext::Retain(value);
    return value;
}

extern "C" void stringSetter(RuntimeObject *o, int32_t off, KelpString value) {
    if (KelpString *field = Field<KelpString>(o, off)) {
        KelpString old = *field;
        kelp::objtext::Retain(value);
        *field = value;
        kelp::objtext::Release(old);
    }
}
