// A real image run by the runtime program: it draws a picture, saves it as a
// BMP file, opens the file again as the backdrop of a canvas whose Paint
// draws over it, and closes the window when the canvas is clicked.  The
// pixels are read from the X server by this process, as another client.
#include "support/image_builder.h"
#include "support/mass_data.h"
#include "support/x_input.h"
#include "support/xvfb.h"

#include "base/bytes.h"
#include "objects/text.h"

#include "kelp/objects.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>

namespace kelp::test {
namespace {

constexpr const char *kTitle = "KelpCanvasProbe";

// Calls `function(slot value, ...)`: the first argument from a data slot.
void LoadSlot(ImageBuilder &b, Reg r, uint32_t slot) {
    b.LoadDataAddress(Reg::RAX, slot);
    b.LoadMem(r, Reg::RAX, 0);
}
void StoreSlot(ImageBuilder &b, uint32_t slot) {
    b.LoadDataAddress(Reg::RCX, slot);
    b.StoreMem(Reg::RCX, 0, Reg::RAX);
}

image::Segments CanvasImage(const std::string &massData, const std::string &bmpPath) {
    ImageBuilder b;
    const uint32_t window = b.AddData(std::vector<uint8_t>(8, 0));
    const uint32_t picture = b.AddData(std::vector<uint8_t>(8, 0));
    const uint32_t file = b.AddData(std::vector<uint8_t>(8, 0));
    const uint32_t canvas = b.AddData(std::vector<uint8_t>(8, 0));
    b.Prologue();
    b.CallImport("RuntimeInit");
    b.MovImm(Reg::RDI, 0);
    b.CallImport("RuntimeRegisterAppObject");
    // A red picture of 40 x 30, saved as a BMP file and opened again.
    b.MovImm(Reg::RDI, 40);
    b.MovImm(Reg::RSI, 30);
    b.MovImm(Reg::RDX, 32);
    b.CallImport("newPicture");
    StoreSlot(b, picture);
    b.MovReg(Reg::RDI, Reg::RAX);
    b.MovImm(Reg::RSI, 0);
    b.CallImport("pictureGraphicsGetter");
    b.Push(Reg::RAX);
    b.Push(Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RAX);
    b.MovImm(Reg::RSI, 0);
    b.MovImm(Reg::RDX, 0xff0000);
    b.CallImport("graphicsForeColorSetter");
    b.Pop(Reg::RDI);
    b.Push(Reg::RDI);
    b.MovImm(Reg::RSI, 0);
    b.MovImm(Reg::RDX, 0);
    b.MovImm(Reg::RCX, 40);
    b.MovImm(Reg::R8, 30);
    b.CallImport("RuntimeGraphicsFillRect");
    b.Pop(Reg::RDI);
    b.Pop(Reg::RAX);
    b.CallImport("RuntimeUnlockObject");
    b.LoadString(Reg::RDI, bmpPath);
    b.CallImport("FolderItemFromPath");
    StoreSlot(b, file);
    b.MovReg(Reg::RDI, Reg::RAX);
    LoadSlot(b, Reg::RSI, picture);
    b.MovImm(Reg::RDX, 4);
    b.CallImport("FolderItemSaveAsPicture");
    LoadSlot(b, Reg::RDI, picture);
    b.CallImport("RuntimeUnlockObject");
    LoadSlot(b, Reg::RDI, file);
    b.MovImm(Reg::RSI, 0);
    b.CallImport("FolderItemOpenImage");
    StoreSlot(b, picture);
    // The window and its canvas.
    b.LoadString(Reg::RDI, "Window");
    b.CallImport("RuntimeLookupClass");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("RuntimeNewObject");
    StoreSlot(b, window);
    b.MovReg(Reg::RDI, Reg::RAX);
    b.MovImm(Reg::RSI, 0);
    b.LoadString(Reg::RDX, kTitle);
    b.CallImport("windowTitleSetter");
    b.LoadString(Reg::RDI, "Canvas");
    b.CallImport("RuntimeLookupClass");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("RuntimeNewObject");
    StoreSlot(b, canvas);
    b.MovReg(Reg::RDI, Reg::RAX);
    b.LoadString(Reg::RSI, massData);
    b.CallImport("RuntimeMassPropertySetter");
    LoadSlot(b, Reg::RDI, canvas);
    b.LoadString(Reg::RSI, "Paint");
    b.LoadCodeAddress(Reg::RDX, 0);
    const size_t paintRef = b.Here() - 8;
    b.CallImport("RuntimeInstallInstanceEventHandler");
    LoadSlot(b, Reg::RDI, canvas);
    b.LoadString(Reg::RSI, "MouseDown");
    b.LoadCodeAddress(Reg::RDX, 0);
    const size_t mouseRef = b.Here() - 8;
    b.CallImport("RuntimeInstallInstanceEventHandler");
    LoadSlot(b, Reg::RDI, window);
    b.LoadString(Reg::RSI, "Canvas1");
    LoadSlot(b, Reg::RDX, canvas);
    b.CallImport("WindowAddControl");
    LoadSlot(b, Reg::RDI, canvas);
    b.MovImm(Reg::RSI, 0);
    LoadSlot(b, Reg::RDX, picture);
    b.CallImport("canvasBackdropSetter");
    b.CallImport("RuntimeRun");
    b.Epilogue();
    // Paint: a blue square at (10, 10) of the canvas.
    const uint32_t paint = uint32_t(b.Here());
    b.Prologue();
    b.Push(Reg::RSI);
    b.Push(Reg::RSI);
    b.MovReg(Reg::RDI, Reg::RSI);
    b.MovImm(Reg::RSI, 0);
    b.MovImm(Reg::RDX, 0x0000ff);
    b.CallImport("graphicsForeColorSetter");
    b.Pop(Reg::RDI);
    b.Pop(Reg::RAX);
    b.MovImm(Reg::RSI, 10);
    b.MovImm(Reg::RDX, 10);
    b.MovImm(Reg::RCX, 20);
    b.MovImm(Reg::R8, 20);
    b.CallImport("RuntimeGraphicsFillRect");
    b.Epilogue();
    // MouseDown: say so and close the window, which ends the run.
    const uint32_t mouse = uint32_t(b.Here());
    b.Prologue();
    b.PutsText("MouseDown Canvas1");
    LoadSlot(b, Reg::RDI, window);
    b.CallImport("RuntimeCloseWindow");
    b.MovImm(Reg::RDI, 0);
    b.CallSoftImport("fflush", "libc.so.6");
    b.MovImm(Reg::RAX, 1);
    b.Epilogue();
    WriteU64(b.Code().data() + paintRef, paint);
    WriteU64(b.Code().data() + mouseRef, mouse);
    return b.Build();
}

// The colour at a point of a window, read by a connection of our own.
uint32_t PixelOf(unsigned long windowId, int x, int y) {
    Display *display = XOpenDisplay(nullptr);
    if (!display)
        return 0xdeadbeef;
    uint32_t rgb = 0xdeadbeef;
    if (XImage *image = XGetImage(display, windowId, x, y, 1, 1, AllPlanes, ZPixmap)) {
        rgb = uint32_t(XGetPixel(image, 0, 0)) & 0xffffff;
        XDestroyImage(image);
    }
    XCloseDisplay(display);
    return rgb;
}

unsigned long FindWindow() {
    std::string command =
        "timeout 20 xdotool search --sync --onlyvisible --name " + std::string(kTitle);
    unsigned long id = 0;
    if (FILE *pipe = popen(command.c_str(), "r")) {
        if (fscanf(pipe, "%lu", &id) != 1)
            id = 0;
        pclose(pipe);
    }
    return id;
}

TEST(CanvasInAnImage, ABackdropReadFromAFileAndPaintShowOnTheScreen) {
    if (!RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    RuntimeInitExternalClasses();
    KelpString name = objtext::Make("Canvas");
    RuntimeClass *canvasClass = RuntimeLookupClass(name);
    objtext::Release(name);
    ASSERT_NE(canvasClass, nullptr);
    MassData data(canvasClass);
    data.Int("Left", 20).Int("Top", 20).Int("Width", 100).Int("Height", 80);
    TempDir dir;
    const std::string program = dir / "probe", bmp = dir / "red.bmp";
    ASSERT_TRUE(WriteAppended(CanvasImage(data.Bytes(), bmp), program));
    struct Seen {
        int x, y;
        uint32_t rgb = 0;
        const char *what;
    };
    Seen seen[] = {
        {25, 25, 0, "the backdrop, read back from the file"},
        {35, 35, 0, "Paint over it"},
        {70, 40, 0, "right of the backdrop: the window's own background"},
        {5, 5, 0, "the window's background"},
    };
    std::atomic<bool> ended{false};
    std::thread person([&] {
        unsigned long id = FindWindow();
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        for (Seen &s : seen)
            s.rgb = id ? PixelOf(id, s.x, s.y) : 0xdeadbeef;
        XDoToolQuiet("search --name " + std::string(kTitle) +
                     " mousemove --window %1 60 60 click 1");
        for (int i = 0; i < 100 && !ended; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        if (!ended)
            XDoToolQuiet("search --name " + std::string(kTitle) + " windowkill");
    });
    RunResult r = kelp::test::Run(program, {}, "", true);
    ended = true;
    person.join();
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "MouseDown Canvas1\n");
    EXPECT_EQ(seen[0].rgb, 0xff0000u) << seen[0].what;
    EXPECT_EQ(seen[1].rgb, 0x0000ffu) << seen[1].what;
    EXPECT_EQ(seen[2].rgb, seen[3].rgb) << seen[2].what;
    std::vector<uint8_t> bytes = ReadFileBytes(bmp);
    ASSERT_GE(bytes.size(), 54u) << "the image wrote its BMP file";
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 2), "BM");
}

} // namespace
} // namespace kelp::test
