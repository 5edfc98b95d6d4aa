// wResults: the score, the mode, the tip setting and the problems missed,
// with Again and Exit.  The print group (the name, the date and Print)
// stands in the layout hidden; the print-out arrives with the edit field.
#include "bank/corrections.h"
#include "drill/state.h"
#include "windows/kit.h"
#include "windows/media.h"
#include "windows/trace.h"
#include "windows/windows.h"

namespace sumbrook::ui {
namespace {

constexpr uint32_t kHeadingPurple = 0x6C18B0; // red 108, green 24, blue 176

Text Crlf() { return Text::Adopt(StringChr(13)) + Text::Adopt(StringChr(10)); }

Text StampOfNow() {
    RuntimeObject *now = RuntimeNewObject(RuntimeLookupClass(Constant("Date")));
    Text stamp = Text::Adopt(dateStringGetter(now, 0)) + "  "_k +
                 Text::Adopt(dateStringGetter(now, 3)); // ShortDate, ShortTime
    RuntimeUnlockObject(now);
    return stamp;
}

void Open(RuntimeObject *self) {
    const ModuleState &d = Drill();
    windowBackdropSetter(self, 0, Bitmap(10));
    SetLabelText(self, "StaticText4", StampOfNow());
    Text missed;
    if (d.iScore == d.iRoundLength) {
        missed = "Congratulations.  You answered all questions correctly."_k;
    } else {
        missed = "Problems missed this round:"_k + Crlf() + Crlf();
        for (int32_t i = 1; i <= d.iMissedCount && i <= d.asMissed.UBound(); ++i)
            missed += d.asMissed.Get(i) + Crlf() + Crlf();
    }
    SetLabelText(self, "EditField2", missed);
    SetLabelText(self, "StaticText1",
                 "You scored "_k + Str(d.iScore) + " out of "_k + Str(d.iRoundLength) +
                     " questions."_k);
    SetLabelText(self, "StaticText2",
                 d.iPracticeMode == 1   ? "Addition and Subtraction"_k
                 : d.iPracticeMode == 2 ? "Multiplication and Division"_k
                 : Classic()            ? "ALL"_k
                                        : "Mix"_k);
    SetLabelText(self, "StaticText3", d.iTipsOn == 1 ? "Tips ON"_k : "Tips OFF"_k);
    TraceEvent("open", self);
    TraceLabels(self, {"StaticText1", "StaticText2", "StaticText3", "EditField2"});
}

void Again(RuntimeObject *control) {
    EventScope scope(control);
    Show(kSelection);
    RuntimeCloseWindow(scope.self);
}

void Exit(RuntimeObject *control) {
    EventScope scope(control);
    KP_ApplicationQuit(nullptr);
}

// The missed problems stand in a multi-line label until the read-only edit
// field with its scroll bar takes their place under the same name.
constexpr ControlRow kControls[] = {
    {"StaticText", "StaticText1", 57, 9, 380, 20, "You scored __ out of __", 20, kCentred,
     kHeadingPurple},
    {"StaticText", "StaticText2", 57, 35, 380, 20, "", 20, kCentred, kHeadingPurple},
    {"StaticText", "StaticText3", 57, 61, 380, 20, "Tips OFF", 20, kCentred, kHeadingPurple},
    {"StaticText", "EditField2", 20, 89, 450, 222, "", 14, kMultiLine},
    {"StaticText", "StaticText5", 20, 323, 120, 21, "Your Name:", 20, kCentred | kHidden},
    {"StaticText", "StaticText4", 28, 356, 165, 20, "DATE", 20, kHidden},
    {"PushButton", "PushButton1", 212, 356, 69, 20, "Print", 14, kHidden},
    {"PushButton", "PushButton2", 306, 356, 69, 20, "Again", 14},
    {"PushButton", "PushButton3", 396, 356, 69, 20, "Exit", 14},
};

const HandlerRow kHandlers[] = {
    {nullptr, "Open", Code(&Open)},
    {"PushButton2", "Action", Code(&Again)},
    {"PushButton3", "Action", Code(&Exit)},
};

} // namespace

const WindowDesign kResults = {
    "wResults", "Sumbrook Results", 492, 390, 492, 390, 492, 390, false, 0, kControls, kHandlers};

} // namespace sumbrook::ui
