#pragma once
// Reading back what a drawing left on a drawable, as a person would see it.
#include <gtk/gtk.h>

#include <algorithm>
#include <cstdint>

namespace kelp::test {

// 0xRRGGBB of one pixel of the drawable; 0xFF000000 when it can't be read.
inline uint32_t PixelAt(GdkDrawable *d, int x, int y) {
    GdkPixbuf *p =
        gdk_pixbuf_get_from_drawable(nullptr, d, gdk_colormap_get_system(), x, y, 0, 0, 1, 1);
    if (!p)
        return 0xFF000000u;
    const guchar *b = gdk_pixbuf_get_pixels(p);
    uint32_t word = (uint32_t(b[0]) << 16) | (uint32_t(b[1]) << 8) | b[2];
    g_object_unref(p);
    return word;
}

// The box of pixels that differ from `background` within (x, y, w, h).
struct InkBox {
    int count = 0;
    int left = 1 << 30, top = 1 << 30, right = -1, bottom = -1; // inclusive
};

inline InkBox FindInk(GdkDrawable *d, int x, int y, int w, int h, uint32_t background = 0xFFFFFF) {
    InkBox box;
    GdkPixbuf *p =
        gdk_pixbuf_get_from_drawable(nullptr, d, gdk_colormap_get_system(), x, y, 0, 0, w, h);
    if (!p)
        return box;
    const int stride = gdk_pixbuf_get_rowstride(p), channels = gdk_pixbuf_get_n_channels(p);
    const guchar *base = gdk_pixbuf_get_pixels(p);
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < w; ++col) {
            const guchar *px = base + row * stride + col * channels;
            uint32_t word = (uint32_t(px[0]) << 16) | (uint32_t(px[1]) << 8) | px[2];
            if (word == background)
                continue;
            ++box.count;
            box.left = std::min(box.left, x + col);
            box.right = std::max(box.right, x + col);
            box.top = std::min(box.top, y + row);
            box.bottom = std::max(box.bottom, y + row);
        }
    }
    g_object_unref(p);
    return box;
}

// Lets the toolkit handle everything it has queued (maps, exposes).
inline void Pump() {
    gdk_flush();
    for (int i = 0; i < 50 && gtk_events_pending(); ++i)
        gtk_main_iteration_do(FALSE);
    gdk_window_process_all_updates();
    gdk_flush();
    while (gtk_events_pending())
        gtk_main_iteration_do(FALSE);
}

} // namespace kelp::test
