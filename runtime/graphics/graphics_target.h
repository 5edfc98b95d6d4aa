#pragma once
// What a Graphics draws on.  A pane gives its widget's GdkWindow (the paint
// path: expose -> RedrawNow -> GraphicsGTK on the pane -> Draw); an offscreen
// store gives a GdkPixmap; a page gives the printer's drawable.  The target
// tells how its window coordinates map to the drawable and owns the GdkGC.
#include "graphics/geometry.h"

#include <gtk/gtk.h>

#include <cstdint>

namespace kelp {

class GraphicsTarget {
public:
    virtual ~GraphicsTarget() = default;

    // Null when there is nothing to draw on (the widget isn't realized, no
    // display): every drawing operation then returns at once.
    virtual GdkDrawable *Drawable() = 0;
    // The GC of the target; it stays the target's.
    virtual GdkGC *GetGC() = 0;
    // The widget for themed drawing (stock icons); may be null.
    virtual GtkWidget *Widget() { return nullptr; }

    // On screen: a pane in a window.  Off screen: pixmaps and pages.
    virtual bool OnScreen() const = 0;
    // The pane's rectangle in window coordinates; an offscreen target is
    // (0, 0, height, width).
    virtual Rect Bounds() const = 0;
    // Added to window coordinates to reach drawable coordinates: the menu
    // bar's height for a pane drawn into its window's own GdkWindow, minus
    // the pane's top-left for a pane with a GdkWindow of its own.
    virtual int32_t DrawableOffsetX() const { return 0; }
    virtual int32_t DrawableOffsetY() const { return 0; }
    // True when the pane draws into its window's GdkWindow, so drawing must
    // be limited to the pane's own rectangle.
    virtual bool SharesWindowDrawable() const { return false; }

    // The window's back colour (0xRRGGBB) when it has one; erasing uses it.
    virtual bool BackColor(uint32_t &colorWord) const {
        (void)colorWord;
        return false;
    }

    // Run before each drawing method of the language: an offscreen store
    // rebuilds itself here when it was purged.
    virtual void PrepareForDrawing() {}
    // Printing: the next page, and the page range and copies of the job.
    virtual void NextPage() {}
    virtual int32_t FirstPage() const { return 1; }
    virtual int32_t LastPage() const { return 1; }
    virtual int32_t Copies() const { return 1; }
};

// A target on a widget's GdkWindow.  The widget must stay alive while the
// target does; the GC is made on first use and freed with the target.
// `bounds` is the pane's rectangle in window coordinates; `menuBarHeight` is
// added when the pane draws into the window's own GdkWindow.
class WidgetTarget : public GraphicsTarget {
public:
    enum Placement {
        kWindowItself, // the pane is the window: offset by the menu bar
        kSharesWindow, // a child drawing into the window's GdkWindow: offset and clipped
        kOwnWindow,    // a child with a GdkWindow of its own: minus its top-left
    };
    WidgetTarget(GtkWidget *widget, Rect bounds, Placement placement, int32_t menuBarHeight = 0);
    // A target on the whole of a toplevel's (or any widget's) window.
    explicit WidgetTarget(GtkWidget *widget);
    ~WidgetTarget() override;

    GdkDrawable *Drawable() override;
    GdkGC *GetGC() override;
    GtkWidget *Widget() override { return mWidget; }
    bool OnScreen() const override { return true; }
    Rect Bounds() const override;
    int32_t DrawableOffsetX() const override;
    int32_t DrawableOffsetY() const override;
    bool SharesWindowDrawable() const override { return mPlacement == kSharesWindow; }
    bool BackColor(uint32_t &colorWord) const override;

    void SetBounds(Rect bounds) { mBounds = bounds; }
    void SetBackColor(bool has, uint32_t colorWord) {
        mHasBackColor = has;
        mBackColor = colorWord;
    }

private:
    GtkWidget *mWidget;
    GdkGC *mGc = nullptr;
    Rect mBounds;
    bool mUseWidgetSize;
    Placement mPlacement;
    int32_t mMenuBarHeight;
    bool mHasBackColor = false;
    uint32_t mBackColor = 0xFFFFFF;
};

// An offscreen target: a GdkPixmap of the screen's depth, cleared to white.
// Without a display there is no pixmap and Drawable() is null.
class PixmapTarget : public GraphicsTarget {
public:
    PixmapTarget(int32_t width, int32_t height);
    ~PixmapTarget() override;

    GdkDrawable *Drawable() override { return GDK_DRAWABLE(mPixmap); }
    GdkGC *GetGC() override;
    bool OnScreen() const override { return false; }
    Rect Bounds() const override;
    GdkPixmap *Pixmap() const { return mPixmap; }

private:
    GdkPixmap *mPixmap = nullptr;
    GdkGC *mGc = nullptr;
    int32_t mWidth, mHeight;
};

} // namespace kelp
