// Control figures: a window of 200 controls built from mass property data
// up to its first expose, and 10,000 Value sets on a group of radio
// buttons.  Starts its own Xvfb when no display is set.
#include "bench_display.h"
#include "controls/control.h"
#include "windows/runtime_view.h"

#include "objects/text.h"
#include "process/display.h"
#include "runloop/main_loop.h"

#include "kelp/controls.h"
#include "kelp/objects.h"
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

RuntimeClass *Lookup(const char *name) {
    KelpString text = kelp::objtext::Make(name);
    RuntimeClass *klass = RuntimeLookupClass(text);
    kelp::objtext::Release(text);
    return klass;
}

// A class of the image on a library class, as the image's set-up makes it.
RuntimeClass *Subclass(const char *baseName, const char *name) {
    RuntimeClass *base = Lookup(baseName);
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

int Row(RuntimeClass *klass, const std::string &name) {
    for (int32_t i = klass->propertyCount - 1; i >= 0; --i)
        if (kelp::objtext::View(klass->propertyTable[i].signature).starts_with(name + "%"))
            return i;
    return -1;
}

void Put(std::string &out, uint32_t v, int bytes) {
    for (int i = bytes - 1; i >= 0; --i)
        out.push_back(static_cast<char>((v >> (8 * i)) & 0xff));
}

const char *const kKinds[] = {"StaticText", "PushButton", "RadioButton", "CheckBox"};
RuntimeClass *gClasses[4];

void OnLayout(RuntimeObject *self) {
    auto *v = reinterpret_cast<kelp::ViewRecord *>(self);
    v->width = 1000, v->height = 700, v->frame = 4;
}

// 200 controls, 50 of each kind, on a grid.
void OnCreateControls(RuntimeObject *self) {
    for (int i = 0; i < 200; ++i) {
        RuntimeClass *klass = gClasses[i % 4];
        std::string data;
        auto integer = [&](const char *name, int32_t v) {
            Put(data, uint32_t(Row(klass, name)), 2);
            Put(data, uint32_t(v), 4);
        };
        integer("Left", 10 + (i % 10) * 98);
        integer("Top", 10 + (i / 10) * 34);
        integer("Width", 90);
        integer("Height", 26);
        std::string caption = "Item " + std::to_string(i);
        Put(data, uint32_t(Row(klass, i % 4 == 0 ? "Text" : "Caption")), 2);
        Put(data, uint32_t(caption.size()), 4);
        data += caption;
        RuntimeObject *control = RuntimeNewObject(klass);
        KelpString bytes = kelp::objtext::Make(data);
        RuntimeMassPropertySetter(control, bytes);
        kelp::objtext::Release(bytes);
        KelpString name = kelp::objtext::Make("C" + std::to_string(i));
        WindowAddControl(self, name, control);
        kelp::objtext::Release(name);
        RuntimeUnlockObject(control);
    }
}

bool gExposed = false;
gboolean OnExpose(GtkWidget *, GdkEventExpose *, gpointer) {
    gExposed = true;
    return FALSE;
}

double Median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

} // namespace

int main(int argc, char **argv) {
    kelp::WireRuntime();
    pid_t xvfb = StartXvfb();
    kelp::InitToolkit(&argc, &argv);
    if (!kelp::DisplayAvailable()) {
        std::printf("no display: control figures skipped\n");
        return 0;
    }
    RuntimeInitExternalClasses();
    for (int k = 0; k < 4; ++k)
        gClasses[k] = Subclass(kKinds[k], kKinds[k]);
    RuntimeClass *window = Subclass("Window", "wBench");
    SetHandler(window, "Layout", reinterpret_cast<void *>(&OnLayout));
    SetHandler(window, "CreateControls", reinterpret_cast<void *>(&OnCreateControls));

    std::vector<double> build, expose;
    for (int round = 0; round < 5; ++round) {
        gExposed = false;
        auto start = Clock::now();
        RuntimeObject *w = RuntimeNewObject(window);
        auto built = Clock::now();
        auto *view = reinterpret_cast<kelp::ViewRecord *>(w);
        g_signal_connect_after(view->pane->Fixed(), "expose-event", G_CALLBACK(OnExpose), nullptr);
        while (!gExposed && Clock::now() - start < std::chrono::seconds(20))
            kelp::MainLoopStep(true);
        build.push_back(std::chrono::duration<double, std::milli>(built - start).count());
        expose.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        RuntimeCloseWindow(w);
        RuntimeUnlockObject(w);
        for (int i = 0; i < 20; ++i)
            kelp::MainLoopStep(false);
    }
    std::printf("200 controls from mass data: built in %.1f ms, first expose after %.1f ms "
                "(median of 5)\n",
                Median(build), Median(expose));

    // 10,000 Value sets, round a group of ten radio buttons.
    RuntimeObject *w = RuntimeNewObject(window);
    std::vector<RuntimeObject *> radios;
    for (int i = 0; i < 200; ++i) {
        KelpString name = kelp::objtext::Make("C" + std::to_string(i));
        RuntimeObject *c = RuntimeControlFetch(w, name);
        kelp::objtext::Release(name);
        if (i % 4 == 2 && radios.size() < 10)
            radios.push_back(c); // all lie directly on the window: one group of 50
    }
    std::vector<double> sets;
    for (int round = 0; round < 5; ++round) {
        auto start = Clock::now();
        for (int i = 0; i < 10000; ++i)
            radioValueSetter(radios[size_t(i) % radios.size()], 0, 1);
        sets.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::printf("10,000 radio Value sets round %zu buttons of a group of 50: %.1f ms (%.2f us "
                "each, median of 5)\n",
                radios.size(), Median(sets), Median(sets) * 1000 / 10000);
    RuntimeCloseWindow(w);
    RuntimeUnlockObject(w);
    if (xvfb > 0) {
        kill(xvfb, SIGTERM);
        waitpid(xvfb, nullptr, 0);
    }
    return 0;
}
