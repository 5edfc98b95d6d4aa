// The drill's exercise selection window as a fixture: three group boxes,
// ten radio buttons in three groups, a multi-line label and a default
// button, built from mass data and driven by real mouse and keys.  Every
// press gives exactly one Action.
#include "control_fixture.h"

#include <array>
#include <filesystem>

namespace kelp::test {
namespace {

int32_t gPracticeMode, gTipsOn, gRoundLength;
RuntimeObject *gView;

constexpr const char *kShown = "Keywords will be shown in red.";
constexpr const char *kNotShown = "Keywords will not be shown in red.";

void ShowTip(bool on) {
    RuntimeObject *label = RuntimeControlFetch(gView, Lit("StaticText1"));
    KelpString now = staticTextTextGetter(label, 0);
    const char *want = on ? kShown : kNotShown;
    if (Str(now) != want) // written only when it doesn't read so already
        staticTextTextSetter(label, 0, Lit(want));
    objtext::Release(now);
}

// The handlers of the window's class, by control.
void Radio(RuntimeObject *me) {
    LogAction(me);
    std::string name = NameOf(me);
    int n = std::stoi(name.substr(std::string("RadioButton").size()));
    static const std::array<int32_t, 11> kRounds{0, 0, 0, 0, 0, 0, 5, 10, 15, 20, 25};
    if (n <= 3)
        gPracticeMode = n;
    else if (n <= 5)
        gTipsOn = n == 4, ShowTip(n == 4);
    else
        gRoundLength = kRounds[n];
}

void SetValueOf(const std::string &name) {
    radioValueSetter(RuntimeControlFetch(gView, Lit(name)), 0, 1);
}

// The window's Open, in the drill's order.
void OnOpen(RuntimeObject *) {
    static const std::array<std::pair<int32_t, const char *>, 5> kRounds{{{5, "RadioButton6"},
                                                                          {10, "RadioButton7"},
                                                                          {15, "RadioButton8"},
                                                                          {20, "RadioButton9"},
                                                                          {25, "RadioButton10"}}};
    for (auto [n, name] : kRounds)
        if (gRoundLength == n)
            SetValueOf(name);
    SetValueOf("RadioButton" + std::to_string(gPracticeMode));
    SetValueOf(gTipsOn == 1 ? "RadioButton4" : "RadioButton5");
    ShowTip(gTipsOn == 1);
}

struct Row {
    const char *kind, *name;
    int16_t left, top, width, height;
    const char *text;
};

constexpr Row kLayout[] = {
    {"GroupBox", "GroupBox1", 37, 7, 282, 87, "Practice"},
    {"RadioButton", "RadioButton1", 46, 27, 239, 20, "Addition and Subtraction"},
    {"RadioButton", "RadioButton2", 46, 48, 255, 20, "Multiplication and Division"},
    {"RadioButton", "RadioButton3", 46, 69, 239, 20, "Mix"},
    {"GroupBox", "GroupBox2", 37, 98, 137, 100, "Tips"},
    {"RadioButton", "RadioButton4", 46, 117, 80, 20, "On"},
    {"RadioButton", "RadioButton5", 46, 138, 80, 20, "Off"},
    {"StaticText", "StaticText1", 46, 162, 120, 30, ""},
    {"GroupBox", "GroupBox3", 186, 98, 130, 100, "Questions"},
    {"RadioButton", "RadioButton6", 197, 117, 40, 20, "5"},
    {"RadioButton", "RadioButton7", 197, 138, 40, 20, "10"},
    {"RadioButton", "RadioButton8", 197, 159, 40, 20, "15"},
    {"RadioButton", "RadioButton9", 254, 117, 40, 20, "20"},
    {"RadioButton", "RadioButton10", 254, 138, 40, 20, "25"},
    {"PushButton", "PushButton1", 38, 213, 280, 20, "Begin"},
};

class SelectionWindowTest : public ControlFixture {
protected:
    void SetUp() override {
        ControlFixture::SetUp();
        if (IsSkipped())
            return;
        gPracticeMode = 3, gTipsOn = 0, gRoundLength = 10; // the welcome window's defaults
        gView = MakeWindow(349, 245, &Build, {{"Open", reinterpret_cast<void *>(&OnOpen)}});
        Events().clear();
    }

    static void Build(RuntimeObject *view) {
        gView = view;
        for (const Row &r : kLayout) {
            Handler action{"Action", reinterpret_cast<void *>(std::string(r.kind) == "RadioButton"
                                                                  ? &Radio
                                                                  : &LogAction)};
            bool hasAction =
                std::string(r.kind) != "GroupBox" && std::string(r.kind) != "StaticText";
            Add(
                view, r.kind, r.name,
                [&](MassData &m) {
                    m.Int("Left", r.left).Int("Top", r.top).Int("Width", r.width);
                    m.Int("Height", r.height).Text("TextFont", "Arial").Int("TextSize", 14);
                    if (std::string(r.kind) == "StaticText")
                        m.Bool("MultiLine", true).Text("Text", r.text);
                    else
                        m.Text("Caption", r.text);
                    if (std::string(r.name) == "PushButton1")
                        m.Bool("Default", true);
                },
                hasAction ? std::initializer_list<Handler>{action}
                          : std::initializer_list<Handler>{});
        }
    }

    RuntimeObject *C(const char *name) { return Find(gView, name); }
    bool Value(int n) {
        return radioValueGetter(C(("RadioButton" + std::to_string(n)).c_str()), 0) != 0;
    }
    // The buttons of each group that read true.
    std::vector<int> Chosen() {
        std::vector<int> chosen;
        for (int n = 1; n <= 10; ++n)
            if (Value(n))
                chosen.push_back(n);
        return chosen;
    }
    std::string LabelText() { return gtk_label_get_text(GTK_LABEL(Widget(C("StaticText1")))); }
    int ActionsOf(const std::string &name) {
        return int(std::count(Events().begin(), Events().end(), "Action " + name));
    }
};

TEST_F(SelectionWindowTest, OpensWithTheDefaultsChosenAndShowsThem) {
    EXPECT_EQ(Chosen(), (std::vector<int>{3, 5, 7}));
    EXPECT_EQ(LabelText(), kNotShown);
    // What the X server shows: captions on the widgets, the white window,
    // and the frame of the first group box drawn in a darker colour.
    GtkWidget *begin = Widget(C("PushButton1"));
    EXPECT_STREQ(gtk_button_get_label(GTK_BUTTON(begin)), "Begin");
    EXPECT_TRUE(GTK_WIDGET_HAS_DEFAULT(begin));
    GtkWidget *frame = Widget(C("GroupBox1"));
    EXPECT_STREQ(gtk_label_get_text(GTK_LABEL(gtk_frame_get_label_widget(GTK_FRAME(frame)))),
                 "Practice");
    EXPECT_EQ(Pixel(gView, 5, 240), 0xffffffu);
    int framePixels = 0;
    for (int y = 30; y < 90; ++y)
        framePixels += Pixel(gView, 37, y) != 0xffffff;
    EXPECT_GT(framePixels, 50) << "the group box's left edge";
    std::filesystem::create_directories("screenshots");
    EXPECT_TRUE(SaveScreenshot(Fixed(gView), "screenshots/selection_window.png"));
}

TEST_F(SelectionWindowTest, EachMouseClickGivesOneActionAndTheGroupsStayApart) {
    struct Step {
        const char *click;
        std::vector<int> chosen;
        int actions; // of the clicked control
    };
    const Step steps[] = {
        {"RadioButton1", {1, 5, 7}, 1},  {"RadioButton1", {1, 5, 7}, 0}, // already chosen
        {"RadioButton4", {1, 4, 7}, 1},  {"RadioButton10", {1, 4, 10}, 1},
        {"RadioButton2", {2, 4, 10}, 1}, {"RadioButton8", {2, 4, 8}, 1},
    };
    for (const Step &s : steps) {
        Events().clear();
        Click(gView, C(s.click));
        EXPECT_EQ(Chosen(), s.chosen) << s.click;
        EXPECT_EQ(ActionsOf(s.click), s.actions) << s.click;
        EXPECT_EQ(int(Events().size()), s.actions) << s.click;
    }
    EXPECT_EQ(gPracticeMode, 2);
    EXPECT_EQ(gTipsOn, 1);
    EXPECT_EQ(gRoundLength, 15);
    EXPECT_EQ(LabelText(), kShown);
    Events().clear();
    Click(gView, C("PushButton1"), 140);
    EXPECT_EQ(Events(), (std::vector<std::string>{"Action PushButton1"}));
}

TEST_F(SelectionWindowTest, KeyboardReachesEveryGroupAndPressesOnce) {
    Focus(gView);
    // Tab stops at the chosen button of each group, then at Begin.
    std::vector<std::string> stops;
    for (int i = 0; i < 4; ++i) {
        Key("Tab");
        GtkWidget *focus = gtk_window_get_focus(GTK_WINDOW(gtk_widget_get_toplevel(Fixed(gView))));
        for (const Row &r : kLayout)
            if (Widget(C(r.name)) == focus)
                stops.push_back(r.name);
    }
    std::sort(stops.begin(), stops.end());
    EXPECT_EQ(stops, (std::vector<std::string>{"PushButton1", "RadioButton3", "RadioButton5",
                                               "RadioButton7"}));
    EXPECT_TRUE(Events().empty());
    // On Begin: Space once, Return once.
    while (gtk_window_get_focus(GTK_WINDOW(gtk_widget_get_toplevel(Fixed(gView)))) !=
               Widget(C("PushButton1")) &&
           stops.size() < 20) {
        Key("Tab");
        stops.push_back("again");
    }
    Key("space");
    EXPECT_EQ(Events(), (std::vector<std::string>{"Action PushButton1"}));
    Events().clear();
    Key("Return");
    EXPECT_EQ(Events(), (std::vector<std::string>{"Action PushButton1"}));
}

TEST_F(SelectionWindowTest, AGroupReadingAllFalseIsStillReachedAndChosenByKeys) {
    // The drill clears the answers by setting the chosen one false.
    radioValueSetter(C("RadioButton3"), 0, 0);
    Settle(30);
    EXPECT_EQ(Chosen(), (std::vector<int>{5, 7}));
    EXPECT_TRUE(Events().empty()) << "setting false fires nothing";
    Focus(gView);
    GtkWidget *first = Widget(C("RadioButton1"));
    for (int i = 0; i < 5 && !GTK_WIDGET_HAS_FOCUS(first); ++i)
        Key("Tab");
    ASSERT_TRUE(GTK_WIDGET_HAS_FOCUS(first)) << "Tab stops on the group's first button";
    // With none chosen the arrows only move; Space chooses.
    Key("Down");
    EXPECT_TRUE(GTK_WIDGET_HAS_FOCUS(Widget(C("RadioButton2"))));
    Key("Up");
    EXPECT_TRUE(GTK_WIDGET_HAS_FOCUS(first));
    EXPECT_TRUE(Events().empty());
    EXPECT_EQ(Chosen(), (std::vector<int>{5, 7}));
    Key("space");
    EXPECT_EQ(Events(), (std::vector<std::string>{"Action RadioButton1"}));
    EXPECT_EQ(Chosen(), (std::vector<int>{1, 5, 7}));
    Events().clear();
    Key("Down");
    EXPECT_EQ(Events(), (std::vector<std::string>{"Action RadioButton2"}));
    EXPECT_EQ(Chosen(), (std::vector<int>{2, 5, 7}));
}

} // namespace
} // namespace kelp::test
