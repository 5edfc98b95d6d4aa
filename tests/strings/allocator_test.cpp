// The small-block allocator: size classes, reuse, accounting and the
// out-of-memory paths.
#include "strings/small_alloc.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <vector>

using kelp::OSalloclen;
using kelp::OSfreelen;

namespace {

// Bytes handed out and given back are counted; zero and negative sizes get
// nothing and count nothing.
TEST(SmallAllocator, CountsBytesHandedOutAndGivenBack) {
    int64_t before = kelp::TotalAllocLen();
    EXPECT_EQ(OSalloclen(0), nullptr);
    EXPECT_EQ(OSalloclen(-5), nullptr);
    OSfreelen(nullptr, 12); // accepted
    EXPECT_EQ(kelp::TotalAllocLen(), before);
    void *small = OSalloclen(10);
    void *large = OSalloclen(1000);
    ASSERT_NE(small, nullptr);
    ASSERT_NE(large, nullptr);
    EXPECT_EQ(kelp::TotalAllocLen(), before + 1010);
    OSfreelen(small, 10);
    OSfreelen(large, 1000);
    EXPECT_EQ(kelp::TotalAllocLen(), before);
}

TEST(SmallAllocator, FreedBlockServesTheNextRequestOfItsClass) {
    // 9 to 12 bytes are one class: the free list hands the block back.
    void *a = OSalloclen(12);
    OSfreelen(a, 12);
    void *b = OSalloclen(9);
    EXPECT_EQ(a, b);
    // Another class does not take it.
    void *c = OSalloclen(13);
    EXPECT_NE(c, b);
    OSfreelen(b, 9);
    OSfreelen(c, 13);
}

TEST(SmallAllocator, BlocksNeverOverlapAndStayAligned) {
    // Many blocks of every small class, each filled with its own pattern;
    // freeing every other one and allocating again must not disturb the rest.
    struct Block {
        uint8_t *p;
        long size;
        uint8_t tag;
    };
    std::vector<Block> blocks;
    for (int round = 0; round < 40; ++round)
        for (long size = 1; size <= 252; size += 7) {
            auto *p = static_cast<uint8_t *>(OSalloclen(size));
            ASSERT_NE(p, nullptr);
            EXPECT_EQ(reinterpret_cast<uintptr_t>(p) % 8, 0u) << size;
            uint8_t tag = static_cast<uint8_t>(blocks.size() * 31 + 7);
            std::memset(p, tag, static_cast<size_t>(size));
            blocks.push_back({p, size, tag});
        }
    std::set<uint8_t *> distinct;
    for (auto &b : blocks)
        distinct.insert(b.p);
    EXPECT_EQ(distinct.size(), blocks.size());
    for (size_t i = 0; i < blocks.size(); i += 2)
        OSfreelen(blocks[i].p, blocks[i].size);
    std::vector<Block> again;
    for (size_t i = 0; i < blocks.size(); i += 2) {
        auto *p = static_cast<uint8_t *>(OSalloclen(blocks[i].size));
        std::memset(p, 0xEE, static_cast<size_t>(blocks[i].size));
        again.push_back({p, blocks[i].size, 0xEE});
    }
    for (size_t i = 1; i < blocks.size(); i += 2)
        for (long k = 0; k < blocks[i].size; ++k)
            ASSERT_EQ(blocks[i].p[k], blocks[i].tag) << "block " << i << " byte " << k;
    for (size_t i = 1; i < blocks.size(); i += 2)
        OSfreelen(blocks[i].p, blocks[i].size);
    for (auto &b : again)
        OSfreelen(b.p, b.size);
}

#if defined(__SANITIZE_ADDRESS__)
#define KELP_HUGE_MALLOC_ABORTS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KELP_HUGE_MALLOC_ABORTS 1
#endif
#endif

constexpr long kImpossible = 1L << 60;

int gOutOfMemoryCalls = 0;
void CountOutOfMemory() { ++gOutOfMemoryCalls; }

// A soft failure answers null and counts nothing; a hard one takes the
// out-of-memory end.
TEST(SmallAllocator, FailuresAnswerNullOrTakeTheOutOfMemoryEnd) {
#ifdef KELP_HUGE_MALLOC_ABORTS
    GTEST_SKIP() << "the address sanitizer stops oversized requests itself";
#endif
    int64_t before = kelp::TotalAllocLen();
    gOutOfMemoryCalls = 0;
    auto previous = kelp::SetOutOfMemoryHandler(&CountOutOfMemory);
    EXPECT_EQ(OSalloclen(kImpossible, kelp::kMemFullSoft), nullptr);
    EXPECT_EQ(gOutOfMemoryCalls, 0);
    EXPECT_EQ(OSalloclen(kImpossible, kelp::kMemFullHard), nullptr);
    kelp::SetOutOfMemoryHandler(previous);
    EXPECT_EQ(gOutOfMemoryCalls, 1);
    EXPECT_EQ(kelp::TotalAllocLen(), before);
}

TEST(SmallAllocatorDeathTest, OutOfMemoryEndsTheProcessWithStatusZero) {
#ifdef KELP_HUGE_MALLOC_ABORTS
    GTEST_SKIP() << "the address sanitizer stops oversized requests itself";
#endif
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(OSalloclen(kImpossible), ::testing::ExitedWithCode(0), "");
}

} // namespace
