// A menu bar built the way the drill's Menu class builds it (File with "End
// This Round" and "Quit" Ctrl+Q, Info with "About..." and "Help" Ctrl+H),
// set as the application's bar, document windows that show clones of it,
// and a log of every handler and event that ran.
#pragma once

#include "menus/menu.h"
#include "menus/window_bars.h"

#include "app/application.h"
#include "exceptions/raise.h"
#include "objects/object_model.h"
#include "objects/text.h"
#include "runloop/main_loop.h"
#include "support/class_kit.h"
#include "support/language_class.h"
#include "support/settle.h"
#include "support/x_input.h"
#include "support/xvfb.h"
#include "windows/runtime_view.h"

#include "kelp/menus.h"
#include "kelp/objects.h"
#include "kelp/runloop.h"
#include "kelp/windows.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelp::test {

inline std::vector<std::string> &MenuLog() {
    static std::vector<std::string> log;
    return log;
}

inline std::string ItemName(RuntimeObject *item) {
    KelpString name = RuntimeMenuItemNameGetter(item, 0);
    std::string text = TextOf(name);
    objtext::Release(name);
    return text;
}

struct DrillBar {
    RuntimeObject *bar, *file, *endRound, *quit, *info, *about, *help;
};

class MenuFixture : public ::testing::Test {
protected:
    void SetUp() override {
        if (!RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
        ResetRunState();
        MenuLog().clear();
        Bar() = {};
        RuntimeClass *barClass = MakeSubclass("MenuBar", "Menu");
        Bar().bar = RuntimeNewObject(barClass);
        Bar().file = Item("MenuItem", "UntitledMenu0", "File", "", false, Bar().bar);
        Bar().endRound =
            Item("MenuItem", "FileEndThisRound", "End This Round", "", false, Bar().file);
        Bar().quit = Item("QuitMenuItem", "FileQuit", "Quit", "Ctrl+Q", true, Bar().file);
        Bar().info = Item("MenuItem", "Info", "Info", "", false, Bar().bar);
        Bar().about = Item("MenuItem", "InfoAbout", "About...", "", false, Bar().info);
        Bar().help = Item("MenuItem", "InfoHelp", "Help", "Ctrl+H", false, Bar().info);
        RuntimeClass *appClass = MakeSubclass("Application", "App");
        SetEventHandler(appClass, "EnableMenuItems", reinterpret_cast<void *>(&AppEnable));
        mApp = RuntimeNewObject(appClass);
        AppMenuBarSetter(mApp, 0, Bar().bar);
        RuntimeRegisterAppObject(mApp);
        ApplicationAddMenuHandler(mApp, Lit("InfoAbout"), reinterpret_cast<void *>(&AboutHandler));
        ApplicationAddMenuHandler(mApp, Lit("InfoHelp"), reinterpret_cast<void *>(&HelpHandler));
    }

    void TearDown() override {
        for (RuntimeObject *w : mWindows) {
            if (View(w)->pane)
                RuntimeCloseWindow(w);
            RuntimeUnlockObject(w);
        }
        Settle(30);
        ReleaseRegisteredApplication();
        RuntimeUnlockObject(mApp);
        for (RuntimeObject *item : {Bar().bar, Bar().file, Bar().endRound, Bar().quit, Bar().info,
                                    Bar().about, Bar().help})
            RuntimeUnlockObject(item);
        ResetRunState();
    }

    static DrillBar &Bar() {
        static DrillBar bar;
        return bar;
    }

    // An item of its own class (so it can have handlers), appended to `to`.
    static RuntimeObject *Item(const char *base, const char *name, const char *text,
                               const char *key, bool autoEnable, RuntimeObject *to) {
        RuntimeClass *klass = MakeSubclass(base, (std::string(name) + "Item").c_str());
        SetEventHandler(klass, "EnableMenu", reinterpret_cast<void *>(&LogEnableMenu));
        if (std::string(base) != "QuitMenuItem")
            SetEventHandler(klass, "Action", reinterpret_cast<void *>(&LogAction));
        RuntimeObject *item = RuntimeNewObject(klass);
        RuntimeMenuItemNameSetter(item, 0, Lit(name));
        RuntimeMenuItemTextSetter(item, 0, Lit(text));
        RuntimeMenuItemCommandKeySetter(item, 0, Lit(key));
        RuntimeMenuItemAutoEnableSetter(item, 0, autoEnable);
        RuntimeMenuItemAppend(to, item);
        return item;
    }

    // A document window at (100, 100) that shows the application's bar.
    RuntimeObject *MakeWindow(const char *title) {
        RuntimeClass *klass = MakeSubclass("Window", "wMain");
        SetEventHandler(klass, "Layout", reinterpret_cast<void *>(&OnLayout));
        SetEventHandler(klass, "KeyDown", reinterpret_cast<void *>(&OnKeyDown));
        SetEventHandler(klass, "EnableMenuItems", reinterpret_cast<void *>(&WindowEnable));
        RuntimeObject *w = RuntimeNewObject(klass);
        windowTitleSetter(w, 0, Lit(title));
        mWindows.push_back(w);
        Settle(200);
        FocusToplevel(Pane(w)->GtkWin());
        Settle(100);
        return w;
    }

    static ViewRecord *View(RuntimeObject *w) { return reinterpret_cast<ViewRecord *>(w); }
    static RuntimeViewWindow *Pane(RuntimeObject *w) { return View(w)->pane; }
    static XMenuGTK *BarOf(RuntimeObject *w) { return WindowBarClone(Pane(w)); }
    // The entry of the bar's title `title` (0 File, 1 Info) and of its
    // item `item`, in window `w`.
    static XMenuGTK *Entry(RuntimeObject *w, int title, int item = -1) {
        XMenuGTK *t = BarOf(w)->Native(title);
        return item < 0 ? t : t->Native(item);
    }

    static void ClickEntry(XMenuGTK *entry) {
        GtkWidget *widget = entry->ItemWidget();
        ASSERT_TRUE(ClickAt(widget, widget->allocation.width / 2, widget->allocation.height / 2));
    }

    static int Count(const std::string &line) {
        int n = 0;
        for (const std::string &l : MenuLog())
            n += l == line;
        return n;
    }

    static void Settle(int ms) { test::Settle(ms); }

    RuntimeObject *mApp = nullptr;
    std::vector<RuntimeObject *> mWindows;

private:
    static void OnLayout(RuntimeObject *self) {
        ViewRecord *v = View(self);
        v->width = 300, v->height = 200, v->left = 100, v->top = 100;
        v->frame = 0;
        v->placement = 0;
    }
    static uint8_t OnKeyDown(RuntimeObject *, KelpString key) {
        MenuLog().push_back(std::string("Window.KeyDown ") + TextOf(key));
        return 1;
    }
    static void WindowEnable(RuntimeObject *) { MenuLog().push_back("Window.EnableMenuItems"); }
    static void AppEnable(RuntimeObject *) {
        MenuLog().push_back("App.EnableMenuItems");
        RuntimeEnableMenu(Bar().about);
        RuntimeEnableMenu(Bar().help);
    }
    static uint8_t AboutHandler(RuntimeObject *, int32_t) {
        MenuLog().push_back("App.InfoAbout");
        return 0;
    }
    static uint8_t HelpHandler(RuntimeObject *, int32_t) {
        MenuLog().push_back("App.InfoHelp");
        return 0;
    }
    static void LogEnableMenu(RuntimeObject *self) {
        MenuLog().push_back("EnableMenu " + ItemName(self));
    }
    static uint8_t LogAction(RuntimeObject *self) {
        MenuLog().push_back("Action " + ItemName(self));
        return 1;
    }
};

} // namespace kelp::test
