// Contextual menus on a real window: a right click through the X server on
// a button and on the window's own ground builds the menu in the events of
// the control or the view, the person picks an entry with the keyboard
// while the menu holds the grab, and the hit item comes back to the same
// chain.  A ContextualMenu control's rows do the same from Open.
#include "controls/control_fixture.h"

#include "support/class_kit.h"

#include "kelp/menus.h"

namespace kelp::test {
namespace {

std::string TextOfItem(RuntimeObject *item) {
    KelpString text = RuntimeMenuItemTextGetter(item, 0);
    std::string s = TextOf(text);
    objtext::Release(text);
    return s;
}

void AddEntry(RuntimeObject *base, const char *text) {
    RuntimeObject *item = RuntimeNewObject(RuntimeLookupClass(Lit("MenuItem")));
    RuntimeMenuItemTextSetter(item, 0, Lit(text));
    RuntimeMenuItemAppend(base, item);
    RuntimeUnlockObject(item);
}

uint8_t ButtonBuilds(RuntimeObject *me, RuntimeObject *base, int32_t x, int32_t y) {
    Events().push_back("Build " + NameOf(me) + " " + std::to_string(x) + "," + std::to_string(y));
    AddEntry(base, "Copy");
    AddEntry(base, "Paste");
    return 1;
}
uint8_t ButtonHit(RuntimeObject *me, RuntimeObject *hit) {
    Events().push_back("Hit " + NameOf(me) + " " + TextOfItem(hit));
    return 1;
}
uint8_t ViewBuilds(RuntimeObject *, RuntimeObject *base, int32_t, int32_t) {
    Events().push_back("Build window");
    AddEntry(base, "-");
    AddEntry(base, "Select All");
    return 1;
}
uint8_t ViewHit(RuntimeObject *, RuntimeObject *hit) {
    Events().push_back("Hit window " + TextOfItem(hit));
    return 1;
}
void RowChosen(RuntimeObject *, KelpString text) {
    Events().push_back(std::string("Row ") + TextOf(text));
}

// Keys for the menu once it is up and holds the grab.
void PressWhileOpen(const char *keys) {
    g_timeout_add(
        250,
        [](gpointer data) -> gboolean {
            XDoTool(std::string("key ") + static_cast<const char *>(data));
            return FALSE;
        },
        const_cast<char *>(keys));
}

class ContextualTest : public ControlFixture {};

TEST_F(ContextualTest, ARightClickBuildsTheMenuAndTheHitGoesBackToItsBuilder) {
    RuntimeObject *w =
        MakeWindow(300, 150,
                   [](RuntimeObject *view) {
                       Add(view, "PushButton", "Press",
                           [](MassData &m) {
                               m.Int("Left", 20).Int("Top", 20).Int("Width", 100).Int("Height", 30);
                               m.Text("Caption", "Press");
                           },
                           {{"ConstructContextualMenu", reinterpret_cast<void *>(&ButtonBuilds)},
                            {"ContextualMenuAction", reinterpret_cast<void *>(&ButtonHit)}});
                   },
                   {{"ConstructContextualMenu", reinterpret_cast<void *>(&ViewBuilds)},
                    {"ContextualMenuAction", reinterpret_cast<void *>(&ViewHit)}});
    Focus(w);
    struct Case {
        int x, y;
        const char *keys; // Down selects the first entry a separator does not hide
        std::vector<std::string> events;
    } cases[] = {
        {30, 30, "Down Down Return", {"Build Press 10,10", "Hit Press Paste"}},
        {200, 100, "Down Return", {"Build window", "Hit window Select All"}},
        {200, 100, "Escape", {"Build window"}},
    };
    for (const Case &c : cases) {
        Events().clear();
        int ox = 0, oy = 0;
        gdk_window_get_origin(Fixed(w)->window, &ox, &oy);
        PressWhileOpen(c.keys);
        ASSERT_TRUE(XDoTool("mousemove " + std::to_string(ox + c.x) + " " +
                            std::to_string(oy + c.y) + " click 3"));
        Settle(700);
        EXPECT_EQ(Events(), c.events) << c.x << "," << c.y << " " << c.keys;
    }
}

TEST_F(ContextualTest, AContextualMenuControlTellsItsActionTheChosenRow) {
    RuntimeObject *w = MakeWindow(200, 100, [](RuntimeObject *) {});
    Focus(w);
    RuntimeClass *klass = MakeSubclass("ContextualMenu", "Choices");
    ASSERT_TRUE(SetEventHandler(klass, "Action", reinterpret_cast<void *>(&RowChosen)));
    RuntimeObject *menu = RuntimeNewObject(klass);
    contextualMenuAddRow(menu, Lit("First"));
    contextualMenuAddSeparator(menu);
    contextualMenuAddRow(menu, Lit("Second"));
    Events().clear();
    PressWhileOpen("Down Down Return");
    contextualMenuOpen(menu);
    EXPECT_EQ(Events(), std::vector<std::string>{"Row Second"});
    contextualMenuResetContent(menu);
    contextualMenuOpen(menu); // no rows: nothing opens, nothing waits
    EXPECT_EQ(Events().size(), 1u);
    RuntimeUnlockObject(menu);
}

} // namespace
} // namespace kelp::test
