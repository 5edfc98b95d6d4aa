// Edit field figures: 100,000 lines appended to a multi-line field at the
// end of its text, with the longest pass of the run loop between appends
// (is the window still answering?), and a 50-page styled text laid out
// and drawn page by page through StyledTextPrinter on a picture.  Starts
// its own Xvfb when no display is set.
#include "bench_display.h"
#include "controls/control.h"
#include "edit_fields/edit_field.h"
#include "windows/runtime_view.h"

#include "objects/text.h"
#include "pictures/picture_object.h"
#include "process/display.h"
#include "runloop/main_loop.h"
#include "strings/kstring.h"

#include "kelp/controls.h"
#include "kelp/edit_fields.h"
#include "kelp/objects.h"
#include "kelp/pictures.h"
#include "kelp/windows.h"
#include "main/wiring_table.h"

#include <gtk/gtk.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

using Clock = std::chrono::steady_clock;

namespace {

using kelp::bench::StartXvfb;

RuntimeClass *Subclass(const char *baseName, const char *name) {
    KelpString text = kelp::objtext::Make(baseName);
    RuntimeClass *base = RuntimeLookupClass(text);
    kelp::objtext::Release(text);
    RuntimeClass *klass =
        RuntimeNewClass(base, base->methodCount, base->interfaceCount, base->eventCount,
                        base->directMethodCount, base->propertyCount);
    klass->name = kelp::objtext::Make(name);
    klass->instanceSize = base->instanceSize;
    return klass;
}

void SetHandler(RuntimeClass *klass, const char *event, void *code) {
    for (int32_t i = klass->eventCount - 1; i >= 0; --i)
        if (kelp::objtext::SameName(kelp::objtext::View(klass->eventTable[i].name), event)) {
            klass->eventTable[i].handler = code;
            return;
        }
}

RuntimeClass *gField;
RuntimeObject *gControl;

void OnLayout(RuntimeObject *self) {
    auto *v = reinterpret_cast<kelp::ViewRecord *>(self);
    v->width = 600, v->height = 500, v->frame = 4;
}

void OnCreateControls(RuntimeObject *self) {
    gControl = RuntimeNewObject(gField);
    ctlPosSetter(gControl, 0, 10);
    ctlPosSetter(gControl, 1, 10);
    ctlPosSetter(gControl, 2, 580);
    ctlPosSetter(gControl, 3, 480);
    editMultiLineSetter(gControl, 0, 1);
    kelp::EditRecord(gControl)->styled = 1;
    KelpString name = kelp::objtext::Make("Log");
    WindowAddControl(self, name, gControl);
    kelp::objtext::Release(name);
    RuntimeUnlockObject(gControl);
}

double Ms(Clock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

} // namespace

int main(int argc, char **argv) {
    kelp::WireRuntime();
    pid_t xvfb = StartXvfb();
    kelp::InitToolkit(&argc, &argv);
    if (!kelp::DisplayAvailable()) {
        std::printf("no display: edit field figures skipped\n");
        return 0;
    }
    RuntimeInitExternalClasses();
    gField = Subclass("EditField", "Log");
    RuntimeClass *window = Subclass("Window", "wBench");
    SetHandler(window, "Layout", reinterpret_cast<void *>(&OnLayout));
    SetHandler(window, "CreateControls", reinterpret_cast<void *>(&OnCreateControls));
    RuntimeObject *w = RuntimeNewObject(window);
    for (int i = 0; i < 50; ++i)
        kelp::MainLoopStep(false);

    // Appending at the end: SelStart past the end lands there, SelText
    // inserts.  A pass of the loop after every 1,000 lines.
    double longestPass = 0;
    auto start = Clock::now();
    for (int i = 1; i <= 100000; ++i) {
        std::string line = "Line " + std::to_string(i) + " of the log\r";
        KelpString text = kelp::string::FromUTF8(line).ExtractStringStorage();
        editSelStartSetter(gControl, 0, 0x7fffffff);
        editSelTextSetter(gControl, 0, text);
        kelp::objtext::Release(text);
        if (i % 1000 == 0) {
            auto pass = Clock::now();
            kelp::MainLoopStep(false);
            longestPass = std::max(longestPass, Ms(Clock::now() - pass));
        }
    }
    const double appendMs = Ms(Clock::now() - start);
    std::printf("100,000 lines appended to a multi-line field: %.0f ms (%.1f us each); "
                "longest loop pass between appends %.1f ms\n",
                appendMs, appendMs * 1000 / 100000, longestPass);

    // About 50 pages of 45 lines, every tenth line bold and larger.
    std::string pages;
    std::vector<int32_t> starts;
    for (int i = 1; i <= 50 * 45; ++i) {
        starts.push_back(static_cast<int32_t>(pages.size()));
        pages += "Problem " + std::to_string(i) +
                 ": Sam has 12 apples and gives 5 of them to Ann.  How many are left?\r";
    }
    KelpString text = kelp::string::FromUTF8(pages).ExtractStringStorage();
    editTextSetter(gControl, 0, text);
    kelp::objtext::Release(text);
    RuntimeObject *styled = StyledTextObjectGetter(gControl, 0);
    for (size_t i = 0; i < starts.size(); i += 10) {
        StyledTextSetBold(styled, starts[i], 12, 1);
        StyledTextSetSize(styled, starts[i], 12, 16);
    }
    RuntimeUnlockObject(styled);
    RuntimeObject *picture = kelp::NewPictureOfSize(612, 792);
    RuntimeObject *g = pictureGraphicsGetter(picture, 0);
    start = Clock::now();
    RuntimeObject *printer = editStyleTextPrinter(gControl, g, 612 - 130);
    int blocks = 0;
    for (; !styledPrinterEOF(printer) && blocks < 1000; ++blocks)
        styledPrinterDrawBlock(printer, 65, 65, 792 - 130);
    const double printMs = Ms(Clock::now() - start);
    std::printf("%d-line text laid out and drawn as %d pages of a picture: %.0f ms (%.1f ms a "
                "page)\n",
                50 * 45, blocks, printMs, printMs / std::max(blocks, 1));
    RuntimeUnlockObject(printer);
    RuntimeUnlockObject(g);
    RuntimeUnlockObject(picture);
    RuntimeCloseWindow(w);
    RuntimeUnlockObject(w);
    if (xvfb > 0) {
        kill(xvfb, SIGTERM);
        waitpid(xvfb, nullptr, 0);
    }
    return 0;
}
