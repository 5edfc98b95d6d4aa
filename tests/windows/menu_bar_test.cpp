// Hiding the menu bar comes with the promise that it comes back at the
// run-down, on a real window with a real bar.
#include "runloop/main_loop.h"
#include "shutdown/shutdown_task.h"
#include "support/xvfb.h"
#include "windows/menu_bar.h"
#include "windows/window.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <chrono>

namespace kelp {
namespace {

void Settle(int ms) {
    guint wake = g_timeout_add(
        5, [](gpointer) -> gboolean { return TRUE; }, nullptr);
    auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (std::chrono::steady_clock::now() < end)
        MainLoopStep(true);
    g_source_remove(wake);
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
