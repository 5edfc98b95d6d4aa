// The Keyboard object against keys held down on the X server with xdotool.
#include "support/class_kit.h"
#include "support/x_input.h"
#include "support/xvfb.h"

#include "process/process_state.h"

#include "kelp/kelp.h"

#include <gdk/gdkkeysyms.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <chrono>

// X's own header defines names (None, Bool) that others use: it comes last.
#include <gdk/gdkx.h>

namespace kelp {
namespace {

// Runs the toolkit for a moment, so that the key events reach the snooper.
void Pump() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(250);
    while (std::chrono::steady_clock::now() < end)
        gtk_main_iteration_do(FALSE);
}

TEST(Keyboard, KeysHeldDownReadAsHeld) {
    if (!test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    ReadTheme(); // the bring-up's step that puts the key snooper in place
    GtkWidget *window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_widget_set_size_request(window, 100, 100);
    gtk_widget_show(window);
    Pump();
    const std::string target = " --window " + std::to_string(GDK_WINDOW_XID(window->window)) + " ";
    RuntimeObject *keyboard = getKeyboardObject();
    struct Held {
        int32_t code;
        bool down;
    };
    struct Case {
        const char *keys;
        std::vector<Held> codes;     // AsyncKeyDown
        std::vector<Held> modifiers; // asyncModifierKeyGetter by mask
    } cases[] = {
        {"shift+a",
         {{0, true}, {56, true}, {60, false}},
         {{0x200, true}, {-2, true}, {0x1000, false}, {0x800, false}}},
        // A plain A gives the lower-case keyval: letter key A doesn't read as held.
        {"a", {{0, false}, {56, false}}, {{0x200, false}}},
        {"Home", {{115, true}, {GDK_Home, true}, {GDK_End, false}}, {}},
        {"ctrl+Return", {{36, true}, {59, true}}, {{0x1000, true}, {-1, true}, {0x200, false}}},
        {"Alt_R+Escape", {{53, true}, {61, true}, {58, false}}, {{0x800, true}, {0x100, false}}},
        {"Super_L", {{55, true}}, {{0x100, true}}},
    };
    for (const Case &c : cases) {
        ASSERT_TRUE(test::XDoTool("keydown" + target + c.keys)) << c.keys;
        Pump();
        for (const Held &h : c.codes)
            EXPECT_EQ(keyboardAsyncKeyDown(keyboard, h.code), h.down) << c.keys << " " << h.code;
        for (const Held &h : c.modifiers)
            EXPECT_EQ(asyncModifierKeyGetter(keyboard, h.code), h.down) << c.keys << " " << h.code;
        test::XDoTool("keyup" + target + c.keys);
        Pump();
        for (const Held &h : c.codes)
            EXPECT_FALSE(keyboardAsyncKeyDown(keyboard, h.code)) << c.keys << " released";
    }
    EXPECT_FALSE(keyboardAsyncKeyDown(keyboard, 10)) << "a number with no key";
    gtk_widget_destroy(window);
    RuntimeUnlockObject(keyboard);
}

TEST(Keyboard, KeyNames) {
    struct Case {
        int32_t code;
        const char *name;
    } cases[] = {{0x35, "Esc"}, {0x51, ""}, {0x7E, "Up"}, {0x4C, "Enter"}, {200, "key200"}};
    RuntimeObject *keyboard = getKeyboardObject();
    for (const Case &c : cases) {
        KelpString name = keyboardKeyName(keyboard, c.code);
        EXPECT_EQ(test::Str(name), c.name);
        RuntimeUnlockString(name);
    }
    RuntimeUnlockObject(keyboard);
}

} // namespace
} // namespace kelp
