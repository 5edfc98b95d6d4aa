#include "graphics/graphics_target.h"

#include "process/display.h"

namespace kelp {

// ------------------------------------------------------------ WidgetTarget

WidgetTarget::WidgetTarget(GtkWidget *widget, Rect bounds, Placement placement, int32_t menuBarHeight)
    : widget_(widget), bounds_(bounds), useWidgetSize_(false), placement_(placement),
      menuBarHeight_(menuBarHeight) {
    if (widget_)
        g_object_ref(widget_);
}

WidgetTarget::WidgetTarget(GtkWidget *widget)
    : widget_(widget), bounds_{}, useWidgetSize_(true), placement_(kWindowItself), menuBarHeight_(0) {
    if (widget_)
        g_object_ref(widget_);
}

WidgetTarget::~WidgetTarget() {
    if (gc_)
        g_object_unref(gc_);
    if (widget_)
        g_object_unref(widget_);
}

GdkDrawable *WidgetTarget::Drawable() {
    if (!widget_ || !DisplayAvailable() || !GTK_WIDGET_REALIZED(widget_))
        return nullptr;
    return GDK_DRAWABLE(widget_->window);
}

GdkGC *WidgetTarget::GetGC() {
    if (!gc_) {
        GdkDrawable *d = Drawable();
        if (d)
            gc_ = gdk_gc_new(d);
    }
    return gc_;
}

Rect WidgetTarget::Bounds() const {
    if (!useWidgetSize_)
        return bounds_;
    Rect r;
    if (widget_) {
        r.right = static_cast<int16_t>(widget_->allocation.width);
        r.bottom = static_cast<int16_t>(widget_->allocation.height);
    }
    return r;
}

int32_t WidgetTarget::DrawableOffsetX() const {
    return placement_ == kOwnWindow ? -bounds_.left : 0;
}

int32_t WidgetTarget::DrawableOffsetY() const {
    return placement_ == kOwnWindow ? -bounds_.top : menuBarHeight_;
}

bool WidgetTarget::BackColor(uint32_t &colorWord) const {
    if (hasBackColor_)
        colorWord = backColor_;
    return hasBackColor_;
}

// ------------------------------------------------------------ PixmapTarget

PixmapTarget::PixmapTarget(int32_t width, int32_t height) : width_(width), height_(height) {
    if (!DisplayAvailable() || width < 1 || height < 1)
        return;
    GdkScreen *screen = gdk_screen_get_default();
    GdkWindow *root = gdk_screen_get_root_window(screen);
    pixmap_ = gdk_pixmap_new(root, width, height, -1);
    if (!pixmap_)
        return;
    if (!gdk_drawable_get_colormap(pixmap_))
        gdk_drawable_set_colormap(pixmap_, gdk_screen_get_system_colormap(screen));
    // A new picture is white, as a new sheet of paper would be.
    GdkGC *gc = GetGC();
    GdkColor white = {0, 65535, 65535, 65535};
    gdk_gc_set_rgb_fg_color(gc, &white);
    gdk_draw_rectangle(pixmap_, gc, TRUE, 0, 0, width, height);
}

PixmapTarget::~PixmapTarget() {
    if (gc_)
        g_object_unref(gc_);
    if (pixmap_)
        g_object_unref(pixmap_);
}

GdkGC *PixmapTarget::GetGC() {
    if (!gc_ && pixmap_)
        gc_ = gdk_gc_new(pixmap_);
    return gc_;
}

Rect PixmapTarget::Bounds() const {
    Rect r;
    r.right = static_cast<int16_t>(width_ > 0 ? width_ : 0);
    r.bottom = static_cast<int16_t>(height_ > 0 ? height_ : 0);
    return r;
}

} // namespace kelp
