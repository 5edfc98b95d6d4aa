// MemoryBlock as a whole: construction, Size, the B functions, operators,
// conversions, and what happens when memory runs short.
#include "memory_kit.h"

#include "memory/memory_block.h"
#include "memory/purgable.h"
#include "objects/definitions.h"

#include <gtest/gtest.h>

using memtest::Held;
using memtest::Raised;
using memtest::Take;

namespace {

// A block holding 0, 1, 2, ... n-1.
RuntimeObject *Counting(int n) {
    RuntimeObject *b = newMemoryBlock(n);
    for (int i = 0; i < n; ++i)
        memorySetByte(b, i, i);
    return b;
}

std::vector<uint8_t> Range(int from, int to) {
    std::vector<uint8_t> v;
    for (int i = from; i < to; ++i)
        v.push_back((uint8_t)i);
    return v;
}

TEST(MemoryBlock, ConstructionAndSize) {
    Held made(kelp::NewObjectOfDefinition(kelp::MemoryBlockDefinition()));
    EXPECT_EQ(made.block()->littleEndian, 1);
    memoryBlockNewConstructor(made.get(), -5); // a negative size becomes 0
    EXPECT_EQ(memoryBlockGetSize(made.get()), 0);
    EXPECT_EQ(newMemoryBlock(-1), nullptr);

    Held block(Counting(6));
    memoryBlockSetSize(block.get(), 8); // grows with zeros
    EXPECT_EQ(block.bytes(), (std::vector<uint8_t>{0, 1, 2, 3, 4, 5, 0, 0}));
    memoryBlockSetSize(block.get(), 3); // keeps the front
    EXPECT_EQ(block.bytes(), Range(0, 3));
    EXPECT_EQ(Raised([&] { memoryBlockSetSize(block.get(), -1); }).className,
              "OutOfBoundsException");
    EXPECT_EQ(memoryBlockGetSize(block.get()), 3);
    memoryBlockSetSize(block.get(), 0);
    EXPECT_EQ(memoryBlockGetSize(block.get()), 0);
    EXPECT_EQ(memoryBlockGetPtr(block.get()), nullptr);

    // A view given a size owns fresh zeroed bytes; what it looked at stays.
    uint8_t outside[4] = {9, 9, 9, 9};
    Held view(PtrToMemoryBlock(outside));
    memoryBlockSetSize(view.get(), 4);
    EXPECT_EQ(view.bytes(), std::vector<uint8_t>(4, 0));
    EXPECT_NE(memoryBlockGetPtr(view.get()), (void *)outside);
    EXPECT_EQ(outside[0], 9);
}

TEST(MemoryBlock, SubBlocks) {
    Held block(Counting(10));
    block.block()->littleEndian = 0;
    struct Case {
        const char *name;
        RuntimeObject *(*call)(RuntimeObject *);
        std::vector<uint8_t> bytes; // empty: nil
    } cases[] = {
        {"MidB(-2, 5) is the first 3", [](RuntimeObject *b) { return MemoryBlockMidB3(b, -2, 5); },
         Range(0, 3)},
        {"MidB(8, 5) is cut", [](RuntimeObject *b) { return MemoryBlockMidB3(b, 8, 5); },
         Range(8, 10)},
        {"MidB(10, 1) is nil", [](RuntimeObject *b) { return MemoryBlockMidB3(b, 10, 1); }, {}},
        {"MidB(3, 0) is nil", [](RuntimeObject *b) { return MemoryBlockMidB3(b, 3, 0); }, {}},
        {"MidB(4)", [](RuntimeObject *b) { return MemoryBlockMidB2(b, 4); }, Range(4, 10)},
        {"LeftB(2)", [](RuntimeObject *b) { return MemoryBlockLeftB(b, 2); }, Range(0, 2)},
        {"LeftB(99)", [](RuntimeObject *b) { return MemoryBlockLeftB(b, 99); }, Range(0, 10)},
        {"RightB(3)", [](RuntimeObject *b) { return MemoryBlockRightB(b, 3); }, Range(7, 10)},
        {"RightB(12)", [](RuntimeObject *b) { return MemoryBlockRightB(b, 12); }, Range(0, 10)},
        {"RightB(-1)", [](RuntimeObject *b) { return MemoryBlockRightB(b, -1); }, {}},
        {"LeftB(INT32_MIN)", [](RuntimeObject *b) { return MemoryBlockLeftB(b, INT32_MIN); }, {}},
        {"MidB(INT32_MIN, INT32_MIN)",
         [](RuntimeObject *b) { return MemoryBlockMidB3(b, INT32_MIN, INT32_MIN); },
         {}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Held part(c.call(block.get()));
        if (c.bytes.empty()) {
            EXPECT_EQ(part.get(), nullptr);
            continue;
        }
        ASSERT_NE(part.get(), nullptr);
        EXPECT_EQ(part.bytes(), c.bytes);
        EXPECT_EQ(part.block()->littleEndian, 0); // taken over
        EXPECT_NE(part.block()->mData, block.block()->mData);
    }
}

TEST(MemoryBlock, CompareAndAdd) {
    Held a(Counting(4));
    Held whole(MemoryBlockMidB2(a.get(), 0));
    Held shorter(Counting(3));
    Held different(Counting(4));
    memorySetByte(different.get(), 2, 200);
    struct Case {
        RuntimeObject *left, *right;
        int32_t result;
    } cases[] = {
        {a.get(), a.get(), 0},
        {a.get(), whole.get(), 0},
        {nullptr, a.get(), -1},
        {a.get(), nullptr, 1},
        {shorter.get(), a.get(), -1},
        {a.get(), shorter.get(), 1},
        {a.get(), different.get(), 2 - 200},
        {different.get(), a.get(), 200 - 2},
    };
    for (const Case &c : cases)
        EXPECT_EQ(MemoryBlockCompareOperator(c.left, c.right), c.result);

    Held sum(MemoryBlockAddOperator(shorter.get(), a.get()));
    EXPECT_EQ(sum.bytes(), (std::vector<uint8_t>{0, 1, 2, 0, 1, 2, 3}));
    Held withNil(MemoryBlockAddOperator(nullptr, shorter.get()));
    EXPECT_EQ(withNil.bytes(), Range(0, 3));
}

TEST(MemoryBlock, ConversionsToAndFromStringAndPtr) {
    kelp::string text = kelp::string::FromBytes("a\0b", 3, kEncodingUTF8);
    Held block(kelp::NewObjectOfDefinition(kelp::MemoryBlockDefinition()));
    MemoryBlockFromStringOperator(block.get(), text.Storage());
    EXPECT_EQ(block.bytes(), (std::vector<uint8_t>{'a', 0, 'b'}));
    KelpString back = MemoryBlockToStringOperator(block.get());
    EXPECT_EQ(back->encoding, kEncodingUnknown);
    EXPECT_EQ(Take(back), std::string("a\0b", 3));

    char outside[] = "xyz";
    ConvertPtrToMemoryBlock(block.get(), outside);
    EXPECT_EQ(memoryBlockGetSize(block.get()), -1);
    EXPECT_EQ(memoryBlockGetPtr(block.get()), (void *)outside);
    EXPECT_EQ(MemoryBlockToStringOperator(block.get()), nullptr); // a view has no size
}

// A cache that gives its memory back when asked, once.
class Cache : public kelp::purgableObject {
public:
    explicit Cache(std::vector<std::string> *log, const char *name) : mLog(log), mName(name) {}
    bool Purge() override {
        mLog->push_back(mName);
        bool had = mFull;
        mFull = false;
        return had;
    }
    bool mFull = true;

private:
    std::vector<std::string> *mLog;
    const char *mName;
};

TEST(Purging, LeastRecentlyUsedFirstAndAFailedAllocationPurges) {
    std::vector<std::string> log;
    Cache a(&log, "a"), b(&log, "b"), c(&log, "c");
    a.AddToList();
    b.AddToList();
    c.AddToList();
    a.Touch(); // order now a, c, b
    EXPECT_EQ(kelp::purgableObject::Head(), &a);
    EXPECT_EQ(a.Next(), &c);

    // One failed try: b, the least recently used, is purged and the retry
    // serves the block.
    kelp::FailNextBlockAllocations(1);
    Held block(newMemoryBlock(100));
    EXPECT_NE(block.get(), nullptr);
    EXPECT_EQ(log, (std::vector<std::string>{"b"}));

    // Two failures: b has nothing left, so c gives; then only a has.
    log.clear();
    kelp::FailNextBlockAllocations(2);
    Held second(newMemoryBlock(100));
    EXPECT_NE(second.get(), nullptr);
    EXPECT_EQ(log, (std::vector<std::string>{"b", "c", "b", "c", "a"}));

    // Nothing left to purge: the constructor raises, NewMemoryBlock answers nil.
    kelp::FailNextBlockAllocations(1);
    EXPECT_EQ(newMemoryBlock(100), nullptr);
    Held made(kelp::NewObjectOfDefinition(kelp::MemoryBlockDefinition()));
    kelp::FailNextBlockAllocations(1);
    EXPECT_EQ(Raised([&] { memoryBlockNewConstructor(made.get(), 8); }).className,
              "OutOfMemoryException");
    kelp::FailNextBlockAllocations(1);
    EXPECT_EQ(Raised([&] { memoryBlockSetSize(second.get(), 500); }).className,
              "OutOfMemoryException");
    EXPECT_EQ(memoryBlockGetSize(second.get()), 100); // unchanged
    kelp::FailNextBlockAllocations(0);

    c.RemoveFromList();
    EXPECT_FALSE(c.InList());
    EXPECT_EQ(a.Next(), &b);
}

} // namespace
