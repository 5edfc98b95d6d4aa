// A real image run by the runtime program builds the drill's File menu with
// a QuitMenuItem on Ctrl+Q, sets it as the application's bar and opens a
// window.  Ctrl+Q typed through the X server ends the run in order: the
// window's Close runs (the image prints it) and the program exits with 0.
#include "support/image_builder.h"
#include "support/x_input.h"
#include "support/xvfb.h"

#include "base/bytes.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace kelp::test {
namespace {

constexpr const char *kTitle = "KelpMenuProbe";

// new <className>, kept in the data slot.
void NewInto(ImageBuilder &b, const char *className, uint32_t slot) {
    b.LoadString(Reg::RDI, className);
    b.CallImport("RuntimeLookupClass");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("RuntimeNewObject");
    b.LoadDataAddress(Reg::RCX, slot);
    b.StoreMem(Reg::RCX, 0, Reg::RAX);
}

void LoadSlot(ImageBuilder &b, Reg r, uint32_t slot) {
    b.LoadDataAddress(Reg::RAX, slot);
    b.LoadMem(r, Reg::RAX, 0);
}

// setter(slot object, 0, text)
void SetText(ImageBuilder &b, const char *setter, uint32_t slot, const char *text) {
    LoadSlot(b, Reg::RDI, slot);
    b.MovImm(Reg::RSI, 0);
    b.LoadString(Reg::RDX, text);
    b.CallImport(setter);
}

image::Segments MenuImage() {
    ImageBuilder b;
    const uint32_t bar = b.AddData(std::vector<uint8_t>(8, 0));
    const uint32_t file = b.AddData(std::vector<uint8_t>(8, 0));
    const uint32_t quit = b.AddData(std::vector<uint8_t>(8, 0));
    const uint32_t window = b.AddData(std::vector<uint8_t>(8, 0));
    b.Prologue();
    b.CallImport("RuntimeInit");
    b.MovImm(Reg::RDI, 0);
    b.CallImport("RuntimeRegisterAppObject");
    NewInto(b, "MenuBar", bar);
    NewInto(b, "MenuItem", file);
    SetText(b, "RuntimeMenuItemTextSetter", file, "File");
    NewInto(b, "QuitMenuItem", quit);
    SetText(b, "RuntimeMenuItemNameSetter", quit, "FileQuit");
    SetText(b, "RuntimeMenuItemTextSetter", quit, "Quit");
    SetText(b, "RuntimeMenuItemCommandKeySetter", quit, "Ctrl+Q");
    LoadSlot(b, Reg::RDI, file);
    LoadSlot(b, Reg::RSI, quit);
    b.CallImport("RuntimeMenuItemAppend");
    LoadSlot(b, Reg::RDI, bar);
    LoadSlot(b, Reg::RSI, file);
    b.CallImport("RuntimeMenuItemAppend");
    b.MovImm(Reg::RDI, 0);
    b.MovImm(Reg::RSI, 0);
    LoadSlot(b, Reg::RDX, bar);
    b.CallImport("AppMenuBarSetter");
    NewInto(b, "Window", window);
    SetText(b, "windowTitleSetter", window, kTitle);
    LoadSlot(b, Reg::RDI, window);
    b.LoadString(Reg::RSI, "Close");
    b.LoadCodeAddress(Reg::RDX, 0);
    const size_t handlerRef = b.Here() - 8;
    b.CallImport("RuntimeInstallInstanceEventHandler");
    b.CallImport("RuntimeRun");
    b.Epilogue();
    // The window's Close: say so.
    const uint32_t handler = uint32_t(b.Here());
    b.Prologue();
    b.PutsText("Close");
    b.MovImm(Reg::RDI, 0);
    b.CallSoftImport("fflush", "libc.so.6");
    b.Epilogue();
    WriteU64(b.Code().data() + handlerRef, handler);
    return b.Build();
}

TEST(MenusInAnImage, ControlQOnTheImagesQuitItemEndsTheRunInOrder) {
    if (!RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    TempDir dir;
    const std::string program = dir / "probe";
    ASSERT_TRUE(WriteAppended(MenuImage(), program));
    std::atomic<bool> ended{false}, killed{false};
    std::thread person([&] {
        std::string find = "search --sync --onlyvisible --name " + std::string(kTitle);
        XDoToolQuiet(find + " windowfocus --sync %1 sleep 0.3 key ctrl+q");
        for (int i = 0; i < 100 && !ended; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        if (!ended) {
            killed = true;
            XDoToolQuiet("search --name " + std::string(kTitle) + " windowkill");
        }
    });
    RunResult r = kelp::test::Run(program, {}, "", true);
    ended = true;
    person.join();
    // The program ends on the press; the releases found no window to go to,
    // and the server would keep q down for the next test.
    XDoToolQuiet("keyup ctrl+q");
    EXPECT_FALSE(killed) << "Ctrl+Q did not end the run";
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "Close\n");
}

} // namespace
} // namespace kelp::test
