/*
 * Another program to drag from: a small window at a given place whose whole
 * area is a drag source offering a URI list and plain text.
 *
 *     canvas_drop_source X Y URI-LIST TEXT
 *
 * An empty URI-LIST offers text only.  The program ends after one drag or
 * after twenty seconds.
 */
#include <gtk/gtk.h>

#include <stdlib.h>
#include <string.h>

static const char *uriList, *plainText;

static void OnDataGet(GtkWidget *widget, GdkDragContext *context, GtkSelectionData *data,
                      guint info, guint time, gpointer user) {
    (void)widget, (void)context, (void)time, (void)user;
    const char *text = info == 0 ? uriList : plainText;
    gtk_selection_data_set(data, data->target, 8, (const guchar *)text, (gint)strlen(text));
}

static void OnDragEnd(GtkWidget *widget, GdkDragContext *context, gpointer user) {
    (void)widget, (void)context, (void)user;
    gtk_main_quit();
}

static gboolean GiveUp(gpointer user) {
    (void)user;
    gtk_main_quit();
    return FALSE;
}

int main(int argc, char **argv) {
    gtk_init(&argc, &argv);
    if (argc != 5)
        return 2;
    uriList = argv[3];
    plainText = argv[4];
    GtkWidget *window = gtk_window_new(GTK_WINDOW_POPUP);
    gtk_window_set_title(GTK_WINDOW(window), "kelpdropsource");
    gtk_window_move(GTK_WINDOW(window), atoi(argv[1]), atoi(argv[2]));
    gtk_window_set_default_size(GTK_WINDOW(window), 60, 60);
    GtkWidget *box = gtk_event_box_new();
    gtk_container_add(GTK_CONTAINER(window), box);
    GtkTargetEntry files = {"text/uri-list", 0, 0}, text = {"text/plain", 0, 1},
                   string = {"STRING", 0, 1};
    GtkTargetEntry targets[3];
    int count = 0;
    if (*uriList)
        targets[count++] = files;
    targets[count++] = text;
    targets[count++] = string;
    gtk_drag_source_set(box, GDK_BUTTON1_MASK, targets, count, GDK_ACTION_COPY);
    g_signal_connect(box, "drag-data-get", G_CALLBACK(OnDataGet), NULL);
    g_signal_connect(box, "drag-end", G_CALLBACK(OnDragEnd), NULL);
    g_timeout_add(20000, GiveUp, NULL);
    gtk_widget_show_all(window);
    gtk_main();
    return 0;
}
