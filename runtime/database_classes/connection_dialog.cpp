// The connection dialog a plug-in engine shows to ask for a host, a user
// name, a password and the like: a modal window of labelled entries with OK
// and Cancel.  Return in an entry is OK; Escape and the close box cancel.
// Only OK writes the entered texts back.
#include "database_classes/database_object.h"

#include "process/display.h"
#include "windows/dialog_placement.h"

#include <gtk/gtk.h>

#include <memory>
#include <string>
#include <vector>

namespace kelp {
namespace {

struct ConnectionField {
    std::string label;
    KelpString *value; // the plug-in's slot: read at Show, written on OK
    bool password;
};

struct ConnectionDialog {
    std::string title;
    std::vector<ConnectionField> fields;
};

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" {

void *KELPDBConnectionDialogCreate(KelpString title) {
    return new ConnectionDialog{Text(title), {}};
}

void KELPDBConnectionDialogAddField(void *dialog, KelpString label, KelpString *value,
                                    uint8_t password) {
    if (dialog && value)
        static_cast<ConnectionDialog *>(dialog)->fields.push_back(
            {Text(label), value, password != 0});
}

uint8_t KELPDBConnectionDialogShow(void *handle) {
    auto *d = static_cast<ConnectionDialog *>(handle);
    if (!d || !RequireDisplay("KELPDBConnectionDialogShow"))
        return false;
    GtkWidget *dialog =
        gtk_dialog_new_with_buttons(d->title.c_str(), nullptr, GTK_DIALOG_MODAL, GTK_STOCK_CANCEL,
                                    GTK_RESPONSE_CANCEL, GTK_STOCK_OK, GTK_RESPONSE_OK, nullptr);
    gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_OK);
    GtkWidget *table = gtk_table_new(guint(d->fields.size()), 2, false);
    gtk_container_set_border_width(GTK_CONTAINER(table), 8);
    gtk_table_set_row_spacings(GTK_TABLE(table), 4);
    gtk_table_set_col_spacings(GTK_TABLE(table), 8);
    std::vector<GtkWidget *> entries;
    for (size_t i = 0; i < d->fields.size(); ++i) {
        const ConnectionField &f = d->fields[i];
        GtkWidget *label = gtk_label_new(f.label.c_str());
        gtk_misc_set_alignment(GTK_MISC(label), 1, 0.5);
        GtkWidget *entry = gtk_entry_new();
        gtk_entry_set_text(GTK_ENTRY(entry), Text(*f.value).c_str());
        gtk_entry_set_visibility(GTK_ENTRY(entry), !f.password);
        gtk_entry_set_activates_default(GTK_ENTRY(entry), true);
        gtk_table_attach(GTK_TABLE(table), label, 0, 1, guint(i), guint(i + 1), GTK_FILL, GTK_FILL,
                         0, 0);
        gtk_table_attach_defaults(GTK_TABLE(table), entry, 1, 2, guint(i), guint(i + 1));
        entries.push_back(entry);
    }
    gtk_box_pack_start(GTK_BOX(GTK_DIALOG(dialog)->vbox), table, true, true, 0);
    gtk_widget_show_all(table);
    PlaceOverParent(dialog, nullptr);
    const bool ok = gtk_dialog_run(GTK_DIALOG(dialog)) == GTK_RESPONSE_OK;
    if (ok)
        for (size_t i = 0; i < d->fields.size(); ++i)
            SetText(*d->fields[i].value, gtk_entry_get_text(GTK_ENTRY(entries[i])));
    gtk_widget_destroy(dialog);
    gdk_flush(); // gone from the screen now, not at the next event
    return ok;
}

void KELPDBConnectionDialogDelete(void *dialog) { delete static_cast<ConnectionDialog *>(dialog); }

} // extern "C"
