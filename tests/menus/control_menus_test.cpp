// Menus on a window of controls.  A right click through the X server on a
// button and on the window's own ground builds the contextual menu in the
// events of the control or the view, the person picks an entry with the
// keyboard while the menu holds the grab, and the hit item comes back to
// the same chain; a ContextualMenu control's rows do the same from Open.
// A shortcut reaches the focused control's handler before the window's.
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

bool gControlTakes = true;
uint8_t ControlCopy(RuntimeObject *me, int32_t) {
    Events().push_back("Control " + NameOf(me));
    return gControlTakes;
}
uint8_t WindowCopy(RuntimeObject *, int32_t) {
    Events().push_back("Window");
    return 1;
}
uint8_t TakeKey(RuntimeObject *, KelpString key) {
    Events().push_back(std::string("KeyDown ") + TextOf(key));
    return 1;
}

// A bar given to a built window, whose Copy item only the focused button's
// handler (or the window's, after it) enables and takes.
TEST_F(ContextualTest, AShortcutGoesToTheFocusedControlBeforeTheWindow) {
    RuntimeObject *w =
        MakeWindow(300, 150,
                   [](RuntimeObject *view) {
                       for (const char *name : {"Press", "Other"})
                           Add(view, "PushButton", name, [name](MassData &m) {
                               m.Int("Left", name[0] == 'P' ? 20 : 150).Int("Top", 20);
                               m.Int("Width", 100).Int("Height", 30).Text("Caption", name);
                           });
                   },
                   {{"KeyDown", reinterpret_cast<void *>(&TakeKey)}});
    RuntimeObject *bar = RuntimeNewObject(RuntimeLookupClass(Lit("MenuBar")));
    RuntimeObject *edit = RuntimeNewObject(RuntimeLookupClass(Lit("MenuItem")));
    RuntimeObject *copy = RuntimeNewObject(RuntimeLookupClass(Lit("MenuItem")));
    RuntimeMenuItemTextSetter(edit, 0, Lit("Edit"));
    RuntimeMenuItemNameSetter(copy, 0, Lit("EditCopy"));
    RuntimeMenuItemTextSetter(copy, 0, Lit("Copy"));
    RuntimeMenuItemCommandKeySetter(copy, 0, Lit("Ctrl+C"));
    RuntimeMenuItemAppend(edit, copy);
    RuntimeMenuItemAppend(bar, edit);
    const int before = View(w)->pane->height;
    WindowMenuBarSetter(w, 0, bar);
    Settle(150);
    EXPECT_GT(MenuBarHeight(View(w)->pane), 0);
    EXPECT_EQ(View(w)->pane->height, before) << "the content keeps its size";
    ControlAddMenuHandler(Find(w, "Press"), Lit("EditCopy"),
                          reinterpret_cast<void *>(&ControlCopy));
    Focus(w);
    struct Case {
        const char *focus;
        bool controlTakes;
        std::vector<std::string> events;
    } cases[] = {
        {"Other", true, {"KeyDown c"}}, // nobody has Copy enabled: the key goes on
        {"Press", true, {"Control Press"}},
        {"Press", false, {"Control Press", "Window"}},
    };
    for (const Case &c : cases) {
        RuntimeSetFocus(Find(w, c.focus));
        if (c.controlTakes == false)
            WindowAddMenuHandler(w, Lit("EditCopy"), reinterpret_cast<void *>(&WindowCopy));
        gControlTakes = c.controlTakes;
        Events().clear();
        Key("ctrl+c");
        EXPECT_EQ(Events(), c.events) << c.focus << " " << c.controlTakes;
    }
    WindowMenuBarSetter(w, 0, nullptr);
    Settle(100);
    EXPECT_EQ(MenuBarHeight(View(w)->pane), 0);
    for (RuntimeObject *o : {copy, edit, bar})
        RuntimeUnlockObject(o);
}

} // namespace
} // namespace kelp::test
