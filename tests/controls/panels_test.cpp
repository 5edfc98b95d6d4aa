// Tab and page panels: the controls on a page show only with it, a real
// click on a tab switches once, radio groups stay per page, and pages out
// of range raise the language's exception.
#include "control_fixture.h"

namespace kelp::test {
namespace {

class PanelsTest : public ControlFixture {
protected:
    RuntimeObject *Tabs() {
        return MakeWindow(320, 220, [](RuntimeObject *view) {
            Add(view, "TabPanel", "Tabs",
                [](MassData &m) {
                    Box(m, 10, 10, 300, 200).Text("TabDefinition", "One\rTwo\r\nThree");
                },
                {{"Change", H(&LogChange)}});
            for (int page = 0; page < 2; ++page)
                for (int i = 0; i < 2; ++i) {
                    std::string name = "P" + std::to_string(page) + "R" + std::to_string(i);
                    Add(view, "RadioButton", name.c_str(), [&](MassData &m) {
                        Box(m, 30, 60 + 30 * i, 120, 22)
                            .Int("TabPanelIndex", page)
                            .Text("Caption", name);
                    });
                }
        });
    }
    bool Shown(RuntimeObject *w, const char *name) {
        return GTK_WIDGET_MAPPED(Widget(Find(w, name)));
    }
};

TEST_F(PanelsTest, ControlsShowWithTheirPageAndATabClickSwitchesOnce) {
    RuntimeObject *w = Tabs();
    RuntimeObject *tabs = Find(w, "Tabs");
    GtkNotebook *book = GTK_NOTEBOOK(Widget(tabs));
    EXPECT_EQ(gtk_notebook_get_n_pages(book), 3);
    EXPECT_EQ(gtk_notebook_get_tab_pos(book), GTK_POS_TOP) << "Facing 0: tabs on top";
    EXPECT_TRUE(Shown(w, "P0R0"));
    EXPECT_FALSE(Shown(w, "P1R0"));
    EXPECT_TRUE(controlVisibleGetter(Find(w, "P1R0"), 0));
    // A click on the second tab, where _TabClickedOn finds it.
    int x = 0;
    for (; x < 300 && TabPanelTabClickedOn(tabs, 10 + x, 20) != 1; ++x) {}
    ASSERT_LT(x, 300);
    Events().clear();
    ASSERT_TRUE(ClickAt(Fixed(w), 10 + x + 8, 20));
    Settle(100);
    EXPECT_EQ(Events(), (std::vector<std::string>{"Change Tabs"}));
    EXPECT_EQ(PagePanelValueGetter(tabs, 0), 1);
    EXPECT_FALSE(Shown(w, "P0R0"));
    EXPECT_TRUE(Shown(w, "P1R0"));
}

TEST_F(PanelsTest, RadioGroupsOnTwoPagesOfOneParentStayApart) {
    RuntimeObject *w = Tabs();
    radioValueSetter(Find(w, "P0R0"), 0, 1);
    radioValueSetter(Find(w, "P1R1"), 0, 1);
    EXPECT_TRUE(radioValueGetter(Find(w, "P0R0"), 0));
    EXPECT_TRUE(radioValueGetter(Find(w, "P1R1"), 0));
    radioValueSetter(Find(w, "P0R1"), 0, 1);
    EXPECT_FALSE(radioValueGetter(Find(w, "P0R0"), 0));
    EXPECT_TRUE(radioValueGetter(Find(w, "P1R1"), 0)) << "the other page's group is untouched";
}

TEST_F(PanelsTest, PagesComeAndGoAndOutOfRangeRaises) {
    RuntimeObject *w = Tabs();
    RuntimeObject *tabs = Find(w, "Tabs");
    struct Case {
        const char *what;
        std::function<void()> act;
        const char *exception;
        int32_t count;
    };
    const Case cases[] = {
        {"Value past the last", [&] { PagePanelValueSetter(tabs, 0, 3); }, "OutOfBoundsException",
         3},
        {"Value negative", [&] { PagePanelValueSetter(tabs, 0, -1); }, "OutOfBoundsException", 3},
        {"Insert past the count", [&] { PagePanelInsertPage(tabs, 4, Lit("x")); },
         "OutOfBoundsException", 3},
        {"Insert at the count", [&] { PagePanelInsertPage(tabs, 3, Lit("Four")); }, "", 4},
        {"Insert in front", [&] { PagePanelInsertPage(tabs, 0, Lit("Zero")); }, "", 5},
        {"Remove past the last", [&] { PagePanelRemovePage(tabs, 5); }, "OutOfBoundsException", 5},
        {"Remove the page of P0", [&] { PagePanelRemovePage(tabs, 1); }, "", 4},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(Raised(c.act), c.exception) << c.what;
        EXPECT_EQ(PagePanelCountGetter(tabs, 0), c.count) << c.what;
    }
    // "Zero" went in front, so P1's page moved from 2 to 3; "One" went with
    // its controls.
    KelpString caption = TabPanelCaptionGetter(tabs, 1);
    EXPECT_EQ(Str(caption), "Two");
    objtext::Release(caption);
    EXPECT_EQ(Find(w, "P0R0"), nullptr);
    EXPECT_EQ(Ctl(Find(w, "P1R0"))->tabPanelIndex, 1);
    PagePanelValueSetter(tabs, 0, 1);
    EXPECT_TRUE(Shown(w, "P1R0"));
}

TEST_F(PanelsTest, APagePanelShowsOnePageOfControlsAtATime) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "PagePanel", "Pages",
            [](MassData &m) { Box(m, 10, 10, 280, 180).Int("PanelCount", 2); },
            {{"Change", H(&LogChange)}});
        Add(view, "CheckBox", "First",
            [](MassData &m) { Box(m, 20, 20, 100, 22).Int("TabPanelIndex", 0); });
        Add(view, "CheckBox", "Second",
            [](MassData &m) { Box(m, 20, 20, 100, 22).Int("TabPanelIndex", 1); });
    });
    RuntimeObject *pages = Find(w, "Pages");
    EXPECT_TRUE(Shown(w, "First"));
    EXPECT_FALSE(Shown(w, "Second"));
    Events().clear();
    PagePanelValueSetter(pages, 0, 1);
    EXPECT_EQ(Events(), (std::vector<std::string>{"Change Pages"}));
    EXPECT_FALSE(Shown(w, "First"));
    EXPECT_TRUE(Shown(w, "Second"));
    EXPECT_EQ(Raised([&] { PagePanelValueSetter(pages, 0, 2); }), "OutOfBoundsException");
}

} // namespace
} // namespace kelp::test
