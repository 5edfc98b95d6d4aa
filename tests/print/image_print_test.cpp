// A real image run by the runtime program prints a page: the PDF that the
// run leaves holds the text and the colour its code drew.
#include "support/image_builder.h"
#include "support/xvfb.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace kelp::test {
namespace {

image::Segments PrintingImage() {
    ImageBuilder b;
    b.Prologue();
    b.CallImport("RuntimeInit");
    b.MovImm(Reg::RDI, 0);
    b.CallImport("RuntimeRegisterAppObject");
    b.Push(Reg::RBX);
    b.Push(Reg::RBX); // keeps the stack aligned
    b.MovImm(Reg::RDI, 0);
    b.CallImport("RuntimeOpenPrinter");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovImm(Reg::RSI, 0);
    b.MovImm(Reg::RDX, 0x0000FF);
    b.CallImport("graphicsForeColorSetter");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.LoadString(Reg::RSI, "Printed by an image");
    b.MovImm(Reg::RDX, 30);
    b.MovImm(Reg::RCX, 60);
    b.CallImport("RuntimeGraphicsDrawString");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("RuntimeUnlockObject"); // the job goes to the file here
    b.Pop(Reg::RBX);
    b.Pop(Reg::RBX);
    b.Epilogue();
    return b.Build();
}

TEST(PrintInAnImage, AnImagePrintsAPageToPdf) {
    if (!RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    TempDir dir;
    const std::string program = dir / "printer", pdf = dir / "page.pdf";
    ASSERT_TRUE(WriteAppended(PrintingImage(), program));
    setenv("KELP_PRINT_TO_FILE", pdf.c_str(), 1);
    RunResult r = kelp::test::Run(program, {}, "", true);
    unsetenv("KELP_PRINT_TO_FILE");
    EXPECT_EQ(r.status, 0) << r.err;
    std::string text;
    if (FILE *p = popen(("pdftotext '" + pdf + "' - 2>/dev/null").c_str(), "r")) {
        char buffer[512];
        while (size_t n = fread(buffer, 1, sizeof buffer, p))
            text.append(buffer, n);
        pclose(p);
    }
    EXPECT_NE(text.find("Printed by an image"), std::string::npos) << text;
}

} // namespace
} // namespace kelp::test
