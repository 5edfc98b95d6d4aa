#include "pictures/drawable.h"

#include "graphics/graphics_gtk.h"

#include <algorithm>

namespace kelp {

Drawable::~Drawable() {
    if (mMask)
        mMask->Release();
}

void Drawable::Release() {
    if (--mRefCount == 0)
        delete this;
}

DrawablePane::DrawablePane(int32_t width, int32_t height, int32_t depth)
    : mTarget(this, std::max(width, 1), std::max(height, 1)), mWidth(width), mHeight(height) {
    mDepth = depth;
}

DrawablePane::~DrawablePane() { ContentChanged(); }

void DrawablePane::ContentChanged() {
    if (mPixbufCache) {
        g_object_unref(mPixbufCache);
        mPixbufCache = nullptr;
    }
}

GdkPixbuf *DrawablePane::Cache() {
    if (!mPixbufCache && Pixmap())
        mPixbufCache = gdk_pixbuf_get_from_drawable(nullptr, Pixmap(), nullptr, 0, 0, 0, 0,
                                                    std::max(mWidth, 1), std::max(mHeight, 1));
    return mPixbufCache;
}

uint32_t DrawablePane::GetPixel(int32_t x, int32_t y) {
    if (x < 0 || y < 0 || x >= mWidth || y >= mHeight)
        return 0;
    GdkPixbuf *cache = Cache();
    if (!cache)
        return 0;
    const guchar *p = gdk_pixbuf_get_pixels(cache) + y * gdk_pixbuf_get_rowstride(cache) +
                      x * gdk_pixbuf_get_n_channels(cache);
    return static_cast<uint32_t>(p[0]) << 16 | p[1] << 8 | p[2];
}

void DrawablePane::SetPixel(int32_t x, int32_t y, uint32_t color) {
    if (x < 0 || y < 0 || x >= mWidth || y >= mHeight || !Pixmap())
        return;
    ContentChanged();
    GdkColor c = {0, static_cast<guint16>((color >> 16 & 255) * 257),
                  static_cast<guint16>((color >> 8 & 255) * 257),
                  static_cast<guint16>((color & 255) * 257)};
    GdkGC *gc = mTarget.GetGC();
    gdk_gc_set_rgb_fg_color(gc, &c);
    gdk_draw_point(Pixmap(), gc, x, y);
}

void DrawablePane::Fill(uint32_t color) {
    if (!Pixmap())
        return;
    ContentChanged();
    GdkColor c = {0, static_cast<guint16>((color >> 16 & 255) * 257),
                  static_cast<guint16>((color >> 8 & 255) * 257),
                  static_cast<guint16>((color & 255) * 257)};
    GdkGC *gc = mTarget.GetGC();
    gdk_gc_set_rgb_fg_color(gc, &c);
    gdk_draw_rectangle(Pixmap(), gc, TRUE, 0, 0, std::max(mWidth, 1), std::max(mHeight, 1));
}

std::vector<uint32_t> DrawablePane::ReadPixels() {
    std::vector<uint32_t> pixels;
    GdkPixbuf *cache = Cache();
    if (!cache || mWidth < 1 || mHeight < 1)
        return pixels;
    pixels.resize(static_cast<size_t>(mWidth) * static_cast<size_t>(mHeight));
    int stride = gdk_pixbuf_get_rowstride(cache), channels = gdk_pixbuf_get_n_channels(cache);
    const guchar *base = gdk_pixbuf_get_pixels(cache);
    for (int32_t y = 0; y < mHeight; ++y)
        for (int32_t x = 0; x < mWidth; ++x) {
            const guchar *p = base + y * stride + x * channels;
            pixels[static_cast<size_t>(y) * mWidth + x] =
                static_cast<uint32_t>(p[0]) << 16 | p[1] << 8 | p[2];
        }
    return pixels;
}

void DrawablePane::WritePixels(const std::vector<uint32_t> &pixels) {
    if (!Pixmap() || mWidth < 1 || mHeight < 1 ||
        pixels.size() != static_cast<size_t>(mWidth) * static_cast<size_t>(mHeight))
        return;
    RGBImage image;
    image.width = mWidth;
    image.height = mHeight;
    image.rgb.resize(pixels.size() * 3);
    for (size_t i = 0; i < pixels.size(); ++i) {
        image.rgb[i * 3] = static_cast<uint8_t>(pixels[i] >> 16);
        image.rgb[i * 3 + 1] = static_cast<uint8_t>(pixels[i] >> 8);
        image.rgb[i * 3 + 2] = static_cast<uint8_t>(pixels[i]);
    }
    WriteRGB(image);
}

void DrawablePane::WriteRGB(const RGBImage &image) {
    if (!Pixmap() || image.width < 1 || image.height < 1)
        return;
    ContentChanged();
    gdk_draw_rgb_image(Pixmap(), mTarget.GetGC(), 0, 0, image.width, image.height,
                       GDK_RGB_DITHER_MAX, const_cast<guchar *>(image.rgb.data()), image.width * 3);
}

GdkPixbuf *DrawablePane::PixbufOf(const Rect &source, int32_t w, int32_t h) {
    int32_t sw = source.right - source.left, sh = source.bottom - source.top;
    GdkPixbuf *part = gdk_pixbuf_get_from_drawable(nullptr, Pixmap(), nullptr, source.left,
                                                   source.top, 0, 0, sw, sh);
    if (!part)
        return nullptr;
    GdkPixbuf *withAlpha = gdk_pixbuf_add_alpha(part, FALSE, 0, 0, 0);
    g_object_unref(part);
    if (!withAlpha || (sw == w && sh == h))
        return withAlpha;
    GdkPixbuf *scaled = gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, w, h);
    gdk_pixbuf_scale(withAlpha, scaled, 0, 0, w, h, 0, 0, static_cast<double>(w) / sw,
                     static_cast<double>(h) / sh, GDK_INTERP_NEAREST);
    g_object_unref(withAlpha);
    return scaled;
}

GdkPixbuf *DrawablePane::MaskedPixbufOf(const Rect &source, int32_t w, int32_t h, bool masked) {
    GdkPixbuf *pixels = PixbufOf(source, w, h);
    if (!pixels)
        return nullptr;
    int stride = gdk_pixbuf_get_rowstride(pixels);
    guchar *base = gdk_pixbuf_get_pixels(pixels);
    auto *maskStore = dynamic_cast<DrawablePane *>(mMask);
    GdkPixbuf *maskPixels = nullptr;
    if (maskStore && maskStore->Pixmap() && source.right <= maskStore->Width() &&
        source.bottom <= maskStore->Height())
        maskPixels = maskStore->PixbufOf(source, w, h);
    int maskStride = maskPixels ? gdk_pixbuf_get_rowstride(maskPixels) : 0;
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x) {
            guchar *p = base + y * stride + x * 4;
            if (maskPixels) {
                // Black in the mask shows the picture, white hides it.
                const guchar *m = gdk_pixbuf_get_pixels(maskPixels) + y * maskStride + x * 4;
                p[3] = static_cast<guchar>(255 - (m[0] + m[1] + m[2]) / 3);
            } else if (masked && p[0] == 255 && p[1] == 255 && p[2] == 255) {
                p[3] = 0;
            }
        }
    if (maskPixels)
        g_object_unref(maskPixels);
    return pixels;
}

void DrawablePane::CopyRect(Graphics &g, const Rect &source, const Rect &dest, bool masked) {
    int32_t sw = source.right - source.left, sh = source.bottom - source.top;
    int32_t dw = dest.right - dest.left, dh = dest.bottom - dest.top;
    if (sw < 1 || sh < 1 || dw < 1 || dh < 1 || !Pixmap())
        return;
    // The source must lie inside the store (the caller cuts it so).
    if (source.left < 0 || source.top < 0 || source.right > mWidth || source.bottom > mHeight)
        return;
    auto *screen = dynamic_cast<GraphicsGTK *>(&g);
    if (!screen) {
        // A page has no pixmaps: it takes the picture's pixels once, at the
        // size the source has, and scales them itself, so a printer with
        // more dots than the screen gets no blockier a picture than needed.
        GdkPixbuf *pixels = MaskedPixbufOf(source, sw, sh, masked);
        if (!pixels)
            return;
        g.DrawImage(gdk_pixbuf_get_pixels(pixels), gdk_pixbuf_get_rowstride(pixels), sw, sh, dest);
        g_object_unref(pixels);
        return;
    }
    bool scaled = sw != dw || sh != dh;
    GdkDrawable *target = screen->Target() ? screen->Target()->Drawable() : nullptr;
    GdkGC *gc = screen->Target() ? screen->Target()->GetGC() : nullptr;
    if (!target || !gc)
        return;
    Rect full = screen->ToDrawable(dest, false);
    Rect clip = screen->ToDrawable(dest, true);
    int32_t cw = clip.right - clip.left, ch = clip.bottom - clip.top;
    if (cw < 1 || ch < 1)
        return;
    int32_t offX = clip.left - full.left, offY = clip.top - full.top;
    if (!scaled && !mMask && !masked) {
        gdk_draw_drawable(target, gc, Pixmap(), source.left + offX, source.top + offY, clip.left,
                          clip.top, cw, ch);
        return;
    }
    GdkPixbuf *pixels = MaskedPixbufOf(source, dw, dh, masked);
    if (!pixels)
        return;
    gdk_draw_pixbuf(target, gc, pixels, offX, offY, clip.left, clip.top, cw, ch,
                    GDK_RGB_DITHER_NONE, 0, 0);
    g_object_unref(pixels);
}

} // namespace kelp

#include "base/fatal_report.h"
#include "bitmaps/pixel_ops.h"

namespace kelp {

bool PixMapRotate(DrawablePane *source, DrawablePane *dest, double angle, uint32_t flags) {
    if (!source || !dest || source == dest) {
        AssertionFailed("runtime/pictures/drawable.cpp", __LINE__,
                        "srcDP and dstDP and srcDP != dstDP");
        return false;
    }
    std::vector<uint32_t> from = source->ReadPixels();
    std::vector<uint32_t> to(from.size());
    if (from.empty() || source->Width() != dest->Width() || source->Height() != dest->Height())
        return false;
    PixelBuffer in{from.data(), source->Width(), source->Height()};
    PixelBuffer out{to.data(), dest->Width(), dest->Height()};
    if (!RotateByShears(in, out, angle, flags))
        return false;
    dest->WritePixels(to);
    return true;
}

} // namespace kelp
