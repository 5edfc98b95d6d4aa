// Variants, a Dictionary and a Date used from a real image run by the
// runtime, the way compiled code calls them: exports bound by name,
// doubles in xmm0, a byref argument as the address of a slot, and the
// division by zero caught by a handler region.
#include "support/image_builder.h"

#include <gtest/gtest.h>

using namespace kelp::test;

namespace {

// Prints the variant in rax as text and releases the text; the variant
// stays in rbx for the caller to release.
void PrintVariant(ImageBuilder &b) {
    b.MovReg(Reg::RBX, Reg::RAX);
    CallWith(b, "variantToString", {Reg::RAX});
    b.MovReg(Reg::R12, Reg::RAX);
    b.PutsString(Reg::R12);
    CallWith(b, "RuntimeUnlockString", {Reg::R12});
}

TEST(FromAnImage, CompiledCodeUsesVariantsADictionaryAndADate) {
    ImageBuilder b;
    EnterSaving(b, {Reg::RBX, Reg::R12, Reg::R13, Reg::R14});

    // 40 + "2": the common kind is text.
    b.MovImm(Reg::RDI, 40);
    b.CallImport("intToVariant");
    b.MovReg(Reg::R13, Reg::RAX);
    b.LoadString(Reg::RDI, "2");
    b.CallImport("stringToVariant");
    b.MovReg(Reg::R14, Reg::RAX);
    CallWith(b, "VariantAdd", {Reg::R13, Reg::R14});
    PrintVariant(b);
    UnlockObject(b, Reg::RBX);

    // A Double variant as text.
    LoadDouble(b, 1.5);
    b.CallImport("doubleToVariant");
    PrintVariant(b);
    UnlockObject(b, Reg::RBX);

    // d = New Dictionary; d.Value(40) = "2"; print d.Lookup(40, 40).
    NewObjectOf(b, "Dictionary");
    b.MovReg(Reg::RBX, Reg::RAX);
    CallWith(b, "dictionaryValueSetter", {Reg::RBX, Reg::R13, Reg::R14});
    CallWith(b, "DictionaryLookup", {Reg::RBX, Reg::R13, Reg::R13});
    b.MovReg(Reg::R12, Reg::RBX); // the dictionary, while PrintVariant uses rbx
    b.Push(Reg::R12);
    b.Push(Reg::R12);
    PrintVariant(b);
    UnlockObject(b, Reg::RBX);
    b.Pop(Reg::R12);
    b.Pop(Reg::R12);
    UnlockObject(b, Reg::R12);

    // 1 \ 0 inside a handler region: the message of what was raised.
    b.CallImport("RuntimeEnterHandlerRegion");
    b.MovImm(Reg::RSI, 0);
    CallWith(b, "VariantIntegerDivide", {Reg::R13}); // the variant 0 is not needed: nil is 0
    b.CallImport("RuntimeTakeException");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.CallImport("RuntimeLeaveHandlerRegion");
    b.LoadMem(Reg::RDI, Reg::RBX, 56); // Message
    b.PutsString(Reg::RDI);
    UnlockObject(b, Reg::RBX);
    UnlockObject(b, Reg::R13);
    UnlockObject(b, Reg::R14);

    // ParseDate("Sat, Dec 25, 2004", slot) and the SQLDate of the slot.
    const uint32_t slot = b.AddData(std::vector<uint8_t>(8, 0));
    b.LoadString(Reg::RDI, "Sat, Dec 25, 2004");
    b.LoadDataAddress(Reg::RSI, slot);
    b.CallImport("parseDate");
    b.LoadDataAddress(Reg::RBX, slot);
    b.LoadMem(Reg::RBX, Reg::RBX, 0);
    b.MovImm(Reg::RSI, 0);
    CallWith(b, "dateSQLDateGetter", {Reg::RBX});
    b.MovReg(Reg::R12, Reg::RAX);
    b.PutsString(Reg::R12);
    CallWith(b, "RuntimeUnlockString", {Reg::R12});
    UnlockObject(b, Reg::RBX);

    LeaveRestoring(b, {Reg::RBX, Reg::R12, Reg::R13, Reg::R14});

    const auto result = RunAppended(b.Build());
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "402\n1.5e+0\n2\nDivision by zero\n2004-12-25\n");
}

} // namespace
