// Drawing speed on a real toolkit window: 10,000 filled rectangles and
// 10,000 text draws, each run ended by a round trip to the X server so that
// the server's work is counted.  Without DISPLAY a private Xvfb is started.
#include "kelp/graphics.h"
#include "bench_display.h"
#include "graphics/graphics_gtk.h"
#include "graphics/graphics_object.h"
#include "kelp/objects.h"
#include "main/wiring_table.h"
#include "process/display.h"

#include <gtk/gtk.h>

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>

namespace {

void Pump() {
    gdk_flush();
    while (gtk_events_pending())
        gtk_main_iteration_do(FALSE);
}

// Runs `body` `count` times and prints the time per call, server time included.
void Measure(const char *name, int count, const std::function<void(int)> &body) {
    gdk_display_sync(gdk_display_get_default());
    auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < count; ++i)
        body(i);
    gdk_display_sync(gdk_display_get_default());
    auto elapsed =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    std::printf("%-44s %6d draws  %9.2f ms  %8.2f us/draw\n", name, count, elapsed,
                elapsed * 1000.0 / count);
}

} // namespace

int main(int argc, char **argv) {
    kelp::WireRuntime();
    pid_t server = kelp::bench::StartXvfb();
    if (!kelp::InitToolkit(&argc, &argv)) {
        std::fprintf(stderr, "bench_graphics: no X display\n");
        return 1;
    }
    RuntimeInitExternalClasses();
    GtkWidget *window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_default_size(GTK_WINDOW(window), 640, 480);
    gtk_widget_set_app_paintable(window, TRUE);
    gtk_widget_show(window);
    for (int i = 0; i < 100 && !GTK_WIDGET_MAPPED(window); ++i)
        Pump();
    Pump();

    constexpr int kCount = 10000;
    kelp::WidgetTarget target(window, kelp::Rect{0, 0, 480, 640},
                              kelp::WidgetTarget::kWindowItself);
    kelp::GraphicsGTK g(&target);

    Measure("FillRect, 40x30, colour changing each time", kCount, [&](int i) {
        g.SetForeColor(kelp::ColorWordToRGB(static_cast<uint32_t>(i * 2654435761u) & 0xFFFFFF));
        g.FillRect(kelp::RectFromXYWH((i * 37) % 600, (i * 53) % 450, 40, 30));
    });
    Measure("FillRect, 40x30, one colour", kCount,
            [&](int i) { g.FillRect(kelp::RectFromXYWH((i * 37) % 600, (i * 53) % 450, 40, 30)); });

    RuntimeObject *object = kelp::NewGraphicsObject(new kelp::GraphicsGTK(&target), true);
    Measure("RuntimeGraphicsFillRect (language call)", kCount, [&](int i) {
        RuntimeGraphicsFillRect(object, (i * 37) % 600, (i * 53) % 450, 40, 30);
    });

    g.SetTextFont("Arial");
    g.SetTextSize(12);
    Measure("DrawText \"What is 12 plus 30?\", Arial 12", kCount, [&](int i) {
        g.DrawText("What is 12 plus 30?", (i * 37) % 560, 20 + (i * 53) % 450, 0);
    });
    Measure("TextWidth of the same text", kCount,
            [&](int) { (void)g.TextWidth("What is 12 plus 30?"); });
    Measure("DrawTextWrapped, 3 lines in 120 pixels", kCount, [&](int i) {
        g.DrawTextWrapped("Sam has 12 apples and buys 30 more.  How many now?",
                          kelp::RectFromXYWH((i * 37) % 500, (i * 53) % 400, 120, 80), 0);
    });

    RuntimeUnlockObject(object);
    gtk_widget_destroy(window);
    Pump();
    if (server > 0) {
        kill(server, SIGTERM);
        waitpid(server, nullptr, 0);
    }
    return 0;
}
