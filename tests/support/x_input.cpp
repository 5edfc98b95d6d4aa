#include "support/x_input.h"

#include <cstdlib>

namespace kelp::test {
namespace {

bool ScreenPoint(GtkWidget *widget, int x, int y, int *sx, int *sy) {
    if (!widget || !widget->window)
        return false;
    int ox = 0, oy = 0;
    gdk_window_get_origin(widget->window, &ox, &oy);
    // A widget without a window of its own shares its parent's.
    if (GTK_WIDGET_NO_WINDOW(widget))
        ox += widget->allocation.x, oy += widget->allocation.y;
    *sx = ox + x;
    *sy = oy + y;
    return true;
}

} // namespace

bool XDoTool(const std::string &arguments) {
    gdk_flush();
    std::string command = "xdotool " + arguments + " >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
}

bool XDoToolQuiet(const std::string &arguments) {
    std::string command = "xdotool " + arguments + " >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
}

bool ClickAt(GtkWidget *widget, int x, int y) {
    int sx, sy;
    return ScreenPoint(widget, x, y, &sx, &sy) &&
           XDoTool("mousemove " + std::to_string(sx) + " " + std::to_string(sy) + " click 1");
}

bool PressMoveRelease(GtkWidget *widget, int x, int y, int x2, int y2) {
    int sx, sy, ex, ey;
    return ScreenPoint(widget, x, y, &sx, &sy) && ScreenPoint(widget, x2, y2, &ex, &ey) &&
           XDoTool("mousemove " + std::to_string(sx) + " " + std::to_string(sy) +
                   " mousedown 1 mousemove " + std::to_string(ex) + " " + std::to_string(ey) +
                   " mouseup 1");
}

bool PressKey(const std::string &key) { return XDoTool("key " + key); }

void FocusToplevel(GtkWidget *widget) {
    GtkWidget *top = widget ? gtk_widget_get_toplevel(widget) : nullptr;
    if (top && top->window)
        gdk_window_focus(top->window, GDK_CURRENT_TIME);
}

bool SaveScreenshot(GtkWidget *widget, const std::string &path) {
    GtkWidget *top = widget ? gtk_widget_get_toplevel(widget) : nullptr;
    if (!top || !top->window)
        return false;
    int w = 0, h = 0;
    gdk_drawable_get_size(top->window, &w, &h);
    GdkPixbuf *pixbuf =
        gdk_pixbuf_get_from_drawable(nullptr, top->window, nullptr, 0, 0, 0, 0, w, h);
    if (!pixbuf)
        return false;
    bool saved = gdk_pixbuf_save(pixbuf, path.c_str(), "png", nullptr, nullptr);
    g_object_unref(pixbuf);
    return saved;
}

} // namespace kelp::test
