// The string functions and an array called from a real image, the way
// compiled code calls them: exports bound by name, arrays through their
// table of operations, floats in xmm0.
#include "kelp/arrays.h"
#include "support/image_builder.h"

#include <gtest/gtest.h>

#include <cstring>

using kelp::test::ImageBuilder;
using kelp::test::Reg;

namespace {

// movq xmm0, rax
void MoveRaxToXmm0(ImageBuilder &b) { b.Bytes({0x66, 0x48, 0x0F, 0x6E, 0xC0}); }

// Calls slot `slot` of the array in rbx; the arguments behind the array are
// already in rsi, rdx.
void CallSlot(ImageBuilder &b, int slot) {
    b.LoadMem(Reg::RAX, Reg::RBX, 8);        // the table of operations
    b.LoadMem(Reg::RAX, Reg::RAX, 8 * slot); // the slot
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallReg(Reg::RAX);
}

TEST(FromAnImage, CompiledCodeCallsTheStringFunctionsAndAnArraysSlots) {
    ImageBuilder b;
    b.Prologue();
    b.Push(Reg::RBX);
    b.Push(Reg::R12);

    // Left("Hello", 2)
    b.LoadString(Reg::RDI, "Hello");
    b.MovImm(Reg::RSI, 2);
    b.CallImport("StringDBCSLeft");
    b.PutsString(Reg::RAX);

    // An array of three strings, filled and sorted through its slots, joined.
    b.MovImm(Reg::RDI, 1);
    b.MovImm(Reg::RSI, kArrayString);
    b.MovImm(Reg::RDX, 2);
    b.MovImm(Reg::RAX, 0); // a variadic call uses no vector registers
    b.CallImport("CreateArray");
    b.MovReg(Reg::RBX, Reg::RAX);
    const char *words[] = {"gamma", "Beta", "alpha"};
    for (int i = 0; i < 3; ++i) {
        b.LoadString(Reg::RSI, words[i]);
        b.MovImm(Reg::RDX, (uint64_t)i);
        CallSlot(b, kArraySlotSet);
    }
    CallSlot(b, kArraySlotSort);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.LoadString(Reg::RSI, ",");
    b.CallImport("StringJoin");
    b.PutsString(Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("RuntimeUnlockArray");

    // Str(1234567)
    double value = 1234567.0;
    uint64_t bits;
    std::memcpy(&bits, &value, 8);
    b.MovImm(Reg::RAX, bits);
    MoveRaxToXmm0(b);
    b.CallImport("StringStr");
    b.PutsString(Reg::RAX);

    // Str(InStr(1, "Hello", "LL"))
    b.MovImm(Reg::RDI, 1);
    b.LoadString(Reg::RSI, "Hello");
    b.LoadString(Reg::RDX, "LL");
    b.CallImport("StringInStr");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("RuntimeIntToFloat");
    b.CallImport("StringStr");
    b.PutsString(Reg::RAX);

    // Format(1234567.891, "#,###.00")
    value = 1234567.891;
    std::memcpy(&bits, &value, 8);
    b.MovImm(Reg::RAX, bits);
    MoveRaxToXmm0(b);
    b.LoadString(Reg::RDI, "#,###.00");
    b.CallImport("StringFormat");
    b.PutsString(Reg::RAX);

    b.Pop(Reg::R12);
    b.Pop(Reg::RBX);
    b.Epilogue();

    const auto result = kelp::test::RunAppended(b.Build());
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "He\nalpha,Beta,gamma\n1.234567e+6\n3\n1,234,567.89\n");
}

// EndOfLine as compiled code uses it: the object fetched by its export and
// handed to the line-end operators.
TEST(FromAnImage, CompiledCodeJoinsTextToTheEndOfLineObject) {
    ImageBuilder b;
    b.Prologue();
    b.Push(Reg::RBX);
    b.Push(Reg::R12);

    b.CallImport("RuntimeGetEndOfLineObject");
    b.MovReg(Reg::RBX, Reg::RAX);
    // "first" + EndOfLine + "second"
    b.MovReg(Reg::RDI, Reg::RBX);
    b.LoadString(Reg::RSI, "first");
    b.CallImport("RuntimeEndOfLineAddRight");
    b.MovReg(Reg::R12, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.LoadString(Reg::RSI, "second");
    b.CallImport("RuntimeEndOfLineAdd");
    b.MovReg(Reg::RDI, Reg::R12);
    b.MovReg(Reg::RSI, Reg::RAX);
    b.CallImport("RuntimeAddString");
    b.PutsString(Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("RuntimeUnlockObject");

    b.Pop(Reg::R12);
    b.Pop(Reg::RBX);
    b.Epilogue();

    const auto result = kelp::test::RunAppended(b.Build());
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "first\n\nsecond\n");
}

} // namespace
