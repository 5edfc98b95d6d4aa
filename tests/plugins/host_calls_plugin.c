/* A plug-in for the tests: a module whose methods call the host's picture,
 * string and database calls, and a control with the flags 0x08 and 0x20, so
 * that the tests reach each call the way a plug-in does. */
#include "kelp/plugin.h"

#include <gtk/gtk.h>

#define EXPORT __attribute__((visibility("default")))

static struct {
    RuntimeObject *(*fromBuffer)(int32_t, int32_t, const void *, int32_t);
    RuntimeObject *(*fromDescription)(const KELPpictureDescription *, int32_t);
    int32_t (*lock)(RuntimeObject *, KELPpictureDescription *, int32_t);
    void (*unlock)(RuntimeObject *, KELPpictureDescription *);
    KelpString (*convert)(KelpString, uint32_t);
    void *(*handle)(RuntimeObject *);
} host;

/* Pixel (x, y) of a ramp: red 40 x, green 60 y, blue 0x80; in RGBA every
 * odd column has alpha 0. */
static RuntimeObject *Ramp(int32_t w, int32_t h, int32_t layout) {
    static uint8_t bytes[16 * 16 * 4];
    if (w < 1 || h < 1 || w > 16 || h > 16)
        return host.fromBuffer(w, h, bytes, layout); /* the host refuses the size */
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x) {
            const int32_t i = y * w + x;
            const uint8_t r = (uint8_t)(40 * x), g = (uint8_t)(60 * y), b = 0x80;
            if (layout == KELP_PIXELS_RGB24) {
                bytes[3 * i] = r, bytes[3 * i + 1] = g, bytes[3 * i + 2] = b;
            } else if (layout == KELP_PIXELS_XRGB32) {
                ((uint32_t *)bytes)[i] = 0xFF000000u | (uint32_t)r << 16 | (uint32_t)g << 8 | b;
            } else {
                bytes[4 * i] = r, bytes[4 * i + 1] = g, bytes[4 * i + 2] = b;
                bytes[4 * i + 3] = (x % 2) ? 0 : 255;
            }
        }
    return host.fromBuffer(w, h, bytes, layout);
}

/* Inverts every pixel through a locked pixbuf. */
static int32_t Invert(RuntimeObject *picture) {
    KELPpictureDescription d;
    if (!host.lock(picture, &d, KELP_PICTURE_GDK_PIXBUF))
        return 0;
    GdkPixbuf *p = (GdkPixbuf *)d.pictureData;
    const int stride = gdk_pixbuf_get_rowstride(p), n = gdk_pixbuf_get_n_channels(p);
    guchar *base = gdk_pixbuf_get_pixels(p);
    for (int y = 0; y < d.height; ++y)
        for (int x = 0; x < d.width; ++x)
            for (int c = 0; c < 3; ++c)
                base[y * stride + x * n + c] ^= 0xFF;
    host.unlock(picture, &d);
    return 1;
}

/* A copy made from the locked pixmap. */
static RuntimeObject *Copy(RuntimeObject *picture) {
    KELPpictureDescription d;
    if (!host.lock(picture, &d, KELP_PICTURE_GDK_PIXMAP))
        return NULL;
    RuntimeObject *copy = host.fromDescription(&d, 0);
    host.unlock(picture, &d);
    return copy;
}

static KelpString Recode(KelpString s, int32_t encoding) {
    return host.convert(s, (uint32_t)encoding);
}

static KELPmethodDefinition methods[] = {
    {(void *)Ramp, KELP_NO_SETTER, "Ramp(w As Integer, h As Integer, layout As Integer) As Picture",
     NULL},
    {(void *)Invert, KELP_NO_SETTER, "Invert(p As Picture) As Boolean", NULL},
    {(void *)Copy, KELP_NO_SETTER, "Copy(p As Picture) As Picture", NULL},
    {(void *)Recode, KELP_NO_SETTER, "Recode(s As String, encoding As Integer) As String", NULL},
};
static KELPmoduleDefinition module = {7, "HostCalls", methods, 4};

/* Pad: a control that keeps its own position and sets the pointer to a
 * hand when the pointer enters it. */
static void PadEnter(RuntimeObject *self) {
    GtkWidget *widget = (GtkWidget *)host.handle(self);
    GdkWindow *parent = widget ? gtk_widget_get_parent_window(widget) : NULL;
    if (!parent)
        return;
    GdkCursor *hand = gdk_cursor_new(GDK_HAND2);
    gdk_window_set_cursor(parent, hand);
    gdk_cursor_unref(hand);
}
static KELPcontrolBehaviour padBehaviour = {.mouseEnter = PadEnter};
static KELPcontrol pad = {
    7,
    "Pad",
    0,
    KELP_CONTROL_STORED_POSITION | KELP_CONTROL_OWN_CURSOR,
    0,
    0,
    40,
    40,
    NULL,
    0,
    NULL,
    0,
    NULL,
    0,
    &padBehaviour,
    0,
    NULL,
    0,
    NULL,
};

static int32_t engine[4] = {4, 0, 0, 0}; /* an engine that offers nothing */
static void *OpenSource(void) { return NULL; }

EXPORT void KELPPluginMain(KELPResolver resolve) {
    host.fromBuffer = (RuntimeObject * (*)(int32_t, int32_t, const void *, int32_t))
        resolve("KELPBuildPictureFromBuffer");
    host.fromDescription = (RuntimeObject * (*)(const KELPpictureDescription *, int32_t))
        resolve("KELPBuildPictureFromPictureDescription");
    host.lock = (int32_t(*)(RuntimeObject *, KELPpictureDescription *, int32_t))resolve(
        "KELPLockPictureDescription");
    host.unlock =
        (void (*)(RuntimeObject *, KELPpictureDescription *))resolve("unlockPictureDescription");
    host.convert = (KelpString(*)(KelpString, uint32_t))resolve("KELPConvertString");
    host.handle = (void *(*)(RuntimeObject *))resolve("KELPGetControlHandle");
    ((void (*)(int32_t))resolve("RegisterPluginVersion"))(KELP_PLUGIN_VERSION);
    ((void (*)(KELPmoduleDefinition *))resolve("PluginRegisterModule"))(&module);
    ((void (*)(KELPcontrol *))resolve("PluginRegisterControl"))(&pad);
    ((void (*)(void *))resolve("PluginRegisterDBEngine"))(engine);
    ((void (*)(const char *, void *))resolve("RegisterDataSource"))("HostCallsSource",
                                                                    (void *)OpenSource);
}
