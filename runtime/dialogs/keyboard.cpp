// The Keyboard object.  Held keys come from the key snooper's record of
// press and release events, so a key released while another program had
// the keyboard reads as held until it is pressed and released again.
#include "dialogs/keyboard.h"

#include "kelp/dialogs.h"
#include "kelp/objects.h"

#include "objects/definitions.h"
#include "panes/pane.h"
#include "strings/kstring.h"

#include <gdk/gdkkeysyms.h>

#include <iterator>

namespace kelp {

namespace {

// Modifier masks as the language gives them to the getters.
enum KeyMask : int32_t {
    kMaskMenuShortcut = -1,          // Control on this system
    kMaskAlternateMenuShortcut = -2, // Shift
    kMaskCommand = 0x100,            // no toolkit event sets it
    kMaskShift = 0x200,
    kMaskOption = 0x800,
    kMaskControl = 0x1000,
};

// Macintosh virtual key numbers 0 to 127 and the keyvals they stand for.
struct KeyRow {
    int32_t code;
    guint keyval;
};
constexpr KeyRow kKeyvals[] = {
    {0, GDK_A},
    {1, GDK_S},
    {2, GDK_D},
    {3, GDK_F},
    {4, GDK_H},
    {5, GDK_G},
    {6, GDK_Z},
    {7, GDK_X},
    {8, GDK_C},
    {9, GDK_V},
    {11, GDK_B},
    {12, GDK_Q},
    {13, GDK_W},
    {14, GDK_E},
    {15, GDK_R},
    {16, GDK_Y},
    {17, GDK_T},
    {18, GDK_1},
    {19, GDK_2},
    {20, GDK_3},
    {21, GDK_4},
    {22, GDK_6},
    {23, GDK_5},
    {24, GDK_equal},
    {25, GDK_9},
    {26, GDK_7},
    {27, GDK_minus},
    {28, GDK_8},
    {29, GDK_0},
    {30, GDK_bracketright},
    {31, GDK_O},
    {32, GDK_U},
    {33, GDK_bracketleft},
    {34, GDK_I},
    {35, GDK_P},
    {36, GDK_Return},
    {37, GDK_L},
    {38, GDK_J},
    {39, GDK_apostrophe},
    {40, GDK_K},
    {41, GDK_semicolon},
    {42, GDK_backslash},
    {43, GDK_comma},
    {44, GDK_slash},
    {45, GDK_N},
    {46, GDK_M},
    {47, GDK_period},
    {48, GDK_Tab},
    {49, GDK_space},
    {50, GDK_grave},
    {51, GDK_BackSpace},
    {53, GDK_Escape},
    {55, GDK_Super_L},
    {56, GDK_Shift_L},
    {57, GDK_Caps_Lock},
    {58, GDK_Alt_L},
    {59, GDK_Control_L},
    {60, GDK_Shift_R},
    {61, GDK_Alt_R},
    {62, GDK_Control_R},
    {65, GDK_KP_Decimal},
    {67, GDK_KP_Multiply},
    {69, GDK_KP_Add},
    {71, GDK_Num_Lock},
    {75, GDK_KP_Divide},
    {76, GDK_KP_Enter},
    {78, GDK_KP_Subtract},
    {81, GDK_KP_Equal},
    {82, GDK_KP_0},
    {83, GDK_KP_1},
    {84, GDK_KP_2},
    {85, GDK_KP_3},
    {86, GDK_KP_4},
    {87, GDK_KP_5},
    {88, GDK_KP_6},
    {89, GDK_KP_7},
    {91, GDK_KP_8},
    {92, GDK_KP_9},
    {96, GDK_F5},
    {97, GDK_F6},
    {98, GDK_F7},
    {99, GDK_F3},
    {100, GDK_F8},
    {101, GDK_F9},
    {103, GDK_F11},
    {105, GDK_Print},
    {107, GDK_Scroll_Lock},
    {109, GDK_F10},
    {111, GDK_F12},
    {113, GDK_Pause},
    {114, GDK_Insert},
    {115, GDK_Home},
    {116, GDK_Page_Up},
    {117, GDK_Delete},
    {118, GDK_F4},
    {119, GDK_End},
    {120, GDK_F2},
    {121, GDK_Page_Down},
    {122, GDK_F1},
    {123, GDK_Left},
    {124, GDK_Right},
    {125, GDK_Down},
    {126, GDK_Up},
};

struct NameRow {
    int32_t code;
    const char *name;
};
constexpr NameRow kNames[] = {
    {0x35, "Esc"},      {0x30, "Tab"},         {0x39, "CapsLock"},   {0x38, "Shift"},
    {0x3B, "Control"},  {0x3A, "Alt"},         {0x37, "Win"},        {0x3C, "Shift(R)"},
    {0x3D, "Alt(R)"},   {0x3E, "Control(R)"},  {0x24, "Enter"},      {0x31, "Space"},
    {0x34, "Enter"},    {0x3F, "Fn"},          {0x33, "Backspace"},  {0x72, "Insert"},
    {0x73, "Home"},     {0x74, "PageUp"},      {0x75, "Delete"},     {0x77, "End"},
    {0x79, "PageDown"}, {0x7A, "F1"},          {0x78, "F2"},         {0x63, "F3"},
    {0x76, "F4"},       {0x60, "F5"},          {0x61, "F6"},         {0x62, "F7"},
    {0x64, "F8"},       {0x65, "F9"},          {0x6D, "F10"},        {0x67, "F11"},
    {0x6F, "F12"},      {0x69, "PrintScreen"}, {0x6B, "ScrollLock"}, {0x71, "Pause/Break"},
    {0x47, "NumLock"},  {0x4B, "KP/"},         {0x51, ""},           {0x43, "KP*"},
    {0x59, "KP7"},      {0x5B, "KP8"},         {0x5C, "KP9"},        {0x4E, "KP-"},
    {0x56, "KP4"},      {0x57, "KP5"},         {0x58, "KP6"},        {0x45, "KP+"},
    {0x53, "KP1"},      {0x54, "KP2"},         {0x55, "KP3"},        {0x52, "KP0"},
    {0x41, "KP."},      {0x4C, "Enter"},       {0x7E, "Up"},         {0x7B, "Left"},
    {0x7D, "Down"},     {0x7C, "Right"},
};
static_assert(std::size(kNames) == 58);

bool CodeDown(int32_t code) {
    const guint keyval = KeyvalOfCode(code);
    return keyval != 0 && KeyIsDown(keyval);
}

} // namespace

guint KeyvalOfCode(int32_t code) {
    if (code >= 128)
        return static_cast<guint>(code);
    for (const KeyRow &row : kKeyvals)
        if (row.code == code)
            return row.keyval;
    return 0;
}

std::string KeyNameOfCode(int32_t code) {
    for (const NameRow &row : kNames)
        if (row.code == code)
            return row.name;
    return "key" + std::to_string(code);
}

ObjectDefinition *KeyboardDefinition() {
    static const PropertyRow properties[] = {
        {0, "ShiftKey", &kTypeBoolean, KELP_ENTRY(modifierKeyGetter), {}, kMaskShift},
        {0, "CommandKey", &kTypeBoolean, KELP_ENTRY(modifierKeyGetter), {}, kMaskCommand},
        {0, "OSKey", &kTypeBoolean, KELP_ENTRY(modifierKeyGetter), {}, kMaskCommand},
        {0, "ControlKey", &kTypeBoolean, KELP_ENTRY(modifierKeyGetter), {}, kMaskControl},
        {0, "OptionKey", &kTypeBoolean, KELP_ENTRY(modifierKeyGetter), {}, kMaskOption},
        {0, "AltKey", &kTypeBoolean, KELP_ENTRY(modifierKeyGetter), {}, kMaskOption},
        {0, "MenuShortcutKey", &kTypeBoolean, KELP_ENTRY(modifierKeyGetter), {}, kMaskMenuShortcut},
        {0,
         "AlternateMenuShortcutKey",
         &kTypeBoolean,
         KELP_ENTRY(modifierKeyGetter),
         {},
         kMaskAlternateMenuShortcut},
        {0, "AsyncShiftKey", &kTypeBoolean, KELP_ENTRY(asyncModifierKeyGetter), {}, kMaskShift},
        {0, "AsyncCommandKey", &kTypeBoolean, KELP_ENTRY(asyncModifierKeyGetter), {}, kMaskCommand},
        {0, "AsyncOSKey", &kTypeBoolean, KELP_ENTRY(asyncModifierKeyGetter), {}, kMaskCommand},
        {0, "AsyncControlKey", &kTypeBoolean, KELP_ENTRY(asyncModifierKeyGetter), {}, kMaskControl},
        {0, "AsyncOptionKey", &kTypeBoolean, KELP_ENTRY(asyncModifierKeyGetter), {}, kMaskOption},
        {0, "AsyncAltKey", &kTypeBoolean, KELP_ENTRY(asyncModifierKeyGetter), {}, kMaskOption},
        {0,
         "AsyncMenuShortcutKey",
         &kTypeBoolean,
         KELP_ENTRY(asyncModifierKeyGetter),
         {},
         kMaskMenuShortcut},
        {0,
         "AsyncAlternateMenuShortcutKey",
         &kTypeBoolean,
         KELP_ENTRY(asyncModifierKeyGetter),
         {},
         kMaskAlternateMenuShortcut},
    };
    static const ParameterRow codeParams[] = {{"code", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"AsyncKeyDown", &kTypeBoolean, codeParams, 1, KELP_ENTRY(keyboardAsyncKeyDown)},
        {"KeyName", &kTypeString, codeParams, 1, KELP_ENTRY(keyboardKeyName)},
    };
    static const ClassDescription description = {
        .name = "_Keyboard",
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *getKeyboardObject() {
    // One for the process: made at first use, and never let go.
    static RuntimeObject *keyboard = NewObjectOfDefinition(KeyboardDefinition());
    RuntimeLockObject(keyboard);
    return keyboard;
}

extern "C" uint8_t modifierKeyGetter(RuntimeObject *, int32_t mask) {
    if (mask == kMaskMenuShortcut)
        mask = kMaskControl;
    else if (mask == kMaskAlternateMenuShortcut)
        mask = kMaskShift;
    return (CurrentModifiers() & mask) != 0;
}

extern "C" uint8_t asyncModifierKeyGetter(RuntimeObject *, int32_t mask) {
    switch (mask) {
    case kMaskShift:
    case kMaskAlternateMenuShortcut: return CodeDown(56) || CodeDown(60);
    case kMaskOption: return CodeDown(58) || CodeDown(61);
    case kMaskControl:
    case kMaskMenuShortcut: return CodeDown(59) || CodeDown(62);
    case kMaskCommand: return KeyIsDown(GDK_Super_L) || KeyIsDown(GDK_Super_R);
    default: return false;
    }
}

extern "C" uint8_t keyboardAsyncKeyDown(RuntimeObject *, int32_t code) { return CodeDown(code); }

extern "C" KelpString keyboardKeyName(RuntimeObject *, int32_t code) {
    return string::FromUTF8(KeyNameOfCode(code)).Release();
}
