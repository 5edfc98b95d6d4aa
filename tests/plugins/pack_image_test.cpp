// A real image on the runtime program that carries the appearance pack as a
// "KPPl" resource, packed by kelp-image: its entry lays a Placard into a
// window from mass property data and attaches a MouseDown handler of its
// own code.  A click through the X server reaches the handler through the
// plug-in, with the point relative to the placard.
#include "support/image_builder.h"
#include "support/mass_data.h"
#include "support/x_input.h"
#include "support/xvfb.h"

#include "base/bytes.h"
#include "objects/text.h"
#include "plugins/host.h"

#include "kelp/objects.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace kelp::test {
namespace {

constexpr const char *kTitle = "KelpPlacardProbe";

image::Segments PlacardImage(const std::string &massData) {
    ImageBuilder b;
    const uint32_t windowSlot = b.AddData(std::vector<uint8_t>(8, 0));
    const uint32_t format = b.AddCString("MouseDown %d,%d\n");
    b.Prologue();
    b.Push(Reg::RBX);
    b.Push(Reg::RBX);
    b.CallImport("RuntimeInit");
    b.CallImport("RuntimeInitExternalClasses");
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
    b.LoadString(Reg::RDI, "Placard");
    b.CallImport("RuntimeLookupClass");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("RuntimeNewObject");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.LoadString(Reg::RSI, massData);
    b.CallImport("RuntimeMassPropertySetter");
    b.LoadDataAddress(Reg::RAX, windowSlot);
    b.LoadMem(Reg::RDI, Reg::RAX, 0);
    b.LoadString(Reg::RSI, "Placard1");
    b.MovReg(Reg::RDX, Reg::RBX);
    b.CallImport("WindowAddControl");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.LoadString(Reg::RSI, "MouseDown");
    b.LoadCodeAddress(Reg::RDX, 0);
    const size_t handlerRef = b.Here() - 8;
    b.CallImport("RuntimeInstallInstanceEventHandler");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("RuntimeUnlockObject");
    b.Pop(Reg::RBX);
    b.Pop(Reg::RBX);
    b.CallImport("RuntimeRun");
    b.Epilogue();
    // Placard1_MouseDown(me, x, y): print the point, close the window.
    const uint32_t handler = uint32_t(b.Here());
    b.Prologue(); // x and y are in rsi and rdx already, where printf wants them
    b.LoadDataAddress(Reg::RDI, format);
    b.MovImm(Reg::RAX, 0);
    b.CallSoftImport("printf", "libc.so.6");
    b.LoadDataAddress(Reg::RAX, windowSlot);
    b.LoadMem(Reg::RDI, Reg::RAX, 0);
    b.CallImport("RuntimeCloseWindow");
    b.MovImm(Reg::RDI, 0);
    b.CallSoftImport("fflush", "libc.so.6");
    b.MovImm(Reg::RAX, 1);
    b.Epilogue();
    WriteU64(b.Code().data() + handlerRef, handler);
    return b.Build();
}

TEST(PackImage, APlacardOfThePackedPackTakesAClick) {
    if (!RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    RuntimeInitExternalClasses();
    std::string error;
    if (!plugins::FindRegistered("Placard")) {
        ASSERT_TRUE(plugins::LoadPluginLibrary(KELP_BIN_DIR "/libKPAppearancePak.so", "", error))
            << error;
        plugins::LinkPluginClasses(nullptr);
    }
    KelpString name = objtext::Make("Placard");
    RuntimeClass *placard = RuntimeLookupClass(name);
    objtext::Release(name);
    ASSERT_NE(placard, nullptr);
    MassData data(placard);
    data.Int("Left", 20).Int("Top", 20).Int("Width", 120).Int("Height", 40).Bool("Value", true);
    TempDir dir, loose;
    ASSERT_TRUE(WriteLoose(PlacardImage(data.Bytes()), loose.path()));
    const std::string program = dir / "probe";
    RunResult pack = kelp::test::Run(KELP_BIN_DIR "/kelp-image",
                                     {"pack", "-o", program, loose.path(), "--plugin",
                                      "65535:" KELP_BIN_DIR "/libKPAppearancePak.so"});
    ASSERT_EQ(pack.status, 0) << pack.err;
    std::atomic<bool> ended{false};
    std::thread person([&ended] {
        std::string find = "search --sync --onlyvisible --name " + std::string(kTitle);
        XDoToolQuiet(find + " sleep 0.3 mousemove --window %1 45 33 click 1");
        for (int i = 0; i < 100 && !ended; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        if (!ended)
            XDoToolQuiet("search --name " + std::string(kTitle) + " windowkill");
    });
    RunResult r = kelp::test::Run(program, {}, dir.path(), true);
    ended = true;
    person.join();
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "MouseDown 25,13\n") << r.err;
}

} // namespace
} // namespace kelp::test
