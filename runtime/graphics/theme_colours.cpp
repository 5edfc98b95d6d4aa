// The theme's colours as the controls use them: read from the widget style
// once at start-up (when there was a display), with fixed values otherwise.
#include "kelp/graphics.h"

#include "process/process_state.h"

namespace {

// Positions in ThemeDefaults::colours.
enum ThemeSlot {
    kBgActive = 0,
    kFgInsensitive = 1,
    kBgNormal = 2,
    kDarkNormal = 3,
    kBaseNormal = 4,
    kBgSelected = 5,
    kTextNormal = 6,
};

uint32_t FromTheme(int slot, uint32_t fallback) {
    const kelp::ThemeDefaults &theme = kelp::Theme();
    if (!theme.coloursRead)
        return fallback;
    const kelp::ThemeColour &c = theme.colours[slot];
    return (static_cast<uint32_t>(c.red / 257) << 16) |
           (static_cast<uint32_t>(c.green / 257) << 8) | static_cast<uint32_t>(c.blue / 257);
}

} // namespace

extern "C" {

uint32_t getFrameColor(void) { return FromTheme(kDarkNormal, 0x000000); }
uint32_t getFillColor(void) { return FromTheme(kBgNormal, 0xDDDDDD); }
uint32_t getTextColor(void) { return FromTheme(kTextNormal, 0x000000); }
uint32_t getLightTingeColor(void) { return 0xFFFFFF; }
uint32_t getDarkTingeColor(void) { return 0xAAAAAA; }
uint32_t getLightBevelColor(void) { return FromTheme(kBaseNormal, 0xFFFFFF); }
uint32_t getDarkBevelColor(void) { return FromTheme(kBgActive, 0xAAAAAA); }
// Without a theme there is no selection colour; black is what an unset
// colour word reads as.
uint32_t getHilightColor(void) { return FromTheme(kBgSelected, 0x000000); }
uint32_t GetDisabledTextColor(void) { return FromTheme(kFgInsensitive, 0x000000); }

} // extern "C"
