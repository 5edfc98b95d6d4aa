// wMainProg: one round, a question at a time.  The engine (drill/round.h)
// chooses and builds each problem; this window shows it, takes the answer
// and keeps the score on the screen.
#include "bank/corrections.h"
#include "drill/round.h"
#include "drill/state.h"
#include "windows/kit.h"
#include "windows/media.h"
#include "windows/trace.h"
#include "windows/windows.h"

#include <string>

namespace sumbrook::ui {
namespace {

constexpr uint32_t kScoreBlue = 0x1822CD; // red 24, green 34, blue 205
constexpr uint32_t kTipRed = 0xED181E;    // red 237, green 24, blue 30

int32_t AnswerOffset() { return int32_t(FieldsOf(kPractice)); } // iYourAnswerIs

std::string Radio(int n) { return "RadioButton" + std::to_string(n); }

// mUpdateQandA: the problem, its ten answers and its tip into the controls.
void UpdateQandA(RuntimeObject *self) {
    const ModuleState &d = Drill();
    SetLabelText(self, "StaticText2", d.problem.sProblemString);
    for (int n = 1; n <= 10; ++n)
        SetRadioCaption(self, Radio(n).c_str(), d.problem.sAnswerStrings.Get(n));
    SetLabelText(self, "StaticText6", d.sTip);
    TraceLabels(self, {"StaticText2", "StaticText3", "StaticText4", "StaticText6"});
}

void ShowRemaining(RuntimeObject *self) {
    SetLabelText(self, "StaticText4", "Questions Remaining: "_k + Str(Drill().iQuestionsLeft));
}

void Open(RuntimeObject *self) {
    canvasBackdropSetter(ControlOf(self, "Canvas1"), 0, Bitmap(9));
    ModuleState &d = Drill();
    intSetter(self, AnswerOffset(), 0);
    d.iLastProbNumber = kNoProblem;
    // The corrected edition names the modes as the selection window does.
    const Text mode = Classic()
                          ? (d.iPracticeMode == 1   ? "Add Subtract Practice: "_k
                             : d.iPracticeMode == 2 ? "Multiply Divide Practice: "_k
                                                    : "ALL Practice: "_k)
                          : (d.iPracticeMode == 1   ? "Addition and Subtraction Practice: "_k
                             : d.iPracticeMode == 2 ? "Multiplication and Division Practice: "_k
                                                    : "Mix Practice: "_k);
    windowTitleSetter(self, 0, (mode + Str(d.iRoundLength) + " Questions"_k).get());
    d.iQuestionsLeft = d.iRoundLength;
    ShowRemaining(self);
    SetVisible(self, "StaticText5", d.iTipsOn == 1);
    SetVisible(self, "StaticText6", d.iTipsOn == 1);
    NextProblem();
    TraceEvent("open", self);
    UpdateQandA(self);
}

// The last answer is in: the final numbers go on the screen at once, the
// sound just started plays to its end, and only then do the results come.
// Events queued meanwhile reach no question: this window is gone by then.
void EndOfRound(RuntimeObject *self, RuntimeObject *lastSound) {
    RuntimeControlRefresh(ControlOf(self, "StaticText3"));
    RuntimeControlRefresh(ControlOf(self, "StaticText4"));
    TraceLabels(self, {"StaticText3", "StaticText4"});
    // A turn every few milliseconds keeps the device fed and leaves the
    // processor to other programs while the sound runs out.
    while (soundIsPlaying(lastSound)) {
        RuntimeBackgroundTask();
        AppSleepCurrentThread(nullptr, 4);
    }
    Show(kResults);
    RuntimeCloseWindow(self);
}

void Ok(RuntimeObject *control) {
    EventScope scope(control);
    RuntimeObject *self = scope.self;
    const int32_t chosen = intGetter(self, AnswerOffset());
    ModuleState &d = Drill();
    const AnswerResult result = AnswerQuestion(chosen);
    if (result == AnswerResult::NoChoice) {
        Play(Sound::Click); // the problem stays as it is
        return;
    }
    RuntimeObject *sound = Play(result == AnswerResult::Right ? Sound::Right : Sound::Wrong);
    if (result == AnswerResult::Right)
        SetLabelText(self, "StaticText3", "Score: "_k + Str(d.iScore));
    ShowRemaining(self);
    if (d.iQuestionsLeft <= 0)
        return EndOfRound(self, sound);
    for (int n = 1; n <= 10; ++n)
        SetRadioValue(self, Radio(n).c_str(), false);
    intSetter(self, AnswerOffset(), 0);
    UpdateQandA(self); // the engine has built the next problem
}

// End This Round is the practice window's item: grey everywhere else.
void EnableMenuItems(RuntimeObject *) { EnableMenuItem("FileEndThisRound"); }

uint8_t EndThisRoundChosen(RuntimeObject *self, int32_t) { return EndThisRound(self); }

void AddMenuHandlers(RuntimeObject *self, RuntimeObject *) {
    WindowAddMenuHandler(self, Constant("FileEndThisRound"), Code(&EndThisRoundChosen));
}

template <int N> void Answer(RuntimeObject *control) {
    EventScope scope(control);
    intSetter(scope.self, AnswerOffset(), N);
    TraceEvent(("answer " + std::to_string(N)).c_str(), scope.self);
}

constexpr ControlRow kControls[] = {
    {"Canvas", "Canvas1", -3, -1, 397, 229, ""},
    {"Placard", "Placard1", 9, 10, 365, 31, "", 14, 0, kDefaultColour, "Canvas1"},
    {"StaticText", "StaticText1", 11, 59, 100, 20, "Problem Is:", 14, 0, kDefaultColour, "Canvas1"},
    {"StaticText", "StaticText2", 11, 84, 357, 134, "", 14, kMultiLine, kDefaultColour, "Canvas1"},
    {"StaticText", "StaticText3", 27, 17, 100, 20, "Score: 0", 14, 0, kScoreBlue, "Placard1"},
    {"StaticText", "StaticText4", 171, 17, 200, 20, "Questions Remaining: -", 14, 0, kScoreBlue,
     "Placard1"},
    {"StaticText", "StaticText5", 12, 225, 30, 20, "Tip:", 14, kHidden},
    {"StaticText", "StaticText6", 50, 225, 325, 20, "", 14, kHidden, kTipRed},
    {"GroupBox", "GroupBox1", 11, 251, 365, 141, "Answer Is:"},
    {"RadioButton", "RadioButton1", 25, 271, 165, 22, ""},
    {"RadioButton", "RadioButton2", 25, 294, 165, 22, ""},
    {"RadioButton", "RadioButton3", 25, 318, 165, 22, ""},
    {"RadioButton", "RadioButton4", 25, 342, 165, 22, ""},
    {"RadioButton", "RadioButton5", 25, 367, 165, 22, ""},
    {"RadioButton", "RadioButton6", 203, 271, 165, 22, ""},
    {"RadioButton", "RadioButton7", 203, 294, 165, 22, ""},
    {"RadioButton", "RadioButton8", 203, 318, 165, 22, ""},
    {"RadioButton", "RadioButton9", 203, 342, 165, 22, ""},
    {"RadioButton", "RadioButton10", 203, 367, 165, 22, ""},
    {"PushButton", "PushButton1", 12, 399, 360, 25, "OK", 14, kDefaultButton},
};

const HandlerRow kHandlers[] = {
    {nullptr, "Open", Code(&Open)},
    {nullptr, "EnableMenuItems", Code(&EnableMenuItems)},
    {nullptr, "AddMenuHandlers", Code(&AddMenuHandlers)},
    {"PushButton1", "Action", Code(&Ok)},
    {"RadioButton1", "Action", Code(&Answer<1>)},
    {"RadioButton2", "Action", Code(&Answer<2>)},
    {"RadioButton3", "Action", Code(&Answer<3>)},
    {"RadioButton4", "Action", Code(&Answer<4>)},
    {"RadioButton5", "Action", Code(&Answer<5>)},
    {"RadioButton6", "Action", Code(&Answer<6>)},
    {"RadioButton7", "Action", Code(&Answer<7>)},
    {"RadioButton8", "Action", Code(&Answer<8>)},
    {"RadioButton9", "Action", Code(&Answer<9>)},
    {"RadioButton10", "Action", Code(&Answer<10>)},
};

} // namespace

bool EndThisRound(RuntimeObject *practiceWindow) {
    TraceEvent("end round", practiceWindow);
    Show(kSelection);
    RuntimeCloseWindow(practiceWindow);
    return true;
}

const WindowDesign kPractice = {"wMainProg", "Practice", 386, 443,   390,
                                440,         390,        440, false, sizeof(int32_t),
                                kControls,   kHandlers};

} // namespace sumbrook::ui
