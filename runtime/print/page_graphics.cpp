// Drawing on a print job's page with cairo and Pango.
#include "print/page_graphics.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

namespace kelp {

namespace {

// Pango wants UTF-8; text that isn't is taken as Latin-1, as on screen.
std::string ValidText(std::string_view text) {
    if (g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr))
        return std::string(text);
    gchar *converted = g_convert(text.data(), static_cast<gssize>(text.size()), "UTF-8",
                                 "ISO-8859-1", nullptr, nullptr, nullptr);
    std::string out = converted ? converted : "";
    g_free(converted);
    return out;
}

// A size of the language is a unit of the 72-per-inch layout grid, a pixel
// on screen and a point on paper; the theme's size (size 0) is in points
// too.  So the family and style come as on screen and the size is set here
// in the page's dots.
PangoFontDescription *PageFont(const FontSpec &spec, int32_t dotsPerInch) {
    PangoFontDescription *d = pango_font_description_new();
    const bool system = spec.name.empty() || IsSystemFontName(spec.name);
    pango_font_description_set_family(d, system ? DefaultFontFamily().c_str() : spec.name.c_str());
    int32_t size = spec.size > 0 ? spec.size : DefaultFontSize();
    size = std::clamp<int32_t>(size, 1, kMaxFontPoints);
    pango_font_description_set_absolute_size(d, double(size) * dotsPerInch / 72 * PANGO_SCALE);
    pango_font_description_set_weight(d, (spec.style & kStyleBold) ? PANGO_WEIGHT_BOLD
                                                                   : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_style(d, (spec.style & kStyleItalic) ? PANGO_STYLE_ITALIC
                                                                    : PANGO_STYLE_NORMAL);
    if (spec.style & kStyleCondensed)
        pango_font_description_set_stretch(d, PANGO_STRETCH_CONDENSED);
    return d;
}

int32_t PixelsOf(int units) { return (units + PANGO_SCALE / 2) / PANGO_SCALE; }

} // namespace

PageGraphics::PageGraphics(GraphicsTarget *target, int32_t verticalDpi)
    : Graphics(target, true), mDotsPerInch(verticalDpi > 0 ? verticalDpi : 72) {
    PangoFontMap *map = pango_cairo_font_map_get_default(); // not ours to free
    PangoContext *context = pango_font_map_create_context(map);
    // Unhinted metrics: a line measured here is as wide on any printer.
    cairo_font_options_t *options = cairo_font_options_create();
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    pango_cairo_context_set_font_options(context, options);
    cairo_font_options_destroy(options);
    mLayout = pango_layout_new(context);
    g_object_unref(context);
}

PageGraphics::~PageGraphics() {
    if (mFont)
        pango_font_description_free(mFont);
    g_object_unref(mLayout);
}

void PageGraphics::SetContext(cairo_t *cr) { mCairo = cr; }

void PageGraphics::SetClipRect(const Rect *rect) {
    mHasClip = rect != nullptr;
    if (rect)
        mClip = *rect;
}

// ------------------------------------------------------------ drawing state

bool PageGraphics::Begin(const RGBColor &color) {
    if (!mCairo)
        return false;
    cairo_save(mCairo);
    cairo_translate(mCairo, -mOriginX, -mOriginY);
    if (mHasClip) {
        cairo_rectangle(mCairo, std::min(mClip.left, mClip.right),
                        std::min(mClip.top, mClip.bottom), std::abs(mClip.right - mClip.left),
                        std::abs(mClip.bottom - mClip.top));
        cairo_clip(mCairo);
    }
    cairo_set_source_rgb(mCairo, color.red / 65535.0, color.green / 65535.0, color.blue / 65535.0);
    cairo_set_line_width(mCairo, std::max(1, std::min(mPenWidth, mPenHeight)));
    return true;
}

void PageGraphics::End() { cairo_restore(mCairo); }

void PageGraphics::RectPath(const Rect &r, bool outline) {
    double l = std::min(r.left, r.right), t = std::min(r.top, r.bottom);
    double w = std::abs(r.right - r.left), h = std::abs(r.bottom - r.top);
    if (outline) {
        // The stroke lies inside the pixels a fill would cover.
        const double half = cairo_get_line_width(mCairo) / 2;
        l += half, t += half, w -= 2 * half, h -= 2 * half;
    }
    cairo_rectangle(mCairo, l, t, std::max(0.0, w), std::max(0.0, h));
}

void PageGraphics::OvalPath(const Rect &r, bool outline) {
    const double inset = outline ? cairo_get_line_width(mCairo) / 2 : 0;
    const double w = std::abs(r.right - r.left) - 2 * inset;
    const double h = std::abs(r.bottom - r.top) - 2 * inset;
    if (w <= 0 || h <= 0)
        return;
    cairo_save(mCairo);
    cairo_translate(mCairo, std::min(r.left, r.right) + inset + w / 2,
                    std::min(r.top, r.bottom) + inset + h / 2);
    cairo_scale(mCairo, w / 2, h / 2);
    cairo_arc(mCairo, 0, 0, 1, 0, 2 * M_PI);
    cairo_restore(mCairo);
}

void PageGraphics::RoundPath(const Rect &r, int32_t cw, int32_t ch, bool outline) {
    const double inset = outline ? cairo_get_line_width(mCairo) / 2 : 0;
    const double l = std::min(r.left, r.right) + inset, t = std::min(r.top, r.bottom) + inset;
    const double w = std::abs(r.right - r.left) - 2 * inset;
    const double h = std::abs(r.bottom - r.top) - 2 * inset;
    const double rx = std::clamp<double>(cw, 0, w) / 2, ry = std::clamp<double>(ch, 0, h) / 2;
    if (w <= 0 || h <= 0)
        return;
    if (rx < 1 || ry < 1) {
        cairo_rectangle(mCairo, l, t, w, h);
        return;
    }
    auto corner = [&](double cx, double cy, double from) {
        cairo_save(mCairo);
        cairo_translate(mCairo, cx, cy);
        cairo_scale(mCairo, rx, ry);
        cairo_arc(mCairo, 0, 0, 1, from, from + M_PI / 2);
        cairo_restore(mCairo);
    };
    cairo_new_sub_path(mCairo);
    corner(l + w - rx, t + ry, -M_PI / 2);
    corner(l + w - rx, t + h - ry, 0);
    corner(l + rx, t + h - ry, M_PI / 2);
    corner(l + rx, t + ry, M_PI);
    cairo_close_path(mCairo);
}

// ------------------------------------------------------------ shapes

void PageGraphics::FrameRect(const Rect &r) {
    if (!Begin(mForeColor))
        return;
    RectPath(r, true);
    cairo_stroke(mCairo);
    End();
}

void PageGraphics::FillRect(const Rect &r) {
    if (!Begin(mForeColor))
        return;
    RectPath(r, false);
    cairo_fill(mCairo);
    End();
}

void PageGraphics::EraseRect(const Rect &r) {
    // Paper has no back colour of its own: erasing paints it white.
    if (!Begin(RGBColor{0xFFFF, 0xFFFF, 0xFFFF}))
        return;
    RectPath(r, false);
    cairo_fill(mCairo);
    End();
}

void PageGraphics::FrameRoundRect(const Rect &r, int32_t cw, int32_t ch) {
    if (!Begin(mForeColor))
        return;
    RoundPath(r, cw, ch, true);
    cairo_stroke(mCairo);
    End();
}

void PageGraphics::FillRoundRect(const Rect &r, int32_t cw, int32_t ch) {
    if (!Begin(mForeColor))
        return;
    RoundPath(r, cw, ch, false);
    cairo_fill(mCairo);
    End();
}

void PageGraphics::FrameOval(const Rect &r) {
    if (!Begin(mForeColor))
        return;
    OvalPath(r, true);
    cairo_stroke(mCairo);
    End();
}

void PageGraphics::FillOval(const Rect &r) {
    if (!Begin(mForeColor))
        return;
    OvalPath(r, false);
    cairo_fill(mCairo);
    End();
}

void PageGraphics::LineTo(int32_t x, int32_t y) {
    if (Begin(mForeColor)) {
        // Through the centres of the end pixels, as a one-pixel line runs.
        cairo_move_to(mCairo, mPenX + 0.5, mPenY + 0.5);
        cairo_line_to(mCairo, x + 0.5, y + 0.5);
        cairo_set_line_cap(mCairo, CAIRO_LINE_CAP_SQUARE);
        cairo_stroke(mCairo);
        End();
    }
    Graphics::LineTo(x, y);
}

void PageGraphics::DrawPolygon(const int32_t *coords, int32_t count, bool fill) {
    if (!coords || count < 2 || !Begin(mForeColor))
        return;
    for (int32_t i = 0; i < count; i += 2) {
        const double x = coords[i] + 0.5, y = (i + 1 < count ? coords[i + 1] : 0) + 0.5;
        i == 0 ? cairo_move_to(mCairo, x, y) : cairo_line_to(mCairo, x, y);
    }
    cairo_close_path(mCairo);
    if (fill)
        cairo_fill_preserve(mCairo);
    cairo_stroke(mCairo);
    End();
}

// ------------------------------------------------------------ text

void PageGraphics::SetTextFont(const std::string &name) {
    mFontValid = mFontValid && name == mTextFont;
    mTextFont = name;
}

void PageGraphics::SetTextSize(int32_t size) {
    mFontValid = mFontValid && size == mTextSize;
    mTextSize = size;
}

void PageGraphics::SetTextStyle(int32_t style) {
    mFontValid = mFontValid && style == mTextStyle;
    mTextStyle = style;
}

void PageGraphics::UpdateFont() {
    if (mFontValid)
        return;
    if (mFont)
        pango_font_description_free(mFont);
    mFont = PageFont(FontSpec{mTextFont, mTextSize, mTextStyle}, mDotsPerInch);
    pango_layout_set_font_description(mLayout, mFont);
    mFontValid = true;
}

bool PageGraphics::PrepareLayout(std::string_view text, int32_t width) {
    UpdateFont();
    const std::string valid = ValidText(text);
    pango_layout_set_text(mLayout, valid.data(), static_cast<int>(valid.size()));
    pango_layout_set_alignment(mLayout, PANGO_ALIGN_LEFT);
    pango_layout_set_width(mLayout, width > 0 ? width * PANGO_SCALE : -1);
    pango_layout_set_wrap(mLayout, PANGO_WRAP_WORD);
    PangoAttrList *list = nullptr;
    if (mTextStyle & kStyleUnderline) {
        list = pango_attr_list_new();
        pango_attr_list_insert(list, pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
    }
    pango_layout_set_attributes(mLayout, list);
    if (list)
        pango_attr_list_unref(list);
    return true;
}

int32_t PageGraphics::Ascent() {
    PrepareLayout("X", 0);
    return PixelsOf(pango_layout_get_baseline(mLayout));
}

int32_t PageGraphics::TextHeight() {
    PrepareLayout("X", 0);
    int w = 0, h = 0;
    pango_layout_get_size(mLayout, &w, &h);
    return PixelsOf(h);
}

int32_t PageGraphics::Descent() { return TextHeight() - Ascent(); }

void PageGraphics::DrawText(std::string_view text, int32_t x, int32_t y, int32_t width) {
    const int32_t ascent = Ascent();
    if (!PrepareLayout(text, width) || !Begin(mForeColor))
        return;
    cairo_move_to(mCairo, x, y - ascent);
    pango_cairo_show_layout(mCairo, mLayout);
    End();
}

int32_t PageGraphics::TextWidth(std::string_view text) {
    PrepareLayout(text, 0);
    int w = 0, h = 0;
    pango_layout_get_size(mLayout, &w, &h);
    return PixelsOf(w);
}

int32_t PageGraphics::WrappedHeight(std::string_view text, int32_t width) {
    PrepareLayout(text, width);
    int w = 0, h = 0;
    pango_layout_get_size(mLayout, &w, &h);
    return PixelsOf(h);
}

void PageGraphics::DrawTextWrapped(std::string_view text, const Rect &r, int32_t align) {
    if (!PrepareLayout(text, std::abs(r.right - r.left)) || !Begin(mForeColor))
        return;
    if (align == 1 || align == 2)
        pango_layout_set_alignment(mLayout, align == 1 ? PANGO_ALIGN_CENTER : PANGO_ALIGN_RIGHT);
    cairo_move_to(mCairo, std::min(r.left, r.right), std::min(r.top, r.bottom));
    pango_cairo_show_layout(mCairo, mLayout);
    End();
}

// ------------------------------------------------------------------ pictures

void PageGraphics::DrawImage(const uint8_t *rgba, int32_t stride, int32_t width, int32_t height,
                             const Rect &dest) {
    const int32_t dw = dest.right - dest.left, dh = dest.bottom - dest.top;
    if (!rgba || width < 1 || height < 1 || dw < 1 || dh < 1 || stride < width * 4)
        return;
    cairo_surface_t *image = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    if (cairo_surface_status(image) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(image);
        return;
    }
    // cairo wants native-endian words with the colour premultiplied by alpha.
    cairo_surface_flush(image);
    unsigned char *out = cairo_image_surface_get_data(image);
    const int outStride = cairo_image_surface_get_stride(image);
    for (int32_t y = 0; y < height; ++y) {
        const uint8_t *from = rgba + static_cast<size_t>(y) * stride;
        auto *to = reinterpret_cast<uint32_t *>(out + static_cast<size_t>(y) * outStride);
        for (int32_t x = 0; x < width; ++x, from += 4) {
            const uint32_t a = from[3];
            to[x] =
                a << 24 | (from[0] * a / 255) << 16 | (from[1] * a / 255) << 8 | from[2] * a / 255;
        }
    }
    cairo_surface_mark_dirty(image);
    if (Begin(mForeColor)) {
        cairo_translate(mCairo, dest.left, dest.top);
        cairo_scale(mCairo, static_cast<double>(dw) / width, static_cast<double>(dh) / height);
        cairo_set_source_surface(mCairo, image, 0, 0);
        // Sharp pixels, as on screen: a picture enlarged on paper stays blocky
        // rather than blurred, and its edges don't bleed into the page.
        cairo_pattern_set_filter(cairo_get_source(mCairo), CAIRO_FILTER_NEAREST);
        cairo_rectangle(mCairo, 0, 0, width, height);
        cairo_fill(mCairo);
        End();
    }
    cairo_surface_destroy(image);
}

} // namespace kelp
