// A view window's bar: a clone of its MenuBar packed above the content,
// the menus enabled before it opens, and the content keeping its size.
#include "menus/window_bars.h"

#include "menus/dispatch.h"
#include "menus/menu.h"

#include "windows/menu_bar.h"
#include "windows/runtime_view.h"

#include <map>

namespace kelp {
namespace {

std::map<Window *, XMenuGTK *> gBars; // the clone each window shows

gboolean OnBarPress(GtkWidget *bar, GdkEventButton *, gpointer data) {
    auto *window = static_cast<Window *>(data);
    // An open menu hands the bar the presses it does not take itself, the
    // one that chooses an item among them: the cycle ran when it opened,
    // and running it again would disable the item under the pointer
    // while the press is on its way.
    if (GTK_MENU_SHELL(bar)->active)
        return FALSE;
    if (window->LockForEvent()) {
        RunEnableCycle(IsModalKind(window->kind), window);
        window->UnlockAfterEvent();
    }
    return FALSE; // the bar opens as usual
}

// Takes the window's bar away; true when it had one.
bool Remove(Window *window) {
    auto it = gBars.find(window);
    if (it == gBars.end())
        return false;
    XMenuGTK *clone = it->second;
    gBars.erase(it);
    delete clone; // its widgets leave the window's box with it
    window->hasMenuBar = false;
    return true;
}

void Install(ViewRecord *view) {
    RuntimeViewWindow *pane = view ? view->pane : nullptr;
    if (!pane || !pane->GtkWin() || pane->IsClosing())
        return;
    bool changed = Remove(pane);
    XMenuGTK *master = MenuImpOf(MenuBarOfWindow(pane));
    if (master && master->IsMenuBar()) {
        XMenuGTK *clone = master->Clone();
        clone->AttachToWindow(pane);
        GtkWidget *box = gtk_bin_get_child(GTK_BIN(pane->GtkWin()));
        gtk_box_pack_start(GTK_BOX(box), clone->BarWidget(), FALSE, FALSE, 0);
        if (!(MenuBarHidden() && pane == FrontWindow()))
            gtk_widget_show(clone->BarWidget());
        g_signal_connect(clone->BarWidget(), "button-press-event", G_CALLBACK(OnBarPress), pane);
        gBars[pane] = clone;
        pane->hasMenuBar = true;
        changed = true;
    }
    // The window grows or shrinks by the bar; the content keeps its size.
    if (changed)
        pane->Resize(pane->width, pane->height, false);
}

void Release(ViewRecord *view) {
    if (view && view->pane)
        Remove(view->pane);
}

} // namespace

ViewMenuClient WindowBarClient() {
    ViewMenuClient client;
    client.install = &Install;
    client.release = &Release;
    return client;
}

XMenuGTK *WindowBarClone(Window *window) {
    auto it = gBars.find(window);
    return it == gBars.end() ? nullptr : it->second;
}

} // namespace kelp
