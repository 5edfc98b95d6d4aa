// Drill figures, taken on the real build/bin/sumbrook under a private X
// server:
//  - start-up: from the exec of sumbrook to its welcome window mapped,
//    against a GTK 2 program that only shows one window, in the same run;
//  - from the click on OK to the next problem on the screen (its pixels
//    changed), over 50 rounds of 5 questions;
//  - resident memory after round 1 and after round 50.
// Clicks go through the server's XTEST extension, loaded from the library
// that xdotool brings, so each interval starts when the click is sent.
#include "bench_display.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <dlfcn.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

using Clock = std::chrono::steady_clock;

namespace {

const std::string kBin = KELP_BIN_DIR;
Display *gX = nullptr;
int gBar = 0; // the menu bar above every window's content

double Ms(Clock::time_point a, Clock::time_point b) {
    return std::chrono::duration<double, std::milli>(b - a).count();
}

double Percentile(std::vector<double> v, double p) {
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[std::min(v.size() - 1, size_t(p * double(v.size())))];
}

[[noreturn]] void Fail(const char *what) {
    std::printf("drill figures stopped: %s\n", what);
    std::exit(1);
}

pid_t Spawn(const std::vector<std::string> &args) {
    const pid_t pid = fork();
    if (pid == 0) {
        std::vector<char *> argv;
        for (const auto &a : args)
            argv.push_back(const_cast<char *>(a.c_str()));
        argv.push_back(nullptr);
        freopen("/dev/null", "w", stderr);
        execv(argv[0], argv.data());
        _exit(127);
    }
    return pid;
}

void Stop(pid_t pid) {
    kill(pid, SIGTERM);
    waitpid(pid, nullptr, 0);
}

// Milliseconds from the exec of the program to the map of its first window.
double TimeToFirstWindow(const std::vector<std::string> &program) {
    Window root = DefaultRootWindow(gX);
    XSelectInput(gX, root, SubstructureNotifyMask);
    XSync(gX, True);
    const auto start = Clock::now();
    const pid_t pid = Spawn(program);
    XEvent e;
    do
        XNextEvent(gX, &e);
    while (e.type != MapNotify || e.xmap.override_redirect);
    const double ms = Ms(start, Clock::now());
    Stop(pid);
    XSelectInput(gX, root, NoEventMask);
    XSync(gX, True);
    return ms;
}

// The top-level window of this title once it is shown, else 0 after 10 s.
Window Find(const char *title) {
    for (int i = 0; i < 2000; ++i) {
        Window root = DefaultRootWindow(gX), parent, *children = nullptr;
        unsigned n = 0;
        Window found = 0;
        XQueryTree(gX, root, &root, &parent, &children, &n);
        for (unsigned c = 0; c < n && !found; ++c) {
            char *name = nullptr;
            XWindowAttributes a;
            if (XFetchName(gX, children[c], &name) && name && !std::strcmp(name, title) &&
                XGetWindowAttributes(gX, children[c], &a) && a.map_state == IsViewable)
                found = children[c];
            XFree(name);
        }
        XFree(children);
        if (found) {
            std::this_thread::sleep_for(std::chrono::milliseconds(150)); // drawn and ready
            return found;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    Fail(title);
}

using FakeMotion = int (*)(Display *, int, int, int, unsigned long);
using FakeButton = int (*)(Display *, unsigned, int, unsigned long);
FakeMotion gMotion;
FakeButton gButton;

void Click(Window w, int x, int y) {
    int rx = 0, ry = 0;
    Window child;
    XTranslateCoordinates(gX, w, DefaultRootWindow(gX), x, y + gBar, &rx, &ry, &child);
    gMotion(gX, -1, rx, ry, CurrentTime);
    gButton(gX, 1, True, CurrentTime);
    gButton(gX, 1, False, CurrentTime);
    XFlush(gX);
}

// The pixels of the problem's label, to tell when the next problem shows.
std::string Problem(Window w) {
    XImage *image = XGetImage(gX, w, 11, 84 + gBar, 357, 134, AllPlanes, ZPixmap);
    if (!image)
        return {};
    std::string bytes(image->data, size_t(image->bytes_per_line * image->height));
    XDestroyImage(image);
    return bytes;
}

long RssKb(pid_t pid) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(in, line);)
        if (line.rfind("VmRSS:", 0) == 0)
            return std::atol(line.c_str() + 6);
    return -1;
}

} // namespace

int main() {
    const pid_t xvfb = kelp::bench::StartXvfb();
    gX = XOpenDisplay(nullptr);
    // A window may go between listing it and asking for its name.
    XSetErrorHandler([](Display *, XErrorEvent *) { return 0; });
    void *xtst = dlopen("libXtst.so.6", RTLD_NOW);
    gMotion = xtst ? reinterpret_cast<FakeMotion>(dlsym(xtst, "XTestFakeMotionEvent")) : nullptr;
    gButton = xtst ? reinterpret_cast<FakeButton>(dlsym(xtst, "XTestFakeButtonEvent")) : nullptr;
    if (!gX || !gMotion || !gButton) {
        std::printf("no display or no XTEST: drill figures skipped\n");
        return 0;
    }

    // Start-up, the programs in turn after one run of each to warm the
    // caches.
    const std::vector<std::string> programs[] = {{kBin + "/sumbrook"},
                                                 {kBin + "/bench_minimal_window"},
                                                 {kBin + "/bench_minimal_window", "--label"}};
    std::vector<double> times[3];
    for (int i = 0; i < 21; ++i)
        for (int p = 0; p < 3; ++p) {
            const double ms = TimeToFirstWindow(programs[p]);
            if (i > 0)
                times[p].push_back(ms);
        }
    const double d50 = Percentile(times[0], 0.5), m50 = Percentile(times[1], 0.5),
                 l50 = Percentile(times[2], 0.5);
    std::printf("exec to first window mapped, median of 20: sumbrook %.1f ms; a GTK 2 window "
                "%.1f ms (ratio %.2f); a GTK 2 window with a label %.1f ms (ratio %.2f)\n",
                d50, m50, d50 / m50, l50, d50 / l50);

    // Fifty rounds of five questions, answered with the first answer.
    const pid_t pid = Spawn({kBin + "/sumbrook", "--seed", "11"});
    Window w = Find("Welcome");
    XWindowAttributes a;
    XGetWindowAttributes(gX, w, &a);
    gBar = a.height - 192;
    Click(w, 200, 162); // Begin
    std::vector<double> next;
    long rssFirst = 0, rssLast = 0;
    for (int round = 1; round <= 50; ++round) {
        w = Find("Exercise Selection");
        Click(w, 207, 127); // 5 questions
        Click(w, 100, 223); // Begin
        w = Find("Mix Practice: 5 Questions");
        for (int q = 1; q <= 5; ++q) {
            const std::string before = Problem(w);
            Click(w, 35, 282); // the first answer
            const auto ok = Clock::now();
            Click(w, 100, 410);
            if (q == 5)
                break;
            while (Problem(w) == before)
                if (Ms(ok, Clock::now()) > 10000)
                    Fail("the next problem never showed");
            next.push_back(Ms(ok, Clock::now()));
        }
        w = Find("Sumbrook Results");
        (round == 1 ? rssFirst : rssLast) = RssKb(pid);
        Click(w, 316, 366); // Again
    }
    std::printf("OK to the next problem on the screen, %zu questions: median %.1f ms, 90th "
                "percentile %.1f ms\n",
                next.size(), Percentile(next, 0.5), Percentile(next, 0.9));
    std::printf("resident memory at the results: after round 1 %ld kB, after round 50 %ld kB "
                "(%+ld kB)\n",
                rssFirst, rssLast, rssLast - rssFirst);
    Stop(pid);
    XCloseDisplay(gX);
    if (xvfb > 0)
        Stop(xvfb);
    return 0;
}
