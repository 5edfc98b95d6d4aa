#include "windows/dialog_placement.h"

#include "windows/runtime_view.h"
#include "windows/window.h"

namespace kelp {

void PlaceOverParent(GtkWidget *dialog, RuntimeObject *parentWindow) {
    Window *owner = parentWindow ? reinterpret_cast<ViewRecord *>(parentWindow)->pane : nullptr;
    if (!owner)
        owner = FrontWindow();
    GtkWidget *parent = owner ? owner->GtkWin() : nullptr;
    if (parent && GTK_WIDGET_VISIBLE(parent)) {
        gtk_window_set_transient_for(GTK_WINDOW(dialog), GTK_WINDOW(parent));
        gtk_window_set_position(GTK_WINDOW(dialog), GTK_WIN_POS_CENTER_ON_PARENT);
    } else {
        gtk_window_set_position(GTK_WINDOW(dialog), GTK_WIN_POS_CENTER);
    }
}

} // namespace kelp
