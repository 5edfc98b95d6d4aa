#pragma once
// From the language's font (name, size, style) to a Pango font description.
// A size of the language is a height in pixels: layouts are drawn on a grid
// of 72 units an inch, where text of size 14 is 14 units high, so size N
// shows N pixels high whatever dots per inch the screen claims (at 96 that
// is N x 0.75 points), and text keeps to the boxes it was laid out in.
// "System" and "SmallSystem" (and an empty name) mean the theme's family,
// and size 0 means the theme's size, in its own points.  Widgets and
// Graphics share this one mapping.
#include <pango/pango.h>

#include <cstdint>
#include <string>

namespace kelp {

enum TextStyleBits : int32_t {
    kStyleBold = 1,
    kStyleItalic = 2,
    kStyleUnderline = 4,
    kStyleCondensed = 8,
};

struct FontSpec {
    std::string name;
    int32_t size = 0;
    int32_t style = 0; // TextStyleBits
};

// The theme's family and size (from "gtk-font-name"; "Sans" 10 without one).
std::string DefaultFontFamily();
int32_t DefaultFontSize();

// True for the names that stand for the theme's font.
bool IsSystemFontName(const std::string &name);

// The largest size that reaches the toolkit.
inline constexpr int32_t kMaxFontPoints = 1000;

// Gives the description the language's size `size` (pixels, clamped to
// 1..kMaxFontPoints); for every place that turns such a size into Pango's.
void SetLanguageSize(PangoFontDescription *description, int32_t size);

// A new description the caller frees with pango_font_description_free.
// Needs the toolkit's Pango context, so a display; null without one.
PangoFontDescription *MakeFontDescription(const FontSpec &spec);

// The family list the language sees: index 0 is the pseudo family "System",
// then the installed families.  Made once per process.
int32_t FontFamilyCount();
std::string FontFamilyName(int32_t index); // "" outside 0..count-1

} // namespace kelp
