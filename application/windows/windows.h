// The drill's windows.  Each is a class on the runtime's Window with its
// layout as data; the flow between them always shows the next window before
// the old one closes, so some window is open from start to quit.
#pragma once

#include "windows/layout.h"

namespace sumbrook::ui {

extern const WindowDesign kWelcome;   // wWelcome
extern const WindowDesign kSelection; // wExerciseSelection
extern const WindowDesign kPractice;  // wMainProg
extern const WindowDesign kResults;   // wResults
extern const WindowDesign kHelp;      // wHelp
extern const WindowDesign kAbout;     // wAbout

// The product's own lines, shown in the welcome window.
inline constexpr const char *kVersionLine = "Version 1.6";
inline constexpr const char *kLegalLine = "Copyright 2026 the Sumbrook authors.";

// End This Round: back to the exercise selection without results.  The
// menu handler of the practice window; true, as the item is then taken.
bool EndThisRound(RuntimeObject *practiceWindow);

// Menu, the application's menu bar, built on first use.
RuntimeObject *MenuBar();
// Enables the item of that Name in the bar and every window's copy.
void EnableMenuItem(const char *name);
// Writes each item's enabled state to the trace, as the menus now stand.
void TraceMenu();

// The windowed drill from start to quit, as an image's entry runs it.
void RunWindows();

} // namespace sumbrook::ui
