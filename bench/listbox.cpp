// ListBox figures: 100,000 rows of two cells filled (time and resident
// memory), sorted by text, and scrolled through a page at a time with the
// window painted at each stop.  Starts its own Xvfb when no display is set.
#include "bench_display.h"
#include "windows/runtime_view.h"

#include "main/wiring_table.h"
#include "objects/text.h"
#include "process/display.h"
#include "runloop/main_loop.h"

#include "kelp/controls.h"
#include "kelp/listbox.h"
#include "kelp/objects.h"
#include "kelp/windows.h"

#include <gtk/gtk.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>

using Clock = std::chrono::steady_clock;

namespace {

constexpr int kRows = 100000;

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

void OnLayout(RuntimeObject *self) {
    auto *v = reinterpret_cast<kelp::ViewRecord *>(self);
    v->width = 600, v->height = 500, v->frame = 4;
}

RuntimeObject *gList;
void OnCreateControls(RuntimeObject *self) {
    gList = RuntimeNewObject(Subclass("ListBox", "BenchList"));
    RuntimeControlMove(gList, 10, 10, 580, 480);
    listColumnCountSetter(gList, 0, 2);
    KelpString name = kelp::objtext::Make("BenchList");
    WindowAddControl(self, name, gList);
    kelp::objtext::Release(name);
}

long ResidentKiB() {
    std::ifstream statm("/proc/self/statm");
    long pages = 0, resident = 0;
    statm >> pages >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

double Ms(Clock::time_point since) {
    return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

void Pump(int passes) {
    for (int i = 0; i < passes; ++i)
        kelp::MainLoopStep(false);
    gdk_flush();
}

} // namespace

int main(int argc, char **argv) {
    kelp::WireRuntime();
    pid_t xvfb = kelp::bench::StartXvfb();
    kelp::InitToolkit(&argc, &argv);
    if (!kelp::DisplayAvailable()) {
        std::printf("no display: listbox figures skipped\n");
        return 0;
    }
    RuntimeInitExternalClasses();
    RuntimeClass *window = Subclass("Window", "wBench");
    for (int32_t i = window->eventCount - 1; i >= 0; --i) {
        std::string_view event = kelp::objtext::View(window->eventTable[i].name);
        if (event == "Layout")
            window->eventTable[i].handler = reinterpret_cast<void *>(&OnLayout);
        if (event == "CreateControls")
            window->eventTable[i].handler = reinterpret_cast<void *>(&OnCreateControls);
    }
    RuntimeObject *w = RuntimeNewObject(window);
    Pump(50);

    std::mt19937 rng(7);
    std::vector<KelpString> words;
    for (int i = 0; i < kRows; ++i) {
        std::string word;
        for (int n = 0; n < 8; ++n)
            word += char('a' + rng() % 26);
        words.push_back(kelp::objtext::Make(word));
    }
    KelpString number = kelp::objtext::Make("42");
    const long before = ResidentKiB();
    auto start = Clock::now();
    for (int i = 0; i < kRows; ++i) {
        RuntimeListAddRow(gList, words[size_t(i)]);
        listSetCell(gList, i, 1, number);
    }
    const double fill = Ms(start);
    Pump(20);
    const double shown = Ms(start);
    const long after = ResidentKiB();
    std::printf("%d rows of two cells: filled in %.0f ms, shown after %.0f ms, %.1f MiB "
                "resident (%ld bytes a row)\n",
                kRows, fill, shown, (after - before) / 1024.0, (after - before) * 1024 / kRows);

    start = Clock::now();
    listSortedColumnSetter(gList, 0, 0);
    RuntimeListResort(gList);
    Pump(5);
    std::printf("sorted by text in %.0f ms\n", Ms(start));

    start = Clock::now();
    int stops = 0;
    for (int row = 0; row < kRows; row += kRows / 200, ++stops) {
        listScrollPositionSetter(gList, 0, row);
        Pump(3);
    }
    std::printf("scrolled through in %d stops, each painted: %.2f ms a stop (at row %d)\n", stops,
                Ms(start) / stops, listScrollPositionGetter(gList, 0));

    for (KelpString s : words)
        kelp::objtext::Release(s);
    kelp::objtext::Release(number);
    RuntimeCloseWindow(w);
    RuntimeUnlockObject(gList);
    RuntimeUnlockObject(w);
    if (xvfb > 0) {
        kill(xvfb, SIGTERM);
        waitpid(xvfb, nullptr, 0);
    }
    return 0;
}
