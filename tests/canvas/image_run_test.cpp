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

// One argument of a call: a number, a data slot's word, a string constant,
// or the previous call's result.
struct Arg {
    enum Kind { kNumber, kSlot, kText, kResult } kind;
    uint64_t value = 0;
    std::string text = {};
};
Arg Num(uint64_t v) { return {Arg::kNumber, v}; }
Arg Slot(uint32_t slot) { return {Arg::kSlot, slot}; }
Arg Text(const std::string &t) { return {Arg::kText, 0, t}; }
Arg Result() { return {Arg::kResult}; }

// Calls an export with the arguments in the registers of the calling
// convention; the previous result is moved first, as slots pass through RAX.
void Call(ImageBuilder &b, const char *function, std::initializer_list<Arg> args) {
    const Reg regs[] = {Reg::RDI, Reg::RSI, Reg::RDX, Reg::RCX, Reg::R8};
    size_t i = 0;
    for (const Arg &a : args)
        if (a.kind == Arg::kResult)
            b.MovReg(regs[i++], Reg::RAX);
    i = 0;
    for (const Arg &a : args) {
        const Reg r = regs[i++];
        if (a.kind == Arg::kNumber)
            b.MovImm(r, a.value);
        else if (a.kind == Arg::kText)
            b.LoadString(r, a.text);
        else if (a.kind == Arg::kSlot) {
            b.LoadDataAddress(Reg::RAX, uint32_t(a.value));
            b.LoadMem(r, Reg::RAX, 0);
        }
    }
    b.CallImport(function);
}
void StoreResult(ImageBuilder &b, uint32_t slot) {
    b.LoadDataAddress(Reg::RCX, slot);
    b.StoreMem(Reg::RCX, 0, Reg::RAX);
}
// Gives `event` of the canvas a handler whose address is filled in later.
size_t InstallHandler(ImageBuilder &b, uint32_t canvas, const char *event) {
    b.LoadDataAddress(Reg::RAX, canvas);
    b.LoadMem(Reg::RDI, Reg::RAX, 0);
    b.LoadString(Reg::RSI, event);
    b.LoadCodeAddress(Reg::RDX, 0);
    const size_t ref = b.Here() - 8;
    b.CallImport("RuntimeInstallInstanceEventHandler");
    return ref;
}

image::Segments CanvasImage(const std::string &massData, const std::string &bmpPath) {
    ImageBuilder b;
    uint32_t window, picture, graphics, file, canvas, paintGraphics;
    for (uint32_t *slot : {&window, &picture, &graphics, &file, &canvas, &paintGraphics})
        *slot = b.AddData(std::vector<uint8_t>(8, 0));
    b.Prologue();
    Call(b, "RuntimeInit", {});
    Call(b, "RuntimeRegisterAppObject", {Num(0)});
    // A red picture of 40 x 30, saved as a BMP file and opened again.
    Call(b, "newPicture", {Num(40), Num(30), Num(32)});
    StoreResult(b, picture);
    Call(b, "pictureGraphicsGetter", {Result(), Num(0)});
    StoreResult(b, graphics);
    Call(b, "graphicsForeColorSetter", {Slot(graphics), Num(0), Num(0xff0000)});
    Call(b, "RuntimeGraphicsFillRect", {Slot(graphics), Num(0), Num(0), Num(40), Num(30)});
    Call(b, "RuntimeUnlockObject", {Slot(graphics)});
    Call(b, "FolderItemFromPath", {Text(bmpPath)});
    StoreResult(b, file);
    Call(b, "FolderItemSaveAsPicture", {Slot(file), Slot(picture), Num(4)});
    Call(b, "RuntimeUnlockObject", {Slot(picture)});
    Call(b, "FolderItemOpenImage", {Slot(file), Num(0)});
    StoreResult(b, picture);
    // The window and its canvas.
    Call(b, "RuntimeLookupClass", {Text("Window")});
    Call(b, "RuntimeNewObject", {Result()});
    StoreResult(b, window);
    Call(b, "windowTitleSetter", {Slot(window), Num(0), Text(kTitle)});
    Call(b, "RuntimeLookupClass", {Text("Canvas")});
    Call(b, "RuntimeNewObject", {Result()});
    StoreResult(b, canvas);
    Call(b, "RuntimeMassPropertySetter", {Slot(canvas), Text(massData)});
    const size_t paintRef = InstallHandler(b, canvas, "Paint");
    const size_t mouseRef = InstallHandler(b, canvas, "MouseDown");
    Call(b, "WindowAddControl", {Slot(window), Text("Canvas1"), Slot(canvas)});
    Call(b, "canvasBackdropSetter", {Slot(canvas), Num(0), Slot(picture)});
    Call(b, "RuntimeRun", {});
    b.Epilogue();
    // Paint: a blue square at (10, 10) of the canvas.
    const uint32_t paint = uint32_t(b.Here());
    b.Prologue();
    b.MovReg(Reg::RAX, Reg::RSI);
    StoreResult(b, paintGraphics);
    Call(b, "graphicsForeColorSetter", {Slot(paintGraphics), Num(0), Num(0x0000ff)});
    Call(b, "RuntimeGraphicsFillRect", {Slot(paintGraphics), Num(10), Num(10), Num(20), Num(20)});
    b.Epilogue();
    // MouseDown: say so and close the window, which ends the run.
    const uint32_t mouse = uint32_t(b.Here());
    b.Prologue();
    b.PutsText("MouseDown Canvas1");
    Call(b, "RuntimeCloseWindow", {Slot(window)});
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
