#pragma once
// Process-wide values that everything may read: the argument copies, the
// application object, the theme defaults, the default text styles and the
// stack limit of each thread.
#include "kelp/records.h"

#include <cstdint>
#include <string>

namespace kelp {

// Copies of argc and argv taken before the toolkit sees them.
void SetProcessArguments(int argc, char **argv);
int ProcessArgumentCount();
char **ProcessArguments();

// The application object.  Setting it stores the pointer only: the caller
// (RuntimeRegisterAppObject) locks it; a finalizer clears it by setting null
// when the object being finalized is the application object.
void SetApplicationObject(RuntimeObject *app);
RuntimeObject *ApplicationObject();
// The console application object of a console program.
void SetConsoleApplicationObject(RuntimeObject *app);
RuntimeObject *ConsoleApplicationObject();

struct ThemeColour {
    uint16_t red = 0, green = 0, blue = 0;
};

// What the toolkit's theme says, read once at start-up when a display exists.
struct ThemeDefaults {
    std::string fontName = "Sans";
    int32_t fontSize = 10;
    bool coloursRead = false;
    // bg[ACTIVE], fg[INSENSITIVE], bg[NORMAL], dark[NORMAL], base[NORMAL],
    // bg[SELECTED], text[NORMAL], in this order.
    ThemeColour colours[7];
};
const ThemeDefaults &Theme();

// Reads "gtk-font-name" as the theme gives it: the first blank-separated
// field is the name ("Sans" when empty), the second the size (10 when 0).
// A family of several words thus keeps its first word and size 10.
void ParseThemeFont(const char *fontName, std::string &name, int32_t &size);

// Reads the theme from the toolkit and installs the key snooper.  Needs a
// display; without one the defaults stay.
void ReadTheme();

// A hook that sees every key event the toolkit delivers (the keyboard state
// of the pane tree follows it).  Returns the previous hook.
using KeySnoopHook = void (*)(void *widget, void *event);
KeySnoopHook SetKeySnoopHook(KeySnoopHook hook);

struct TextStyle {
    std::string font = "System";
    bool bold = false, italic = false, underline = false;
    int16_t size = 10;
};
// The default text style of Graphics ("System" 10) and of message dialogs
// ("System" 12), set by the bring-up.
TextStyle &GraphicsDefaultTextStyle();
TextStyle &DialogDefaultTextStyle();

// The stack limit that KELPInitStackChecker set for the current thread, and
// the position it was set at; 0 before.
uintptr_t StackLimit();
uintptr_t StackBase();
// Moves the current thread's limit, for code that runs on a stack of its own.
void SetStackLimit(uintptr_t limit);

} // namespace kelp
