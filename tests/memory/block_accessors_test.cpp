// MemoryBlock accessors: bytes written in both orders, values read back,
// bounds, texts and colours.  Expected bytes are written out by hand from
// the formats, and the float and double ones cross-checked with Python's
// struct module.
#include "memory_kit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <functional>

using memtest::Held;
using memtest::Raised;
using memtest::Take;

namespace {

// Little-endian bytes of a value as Python's struct packs it.
std::vector<uint8_t> PythonPack(const char *format, const char *value) {
    std::string command =
        std::string("python3 -c \"import struct,sys; sys.stdout.write(struct.pack('<") + format +
        "', " + value + ").hex())\"";
    FILE *pipe = popen(command.c_str(), "r");
    char hex[64] = {};
    size_t n = pipe ? fread(hex, 1, sizeof hex - 1, pipe) : 0;
    if (pipe)
        pclose(pipe);
    std::vector<uint8_t> bytes;
    for (size_t i = 0; i + 1 < n; i += 2)
        bytes.push_back(static_cast<uint8_t>(std::stoi(std::string(hex + i, 2), nullptr, 16)));
    return bytes;
}

// Writes the value at the offset with the setter; reads with the getter.
template <auto Set, auto Value> void Write(RuntimeObject *b, int32_t o) { Set(b, o, Value); }
template <auto Get> double Read(RuntimeObject *b, int32_t o) { return double(Get(b, o)); }

struct NumberCase {
    const char *name;
    void (*write)(RuntimeObject *, int32_t); // writes the case's value
    double (*read)(RuntimeObject *, int32_t);
    double expected;             // what reading back gives
    std::vector<uint8_t> little; // the bytes in little-endian order
};

std::vector<NumberCase> NumberCases() {
    return {
        {"Long", Write<memorySetLong, -2>, Read<memoryGetLong>, -2, {0xFE, 0xFF, 0xFF, 0xFF}},
        {"Long big",
         Write<memorySetLong, 0x12345678>,
         Read<memoryGetLong>,
         0x12345678,
         {0x78, 0x56, 0x34, 0x12}},
        {"Short signed", Write<memorySetShort, -300>, Read<memoryGetShort>, -300, {0xD4, 0xFE}},
        {"UShort of -1", Write<memorySetShort, -1>, Read<memoryGetUShort>, 65535, {0xFF, 0xFF}},
        {"Byte 300 stores 44", Write<memorySetByte, 300>, Read<memoryGetByte>, 44, {44}},
        {"Byte unsigned", Write<memorySetByte, -1>, Read<memoryGetByte>, 255, {0xFF}},
        {"Boolean", Write<memorySetBoolean, uint8_t(7)>, Read<memoryGetBoolean>, 1, {1}},
        {"Single rounds", Write<memorySetSingle, 0.1>, Read<memoryGetSingle>, double(0.1f),
         PythonPack("f", "0.1")},
        {"Double", Write<memorySetDouble, -1234.5678>, Read<memoryGetDouble>, -1234.5678,
         PythonPack("d", "-1234.5678")},
    };
}

TEST(MemoryBlockNumbers, EachWidthInBothOrdersAtEveryOffsetAndBounds) {
    for (const NumberCase &c : NumberCases()) {
        for (int little = 1; little >= 0; --little) {
            SCOPED_TRACE(std::string(c.name) + (little ? " little" : " big"));
            std::vector<uint8_t> expected = c.little;
            if (!little)
                std::reverse(expected.begin(), expected.end());
            const int width = int(expected.size());
            for (int32_t offset : {0, 3}) {
                Held block(newMemoryBlock(width + 3));
                block.block()->littleEndian = (uint8_t)little;
                EXPECT_EQ(Raised([&] { c.write(block.get(), offset); }).className, "");
                std::vector<uint8_t> bytes = block.bytes();
                EXPECT_EQ(
                    std::vector<uint8_t>(bytes.begin() + offset, bytes.begin() + offset + width),
                    expected);
                EXPECT_EQ(c.read(block.get(), offset), c.expected);
            }
            // One byte short at either end: refused, nothing written.
            Held block(newMemoryBlock(width + 3));
            for (int32_t offset : {-1, 4, INT32_MAX, INT32_MIN}) {
                EXPECT_EQ(Raised([&] { c.write(block.get(), offset); }).className,
                          "OutOfBoundsException")
                    << offset;
                double got = 1;
                EXPECT_EQ(Raised([&] { got = c.read(block.get(), offset); }).className,
                          "OutOfBoundsException");
                EXPECT_EQ(got, 0);
            }
            EXPECT_EQ(block.bytes(), std::vector<uint8_t>(width + 3, 0));
        }
    }
}

TEST(MemoryBlockNumbers, UnsizedViewTakesAnyOffsetAndNilRaises) {
    uint8_t storage[16] = {};
    Held view(PtrToMemoryBlock(storage + 8));
    EXPECT_EQ(memoryBlockGetSize(view.get()), -1);
    memorySetLong(view.get(), -4, 0x01020304); // before the view's start
    EXPECT_EQ(storage[4], 0x04);
    EXPECT_EQ(memoryGetLong(view.get(), -4), 0x01020304);
    EXPECT_EQ(PtrToMemoryBlock(nullptr), nullptr);
    EXPECT_EQ(Raised([] { memoryGetLong(nullptr, 0); }).className, "NilObjectException");
    Held empty(newMemoryBlock(0));
    EXPECT_EQ(Raised([&] { memoryGetByte(empty.get(), 0); }).className, "OutOfBoundsException");
}

TEST(MemoryBlockColours, EachDepthInBothOrders) {
    struct Case {
        int bits;
        uint8_t little;
        uint32_t color, readBack;
        std::vector<uint8_t> bytes;
    } cases[] = {
        {24, 1, 0x123456, 0x123456, {0x56, 0x34, 0x12}},
        {24, 0, 0x123456, 0x123456, {0x12, 0x34, 0x56}},
        {32, 1, 0xFF123456, 0x123456, {0x56, 0x34, 0x12, 0x00}},
        {32, 0, 0x123456, 0x123456, {0x00, 0x12, 0x34, 0x56}},
        // 5 bits a channel, red high; reading leaves the low 3 bits clear.
        {16, 1, 0xFF8040, 0xF88040, {0x08, 0x7E}},
        {16, 0, 0xFF8040, 0xF88040, {0x7E, 0x08}},
        {8, 1, 0x123456, 0, {0, 0, 0, 0}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.bits * 10 + c.little);
        Held block(newMemoryBlock((int32_t)c.bytes.size()));
        block.block()->littleEndian = c.little;
        memorySetColor(block.get(), 0, c.bits, c.color);
        EXPECT_EQ(block.bytes(), c.bytes);
        EXPECT_EQ(memoryGetColor(block.get(), 0, c.bits), c.readBack);
        if (c.bits != 8) {
            EXPECT_EQ(Raised([&] { memoryGetColor(block.get(), 1, c.bits); }).className,
                      "OutOfBoundsException");
        }
    }
}

TEST(MemoryBlockTexts, WrittenBytesReadBackAndBounds) {
    kelp::string hello("hello");
    kelp::string two("ab");
    kelp::string long256(std::string(256, 'x').c_str());
    struct Case {
        const char *name;
        int32_t size;
        std::function<void(RuntimeObject *)> write;
        std::vector<uint8_t> bytes; // "" and refused when empty
        std::function<std::string(RuntimeObject *)> read;
        std::string readBack;
    } cases[] = {
        {"PString",
         8,
         [&](RuntimeObject *b) { memorySetPString(b, 1, hello.Storage()); },
         {0, 5, 'h', 'e', 'l', 'l', 'o', 0},
         [](RuntimeObject *b) { return Take(memoryGetPString(b, 1)); },
         "hello"},
        {"PString too long",
         6,
         [&](RuntimeObject *b) { memorySetPString(b, 1, hello.Storage()); },
         {},
         [](RuntimeObject *b) { return Take(memoryGetPString(b, 1)); },
         ""},
        {"PString of 256 writes a length of 0",
         257,
         [&](RuntimeObject *b) { memorySetPString(b, 0, long256.Storage()); },
         {},
         [](RuntimeObject *b) {
             return std::to_string(memoryGetByte(b, 0)) + Take(memoryGetPString(b, 0));
         },
         "0"},
        {"CString",
         7,
         [&](RuntimeObject *b) { memorySetCString(b, 1, hello.Storage()); },
         {0, 'h', 'e', 'l', 'l', 'o', 0},
         [](RuntimeObject *b) { return Take(memoryGetCString(b, 1)); },
         "hello"},
        {"CString needs its NUL",
         6,
         [&](RuntimeObject *b) { memorySetCString(b, 1, hello.Storage()); },
         {},
         [](RuntimeObject *b) { return Take(memoryGetCString(b, 1)); },
         ""},
        {"StringValue zero-fills",
         4,
         [&](RuntimeObject *b) {
             memorySetLong(b, 0, -1);
             memorySetString(b, 0, 4, two.Storage());
         },
         {'a', 'b', 0, 0},
         [](RuntimeObject *b) { return Take(memoryGetString(b, 0, 2)); },
         "ab"},
        {"StringValue cuts",
         4,
         [&](RuntimeObject *b) { memorySetString(b, 1, 3, hello.Storage()); },
         {0, 'h', 'e', 'l'},
         [](RuntimeObject *b) { return Take(memoryGetString(b, 1, 3)); },
         "hel"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Held block(newMemoryBlock(c.size));
        std::string raised = Raised([&] { c.write(block.get()); }).className;
        if (c.bytes.empty() && c.size < 200) {
            EXPECT_EQ(raised, "OutOfBoundsException");
            EXPECT_EQ(block.bytes(), std::vector<uint8_t>(c.size, 0));
        } else {
            EXPECT_EQ(raised, "");
            if (!c.bytes.empty()) {
                EXPECT_EQ(block.bytes(), c.bytes);
            }
        }
        EXPECT_EQ(c.read(block.get()), c.readBack);
    }
}

TEST(MemoryBlockTexts, CStringReadStopsAtTheBlockEndAndTextsHaveNoEncoding) {
    Held block(newMemoryBlock(3));
    memorySetByte(block.get(), 0, 'a');
    memorySetByte(block.get(), 1, 'b');
    memorySetByte(block.get(), 2, 'c');
    KelpString s = memoryGetCString(block.get(), 0);
    EXPECT_EQ(s->encoding, kEncodingUnknown);
    EXPECT_EQ(Take(s), "abc");
    EXPECT_EQ(Raised([&] { memoryGetCString(block.get(), 3); }).className, "OutOfBoundsException");
    EXPECT_EQ(Raised([&] { memoryGetString(block.get(), 0, -1); }).className,
              "OutOfBoundsException");
}

TEST(MemoryBlockTexts, WStringInBothOrders) {
    kelp::string text = kelp::string::FromUTF8("h\xC3\xA9");
    for (uint8_t little : {1, 0}) {
        Held block(newMemoryBlock(16));
        block.block()->littleEndian = little;
        memorySetWString(block.get(), 0, text.Storage());
        std::vector<uint8_t> expected =
            little ? std::vector<uint8_t>{'h', 0, 0, 0, 0xE9, 0, 0, 0, 0, 0, 0, 0}
                   : std::vector<uint8_t>{0, 0, 0, 'h', 0, 0, 0, 0xE9, 0, 0, 0, 0};
        expected.resize(16, 0);
        EXPECT_EQ(block.bytes(), expected);
        KelpString back = memoryGetWString(block.get(), 0);
        EXPECT_EQ(back->encoding, kEncodingUTF16);
        EXPECT_EQ(kelp::GetUTF8String(kelp::string::Adopt(back)).View(), "h\xC3\xA9");
        Held small(newMemoryBlock(11)); // two characters and the 0 take 12
        EXPECT_EQ(Raised([&] { memorySetWString(small.get(), 0, text.Storage()); }).className,
                  "OutOfBoundsException");
    }
}

TEST(MemoryBlockPointers, PtrReadsAViewAndWritesTheData) {
    Held target(newMemoryBlock(4));
    memorySetLong(target.get(), 0, 77);
    Held holder(newMemoryBlock(16));
    memorySetPtr(holder.get(), 8, target.get());
    Held view(memoryGetPtr(holder.get(), 8));
    EXPECT_EQ(memoryBlockGetSize(view.get()), -1);
    EXPECT_EQ(memoryBlockGetPtr(view.get()), memoryBlockGetPtr(target.get()));
    EXPECT_EQ(memoryGetLong(view.get(), 0), 77);
    EXPECT_EQ(memoryGetPtr(holder.get(), 0), nullptr); // 0 gives nil
    EXPECT_EQ(Raised([&] { memoryGetPtr(holder.get(), 9); }).className, "OutOfBoundsException");
}

} // namespace
