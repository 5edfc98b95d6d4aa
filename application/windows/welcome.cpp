// wWelcome: the banner with its colour walk, the version, and Begin.
#include "drill/state.h"
#include "drill/vocabulary.h"
#include "windows/kit.h"
#include "windows/media.h"
#include "windows/trace.h"
#include "windows/windows.h"

#include <array>

namespace sumbrook::ui {
namespace {

constexpr const char *kWords[] = {"StaticText2", "StaticText3", "StaticText4", "StaticText5"};
RuntimeObject *gWelcome; // the open welcome window, for its timer's events

int32_t CounterOffset() { return int32_t(FieldsOf(kWelcome)); } // iTextCounter

void Open(RuntimeObject *self) {
    DisableAutoWaitCursor();
    gWelcome = self;
    canvasBackdropSetter(ControlOf(self, "Canvas1"), 0, Bitmap(8)); // the banner
    SetLabelText(self, "stVBox", Text::Borrow(Constant(kVersionLine)));
    SetLabelText(self, "StaticText1", Text::Borrow(Constant(kLegalLine)));
    ModuleState &d = Drill();
    d.iPracticeMode = 3;
    d.iTipsOn = 0;
    d.iRoundLength = 10;
    mFillPools();
    EnableAutoWaitCursor();
    TraceEvent("open", self);
}

void Close(RuntimeObject *self) {
    // The timer goes with the window; no tick may reach a closed one.
    timerModeSetter(ControlOf(self, "Timer1"), 0, 0);
    if (gWelcome == self)
        gWelcome = nullptr;
}

void Begin(RuntimeObject *control) {
    EventScope scope(control);
    Play(Sound::Click);
    Show(kSelection);
    RuntimeCloseWindow(scope.self);
}

// Every 250 ms each of the four colours moves on to the next word, so
// the colours walk across the banner.
void Tick(RuntimeObject *) {
    RuntimeObject *self = gWelcome;
    if (!self)
        return;
    int32_t counter = intGetter(self, CounterOffset()) + 1;
    if (counter < 1 || counter > 4)
        counter = 1;
    intSetter(self, CounterOffset(), counter);
    const std::array<uint32_t, 4> walk = {RuntimeRGB(0, 0, 255), RuntimeRGB(255, 255, 255),
                                          RuntimeRGB(255, 255, 0), RuntimeRGB(0, 0, 0)};
    // Tick 1: blue, white, yellow, black from "Addition" to "Division";
    // each later tick turns the row one word to the right.
    for (int word = 0; word < 4; ++word)
        SetLabelColor(self, kWords[word], walk[size_t((word - (counter - 1) + 4) % 4)]);
}

constexpr ControlRow kControls[] = {
    {"StaticText", "stVBox", 317, 102, 125, 20, "version", 14},
    {"PushButton", "PushButton1", 17, 151, 425, 22, "Begin", 14, kDefaultButton},
    {"StaticText", "StaticText1", 32, 175, 400, 20, "", 12, kCentred},
    {"Canvas", "Canvas1", 1, 1, 439, 100, ""},
    {"StaticText", "StaticText2", 277, 12, 49, 20, "Addition", 12, 0, kDefaultColour, "Canvas1"},
    {"StaticText", "StaticText3", 339, 12, 64, 20, "Subtraction", 12, 0, kDefaultColour, "Canvas1"},
    {"StaticText", "StaticText4", 277, 26, 74, 20, "Multiplication", 12, 0, kDefaultColour,
     "Canvas1"},
    {"StaticText", "StaticText5", 357, 26, 50, 20, "Division", 12, 0, kDefaultColour, "Canvas1"},
};

const HandlerRow kHandlers[] = {
    {nullptr, "Open", Code(&Open)},
    {nullptr, "Close", Code(&Close)},
    {"PushButton1", "Action", Code(&Begin)},
    {"Timer1", "Action", Code(&Tick)},
};

} // namespace

const WindowDesign kWelcome = {"wWelcome", "Welcome", 464, 192,   464,
                               192,        464,       192, false, sizeof(int32_t),
                               kControls,  kHandlers, 250};

} // namespace sumbrook::ui
