#include "stream_classes/memory_block_mechanism.h"

#include "kelp/exceptions.h"
#include "kelp/memory.h"
#include "kelp/objects.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace kelp {
namespace {

// Growth adds the block's size again, between 32 bytes and 1 MB, so that
// many small writes don't copy the block each time.
constexpr int64_t kLeastStep = 32;
constexpr int64_t kMostStep = 1 << 20;

RuntimeObject *ObjectOf(MemoryBlockObject *block) {
    return reinterpret_cast<RuntimeObject *>(block);
}

} // namespace

MemoryBlockMechanism::MemoryBlockMechanism(MemoryBlockObject *block)
    : mBlock(block), mLength(block && block->mSizeKnown ? block->mSize : 0) {
    RuntimeLockObject(ObjectOf(mBlock));
}

bool MemoryBlockMechanism::Read(void *buffer, int64_t count, int64_t *outRead) {
    if (outRead)
        *outRead = 0;
    if (count <= 0)
        return true;
    if (!mBlock || !mBlock->mData || !buffer) {
        mLastError = EINVAL;
        return false;
    }
    if (SizeKnown())
        count = std::min(count, mLength - mPosition);
    if (count < 1)
        return false;
    std::memcpy(buffer, mBlock->mData + mPosition, static_cast<size_t>(count));
    mPosition += count;
    if (outRead)
        *outRead = count;
    return true;
}

bool MemoryBlockMechanism::Grow(int64_t end) {
    const int64_t size = mBlock->mSize;
    if (end < size)
        return true;
    const int64_t step = std::clamp(size, kLeastStep, kMostStep);
    int64_t grown = size + step;
    if (grown < end)
        grown = end + step;
    if (grown > INT32_MAX) {
        mLastError = EFBIG;
        return false;
    }
    memoryBlockSetSize(ObjectOf(mBlock), static_cast<int32_t>(grown));
    if (mBlock->mSize != grown) {
        mLastError = ENOMEM;
        return false;
    }
    return true;
}

bool MemoryBlockMechanism::Write(const void *buffer, int64_t count) {
    if (!buffer || count < 1)
        return true;
    if (!mBlock || (!SizeKnown() && !mBlock->mData)) {
        mLastError = EINVAL;
        return false;
    }
    if (SizeKnown() && !Grow(mPosition + count))
        return false;
    std::memcpy(mBlock->mData + mPosition, buffer, static_cast<size_t>(count));
    mPosition += count;
    mLength = std::max(mLength, mPosition);
    return true;
}

bool MemoryBlockMechanism::Close() {
    if (!mBlock)
        return true;
    if (SizeKnown() && mLength > 0 && mLength != mBlock->mSize)
        memoryBlockSetSize(ObjectOf(mBlock), static_cast<int32_t>(mLength));
    RuntimeUnlockObject(ObjectOf(mBlock));
    mBlock = nullptr;
    mPosition = 0;
    return true;
}

bool MemoryBlockMechanism::IsEOF() {
    if (!mBlock)
        return true;
    return SizeKnown() && mPosition >= mLength;
}

void MemoryBlockMechanism::SetPosition(int64_t offset) {
    if (SizeKnown())
        offset = std::clamp<int64_t>(offset, 0, mBlock->mSize);
    mPosition = std::max<int64_t>(offset, 0);
}

bool MemoryBlockMechanism::SetLength(int64_t length) {
    if (!SizeKnown()) {
        mLastError = EINVAL;
        return false;
    }
    length = std::clamp<int64_t>(length, 0, INT32_MAX);
    if (length > mBlock->mSize && !Grow(length))
        return false;
    mLength = length;
    mPosition = std::min(mPosition, mLength);
    return true;
}

} // namespace kelp
