#include "controls/caption.h"

#include "objects/text.h"
#include "strings/kstring.h"

namespace kelp {
namespace {

std::string Utf8Of(KelpString caption) {
    if (!caption || caption->length <= 0)
        return std::string();
    uint32_t encoding = caption->encoding;
    if (encoding == kEncodingUTF8 || encoding == kEncodingASCII || encoding == kEncodingUnknown)
        return std::string(objtext::View(caption));
    string converted = ConvertEncoding(string::Wrap(caption), kEncodingUTF8);
    return std::string(objtext::View(converted.Storage()));
}

} // namespace

std::string MnemonicCaption(KelpString caption) {
    std::string text = Utf8Of(caption), out;
    out.reserve(text.size() + 4);
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '&' && i + 1 < text.size() && text[i + 1] == '&') {
            out += '&';
            ++i;
        } else if (c == '&') {
            out += '_';
        } else if (c == '_') {
            out += "__";
        } else {
            out += c;
        }
    }
    return out;
}

std::string StripAmpersands(KelpString caption) {
    std::string text = Utf8Of(caption), out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '&' && i + 1 < text.size() && text[i + 1] == '&')
            out += '&', ++i;
        else if (text[i] != '&')
            out += text[i];
    }
    return out;
}

FontSpec ToFontSpec(const ControlFont &font) {
    FontSpec spec;
    spec.name = std::string(objtext::View(font.textFont));
    spec.size = font.textSize;
    spec.style = (font.bold ? kStyleBold : 0) | (font.italic ? kStyleItalic : 0) |
                 (font.underline ? kStyleUnderline : 0);
    return spec;
}

void ApplyFont(GtkWidget *widget, const ControlFont &font) {
    if (!widget)
        return;
    if (GTK_IS_BIN(widget) && gtk_bin_get_child(GTK_BIN(widget)))
        widget = gtk_bin_get_child(GTK_BIN(widget));
    PangoFontDescription *description = MakeFontDescription(ToFontSpec(font));
    if (!description)
        return;
    gtk_widget_modify_font(widget, description);
    pango_font_description_free(description);
}

} // namespace kelp
