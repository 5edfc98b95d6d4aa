// wExerciseSelection: what to practise, tips on or off, how many
// questions.  Every round passes through here, so opening it wipes the
// totals of the round before.
#include "drill/round.h"
#include "drill/state.h"
#include "windows/kit.h"
#include "windows/media.h"
#include "windows/trace.h"
#include "windows/windows.h"

#include <string>

namespace sumbrook::ui {
namespace {

constexpr const char *kShown = "Keywords will be shown in red.";
constexpr const char *kNotShown = "Keywords will not be shown in red.";
constexpr int32_t kLengths[] = {5, 10, 15, 20, 25}; // RadioButton6 to RadioButton10

void ShowTipSetting(RuntimeObject *self, bool on) {
    const Text want = Text::Borrow(Constant(on ? kShown : kNotShown));
    // Written only when it doesn't read so already, so the label never
    // flickers on a click of the chosen button.
    if (!SameText(LabelText(self, "StaticText1"), want))
        SetLabelText(self, "StaticText1", want);
}

std::string Radio(int n) { return "RadioButton" + std::to_string(n); }

void Open(RuntimeObject *self) {
    ResetForSelection();
    canvasBackdropSetter(ControlOf(self, "Canvas1"), 0, Bitmap(7)); // the right strip
    canvasBackdropSetter(ControlOf(self, "Canvas2"), 0, Bitmap(6)); // the left strip
    const ModuleState &d = Drill();
    for (int i = 0; i < 5; ++i)
        if (d.iRoundLength == kLengths[i])
            SetRadioValue(self, Radio(6 + i).c_str(), true);
    if (d.iPracticeMode >= 1 && d.iPracticeMode <= 3)
        SetRadioValue(self, Radio(d.iPracticeMode).c_str(), true);
    SetRadioValue(self, d.iTipsOn == 1 ? "RadioButton4" : "RadioButton5", true);
    ShowTipSetting(self, d.iTipsOn == 1);
    TraceEvent("open", self);
}

template <int N> void Mode(RuntimeObject *control) {
    EventScope scope(control);
    Drill().iPracticeMode = N;
}

template <int On> void Tips(RuntimeObject *control) {
    EventScope scope(control);
    Drill().iTipsOn = On;
    ShowTipSetting(scope.self, On == 1);
}

template <int Length> void Questions(RuntimeObject *control) {
    EventScope scope(control);
    Drill().iRoundLength = Length;
}

void Begin(RuntimeObject *control) {
    EventScope scope(control);
    Show(kPractice);
    RuntimeCloseWindow(scope.self);
}

constexpr ControlRow kControls[] = {
    {"Canvas", "Canvas1", 323, -6, 100, 375, ""},
    {"Canvas", "Canvas2", -5, -6, 35, 348, ""},
    {"GroupBox", "GroupBox1", 37, 7, 282, 87, "Practice"},
    {"RadioButton", "RadioButton1", 46, 27, 239, 20, "Addition and Subtraction"},
    {"RadioButton", "RadioButton2", 46, 48, 255, 20, "Multiplication and Division"},
    {"RadioButton", "RadioButton3", 46, 69, 239, 20, "Mix"},
    {"GroupBox", "GroupBox2", 37, 98, 137, 100, "Tips"},
    {"RadioButton", "RadioButton4", 46, 117, 80, 20, "On"},
    {"RadioButton", "RadioButton5", 46, 138, 80, 20, "Off"},
    {"StaticText", "StaticText1", 46, 162, 120, 30, "", 14, kMultiLine},
    {"GroupBox", "GroupBox3", 186, 98, 130, 100, "Questions"},
    {"RadioButton", "RadioButton6", 197, 117, 40, 20, "5"},
    {"RadioButton", "RadioButton7", 197, 138, 40, 20, "10"},
    {"RadioButton", "RadioButton8", 197, 159, 40, 20, "15"},
    {"RadioButton", "RadioButton9", 254, 117, 40, 20, "20"},
    {"RadioButton", "RadioButton10", 254, 138, 40, 20, "25"},
    {"PushButton", "PushButton1", 38, 213, 280, 20, "Begin", 14, kDefaultButton},
};

const HandlerRow kHandlers[] = {
    {nullptr, "Open", Code(&Open)},
    {"RadioButton1", "Action", Code(&Mode<1>)},
    {"RadioButton2", "Action", Code(&Mode<2>)},
    {"RadioButton3", "Action", Code(&Mode<3>)},
    {"RadioButton4", "Action", Code(&Tips<1>)},
    {"RadioButton5", "Action", Code(&Tips<0>)},
    {"RadioButton6", "Action", Code(&Questions<5>)},
    {"RadioButton7", "Action", Code(&Questions<10>)},
    {"RadioButton8", "Action", Code(&Questions<15>)},
    {"RadioButton9", "Action", Code(&Questions<20>)},
    {"RadioButton10", "Action", Code(&Questions<25>)},
    {"PushButton1", "Action", Code(&Begin)},
};

} // namespace

const WindowDesign kSelection = {"wExerciseSelection",
                                 "Exercise Selection",
                                 349,
                                 245,
                                 0,
                                 0,
                                 0,
                                 0,
                                 false,
                                 0,
                                 kControls,
                                 kHandlers};

} // namespace sumbrook::ui
