// Menu figures: the enable cycle on a bar of 200 items (10 titles of 19
// items each) shown in one window, with AutoEnable on, an application
// handler for every fifth name and an EnableMenu handler on every item.
// Starts its own Xvfb when no display is set.

#include "bench_display.h"
#include "objects/text.h"
#include "process/display.h"
#include "runloop/main_loop.h"

#include "kelp/menus.h"
#include "kelp/objects.h"
#include "kelp/runloop.h"
#include "kelp/startup.h"
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

KelpString Text(const std::string &s) { return kelp::objtext::Make(s); }

RuntimeClass *Lookup(const char *name) {
    KelpString text = Text(name);
    RuntimeClass *klass = RuntimeLookupClass(text);
    kelp::objtext::Release(text);
    return klass;
}

RuntimeClass *Subclass(const char *baseName, const char *name) {
    RuntimeClass *base = Lookup(baseName);
    RuntimeClass *klass =
        RuntimeNewClass(base, base->methodCount, base->interfaceCount, base->eventCount,
                        base->directMethodCount, base->propertyCount);
    klass->name = Text(name);
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

int gEnableMenuCalls = 0;
void OnEnableMenu(RuntimeObject *) { ++gEnableMenuCalls; }
uint8_t OnHandler(RuntimeObject *, int32_t) { return 0; }

void SetText(void (*setter)(RuntimeObject *, int32_t, KelpString), RuntimeObject *item,
             const std::string &text) {
    KelpString s = Text(text);
    setter(item, 0, s);
    kelp::objtext::Release(s);
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
        std::printf("no display: menu figures skipped\n");
        return 0;
    }
    RuntimeInitExternalClasses();
    RuntimeClass *itemClass = Subclass("MenuItem", "BenchItem");
    SetHandler(itemClass, "EnableMenu", reinterpret_cast<void *>(&OnEnableMenu));
    RuntimeObject *bar = RuntimeNewObject(Lookup("MenuBar"));
    RuntimeRegisterAppObject(nullptr);
    RuntimeObject *app = getAppObject();
    int items = 0;
    for (int t = 0; t < 10; ++t) {
        RuntimeObject *title = RuntimeNewObject(itemClass);
        SetText(&RuntimeMenuItemTextSetter, title, "Title " + std::to_string(t));
        ++items;
        for (int i = 0; i < 19; ++i, ++items) {
            RuntimeObject *item = RuntimeNewObject(itemClass);
            const std::string name = "Item" + std::to_string(items);
            SetText(&RuntimeMenuItemNameSetter, item, name);
            SetText(&RuntimeMenuItemTextSetter, item, "Item " + std::to_string(items));
            if (i < 9)
                SetText(&RuntimeMenuItemCommandKeySetter, item, std::string(1, char('A' + i)));
            if (items % 5 == 0) {
                KelpString key = Text(name);
                ApplicationAddMenuHandler(app, key, reinterpret_cast<void *>(&OnHandler));
                kelp::objtext::Release(key);
            }
            RuntimeMenuItemAppend(title, item);
            RuntimeUnlockObject(item);
        }
        RuntimeMenuItemAppend(bar, title);
        RuntimeUnlockObject(title);
    }
    AppMenuBarSetter(nullptr, 0, bar);
    RuntimeObject *window = RuntimeNewObject(Lookup("Window"));
    for (int i = 0; i < 20; ++i)
        kelp::MainLoopStep(false);

    std::vector<double> cycles;
    for (int round = 0; round < 7; ++round) {
        gEnableMenuCalls = 0;
        auto start = Clock::now();
        for (int i = 0; i < 100; ++i)
            enableMenuItems();
        cycles.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count() /
                         100);
    }
    std::printf("enable cycle on a bar of %d items in one window: %.0f us per cycle "
                "(median of 7 rounds of 100; %d EnableMenu events a cycle)\n",
                items, Median(cycles), gEnableMenuCalls / 100);

    RuntimeCloseWindow(window);
    RuntimeUnlockObject(window);
    AppMenuBarSetter(nullptr, 0, nullptr);
    RuntimeUnlockObject(bar);
    if (xvfb > 0) {
        kill(xvfb, SIGTERM);
        waitpid(xvfb, nullptr, 0);
    }
    return 0;
}
