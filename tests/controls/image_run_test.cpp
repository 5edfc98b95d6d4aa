// A real image run by the runtime program: its entry makes a window, lays a
// push button into it from mass property data, attaches the button's
// Action and runs.  A click through the X server reaches the handler in the
// image's code, which prints and closes the window, and the run ends.
#include "support/image_builder.h"
#include "support/mass_data.h"
#include "support/x_input.h"
#include "support/xvfb.h"

#include "base/bytes.h"
#include "objects/text.h"

#include "kelp/objects.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <thread>

namespace kelp::test {
namespace {

constexpr const char *kTitle = "KelpControlsProbe";

// `more` adds code after the button is laid out (RBX holds it) and
// `inHandler` code to its Action handler before the window closes.
using Emit = std::function<void(ImageBuilder &, uint32_t windowSlot)>;

image::Segments ButtonImage(const std::string &massData, const Emit &more = nullptr,
                            const Emit &inHandler = nullptr) {
    ImageBuilder b;
    const uint32_t windowSlot = b.AddData(std::vector<uint8_t>(8, 0));
    b.Prologue();
    b.CallImport("RuntimeInit");
    b.MovImm(Reg::RDI, 0);
    b.CallImport("RuntimeRegisterAppObject");
    b.LoadString(Reg::RDI, "Window");
    b.CallImport("RuntimeLookupClass");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("RuntimeNewObject");
    b.LoadDataAddress(Reg::RCX, windowSlot);
    b.StoreMem(Reg::RCX, 0, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RAX);
    b.MovImm(Reg::RSI, 0);
    b.LoadString(Reg::RDX, kTitle);
    b.CallImport("windowTitleSetter");
    b.Push(Reg::RBX);
    b.Push(Reg::RBX); // keeps the stack aligned
    b.LoadString(Reg::RDI, "PushButton");
    b.CallImport("RuntimeLookupClass");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("RuntimeNewObject");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.LoadString(Reg::RSI, massData);
    b.CallImport("RuntimeMassPropertySetter");
    b.LoadDataAddress(Reg::RAX, windowSlot);
    b.LoadMem(Reg::RDI, Reg::RAX, 0);
    b.LoadString(Reg::RSI, "PushButton1");
    b.MovReg(Reg::RDX, Reg::RBX);
    b.CallImport("WindowAddControl");
    if (more)
        more(b, windowSlot);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.LoadString(Reg::RSI, "Action");
    b.LoadCodeAddress(Reg::RDX, 0);
    const size_t handlerRef = b.Here() - 8;
    b.CallImport("RuntimeInstallInstanceEventHandler");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("RuntimeUnlockObject"); // the window's map holds it
    b.Pop(Reg::RBX);
    b.Pop(Reg::RBX);
    b.CallImport("RuntimeRun");
    b.Epilogue();
    // PushButton1's Action: say so, and close the window, which ends the run.
    const uint32_t handler = uint32_t(b.Here());
    b.Prologue();
    b.PutsText("Action PushButton1");
    if (inHandler)
        inHandler(b, windowSlot);
    b.LoadDataAddress(Reg::RAX, windowSlot);
    b.LoadMem(Reg::RDI, Reg::RAX, 0);
    b.CallImport("RuntimeCloseWindow");
    b.MovImm(Reg::RDI, 0);
    b.CallSoftImport("fflush", "libc.so.6");
    b.Epilogue();
    WriteU64(b.Code().data() + handlerRef, handler);
    return b.Build();
}

// Runs the image on the runtime program while a person at the screen waits
// for its window and clicks the button; if the run hasn't ended after
// that, the person takes the window away.
RunResult RunClicked(const image::Segments &image) {
    TempDir dir;
    const std::string program = dir / "probe";
    if (!WriteAppended(image, program))
        return RunResult{-1, "", "the image could not be written"};
    std::atomic<bool> ended{false};
    std::thread person([&ended] {
        std::string find = "search --sync --onlyvisible --name " + std::string(kTitle);
        XDoToolQuiet(find + " sleep 0.3 mousemove --window %1 40 35 click 1");
        for (int i = 0; i < 100 && !ended; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        if (!ended)
            XDoToolQuiet("search --name " + std::string(kTitle) + " windowkill");
    });
    RunResult r = kelp::test::Run(program, {}, "", true);
    ended = true;
    person.join();
    return r;
}

TEST(ControlsInAnImage, AClickOnALaidOutButtonRunsTheImagesHandler) {
    if (!RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    RuntimeInitExternalClasses();
    KelpString name = objtext::Make("PushButton");
    RuntimeClass *button = RuntimeLookupClass(name);
    objtext::Release(name);
    ASSERT_NE(button, nullptr);
    MassData data(button);
    data.Int("Left", 20)
        .Int("Top", 20)
        .Int("Width", 120)
        .Int("Height", 30)
        .Text("Caption", "Press");
    RunResult r = RunClicked(ButtonImage(data.Bytes()));
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "Action PushButton1\n");
}

TEST(ControlsInAnImage, TheImageRenamesItsButtonThroughThePerClassNames) {
    if (!RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    RuntimeInitExternalClasses();
    KelpString name = objtext::Make("PushButton");
    RuntimeClass *button = RuntimeLookupClass(name);
    objtext::Release(name);
    ASSERT_NE(button, nullptr);
    MassData data(button);
    data.Int("Left", 20).Int("Top", 20).Int("Width", 120).Int("Height", 30).Text("Caption", "Old");
    // The button renamed and made bold through the per-class names, its
    // title read back through the window's Control(0); the handler clears
    // the focus before it closes the window.
    Emit rename = [](ImageBuilder &b, uint32_t windowSlot) {
        b.MovReg(Reg::RDI, Reg::RBX);
        b.MovImm(Reg::RSI, 0);
        b.LoadString(Reg::RDX, "Renamed");
        b.CallImport("pushButtonTitleSetter");
        b.MovReg(Reg::RDI, Reg::RBX);
        b.MovImm(Reg::RSI, 0);
        b.MovImm(Reg::RDX, 1);
        b.CallImport("pushButtonBoldSetter");
        b.LoadDataAddress(Reg::RAX, windowSlot);
        b.LoadMem(Reg::RDI, Reg::RAX, 0);
        b.MovImm(Reg::RSI, 0);
        b.CallImport("windowControl");
        b.MovReg(Reg::RDI, Reg::RAX);
        b.MovImm(Reg::RSI, 0);
        b.CallImport("pushButtonTitleGetter");
        b.PutsString(Reg::RAX);
    };
    Emit clear = [](ImageBuilder &b, uint32_t) { b.CallImport("clearFocus"); };
    RunResult r = RunClicked(ButtonImage(data.Bytes(), rename, clear));
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "Renamed\nAction PushButton1\n");
}

} // namespace
} // namespace kelp::test
