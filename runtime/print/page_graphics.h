#pragma once
// PageGraphics: a Graphics that draws on a page of a print job with cairo.
// The screen's GraphicsGTK draws pixels with GDK; a page wants shapes and
// text as vectors, so that the printer (or the PDF) gets sharp lines and
// text that can be searched and copied.  Coordinates are dots of the page's
// printable area; the job scales dots to points.
//
// Failure channel: without a page (between jobs, or after the job failed)
// every drawing does nothing and text measures give 0.  Nothing raises.
#include "graphics/graphics_base.h"

#include <cairo.h>
#include <pango/pango.h>

namespace kelp {

class PageGraphics : public Graphics {
public:
    // The target (the print job's page target) is owned: it goes with this.
    // Font sizes in points become dots at `verticalDpi`.
    PageGraphics(GraphicsTarget *target, int32_t verticalDpi);
    ~PageGraphics() override;

    // The cairo context of the page being drawn, or null: drawing goes to
    // whatever context was set last.  The context stays the caller's.
    void SetContext(cairo_t *cr);

    bool HasClip() const override { return mHasClip; }
    void SetClipRect(const Rect *rect) override;
    const Rect *ClipRect() const override { return mHasClip ? &mClip : nullptr; }

    void UpdateFont() override;
    void SetTextFont(const std::string &name) override;
    void SetTextSize(int32_t size) override;
    void SetTextStyle(int32_t style) override;

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
    void DrawImage(const uint8_t *rgba, int32_t stride, int32_t width, int32_t height,
                   const Rect &dest) override;

private:
    // Sets up colour and clip for one drawing; false without a page.
    bool Begin(const RGBColor &color);
    void End();
    // The shape of `r` as a path: outlined along the inside of its pixels.
    void RectPath(const Rect &r, bool outline);
    void RoundPath(const Rect &r, int32_t cw, int32_t ch, bool outline);
    void OvalPath(const Rect &r, bool outline);
    // The text in the layout at `width` (wrapped when above 0); false
    // without a layout.
    bool PrepareLayout(std::string_view text, int32_t width);

    cairo_t *mCairo = nullptr;
    bool mHasClip = false;
    Rect mClip{};
    PangoLayout *mLayout = nullptr; // measured with a context of its own
    PangoFontDescription *mFont = nullptr;
    bool mFontValid = false;
    int32_t mDotsPerInch;
};

} // namespace kelp
