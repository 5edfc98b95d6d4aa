// Drawing on real toolkit windows: the expose path, the menu bar offset, the
// pane clip and panes with windows of their own, read back from the screen.
#include "graphics/graphics_gtk.h"
#include "graphics/graphics_object.h"
#include "kelp/graphics.h"
#include "kelp/objects.h"
#include "pixels.h"
#include "support/xvfb.h"

#include <gtest/gtest.h>

namespace kelp::test {
namespace {

// A shown toplevel window of 200 by 150 that paints nothing by itself.
class ToolkitWindow : public ::testing::Test {
protected:
    void SetUp() override {
        if (!RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
        mWindow = gtk_window_new(GTK_WINDOW_TOPLEVEL);
        gtk_window_set_default_size(GTK_WINDOW(mWindow), 200, 150);
        gtk_widget_set_app_paintable(mWindow, TRUE);
        mFixed = gtk_fixed_new();
        gtk_container_add(GTK_CONTAINER(mWindow), mFixed);
    }
    void TearDown() override {
        if (mWindow)
            gtk_widget_destroy(mWindow);
        Pump();
    }
    void Show() {
        gtk_widget_show_all(mWindow);
        // Wait (bounded) until the server has mapped it and sent its exposes.
        for (int i = 0; i < 200 && !GTK_WIDGET_MAPPED(mWindow); ++i)
            Pump();
        Pump();
    }
    GdkDrawable *Window() { return GDK_DRAWABLE(mWindow->window); }
    // What the screen shows at a point of the window.
    uint32_t OnScreen(int x, int y) {
        int ox = 0, oy = 0;
        gdk_window_get_origin(mWindow->window, &ox, &oy);
        return PixelAt(GDK_DRAWABLE(gdk_get_default_root_window()), ox + x, oy + y);
    }

    GtkWidget *mWindow = nullptr;
    GtkWidget *mFixed = nullptr;
};

struct ExposeCount {
    int count = 0;
};

gboolean PaintRedBox(GtkWidget *widget, GdkEventExpose *, gpointer data) {
    // The paint path: a GraphicsGTK on the widget's window for this expose.
    WidgetTarget target(widget);
    GraphicsGTK g(&target);
    g.SetForeColor(ColorWordToRGB(0xFF0000));
    g.FillRect(RectFromXYWH(10, 10, 50, 40));
    ++static_cast<ExposeCount *>(data)->count;
    return TRUE;
}

TEST_F(ToolkitWindow, ExposePaintsWhatTheScreenShows) {
    ExposeCount exposes;
    g_signal_connect(mWindow, "expose-event", G_CALLBACK(PaintRedBox), &exposes);
    Show();
    ASSERT_GT(exposes.count, 0);
    EXPECT_EQ(OnScreen(10, 10), 0xFF0000u);
    EXPECT_EQ(OnScreen(59, 49), 0xFF0000u);
    EXPECT_NE(OnScreen(60, 50), 0xFF0000u);
    EXPECT_NE(OnScreen(100, 100), 0xFF0000u);

    // An invalidation comes back as another expose that paints again.
    const int before = exposes.count;
    gdk_window_invalidate_rect(mWindow->window, nullptr, FALSE);
    Pump();
    EXPECT_GT(exposes.count, before);
    EXPECT_EQ(OnScreen(30, 30), 0xFF0000u);
}

TEST_F(ToolkitWindow, MenuBarHeightPushesTheWindowsDrawingDown) {
    Show();
    WidgetTarget target(mWindow, Rect{0, 0, 150, 200}, WidgetTarget::kWindowItself, 20);
    GraphicsGTK g(&target);
    g.SetForeColor(ColorWordToRGB(0x0000FF));
    g.FillRect(RectFromXYWH(0, 0, 10, 10));
    gdk_flush();
    EXPECT_EQ(PixelAt(Window(), 5, 25), 0x0000FFu);
    EXPECT_NE(PixelAt(Window(), 5, 15), 0x0000FFu);
}

TEST_F(ToolkitWindow, PaneSharingTheWindowIsClippedToItself) {
    Show();
    // A pane at left 40, top 30, 50 wide and 30 high, without a window of its own.
    WidgetTarget target(mWindow, Rect{30, 40, 60, 90}, WidgetTarget::kSharesWindow, 0);
    RuntimeObject *object = NewGraphicsObject(new GraphicsGTK(&target), true);
    ASSERT_NE(object, nullptr);
    graphicsForeColorSetter(object, 0, 0x00AA00);
    // Pane-relative coordinates, reaching past the pane's right and bottom.
    RuntimeGraphicsFillRect(object, 10, 10, 500, 500);
    gdk_flush();
    EXPECT_EQ(PixelAt(Window(), 50, 40), 0x00AA00u);
    EXPECT_EQ(PixelAt(Window(), 89, 59), 0x00AA00u);
    EXPECT_NE(PixelAt(Window(), 91, 45), 0x00AA00u);
    EXPECT_NE(PixelAt(Window(), 60, 61), 0x00AA00u);
    EXPECT_EQ(graphicsWidthGetter(object, 0), 50);
    EXPECT_EQ(graphicsHeightGetter(object, 0), 30);
    RuntimeUnlockObject(object);
}

TEST_F(ToolkitWindow, PaneWithItsOwnWindowDrawsAtItsOrigin) {
    GtkWidget *area = gtk_drawing_area_new();
    gtk_widget_set_size_request(area, 50, 30);
    gtk_fixed_put(GTK_FIXED(mFixed), area, 40, 30);
    Show();
    ASSERT_TRUE(GTK_WIDGET_REALIZED(area));
    WidgetTarget target(area, Rect{30, 40, 60, 90}, WidgetTarget::kOwnWindow);
    RuntimeObject *object = NewGraphicsObject(new GraphicsGTK(&target), true);
    graphicsForeColorSetter(object, 0, 0xFF00FF);
    RuntimeGraphicsFillRect(object, 0, 0, 10, 10);
    gdk_flush();
    EXPECT_EQ(PixelAt(GDK_DRAWABLE(area->window), 0, 0), 0xFF00FFu);
    EXPECT_EQ(OnScreen(40, 30), 0xFF00FFu);
    EXPECT_EQ(OnScreen(49, 39), 0xFF00FFu);
    EXPECT_NE(OnScreen(39, 29), 0xFF00FFu);
    // Reading a pixel goes through the same mapping.
    EXPECT_EQ(graphicsPixelGetter(object, 5, 5), 0xFF00FFu);
    RuntimeUnlockObject(object);
}

TEST_F(ToolkitWindow, ClearRectUsesTheWindowsBackColour) {
    Show();
    WidgetTarget target(mWindow, Rect{0, 0, 150, 200}, WidgetTarget::kWindowItself, 0);
    GraphicsGTK g(&target);
    const uint32_t background = PixelAt(Window(), 150, 100);
    g.SetForeColor(ColorWordToRGB(0x000000));
    g.FillRect(RectFromXYWH(0, 0, 100, 100));
    // No back colour: the window's own background comes back.
    g.EraseRect(RectFromXYWH(0, 0, 20, 20));
    gdk_flush();
    EXPECT_EQ(PixelAt(Window(), 10, 10), background);
    // With one, that colour fills, and the pen keeps its own.
    target.SetBackColor(true, 0x3366CC);
    g.EraseRect(RectFromXYWH(20, 20, 20, 20));
    g.FillRect(RectFromXYWH(60, 60, 5, 5));
    gdk_flush();
    EXPECT_EQ(PixelAt(Window(), 30, 30), 0x3366CCu);
    EXPECT_EQ(PixelAt(Window(), 62, 62), 0x000000u);
}

TEST_F(ToolkitWindow, UnrealizedWidgetDrawsNothingAndMeasuresZero) {
    GtkWidget *label = gtk_label_new("never shown");
    g_object_ref_sink(label);
    WidgetTarget target(label);
    GraphicsGTK g(&target);
    g.FillRect(RectFromXYWH(0, 0, 10, 10));
    g.DrawText("text", 0, 10, 0);
    EXPECT_EQ(g.TextWidth("text"), 0);
    EXPECT_EQ(g.TextHeight(), 0);
    RGBColor rgb;
    EXPECT_FALSE(g.GetPixel(0, 0, rgb));
    g_object_unref(label);
}

} // namespace
} // namespace kelp::test
