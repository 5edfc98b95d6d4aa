// Memory blocks, the cipher and encodings called from a real image through
// the runtime program, the way compiled code calls them: exports bound by
// name, classes looked up by name.
#include "support/image_builder.h"

#include <gtest/gtest.h>

using namespace kelp::test;

namespace {

TEST(FromAnImage, CompiledCodeUsesMemoryBlocksTheCipherAndEncodings) {
    ImageBuilder b;
    EnterSaving(b, {Reg::RBX, Reg::R12});

    // block = New MemoryBlock(16); block.CString(0) = "kelp"
    b.MovImm(Reg::RDI, 16);
    b.CallImport("newMemoryBlock");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.MovImm(Reg::RSI, 0);
    b.LoadString(Reg::RDX, "kelp");
    CallWith(b, "memorySetCString", {Reg::RBX});

    // cipher = New _Blowfish("secret"); cipher.Encipher(block)
    NewObjectOf(b, "_Blowfish");
    b.MovReg(Reg::R12, Reg::RAX);
    b.LoadString(Reg::RSI, "secret");
    CallWith(b, "BlowfishInitialize", {Reg::R12});
    CallWith(b, "BlowfishEncipherByBlock", {Reg::R12, Reg::RBX});
    // Deciphered, the text is back.
    CallWith(b, "BlowfishDecipherByBlock", {Reg::R12, Reg::RBX});
    b.MovImm(Reg::RSI, 0);
    CallWith(b, "memoryGetCString", {Reg::RBX});
    b.PutsString(Reg::RAX);
    UnlockObject(b, Reg::R12);
    UnlockObject(b, Reg::RBX);

    // ConvertEncoding("café", Encodings.ISOLatin1)
    b.MovImm(Reg::RDI, 0);
    b.MovImm(Reg::RSI, 43);
    b.CallImport("EncodingsGetter");
    b.MovReg(Reg::RBX, Reg::RAX);
    // The text is built at run time rather than taken from a literal.
    b.LoadString(Reg::RDI, "caf");
    b.LoadString(Reg::RSI, "\xC3\xA9");
    b.CallImport("RuntimeAddString");
    CallWith(b, "StringConvertEncoding", {Reg::RAX, Reg::RBX});
    b.PutsString(Reg::RAX);
    UnlockObject(b, Reg::RBX);

    // Encodings.ASCII.InternetName
    b.MovImm(Reg::RDI, 0);
    b.MovImm(Reg::RSI, 88);
    b.CallImport("EncodingsGetter");
    CallWith(b, "textEncodingInternetName", {Reg::RAX});
    b.PutsString(Reg::RAX);

    LeaveRestoring(b, {Reg::RBX, Reg::R12});

    const auto result = kelp::test::RunAppended(b.Build());
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "kelp\ncaf\xE9\nUS-ASCII\n");
}

} // namespace
