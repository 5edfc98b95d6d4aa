// Run loop figures: one idle pass with 100 pollables, the back-edge service
// call, drawing into a window, and the processor an idle program uses.
// Starts its own Xvfb when no display is set.
#include "bench_display.h"
#include "graphics/graphics_gtk.h"
#include "objects/definitions.h"
#include "process/display.h"
#include "process/quit.h"
#include "runloop/main_loop.h"
#include "runloop/pollable.h"
#include "timers/timer.h"
#include "windows/window.h"

#include "kelp/objects.h"
#include "kelp/runloop.h"
#include "main/wiring_table.h"

#include <gtk/gtk.h>

#include <signal.h>
#include <sys/resource.h>
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

using kelp::bench::StartXvfb;

struct Nothing : kelp::Pollable {
    void Poll() override { ++count; }
    long count = 0;
};

double CpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

void Settle(int ms) {
    auto end = Clock::now() + std::chrono::milliseconds(ms);
    while (Clock::now() < end)
        kelp::MainLoopStep(false);
}

} // namespace

int main(int argc, char **argv) {
    kelp::WireRuntime();
    pid_t xvfb = StartXvfb();
    kelp::InitToolkit(&argc, &argv);

    // One pass of the loop with nothing to do but 100 pollables.
    {
        std::vector<Nothing> pollables(100);
        for (auto &p : pollables)
            kelp::AddPollable(&p);
        const int passes = 100000;
        auto start = Clock::now();
        for (int i = 0; i < passes; ++i)
            kelp::MainLoopStep(false);
        double ns = std::chrono::duration<double, std::nano>(Clock::now() - start).count() / passes;
        std::printf("MainLoopStep, no events, 100 pollables: %.0f ns per pass\n", ns);
        for (auto &p : pollables)
            kelp::RemovePollable(&p);
    }

    // The back-edge call, a million times: one clock read and one compare
    // when nothing is due.
    {
        auto start = Clock::now();
        for (int i = 0; i < 1000000; ++i)
            RuntimeBackgroundTask();
        double ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        std::printf("RuntimeBackgroundTask x 1,000,000: %.1f ms (%.0f ns per call)\n", ms,
                    ms * 1e6 / 1e6);
    }

    if (!kelp::DisplayAvailable()) {
        std::printf("no display: drawing and idle figures skipped\n");
        return 0;
    }

    auto *window = new kelp::Window("Bench", 4, true, kelp::RectFromXYWH(20, 40, 400, 300));
    window->Show();
    Settle(200);
    {
        kelp::Graphics *g = window->NewGraphics();
        auto start = Clock::now();
        for (int i = 0; i < 10000; ++i) {
            g->SetForeColor(
                kelp::ColorWordToRGB(static_cast<uint32_t>(i * 2654435761u) & 0xffffff));
            g->FillRect(kelp::RectFromXYWH(i % 350, (i / 7) % 250, 40, 30));
        }
        gdk_flush();
        double ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        std::printf("10,000 filled rectangles: %.1f ms\n", ms);
        start = Clock::now();
        for (int i = 0; i < 10000; ++i)
            g->DrawText("Sumbrook 12 + 7 = 19", i % 300, 20 + (i / 3) % 260, 0);
        gdk_flush();
        ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        std::printf("10,000 text draws: %.1f ms\n", ms);
        delete g;
    }

    // Idle: one window, one 250 ms timer, the loop blocking in the toolkit.
    {
        kelp::ObjectDefinition *definition = kelp::TimerDefinition();
        RuntimeInitExternalClasses();
        RuntimeObject *timer = kelp::NewObjectOfDefinition(definition);
        timerPeriodSetter(timer, 0, 250);
        timerModeSetter(timer, 0, kelp::kTimerModeMultiple);
        double cpuBefore = CpuSeconds();
        auto end = Clock::now() + std::chrono::seconds(10);
        while (Clock::now() < end)
            kelp::MainLoopStep(true);
        double cpu = CpuSeconds() - cpuBefore;
        std::printf("idle 10 s with one window and a 250 ms timer: %.3f s of processor (%.2f%%)\n",
                    cpu, cpu * 10.0);
        RuntimeUnlockObject(timer);
    }
    window->Close();
    if (xvfb > 0) {
        kill(xvfb, SIGTERM);
        waitpid(xvfb, nullptr, 0);
    }
    return 0;
}
