// The small-block allocator: 64 size classes of 4 bytes, 8,192-byte chunks.
#include "strings/small_alloc.h"

#include <cstdlib>
#include <cstring>

namespace kelp {

int64_t gTotalAllocLen = 0;

namespace {

constexpr long kClassCount = 64;
constexpr long kChunkSize = 8192;

// Free lists, threaded through the first word of each free block.
void *gFreeLists[kClassCount];
// What is left of the current chunk.
char *gChunkNext = nullptr;
long gChunkLeft = 0;

const char kOutOfMemoryText[] = "This application has run out of memory and must quit now.";

// The last-resort notice: this platform has no place to show it.
void LastResortNotice(const char *text) { (void)text; }

void DefaultOutOfMemory() {
    LastResortNotice(kOutOfMemoryText);
    std::exit(0);
}

OutOfMemoryHandler gOutOfMemory = nullptr;

void *Fail(MemFullHandling handling) {
    if (handling == kMemFullSoft)
        return nullptr;
    if (gOutOfMemory)
        gOutOfMemory();
    else
        DefaultOutOfMemory();
    return nullptr; // a test's handler came back
}

// A class takes class * 4 bytes, rounded up to 8 on this 64-bit port: a free
// block must hold its 8-byte link, and a string record must stay aligned.
long BlockBytes(long sizeClass) { return (sizeClass * 4 + 7) & ~7L; }

void *NextFree(void *block) {
    void *next;
    std::memcpy(&next, block, sizeof next);
    return next;
}

void SetNextFree(void *block, void *next) { std::memcpy(block, &next, sizeof next); }

} // namespace

void *OSalloclen(long size, MemFullHandling handling) {
    if (size <= 0)
        return nullptr;
    long sizeClass = (size + 3) / 4;
    if (sizeClass >= kClassCount) {
        void *block = std::malloc(static_cast<size_t>(size));
        if (!block)
            return Fail(handling);
        gTotalAllocLen += size;
        return block;
    }
    void *block = gFreeLists[sizeClass];
    if (block) {
        gFreeLists[sizeClass] = NextFree(block);
    } else {
        long bytes = BlockBytes(sizeClass);
        if (gChunkLeft < bytes) {
            // The rest of the old chunk is abandoned.
            char *chunk = static_cast<char *>(std::malloc(kChunkSize));
            if (!chunk)
                return Fail(handling);
            gChunkNext = chunk;
            gChunkLeft = kChunkSize;
        }
        block = gChunkNext;
        gChunkNext += bytes;
        gChunkLeft -= bytes;
    }
    gTotalAllocLen += size;
    return block;
}

void OSfreelen(void *block, long size) {
    if (!block || size <= 0)
        return;
    gTotalAllocLen -= size;
    long sizeClass = (size + 3) / 4;
    if (sizeClass >= kClassCount) {
        std::free(block);
        return;
    }
    SetNextFree(block, gFreeLists[sizeClass]);
    gFreeLists[sizeClass] = block;
}

void OutOfMemoryEnd() {
    DefaultOutOfMemory();
    std::abort(); // not reached
}

OutOfMemoryHandler SetOutOfMemoryHandler(OutOfMemoryHandler handler) {
    OutOfMemoryHandler previous = gOutOfMemory;
    gOutOfMemory = handler;
    return previous;
}

} // namespace kelp
