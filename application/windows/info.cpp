// wHelp and wAbout: the version, the legal line, where to learn more and
// whom to write to.  Neither touches the drill's state; the links open in
// the desktop's own browser and mail program.
#include "bank/corrections.h"
#include "windows/kit.h"
#include "windows/media.h"
#include "windows/trace.h"
#include "windows/windows.h"

namespace sumbrook::ui {
namespace {

constexpr uint32_t kLinkRed = 0xED181E; // red 237, green 24, blue 30
constexpr const char *kWebPage = "https://www.example.org/sumbrook.htm";
constexpr const char *kWebPageShown = "www.example.org/sumbrook.htm";
constexpr const char *kSupport = "mailto:support@example.org";
constexpr const char *kSupportShown = "support@example.org";

// The classic edition has the description and version line as first
// written; the corrected one mends the grammar and the lower-case version.
constexpr const char *kClassicVersion = "version 1.6";
constexpr const char *kClassicDescription =
    "Sumbrook is an easy to use program to aide students in learning to identify key words that "
    "identify mathematical operations and work through mathematical word problems.  Word "
    "problems are considered important because they take math into the real world.  "
    "Unfortunately solving word problems is one of the areas where students have the most "
    "difficulties in elementary math.  Sumbrook helps students develop word problem skills "
    "through practice.  It features optional on screen tips and three practice modes.  Results "
    "of each round as well as missed questions may be printed with student name and time/date "
    "stamp.";
constexpr const char *kDescription =
    "Sumbrook is an easy-to-use program that helps students learn to identify the key words "
    "that signal mathematical operations and to work through mathematical word problems. Word "
    "problems are considered important because they take math into the real world. "
    "Unfortunately, solving word problems is one of the areas where students have the most "
    "difficulty in elementary math. Sumbrook helps students develop word problem skills "
    "through practice. It features optional on-screen tips and three practice modes. The "
    "results of each round, as well as the missed questions, may be printed with the "
    "student's name and a time and date stamp.";

Text Borrowed(const char *text) { return Text::Borrow(Constant(text)); }

void OpenInfo(RuntimeObject *self, const char *version, const char *legal) {
    canvasBackdropSetter(ControlOf(self, "Canvas1"), 0, Bitmap(8)); // the banner
    SetLabelText(self, version, Borrowed(Classic() ? kClassicVersion : kVersionLine));
    SetLabelText(self, legal, Borrowed(kLegalLine));
}

void OpenHelp(RuntimeObject *self) {
    OpenInfo(self, "StaticText1", "StaticText7");
    TraceEvent("open", self);
    TraceLabels(self, {"StaticText1", "StaticText7", "StaticText3", "StaticText5"});
}

void OpenAbout(RuntimeObject *self) {
    OpenInfo(self, "StaticText1", "StaticText2");
    SetLabelText(self, "StaticText8", Borrowed(Classic() ? kClassicDescription : kDescription));
    TraceEvent("open", self);
    TraceLabels(self, {"StaticText1", "StaticText2", "StaticText8", "StaticText4", "StaticText6"});
}

// The address goes to the desktop's opener as one argument, never through
// a shell.  False: the click does nothing else.
uint8_t OpenWebPage(RuntimeObject *, int32_t, int32_t) {
    GlobalShowURL(Constant(kWebPage));
    return false;
}

uint8_t WriteToSupport(RuntimeObject *, int32_t, int32_t) {
    GlobalShowURL(Constant(kSupport));
    return false;
}

constexpr ControlRow kHelpControls[] = {
    {"Canvas", "Canvas1", 18, -7, 440, 100, ""},
    {"StaticText", "StaticText1", 15, 90, 220, 20, "Version -.-"},
    {"StaticText", "StaticText7", 15, 109, 450, 20, ""},
    {"StaticText", "StaticText2", 15, 138, 341, 20, "For info and updates visit us online at:"},
    {"StaticText", "StaticText3", 15, 153, 325, 20, kWebPageShown, 14, kUnderline, kLinkRed},
    {"StaticText", "StaticText4", 15, 188, 300, 20, "Send comments, suggestions, or questions to:"},
    {"StaticText", "StaticText5", 15, 202, 300, 20, kSupportShown, 14, kUnderline, kLinkRed},
};

const HandlerRow kHelpHandlers[] = {
    {nullptr, "Open", Code(&OpenHelp)},
    {"StaticText3", "MouseDown", Code(&OpenWebPage)},
    {"StaticText5", "MouseDown", Code(&WriteToSupport)},
};

constexpr ControlRow kAboutControls[] = {
    {"Canvas", "Canvas1", 21, -8, 440, 107, ""},
    {"StaticText", "StaticText1", 14, 100, 225, 20, "Version -/-", 12},
    {"StaticText", "StaticText2", 14, 113, 400, 20, "", 12},
    {"StaticText", "StaticText8", 11, 138, 480, 148, "", 14, kMultiLine},
    {"StaticText", "StaticText3", 17, 298, 202, 20, "Send questions or comments to"},
    {"StaticText", "StaticText4", 225, 298, 225, 20, kSupportShown, 14, kUnderline, kLinkRed},
    {"StaticText", "StaticText5", 17, 325, 300, 20, "Check for info and updates online at "},
    {"StaticText", "StaticText6", 17, 341, 310, 20, kWebPageShown, 14, kUnderline, kLinkRed},
};

const HandlerRow kAboutHandlers[] = {
    {nullptr, "Open", Code(&OpenAbout)},
    {"StaticText4", "MouseDown", Code(&WriteToSupport)},
    {"StaticText6", "MouseDown", Code(&OpenWebPage)},
};

} // namespace

const WindowDesign kHelp = {"wHelp", "Help", 472,  235, 472,           235,
                            472,     235,    true, 0,   kHelpControls, kHelpHandlers};

// About keeps the size of its layout, 502 by 374.  The bounds given with
// it (456 wide, 209 to 238 high) are smaller than the layout itself and
// would cut off the description's right edge and everything below it, so
// the window is held at its layout's size instead.
const WindowDesign kAbout = {"wAbout", "About",        502,           374, 502, 374, 502, 374, true,
                             0,        kAboutControls, kAboutHandlers};

} // namespace sumbrook::ui
