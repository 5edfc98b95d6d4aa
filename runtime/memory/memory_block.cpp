// MemoryBlock: raw bytes for the language.  A block either owns a sized
// buffer (every access checked against the size) or is an unsized view on
// memory somebody else owns (nothing checked: the caller vouches for it).
#include "memory/memory_block.h"

#include "memory/purgable.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/memory.h"
#include "kelp/objects.h"

#include <cstring>

namespace kelp {
namespace {

void RaiseOutOfMemory() {
    RaiseWithMessage("OutOfMemoryException", "Not enough memory for the MemoryBlock");
}

// Frees an owned buffer and leaves the block empty and sized.
void DropBuffer(MemoryBlockObject *block) {
    if (block->mSizeKnown && block->mSize > 0)
        FreeBlockBytes(block->mData, block->mSize);
    block->mData = nullptr;
    block->mSize = 0;
    block->mSizeKnown = 1;
}

// Gives the block a new owned buffer of `size` bytes holding `bytes`.
// False (block unchanged) when memory is short.
bool Replace(MemoryBlockObject *block, long size, const void *bytes) {
    uint8_t *data = nullptr;
    if (size > 0) {
        data = static_cast<uint8_t *>(AllocateBlockBytes(size));
        if (!data)
            return false;
        if (bytes)
            std::memcpy(data, bytes, static_cast<size_t>(size));
    }
    DropBuffer(block);
    block->mData = data;
    block->mSize = static_cast<int32_t>(size);
    return true;
}

RuntimeObject *AsObject(MemoryBlockObject *block) {
    return reinterpret_cast<RuntimeObject *>(block);
}

// The block's bytes as a sized range: an unsized view has none.
long KnownSize(const MemoryBlockObject *block) { return block->mSizeKnown ? block->mSize : 0; }

} // namespace

MemoryBlockObject *BlockOf(RuntimeObject *object) {
    if (!object) {
        RaiseNilObject();
        return nullptr;
    }
    return reinterpret_cast<MemoryBlockObject *>(object);
}

MemoryBlockObject *NewSizedBlock(long size, const void *bytes) {
    RuntimeObject *object = NewObjectOfDefinition(MemoryBlockDefinition());
    if (!object)
        return nullptr;
    auto *block = reinterpret_cast<MemoryBlockObject *>(object);
    if (!Replace(block, size, bytes)) {
        RuntimeUnlockObject(object);
        return nullptr;
    }
    return block;
}

MemoryBlockObject *NewView(void *address) {
    RuntimeObject *object = NewObjectOfDefinition(MemoryBlockDefinition());
    if (!object)
        return nullptr;
    auto *block = reinterpret_cast<MemoryBlockObject *>(object);
    block->mData = static_cast<uint8_t *>(address);
    block->mSize = 0;
    block->mSizeKnown = 0;
    return block;
}

bool CheckAccess(const MemoryBlockObject *block, int64_t offset, int64_t width, bool isRead) {
    if (!block)
        return false;
    bool ok = block->mSizeKnown ? offset >= 0 && offset + width <= block->mSize : true;
    if (isRead && !block->mData)
        ok = false;
    // A write into a sized block without data can only be of width 0.
    if (!isRead && !block->mData && width > 0)
        ok = false;
    if (!ok)
        RaiseOutOfBounds();
    return ok;
}

} // namespace kelp

using namespace kelp;

extern "C" void MemoryBlockInitializer(RuntimeObject *self) {
    if (MemoryBlockObject *block = reinterpret_cast<MemoryBlockObject *>(self)) {
        block->littleEndian = 1;
        block->mSizeKnown = 1;
    }
}

extern "C" void MemoryBlockFinalizer(RuntimeObject *self) {
    if (self)
        DropBuffer(reinterpret_cast<MemoryBlockObject *>(self));
}

extern "C" void memoryBlockNewConstructor(RuntimeObject *self, int32_t bytes) {
    MemoryBlockObject *block = BlockOf(self);
    if (!block)
        return;
    if (!Replace(block, bytes < 0 ? 0 : bytes, nullptr))
        RaiseOutOfMemory();
}

extern "C" RuntimeObject *newMemoryBlock(int32_t bytes) {
    if (bytes < 0)
        return nullptr;
    return AsObject(NewSizedBlock(bytes));
}

extern "C" RuntimeObject *PtrToMemoryBlock(void *address) {
    return address ? AsObject(NewView(address)) : nullptr;
}

extern "C" int32_t memoryBlockGetSize(RuntimeObject *self) {
    MemoryBlockObject *block = BlockOf(self);
    if (!block)
        return 0;
    return block->mSizeKnown ? block->mSize : -1;
}

extern "C" void memoryBlockSetSize(RuntimeObject *self, int32_t bytes) {
    MemoryBlockObject *block = BlockOf(self);
    if (!block || (block->mSizeKnown && bytes == block->mSize))
        return;
    if (bytes < 0) {
        RaiseOutOfBounds();
        return;
    }
    if (bytes == 0) {
        DropBuffer(block);
        return;
    }
    auto *data = static_cast<uint8_t *>(AllocateBlockBytes(bytes));
    if (!data) {
        RaiseOutOfMemory();
        return;
    }
    // An unsized view given a size becomes an owned, zeroed block: the
    // memory it looked at isn't ours to copy from or to free.
    long keep = KnownSize(block) < bytes ? KnownSize(block) : bytes;
    if (keep > 0)
        std::memcpy(data, block->mData, static_cast<size_t>(keep));
    DropBuffer(block);
    block->mData = data;
    block->mSize = bytes;
}

extern "C" void *memoryBlockGetPtr(RuntimeObject *self) {
    MemoryBlockObject *block = BlockOf(self);
    return block ? block->mData : nullptr;
}

// ------------------------------------------------------------ new blocks

extern "C" RuntimeObject *MemoryBlockMidB3(RuntimeObject *self, int32_t offset, int32_t length) {
    MemoryBlockObject *block = BlockOf(self);
    if (!block)
        return nullptr;
    int64_t from = offset, count = length;
    if (from < 0) {
        count += from;
        from = 0;
    }
    long size = KnownSize(block);
    if (from >= size || count < 1)
        return nullptr;
    if (from + count > size)
        count = size - from;
    MemoryBlockObject *result = NewSizedBlock(static_cast<long>(count), block->mData + from);
    if (!result) {
        RaiseOutOfMemory();
        return nullptr;
    }
    result->littleEndian = block->littleEndian;
    return AsObject(result);
}

extern "C" RuntimeObject *MemoryBlockMidB2(RuntimeObject *self, int32_t offset) {
    MemoryBlockObject *block = BlockOf(self);
    return block ? MemoryBlockMidB3(self, offset, block->mSize) : nullptr;
}

extern "C" RuntimeObject *MemoryBlockLeftB(RuntimeObject *self, int32_t bytes) {
    return MemoryBlockMidB3(self, 0, bytes);
}

extern "C" RuntimeObject *MemoryBlockRightB(RuntimeObject *self, int32_t bytes) {
    MemoryBlockObject *block = BlockOf(self);
    if (!block)
        return nullptr;
    int64_t from = static_cast<int64_t>(KnownSize(block)) - bytes;
    if (from < INT32_MIN)
        from = INT32_MIN;
    return MemoryBlockMidB3(self, static_cast<int32_t>(from), bytes);
}

// ------------------------------------------------------------ operators

extern "C" RuntimeObject *MemoryBlockAddOperator(RuntimeObject *self, RuntimeObject *other) {
    auto *a = reinterpret_cast<MemoryBlockObject *>(self);
    auto *b = reinterpret_cast<MemoryBlockObject *>(other);
    long sizeA = a ? KnownSize(a) : 0, sizeB = b ? KnownSize(b) : 0;
    if (sizeA + sizeB > INT32_MAX) {
        RaiseOutOfMemory();
        return nullptr;
    }
    MemoryBlockObject *result = NewSizedBlock(sizeA + sizeB);
    if (!result) {
        RaiseOutOfMemory();
        return nullptr;
    }
    if (sizeA > 0)
        std::memcpy(result->mData, a->mData, static_cast<size_t>(sizeA));
    if (sizeB > 0)
        std::memcpy(result->mData + sizeA, b->mData, static_cast<size_t>(sizeB));
    return AsObject(result);
}

extern "C" int32_t MemoryBlockCompareOperator(RuntimeObject *self, RuntimeObject *other) {
    auto *a = reinterpret_cast<MemoryBlockObject *>(self);
    auto *b = reinterpret_cast<MemoryBlockObject *>(other);
    if (a == b || (a && b && a->mData == b->mData))
        return 0;
    if (!a)
        return -1;
    if (!b)
        return 1;
    long sizeA = KnownSize(a), sizeB = KnownSize(b);
    long common = sizeA < sizeB ? sizeA : sizeB;
    for (long i = 0; i < common; ++i)
        if (a->mData[i] != b->mData[i])
            return static_cast<int32_t>(a->mData[i]) - static_cast<int32_t>(b->mData[i]);
    return sizeA < sizeB ? -1 : (sizeA > sizeB ? 1 : 0);
}

extern "C" KelpString MemoryBlockToStringOperator(RuntimeObject *self) {
    MemoryBlockObject *block = BlockOf(self);
    if (!block || KnownSize(block) == 0)
        return nullptr;
    return string(reinterpret_cast<const char *>(block->mData), KnownSize(block))
        .ExtractStringStorage();
}

extern "C" void MemoryBlockFromStringOperator(RuntimeObject *self, KelpString value) {
    MemoryBlockObject *block = BlockOf(self);
    if (!block)
        return;
    string text = string::Wrap(value);
    if (!Replace(block, text.Length(), text.CString()))
        RaiseOutOfMemory();
}

extern "C" void ConvertPtrToMemoryBlock(RuntimeObject *self, void *address) {
    MemoryBlockObject *block = BlockOf(self);
    if (!block)
        return;
    DropBuffer(block);
    block->mData = static_cast<uint8_t *>(address);
    block->mSize = 0;
    block->mSizeKnown = 0;
}
