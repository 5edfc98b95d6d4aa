// Push buttons, radio buttons, check boxes, group boxes and static text on
// their widgets, driven by real X input: Actions counted, toggles and
// captions read back from the widgets.
#include "control_fixture.h"

#include "controls/captioned.h"

#include <gdk/gdkkeysyms.h>

namespace kelp::test {
namespace {

// Inside its own Action a radio button sets another of its group: the
// toggle changes, and no nested Action fires for this control.
void SetOtherInAction(RuntimeObject *me) {
    LogAction(me);
    RuntimeObject *other = RuntimeControlFetch(Ctl(me)->view, Lit("R2"));
    radioValueSetter(other, 0, 1);
    radioValueSetter(me, 0, 1);
}

class ButtonFamilyTest : public ControlFixture {
protected:
    RuntimeObject *Radios(int count, void *action = H(&LogAction)) {
        return MakeWindow(260, 200, [count, action](RuntimeObject *view) {
            for (int i = 1; i <= count; ++i) {
                std::string name = "R" + std::to_string(i);
                Add(view, "RadioButton", name.c_str(),
                    [&](MassData &m) {
                        Box(m, 10, 10 + 25 * (i - 1), 120, 22).Text("Caption", name);
                    },
                    {{"Action", action}});
            }
        });
    }
    std::vector<int> Chosen(RuntimeObject *w, int count) {
        std::vector<int> chosen;
        for (int i = 1; i <= count; ++i)
            if (radioValueGetter(Find(w, ("R" + std::to_string(i)).c_str()), 0))
                chosen.push_back(i);
        return chosen;
    }
};

TEST_F(ButtonFamilyTest, PushButtonGivesOneActionPerClickSpaceAndReturnAndNoneOtherwise) {
    RuntimeObject *w = MakeWindow(300, 120, [](RuntimeObject *view) {
        Add(view, "PushButton", "OK",
            [](MassData &m) {
                Box(m, 10, 10, 100, 28).Text("Caption", "OK").Bool("Default", true);
            },
            {{"Action", H(&LogAction)}});
        Add(view, "PushButton", "Cancel",
            [](MassData &m) {
                Box(m, 120, 10, 100, 28).Text("Caption", "Cancel").Bool("Cancel", true);
            },
            {{"Action", H(&LogAction)}});
        Add(view, "PushButton", "Grab",
            [](MassData &m) { Box(m, 10, 60, 100, 28).Text("Caption", "Grab"); },
            {{"Action", H(&LogAction)},
             {"MouseDown", H(&TakeMouseDown)},
             {"MouseUp", H(&LogMouseUp)}});
    });
    RuntimeObject *ok = Find(w, "OK");
    struct Step {
        const char *what;
        std::function<void()> act;
        std::vector<std::string> events;
    };
    const Step steps[] = {
        {"click", [&] { Click(w, ok, 30); }, {"Action OK"}},
        {"space on the focused button", [&] { Key("space"); }, {"Action OK"}},
        {"Return: the default button", [&] { Key("Return"); }, {"Action OK"}},
        {"Escape: the cancel button", [&] { Key("Escape"); }, {"Action Cancel"}},
        {"released outside",
         [&] {
             ASSERT_TRUE(PressMoveRelease(Fixed(w), 30, 20, 30, 100));
             Settle(80);
         },
         {}},
        {"a MouseDown that returns true",
         [&] { Click(w, Find(w, "Grab"), 30); },
         {"MouseDown Grab 30,14", "MouseUp Grab"}},
        {"Push while disabled",
         [&] {
             controlEnabledSetter(ok, 0, 0);
             RuntimePushButtonPush(ok);
         },
         {"Action OK"}},
    };
    Focus(w);
    for (const Step &s : steps) {
        Events().clear();
        s.act();
        EXPECT_EQ(Events(), s.events) << s.what;
    }
}

TEST_F(ButtonFamilyTest, RadioGroupsReadAllFalseAndFireOnlyForTheNewlyChosen) {
    RuntimeObject *w = Radios(3);
    EXPECT_EQ(Chosen(w, 3), std::vector<int>{}) << "a new group reads all false";
    struct Step {
        const char *what;
        std::function<void()> act;
        std::vector<int> chosen;
        std::vector<std::string> events;
    };
    const Step steps[] = {
        {"Value true", [&] { radioValueSetter(Find(w, "R2"), 0, 1); }, {2}, {"Action R2"}},
        {"Value true on another",
         [&] { radioValueSetter(Find(w, "R3"), 0, 1); },
         {3},
         {"Action R3"}},
        {"Value false on one not chosen", [&] { radioValueSetter(Find(w, "R1"), 0, 0); }, {3}, {}},
        {"Value false on the chosen one", [&] { radioValueSetter(Find(w, "R3"), 0, 0); }, {}, {}},
        {"a click after", [&] { Click(w, Find(w, "R3")); }, {3}, {"Action R3"}},
        {"a click on the chosen one", [&] { Click(w, Find(w, "R3")); }, {3}, {}},
    };
    for (const Step &s : steps) {
        Events().clear();
        s.act();
        Settle(20);
        EXPECT_EQ(Chosen(w, 3), s.chosen) << s.what;
        EXPECT_EQ(Events(), s.events) << s.what;
    }
}

TEST_F(ButtonFamilyTest, SettingValuesInsideAnActionFiresNoNestedActionForItself) {
    RuntimeObject *w = Radios(2, H(&SetOtherInAction));
    Click(w, Find(w, "R1"));
    // R1's Action chose R2 (one Action of R2's own) and then R1 again.
    EXPECT_EQ(Events(), (std::vector<std::string>{"Action R1", "Action R2"}));
    EXPECT_EQ(Chosen(w, 2), std::vector<int>{1});
}

TEST_F(ButtonFamilyTest, RemovingTheChosenOrLastRadioButtonLeavesSoundGroups) {
    RuntimeObject *w = Radios(2);
    radioValueSetter(Find(w, "R1"), 0, 1);
    ControlClose(Find(w, "R1"));
    Settle(20);
    EXPECT_EQ(Chosen(w, 2), std::vector<int>{}) << "R1 is gone; R2 still reads false";
    ControlClose(Find(w, "R2"));
    Settle(20);
    // The group emptied: a button in the same place starts a fresh group.
    Events().clear();
    RuntimeObject *fresh = Add(w, "RadioButton", "R1",
                               [](MassData &m) { Box(m, 10, 10, 120, 22).Bool("Value", true); },
                               {{"Action", H(&LogAction)}});
    EXPECT_TRUE(radioValueGetter(fresh, 0));
    Click(w, fresh);
    EXPECT_TRUE(Events().empty()) << "already chosen";
}

TEST_F(ButtonFamilyTest, CheckBoxTogglesOnClickAndFiresForEveryChange) {
    RuntimeObject *w = MakeWindow(200, 80, [](RuntimeObject *view) {
        Add(view, "CheckBox", "Sound",
            [](MassData &m) {
                Box(m, 10, 10, 120, 22).Text("Caption", "Sound").Bool("Value", true);
            },
            {{"Action", H(&LogAction)}});
    });
    RuntimeObject *box = Find(w, "Sound");
    EXPECT_TRUE(checkBoxValueGetter(box, 0)) << "Value from the layout, with no Action";
    EXPECT_TRUE(Events().empty());
    Click(w, box);
    EXPECT_FALSE(gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(Widget(box))));
    EXPECT_FALSE(Captioned(box)->value) << "the record follows the widget";
    checkBoxValueSetter(box, 0, 1);
    checkBoxValueSetter(box, 0, 1); // no change: nothing
    EXPECT_EQ(Events(), (std::vector<std::string>{"Action Sound", "Action Sound"}));
}

TEST_F(ButtonFamilyTest, CaptionsShowAmpersandsAndUnderscoresAsWritten) {
    struct Row {
        const char *caption, *shown;
        guint mnemonic;
    };
    static const Row rows[] = {
        {"&File", "File", GDK_f},
        {"&&Save", "&Save", GDK_VoidSymbol},
        {"Tom && Jerry", "Tom & Jerry", GDK_VoidSymbol},
        {"snake_case", "snake_case", GDK_VoidSymbol},
        {"Save &As", "Save As", GDK_a},
        {"", "", GDK_VoidSymbol},
    };
    RuntimeObject *w = MakeWindow(300, 300, [](RuntimeObject *view) {
        int i = 0;
        for (const Row &r : rows) {
            std::string name = "C" + std::to_string(i);
            Add(view, i % 2 ? "CheckBox" : "PushButton", name.c_str(),
                [&](MassData &m) { Box(m, 10, 10 + 30 * i, 200, 26).Text("Caption", r.caption); });
            ++i;
        }
    });
    int i = 0;
    for (const Row &r : rows) {
        GtkWidget *label =
            gtk_bin_get_child(GTK_BIN(Widget(Find(w, ("C" + std::to_string(i++)).c_str()))));
        ASSERT_TRUE(GTK_IS_LABEL(label)) << r.caption;
        EXPECT_STREQ(gtk_label_get_text(GTK_LABEL(label)), r.shown) << r.caption;
        EXPECT_EQ(gtk_label_get_mnemonic_keyval(GTK_LABEL(label)), r.mnemonic) << r.caption;
    }
}

TEST_F(ButtonFamilyTest, StaticTextAlignsWrapsAndColoursAsTold) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "StaticText", "One", [](MassData &m) {
            Box(m, 10, 10, 200, 40)
                .Text("Text", "one line")
                .Int("TextAlign", 2)
                .Color("TextColor", 0xffffff);
        });
        Add(view, "StaticText", "Many", [](MassData &m) {
            Box(m, 10, 60, 80, 100)
                .Text("Text", "many words that wrap here")
                .Bool("MultiLine", true)
                .Int("TextAlign", 1);
        });
    });
    GtkWidget *one = Widget(Find(w, "One")), *many = Widget(Find(w, "Many"));
    gfloat x, y;
    gtk_misc_get_alignment(GTK_MISC(one), &x, &y);
    EXPECT_EQ(x, 1.0f);
    EXPECT_EQ(y, 0.5f) << "a single line sits in the middle";
    EXPECT_EQ(gtk_label_get_justify(GTK_LABEL(one)), GTK_JUSTIFY_RIGHT);
    gtk_misc_get_alignment(GTK_MISC(many), &x, &y);
    EXPECT_EQ(x, 0.5f);
    EXPECT_EQ(y, 0.0f) << "many lines start at the top";
    EXPECT_TRUE(gtk_label_get_line_wrap(GTK_LABEL(many)));
    EXPECT_EQ(one->style->fg[GTK_STATE_NORMAL].red, 65025) << "channels times 255";
    staticTextTextSetter(Find(w, "One"), 0, Lit("changed"));
    EXPECT_STREQ(gtk_label_get_text(GTK_LABEL(one)), "changed");
}

// An underlined label draws a line below its capitals' foot; taking the
// style off takes the line away.
TEST_F(ButtonFamilyTest, StaticTextUnderlineDrawsALineBelowTheText) {
    RuntimeObject *w = MakeWindow(300, 60, [](RuntimeObject *view) {
        for (int left : {10, 150})
            Add(view, "StaticText", left == 10 ? "Plain" : "Lined", [left](MassData &m) {
                Box(m, left, 10, 120, 40).Text("Text", "HHHH").Int("TextSize", 20);
                m.Bool("Underline", left != 10);
            });
    });
    auto lowestInk = [&](int left) {
        GdkPixbuf *p = gdk_pixbuf_get_from_drawable(nullptr, Fixed(w)->window, nullptr, left, 10, 0,
                                                    0, 120, 40);
        int lowest = -1;
        for (int y = 0; p && y < 40; ++y)
            for (int x = 0; x < 120; ++x) {
                const guchar *px = gdk_pixbuf_get_pixels(p) + y * gdk_pixbuf_get_rowstride(p) +
                                   x * gdk_pixbuf_get_n_channels(p);
                if (px[0] < 160 && px[1] < 160 && px[2] < 160) // a thin line is grey
                    lowest = y;
            }
        if (p)
            g_object_unref(p);
        return lowest;
    };
    const int plain = lowestInk(10);
    ASSERT_GT(plain, 0);
    EXPECT_GT(lowestInk(150), plain) << "the line lies below the capitals";
    staticAttributeSetter(Find(w, "Lined"), 2, 0);
    Settle(100);
    EXPECT_EQ(lowestInk(150), plain);
}

} // namespace
} // namespace kelp::test
