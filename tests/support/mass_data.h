#pragma once
// Mass property data built the way a compiler writes a layout: records of a
// big-endian 16-bit property row and a big-endian value, rows found by name
// in the class's property table (inherited rows first).
#include "objects/text.h"

#include "kelp/records.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace kelp::test {

// The row of the property `name` in the class's table, or -1.
inline int32_t PropertyRowIndex(const RuntimeClass *klass, std::string_view name) {
    for (int32_t i = klass ? klass->propertyCount - 1 : -1; i >= 0; --i) {
        std::string_view signature = objtext::View(klass->propertyTable[i].signature);
        if (signature.size() > name.size() && signature[name.size()] == '%' &&
            objtext::SameName(signature.substr(0, name.size()), name))
            return i;
    }
    return -1;
}

class MassData {
public:
    explicit MassData(const RuntimeClass *klass) : mClass(klass) {}

    MassData &Bool(std::string_view name, bool v) { return Row(name).Put(v ? 1 : 0, 1); }
    MassData &Int(std::string_view name, int32_t v) { return Row(name).Put(uint32_t(v), 4); }
    MassData &Color(std::string_view name, uint32_t rgb) { return Row(name).Put(rgb, 3); }
    MassData &Real(std::string_view name, double v) {
        uint64_t bits;
        std::memcpy(&bits, &v, 8);
        return Row(name).Put(uint32_t(bits >> 32), 4).Put(uint32_t(bits), 4);
    }
    MassData &Single(std::string_view name, float v) {
        uint32_t bits;
        std::memcpy(&bits, &v, 4);
        return Row(name).Put(bits, 4);
    }
    MassData &Text(std::string_view name, std::string_view text) {
        Row(name).Put(uint32_t(text.size()), 4);
        mBytes.append(text);
        return *this;
    }
    // A row by number, for data that names no property of the class.
    MassData &RowNumber(uint16_t row) { return Put(row, 2); }
    MassData &Put(uint32_t value, int bytes) {
        for (int i = bytes - 1; i >= 0; --i)
            mBytes.push_back(static_cast<char>((value >> (8 * i)) & 0xff));
        return *this;
    }
    const std::string &Bytes() const { return mBytes; }
    // A new string of the data; the caller owns it.
    KelpString Make() const { return objtext::Make(mBytes); }

private:
    MassData &Row(std::string_view name) {
        int32_t row = PropertyRowIndex(mClass, name);
        EXPECT_GE(row, 0) << "no property " << name;
        return Put(uint32_t(row), 2);
    }
    const RuntimeClass *mClass;
    std::string mBytes;
};

} // namespace kelp::test
