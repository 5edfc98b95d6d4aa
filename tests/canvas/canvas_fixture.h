// Canvases in real windows under a private X server: pixels read back,
// real input that goes on while a drag runs its own loop.
#pragma once

#include "controls/control_fixture.h"

#include "canvas/canvas.h"
#include "pictures/picture_object.h"

#include "kelp/canvas.h"
#include "kelp/pictures.h"

#include <atomic>
#include <string>
#include <thread>

namespace kelp::test {

// A picture of the size filled with one colour; the caller's reference.
inline RuntimeObject *Filled(int w, int h, uint32_t rgb) {
    RuntimeObject *p = newPicture(w, h, 32);
    StoreOf(p)->Fill(rgb);
    return p;
}

class CanvasTest : public ControlFixture {
protected:
    uint32_t Pixel(RuntimeObject *w, int x, int y) {
        GdkPixbuf *p =
            gdk_pixbuf_get_from_drawable(nullptr, Fixed(w)->window, nullptr, x, y, 0, 0, 1, 1);
        if (!p)
            return 0xdeadbeef;
        const guchar *px = gdk_pixbuf_get_pixels(p);
        uint32_t rgb = (px[0] << 16) | (px[1] << 8) | px[2];
        g_object_unref(p);
        return rgb;
    }
    struct Expect {
        int x, y;
        uint32_t rgb;
        const char *what;
    };
    // A point of the window's content as xdotool's screen coordinates.
    static std::string At(RuntimeObject *w, int x, int y) {
        gint ox = 0, oy = 0;
        gdk_window_get_origin(Fixed(w)->window, &ox, &oy);
        GtkAllocation a = Fixed(w)->allocation;
        if (GTK_WIDGET_NO_WINDOW(Fixed(w)))
            ox += a.x, oy += a.y;
        return std::to_string(ox + x) + " " + std::to_string(oy + y);
    }
    // Real input that goes on while the loop runs (a drag's own loop, say).
    void Gesture(const std::string &arguments) {
        std::atomic<bool> done = false;
        std::thread input([&] {
            XDoToolQuiet(arguments);
            done = true;
        });
        while (!done)
            Settle(20);
        input.join();
        Settle(150);
    }
    void ExpectPixels(RuntimeObject *w, std::initializer_list<Expect> rows) {
        for (const Expect &e : rows)
            EXPECT_EQ(Pixel(w, e.x, e.y), e.rgb) << e.what << " at " << e.x << "," << e.y;
    }
};

} // namespace kelp::test
