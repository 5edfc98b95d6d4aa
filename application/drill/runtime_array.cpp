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

template <typename Fn>
Fn SlotOf(RuntimeArray *array, int slot) {
    return reinterpret_cast<Fn>(array->operations[slot]);
}

} // namespace

ArrayHandle &ArrayHandle::operator=(ArrayHandle &&other) noexcept {
    if (this != &other) {
        RuntimeUnlockArray(array_);
        array_ = other.array_;
        other.array_ = nullptr;
    }
    return *this;
}

ArrayHandle::~ArrayHandle() { RuntimeUnlockArray(array_); }

int32_t ArrayHandle::UBound() const {
    if (array_ == nullptr) return -1;
    return RuntimeUBound(array_);
}

StringArray StringArray::Create(int32_t upperBound) {
    StringArray a;
    a.array_ = CreateArray(1, kArrayString, upperBound);
    return a;
}

Text StringArray::Get(int32_t index) const {
    if (array_ == nullptr) return Text();
    return Text::Adopt(SlotOf<StringGet>(array_, kGet)(array_, index));
}

void StringArray::Set(int32_t index, const Text &value) {
    if (array_ == nullptr) return;
    SlotOf<StringSet>(array_, kSet)(array_, value.get(), index);
}

BoolArray BoolArray::Create(int32_t upperBound) {
    BoolArray a;
    a.array_ = CreateArray(1, kArrayUInt8, upperBound);
    return a;
}

bool BoolArray::Get(int32_t index) const {
    if (array_ == nullptr) return false;
    return SlotOf<ByteGet>(array_, kGet)(array_, index) != 0;
}

void BoolArray::Set(int32_t index, bool value) {
    if (array_ == nullptr) return;
    SlotOf<ByteSet>(array_, kSet)(array_, value ? 1 : 0, index);
}

} // namespace sumbrook
