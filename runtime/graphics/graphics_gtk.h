#pragma once
// GraphicsGTK: the one screen implementation of Graphics.  It draws with GDK
// on its target's drawable and lays text out with Pango.
//
// How it is made:
//   - painting a pane: on expose, the pane's RedrawNow makes
//         WidgetTarget target(widget, paneBounds, placement, menuBarHeight);
//         GraphicsGTK g(&target);
//     and passes g to Draw (a Canvas wraps it in a language "Graphics" object
//     with NewGraphicsObject from graphics_object.h for its Paint event);
//   - offscreen: GraphicsGTK::ForPixmap(w, h) owns a PixmapTarget; the same
//     drawing lands in a GdkPixmap that can be copied to a window later;
//   - any other drawable (a page): a GraphicsTarget subclass of its own.
// All coordinates given to the drawing operations are window coordinates;
// the target maps them to its drawable.  Without a display, or with an
// unrealized widget, the target has no drawable and every operation returns
// at once (text measures give 0).
#include "graphics/graphics_base.h"

#include <gtk/gtk.h>
#include <pango/pango.h>

namespace kelp {

class GraphicsGTK : public Graphics {
public:
    explicit GraphicsGTK(GraphicsTarget *target, bool ownsTarget = false);
    ~GraphicsGTK() override;

    // A Graphics drawing into a new offscreen pixmap of this size, owning it.
    static GraphicsGTK *ForPixmap(int32_t width, int32_t height);

    void ApplyPatternOrigin() override;
    bool HasClip() const override { return mClipRect != nullptr; }
    void SetClipRect(const Rect *rect) override;
    const Rect *ClipRect() const override { return mClipRect; }

    void UpdateFont() override;
    void SetTextFont(const std::string &name) override;
    void SetTextSize(int32_t size) override;
    void SetTextStyle(int32_t style) override;
    void SetForeColor(const RGBColor &rgb) override;

    void FrameRect(const Rect &r) override;
    void FillRect(const Rect &r) override;
    void EraseRect(const Rect &r) override;
    void FrameRoundRect(const Rect &r, int32_t cw, int32_t ch) override;
    void FillRoundRect(const Rect &r, int32_t cw, int32_t ch) override;
    void FrameOval(const Rect &r) override;
    void FillOval(const Rect &r) override;
    void LineTo(int32_t x, int32_t y) override;
    void DrawPolygon(const int32_t *coords, int32_t count, bool fill) override;

    void DrawText(std::string_view text, int32_t x, int32_t y, int32_t width) override;
    int32_t TextWidth(std::string_view text) override;
    int32_t Ascent() override;
    int32_t Descent() override;
    int32_t TextHeight() override;
    int32_t WrappedHeight(std::string_view text, int32_t width) override;
    void DrawTextWrapped(std::string_view text, const Rect &r, int32_t align) override;

    void DrawStockIcon(int32_t kind, int32_t x, int32_t y, int32_t w, int32_t h) override;
    bool GetPixel(int32_t x, int32_t y, RGBColor &rgb) override;
    void SetPixel(int32_t x, int32_t y, const RGBColor &rgb) override;
    void DrawFocusRing(const Rect &r) override;

    // Copies `sourceRect` of another drawable (an offscreen picture) into
    // `destRect` (window coordinates), scaling when the sizes differ.
    void DrawDrawableScaled(GdkDrawable *source, const Rect &sourceRect, const Rect &destRect);

    // Window coordinates to drawable coordinates, normalised so that
    // left <= right and top <= bottom; with `clipToPane` limited to the pane
    // (or, off screen, to the clip).
    Rect ToDrawable(const Rect &r, bool clipToPane) const;
    int32_t ToDrawableX(int32_t x) const;
    int32_t ToDrawableY(int32_t y) const;

    // The font description in use (after UpdateFont); null without a display.
    const PangoFontDescription *FontDescription() const { return mFontDescription; }
    PangoLayout *Layout() const { return mPangoLayout; }
    // What it draws on, for code that draws with GDK itself (plug-ins).
    GdkDrawable *TargetDrawable() const { return Drawable(); }

private:
    GdkDrawable *Drawable() const;
    // The target's GC with this Graphics' foreground on it; null without one.
    GdkGC *GC();
    void ApplyForeground(GdkGC *gc);
    // Where a shape of `r` lands: the GC and the rectangle in drawable
    // coordinates.  False when there is nothing to draw on or the shape is
    // empty after clipping to the pane.
    struct ShapeArea {
        GdkGC *gc;
        int left, top, width, height;
    };
    bool ShapeAreaOf(const Rect &r, ShapeArea &area);
    void UpdateMetrics();
    // Puts `text` in the layout with the underline attribute when the style
    // asks for it.  False when there is no layout.
    bool PrepareLayout(std::string_view text);

    PangoFontDescription *mFontDescription = nullptr;
    Rect *mClipRect = nullptr;
    bool mGcReady = false;
    bool mFontValid = false;
    bool mEtricsValid = false;
    int32_t mAscent = -1, mDescent = -1, mHeight = -1;
    PangoContext *mPangoContext = nullptr;
    PangoLayout *mPangoLayout = nullptr;
};

} // namespace kelp
