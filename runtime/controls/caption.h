#pragma once
// The text a label shows for a caption of the language, and the font a
// widget shows it in.
#include "graphics/font_mapping.h"

#include "kelp/records.h"

#include <gtk/gtk.h>

#include <string>

namespace kelp {

// The caption as UTF-8 in the toolkit's mnemonic form: "&&" shows one "&",
// a single "&" marks the next character as the mnemonic, and "_" shows as
// itself.  Line ends stay.
std::string MnemonicCaption(KelpString caption);

// The caption with its "&" markers taken out ("&&" keeps one "&").
std::string StripAmpersands(KelpString caption);

// The font fields every captioned control keeps, in the record's order.
struct ControlFont {
    KelpString textFont; // counted
    uint8_t bold, italic, underline;
    int16_t textSize;
};

FontSpec ToFontSpec(const ControlFont &font);
// Applies the font to the widget (a label, or a bin's label child).
void ApplyFont(GtkWidget *widget, const ControlFont &font);

} // namespace kelp
