// The drill's bar on real windows under the private X server: opened and
// chosen with the mouse through xdotool, shortcuts typed as real keys, the
// enable cycle's log, clones that follow every change, and the texts and
// keys the items are given.
#include "menu_fixture.h"

#include "process/quit.h"
#include "support/class_kit.h"

#include <algorithm>
#include <filesystem>

namespace kelp::test {
namespace {

using Log = std::vector<std::string>;

bool Sensitive(XMenuGTK *entry) { return GTK_WIDGET_SENSITIVE(entry->ItemWidget()) != 0; }

// What the X server shows around the window, with any menu open over it.
bool SaveScreen(RuntimeObject *w, const std::string &path) {
    GdkWindow *root = gdk_get_default_root_window();
    int x = 0, y = 0;
    gdk_window_get_origin(reinterpret_cast<ViewRecord *>(w)->pane->GtkWin()->window, &x, &y);
    GdkPixbuf *shot = gdk_pixbuf_get_from_drawable(nullptr, root, nullptr, x, y, 0, 0, 320, 240);
    bool saved = shot && gdk_pixbuf_save(shot, path.c_str(), "png", nullptr, nullptr);
    if (shot)
        g_object_unref(shot);
    return saved;
}

TEST_F(MenuFixture, TheBarOpensWithTheMouseAfterTheEnableCycle) {
    RuntimeObject *w = MakeWindow("Drill");
    ASSERT_NE(BarOf(w), nullptr);
    EXPECT_EQ(MenuBarHeight(Pane(w)), BarOf(w)->BarWidget()->allocation.height);
    EXPECT_GT(MenuBarHeight(Pane(w)), 10);
    int width = 0, height = 0;
    gtk_window_get_size(GTK_WINDOW(Pane(w)->GtkWin()), &width, &height);
    EXPECT_EQ(height, 200 + MenuBarHeight(Pane(w))) << "the content keeps its size";

    MenuLog().clear();
    ClickEntry(Entry(w, 0));
    Settle(200);
    // Every item gets EnableMenu, depth first; then the window, then the
    // application.
    EXPECT_EQ(MenuLog(),
              (Log{"EnableMenu UntitledMenu0", "EnableMenu FileEndThisRound", "EnableMenu FileQuit",
                   "EnableMenu Info", "EnableMenu InfoAbout", "EnableMenu InfoHelp",
                   "Window.EnableMenuItems", "App.EnableMenuItems"}));
    ASSERT_TRUE(GTK_WIDGET_MAPPED(Entry(w, 0)->MenuWidget()));
    std::filesystem::create_directories("screenshots");
    EXPECT_TRUE(SaveScreen(w, "screenshots/menus_file_open.png"));
    // AutoEnable off and no code enables it: "End This Round" stays grey,
    // and a click on it does nothing.
    EXPECT_FALSE(Sensitive(Entry(w, 0, 0)));
    EXPECT_TRUE(Sensitive(Entry(w, 0, 1))) << "QuitMenuItem enables itself";
    MenuLog().clear();
    ClickEntry(Entry(w, 0, 0));
    Settle(150);
    EXPECT_EQ(Count("Action FileEndThisRound"), 0);
    PressKey("Escape");
    Settle(200);

    // Info > About...: the application's handler answers false, so the
    // item's own Action runs after it, each once.
    ClickEntry(Entry(w, 1));
    Settle(200);
    MenuLog().clear();
    ClickEntry(Entry(w, 1, 0));
    Settle(200);
    EXPECT_EQ(Count("App.InfoAbout"), 1);
    EXPECT_EQ(Count("Action InfoAbout"), 1);
    auto at = [](const char *line) { return std::find(MenuLog().begin(), MenuLog().end(), line); };
    EXPECT_LT(at("App.InfoAbout"), at("Action InfoAbout"));
}

TEST_F(MenuFixture, EachShortcutFiresOnceAndOnlyWithItsModifiers) {
    RuntimeObject *w = MakeWindow("Keys");
    RuntimeMenuItemCommandKeySetter(Bar().endRound, 0, Lit("Ctrl+E"));
    struct Case {
        const char *keys;
        Log log;
    } cases[] = {
        {"ctrl+h", {"App.InfoHelp", "Action InfoHelp"}}, // "H" is the key h
        {"h", {"Window.KeyDown h"}},                     // no Control: no shortcut
        {"ctrl+shift+h", {"Window.KeyDown H"}},          // Shift is not in "Ctrl+H"
        {"ctrl+e", {"Window.KeyDown e"}},                // disabled: the window gets it
    };
    for (const Case &c : cases) {
        MenuLog().clear();
        ASSERT_TRUE(PressKey(c.keys));
        Settle(150);
        Log seen;
        for (const std::string &line : MenuLog())
            if (line.rfind("EnableMenu", 0) != 0 &&
                line.find("EnableMenuItems") == std::string::npos)
                seen.push_back(line);
        EXPECT_EQ(seen, c.log) << c.keys;
    }
    // Ctrl+Q: the default action of QuitMenuItem ends the application.
    ASSERT_TRUE(PressKey("ctrl+q"));
    Settle(150);
    EXPECT_TRUE(QuitRequested());
    EXPECT_EQ(Pane(w), nullptr) << "the window closed with the application";
}

TEST_F(MenuFixture, ClonesInTwoWindowsFollowEveryChange) {
    RuntimeObject *a = MakeWindow("First");
    RuntimeObject *b = MakeWindow("Second");
    ASSERT_NE(BarOf(a), BarOf(b));
    RuntimeObject *sep = RuntimeNewObject(RuntimeLookupClass(Lit("MenuItem")));
    RuntimeObject *extra = RuntimeNewObject(RuntimeLookupClass(Lit("MenuItem")));
    RuntimeMenuItemTextSetter(extra, 0, Lit("Save && Quit"));
    struct Case {
        const char *change;
        void (*apply)(RuntimeObject *sep, RuntimeObject *extra);
        std::vector<std::string> fileLabels; // "---" for a separator
    } cases[] = {
        {"text",
         [](RuntimeObject *, RuntimeObject *) {
             RuntimeMenuItemTextSetter(Bar().quit, 0, Lit("&Quit_Now"));
         },
         {"End This Round", "_Quit__Now"}},
        {"insert",
         [](RuntimeObject *s, RuntimeObject *e) {
             RuntimeMenuItemTextSetter(s, 0, Lit("-"));
             RuntimeMenuItemInsert(Bar().file, 1, s);
             RuntimeMenuItemAppend(Bar().file, e);
         },
         {"End This Round", "---", "_Quit__Now", "Save & Quit"}},
        {"check",
         [](RuntimeObject *, RuntimeObject *e) { RuntimeMenuItemCheckedSetter(e, 0, 1); },
         {"    End This Round", "---", "    _Quit__Now", "    Save & Quit"}},
        {"separator back",
         [](RuntimeObject *s, RuntimeObject *e) {
             RuntimeMenuItemCheckedSetter(e, 0, 0);
             RuntimeMenuItemTextSetter(s, 0, Lit("Pause"));
         },
         {"End This Round", "Pause", "_Quit__Now", "Save & Quit"}},
        {"remove",
         [](RuntimeObject *s, RuntimeObject *) {
             RuntimeMenuItemRemoveItem(Bar().file, s);
             RuntimeMenuItemRemoveIndex(Bar().file, 2);
         },
         {"End This Round", "_Quit__Now"}},
    };
    for (const Case &c : cases) {
        c.apply(sep, extra);
        for (RuntimeObject *w : {a, b}) {
            XMenuGTK *file = Entry(w, 0);
            std::vector<std::string> labels;
            for (int32_t i = 0; i < file->Count(); ++i)
                labels.push_back(file->Native(i)->IsSeparator() ? "---"
                                                                : file->Native(i)->LabelText());
            EXPECT_EQ(labels, c.fileLabels) << c.change;
            GList *shown = gtk_container_get_children(GTK_CONTAINER(file->MenuWidget()));
            EXPECT_EQ(g_list_length(shown), c.fileLabels.size()) << c.change;
            g_list_free(shown);
        }
    }
    // Enabling an item enables the titles above it, in both windows.
    RuntimeMenuItemEnabledSetter(Bar().file, 0, 0);
    RuntimeMenuItemEnabledSetter(Bar().endRound, 0, 1);
    EXPECT_TRUE(RuntimeMenuItemEnabledGetter(Bar().file, 0));
    EXPECT_TRUE(Sensitive(Entry(b, 0, 0)));
    RuntimeUnlockObject(sep);
    RuntimeUnlockObject(extra);
    // A closed window's clone goes; the other stays.
    RuntimeCloseWindow(a);
    Settle(50);
    EXPECT_EQ(Entry(b, 0)->Count(), 2);
    EXPECT_EQ(RuntimeMenuItemCount(Bar().file), 2);
}

// The key and its modifiers in the accelerator table, for a shortcut text.
TEST_F(MenuFixture, ShortcutTextsGiveTheirKeysAndModifiers) {
    const uint32_t C = GDK_CONTROL_MASK, S = GDK_SHIFT_MASK, A = GDK_MOD1_MASK;
    struct Case {
        const char *text;
        const char *key;
        uint32_t modifiers;
    } cases[] = {
        {"Ctrl+Q", "Q", C},
        {"Q", "Q", C},
        {"Ctrl+", "+", C},
        {"Salt", "t", C | A},
        {"Shift+Ctrl+S", "S", C | S},
        {"option-shft-z", "z", C | S | A},
        {"", "", 0},
    };
    for (const Case &c : cases) {
        RuntimeMenuItemCommandKeySetter(Bar().about, 0, Lit(c.text));
        std::string key;
        uint32_t modifiers = 0;
        for (const AccelRow &row : AcceleratorTable())
            if (row.item == MenuImpOf(Bar().about))
                key = row.key, modifiers = row.modifiers;
        EXPECT_EQ(key, c.key) << c.text;
        EXPECT_EQ(modifiers, c.modifiers) << c.text;
    }
}

TEST_F(MenuFixture, LookupsAndBadArguments) {
    RuntimeObject *found = RuntimeMenuItemLookup(Bar().bar, Lit("infohelp"));
    EXPECT_EQ(found, Bar().help) << "_Lookup descends and knows no case";
    RuntimeUnlockObject(found);
    EXPECT_EQ(RuntimeMenuItemChild(Bar().bar, Lit("InfoHelp")), nullptr) << "Child: direct only";
    RuntimeMenuItemIndexSetter(Bar().help, 0, 2);
    found = RuntimeMenuItemLookupArray(Bar().bar, Lit("InfoHelp"), 2);
    EXPECT_EQ(found, Bar().help);
    RuntimeUnlockObject(found);
    EXPECT_EQ(RuntimeMenuItemLookup(Bar().bar, Lit("InfoHelp")), nullptr)
        << "plain _Lookup wants an item outside any array";

    struct Case {
        const char *call;
        void (*run)();
        const char *exception;
    } cases[] = {
        {"Item(2)", [] { EXPECT_EQ(RuntimeMenuItemItem(Bar().bar, 2), nullptr); }, "OutOfBounds"},
        {"Insert(3)", [] { RuntimeMenuItemInsert(Bar().bar, 3, Bar().help); }, "OutOfBounds"},
        {"Remove(-1)", [] { RuntimeMenuItemRemoveIndex(Bar().file, -1); }, "OutOfBounds"},
        {"nil.Text", [] { EXPECT_EQ(RuntimeMenuItemTextGetter(nullptr, 0), nullptr); },
         "NilObject"},
        {"Append(nil)", [] { RuntimeMenuItemAppend(Bar().bar, nullptr); }, "NilObject"},
    };
    RuntimeEnterHandlerRegion();
    for (const Case &c : cases) {
        c.run();
        RuntimeObject *pending = RuntimeTakeException();
        ASSERT_NE(pending, nullptr) << c.call;
        EXPECT_NE(std::string(TextOf(GetObjectClass(pending)->name)).find(c.exception),
                  std::string::npos)
            << c.call;
        RuntimeUnlockObject(pending);
    }
    RuntimeLeaveHandlerRegion();
    EXPECT_EQ(RuntimeMenuItemCount(Bar().bar), 2);
    EXPECT_EQ(RuntimeMenuItemCount(Bar().file), 2);

    // A new member of the InfoHelp array goes behind its group with the
    // next index; _Swap puts an item in the place of a named one.
    RuntimeObject *more = RuntimeNewObject(RuntimeLookupClass(Lit("MenuItem")));
    RuntimeMenuItemNameSetter(more, 0, Lit("InfoAbout"));
    RuntimeMenuItemIndexSetter(Bar().about, 0, 0);
    MenuBarInstallClone(Bar().bar, more);
    EXPECT_EQ(RuntimeMenuItemIndexGetter(more, 0), 1);
    ASSERT_EQ(RuntimeMenuItemCount(Bar().info), 3);
    found = RuntimeMenuItemItem(Bar().info, 1);
    EXPECT_EQ(found, more);
    RuntimeUnlockObject(found);
    RuntimeMenuItemSwap(Bar().info, Lit("InfoHelp"), Bar().endRound);
    found = RuntimeMenuItemItem(Bar().info, 2);
    EXPECT_EQ(found, Bar().endRound);
    RuntimeUnlockObject(found);
    EXPECT_EQ(RuntimeMenuItemCount(Bar().file), 2) << "an item may stand in two menus";
    RuntimeUnlockObject(more);

    // A bar that is no menu at all: windows show none, and nothing breaks.
    AppMenuBarSetter(mApp, 0, mApp);
    RuntimeObject *w = MakeWindow("No bar");
    EXPECT_EQ(BarOf(w), nullptr);
    EXPECT_EQ(MenuBarHeight(Pane(w)), 0);
    enableMenuItems();
    AppMenuBarSetter(mApp, 0, nullptr);
}

} // namespace
} // namespace kelp::test
