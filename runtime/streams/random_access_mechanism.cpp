#include "streams/random_access_mechanism.h"

#include <cstring>

namespace kelp {
namespace {

template <typename T> T Reversed(T value) {
    uint8_t bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    for (size_t i = 0; i < sizeof(T) / 2; ++i) {
        uint8_t t = bytes[i];
        bytes[i] = bytes[sizeof(T) - 1 - i];
        bytes[sizeof(T) - 1 - i] = t;
    }
    std::memcpy(&value, bytes, sizeof(T));
    return value;
}

} // namespace

bool RandomAccessMechanism::WriteByte(uint8_t value) { return Write(&value, 1); }

bool RandomAccessMechanism::WriteShort(uint16_t value) {
    if (mSwap)
        value = Reversed(value);
    return Write(&value, sizeof value);
}

bool RandomAccessMechanism::WriteLong(uint32_t value) {
    if (mSwap)
        value = Reversed(value);
    return Write(&value, sizeof value);
}

bool RandomAccessMechanism::WriteDouble(double value) {
    if (mSwap && mSwapFloats)
        value = Reversed(value);
    return Write(&value, sizeof value);
}

bool RandomAccessMechanism::ReadByte(uint8_t &value) {
    int64_t got = 0;
    return Read(&value, 1, &got) && got == 1;
}

bool RandomAccessMechanism::ReadShort(uint16_t &value) {
    int64_t got = 0;
    if (!Read(&value, sizeof value, &got) || got != sizeof value)
        return false;
    if (mSwap)
        value = Reversed(value);
    return true;
}

bool RandomAccessMechanism::ReadLong(uint32_t &value) {
    int64_t got = 0;
    if (!Read(&value, sizeof value, &got) || got != sizeof value)
        return false;
    if (mSwap)
        value = Reversed(value);
    return true;
}

bool RandomAccessMechanism::ReadDouble(double &value) {
    int64_t got = 0;
    if (!Read(&value, sizeof value, &got) || got != sizeof value)
        return false;
    if (mSwap && mSwapFloats)
        value = Reversed(value);
    return true;
}

bool RandomAccessMechanism::WriteCompactInteger(int32_t value) {
    // The most negative value has no magnitude of its own: its bit pattern
    // is stored as the magnitude with the sign clear.
    bool negative = value < 0 && value != INT32_MIN;
    uint32_t magnitude = value == INT32_MIN ? 0x80000000u
                         : negative         ? static_cast<uint32_t>(-value)
                                            : static_cast<uint32_t>(value);
    uint8_t byte = static_cast<uint8_t>((magnitude & 0x3F) | (negative ? 0x40 : 0));
    magnitude >>= 6;
    if (magnitude)
        byte |= 0x80;
    if (!WriteByte(byte))
        return false;
    while (magnitude) {
        byte = static_cast<uint8_t>(magnitude & 0x7F);
        magnitude >>= 7;
        if (magnitude)
            byte |= 0x80;
        if (!WriteByte(byte))
            return false;
    }
    return true;
}

bool RandomAccessMechanism::ReadCompactInteger(int32_t &value) {
    uint8_t byte = 0;
    if (!ReadByte(byte))
        return false;
    bool negative = (byte & 0x40) != 0;
    uint32_t magnitude = byte & 0x3F;
    // Four more bytes carry the 26 bits left; a longer run is damaged data,
    // not a reason to read on forever.
    for (int shift = 6; byte & 0x80; shift += 7) {
        if (shift > 27 || !ReadByte(byte))
            return false;
        magnitude |= static_cast<uint32_t>(byte & 0x7F) << shift;
    }
    if (magnitude == 0x80000000u) {
        value = INT32_MIN;
        return true;
    }
    value = negative ? -static_cast<int32_t>(magnitude) : static_cast<int32_t>(magnitude);
    return true;
}

bool FilePtr::Read(void *buffer, int64_t count, int64_t *outRead) {
    if (outRead)
        *outRead = 0;
    if (count <= 0)
        return true;
    if (mPosition >= mLength)
        return false;
    if (count > mLength - mPosition)
        count = mLength - mPosition;
    std::memcpy(buffer, mBase + mPosition, static_cast<size_t>(count));
    mPosition += count;
    if (outRead)
        *outRead = count;
    return true;
}

bool FilePtr::Write(const void *, int64_t) {
    mLastError = kMechanismReadOnly;
    return false;
}

bool FilePtr::SetLength(int64_t) {
    mLastError = kMechanismReadOnly;
    return false;
}

void FilePtr::SetPosition(int64_t offset) {
    mPosition = offset < 0 ? 0 : offset > mLength ? mLength : offset;
}

} // namespace kelp
