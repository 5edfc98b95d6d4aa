// Exceptions in a real image run by the runtime program: compiled code that
// raises through a runtime function, with and without a handler region.
#include "support/image_builder.h"

#include <gtest/gtest.h>

using namespace kelp::test;

namespace {

const char *kNotHandled = "An exception of class NilObjectException was not handled.  The "
                          "application must shut down.";

void Print(ImageBuilder &b, const std::string &text) {
    b.LoadDataAddress(Reg::RDI, b.AddCString(text));
    b.CallSoftImport("puts", "libc.so.6");
    b.MovImm(Reg::RDI, 0);
    b.CallSoftImport("fflush", "libc.so.6");
}

TEST(ExceptionsInAnImage, ARaiseWithNoHandlerReachesTheUnhandledHandlerOnce) {
    ImageBuilder b;
    b.Prologue();
    b.CallImport("RuntimeInit");
    b.CallImport("RuntimeNilObject");
    // Raising does not leave the runtime function: the code goes on.
    Print(b, "after the raise");
    b.CallImport("RuntimeExit");
    b.Epilogue();
    RunResult r = RunAppended(b.Build());
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "after the raise\n");
    size_t at = r.err.find(kNotHandled);
    ASSERT_NE(at, std::string::npos) << r.err;
    EXPECT_EQ(r.err.find(kNotHandled, at + 1), std::string::npos) << "reported once";
}

TEST(ExceptionsInAnImage, AHandlerRegionTakesTheException) {
    ImageBuilder b;
    EnterSaving(b, {Reg::RBX, Reg::RBX}); // callee-saved; two keep the stack aligned
    b.CallImport("RuntimeInit");
    b.CallImport("RuntimeEnterHandlerRegion");
    b.CallImport("RuntimeNilObject");
    b.CallImport("RuntimeTakeException"); // the handler's slot
    b.MovReg(Reg::RBX, Reg::RAX);
    b.CallImport("RuntimeLeaveHandlerRegion");
    // A Catch of NilObjectException: the cast succeeds only for that class;
    // anything else would raise IllegalCastException with no handler open.
    b.LoadString(Reg::RDI, "NilObjectException");
    b.CallImport("RuntimeLookupClass");
    CallWith(b, "RuntimeCheckCast", {Reg::RBX, Reg::RAX});
    UnlockObject(b, Reg::RAX);
    UnlockObject(b, Reg::RBX);
    Print(b, "caught");
    b.CallImport("RuntimeExit");
    LeaveRestoring(b, {Reg::RBX, Reg::RBX});
    RunResult r = RunAppended(b.Build());
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "caught\n");
    EXPECT_EQ(r.err.find("was not handled"), std::string::npos) << r.err;
}

} // namespace
