// Names an image binds that only class registration used to provide, holes
// of names nobody exports, and the intrinsic function table reached by name,
// each run as an image on the bare runtime.
#include "support/image_builder.h"

#include <gtest/gtest.h>

using namespace kelp::test;

namespace {

TEST(BindableNames, LifeCycleHooksOfApplicationBindBeforeRegistration) {
    // Binding runs before the classes register: these rows must be static.
    ImageBuilder b;
    b.Prologue();
    b.CallImport("RuntimeInit");
    for (const char *name : {"ApplicationInitializer", "ApplicationFinalizer"}) {
        b.MovImm(Reg::RDI, 0); // no object: each does nothing
        b.CallImport(name);
        b.PutsText(std::string(name) + " ran");
    }
    b.Epilogue();
    RunResult r = RunAppended(b.Build());
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err.find("was not exported"), std::string::npos) << r.err;
    EXPECT_EQ(r.out, "ApplicationInitializer ran\nApplicationFinalizer ran\n");
}

TEST(BindableNames, CallingANameNobodyExportsReportsItAndGoesOn) {
    // A hole left as its chain link would send the call into the image's own
    // bytes; it reaches a report of the name instead, and returns 0.
    ImageBuilder b;
    b.Prologue();
    b.CallImport("NoSuchExportHere");
    b.CallImport("NoSuchExportHere");
    CallWith(b, "RuntimeIntToFloat", {Reg::RAX}); // 0 as a number; still alive after
    b.PutsText("after the calls");
    b.Epilogue();
    RunResult r = RunAppended(b.Build());
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "after the calls\n");
    size_t reports = 0;
    for (size_t at = 0;
         (at = r.err.find("'NoSuchExportHere' was not exported", at)) != std::string::npos; ++at)
        ++reports;
    EXPECT_EQ(reports, 3u) << "one at binding, one per call: " << r.err;
}

// Looks the declaration up, calls what it finds with a literal (and an
// integer), prints the result and releases it.
void CallByDeclaration(ImageBuilder &b, const std::string &declaration, const std::string &text,
                       int64_t count) {
    b.MovImm(Reg::RDI, 0);
    b.LoadDataAddress(Reg::RSI, b.AddCString(declaration));
    b.CallImport("KELPLoadGlobalMethod");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.LoadString(Reg::RDI, text);
    b.MovImm(Reg::RSI, uint64_t(count));
    b.CallReg(Reg::RBX);
    b.MovReg(Reg::R12, Reg::RAX);
    b.PutsString(Reg::R12);
    CallWith(b, "RuntimeUnlockString", {Reg::R12});
}

TEST(BindableNames, AFunctionOfTheLanguageIsFoundByItsDeclaration) {
    ImageBuilder b;
    EnterSaving(b, {Reg::RBX, Reg::R12}); // callee-saved; two keep the stack aligned
    b.CallImport("RuntimeInit");
    CallByDeclaration(b, "Left(s As String, count As Integer) As String", "kelpies", 4);
    CallByDeclaration(b, "Function TRIM(text as string) as String", "  padded  ", 0);
    CallByDeclaration(b, "Mid(s As String, start As Integer) As String", "kelpies", 5);
    LeaveRestoring(b, {Reg::RBX, Reg::R12});
    RunResult r = RunAppended(b.Build());
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, "kelp\npadded\nies\n");
}

} // namespace
