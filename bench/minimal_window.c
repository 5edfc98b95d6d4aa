/* The yardstick for the drill's start-up: the least a GTK 2 program does to
   show one window of the welcome window's size; with --label the window
   holds one line of text, so fonts are found before it is mapped, as in
   any window that shows text. */
#include <gtk/gtk.h>

#include <string.h>

int main(int argc, char **argv) {
    gtk_init(&argc, &argv);
    GtkWidget *window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(window), "Welcome");
    gtk_window_set_default_size(GTK_WINDOW(window), 464, 192);
    if (argc > 1 && strcmp(argv[1], "--label") == 0)
        gtk_container_add(GTK_CONTAINER(window), gtk_label_new("Begin"));
    g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), NULL);
    gtk_widget_show_all(window);
    gtk_main();
    return 0;
}
