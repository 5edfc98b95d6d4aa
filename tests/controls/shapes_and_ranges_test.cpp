// Shapes read back as pixels from the X server, line hit testing, the
// progress bar's pulse, and scroll bars and sliders with their range.
#include "control_fixture.h"

#include "controls/progress_bar.h"

namespace kelp::test {
namespace {

void LogValueChanged(RuntimeObject *me) { Events().push_back("ValueChanged " + NameOf(me)); }

using ShapesAndRangesTest = ControlFixture;

TEST_F(ShapesAndRangesTest, ShapesPaintTheirColoursAndStackInLayoutOrder) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "Rectangle", "Bevel", [](MassData &m) {
            Box(m, 10, 10, 60, 40).Color("FillColor", 0x00ff00).Int("BorderWidth", 3);
            m.Color("TopLeftColor", 0xff0000).Color("BottomRightColor", 0x0000ff);
        });
        Add(view, "Oval", "Disc", [](MassData &m) {
            Box(m, 100, 10, 60, 60).Color("FillColor", 0xffff00).Color("BorderColor", 0x000000);
        });
        // Drawn over the disc's middle: later controls lie on top.
        Add(view, "RoundRectangle", "Tile", [](MassData &m) {
            Box(m, 125, 35, 10, 10).Color("FillColor", 0xff00ff).Int("BorderWidth", 0);
        });
        Add(view, "Line", "Rule", [](MassData &m) {
            m.Int("X1", 10).Int("Y1", 100).Int("X2", 200).Int("Y2", 100).Color("LineColor",
                                                                               0x800000);
        });
    });
    Settle(100);
    struct Expect {
        int x, y;
        uint32_t rgb;
        const char *what;
    };
    const Expect rows[] = {
        {40, 30, 0x00ff00, "rectangle fill"},     {10, 30, 0xff0000, "bevel, left side"},
        {40, 10, 0xff0000, "bevel, top side"},    {69, 30, 0x0000ff, "bevel, right side"},
        {40, 49, 0x0000ff, "bevel, bottom side"}, {105, 40, 0xffff00, "oval fill"},
        {101, 11, 0xffffff, "outside the oval"},  {130, 40, 0xff00ff, "the tile above the disc"},
        {100, 100, 0x800000, "the line"},         {200, 100, 0x800000, "the line's end pixel"},
        {100, 102, 0xffffff, "beside the line"},
    };
    for (const Expect &e : rows)
        EXPECT_EQ(Pixel(w, e.x, e.y), e.rgb) << e.what;
}

TEST_F(ShapesAndRangesTest, ALineTakesPressesWithinItsDistanceOnly) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "Line", "Rule",
            [](MassData &m) {
                m.Int("X1", 20).Int("Y1", 50).Int("X2", 220).Int("Y2", 50).Int("BorderWidth", 20);
            },
            {{"MouseDown", H(&TakeMouseDown)}});
    });
    struct Press {
        int y;
        bool taken;
    };
    // Squared distance 25 hits; 36 is past 35 and misses.
    for (Press p : {Press{55, true}, Press{56, false}, Press{44, false}, Press{45, true}}) {
        Events().clear();
        ASSERT_TRUE(ClickAt(Fixed(w), 100, p.y));
        Settle(60);
        EXPECT_EQ(!Events().empty(), p.taken) << "y " << p.y;
    }
}

TEST_F(ShapesAndRangesTest, AnOpenEndedProgressBarPulsesUntilItGetsAMaximum) {
    RuntimeObject *w = MakeWindow(300, 100, [](RuntimeObject *view) {
        Add(view, "ProgressBar", "Busy",
            [](MassData &m) { Box(m, 10, 10, 200, 20).Int("Maximum", 0); });
        Add(view, "ProgressBar", "Half",
            [](MassData &m) { Box(m, 10, 40, 200, 20).Int("Maximum", 10).Int("Value", 5); });
    });
    RuntimeObject *busy = Find(w, "Busy");
    Settle(600); // about 36 ticks: three or so pulses ten ticks apart
    int32_t pulses = ProgressBarPulses(busy);
    EXPECT_GE(pulses, 2);
    EXPECT_LE(pulses, 5);
    progressBarMaximumSetter(busy, 0, 4);
    progressBarValueSetter(busy, 0, 9);
    EXPECT_EQ(ProgressBarPulses(busy), -1) << "the pulse stopped";
    EXPECT_EQ(gtk_progress_bar_get_fraction(GTK_PROGRESS_BAR(Widget(busy))), 1.0) << "clamped";
    EXPECT_EQ(gtk_progress_bar_get_fraction(GTK_PROGRESS_BAR(Widget(Find(w, "Half")))), 0.5);
}

TEST_F(ShapesAndRangesTest, RangesDisableWhileEmptyAndReportEachNewValueOnce) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "ScrollBar", "Across",
            [](MassData &m) { Box(m, 10, 10, 200, 16).Int("Maximum", 50); },
            {{"ValueChanged", H(&LogValueChanged)}});
        Add(view, "Slider", "Upright", [](MassData &m) { Box(m, 250, 10, 20, 150); },
            {{"ValueChanged", H(&LogValueChanged)}});
    });
    RuntimeObject *across = Find(w, "Across"), *upright = Find(w, "Upright");
    EXPECT_TRUE(GTK_IS_HSCROLLBAR(Widget(across)));
    EXPECT_TRUE(GTK_IS_VSCALE(Widget(upright)));
    EXPECT_FALSE(gtk_scale_get_draw_value(GTK_SCALE(Widget(upright))));
    EXPECT_EQ(scrollerPropGetter(across, 2), 50);
    scrollerPropSetter(across, 2, 0); // Maximum = Minimum: the toolkit can't hold it
    EXPECT_FALSE(GTK_WIDGET_SENSITIVE(Widget(across)));
    EXPECT_EQ(scrollerPropGetter(across, 2), 0) << "the pending maximum reads back";
    scrollerPropSetter(across, 2, 30);
    EXPECT_TRUE(GTK_WIDGET_SENSITIVE(Widget(across)));
    Events().clear();
    scrollerPropSetter(across, 1, 12);
    scrollerPropSetter(across, 1, 12);
    scrollerPropSetter(across, 1, 99); // clamped to 30
    EXPECT_EQ(scrollerPropGetter(across, 1), 30);
    EXPECT_EQ(Events(), (std::vector<std::string>{"ValueChanged Across", "ValueChanged Across"}));
    // A click on the slider's trough moves it and reports once.
    Events().clear();
    ASSERT_TRUE(ClickAt(Fixed(w), 260, 150));
    Settle(150);
    EXPECT_GT(scrollerPropGetter(upright, 1), 0);
    EXPECT_EQ(Events(), (std::vector<std::string>{"ValueChanged Upright"}));
}

} // namespace
} // namespace kelp::test
