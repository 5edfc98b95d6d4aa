#include "windows/menu_bar.h"

#include "shutdown/shutdown_task.h"

namespace kelp {
namespace {

MenuBarVisibility gApply = nullptr;
bool gMenuBarHidden = false;

class menuShutdown;
menuShutdown *gMenuShutdown = nullptr;

class menuShutdown : public runShutdownTask {
public:
    menuShutdown() : runShutdownTask("menuShutdown") {}
    ~menuShutdown() override {
        gMenuShutdown = nullptr;
        gMenuBarHidden = false;
        if (gApply)
            gApply(true);
    }
};

} // namespace

MenuBarVisibility SetMenuBarVisibility(MenuBarVisibility apply) {
    MenuBarVisibility old = gApply;
    gApply = apply;
    return old;
}

void HideMenuBar() {
    if (gMenuBarHidden)
        return;
    gMenuBarHidden = true;
    if (!gMenuShutdown)
        gMenuShutdown = new menuShutdown;
    if (gApply)
        gApply(false);
}

void ShowMenuBar() {
    if (!gMenuBarHidden)
        return;
    gMenuBarHidden = false;
    // Its destructor shows the bar and takes it off the shutdown list.
    delete gMenuShutdown;
}

bool MenuBarHidden() { return gMenuBarHidden; }

} // namespace kelp
