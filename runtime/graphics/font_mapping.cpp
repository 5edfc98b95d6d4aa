#include "graphics/font_mapping.h"

#include "base/ascii.h"
#include "process/display.h"
#include "process/process_state.h"

#include <gdk/gdk.h>

#include <algorithm>

namespace kelp {

std::string DefaultFontFamily() {
    const std::string &name = Theme().fontName;
    return name.empty() ? std::string("Sans") : name;
}

int32_t DefaultFontSize() {
    int32_t size = Theme().fontSize;
    return size > 0 ? size : 10;
}

bool IsSystemFontName(const std::string &name) {
    return name.empty() || AsciiEqualNoCase(name, "System") ||
           AsciiEqualNoCase(name, "SmallSystem");
}

namespace {

struct FamilyList {
    PangoFontFamily **families = nullptr;
    int count = 0;
};

// Made once, at the first need that has a display: listing families asks
// fontconfig for every installed font.
const FamilyList &Families() {
    static FamilyList list;
    if (!list.families && DisplayAvailable()) {
        PangoContext *context = gdk_pango_context_get();
        pango_context_list_families(context, &list.families, &list.count);
        g_object_unref(context);
    }
    return list;
}

// True when the description names a font that Pango can load.
bool Loads(const PangoFontDescription *description) {
    PangoContext *context = gdk_pango_context_get();
    PangoFont *font = pango_context_load_font(context, description);
    bool ok = font != nullptr;
    if (font)
        g_object_unref(font);
    g_object_unref(context);
    return ok;
}

PangoFontDescription *FromString(const std::string &family, int32_t size) {
    std::string text = family + " " + std::to_string(size);
    PangoFontDescription *d = pango_font_description_from_string(text.c_str());
    if (d && !pango_font_description_get_family(d)) {
        pango_font_description_free(d);
        return nullptr;
    }
    return d;
}

} // namespace

void SetLanguageSize(PangoFontDescription *description, int32_t size) {
    size = std::clamp(size, 1, kMaxFontPoints);
    pango_font_description_set_absolute_size(description, double(size) * PANGO_SCALE);
}

PangoFontDescription *MakeFontDescription(const FontSpec &spec) {
    if (!DisplayAvailable())
        return nullptr;
    const std::string name = IsSystemFontName(spec.name) ? DefaultFontFamily() : spec.name;
    // Size 0 is the theme's, in the theme's points; any other size is the
    // language's, in pixels.
    const bool themeSize = spec.size < 1;
    // A damaged size of millions would ask the rasteriser for glyphs larger
    // than any screen.
    const int32_t size = themeSize ? DefaultFontSize() : std::clamp(spec.size, 1, kMaxFontPoints);
    auto setSize = [&](PangoFontDescription *d) {
        if (themeSize)
            pango_font_description_set_size(d, size * PANGO_SCALE);
        else
            SetLanguageSize(d, size);
    };

    PangoFontDescription *description = nullptr;
    const FamilyList &families = Families();
    for (int i = 0; i < families.count && !description; ++i) {
        if (!AsciiEqualNoCase(pango_font_family_get_name(families.families[i]), name))
            continue;
        PangoFontFace **faces = nullptr;
        int faceCount = 0;
        pango_font_family_list_faces(families.families[i], &faces, &faceCount);
        if (faceCount > 0) {
            description = pango_font_face_describe(faces[0]);
            setSize(description);
        }
        g_free(faces);
    }
    // Not an installed family by that exact name: let fontconfig resolve it
    // (this is how a metric alias such as "Arial" finds its substitute).
    if (!description)
        description = FromString(name, size);
    if (!description)
        description = FromString(DefaultFontFamily(), size);
    if (description)
        setSize(description);
    if (description && !Loads(description)) {
        pango_font_description_free(description);
        description = nullptr;
    }
    if (!description) {
        description = pango_font_description_new();
        pango_font_description_set_family(description, DefaultFontFamily().c_str());
        setSize(description);
    }
    pango_font_description_set_style(description, (spec.style & kStyleItalic) ? PANGO_STYLE_ITALIC
                                                                              : PANGO_STYLE_NORMAL);
    pango_font_description_set_weight(description, (spec.style & kStyleBold) ? PANGO_WEIGHT_BOLD
                                                                             : PANGO_WEIGHT_NORMAL);
    return description;
}

int32_t FontFamilyCount() { return Families().count + 1; }

std::string FontFamilyName(int32_t index) {
    if (index == 0)
        return "System";
    const FamilyList &families = Families();
    if (index < 0 || index > families.count)
        return {};
    return pango_font_family_get_name(families.families[index - 1]);
}

} // namespace kelp
