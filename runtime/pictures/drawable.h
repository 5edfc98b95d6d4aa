#pragma once
// The pixel store under a Picture.  A Drawable is reference counted; its one
// form here is the DrawablePane, a pixmap of the screen's depth that the
// same Graphics code draws into as draws on a window (through its offscreen
// target).  Pixel reads go through a cached client-side copy, which every
// write drops, so repeated reads cost no round trip to the X server.
//
// Failure channel: without a display there is no pixmap; reads give 0 and
// writes do nothing.  Nothing raises here.
#include "bitmaps/bmp_codec.h"
#include "graphics/geometry.h"
#include "graphics/graphics_target.h"

#include <gtk/gtk.h>

#include <cstdint>
#include <vector>

namespace kelp {

class Graphics;

class Drawable {
public:
    Drawable() = default;
    virtual ~Drawable();
    Drawable(const Drawable &) = delete;
    Drawable &operator=(const Drawable &) = delete;

    void AddRef() { ++mRefCount; }
    // At 0 the store is deleted.
    void Release();

    virtual int32_t Width() const = 0;
    virtual int32_t Height() const = 0;
    // Drops cached pixels: call after any write into the store.
    virtual void ContentChanged() {}
    // Copies `source` of the store into `dest` (window coordinates of `g`),
    // scaling nearest-neighbour when the sizes differ; through the mask, or
    // with white transparent when `masked`.  Any Graphics: the screen's
    // gets pixmap copies, a page gets the pixels as an image.
    virtual void CopyRect(Graphics &g, const Rect &source, const Rect &dest, bool masked) = 0;

    int32_t mHorizontalResolution = 72; // dots per inch
    int32_t mVerticalResolution = 72;
    int32_t mDepth = 32;       // what was asked for; the pixels have the screen's
    Drawable *mMask = nullptr; // counted; black shows, white hides

private:
    uint16_t mRefCount = 1;
};

class DrawablePane : public Drawable {
public:
    // A white store; a size below 1 is allocated at 1 and reports its own.
    DrawablePane(int32_t width, int32_t height, int32_t depth);
    ~DrawablePane() override;

    int32_t Width() const override { return mWidth; }
    int32_t Height() const override { return mHeight; }
    void ContentChanged() override;
    void CopyRect(Graphics &g, const Rect &source, const Rect &dest, bool masked) override;

    GraphicsTarget *Target() { return &mTarget; }
    GdkPixmap *Pixmap() const { return mTarget.Pixmap(); }

    // 0xRRGGBB; 0 outside the store or without a display.
    uint32_t GetPixel(int32_t x, int32_t y);
    void SetPixel(int32_t x, int32_t y, uint32_t color);
    void Fill(uint32_t color);
    // All pixels as 0xRRGGBB words, top row first; empty without a display.
    std::vector<uint32_t> ReadPixels();
    // The reverse; the vector must hold Width() * Height() words.
    void WritePixels(const std::vector<uint32_t> &pixels);
    // RGB bytes top row first, as the BMP reader gives them.
    void WriteRGB(const RGBImage &image);

private:
    // The offscreen target, which drops the cache before any drawing.
    class StoreTarget : public PixmapTarget {
    public:
        StoreTarget(DrawablePane *owner, int32_t w, int32_t h)
            : PixmapTarget(w, h), mOwner(owner) {}
        void PrepareForDrawing() override { mOwner->ContentChanged(); }

    private:
        DrawablePane *mOwner;
    };

    // The client-side copy of the pixels (RGB, 8 bits), made on first read.
    GdkPixbuf *Cache();
    // The store's rectangle as an RGBA pixbuf, scaled to w x h.
    GdkPixbuf *PixbufOf(const Rect &source, int32_t w, int32_t h);
    // The same with the mask (or, when `masked`, white) made transparent.
    GdkPixbuf *MaskedPixbufOf(const Rect &source, int32_t w, int32_t h, bool masked);

    StoreTarget mTarget;
    int32_t mWidth, mHeight;           // as asked, may be below 1
    GdkPixbuf *mPixbufCache = nullptr; // null until read
};

} // namespace kelp

namespace kelp {

// Rotates the pixels of `source` into `dest` (two different stores of the
// same size) by `angle` radians, as RotateByShears does, and draws `dest`
// back.  Anything else fails the assertion "srcDP and dstDP and srcDP != dstDP".
bool PixMapRotate(DrawablePane *source, DrawablePane *dest, double angle, uint32_t flags);

} // namespace kelp
