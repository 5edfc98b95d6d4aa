#include "graphics/graphics_gtk.h"

#include "process/display.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <string>
#include <vector>

namespace kelp {

namespace {

// The GC belongs to the target and may serve several Graphics in turn; the
// one that used it last has its colour and clip on it.
const GraphicsGTK *gGcUser = nullptr;
GdkGC *gGcInUse = nullptr;

int16_t Clamp16(int32_t v) {
    return static_cast<int16_t>(std::clamp<int32_t>(v, SHRT_MIN, SHRT_MAX));
}

// Pango wants UTF-8; text that isn't is taken as Latin-1 rather than dropped.
std::string ValidText(std::string_view text) {
    if (g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr))
        return std::string(text);
    gchar *converted = g_convert(text.data(), static_cast<gssize>(text.size()), "UTF-8",
                                 "ISO-8859-1", nullptr, nullptr, nullptr);
    std::string out = converted ? converted : "";
    g_free(converted);
    return out;
}

int32_t RoundPangoUnits(int32_t v) { return v >= 0 ? (v + 512) >> 10 : -((-v + 512) >> 10); }

} // namespace

GraphicsGTK::GraphicsGTK(GraphicsTarget *t, bool owns) : Graphics(t, owns) {
    if (DisplayAvailable())
        mPangoContext = gdk_pango_context_get();
}

GraphicsGTK::~GraphicsGTK() {
    if (gGcUser == this) {
        gGcUser = nullptr;
        gGcInUse = nullptr;
    }
    if (mClipRect) {
        // Leave the shared GC unclipped for the pane's next user.
        if (mTarget && mTarget->Drawable() && mTarget->GetGC())
            gdk_gc_set_clip_rectangle(mTarget->GetGC(), nullptr);
        delete mClipRect;
    }
    if (mFontDescription)
        pango_font_description_free(mFontDescription);
    if (mPangoLayout)
        g_object_unref(mPangoLayout);
    if (mPangoContext)
        g_object_unref(mPangoContext);
}

GraphicsGTK *GraphicsGTK::ForPixmap(int32_t width, int32_t height) {
    return new GraphicsGTK(new PixmapTarget(width, height), true);
}

// ------------------------------------------------------------ coordinates

Rect GraphicsGTK::ToDrawable(const Rect &r, bool clipToPane) const {
    int32_t left = std::min(r.left, r.right) - mOriginX,
            right = std::max(r.left, r.right) - mOriginX;
    int32_t top = std::min(r.top, r.bottom) - mOriginY,
            bottom = std::max(r.top, r.bottom) - mOriginY;
    if (mTarget && mTarget->OnScreen()) {
        if (clipToPane && mTarget->SharesWindowDrawable()) {
            Rect pane = mTarget->Bounds();
            right = std::min<int32_t>(right, pane.right);
            bottom = std::min<int32_t>(bottom, pane.bottom);
        }
        left += mTarget->DrawableOffsetX();
        right += mTarget->DrawableOffsetX();
        top += mTarget->DrawableOffsetY();
        bottom += mTarget->DrawableOffsetY();
    } else if (clipToPane && mClipRect) {
        right = std::min<int32_t>(right, mClipRect->right);
        bottom = std::min<int32_t>(bottom, mClipRect->bottom);
    }
    if (right < left)
        right = left;
    if (bottom < top)
        bottom = top;
    return Rect{Clamp16(top), Clamp16(left), Clamp16(bottom), Clamp16(right)};
}

int32_t GraphicsGTK::ToDrawableX(int32_t x) const {
    x -= mOriginX;
    if (mTarget && mTarget->OnScreen())
        x += mTarget->DrawableOffsetX();
    return x;
}

int32_t GraphicsGTK::ToDrawableY(int32_t y) const {
    y -= mOriginY;
    if (mTarget && mTarget->OnScreen())
        y += mTarget->DrawableOffsetY();
    return y;
}

// ------------------------------------------------------------ GC and colour

GdkDrawable *GraphicsGTK::Drawable() const { return mTarget ? mTarget->Drawable() : nullptr; }

void GraphicsGTK::ApplyForeground(GdkGC *gc) {
    GdkDrawable *d = Drawable();
    GdkColormap *colormap = d ? gdk_drawable_get_colormap(d) : nullptr;
    if (!colormap)
        colormap = gdk_colormap_get_system();
    GdkColor color = {0, mForeColor.red, mForeColor.green, mForeColor.blue};
    gdk_colormap_alloc_color(colormap, &color, FALSE, TRUE);
    gdk_gc_set_foreground(gc, &color);
}

GdkGC *GraphicsGTK::GC() {
    if (!Drawable())
        return nullptr;
    GdkGC *gc = mTarget->GetGC();
    if (!gc)
        return nullptr;
    if (!mGcReady || gGcUser != this || gGcInUse != gc) {
        ApplyForeground(gc);
        if (mClipRect) {
            Rect clip = *mClipRect;
            Rect d =
                ToDrawable(Rect{Clamp16(clip.top + mOriginY), Clamp16(clip.left + mOriginX),
                                Clamp16(clip.bottom + mOriginY), Clamp16(clip.right + mOriginX)},
                           false);
            GdkRectangle area = {d.left, d.top, d.right - d.left, d.bottom - d.top};
            gdk_gc_set_clip_rectangle(gc, &area);
        } else {
            gdk_gc_set_clip_rectangle(gc, nullptr);
        }
        mGcReady = true;
        gGcUser = this;
        gGcInUse = gc;
    }
    return gc;
}

void GraphicsGTK::SetForeColor(const RGBColor &rgb) {
    Graphics::SetForeColor(rgb);
    if (mGcReady && gGcUser == this && Drawable())
        if (GdkGC *gc = mTarget->GetGC())
            ApplyForeground(gc);
}

void GraphicsGTK::ApplyPatternOrigin() {
    const int dx = ((mPatternOriginX + mOriginX) % 8 + 8) % 8;
    const int dy = ((mPatternOriginY + mOriginY) % 8 + 8) % 8;
    for (int row = 0; row < 8; ++row) {
        uint8_t b = mPattern[(row + dy) % 8];
        mShiftedPattern[row] = static_cast<uint8_t>(dx ? ((b << dx) | (b >> (8 - dx))) : b);
    }
}

void GraphicsGTK::SetClipRect(const Rect *rect) {
    delete mClipRect;
    mClipRect = nullptr;
    if (rect) {
        mClipRect = new Rect{Clamp16(rect->top - mOriginY), Clamp16(rect->left - mOriginX),
                             Clamp16(rect->bottom - mOriginY), Clamp16(rect->right - mOriginX)};
    }
    // The GC takes the new clip at the next drawing.
    mGcReady = false;
    if (Drawable())
        GC();
}

// ------------------------------------------------------------ shapes

bool GraphicsGTK::ShapeAreaOf(const Rect &r, ShapeArea &area) {
    area.gc = GC();
    if (!area.gc)
        return false;
    const Rect d = ToDrawable(r, true);
    area.left = d.left;
    area.top = d.top;
    area.width = d.right - d.left;
    area.height = d.bottom - d.top;
    return area.width >= 1 && area.height >= 1;
}

void GraphicsGTK::FrameRect(const Rect &r) {
    ShapeArea a;
    if (!ShapeAreaOf(r, a))
        return;
    // GDK's outline covers width + 1 pixels; one less covers what a fill does.
    gdk_draw_rectangle(Drawable(), a.gc, FALSE, a.left, a.top, a.width - 1, a.height - 1);
}

void GraphicsGTK::FillRect(const Rect &r) {
    ShapeArea a;
    if (!ShapeAreaOf(r, a))
        return;
    gdk_draw_rectangle(Drawable(), a.gc, TRUE, a.left, a.top, a.width, a.height);
}

void GraphicsGTK::EraseRect(const Rect &r) {
    ShapeArea a;
    if (!ShapeAreaOf(r, a))
        return;
    uint32_t back = 0xFFFFFF;
    const bool onScreen = mTarget->OnScreen();
    const bool hasBack = onScreen && mTarget->BackColor(back);
    if (onScreen && !hasBack && GDK_IS_WINDOW(Drawable())) {
        gdk_window_clear_area(GDK_WINDOW(Drawable()), a.left, a.top, a.width, a.height);
        return;
    }
    const RGBColor saved = mForeColor;
    SetForeColor(ColorWordToRGB(back));
    gdk_draw_rectangle(Drawable(), a.gc, TRUE, a.left, a.top, a.width, a.height);
    SetForeColor(saved);
}

namespace {

void RoundRect(GdkDrawable *d, GdkGC *gc, bool fill, int l, int t, int w, int h, int cw, int ch) {
    cw = std::clamp(cw, 0, w);
    ch = std::clamp(ch, 0, h);
    if (cw < 2 || ch < 2) {
        gdk_draw_rectangle(d, gc, fill, l, t, fill ? w : w - 1, fill ? h : h - 1);
        return;
    }
    if (fill) {
        gdk_draw_rectangle(d, gc, TRUE, l + cw / 2, t, w - (cw / 2) * 2, h);
        gdk_draw_rectangle(d, gc, TRUE, l, t + ch / 2, w, h - (ch / 2) * 2);
        gdk_draw_arc(d, gc, TRUE, l, t, cw, ch, 90 * 64, 90 * 64);
        gdk_draw_arc(d, gc, TRUE, l + w - cw, t, cw, ch, 0, 90 * 64);
        gdk_draw_arc(d, gc, TRUE, l, t + h - ch, cw, ch, 180 * 64, 90 * 64);
        gdk_draw_arc(d, gc, TRUE, l + w - cw, t + h - ch, cw, ch, 270 * 64, 90 * 64);
        return;
    }
    const int r = l + w - 1, b = t + h - 1;
    gdk_draw_arc(d, gc, FALSE, l, t, cw - 1, ch - 1, 90 * 64, 90 * 64);
    gdk_draw_arc(d, gc, FALSE, r - cw + 1, t, cw - 1, ch - 1, 0, 90 * 64);
    gdk_draw_arc(d, gc, FALSE, l, b - ch + 1, cw - 1, ch - 1, 180 * 64, 90 * 64);
    gdk_draw_arc(d, gc, FALSE, r - cw + 1, b - ch + 1, cw - 1, ch - 1, 270 * 64, 90 * 64);
    gdk_draw_line(d, gc, l + cw / 2, t, r - cw / 2, t);
    gdk_draw_line(d, gc, l + cw / 2, b, r - cw / 2, b);
    gdk_draw_line(d, gc, l, t + ch / 2, l, b - ch / 2);
    gdk_draw_line(d, gc, r, t + ch / 2, r, b - ch / 2);
}

} // namespace

void GraphicsGTK::FrameRoundRect(const Rect &r, int32_t cw, int32_t ch) {
    ShapeArea a;
    if (!ShapeAreaOf(r, a))
        return;
    RoundRect(Drawable(), a.gc, false, a.left, a.top, a.width, a.height, cw, ch);
}

void GraphicsGTK::FillRoundRect(const Rect &r, int32_t cw, int32_t ch) {
    ShapeArea a;
    if (!ShapeAreaOf(r, a))
        return;
    RoundRect(Drawable(), a.gc, true, a.left, a.top, a.width, a.height, cw, ch);
}

void GraphicsGTK::FrameOval(const Rect &r) {
    ShapeArea a;
    if (!ShapeAreaOf(r, a))
        return;
    gdk_draw_arc(Drawable(), a.gc, FALSE, a.left, a.top, a.width - 1, a.height - 1, 0, 360 * 64);
}

void GraphicsGTK::FillOval(const Rect &r) {
    ShapeArea a;
    if (!ShapeAreaOf(r, a))
        return;
    gdk_draw_arc(Drawable(), a.gc, TRUE, a.left, a.top, a.width - 1, a.height - 1, 0, 360 * 64);
    // The fill alone leaves the rim's pixels; the outline covers them.
    gdk_draw_arc(Drawable(), a.gc, FALSE, a.left, a.top, a.width - 1, a.height - 1, 0, 360 * 64);
}

void GraphicsGTK::LineTo(int32_t x, int32_t y) {
    if (GdkGC *gc = GC())
        gdk_draw_line(Drawable(), gc, ToDrawableX(mPenX), ToDrawableY(mPenY), ToDrawableX(x),
                      ToDrawableY(y));
    Graphics::LineTo(x, y);
}

void GraphicsGTK::DrawPolygon(const int32_t *coords, int32_t count, bool fill) {
    GdkGC *gc = GC();
    if (!gc || !coords || count < 2)
        return;
    std::vector<GdkPoint> points((count + 1) / 2);
    for (int32_t i = 0; i < static_cast<int32_t>(points.size()); ++i) {
        points[i].x = ToDrawableX(coords[2 * i]);
        points[i].y = ToDrawableY(2 * i + 1 < count ? coords[2 * i + 1] : 0);
    }
    gdk_draw_polygon(Drawable(), gc, fill, points.data(), static_cast<gint>(points.size()));
    if (fill)
        gdk_draw_polygon(Drawable(), gc, FALSE, points.data(), static_cast<gint>(points.size()));
}

// ------------------------------------------------------------ text

void GraphicsGTK::SetTextFont(const std::string &name) {
    if (name != mTextFont) {
        mTextFont = name;
        mFontValid = false;
    }
}

void GraphicsGTK::SetTextSize(int32_t size) {
    if (size != mTextSize) {
        mTextSize = size;
        mFontValid = false;
    }
}

void GraphicsGTK::SetTextStyle(int32_t style) {
    if (style != mTextStyle) {
        mTextStyle = style;
        mFontValid = false;
    }
}

void GraphicsGTK::UpdateFont() {
    if (mFontValid && mFontDescription)
        return;
    if (!mPangoContext)
        return;
    FontSpec spec{mTextFont, mTextSize, mTextStyle};
    if (mFontDescription)
        pango_font_description_free(mFontDescription);
    mFontDescription = MakeFontDescription(spec);
    if (mPangoLayout)
        g_object_unref(mPangoLayout);
    mPangoLayout = pango_layout_new(mPangoContext);
    if (mFontDescription)
        pango_layout_set_font_description(mPangoLayout, mFontDescription);
    mFontValid = true;
    mEtricsValid = false;
}

void GraphicsGTK::UpdateMetrics() {
    UpdateFont();
    if (mEtricsValid)
        return;
    mAscent = mDescent = mHeight = -1;
    mEtricsValid = true;
    if (!mPangoContext || !mFontDescription)
        return;
    pango_context_set_font_description(mPangoContext, mFontDescription);
    PangoFont *font = pango_context_load_font(mPangoContext, mFontDescription);
    if (!font)
        return;
    PangoFontMetrics *metrics = pango_font_get_metrics(font, nullptr);
    mAscent = RoundPangoUnits(pango_font_metrics_get_ascent(metrics)) - 1;
    mDescent = RoundPangoUnits(pango_font_metrics_get_descent(metrics));
    mHeight = mAscent + mDescent;
    pango_font_metrics_unref(metrics);
    g_object_unref(font);
}

int32_t GraphicsGTK::Ascent() {
    if (!Drawable())
        return 0;
    UpdateMetrics();
    return mAscent;
}

int32_t GraphicsGTK::Descent() {
    if (!Drawable())
        return 0;
    UpdateMetrics();
    return mDescent;
}

int32_t GraphicsGTK::TextHeight() {
    if (!Drawable())
        return 0;
    UpdateMetrics();
    return mHeight;
}

bool GraphicsGTK::PrepareLayout(std::string_view text) {
    BeginText();
    UpdateFont();
    if (!mPangoLayout)
        return false;
    const std::string valid = ValidText(text);
    // A layout left wrapped or aligned by a wrapped drawing starts plain again.
    pango_layout_set_width(mPangoLayout, -1);
    pango_layout_set_alignment(mPangoLayout, PANGO_ALIGN_LEFT);
    pango_layout_set_text(mPangoLayout, valid.data(), static_cast<int>(valid.size()));
    if (mTextStyle & kStyleUnderline) {
        PangoAttrList *list = pango_attr_list_new();
        PangoAttribute *underline = pango_attr_underline_new(PANGO_UNDERLINE_SINGLE);
        underline->start_index = 0;
        underline->end_index = static_cast<guint>(valid.size());
        pango_attr_list_insert(list, underline);
        pango_layout_set_attributes(mPangoLayout, list);
        pango_attr_list_unref(list);
    } else {
        pango_layout_set_attributes(mPangoLayout, nullptr);
    }
    return true;
}

void GraphicsGTK::DrawText(std::string_view text, int32_t x, int32_t y, int32_t width) {
    (void)width;
    GdkGC *gc = GC();
    if (!gc || !PrepareLayout(text))
        return;
    gdk_draw_layout(Drawable(), gc, ToDrawableX(x), ToDrawableY(y) - Ascent(), mPangoLayout);
    EndText();
}

int32_t GraphicsGTK::TextWidth(std::string_view text) {
    if (!Drawable() || !PrepareLayout(text))
        return 0;
    int w = 0, h = 0;
    pango_layout_get_pixel_size(mPangoLayout, &w, &h);
    EndText();
    return w;
}

int32_t GraphicsGTK::WrappedHeight(std::string_view text, int32_t width) {
    if (!Drawable() || !PrepareLayout(text))
        return 0;
    if (width > 0) {
        pango_layout_set_width(mPangoLayout, width * PANGO_SCALE);
        pango_layout_set_wrap(mPangoLayout, PANGO_WRAP_WORD);
    }
    int w = 0, h = 0;
    pango_layout_get_pixel_size(mPangoLayout, &w, &h);
    EndText();
    return h;
}

void GraphicsGTK::DrawTextWrapped(std::string_view text, const Rect &r, int32_t align) {
    GdkGC *gc = GC();
    if (!gc || !PrepareLayout(text))
        return;
    if (align == 1)
        pango_layout_set_alignment(mPangoLayout, PANGO_ALIGN_CENTER);
    else if (align == 2)
        pango_layout_set_alignment(mPangoLayout, PANGO_ALIGN_RIGHT);
    const int32_t width = std::abs(r.right - r.left);
    if (width > 0) {
        pango_layout_set_width(mPangoLayout, width * PANGO_SCALE);
        pango_layout_set_wrap(mPangoLayout, PANGO_WRAP_WORD);
    }
    Rect d = ToDrawable(r, false);
    gdk_draw_layout(Drawable(), gc, d.left, d.top, mPangoLayout);
    EndText();
}

// ------------------------------------------------------------ icons, pixels

void GraphicsGTK::DrawStockIcon(int32_t kind, int32_t x, int32_t y, int32_t w, int32_t h) {
    static const char *const kStock[4] = {"gtk-dialog-error", "gtk-dialog-info",
                                          "gtk-dialog-warning", "gtk-dialog-question"};
    static GdkPixbuf *cache[4] = {};
    GdkGC *gc = GC();
    if (!gc || kind < 0 || kind > 3 || w < 1 || h < 1)
        return;
    if (!cache[kind]) {
        if (GtkWidget *widget = mTarget->Widget()) {
            cache[kind] =
                gtk_widget_render_icon(widget, kStock[kind], GTK_ICON_SIZE_DIALOG, nullptr);
        } else if (GtkIconSet *set = gtk_icon_factory_lookup_default(kStock[kind])) {
            cache[kind] =
                gtk_icon_set_render_icon(set, gtk_widget_get_default_style(), GTK_TEXT_DIR_LTR,
                                         GTK_STATE_NORMAL, GTK_ICON_SIZE_DIALOG, nullptr, nullptr);
        }
        if (!cache[kind])
            return;
    }
    GdkPixbuf *scaled = gdk_pixbuf_scale_simple(cache[kind], w, h, GDK_INTERP_BILINEAR);
    if (!scaled)
        return;
    if (!gdk_pixbuf_get_has_alpha(scaled)) {
        GdkPixbuf *withAlpha = gdk_pixbuf_add_alpha(scaled, FALSE, 0, 0, 0);
        g_object_unref(scaled);
        scaled = withAlpha;
    }
    gdk_draw_pixbuf(Drawable(), gc, scaled, 0, 0, ToDrawableX(x), ToDrawableY(y), w, h,
                    GDK_RGB_DITHER_NONE, 0, 0);
    g_object_unref(scaled);
}

bool GraphicsGTK::GetPixel(int32_t x, int32_t y, RGBColor &rgb) {
    GdkDrawable *d = Drawable();
    if (!d)
        return false;
    const int dx = ToDrawableX(x), dy = ToDrawableY(y);
    int dw = 0, dh = 0;
    gdk_drawable_get_size(d, &dw, &dh);
    if (dx < 0 || dy < 0 || dx >= dw || dy >= dh)
        return false;
    GdkColormap *colormap = gdk_drawable_get_colormap(d);
    if (!colormap)
        colormap = gdk_colormap_get_system();
    GdkPixbuf *pixel = gdk_pixbuf_get_from_drawable(nullptr, d, colormap, dx, dy, 0, 0, 1, 1);
    if (!pixel)
        return false;
    const guchar *p = gdk_pixbuf_get_pixels(pixel);
    rgb = RGBColor{static_cast<uint16_t>(p[0] * 257), static_cast<uint16_t>(p[1] * 257),
                   static_cast<uint16_t>(p[2] * 257)};
    g_object_unref(pixel);
    return true;
}

void GraphicsGTK::SetPixel(int32_t x, int32_t y, const RGBColor &rgb) {
    GdkGC *gc = GC();
    if (!gc)
        return;
    const RGBColor saved = mForeColor;
    SetForeColor(rgb);
    gdk_draw_point(Drawable(), gc, ToDrawableX(x), ToDrawableY(y));
    SetForeColor(saved);
}

void GraphicsGTK::DrawFocusRing(const Rect &r) {
    GdkGC *gc = GC();
    if (!gc)
        return;
    Rect d = ToDrawable(r, true);
    if (d.right - d.left < 1 || d.bottom - d.top < 1)
        return;
    gdk_gc_set_line_attributes(gc, 1, GDK_LINE_ON_OFF_DASH, GDK_CAP_NOT_LAST, GDK_JOIN_MITER);
    GdkPoint points[5] = {{d.left, d.top},
                          {d.right - 1, d.top},
                          {d.right - 1, d.bottom - 1},
                          {d.left, d.bottom - 1},
                          {d.left, d.top}};
    gdk_draw_lines(Drawable(), gc, points, 5);
    gdk_gc_set_line_attributes(gc, 1, GDK_LINE_SOLID, GDK_CAP_NOT_LAST, GDK_JOIN_MITER);
}

void GraphicsGTK::DrawDrawableScaled(GdkDrawable *source, const Rect &sourceRect,
                                     const Rect &destRect) {
    GdkGC *gc = GC();
    if (!gc || !source)
        return;
    const int sx = std::min(sourceRect.left, sourceRect.right),
              sy = std::min(sourceRect.top, sourceRect.bottom);
    const int sw = std::abs(sourceRect.right - sourceRect.left),
              sh = std::abs(sourceRect.bottom - sourceRect.top);
    Rect d = ToDrawable(destRect, false);
    const int dw = d.right - d.left, dh = d.bottom - d.top;
    int storeW = 0, storeH = 0;
    gdk_drawable_get_size(source, &storeW, &storeH);
    if (sw < 1 || sh < 1 || dw < 1 || dh < 1 || sx < 0 || sy < 0 || sx + sw > storeW ||
        sy + sh > storeH)
        return;
    if (sw == dw && sh == dh) {
        gdk_draw_drawable(Drawable(), gc, source, sx, sy, d.left, d.top, dw, dh);
        return;
    }
    GdkColormap *colormap = gdk_drawable_get_colormap(source);
    if (!colormap)
        colormap = gdk_colormap_get_system();
    GdkPixbuf *part = gdk_pixbuf_get_from_drawable(nullptr, source, colormap, sx, sy, 0, 0, sw, sh);
    if (!part)
        return;
    GdkPixbuf *scaled = gdk_pixbuf_scale_simple(part, dw, dh, GDK_INTERP_BILINEAR);
    g_object_unref(part);
    if (!scaled)
        return;
    gdk_draw_pixbuf(Drawable(), gc, scaled, 0, 0, d.left, d.top, dw, dh, GDK_RGB_DITHER_NONE, 0, 0);
    g_object_unref(scaled);
}

} // namespace kelp
