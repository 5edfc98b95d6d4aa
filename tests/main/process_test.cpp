// The whole process from main to its end, as the runtime program: bring-up,
// the image's entry, the run-down.
#include "support/image_builder.h"

#include <gtest/gtest.h>

using kelp::test::ImageBuilder;
using kelp::test::Reg;

namespace {

TEST(Process, TheEntryRunsAfterTheBringUpAndTheExitStatusIsZero) {
    // The entry reads the stack limit the bring-up set: the start-up's
    // KELPInitStackChecker call has run before it.
    ImageBuilder b;
    const uint32_t line = b.AddCString("entered");
    b.Prologue();
    b.CallImport("RuntimeInit");
    b.CallImport("RuntimeStackCheck");
    b.LoadDataAddress(Reg::RDI, line);
    b.CallSoftImport("puts", "libc.so.6");
    b.CallImport("getAppObject"); // null: no application object in a bare entry
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallSoftImport("exit", "libc.so.6"); // exit(status = the object pointer)
    b.Epilogue();
    const auto r = kelp::test::RunAppended(b.Build());
    EXPECT_EQ(r.out, "entered\n");
    EXPECT_EQ(r.status, 0) << "getAppObject gave no object";
}

TEST(Process, TheRuntimeStartsWithoutADisplay) {
    ImageBuilder b;
    const uint32_t line = b.AddCString("headless");
    b.Prologue();
    b.LoadDataAddress(Reg::RDI, line);
    b.CallSoftImport("puts", "libc.so.6");
    b.Epilogue();
    // Run's default removes DISPLAY from the child's environment.
    const auto r = kelp::test::RunAppended(b.Build());
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "headless\n");
    EXPECT_EQ(r.err, "");
}

} // namespace
