// The font list the language sees (Fonts, FontCount).
#include "kelp/graphics.h"

#include "exceptions/raise.h"
#include "graphics/font_mapping.h"
#include "strings/kstring.h"

extern "C" {

int32_t getFontCount(void) { return kelp::FontFamilyCount(); }

KelpString getFontName(int32_t index) {
    if (index < 0 || index >= kelp::FontFamilyCount()) {
        kelp::RaiseOutOfBounds();
        return nullptr;
    }
    return kelp::string::FromUTF8(kelp::FontFamilyName(index)).Release();
}

} // extern "C"
