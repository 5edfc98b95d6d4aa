#include "windows/menu_bar.h"

#include "shutdown/shutdown_task.h"
#include "windows/window.h"

#include <gtk/gtk.h>

namespace kelp {
namespace {

bool gMenuBarHidden = false;

// The GtkMenuBar in the front window's box, or null.
GtkWidget *FrontMenuBar() {
    Window *front = FrontWindow();
    if (!front || !front->hasMenuBar || !front->GtkWin())
        return nullptr;
    GtkWidget *box = gtk_bin_get_child(GTK_BIN(front->GtkWin()));
    if (!box)
        return nullptr;
    GtkWidget *bar = nullptr;
    GList *items = gtk_container_get_children(GTK_CONTAINER(box));
    for (GList *item = items; item; item = item->next)
        if (GTK_IS_MENU_BAR(item->data))
            bar = static_cast<GtkWidget *>(item->data);
    g_list_free(items);
    return bar;
}

// Shows or hides the bar; the window grows or shrinks by its height.
void ApplyMenuBarVisibility(bool visible) {
    GtkWidget *bar = FrontMenuBar();
    if (!bar || (GTK_WIDGET_VISIBLE(bar) != 0) == visible)
        return;
    GtkWindow *window = GTK_WINDOW(FrontWindow()->GtkWin());
    int width = 0, height = 0;
    gtk_window_get_size(window, &width, &height);
    GtkRequisition request{};
    gtk_widget_size_request(bar, &request);
    if (visible) {
        gtk_widget_show(bar);
        gtk_window_resize(window, width, height + request.height);
    } else {
        gtk_widget_hide(bar);
        gtk_window_resize(window, width, height > request.height ? height - request.height : 1);
    }
}

class menuShutdown;
menuShutdown *gMenuShutdown = nullptr;

class menuShutdown : public runShutdownTask {
public:
    menuShutdown() : runShutdownTask("menuShutdown") {}
    ~menuShutdown() override {
        gMenuShutdown = nullptr;
        gMenuBarHidden = false;
        ApplyMenuBarVisibility(true);
    }
};

} // namespace

void HideMenuBar() {
    if (gMenuBarHidden)
        return;
    gMenuBarHidden = true;
    if (!gMenuShutdown)
        gMenuShutdown = new menuShutdown;
    ApplyMenuBarVisibility(false);
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
