// Binding controls of a layout to their panes: the window's map and its
// arrays, closing (from inside an event too), visibility from the panes
// beneath, positions, and the self and me of handlers.
#include "control_fixture.h"

namespace kelp::test {
namespace {

void CloseSelf(RuntimeObject *me) {
    LogAction(me);
    ControlClose(me);
}

class ControlBindingTest : public ControlFixture {};

TEST_F(ControlBindingTest, ArraysStayDenseAcrossCloseAndAddAtRunTime) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        for (int i = 0; i < 3; ++i)
            Add(view, "PushButton", "Ball", [&](MassData &m) {
                Box(m, 10 + 60 * i, 10, 50, 24).Int("Index", i).Text("Caption", std::to_string(i));
            });
        Add(view, "PushButton", "Single", [](MassData &m) { Box(m, 10, 60, 50, 24); });
    });
    RuntimeObject *ball1 = Find(w, "Ball$1"), *ball2 = Find(w, "Ball$2");
    ASSERT_NE(Find(w, "Ball$0"), nullptr);
    ASSERT_NE(ball1, nullptr);
    ASSERT_NE(ball2, nullptr);
    EXPECT_NE(Find(w, "Single"), nullptr) << "not in an array: its plain name";
    EXPECT_EQ(Ctl(Find(w, "Single"))->index, KELP_NOT_IN_ARRAY);
    EXPECT_EQ(Find(w, "Ball"), nullptr);

    ControlClose(ball1);
    Settle(20);
    EXPECT_EQ(Find(w, "Ball$1"), ball2) << "the old element 2 moves down";
    EXPECT_EQ(Ctl(ball2)->index, 1);
    EXPECT_EQ(Find(w, "Ball$2"), nullptr);

    // Added while the window runs: the first free element, bound and opened.
    RuntimeObject *added =
        Add(w, "PushButton", "Ball", [](MassData &m) { Box(m, 200, 60, 50, 24); },
            {{"Open", reinterpret_cast<void *>(&LogOpen)}});
    EXPECT_EQ(Find(w, "Ball$2"), added);
    EXPECT_EQ(Ctl(added)->index, 2);
    EXPECT_NE(Widget(added), nullptr);
    EXPECT_EQ(Events(), (std::vector<std::string>{"Open Ball"}));
}

TEST_F(ControlBindingTest, AHandlerThatClosesItsOwnControlReturnsSafely) {
    RuntimeObject *w = MakeWindow(200, 100, [](RuntimeObject *view) {
        Add(view, "PushButton", "Quit",
            [](MassData &m) { Box(m, 10, 10, 80, 26).Text("Caption", "Quit"); },
            {{"Action", reinterpret_cast<void *>(&CloseSelf)},
             {"Close", reinterpret_cast<void *>(&LogClose)}});
    });
    RuntimeObject *quit = Find(w, "Quit");
    RuntimeLockObject(quit);
    Click(w, quit, 20);
    EXPECT_EQ(Events(), (std::vector<std::string>{"Action Quit", "Close Quit"}));
    EXPECT_EQ(Find(w, "Quit"), nullptr);
    EXPECT_EQ(Ctl(quit)->pane, nullptr);
    EXPECT_EQ(Ctl(quit)->object.referenceCount, 1) << "only this test holds it now";
    RuntimeUnlockObject(quit);
    Settle(20);
}

TEST_F(ControlBindingTest, ControlsOnAHiddenOrDisabledBoxFollowItButKeepTheirValues) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "GroupBox", "Hidden",
            [](MassData &m) { Box(m, 10, 10, 130, 150).Bool("Visible", false); });
        Add(view, "CheckBox", "OnHidden", [](MassData &m) { Box(m, 20, 30, 100, 20); });
        Add(view, "GroupBox", "Off",
            [](MassData &m) { Box(m, 150, 10, 130, 150).Bool("Enabled", false); });
        Add(view, "CheckBox", "OnOff", [](MassData &m) { Box(m, 160, 30, 100, 20); });
        Add(view, "CheckBox", "Outside", [](MassData &m) { Box(m, 10, 170, 100, 20); });
    });
    struct Expect {
        const char *name;
        bool mapped, sensitive;
    };
    const Expect rows[] = {
        {"OnHidden", false, true}, {"OnOff", true, false}, {"Outside", true, true}};
    for (const Expect &e : rows) {
        RuntimeObject *c = Find(w, e.name);
        EXPECT_EQ(bool(GTK_WIDGET_MAPPED(Widget(c))), e.mapped) << e.name;
        EXPECT_EQ(bool(GTK_WIDGET_IS_SENSITIVE(Widget(c))), e.sensitive) << e.name;
        EXPECT_TRUE(controlVisibleGetter(c, 0)) << e.name << ": Visible keeps reading true";
        EXPECT_TRUE(controlEnabledGetter(c, 0)) << e.name;
    }
    // Showing the box shows what lies on it; Parent reads the box.
    ControlVisibleSetter(Find(w, "Hidden"), 0, 1);
    Settle(40);
    EXPECT_TRUE(GTK_WIDGET_MAPPED(Widget(Find(w, "OnHidden"))));
    RuntimeObject *parent = ControlParentGetter(Find(w, "OnHidden"), 0);
    EXPECT_EQ(parent, Find(w, "Hidden"));
    RuntimeUnlockObject(parent);
}

TEST_F(ControlBindingTest, MovingABoxCarriesItsControlsAndNegativeSizesStayHarmless) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "GroupBox", "Box",
            [](MassData &m) { Box(m, 10, 10, 150, 100).Text("Caption", "Box"); });
        Add(view, "RadioButton", "In",
            [](MassData &m) { Box(m, 20, 40, 100, 20).Text("Caption", "In"); });
        Add(view, "StaticText", "Odd",
            [](MassData &m) { Box(m, 200, 150, -5, -30).Text("Text", "x"); });
    });
    RuntimeControlMove(Find(w, "Box"), 40, 50, 150, 100);
    Settle(60);
    RuntimeObject *in = Find(w, "In");
    EXPECT_EQ(ctlPosGetter(in, 0), 50);
    EXPECT_EQ(ctlPosGetter(in, 1), 80);
    EXPECT_EQ(Widget(in)->allocation.x, 50);
    EXPECT_EQ(Widget(in)->allocation.y, 80);
    ctlPosSetter(in, 2, 120); // Width
    Settle(40);
    EXPECT_EQ(Widget(in)->allocation.width, 120);
    EXPECT_EQ(ctlPosGetter(Find(w, "Odd"), 2), -5);
    EXPECT_EQ(ctlPosGetter(Find(w, "Odd"), 3), -30);
}

TEST_F(ControlBindingTest, AHandlerSeesTheWindowAsSelfAndTheControlAsMe) {
    RuntimeObject *w = MakeWindow(200, 100, [](RuntimeObject *view) {
        Add(view, "CheckBox", "Box", [](MassData &m) { Box(m, 10, 10, 100, 20); });
    });
    RuntimeObject *control = Find(w, "Box");
    RuntimeObject *self = control, *me = nullptr;
    RuntimeLockObject(self);
    RuntimeExchangeSelfAndMe(&self, &me);
    EXPECT_EQ(self, w);
    EXPECT_EQ(me, control);
    RuntimeUnlockObject(self);
    RuntimeUnlockObject(me);
}

} // namespace
} // namespace kelp::test
