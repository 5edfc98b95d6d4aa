#include "graphics/graphics_target.h"

#include "process/display.h"

namespace kelp {

// ------------------------------------------------------------ WidgetTarget

WidgetTarget::WidgetTarget(GtkWidget *widget, Rect bounds, Placement placement,
                           int32_t menuBarHeight)
    : mWidget(widget), mBounds(bounds), mUseWidgetSize(false), mPlacement(placement),
      mMenuBarHeight(menuBarHeight) {
    if (mWidget)
        g_object_ref(mWidget);
}

WidgetTarget::WidgetTarget(GtkWidget *widget)
    : mWidget(widget), mBounds{}, mUseWidgetSize(true), mPlacement(kWindowItself),
      mMenuBarHeight(0) {
    if (mWidget)
        g_object_ref(mWidget);
}

WidgetTarget::~WidgetTarget() {
    if (mGc)
        g_object_unref(mGc);
    if (mWidget)
        g_object_unref(mWidget);
}

GdkDrawable *WidgetTarget::Drawable() {
    if (!mWidget || !DisplayAvailable() || !GTK_WIDGET_REALIZED(mWidget))
        return nullptr;
    return GDK_DRAWABLE(mWidget->window);
}

GdkGC *WidgetTarget::GetGC() {
    if (!mGc) {
        GdkDrawable *d = Drawable();
        if (d)
            mGc = gdk_gc_new(d);
    }
    return mGc;
}

Rect WidgetTarget::Bounds() const {
    if (!mUseWidgetSize)
        return mBounds;
    Rect r;
    if (mWidget) {
        r.right = static_cast<int16_t>(mWidget->allocation.width);
        r.bottom = static_cast<int16_t>(mWidget->allocation.height);
    }
    return r;
}

int32_t WidgetTarget::DrawableOffsetX() const {
    return mPlacement == kOwnWindow ? -mBounds.left : 0;
}

int32_t WidgetTarget::DrawableOffsetY() const {
    return mPlacement == kOwnWindow ? -mBounds.top : mMenuBarHeight;
}

bool WidgetTarget::BackColor(uint32_t &colorWord) const {
    if (mHasBackColor)
        colorWord = mBackColor;
    return mHasBackColor;
}

// ------------------------------------------------------------ PixmapTarget

PixmapTarget::PixmapTarget(int32_t width, int32_t height) : mWidth(width), mHeight(height) {
    if (!DisplayAvailable() || width < 1 || height < 1)
        return;
    GdkScreen *screen = gdk_screen_get_default();
    GdkWindow *root = gdk_screen_get_root_window(screen);
    mPixmap = gdk_pixmap_new(root, width, height, -1);
    if (!mPixmap)
        return;
    if (!gdk_drawable_get_colormap(mPixmap))
        gdk_drawable_set_colormap(mPixmap, gdk_screen_get_system_colormap(screen));
    // A new picture is white, as a new sheet of paper would be.
    GdkGC *gc = GetGC();
    GdkColor white = {0, 65535, 65535, 65535};
    gdk_gc_set_rgb_fg_color(gc, &white);
    gdk_draw_rectangle(mPixmap, gc, TRUE, 0, 0, width, height);
}

PixmapTarget::~PixmapTarget() {
    if (mGc)
        g_object_unref(mGc);
    if (mPixmap)
        g_object_unref(mPixmap);
}

GdkGC *PixmapTarget::GetGC() {
    if (!mGc && mPixmap)
        mGc = gdk_gc_new(mPixmap);
    return mGc;
}

Rect PixmapTarget::Bounds() const {
    Rect r;
    r.right = static_cast<int16_t>(mWidth > 0 ? mWidth : 0);
    r.bottom = static_cast<int16_t>(mHeight > 0 ? mHeight : 0);
    return r;
}

} // namespace kelp
