// wResults: the score, the mode, the tip setting and the problems missed,
// with Again and Exit, and the print group: the student's name, the date
// and Print, which puts a sheet of all these on paper or in a PDF.
//
// The print group is laid out hidden and shown as the window opens, since
// the About text promises that results can be printed and a teacher should
// not have to hunt for it.
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
    for (const char *name : {"StaticText5", "EditField1", "StaticText4", "PushButton1"})
        SetVisible(self, name, true);
    SetEnabled(self, "EditField1", true);
    TraceEvent("open", self);
    TraceLabels(self, {"StaticText1", "StaticText2", "StaticText3", "StaticText4", "EditField2"});
}

// Prints the field's text through the page setup and print dialogs, with
// 65-point margins all round and, when asked, the page number in the
// bottom margin.  A cancelled dialog ends it quietly: nothing is printed
// and nothing on the screen changes.
void PrintField(RuntimeObject *field, RuntimeObject *parent, bool pageNumbers) {
    constexpr int32_t kMargin = 65;
    RuntimeObject *setup = RuntimeNewObject(RuntimeLookupClass(Constant("PrinterSetup")));
    RuntimeObject *g =
        printerSetupPageSetup(setup, parent) ? RuntimeOpenPrinterDialog(setup, parent) : nullptr;
    if (g) {
        const int32_t first = graphicsFirstPageGetter(g, 0), last = graphicsLastPageGetter(g, 0);
        const int32_t height = graphicsHeightGetter(g, 0);
        RuntimeObject *text =
            editStyleTextPrinter(field, g, graphicsWidthGetter(g, 0) - 2 * kMargin);
        for (int32_t page = first; page <= last && !styledPrinterEOF(text); ++page) {
            if (page != first)
                RuntimeGraphicsNextPage(g);
            styledPrinterDrawBlock(text, kMargin, kMargin, height - 2 * kMargin);
            if (pageNumbers) {
                graphicsTextFontSetter(g, 0, Constant("Arial"));
                graphicsTextSizeSetter(g, 0, 12);
                // "Page: 2" as first written; the corrected sheet reads "Page 2".
                const Text number = (Classic() ? "Page: "_k : "Page "_k) + Str(page);
                RuntimeGraphicsDrawString(g, number.get(), kMargin, height - 5);
            }
        }
        RuntimeUnlockObject(text);
        RuntimeUnlockObject(g); // the last page goes to the printer here
    }
    RuntimeUnlockObject(setup);
}

// The sheet: the drill's name, the student's, the score, the mode, the
// date and the problems missed, put into the hidden print field.
void Print(RuntimeObject *control) {
    EventScope scope(control);
    const ModuleState &d = Drill();
    Play(Sound::Click);
    Text sheet = "Sumbrook"_k + Crlf() + Crlf() + LabelText(scope.self, "EditField1") + Crlf() +
                 Crlf() + LabelText(scope.self, "StaticText1") + Crlf() +
                 LabelText(scope.self, "StaticText2") + Crlf() +
                 LabelText(scope.self, "StaticText4") + Crlf() + Crlf();
    for (int32_t i = 1; i <= d.iMissedCount && i <= d.asMissed.UBound(); ++i)
        sheet += d.asMissed.Get(i) + Crlf() + Crlf();
    SetLabelText(scope.self, "EditField3", sheet);
    RuntimeObject *field = ControlOf(scope.self, "EditField3");
    RuntimeControlRefresh(field);
    TraceEvent("print", scope.self);
    PrintField(field, scope.self, true);
    TraceEvent("printed", scope.self);
    TraceLabels(scope.self, {"EditField1"});
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

// The score, mode and tips stand in Placard1; EditField3, below the
// window's edge, holds the sheet while it prints.
constexpr ControlRow kControls[] = {
    {"Placard", "Placard1", 20, 7, 450, 77, ""},
    {"StaticText", "StaticText1", 57, 9, 380, 20, "You scored __ out of __", 20, kCentred,
     kHeadingPurple, "Placard1"},
    {"StaticText", "StaticText2", 57, 35, 380, 20, "", 20, kCentred, kHeadingPurple, "Placard1"},
    {"StaticText", "StaticText3", 57, 61, 380, 20, "Tips OFF", 20, kCentred, kHeadingPurple,
     "Placard1"},
    {"EditField", "EditField2", 20, 89, 450, 222, "", 14,
     kMultiLine | kReadOnly | kBorder | kScrollBar},
    {"StaticText", "StaticText5", 20, 323, 120, 21, "Your Name:", 20, kCentred | kHidden},
    {"EditField", "EditField1", 145, 321, 325, 22, "", 14, kBorder | kHidden | kDisabled},
    // The date and time ("08/28/2026  08:08 PM") run to 196 pixels at size
    // 20, more than the room before Print; at 18 they keep within it.
    {"StaticText", "StaticText4", 20, 356, 188, 20, "DATE", 18, kHidden},
    {"PushButton", "PushButton1", 212, 356, 69, 20, "Print", 14, kHidden},
    {"PushButton", "PushButton2", 306, 356, 69, 20, "Again", 14},
    {"PushButton", "PushButton3", 396, 356, 69, 20, "Exit", 14},
    {"EditField", "EditField3", 15, 487, 450, 222, "", 12,
     kStyled | kMultiLine | kBorder | kScrollBar | kHidden},
};

const HandlerRow kHandlers[] = {
    {nullptr, "Open", Code(&Open)},
    {"PushButton1", "Action", Code(&Print)},
    {"PushButton2", "Action", Code(&Again)},
    {"PushButton3", "Action", Code(&Exit)},
};

} // namespace

const WindowDesign kResults = {
    "wResults", "Sumbrook Results", 492, 390, 492, 390, 492, 390, false, 0, kControls, kHandlers};

} // namespace sumbrook::ui
