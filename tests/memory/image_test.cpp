// Memory blocks, the cipher and encodings called from a real image through
// the runtime program, the way compiled code calls them: exports bound by
// name, classes looked up by name.
#include "support/image_builder.h"

#include <gtest/gtest.h>

using kelp::test::ImageBuilder;
using kelp::test::Reg;

namespace {

TEST(FromAnImage, CompiledCodeUsesMemoryBlocksTheCipherAndEncodings) {
    ImageBuilder b;
    b.Prologue();
    b.Push(Reg::RBX);
    b.Push(Reg::R12);

    // block = New MemoryBlock(16); block.CString(0) = "kelp"
    b.MovImm(Reg::RDI, 16);
    b.CallImport("newMemoryBlock");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovImm(Reg::RSI, 0);
    b.LoadString(Reg::RDX, "kelp");
    b.CallImport("memorySetCString");

    // cipher = New _Blowfish("secret"); cipher.Encipher(block)
    b.LoadString(Reg::RDI, "_Blowfish");
    b.CallImport("RuntimeLookupClass");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("RuntimeNewObject");
    b.MovReg(Reg::R12, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::R12);
    b.LoadString(Reg::RSI, "secret");
    b.CallImport("BlowfishInitialize");
    b.MovReg(Reg::RDI, Reg::R12);
    b.MovReg(Reg::RSI, Reg::RBX);
    b.CallImport("BlowfishEncipherByBlock");
    // Deciphered, the text is back.
    b.MovReg(Reg::RDI, Reg::R12);
    b.MovReg(Reg::RSI, Reg::RBX);
    b.CallImport("BlowfishDecipherByBlock");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovImm(Reg::RSI, 0);
    b.CallImport("memoryGetCString");
    b.PutsString(Reg::RAX);
    b.MovReg(Reg::RDI, Reg::R12);
    b.CallImport("RuntimeUnlockObject");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("RuntimeUnlockObject");

    // ConvertEncoding("café", Encodings.ISOLatin1)
    b.MovImm(Reg::RDI, 0);
    b.MovImm(Reg::RSI, 43);
    b.CallImport("EncodingsGetter");
    b.MovReg(Reg::RBX, Reg::RAX);
    // The text is built at run time rather than taken from a literal.
    b.LoadString(Reg::RDI, "caf");
    b.LoadString(Reg::RSI, "\xC3\xA9");
    b.CallImport("RuntimeAddString");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.MovReg(Reg::RSI, Reg::RBX);
    b.CallImport("StringConvertEncoding");
    b.PutsString(Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("RuntimeUnlockObject");

    // Encodings.ASCII.InternetName
    b.MovImm(Reg::RDI, 0);
    b.MovImm(Reg::RSI, 88);
    b.CallImport("EncodingsGetter");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("textEncodingInternetName");
    b.PutsString(Reg::RAX);

    b.Pop(Reg::R12);
    b.Pop(Reg::RBX);
    b.Epilogue();

    const auto result = kelp::test::RunAppended(b.Build());
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "kelp\ncaf\xE9\nUS-ASCII\n");
}

} // namespace
