// The pointer and the screen, read from the display at the moment of the
// call.
#include "process/display.h"
#include "system/window_picture.h"

#include "kelp/system.h"

#include <gdk/gdk.h>

namespace {

kelp::WindowPictureMaker gWindowPictureMaker = nullptr;

bool ReadPointer(gint &x, gint &y, GdkModifierType &state) {
    if (!kelp::DisplayAvailable())
        return false;
    gdk_window_get_pointer(gdk_get_default_root_window(), &x, &y, &state);
    return true;
}

} // namespace

void kelp::SetWindowPictureMaker(WindowPictureMaker maker) { gWindowPictureMaker = maker; }

extern "C" int32_t getMouseX(RuntimeObject *, int32_t) {
    gint x = 0, y = 0;
    GdkModifierType state{};
    return ReadPointer(x, y, state) ? x : 0;
}

extern "C" int32_t getMouseY(RuntimeObject *, int32_t) {
    gint x = 0, y = 0;
    GdkModifierType state{};
    return ReadPointer(x, y, state) ? y : 0;
}

extern "C" uint8_t getMouseDown(RuntimeObject *, int32_t) {
    gint x = 0, y = 0;
    GdkModifierType state{};
    return ReadPointer(x, y, state) && (state & GDK_BUTTON1_MASK) ? 1 : 0;
}

extern "C" int32_t systemPixel(RuntimeObject *, int32_t x, int32_t y) {
    if (!kelp::DisplayAvailable())
        return 0;
    GdkPixbuf *pixel = gdk_pixbuf_get_from_drawable(nullptr, gdk_get_default_root_window(),
                                                    gdk_colormap_get_system(), x, y, 0, 0, 1, 1);
    if (!pixel) // outside the screen
        return 0;
    const guchar *p = gdk_pixbuf_get_pixels(pixel);
    const int32_t rgb = (int32_t(p[0]) << 16) | (int32_t(p[1]) << 8) | p[2];
    g_object_unref(pixel);
    return rgb;
}

extern "C" RuntimeObject *SystemDrawWindow(RuntimeObject *, stringStorage *, int32_t width,
                                           int32_t height, int32_t, uint8_t, uint8_t, uint8_t,
                                           uint8_t, RuntimeObject *backDrop,
                                           uint8_t stretchBackDrop, uint32_t pictureFillColor) {
    if (!gWindowPictureMaker || !kelp::DisplayAvailable())
        return nullptr;
    return gWindowPictureMaker(width, height, backDrop, stretchBackDrop != 0,
                               pictureFillColor & 0xFFFFFF);
}
