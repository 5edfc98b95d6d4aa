// Plug-in figures: loading and linking 20 plug-ins of 50 classes each, the
// entry table's look-ups per second, and a Placard of the appearance pack
// drawn 10,000 times.  Starts its own Xvfb when no display is set.
#include "bench_display.h"
#include "controls/control.h"
#include "plugins/host.h"
#include "windows/runtime_view.h"

#include "objects/text.h"
#include "process/display.h"
#include "runloop/main_loop.h"

#include "kelp/controls.h"
#include "kelp/objects.h"
#include "kelp/plugin.h"
#include "kelp/windows.h"
#include "main/wiring_table.h"

#include <gtk/gtk.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

using Clock = std::chrono::steady_clock;

namespace {

double Ms(Clock::time_point from) {
    return std::chrono::duration<double, std::milli>(Clock::now() - from).count();
}

using kelp::bench::StartXvfb;

RuntimeClass *Lookup(const char *name) {
    KelpString text = kelp::objtext::Make(name);
    RuntimeClass *klass = RuntimeLookupClass(text);
    kelp::objtext::Release(text);
    return klass;
}

RuntimeObject *gPlacard = nullptr;

void OnLayout(RuntimeObject *self) {
    auto *v = reinterpret_cast<kelp::ViewRecord *>(self);
    v->width = 400, v->height = 200, v->frame = 4;
}

// One placard of 300 x 100, bounds written before binding.
void OnCreateControls(RuntimeObject *self) {
    gPlacard = RuntimeNewObject(Lookup("Placard"));
    kelp::Ctl(gPlacard)->bounds = KelpRect{20, 20, 120, 320};
    KelpString name = kelp::objtext::Make("Placard1");
    WindowAddControl(self, name, gPlacard);
    kelp::objtext::Release(name);
    RuntimeUnlockObject(gPlacard);
}

} // namespace

int main(int argc, char **argv) {
    kelp::WireRuntime();
    pid_t xvfb = StartXvfb();
    kelp::InitToolkit(&argc, &argv);
    RuntimeInitExternalClasses();

    // Two halves of ten plug-ins, each loaded and linked in turn: with
    // linking linear in the classes known, the second half costs what the
    // first did; a look-up that walks every class makes it dearer.
    double loaded = 0, linked[2] = {0, 0};
    for (int half = 0; half < 2; ++half) {
        auto start = Clock::now();
        for (int i = 1 + 10 * half; i <= 10 + 10 * half; ++i) {
            std::string error;
            const std::string path = std::string(KELP_BIN_DIR) + "/bench_libraries/libKPBench" +
                                     std::to_string(i) + ".so";
            if (!kelp::plugins::LoadPluginLibrary(path, "", error)) {
                std::printf("cannot load %s: %s\n", path.c_str(), error.c_str());
                return 1;
            }
        }
        loaded += Ms(start);
        start = Clock::now();
        kelp::plugins::LinkPluginClasses(nullptr);
        linked[half] = Ms(start);
    }
    std::printf("20 plug-ins of 50 classes: loaded and registered in %.1f ms; linked in %.1f ms "
                "(first 500 classes %.1f ms, next 500 %.1f ms)\n",
                loaded, linked[0] + linked[1], linked[0], linked[1]);

    std::vector<KelpString> names;
    for (int p = 1; p <= 20; ++p)
        for (int c = 0; c < 50; ++c)
            names.push_back(kelp::objtext::Make("B" + std::to_string(p) + "_C" + std::to_string(c) +
                                                ".Value() As Integer"));
    auto start = Clock::now();
    void *first = RuntimeLookupPluginEntrypoint(names[0]);
    const double built = Ms(start);
    const int lookups = 2000000;
    uintptr_t sum = reinterpret_cast<uintptr_t>(first);
    start = Clock::now();
    for (int i = 0; i < lookups; ++i)
        sum += reinterpret_cast<uintptr_t>(
            RuntimeLookupPluginEntrypoint(names[size_t(i) % names.size()]));
    const double spent = Ms(start);
    std::printf("entry table of %zu names built in %.1f ms; %.2f million look-ups per second "
                "(check %zx)\n",
                names.size() * 3, built, lookups / spent / 1000.0, size_t(sum & 0xfff));
    for (KelpString s : names)
        kelp::objtext::Release(s);

    if (!kelp::DisplayAvailable()) {
        std::printf("no display: Placard figures skipped\n");
        return 0;
    }
    std::string error;
    if (!kelp::plugins::LoadPluginLibrary(KELP_BIN_DIR "/libKPAppearancePak.so", "", error)) {
        std::printf("cannot load the pack: %s\n", error.c_str());
        return 1;
    }
    kelp::plugins::LinkPluginClasses(nullptr);
    RuntimeClass *window = Lookup("Window");
    RuntimeClass *bench =
        RuntimeNewClass(window, window->methodCount, window->interfaceCount, window->eventCount,
                        window->directMethodCount, window->propertyCount);
    bench->name = kelp::objtext::Make("wBench");
    bench->instanceSize = window->instanceSize;
    for (int32_t i = bench->eventCount - 1; i >= 0; --i) {
        std::string_view event = kelp::objtext::View(bench->eventTable[i].name);
        if (event == "Layout")
            bench->eventTable[i].handler = reinterpret_cast<void *>(&OnLayout);
        if (event == "CreateControls")
            bench->eventTable[i].handler = reinterpret_cast<void *>(&OnCreateControls);
    }
    RuntimeObject *w = RuntimeNewObject(bench);
    for (int i = 0; i < 50; ++i)
        kelp::MainLoopStep(false);
    auto *pane = static_cast<kelp::SubPane *>(kelp::Ctl(gPlacard)->pane);
    if (!pane) {
        std::printf("the placard has no pane\n");
        return 1;
    }
    start = Clock::now();
    for (int i = 0; i < 10000; ++i)
        pane->RedrawNow();
    gdk_flush();
    std::printf("Placard of 300 x 100 drawn 10,000 times in %.1f ms (%.1f us each)\n", Ms(start),
                Ms(start) * 1000.0 / 10000);
    RuntimeCloseWindow(w);
    RuntimeUnlockObject(w);
    if (xvfb > 0) {
        kill(xvfb, SIGTERM);
        waitpid(xvfb, nullptr, 0);
    }
    return 0;
}
