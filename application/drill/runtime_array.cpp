// The drill calls an array's operations through its table, by slot, as
// compiled code does; only creation and the reference count go through
// exported functions.
#include "drill/runtime_array.h"

namespace sumbrook {

namespace {

enum Slot { kGet = 0, kSet = 1 };

using StringGet = kelp_array1_get_str;
using StringSet = kelp_array1_set_str;
using ByteGet = kelp_array1_get_u8;
using ByteSet = kelp_array1_set_u8;

template <typename Fn> Fn SlotOf(RuntimeArray *array, int slot) {
    return reinterpret_cast<Fn>(array->operations[slot]);
}

} // namespace

ArrayHandle &ArrayHandle::operator=(ArrayHandle &&other) noexcept {
    if (this != &other) {
        RuntimeUnlockArray(mArray);
        mArray = other.mArray;
        other.mArray = nullptr;
    }
    return *this;
}

ArrayHandle::~ArrayHandle() { RuntimeUnlockArray(mArray); }

int32_t ArrayHandle::UBound() const {
    if (mArray == nullptr)
        return -1;
    return RuntimeUBound(mArray);
}

StringArray StringArray::Create(int32_t upperBound) {
    StringArray a;
    a.mArray = CreateArray(1, kArrayString, upperBound);
    return a;
}

Text StringArray::Get(int32_t index) const {
    if (mArray == nullptr)
        return Text();
    return Text::Adopt(SlotOf<StringGet>(mArray, kGet)(mArray, index));
}

void StringArray::Set(int32_t index, const Text &value) {
    if (mArray == nullptr)
        return;
    SlotOf<StringSet>(mArray, kSet)(mArray, value.get(), index);
}

BoolArray BoolArray::Create(int32_t upperBound) {
    BoolArray a;
    a.mArray = CreateArray(1, kArrayUInt8, upperBound);
    return a;
}

bool BoolArray::Get(int32_t index) const {
    if (mArray == nullptr)
        return false;
    return SlotOf<ByteGet>(mArray, kGet)(mArray, index) != 0;
}

void BoolArray::Set(int32_t index, bool value) {
    if (mArray == nullptr)
        return;
    SlotOf<ByteSet>(mArray, kSet)(mArray, value ? 1 : 0, index);
}

} // namespace sumbrook
