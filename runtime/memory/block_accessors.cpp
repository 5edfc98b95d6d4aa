// The typed accessors of MemoryBlock: numbers in either byte order, colours,
// addresses and texts, each checked against a sized block's size first.  A
// refused access raises OutOfBoundsException and changes nothing.
#include "memory/memory_block.h"

#include "exceptions/raise.h"
#include "strings/kstring.h"

#include "kelp/memory.h"

#include <bit>
#include <cstring>
#include <vector>

namespace kelp {
namespace {

static_assert(std::endian::native == std::endian::little,
              "accessors assume a little-endian machine");

template <typename T> T Swap(T value) {
    uint8_t bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    for (size_t i = 0; i < sizeof(T) / 2; ++i)
        std::swap(bytes[i], bytes[sizeof(T) - 1 - i]);
    std::memcpy(&value, bytes, sizeof(T));
    return value;
}

// A value of type T at `offset`, in the block's byte order; 0 when refused.
template <typename T> T Read(RuntimeObject *self, int32_t offset) {
    MemoryBlockObject *block = BlockOf(self);
    if (!CheckAccess(block, offset, sizeof(T), true))
        return T();
    T value;
    std::memcpy(&value, block->mData + offset, sizeof(T));
    return block->littleEndian ? value : Swap(value);
}

template <typename T> void Write(RuntimeObject *self, int32_t offset, T value) {
    MemoryBlockObject *block = BlockOf(self);
    if (!CheckAccess(block, offset, sizeof(T), false))
        return;
    if (!block->littleEndian)
        value = Swap(value);
    std::memcpy(block->mData + offset, &value, sizeof(T));
}

// The bytes from `offset` to the end of a sized block, or without bound on
// a view: the limit a scan may not pass.
int64_t ScanLimit(const MemoryBlockObject *block, int32_t offset) {
    return block->mSizeKnown ? block->mSize - static_cast<int64_t>(offset) : INT64_MAX;
}

} // namespace
} // namespace kelp

using namespace kelp;

// ---------------------------------------------------------------- numbers

extern "C" int32_t memoryGetLong(RuntimeObject *self, int32_t offset) {
    return Read<int32_t>(self, offset);
}
extern "C" void memorySetLong(RuntimeObject *self, int32_t offset, int32_t value) {
    Write<int32_t>(self, offset, value);
}
extern "C" int32_t memoryGetShort(RuntimeObject *self, int32_t offset) {
    return Read<int16_t>(self, offset);
}
extern "C" void memorySetShort(RuntimeObject *self, int32_t offset, int32_t value) {
    Write<int16_t>(self, offset, static_cast<int16_t>(value));
}
extern "C" int32_t memoryGetUShort(RuntimeObject *self, int32_t offset) {
    return Read<uint16_t>(self, offset);
}
extern "C" int32_t memoryGetByte(RuntimeObject *self, int32_t offset) {
    return Read<uint8_t>(self, offset);
}
extern "C" void memorySetByte(RuntimeObject *self, int32_t offset, int32_t value) {
    Write<uint8_t>(self, offset, static_cast<uint8_t>(value));
}
extern "C" uint8_t memoryGetBoolean(RuntimeObject *self, int32_t offset) {
    return Read<uint8_t>(self, offset) != 0 ? 1 : 0;
}
extern "C" void memorySetBoolean(RuntimeObject *self, int32_t offset, uint8_t value) {
    Write<uint8_t>(self, offset, value ? 1 : 0);
}
extern "C" double memoryGetSingle(RuntimeObject *self, int32_t offset) {
    return Read<float>(self, offset);
}
extern "C" void memorySetSingle(RuntimeObject *self, int32_t offset, double value) {
    Write<float>(self, offset, static_cast<float>(value));
}
extern "C" double memoryGetDouble(RuntimeObject *self, int32_t offset) {
    return Read<double>(self, offset);
}
extern "C" void memorySetDouble(RuntimeObject *self, int32_t offset, double value) {
    Write<double>(self, offset, value);
}

// An address is as wide as a pointer on this port: a 4-byte field could not
// hold one, and compiled code stores addresses in pointer-sized fields.
extern "C" RuntimeObject *memoryGetPtr(RuntimeObject *self, int32_t offset) {
    auto address = Read<uintptr_t>(self, offset);
    return address ? reinterpret_cast<RuntimeObject *>(NewView(reinterpret_cast<void *>(address)))
                   : nullptr;
}
extern "C" void memorySetPtr(RuntimeObject *self, int32_t offset, RuntimeObject *other) {
    auto *target = reinterpret_cast<MemoryBlockObject *>(other);
    Write<uintptr_t>(self, offset, reinterpret_cast<uintptr_t>(target ? target->mData : nullptr));
}

// ---------------------------------------------------------------- colours

extern "C" uint32_t memoryGetColor(RuntimeObject *self, int32_t offset, int32_t bits) {
    if (bits == 16) {
        uint32_t unit = Read<uint16_t>(self, offset);
        // Each 5-bit channel goes to the top of its byte; the low bits stay 0.
        return (((unit >> 10) & 0x1F) << 19) | (((unit >> 5) & 0x1F) << 11) | ((unit & 0x1F) << 3);
    }
    if (bits == 32)
        return Read<uint32_t>(self, offset) & 0xFFFFFF;
    if (bits != 24)
        return 0;
    MemoryBlockObject *block = BlockOf(self);
    if (!CheckAccess(block, offset, 3, true))
        return 0;
    const uint8_t *p = block->mData + offset;
    if (block->littleEndian) // blue, green, red
        return (uint32_t(p[2]) << 16) | (uint32_t(p[1]) << 8) | p[0];
    return (uint32_t(p[0]) << 16) | (uint32_t(p[1]) << 8) | p[2];
}

extern "C" void memorySetColor(RuntimeObject *self, int32_t offset, int32_t bits, uint32_t color) {
    uint32_t r = (color >> 16) & 0xFF, g = (color >> 8) & 0xFF, b = color & 0xFF;
    if (bits == 16) {
        Write<uint16_t>(self, offset,
                        static_cast<uint16_t>(((r >> 3) << 10) | ((g >> 3) << 5) | (b >> 3)));
        return;
    }
    if (bits == 32) {
        Write<uint32_t>(self, offset, color & 0xFFFFFF);
        return;
    }
    if (bits != 24)
        return;
    MemoryBlockObject *block = BlockOf(self);
    if (!CheckAccess(block, offset, 3, false))
        return;
    uint8_t *p = block->mData + offset;
    p[0] = static_cast<uint8_t>(block->littleEndian ? b : r);
    p[1] = static_cast<uint8_t>(g);
    p[2] = static_cast<uint8_t>(block->littleEndian ? r : b);
}

// ---------------------------------------------------------------- texts

extern "C" KelpString memoryGetPString(RuntimeObject *self, int32_t offset) {
    MemoryBlockObject *block = BlockOf(self);
    if (!CheckAccess(block, offset, 1, true))
        return nullptr;
    uint8_t length = block->mData[offset];
    if (!CheckAccess(block, offset, 1 + int64_t(length), true))
        return nullptr;
    return string(reinterpret_cast<const char *>(block->mData + offset + 1), length)
        .ExtractStringStorage();
}

extern "C" void memorySetPString(RuntimeObject *self, int32_t offset, KelpString value) {
    MemoryBlockObject *block = BlockOf(self);
    string text = string::Wrap(value);
    if (!CheckAccess(block, offset, 1 + int64_t(text.Length()), false))
        return;
    // Only the low 8 bits of the length fit the length byte; every byte of
    // the text is written, as the check allowed.
    block->mData[offset] = static_cast<uint8_t>(text.Length());
    std::memcpy(block->mData + offset + 1, text.CString(), static_cast<size_t>(text.Length()));
}

extern "C" KelpString memoryGetCString(RuntimeObject *self, int32_t offset) {
    MemoryBlockObject *block = BlockOf(self);
    if (!CheckAccess(block, offset, 1, true))
        return nullptr;
    // To the first 0; in a sized block never past its end, which the check
    // the language asks for alone would allow.
    const uint8_t *start = block->mData + offset;
    int64_t limit = ScanLimit(block, offset);
    int64_t n = 0;
    while (n < limit && n < INT32_MAX && start[n] != 0)
        ++n;
    return string(reinterpret_cast<const char *>(start), static_cast<long>(n))
        .ExtractStringStorage();
}

extern "C" void memorySetCString(RuntimeObject *self, int32_t offset, KelpString value) {
    MemoryBlockObject *block = BlockOf(self);
    string text = string::Wrap(value);
    if (!CheckAccess(block, offset, int64_t(text.Length()) + 1, false))
        return;
    std::memcpy(block->mData + offset, text.CString(), static_cast<size_t>(text.Length()));
    block->mData[offset + text.Length()] = 0;
}

extern "C" KelpString memoryGetString(RuntimeObject *self, int32_t offset, int32_t length) {
    MemoryBlockObject *block = BlockOf(self);
    if (length < 0) {
        RaiseOutOfBounds();
        return nullptr;
    }
    if (!CheckAccess(block, offset, length, true))
        return nullptr;
    return string(reinterpret_cast<const char *>(block->mData + offset), length)
        .ExtractStringStorage();
}

extern "C" void memorySetString(RuntimeObject *self, int32_t offset, int32_t length,
                                KelpString value) {
    MemoryBlockObject *block = BlockOf(self);
    if (length < 0) {
        RaiseOutOfBounds();
        return;
    }
    if (!CheckAccess(block, offset, length, false) || length == 0)
        return;
    string text = string::Wrap(value);
    long n = text.Length() < length ? text.Length() : length;
    std::memcpy(block->mData + offset, text.CString(), static_cast<size_t>(n));
    std::memset(block->mData + offset + n, 0, static_cast<size_t>(length - n));
}

extern "C" KelpString memoryGetWString(RuntimeObject *self, int32_t offset) {
    MemoryBlockObject *block = BlockOf(self);
    if (!block || !block->mSizeKnown) // an unsized view has no end to scan to
        return nullptr;
    if (!CheckAccess(block, offset, 1, true))
        return nullptr;
    int64_t units = ScanLimit(block, offset) / 4;
    std::vector<uint32_t> chars;
    for (int64_t i = 0; i < units; ++i) {
        uint32_t unit;
        std::memcpy(&unit, block->mData + offset + 4 * i, 4);
        if (!block->littleEndian)
            unit = Swap(unit);
        if (unit == 0)
            break;
        chars.push_back(unit);
    }
    return string::FromWide(chars.data(), static_cast<long>(chars.size())).ExtractStringStorage();
}

extern "C" void memorySetWString(RuntimeObject *self, int32_t offset, KelpString value) {
    MemoryBlockObject *block = BlockOf(self);
    if (!block)
        return;
    string units = GetUTF16String(string::Wrap(value));
    long count = units.Length() / 2;
    if (!CheckAccess(block, offset, 4 * int64_t(count) + 4, false))
        return;
    const uint8_t *from = reinterpret_cast<const uint8_t *>(units.CString());
    for (long i = 0; i <= count; ++i) {
        uint16_t unit = 0;
        if (i < count)
            std::memcpy(&unit, from + 2 * i, 2);
        uint32_t wide = block->littleEndian ? uint32_t(unit) : Swap(uint32_t(unit));
        std::memcpy(block->mData + offset + 4 * i, &wide, 4);
    }
}
