// Handles on runtime arrays, called through their table of operations as
// compiled code calls them.  Each handle owns one reference to its array.
#pragma once

#include "drill/text.h"

#include <cstdint>

namespace sumbrook {

class ArrayHandle {
public:
    ArrayHandle() = default;
    ArrayHandle(const ArrayHandle &) = delete;
    ArrayHandle &operator=(const ArrayHandle &) = delete;
    ArrayHandle(ArrayHandle &&other) noexcept : mArray(other.mArray) { other.mArray = nullptr; }
    ArrayHandle &operator=(ArrayHandle &&other) noexcept;
    ~ArrayHandle();

    RuntimeArray *get() const { return mArray; }
    // Upper bound of the one dimension, -1 for none.
    int32_t UBound() const;

protected:
    explicit ArrayHandle(RuntimeArray *owned) : mArray(owned) {}
    RuntimeArray *mArray = nullptr;
};

// A one-dimensional array of strings (element kind 3).
class StringArray : public ArrayHandle {
public:
    StringArray() = default;
    static StringArray Create(int32_t upperBound);
    Text Get(int32_t index) const;
    void Set(int32_t index, const Text &value);
};

// A one-dimensional array of booleans, one byte each (element kind 5).
class BoolArray : public ArrayHandle {
public:
    BoolArray() = default;
    static BoolArray Create(int32_t upperBound);
    bool Get(int32_t index) const;
    void Set(int32_t index, bool value);
};

} // namespace sumbrook
