// Two language threads in a real image run by the runtime program: each
// prints three lines with a yield between them, while the main thread sleeps
// through Application.SleepCurrentThread.
#include "support/image_builder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace {

using kelp::test::ImageBuilder;
using Reg = kelp::test::Reg;
using When = ImageBuilder::When;

TEST(ThreadsInAnImage, TwoThreadsTakeTurnsWhileTheMainThreadSleeps) {
    ImageBuilder b;
    const uint32_t toMain = b.Jump(When::Always); // the entry is at offset 0
    auto runHandler = [&](const std::string &letter) {
        const uint32_t at = b.Here();
        b.Prologue();
        for (int i = 1; i <= 3; ++i) {
            b.PutsText(letter + std::to_string(i));
            if (i < 3)
                b.CallImport("YieldToNextThread");
        }
        b.Epilogue();
        return at;
    };
    const uint32_t runA = runHandler("A"), runB = runHandler("B");
    b.SetJumpTarget(toMain, b.Here());
    b.Prologue();
    b.Push(Reg::RBX);
    b.Push(Reg::R12);
    // A Thread with its Run event bound to the handler, at priority 1 so
    // that one turn is one step of the Run.
    for (const auto &[keep, run] : {std::pair{Reg::RBX, runA}, std::pair{Reg::R12, runB}}) {
        b.LoadString(Reg::RDI, "Thread");
        b.CallImport("RuntimeLookupClass");
        b.MovReg(Reg::RDI, Reg::RAX);
        b.CallImport("RuntimeNewObject");
        b.MovReg(keep, Reg::RAX);
        b.MovReg(Reg::RDI, keep);
        b.LoadString(Reg::RSI, "Run");
        b.LoadCodeAddress(Reg::RDX, run);
        b.CallImport("RuntimeInstallInstanceEventHandler");
        b.MovReg(Reg::RDI, keep);
        b.MovImm(Reg::RSI, 0);
        b.MovImm(Reg::RDX, 1);
        b.CallImport("ThreadSetPriority");
    }
    for (Reg keep : {Reg::RBX, Reg::R12}) {
        b.MovReg(Reg::RDI, keep);
        b.CallImport("threadRun");
    }
    b.PutsText("main sleeps");
    b.MovImm(Reg::RDI, 0);
    b.MovImm(Reg::RSI, 300);
    b.CallImport("AppSleepCurrentThread");
    b.PutsText("main wakes");
    // Yield until both threads are done (state 4), however long it takes.
    const uint32_t loop = b.Here();
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovImm(Reg::RSI, 0);
    b.CallImport("ThreadGetState");
    b.CompareImm(Reg::RAX, 4);
    const uint32_t firstRunning = b.Jump(When::NotEqual);
    b.MovReg(Reg::RDI, Reg::R12);
    b.MovImm(Reg::RSI, 0);
    b.CallImport("ThreadGetState");
    b.CompareImm(Reg::RAX, 4);
    const uint32_t bothDone = b.Jump(When::Equal);
    b.SetJumpTarget(firstRunning, b.Here());
    b.CallImport("YieldToNextThread");
    b.SetJumpTarget(b.Jump(When::Always), loop);
    b.SetJumpTarget(bothDone, b.Here());
    b.PutsText("both done");
    for (Reg keep : {Reg::RBX, Reg::R12}) {
        b.MovReg(Reg::RDI, keep);
        b.CallImport("RuntimeUnlockObject");
    }
    b.Pop(Reg::R12);
    b.Pop(Reg::RBX);
    b.Epilogue();

    const auto r = kelp::test::RunAppended(b.Build());
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> lines;
    std::istringstream in(r.out);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    auto at = [&](const std::string &line) {
        return std::find(lines.begin(), lines.end(), line) - lines.begin();
    };
    ASSERT_EQ(lines.size(), 9u) << r.out;
    for (const char *line : {"A1", "A2", "A3", "B1", "B2", "B3", "main sleeps", "main wakes"})
        EXPECT_LT(at(line), at("both done")) << line;
    // Each thread's lines in order, and the two interleaved by the yields.
    EXPECT_LT(at("A1"), at("A2"));
    EXPECT_LT(at("A2"), at("A3"));
    EXPECT_LT(at("B1"), at("B2"));
    EXPECT_LT(at("B2"), at("B3"));
    EXPECT_LT(at("B1"), at("A3"));
    EXPECT_LT(at("A1"), at("B3"));
    // The threads finished while the main thread slept.
    EXPECT_LT(at("A3"), at("main wakes"));
    EXPECT_LT(at("B3"), at("main wakes"));
}

} // namespace
