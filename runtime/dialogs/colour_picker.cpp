// SelectColor: the toolkit's colour selection dialog, modal.
#include "windows/dialog_placement.h"

#include "process/display.h"
#include "strings/kstring.h"

#include "kelp/dialogs.h"
#include "kelp/strings.h"

#include <gtk/gtk.h>

#include <string>

using namespace kelp;

// The incoming colour is not shown in the dialog: it starts at its own
// colour, and `color` changes only when the person presses OK.
extern "C" uint8_t selectColor(uint32_t *color, KelpString prompt) {
    if (!color || !RequireDisplay("SelectColor"))
        return 0;
    const std::string title =
        prompt && prompt->length > 0 ? std::string(GetUTF8String(string::Wrap(prompt)).View()) : "";
    GtkWidget *dialog = gtk_color_selection_dialog_new(title.c_str());
    PlaceOverParent(dialog, nullptr);
    const bool chosen = gtk_dialog_run(GTK_DIALOG(dialog)) == GTK_RESPONSE_OK;
    if (chosen) {
        GdkColor c;
        gtk_color_selection_get_current_color(
            GTK_COLOR_SELECTION(GTK_COLOR_SELECTION_DIALOG(dialog)->colorsel), &c);
        *color = static_cast<uint32_t>(c.red / 257) << 16 |
                 static_cast<uint32_t>(c.green / 257) << 8 | c.blue / 257;
    }
    gtk_widget_destroy(dialog);
    gdk_flush(); // gone from the screen now, not at the next event
    return chosen ? 1 : 0;
}
