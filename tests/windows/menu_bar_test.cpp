// A window with a stand-in menu bar: with a bar of fixed height, sizes,
// moves, the bounds kept, pointer positions and drawing all move by the
// bar's height together, so the content keeps the size and place the
// program asked for; hiding the bar comes with the promise that it comes
// back at the run-down.
#include "support/settle.h"

#include "graphics/graphics_base.h"
#include "graphics/pixels.h"
#include "shutdown/shutdown_task.h"
#include "support/xvfb.h"
#include "windows/menu_bar.h"
#include "windows/window.h"

#include <gtest/gtest.h>

#include <string>

namespace kelp {
namespace {

constexpr int kBar = 30;

using test::Settle;

class PressWindow : public Window {
public:
    using Window::Window;
    bool MouseDown(int32_t x, int32_t y, int32_t) override {
        pressedAt = std::to_string(x) + "," + std::to_string(y);
        return true;
    }
    std::string pressedAt;
};

TEST(MenuBarHeight, EveryConversionMovesByTheBarTogether) {
    if (!test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    for (bool resizable : {true, false}) {
        auto *window =
            new PressWindow("Bar", kKindDocument, resizable, RectFromXYWH(100, 120, 160, 90));
        GtkWidget *bar = gtk_menu_bar_new();
        gtk_menu_shell_append(GTK_MENU_SHELL(bar), gtk_menu_item_new_with_label("File"));
        gtk_widget_set_size_request(bar, -1, kBar);
        gtk_box_pack_start(GTK_BOX(gtk_bin_get_child(GTK_BIN(window->GtkWin()))), bar, FALSE, FALSE,
                           0);
        gtk_widget_show_all(bar);
        window->hasMenuBar = true;
        window->Show();
        Settle(100);
        ASSERT_EQ(MenuBarHeight(window), kBar);

        window->Resize(200, 100, false);
        window->Move(300, 200, false);
        Settle(150);
        int w = 0, h = 0, x = 0, y = 0;
        gtk_window_get_size(GTK_WINDOW(window->GtkWin()), &w, &h);
        EXPECT_EQ(w, 200) << resizable;
        EXPECT_EQ(h, 100 + kBar) << resizable;
        gdk_window_get_origin(window->GtkWin()->window, &x, &y);
        EXPECT_EQ(y, 200 - kBar) << resizable;
        const Rect kept = window->CurrentScreenBounds();
        EXPECT_EQ(kept.top, 200) << resizable;
        EXPECT_EQ(kept.bottom - kept.top, 100) << resizable;

        // Drawing at the content's top left lands below the bar.
        Graphics *g = window->NewGraphics();
        ASSERT_NE(g, nullptr);
        g->SetForeColor(ColorWordToRGB(0x0000FF));
        g->FillRect(RectFromXYWH(0, 0, 10, 10));
        delete g;
        gdk_flush();
        GdkDrawable *drawable = GDK_DRAWABLE(window->GtkWin()->window);
        EXPECT_EQ(test::PixelAt(drawable, 5, kBar + 5), 0x0000FFu) << resizable;
        EXPECT_NE(test::PixelAt(drawable, 5, kBar - 5), 0x0000FFu) << resizable;

        // A press 15 pixels below the bar is at content y 15.
        gdk_test_simulate_button(window->GtkWin()->window, 20, kBar + 15, 1, GdkModifierType(0),
                                 GDK_BUTTON_PRESS);
        Settle(40);
        EXPECT_EQ(window->pressedAt, "20,15") << resizable;
        gdk_test_simulate_button(window->GtkWin()->window, 20, kBar + 15, 1, GDK_BUTTON1_MASK,
                                 GDK_BUTTON_RELEASE);
        Settle(20);
        window->Close();
        Settle(10);
    }
}

TEST(MenuBar, AHiddenBarIsShownAgainOnceOrAtTheRunDown) {
    if (!test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    auto *window = new Window("Bar", 0, true, RectFromXYWH(40, 60, 200, 120));
    // A bar as the menus will put one above the content.
    GtkWidget *bar = gtk_menu_bar_new();
    gtk_menu_shell_append(GTK_MENU_SHELL(bar), gtk_menu_item_new_with_label("File"));
    GtkWidget *box = gtk_bin_get_child(GTK_BIN(window->GtkWin()));
    gtk_box_pack_start(GTK_BOX(box), bar, FALSE, FALSE, 0);
    gtk_widget_show_all(bar);
    window->hasMenuBar = true;
    window->Show();
    Settle(80);
    ASSERT_EQ(FrontWindow(), window);

    HideMenuBar();
    HideMenuBar();
    EXPECT_TRUE(MenuBarHidden());
    EXPECT_FALSE(GTK_WIDGET_VISIBLE(bar));
    ShowMenuBar();
    EXPECT_FALSE(MenuBarHidden());
    EXPECT_TRUE(GTK_WIDGET_VISIBLE(bar));
    EXPECT_EQ(ShutdownTaskListHead(), nullptr) << "no task while the bar is shown";

    HideMenuBar();
    EXPECT_FALSE(GTK_WIDGET_VISIBLE(bar));
    RunShutdownTasks();
    EXPECT_FALSE(MenuBarHidden());
    EXPECT_TRUE(GTK_WIDGET_VISIBLE(bar));
    window->Close();
    Settle(10);
}

} // namespace
} // namespace kelp
