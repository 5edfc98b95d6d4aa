// Variants, a Dictionary and a Date used from a real image run by the
// runtime, the way compiled code calls them: exports bound by name,
// doubles in xmm0, a byref argument as the address of a slot, and the
// division by zero caught by a handler region.
#include "support/image_builder.h"

#include <gtest/gtest.h>

#include <cstring>

using kelp::test::ImageBuilder;
using kelp::test::Reg;

namespace {

// rdi = the object in `r`; RuntimeUnlockObject.
void Unlock(ImageBuilder &b, Reg r) {
    b.MovReg(Reg::RDI, r);
    b.CallImport("RuntimeUnlockObject");
}

// Prints the variant in rax as text and releases the text; the variant
// stays in rbx for the caller to release.
void PrintVariant(ImageBuilder &b) {
    b.MovReg(Reg::RBX, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("variantToString");
    b.MovReg(Reg::R12, Reg::RAX);
    b.PutsString(Reg::R12);
    b.MovReg(Reg::RDI, Reg::R12);
    b.CallImport("RuntimeUnlockString");
}

TEST(FromAnImage, CompiledCodeUsesVariantsADictionaryAndADate) {
    ImageBuilder b;
    b.Prologue();
    b.Push(Reg::RBX);
    b.Push(Reg::R12);
    b.Push(Reg::R13);
    b.Push(Reg::R14);

    // 40 + "2": the common kind is text.
    b.MovImm(Reg::RDI, 40);
    b.CallImport("intToVariant");
    b.MovReg(Reg::R13, Reg::RAX);
    b.LoadString(Reg::RDI, "2");
    b.CallImport("stringToVariant");
    b.MovReg(Reg::R14, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::R13);
    b.MovReg(Reg::RSI, Reg::R14);
    b.CallImport("VariantAdd");
    PrintVariant(b);
    Unlock(b, Reg::RBX);

    // A Double variant as text.
    double value = 1.5;
    uint64_t bits;
    std::memcpy(&bits, &value, 8);
    b.MovImm(Reg::RAX, bits);
    b.Bytes({0x66, 0x48, 0x0F, 0x6E, 0xC0}); // movq xmm0, rax
    b.CallImport("doubleToVariant");
    PrintVariant(b);
    Unlock(b, Reg::RBX);

    // d = New Dictionary; d.Value(40) = "2"; print d.Lookup(40, 40).
    b.LoadString(Reg::RDI, "Dictionary");
    b.CallImport("RuntimeLookupClass");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("RuntimeNewObject");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovReg(Reg::RSI, Reg::R13);
    b.MovReg(Reg::RDX, Reg::R14);
    b.CallImport("dictionaryValueSetter");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovReg(Reg::RSI, Reg::R13);
    b.MovReg(Reg::RDX, Reg::R13);
    b.CallImport("DictionaryLookup");
    b.MovReg(Reg::R12, Reg::RBX); // the dictionary, while PrintVariant uses rbx
    b.Push(Reg::R12);
    b.Push(Reg::R12);
    PrintVariant(b);
    Unlock(b, Reg::RBX);
    b.Pop(Reg::R12);
    b.Pop(Reg::R12);
    Unlock(b, Reg::R12);

    // 1 \ 0 inside a handler region: the message of what was raised.
    b.CallImport("RuntimeEnterHandlerRegion");
    b.MovReg(Reg::RDI, Reg::R13);
    b.MovImm(Reg::RSI, 0);
    b.CallImport("VariantIntegerDivide"); // the variant 0 is not needed: nil is 0
    b.CallImport("RuntimeTakeException");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.CallImport("RuntimeLeaveHandlerRegion");
    b.LoadMem(Reg::RDI, Reg::RBX, 56); // Message
    b.PutsString(Reg::RDI);
    Unlock(b, Reg::RBX);
    Unlock(b, Reg::R13);
    Unlock(b, Reg::R14);

    // ParseDate("Sat, Dec 25, 2004", slot) and the SQLDate of the slot.
    const uint32_t slot = b.AddData(std::vector<uint8_t>(8, 0));
    b.LoadString(Reg::RDI, "Sat, Dec 25, 2004");
    b.LoadDataAddress(Reg::RSI, slot);
    b.CallImport("parseDate");
    b.LoadDataAddress(Reg::RBX, slot);
    b.LoadMem(Reg::RBX, Reg::RBX, 0);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovImm(Reg::RSI, 0);
    b.CallImport("dateSQLDateGetter");
    b.MovReg(Reg::R12, Reg::RAX);
    b.PutsString(Reg::R12);
    b.MovReg(Reg::RDI, Reg::R12);
    b.CallImport("RuntimeUnlockString");
    Unlock(b, Reg::RBX);

    b.Pop(Reg::R14);
    b.Pop(Reg::R13);
    b.Pop(Reg::R12);
    b.Pop(Reg::RBX);
    b.Epilogue();

    const auto result = kelp::test::RunAppended(b.Build());
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "402\n1.5e+0\n2\nDivision by zero\n2004-12-25\n");
}

} // namespace
