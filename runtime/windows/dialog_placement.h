#pragma once
// Where the toolkit's own dialogs (files, colours, printing) appear: over the window
// they belong to.
#include "kelp/records.h"

#include <gtk/gtk.h>

namespace kelp {

// Makes `dialog` transient for its window, so the dialog stays above it and
// goes with it, and centres it there.  The window is `parentWindow` (a
// Window object) when given, else the application's front window if one is
// showing; with neither, the dialog is centred on the screen.
void PlaceOverParent(GtkWidget *dialog, RuntimeObject *parentWindow);

} // namespace kelp
