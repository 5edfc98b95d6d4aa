// The appearance control pack in real windows under a private X server:
// loaded as the plug-in it is, its controls laid out the way compiled code
// lays them out, drawn by the toolkit, read back pixel by pixel, and
// pressed with real X input.
#include "controls/control_fixture.h"
#include "graphics/pixels.h"

#include "pictures/drawable.h"
#include "pictures/picture_object.h"
#include "plugins/host.h"

#include "base/fatal_report.h"

#include "kelp/plugin.h"

#include <filesystem>
#include <thread>

namespace kelp::test {
namespace {

void LogUp(RuntimeObject *me) { Events().push_back("Up " + NameOf(me)); }
void LogDown(RuntimeObject *me) { Events().push_back("Down " + NameOf(me)); }

uint32_t Rgb(const GdkColor &c) {
    return uint32_t((c.red >> 8) << 16 | (c.green >> 8) << 8 | (c.blue >> 8));
}

class PackTest : public ControlFixture {
protected:
    void SetUp() override {
        ControlFixture::SetUp();
        if (IsSkipped())
            return;
        static const bool loaded = [] {
            RuntimeInitExternalClasses();
            std::string error;
            bool ok = plugins::LoadPluginLibrary(KELP_BIN_DIR "/libKPAppearancePak.so", "", error);
            plugins::LinkPluginClasses(nullptr);
            plugins::ForgetEntryTableForTest(); // the pack's entries join the table
            return ok;
        }();
        ASSERT_TRUE(loaded);
    }
    uint32_t Pixel(RuntimeObject *w, int x, int y) {
        return PixelAt(GDK_DRAWABLE(Fixed(w)->window), x, y);
    }
    GtkStyle *StyleOf(RuntimeObject *control) {
        return gtk_widget_get_style(static_cast<GtkWidget *>(KELPGetControlHandle(control)));
    }
    void Shot(RuntimeObject *w, const char *name) {
        std::filesystem::create_directories("screenshots");
        EXPECT_TRUE(SaveScreenshot(Fixed(w), std::string("screenshots/") + name));
    }
};

TEST_F(PackTest, PlacardInEachStateByPixels) {
    RuntimeObject *w = MakeWindow(360, 120, [](RuntimeObject *view) {
        Add(view, "Placard", "Plain", [](MassData &m) { Box(m, 10, 10, 100, 40); });
        Add(view, "Placard", "Pressed",
            [](MassData &m) { Box(m, 130, 10, 100, 40).Bool("Value", true); });
        Add(view, "Placard", "Off",
            [](MassData &m) { Box(m, 250, 10, 100, 40).Bool("Enabled", false); });
        Add(view, "Placard", "Wide", [](MassData &m) { Box(m, 10, 60, 340, 50); });
    });
    Shot(w, "placards.png");
    const uint32_t white = 0xFFFFFF, grey = 0xCECECE, black = 0;
    GtkStyle *s = StyleOf(Find(w, "Plain"));
    struct Case {
        const char *name;
        int x;
        uint32_t fill, topLeft, bottomRight;
    } cases[] = {
        {"Plain", 10, Rgb(s->bg[GTK_STATE_NORMAL]), white, grey},
        {"Pressed", 130, Rgb(s->bg[GTK_STATE_ACTIVE]), grey, white},
        // Disabled: no bevel, the fill reaches the outline.
        {"Off", 250, Rgb(s->fg[GTK_STATE_INSENSITIVE]), Rgb(s->fg[GTK_STATE_INSENSITIVE]),
         Rgb(s->fg[GTK_STATE_INSENSITIVE])},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(Pixel(w, c.x + 50, 30), c.fill) << c.name;
        EXPECT_EQ(Pixel(w, c.x, 10), black) << c.name; // outline, top left
        EXPECT_EQ(Pixel(w, c.x + 98, 48),
                  c.bottomRight == grey || c.bottomRight == white ? c.bottomRight : c.fill)
            << c.name;                                          // bottom bevel
        EXPECT_EQ(Pixel(w, c.x + 99, 49), black) << c.name;     // outline, bottom right
        EXPECT_EQ(Pixel(w, c.x + 50, 11), c.topLeft) << c.name; // top bevel
        EXPECT_EQ(Pixel(w, c.x + 1, 30), c.topLeft) << c.name;  // left bevel
        EXPECT_EQ(Pixel(w, c.x + 98, 30), c.bottomRight) << c.name;
        EXPECT_EQ(Pixel(w, c.x + 100, 30), 0xFFFFFFu) << c.name; // the window behind
    }
    // Value set while shown swaps the shades at the next paint.
    ASSERT_TRUE(KELPSetPropValueBoolean(Find(w, "Plain"), "Value", 1));
    Settle(100);
    EXPECT_EQ(Pixel(w, 60, 11), grey);
    EXPECT_EQ(Pixel(w, 60, 48), white);
}

TEST_F(PackTest, PlacardPassesClicksOnUnlessHandled) {
    RuntimeObject *w = MakeWindow(240, 100, [](RuntimeObject *view) {
        Add(view, "Placard", "Quiet", [](MassData &m) { Box(m, 10, 10, 100, 60); });
        Add(view, "Placard", "Listening", [](MassData &m) { Box(m, 120, 10, 100, 60); },
            {{"MouseDown", H(TakeMouseDown)}, {"MouseUp", H(LogMouseUp)}});
    });
    ASSERT_TRUE(ClickAt(Fixed(w), 30, 20));
    Settle(80);
    EXPECT_TRUE(Events().empty());
    ASSERT_TRUE(ClickAt(Fixed(w), 135, 27));
    Settle(80);
    ASSERT_EQ(Events().size(), 2u);
    EXPECT_EQ(Events()[0], "MouseDown Listening 15,17"); // relative to the placard
    EXPECT_EQ(Events()[1], "MouseUp Listening");
}

TEST_F(PackTest, OtherControlsDrawAndAnswer) {
    RuntimeObject *w = MakeWindow(300, 120, [](RuntimeObject *view) {
        Add(view, "Separator", "Rule", [](MassData &m) { Box(m, 10, 10, 100, 4); });
        Add(view, "PopupArrow", "Mark",
            [](MassData &m) { Box(m, 120, 10, 10, 10).Int("Facing", 3); });
        Add(view, "DisclosureTriangle", "Tri", [](MassData &m) { Box(m, 140, 10, 12, 12); },
            {{"Action", H(LogAction)}});
        Add(view, "ImageWell", "Well", [](MassData &m) { Box(m, 160, 10, 32, 32); });
        Add(view, "ChasingArrows", "Ring", [](MassData &m) { Box(m, 200, 10, 16, 16); });
        Add(view, "LittleArrows", "Spin", [](MassData &m) { Box(m, 230, 10, 13, 23); },
            {{"Up", H(LogUp)}, {"Down", H(LogDown)}});
        Add(view, "BevelButton", "Bevel",
            [](MassData &m) { Box(m, 10, 60, 100, 30).Text("Caption", "Go").Int("ButtonType", 1); },
            {{"Action", H(LogAction)}});
    });
    Shot(w, "appearance_pack.png");
    struct Case {
        const char *what;
        int x, y;
        uint32_t rgb;
    } pixels[] = {
        {"separator line", 50, 12, 0x8F8F8F}, {"separator light", 50, 13, 0xFFFFFF},
        {"arrow, down", 124, 11, 0x000000},   {"well inside", 176, 26, 0xFFFFFF},
        {"well box", 161, 26, 0x000000},      {"well edge", 176, 10, 0x8F8F8F},
        {"bevel outline", 10, 60, 0x000000},  {"bevel light", 50, 61, 0xFFFFFF},
        {"bevel shade", 50, 88, 0xCECECE},
    };
    for (const Case &c : pixels)
        EXPECT_EQ(Pixel(w, c.x, c.y), c.rgb) << c.what;
    // The ring's dots are of its eight greys.
    const uint32_t dot = Pixel(w, 200 + 6 + 1, 10 + 1);
    EXPECT_TRUE(dot >= 0x64686A && dot <= 0xBDC1C3 && (dot & 0xFF) == ((dot >> 16) & 0xFF) + 6)
        << std::hex << dot;
    // A red picture of 10 x 6 in the well: centred in its box.
    RuntimeObject *red = NewPictureOfSize(10, 6);
    StoreOf(red)->Fill(0xFF0000);
    ASSERT_TRUE(KELPSetPropValueObject(Find(w, "Well"), "Image", red));
    RuntimeUnlockObject(red); // the well holds it
    Settle(100);
    EXPECT_EQ(Pixel(w, 176, 26), 0xFF0000u);
    EXPECT_EQ(Pixel(w, 176 - 6, 26), 0xFFFFFFu);
    EXPECT_EQ(Pixel(w, 176, 26 + 4), 0xFFFFFFu);
    // An icon on the bevel button, from the inner box's top left by 2, 3.
    RuntimeObject *bevel = Find(w, "Bevel");
    ASSERT_TRUE(KELPSetPropValueInt(bevel, "IconAlign", 6) &&
                KELPSetPropValueInt(bevel, "IconDX", 2) && KELPSetPropValueInt(bevel, "IconDY", 3));
    ASSERT_TRUE(KELPSetPropValueObject(bevel, "Icon", red));
    Settle(100);
    EXPECT_EQ(Pixel(w, 10 + 4, 60 + 5), 0xFF0000u);
    EXPECT_EQ(Pixel(w, 10 + 4 + 9, 60 + 5 + 5), 0xFF0000u);
    EXPECT_NE(Pixel(w, 10 + 3, 60 + 5), 0xFF0000u);
    Settle(400); // the idle task turns the ring while the loop runs
    EXPECT_NE(Pixel(w, 200 + 6 + 1, 10 + 1), dot);

    ASSERT_TRUE(ClickAt(Fixed(w), 236, 14)); // the upper half of the arrows
    Settle(60);
    ASSERT_TRUE(ClickAt(Fixed(w), 236, 28));
    Settle(60);
    ASSERT_TRUE(ClickAt(Fixed(w), 60, 75)); // the bevel button: a toggle
    Settle(80);
    ASSERT_TRUE(ClickAt(Fixed(w), 144, 16)); // the triangle opens
    Settle(80);
    const std::vector<std::string> expected = {"Up Spin", "Down Spin", "Action Bevel",
                                               "Action Tri"};
    EXPECT_EQ(Events(), expected);
    int32_t value = 0;
    EXPECT_TRUE(KELPGetPropValueBool(Find(w, "Bevel"), "Value", &value));
    EXPECT_EQ(value, 1);
    EXPECT_TRUE(KELPGetPropValueBool(Find(w, "Tri"), "Value", &value));
    EXPECT_EQ(value, 1);
    GtkStyle *s = StyleOf(Find(w, "Bevel"));
    EXPECT_EQ(Pixel(w, 20, 75), Rgb(s->bg[GTK_STATE_ACTIVE])); // pressed look held by Value
    Shot(w, "appearance_pack_pressed.png");
}

// The entry table is built at the first look-up from all that is
// registered, the damaged records of other tests too: their reports go to
// standard error only, not to a dialog that would wait for a person.
void *PackEntry(const char *name) {
    const FatalReportHook previous = SetFatalReportHook(nullptr);
    KelpString text = objtext::Make(name);
    void *code = RuntimeLookupPluginEntrypoint(text);
    objtext::Release(text);
    SetFatalReportHook(previous);
    return code;
}

TEST_F(PackTest, BevelButtonMenuChosenOrDismissed) {
    RuntimeObject *w = MakeWindow(200, 80, [](RuntimeObject *view) {
        Add(view, "BevelButton", "Menu",
            [](MassData &m) {
                Box(m, 10, 10, 100, 24)
                    .Text("Caption", "Pick")
                    .Int("HasMenu", 1)
                    .Int("MenuValue", 0);
            },
            {{"Action", H(LogAction)}});
    });
    RuntimeObject *menu = Find(w, "Menu");
    auto addRow = reinterpret_cast<void (*)(RuntimeObject *, KelpString)>(
        PackEntry("BevelButton.AddRow(text As String)"));
    auto addSeparator =
        reinterpret_cast<void (*)(RuntimeObject *)>(PackEntry("BevelButton.AddSeparator"));
    auto list = reinterpret_cast<KelpString (*)(RuntimeObject *, int32_t)>(
        PackEntry("BevelButton.List(row As Integer) As String"));
    ASSERT_TRUE(addRow && addSeparator && list);
    for (const char *text : {"One", "Two"}) {
        KelpString s = objtext::Make(text);
        addRow(menu, s);
        objtext::Release(s);
    }
    addSeparator(menu);
    KelpString second = list(menu, 1);
    EXPECT_EQ(objtext::View(second), "Two");
    RuntimeUnlockString(second);
    EXPECT_EQ(list(menu, 7), nullptr); // past the end: nil
    // The menu runs its own loop inside the press: the keys come from
    // another thread, after the menu is up.
    struct Case {
        const char *keys;
        int32_t menuValue;
        size_t actions;
    } cases[] = {{"Escape", 0, 0}, {"Down Down Return", 1, 1}};
    // Should the keys miss the menu, this takes it down, so that the press
    // returns and the test fails instead of waiting for ever.
    const guint watchdog = g_timeout_add(
        4000,
        [](gpointer) -> gboolean {
            GList *all = gtk_window_list_toplevels();
            for (GList *l = all; l; l = l->next)
                if (GtkWidget *child = gtk_bin_get_child(GTK_BIN(l->data));
                    child && GTK_IS_MENU(child))
                    gtk_menu_popdown(GTK_MENU(child));
            g_list_free(all);
            return TRUE;
        },
        nullptr);
    for (const Case &c : cases) {
        Events().clear();
        std::thread keys([&c] { XDoToolQuiet(std::string("sleep 0.5 key ") + c.keys); });
        ASSERT_TRUE(ClickAt(Fixed(w), 40, 20));
        Settle(900);
        keys.join();
        Settle(100);
        int32_t value = -1;
        EXPECT_TRUE(KELPGetPropValueInt(menu, "MenuValue", &value));
        EXPECT_EQ(value, c.menuValue) << c.keys;
        EXPECT_EQ(Events().size(), c.actions) << c.keys;
    }
    g_source_remove(watchdog);
}

} // namespace
} // namespace kelp::test
