// Pictures and Graphics for plug-ins: pictures built from a plug-in's pixels
// or GDK objects, a picture's pixels lent out and taken back, and the state
// of a Graphics that a plug-in drawing with GDK itself needs.  Every call
// takes null and damaged arguments quietly and answers null, false or
// nothing: a plug-in has no exception to catch.
#include "plugins/host.h"

#include "graphics/graphics_gtk.h"
#include "graphics/graphics_object.h"
#include "objects/text.h"
#include "pictures/picture_object.h"

#include "kelp/objects.h"
#include "kelp/pictures.h"
#include "kelp/strings.h"

#include <cstring>
#include <vector>

namespace kelp::plugins {
namespace {

// The largest edge a picture may have: the language's Rect keeps 16 bits.
constexpr int32_t kMaxEdge = 32767;
// And the most pixels: many screens' worth, and a copy of them fits in
// memory, so a size read from damaged data can't ask for gigabytes.
constexpr int64_t kMaxPixels = int64_t(1) << 24;

bool SizeIsSound(int32_t width, int32_t height) {
    return width >= 1 && height >= 1 && width <= kMaxEdge && height <= kMaxEdge &&
           int64_t(width) * height <= kMaxPixels;
}

PictureRecord *Record(RuntimeObject *picture) { return reinterpret_cast<PictureRecord *>(picture); }

// A new picture of the pixels (0xRRGGBB, top row first) and, when given,
// alpha bytes that become its mask.  Null without a store to put them in.
RuntimeObject *PictureOf(int32_t width, int32_t height, const std::vector<uint32_t> &pixels,
                         const std::vector<uint8_t> *alpha) {
    RuntimeObject *picture = NewPictureOfSize(width, height);
    DrawablePane *store = StoreOf(picture);
    if (!store || !store->Pixmap()) {
        RuntimeUnlockObject(picture);
        return nullptr;
    }
    store->WritePixels(pixels);
    if (alpha) {
        std::vector<uint32_t> grey(alpha->size());
        for (size_t i = 0; i < grey.size(); ++i) {
            const uint32_t g = 255u - (*alpha)[i]; // the mask hides what is white
            grey[i] = g << 16 | g << 8 | g;
        }
        RuntimeObject *mask = pictureMaskGetter(picture, 0);
        if (DrawablePane *maskStore = StoreOf(mask))
            maskStore->WritePixels(grey);
        RuntimeUnlockObject(mask);
        store->ContentChanged();
    }
    return picture;
}

// The pixels of an RGB pixbuf (with or without alpha), alpha apart.
void ReadPixbuf(GdkPixbuf *pixbuf, std::vector<uint32_t> &pixels, std::vector<uint8_t> &alpha) {
    const int w = gdk_pixbuf_get_width(pixbuf), h = gdk_pixbuf_get_height(pixbuf);
    const int channels = gdk_pixbuf_get_n_channels(pixbuf);
    const int stride = gdk_pixbuf_get_rowstride(pixbuf);
    const bool hasAlpha = gdk_pixbuf_get_has_alpha(pixbuf);
    const guchar *base = gdk_pixbuf_get_pixels(pixbuf);
    pixels.resize(size_t(w) * size_t(h));
    alpha.assign(hasAlpha ? pixels.size() : 0, 255);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const guchar *p = base + y * stride + x * channels;
            const size_t i = size_t(y) * size_t(w) + size_t(x);
            pixels[i] = uint32_t(p[0]) << 16 | uint32_t(p[1]) << 8 | p[2];
            if (hasAlpha)
                alpha[i] = p[3];
        }
}

// A picture from a pixbuf of 8-bit RGB samples; null for any other kind.
RuntimeObject *PictureOfPixbuf(GdkPixbuf *pixbuf) {
    if (!GDK_IS_PIXBUF(pixbuf) || gdk_pixbuf_get_colorspace(pixbuf) != GDK_COLORSPACE_RGB ||
        gdk_pixbuf_get_bits_per_sample(pixbuf) != 8 || gdk_pixbuf_get_n_channels(pixbuf) < 3)
        return nullptr;
    const int w = gdk_pixbuf_get_width(pixbuf), h = gdk_pixbuf_get_height(pixbuf);
    if (!SizeIsSound(w, h))
        return nullptr;
    std::vector<uint32_t> pixels;
    std::vector<uint8_t> alpha;
    ReadPixbuf(pixbuf, pixels, alpha);
    return PictureOf(w, h, pixels, alpha.empty() ? nullptr : &alpha);
}

RuntimeObject *PictureOfPixmap(GdkPixmap *pixmap) {
    if (!GDK_IS_DRAWABLE(pixmap))
        return nullptr;
    int w = 0, h = 0;
    gdk_drawable_get_size(pixmap, &w, &h);
    if (!SizeIsSound(w, h))
        return nullptr;
    GdkPixbuf *copy = gdk_pixbuf_get_from_drawable(
        nullptr, pixmap, gdk_drawable_get_colormap(pixmap) ? nullptr : gdk_rgb_get_colormap(), 0, 0,
        0, 0, w, h);
    if (!copy)
        return nullptr;
    RuntimeObject *picture = PictureOfPixbuf(copy);
    g_object_unref(copy);
    return picture;
}

GraphicsGTK *Gtk(RuntimeObject *graphics) {
    return dynamic_cast<GraphicsGTK *>(GraphicsOfObject(graphics));
}

} // namespace
} // namespace kelp::plugins

using namespace kelp;
using namespace kelp::plugins;

extern "C" {

RuntimeObject *KELPBuildPictureFromBuffer(int32_t width, int32_t height, const void *pixels,
                                          int32_t pixelType) {
    if (!pixels || !SizeIsSound(width, height))
        return nullptr;
    const size_t count = size_t(width) * size_t(height);
    const auto *bytes = static_cast<const uint8_t *>(pixels);
    std::vector<uint32_t> rgb(count);
    std::vector<uint8_t> alpha;
    switch (pixelType) {
    case KELP_PIXELS_RGB24:
        for (size_t i = 0; i < count; ++i)
            rgb[i] =
                uint32_t(bytes[3 * i]) << 16 | uint32_t(bytes[3 * i + 1]) << 8 | bytes[3 * i + 2];
        break;
    case KELP_PIXELS_XRGB32:
        std::memcpy(rgb.data(), pixels, count * 4);
        for (uint32_t &p : rgb)
            p &= 0xFFFFFF;
        break;
    case KELP_PIXELS_RGBA32:
        alpha.resize(count);
        for (size_t i = 0; i < count; ++i) {
            rgb[i] =
                uint32_t(bytes[4 * i]) << 16 | uint32_t(bytes[4 * i + 1]) << 8 | bytes[4 * i + 2];
            alpha[i] = bytes[4 * i + 3];
        }
        break;
    default: return nullptr;
    }
    bool opaque = true;
    for (uint8_t a : alpha)
        opaque &= a == 255;
    return PictureOf(width, height, rgb, opaque ? nullptr : &alpha);
}

RuntimeObject *KELPBuildPictureFromPictureDescription(const KELPpictureDescription *description,
                                                      int32_t giveOwnership) {
    if (!description || !description->pictureData)
        return nullptr;
    RuntimeObject *picture = nullptr;
    if (description->pictureType == KELP_PICTURE_GDK_PIXBUF)
        picture = PictureOfPixbuf(static_cast<GdkPixbuf *>(description->pictureData));
    else if (description->pictureType == KELP_PICTURE_GDK_PIXMAP)
        picture = PictureOfPixmap(static_cast<GdkPixmap *>(description->pictureData));
    else
        return nullptr; // an unknown type: not ours to release either
    if (picture)
        Record(picture)->transparent = description->transparent == 1;
    if (giveOwnership && G_IS_OBJECT(description->pictureData))
        g_object_unref(description->pictureData);
    return picture;
}

RuntimeObject *KELPBuildPictureFromGWorld(void *pixmap, int32_t giveOwnership) {
    KELPpictureDescription d{KELP_PICTURE_GDK_PIXMAP, pixmap, 0, 0, 0};
    return KELPBuildPictureFromPictureDescription(&d, giveOwnership);
}

int32_t lockPictureDescription(RuntimeObject *picture, KELPpictureDescription *out,
                               int32_t pictureType) {
    if (!out)
        return 0;
    *out = KELPpictureDescription{};
    DrawablePane *store = StoreOf(picture);
    if (!store || !store->Pixmap())
        return 0;
    void *data = nullptr;
    if (pictureType == KELP_PICTURE_GDK_PIXMAP) {
        data = store->Pixmap();
    } else if (pictureType == KELP_PICTURE_GDK_PIXBUF) {
        GdkPixbuf *rgb = gdk_pixbuf_get_from_drawable(nullptr, store->Pixmap(), nullptr, 0, 0, 0, 0,
                                                      store->Width(), store->Height());
        if (!rgb)
            return 0;
        data = gdk_pixbuf_add_alpha(rgb, FALSE, 0, 0, 0);
        g_object_unref(rgb);
        if (!data)
            return 0;
    } else {
        return 0;
    }
    *out = KELPpictureDescription{pictureType, data, store->Width(), store->Height(),
                                  Record(picture)->transparent};
    return 1;
}

int32_t KELPLockPictureDescription(RuntimeObject *picture, KELPpictureDescription *out,
                                   int32_t pictureType) {
    return lockPictureDescription(picture, out, pictureType);
}

void unlockPictureDescription(RuntimeObject *picture, KELPpictureDescription *description) {
    if (!description || !description->pictureData)
        return;
    DrawablePane *store = StoreOf(picture);
    if (description->pictureType == KELP_PICTURE_GDK_PIXBUF) {
        auto *pixbuf = static_cast<GdkPixbuf *>(description->pictureData);
        if (!GDK_IS_PIXBUF(pixbuf)) {
            description->pictureData = nullptr;
            return;
        }
        if (store && store->Pixmap() && gdk_pixbuf_get_width(pixbuf) == store->Width() &&
            gdk_pixbuf_get_height(pixbuf) == store->Height()) {
            std::vector<uint32_t> pixels;
            std::vector<uint8_t> alpha;
            ReadPixbuf(pixbuf, pixels, alpha);
            store->WritePixels(pixels); // what the plug-in changed goes back
        }
        g_object_unref(pixbuf);
    } else if (store) {
        store->ContentChanged(); // it may have drawn on the pixmap
    }
    description->pictureData = nullptr;
}

RuntimeObject *KELPGetPictureMask(RuntimeObject *picture, int32_t create) {
    if (!StoreOf(picture))
        return nullptr;
    if (!create && !Record(picture)->maskPicture)
        return nullptr;
    return pictureMaskGetter(picture, 0);
}

void KELPPictureClearCache(RuntimeObject *picture) {
    if (DrawablePane *store = StoreOf(picture))
        store->ContentChanged();
}

void KELPDrawPicturePrimitive(RuntimeObject *graphics, RuntimeObject *picture,
                              const KelpRect *rect) {
    DrawablePane *store = StoreOf(picture);
    if (!rect || !store)
        return;
    RuntimeGraphicsDrawPicture(graphics, picture, rect->left, rect->top, rect->right - rect->left,
                               rect->bottom - rect->top, 0, 0, store->Width(), store->Height());
}

void KELPGetGraphicsFontStyle(RuntimeObject *graphics, KELPgraphicsStyle *out) {
    if (!out)
        return;
    *out = KELPgraphicsStyle{};
    Graphics *g = GraphicsOfObject(graphics);
    if (!g)
        return;
    out->font = objtext::Make(g->TextFont());
    out->size = g->TextSize();
    out->bold = (g->TextStyle() & kStyleBold) != 0;
    out->italic = (g->TextStyle() & kStyleItalic) != 0;
    out->underline = (g->TextStyle() & kStyleUnderline) != 0;
    out->color = RGBToColorWord(g->ForeColor());
}

void KELPSetGraphicsStyle(RuntimeObject *graphics, const KELPgraphicsStyle *style) {
    Graphics *g = GraphicsOfObject(graphics);
    if (!g || !style)
        return;
    if (style->font)
        g->SetTextFont(std::string(objtext::View(style->font)));
    g->SetTextSize(style->size);
    int32_t bits = g->TextStyle() & ~(kStyleBold | kStyleItalic | kStyleUnderline);
    bits |= (style->bold ? kStyleBold : 0) | (style->italic ? kStyleItalic : 0) |
            (style->underline ? kStyleUnderline : 0);
    g->SetTextStyle(bits);
    g->SetForeColor(ColorWordToRGB(style->color));
}

void KELPSetGraphicsOrigin(RuntimeObject *graphics, int32_t x, int32_t y) {
    if (Graphics *g = GraphicsOfObject(graphics))
        g->SetOrigin(x, y);
}

void *KELPGraphicsDC(RuntimeObject *graphics) {
    GraphicsGTK *g = Gtk(graphics);
    GdkDrawable *drawable = g ? g->TargetDrawable() : nullptr;
    if (!drawable)
        return nullptr;
    GdkGC *gc = gdk_gc_new(drawable);
    const RGBColor fore = g->ForeColor();
    GdkColor colour{0, fore.red, fore.green, fore.blue};
    gdk_gc_set_rgb_fg_color(gc, &colour);
    const Rect area = g->ToDrawable(Rect{-kMaxEdge, -kMaxEdge, kMaxEdge, kMaxEdge}, true);
    GdkRectangle clip{area.left, area.top, area.right - area.left, area.bottom - area.top};
    gdk_gc_set_clip_rectangle(gc, &clip);
    return gc;
}

} // extern "C"
