// Every text of the drill's windows inside the box its layout gives it, as
// the toolkit measures and lays it out: the windows are the drill's own,
// opened under the test's X server, and each label is measured by the
// layout it draws with, against the room its widget got.
#include "support/drill_bank_support.h"
#include "support/xvfb.h"

#include "plugins/host.h"
#include "runloop/main_loop.h"
#include "windows/kit.h"
#include "windows/windows.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <chrono>
#include <string>

namespace {

using namespace sumbrook;
using namespace sumbrook::ui;

void Settle(int ms) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (std::chrono::steady_clock::now() < end)
        kelp::MainLoopStep(false);
}

// The label that shows a control's text: the widget itself, or the child of
// a button.
GtkLabel *LabelOf(RuntimeObject *control) {
    auto *widget = static_cast<GtkWidget *>(controlMacControlHandleGetter(control, 0));
    if (widget && GTK_IS_BIN(widget))
        widget = gtk_bin_get_child(GTK_BIN(widget));
    return widget && GTK_IS_LABEL(widget) ? GTK_LABEL(widget) : nullptr;
}

// "" when the inked text lies within the room its label got in its window
// (the toolkit draws a label only there), else what sticks out where.
std::string Overflow(RuntimeObject *window, const ControlRow &row) {
    GtkLabel *label = LabelOf(ControlOf(window, row.name));
    if (!label || !GTK_WIDGET_DRAWABLE(label))
        return label ? "" : "no label"; // a hidden one shows nothing to cut off
    PangoRectangle ink;
    pango_layout_get_pixel_extents(gtk_label_get_layout(label), &ink, nullptr);
    int x = 0, y = 0;
    gtk_label_get_layout_offsets(label, &x, &y);
    // The room is what of the label's allocation lies inside its window.
    GdkRectangle room = GTK_WIDGET(label)->allocation, frame;
    GtkWidget *top = gtk_widget_get_toplevel(GTK_WIDGET(label));
    gtk_widget_translate_coordinates(top, GTK_WIDGET(label), 0, 0, &frame.x, &frame.y);
    frame.x += room.x, frame.y += room.y;
    frame.width = top->allocation.width, frame.height = top->allocation.height;
    gdk_rectangle_intersect(&room, &frame, &room);
    const int out[4] = {room.x - (x + ink.x), room.y - (y + ink.y),
                        x + ink.x + ink.width - (room.x + room.width),
                        y + ink.y + ink.height - (room.y + room.height)};
    std::string found;
    for (int i = 0; i < 4; ++i) // ink is rounded outward: one pixel may be a fraction
        if (out[i] > 1)
            found += " " + std::to_string(out[i]) + " px past side " + "ltrb"[i];
    return found.empty() ? "" : gtk_label_get_text(label) + found;
}

// Labels, radio buttons and push buttons: the controls that show a text.
void ExpectAllFit(RuntimeObject *window, const WindowDesign &design, const std::string &when) {
    for (const ControlRow &row : design.controls) {
        if (std::string("StaticText RadioButton PushButton CheckBox").find(row.base) !=
            std::string::npos) {
            EXPECT_EQ(Overflow(window, row), "") << design.className << " " << row.name << when;
        }
    }
}

TEST(DrillWindowFit, EveryLabelOfEveryWindowFitsItsBox) {
    if (!kelp::test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    // The placards come from the appearance pack, which the program carries.
    RuntimeInitExternalClasses();
    std::string error;
    ASSERT_TRUE(kelp::plugins::LoadPluginLibrary(KELP_BIN_DIR "/libKPAppearancePak.so", "", error))
        << error;
    kelp::plugins::LinkPluginClasses(nullptr);
    for (bool classic : {false, true}) {
        drilltest::PrepareDrill(classic);
        for (const WindowDesign *design :
             {&kWelcome, &kSelection, &kPractice, &kResults, &kHelp, &kAbout}) {
            // The longest texts each window can show: tips shown, a full
            // round of the most questions, the longest mode line.
            Drill().iTipsOn = 1;
            Drill().iPracticeMode = 2;
            Drill().iRoundLength = Drill().iScore = 25;
            RuntimeObject *window = Implicit(*design);
            ASSERT_NE(window, nullptr) << design->className;
            Settle(150);
            const std::string edition = classic ? " (classic)" : "";
            ExpectAllFit(window, *design, edition);
            if (design == &kSelection) {
                SetLabelText(window, "StaticText1", "Keywords will not be shown in red."_k);
                ExpectAllFit(window, *design, edition + " with tips off");
            }
            // Every problem of the bank in each of its arrangements, with its
            // answers and its tip.
            for (int32_t n = 1; design == &kPractice && n <= 87; ++n)
                for (int32_t arrangement = 1; arrangement <= 3; ++arrangement) {
                    drilltest::Build(n, arrangement);
                    SetLabelText(window, "StaticText2", Drill().problem.sProblemString);
                    for (int a = 1; a <= 10; ++a)
                        SetRadioCaption(window, ("RadioButton" + std::to_string(a)).c_str(),
                                        Drill().problem.sAnswerStrings.Get(a));
                    SetLabelText(window, "StaticText6", Drill().sTip);
                    Settle(10); // the new texts' sizes reach the widgets
                    ExpectAllFit(window, *design,
                                 edition + " problem " + std::to_string(n) + "/" +
                                     std::to_string(arrangement));
                }
            RuntimeCloseWindow(window);
            RuntimeUnlockObject(window);
            Settle(50);
        }
    }
}

} // namespace
