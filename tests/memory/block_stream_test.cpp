// BinaryStream on a MemoryBlock: what the stream writes the block's own
// accessors read at the same offsets, in either byte order; the block grows
// under writes and is trimmed to them on Close; reads stop at the size.
#include "memory_kit.h"

#include "kelp/streams.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using memtest::Held;
using memtest::Raised;

RuntimeObject *NewStream(RuntimeObject *block) {
    static RuntimeClass *klass = RuntimeLookupClass(kelp::string("BinaryStream").Release());
    RuntimeObject *stream = RuntimeNewObject(klass);
    BinaryStringMemoryBlockCtor(stream, block);
    return stream;
}

TEST(BlockStream, WritesReadBackThroughTheBlockInEitherOrder) {
    for (const bool little : {true, false}) {
        Held block(newMemoryBlock(0));
        block.block()->littleEndian = little;
        Held stream(NewStream(block.get()));
        BinaryStreamWriteShort(stream.get(), -2);
        BinaryStreamWriteLong(stream.get(), 0x12345678);
        BinaryStreamWriteDouble(stream.get(), 2.5);
        BinaryStreamWriteByte(stream.get(), 0xAB);
        EXPECT_GE(memoryBlockGetSize(block.get()), 15) << "grown while writing";
        BinaryStreamClose(stream.get());
        ASSERT_EQ(memoryBlockGetSize(block.get()), 15) << "trimmed to what was written";
        EXPECT_EQ(memoryGetShort(block.get(), 0), -2);
        EXPECT_EQ(memoryGetLong(block.get(), 2), 0x12345678);
        EXPECT_EQ(memoryGetDouble(block.get(), 6), 2.5);
        EXPECT_EQ(memoryGetByte(block.get(), 14), 0xAB);
        const uint8_t first = little ? 0x78 : 0x12;
        EXPECT_EQ(block.bytes()[2], first) << (little ? "little" : "big");
    }
}

TEST(BlockStream, ReadsStopAtTheSizeAndPositionsClamp) {
    Held block(newMemoryBlock(6));
    memorySetLong(block.get(), 0, 0x01020304);
    memorySetShort(block.get(), 4, 0x0506);
    Held stream(NewStream(block.get()));
    struct Step {
        int32_t position; // where the read starts
        int32_t expected; // ReadLong there
        bool eof;         // EOF afterwards
    };
    const Step steps[] = {
        {0, 0x01020304, false},  // in the block's own (little) order
        {2, 0x05060102, true},   // the last four bytes
        {4, 0, true},            // two bytes left: a short read gives 0
        {-5, 0x01020304, false}, // a negative position is the start
        {99, 0, true},           // past the end is the end
    };
    for (const Step &s : steps) {
        BinaryStreamSetPosition(stream.get(), 0, s.position);
        EXPECT_EQ(BinaryStreamReadLong(stream.get()), s.expected) << "at " << s.position;
        EXPECT_EQ(BinaryStreamEOF(stream.get()) != 0, s.eof) << "at " << s.position;
    }
    EXPECT_EQ(BinaryStreamGetLength(stream.get(), 0), 6);
    BinaryStreamSetPosition(stream.get(), 0, 99);
    EXPECT_EQ(BinaryStreamGetPosition(stream.get(), 0), 6);
    BinaryStreamSetLength(stream.get(), 0, -3);
    EXPECT_EQ(BinaryStreamGetLength(stream.get(), 0), 0) << "a negative length is none";
    EXPECT_EQ(BinaryStreamGetPosition(stream.get(), 0), 0);
}

TEST(BlockStream, NilBlocksAndClosedStreams) {
    EXPECT_EQ(Raised([] { RuntimeUnlockObject(NewStream(nullptr)); }).className,
              "NilObjectException");
    Held block(newMemoryBlock(4));
    memorySetLong(block.get(), 0, 7);
    Held stream(NewStream(block.get()));
    BinaryStreamClose(stream.get());
    BinaryStreamClose(stream.get());
    EXPECT_EQ(BinaryStreamReadLong(stream.get()), 0);
    BinaryStreamWriteLong(stream.get(), 9);
    EXPECT_EQ(memoryGetLong(block.get(), 0), 7) << "a closed stream writes nothing";
    EXPECT_EQ(memoryBlockGetSize(block.get()), 4);
    EXPECT_FALSE(BinaryStreamEOF(stream.get()));
}

} // namespace
