// The string functions and an array called from a real image, the way
// compiled code calls them: exports bound by name, arrays through their
// table of operations, floats in xmm0.
#include "kelp/arrays.h"
#include "support/image_builder.h"

#include <gtest/gtest.h>

using namespace kelp::test;

namespace {

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
    EnterSaving(b, {Reg::RBX, Reg::R12});

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
    b.LoadString(Reg::RSI, ",");
    CallWith(b, "StringJoin", {Reg::RBX});
    b.PutsString(Reg::RAX);
    CallWith(b, "RuntimeUnlockArray", {Reg::RBX});

    // Str(1234567)
    LoadDouble(b, 1234567.0);
    b.CallImport("StringStr");
    b.PutsString(Reg::RAX);

    // Str(InStr(1, "Hello", "LL"))
    b.MovImm(Reg::RDI, 1);
    b.LoadString(Reg::RSI, "Hello");
    b.LoadString(Reg::RDX, "LL");
    b.CallImport("StringInStr");
    CallWith(b, "RuntimeIntToFloat", {Reg::RAX});
    b.CallImport("StringStr");
    b.PutsString(Reg::RAX);

    // Format(1234567.891, "#,###.00")
    LoadDouble(b, 1234567.891);
    b.LoadString(Reg::RDI, "#,###.00");
    b.CallImport("StringFormat");
    b.PutsString(Reg::RAX);

    LeaveRestoring(b, {Reg::RBX, Reg::R12});

    const auto result = RunAppended(b.Build());
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "He\nalpha,Beta,gamma\n1.234567e+6\n3\n1,234,567.89\n");
}

// EndOfLine as compiled code uses it: the object fetched by its export and
// handed to the line-end operators.
TEST(FromAnImage, CompiledCodeJoinsTextToTheEndOfLineObject) {
    ImageBuilder b;
    EnterSaving(b, {Reg::RBX, Reg::R12});

    b.CallImport("RuntimeGetEndOfLineObject");
    b.MovReg(Reg::RBX, Reg::RAX);
    // "first" + EndOfLine + "second"
    b.LoadString(Reg::RSI, "first");
    CallWith(b, "RuntimeEndOfLineAddRight", {Reg::RBX});
    b.MovReg(Reg::R12, Reg::RAX);
    b.LoadString(Reg::RSI, "second");
    CallWith(b, "RuntimeEndOfLineAdd", {Reg::RBX});
    CallWith(b, "RuntimeAddString", {Reg::R12, Reg::RAX});
    b.PutsString(Reg::RAX);
    UnlockObject(b, Reg::RBX);

    LeaveRestoring(b, {Reg::RBX, Reg::R12});

    const auto result = RunAppended(b.Build());
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "first\n\nsecond\n");
}

} // namespace
