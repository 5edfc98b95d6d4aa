// Keys at window level on a real window: Return and Enter press the default
// button, Escape the cancel button, Shift+F10 opens the contextual menu, the
// menu bar's key equivalents come first, and a text field keeps the keys it
// wants.  Panes stand in for buttons.
#include "support/settle.h"

#include "support/xvfb.h"
#include "windows/window.h"

#include <gdk/gdkkeysyms.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelp {
namespace {

std::vector<std::string> gLog;

using test::Settle;

class KeyWindow : public Window {
public:
    using Window::Window;
    bool KeyDown(int32_t character, int32_t, int32_t) override {
        gLog.push_back("window KeyDown " + std::to_string(character));
        return takesKeys;
    }
    bool ContextualMenu(int32_t x, int32_t y) override {
        gLog.push_back("contextual menu at " + std::to_string(x) + "," + std::to_string(y));
        return true;
    }
    bool takesKeys = false;
};

class StandInButton : public SubPane {
public:
    StandInButton(SubPane *parent, Rect r, bool isDefault)
        : SubPane(parent, r), mDefault(isDefault) {}
    bool IsDefaultButton() const override { return mDefault; }
    bool IsCancelButton() const override { return !mDefault; }
    void Press() override { gLog.push_back(mDefault ? "OK pressed" : "Cancel pressed"); }

private:
    bool mDefault;
};

class FieldPane : public SubPane {
public:
    FieldPane(SubPane *parent, Rect r) : SubPane(parent, r, gtk_entry_new()) {}
    bool KeyDown(int32_t character, int32_t, int32_t) override {
        gLog.push_back("field KeyDown " + std::to_string(character));
        return false;
    }
    bool WantsKey(int32_t, int32_t) override { return wants; }
    bool wants = false;
};

bool ControlKeysToMenus(Window *, int32_t character, int32_t modifiers) {
    if (!(modifiers & kModControl))
        return false;
    gLog.push_back("menu key " + std::to_string(character));
    return true;
}

TEST(WindowKeys, KeysReachMenusFocusWindowAndButtonsInTurn) {
    if (!test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    auto *window = new KeyWindow("Keys", kKindDocument, true, RectFromXYWH(40, 60, 240, 160));
    auto *ok = new StandInButton(window, RectFromXYWH(150, 120, 60, 24), true);
    new StandInButton(window, RectFromXYWH(80, 120, 60, 24), false);
    auto *field = new FieldPane(window, RectFromXYWH(20, 10, 120, 24));
    window->Show();
    Settle(100);
    GdkWindow *gw = window->GtkWin()->window;
    ASSERT_NE(gw, nullptr);
    SetMenuKeyOffer(&ControlKeysToMenus);

    const auto shift = GDK_SHIFT_MASK, control = GDK_CONTROL_MASK, none = GdkModifierType(0);
    // "left": the window leaves the key to the toolkit (its handler answers
    // false), which a direct call of the handler's step shows.
    // clang-format off
    const struct {
        const char *what;
        guint key;
        GdkModifierType modifiers;
        bool onField, fieldWants, windowTakes, okEnabled;
        std::vector<std::string> log;
    } cases[] = {
        {"Return", GDK_Return, none, false, false, false, true, {"window KeyDown 13", "OK pressed"}},
        {"Enter", GDK_KP_Enter, none, false, false, false, true, {"window KeyDown 3", "OK pressed"}},
        {"Escape", GDK_Escape, none, false, false, false, true, {"window KeyDown 27", "Cancel pressed"}},
        {"Return the window takes", GDK_Return, none, false, false, true, true, {"window KeyDown 13"}},
        {"Return, default disabled", GDK_Return, none, false, false, false, false, {"window KeyDown 13", "left"}},
        {"Shift+F10", GDK_F10, shift, true, false, false, true, {"contextual menu at 20,10"}},
        {"Control+k", GDK_k, control, true, true, false, true, {"menu key 107"}},
        {"x kept by the field", GDK_x, none, true, true, true, true, {"field KeyDown 120", "left"}},
        {"x not kept", GDK_x, none, true, false, true, true, {"field KeyDown 120", "window KeyDown 120"}},
        {"Return kept by the field", GDK_Return, none, true, true, true, true, {"field KeyDown 13", "left"}},
    };
    // clang-format on
    // A first key (Shift alone, which nothing takes) brings any focus-in
    // the window is still due before the cases set the focus.
    gdk_test_simulate_key(gw, -1, -1, GDK_Shift_L, none, GDK_KEY_PRESS);
    Settle(100);
    for (const auto &c : cases) {
        for (bool throughTheServer : {true, false}) {
            Settle(20); // a late focus-in must not move the focus set below
            gLog.clear();
            field->wants = c.fieldWants;
            window->takesKeys = c.windowTakes;
            ok->SetEnabled(c.okEnabled, false);
            if (c.onField) {
                gtk_widget_grab_focus(field->GetWidget());
                SetFocus(field);
            } else {
                gtk_window_set_focus(GTK_WINDOW(window->GtkWin()), nullptr);
                SetFocus(window);
            }
            std::vector<std::string> expected = c.log;
            if (throughTheServer) {
                gdk_test_simulate_key(gw, -1, -1, c.key, c.modifiers, GDK_KEY_PRESS);
                if (!expected.empty() && expected.back() == "left")
                    expected.pop_back();
                test::SettleUntil([&] { return gLog.size() >= expected.size(); });
                Settle(20); // and nothing more arrives
            } else if (!window->KeyPress(c.key, 0, ModifiersFromState(c.modifiers))) {
                gLog.push_back("left");
            }
            EXPECT_EQ(gLog, expected) << c.what << (throughTheServer ? "" : ", called directly");
        }
    }
    SetMenuKeyOffer(nullptr);
    window->Close();
    Settle(10);
}

} // namespace
} // namespace kelp
