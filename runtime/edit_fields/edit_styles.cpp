// Styles of a multi-line field, held as tags of its buffer: "bold",
// "italic", "underline", "family<name>", "size<size>" and "#" with the
// colour's three 16-bit channels in hex.  A character without a family or
// size tag shows in the field's own font; one without a colour tag is black.
#include "edit_fields/edit_pane.h"

#include "edit_fields/utf8_text.h"
#include "graphics/font_mapping.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace kelp {

namespace {

std::string ColorTagName(int32_t color) {
    char name[16];
    std::snprintf(name, sizeof name, "#%04x%04x%04x", ((color >> 16) & 0xff) * 257,
                  ((color >> 8) & 0xff) * 257, (color & 0xff) * 257);
    return name;
}

bool HasPrefix(const char *name, const char *prefix) {
    return name && std::strncmp(name, prefix, std::strlen(prefix)) == 0;
}

} // namespace

void EditPane::Iters(int32_t start, int32_t length, GtkTextIter *a, GtkTextIter *b) const {
    start = std::max(start, 0);
    length = std::max(length, 0);
    gtk_text_buffer_get_iter_at_offset(mBuffer, a, start);
    gtk_text_buffer_get_iter_at_offset(mBuffer, b, start + length);
}

GtkTextTag *EditPane::Tag(const std::string &name, const char *property, const char *value) {
    GtkTextTagTable *table = gtk_text_buffer_get_tag_table(mBuffer);
    if (GtkTextTag *tag = gtk_text_tag_table_lookup(table, name.c_str()))
        return tag;
    if (std::strcmp(property, "size") == 0) {
        // A run's size is the language's, as the field's own font is: a
        // description that sets the size alone leaves family and style be.
        PangoFontDescription *size = pango_font_description_new();
        SetLanguageSize(size, std::atoi(value));
        GtkTextTag *tag =
            gtk_text_buffer_create_tag(mBuffer, name.c_str(), "font-desc", size, nullptr);
        pango_font_description_free(size);
        return tag;
    }
    if (std::strcmp(property, "foreground-gdk") == 0) {
        GdkColor color{};
        gdk_color_parse(value, &color);
        return gtk_text_buffer_create_tag(mBuffer, name.c_str(), property, &color, nullptr);
    }
    return gtk_text_buffer_create_tag(mBuffer, name.c_str(), property, value, nullptr);
}

void EditPane::RemoveTagsWithPrefix(GtkTextIter *a, GtkTextIter *b, const char *prefix) {
    struct Walk {
        const char *prefix;
        std::vector<GtkTextTag *> found;
    } walk{prefix, {}};
    gtk_text_tag_table_foreach(
        gtk_text_buffer_get_tag_table(mBuffer),
        [](GtkTextTag *tag, gpointer data) {
            auto *w = static_cast<Walk *>(data);
            gchar *name = nullptr;
            g_object_get(tag, "name", &name, nullptr);
            if (HasPrefix(name, w->prefix))
                w->found.push_back(tag);
            g_free(name);
        },
        &walk);
    for (GtkTextTag *tag : walk.found)
        gtk_text_buffer_remove_tag(mBuffer, tag, a, b);
}

StyleRunValue EditPane::StyleAt(const GtkTextIter &iter) const {
    StyleRunValue style;
    EditFieldRecord *record = Record();
    if (record) {
        style.font = std::string(ToUtf8(record->font.textFont));
        style.size = record->font.textSize;
    }
    GSList *tags = gtk_text_iter_get_tags(&iter);
    for (GSList *t = tags; t; t = t->next) {
        gchar *name = nullptr;
        g_object_get(t->data, "name", &name, nullptr);
        if (!name)
            continue;
        if (!std::strcmp(name, "bold"))
            style.bold = true;
        else if (!std::strcmp(name, "italic"))
            style.italic = true;
        else if (!std::strcmp(name, "underline"))
            style.underline = true;
        else if (!std::strcmp(name, "right justify"))
            style.alignment = 2;
        else if (!std::strcmp(name, "center"))
            style.alignment = 1;
        else if (HasPrefix(name, "family"))
            style.font = name + 6;
        else if (HasPrefix(name, "size"))
            style.size = std::atoi(name + 4);
        else if (name[0] == '#' && std::strlen(name) == 13) {
            unsigned r = 0, g = 0, b = 0;
            std::sscanf(name + 1, "%4x%4x%4x", &r, &g, &b);
            style.color = static_cast<int32_t>(((r >> 8) << 16) | ((g >> 8) << 8) | (b >> 8));
        }
        g_free(name);
    }
    g_slist_free(tags);
    return style;
}

void EditPane::ApplyStyle(int32_t start, int32_t length, const StyleRunValue &style) {
    SetAttribute(start, length, kStyleKindBold, style.bold, "");
    SetAttribute(start, length, kStyleKindItalic, style.italic, "");
    SetAttribute(start, length, kStyleKindUnderline, style.underline, "");
    if (!style.font.empty())
        SetAttribute(start, length, kStyleKindFont, 0, style.font);
    if (style.size > 0)
        SetAttribute(start, length, kStyleKindSize, style.size, "");
    SetAttribute(start, length, kStyleKindColor, style.color, "");
}

void EditPane::SetAttribute(int32_t start, int32_t length, StyleKind kind, int32_t value,
                            const std::string &font) {
    if (!IsStyled())
        return;
    GtkTextIter a, b;
    Iters(start, length, &a, &b);
    static const char *const kFlagTags[] = {"bold", "italic", "underline"};
    switch (kind) {
    case kStyleKindBold:
    case kStyleKindItalic:
    case kStyleKindUnderline:
        if (value)
            gtk_text_buffer_apply_tag_by_name(mBuffer, kFlagTags[kind], &a, &b);
        else
            gtk_text_buffer_remove_tag_by_name(mBuffer, kFlagTags[kind], &a, &b);
        break;
    case kStyleKindFont:
        RemoveTagsWithPrefix(&a, &b, "family");
        if (!font.empty())
            gtk_text_buffer_apply_tag(mBuffer, Tag("family" + font, "family", font.c_str()), &a,
                                      &b);
        break;
    case kStyleKindSize: {
        RemoveTagsWithPrefix(&a, &b, "size");
        // Sizes outside what a font can show are refused, not drawn huge.
        if (value > 0 && value <= 1000) {
            std::string points = std::to_string(value);
            gtk_text_buffer_apply_tag(mBuffer, Tag("size" + points, "size", points.c_str()), &a,
                                      &b);
        }
        break;
    }
    case kStyleKindColor: {
        RemoveTagsWithPrefix(&a, &b, "#");
        if ((value & 0xffffff) != 0) { // black is the absence of a colour
            std::string name = ColorTagName(value);
            gtk_text_buffer_apply_tag(mBuffer, Tag(name, "foreground-gdk", name.c_str()), &a, &b);
        }
        break;
    }
    }
}

int32_t EditPane::GetAttribute(int32_t start, int32_t length, StyleKind kind, bool *mixed,
                               std::string *font) {
    if (!IsStyled() || !mixed)
        return 0;
    GtkTextIter a, b;
    Iters(start, std::max(length, 1), &a, &b);
    StyleRunValue first = StyleAt(a);
    auto value = [kind](const StyleRunValue &s) -> int32_t {
        switch (kind) {
        case kStyleKindBold: return s.bold;
        case kStyleKindItalic: return s.italic;
        case kStyleKindUnderline: return s.underline;
        case kStyleKindSize: return s.size;
        case kStyleKindColor: return s.color;
        default: return 0;
        }
    };
    bool differs = false;
    for (GtkTextIter i = a; gtk_text_iter_compare(&i, &b) < 0 && !differs;
         gtk_text_iter_forward_char(&i)) {
        StyleRunValue s = StyleAt(i);
        differs = kind == kStyleKindFont ? s.font != first.font : value(s) != value(first);
    }
    if (kind == kStyleKindFont) {
        if (font)
            *font = differs ? std::string() : first.font;
        return 0;
    }
    if (!differs) {
        *mixed = false;
        return value(first);
    }
    if (kind == kStyleKindSize || kind == kStyleKindColor)
        return -1;
    return value(first); // mixed stays as the caller set it
}

std::vector<StyleRunValue> EditPane::Runs(std::vector<int32_t> *starts) const {
    std::vector<StyleRunValue> runs;
    if (!mTextView)
        return runs;
    GtkTextIter i, end;
    gtk_text_buffer_get_bounds(mBuffer, &i, &end);
    int32_t offset = 0;
    while (gtk_text_iter_compare(&i, &end) < 0) {
        GtkTextIter next = i;
        gtk_text_iter_forward_to_tag_toggle(&next, nullptr);
        StyleRunValue style = StyleAt(i);
        gchar *text = gtk_text_iter_get_text(&i, &next);
        style.text = text;
        g_free(text);
        int32_t length = gtk_text_iter_get_offset(&next) - gtk_text_iter_get_offset(&i);
        if (!runs.empty() && runs.back().SameStyle(style)) {
            runs.back().text += style.text;
        } else {
            runs.push_back(style);
            if (starts)
                starts->push_back(offset);
        }
        offset += length;
        i = next;
    }
    if (runs.empty()) { // one empty run, as a new store has
        runs.push_back(StyleAt(i));
        if (starts)
            starts->push_back(0);
    }
    return runs;
}

int32_t EditPane::RunCount() { return static_cast<int32_t>(Runs(nullptr).size()); }

bool EditPane::GetRun(int32_t index, StyleRunValue *run, int32_t *start) {
    std::vector<int32_t> starts;
    std::vector<StyleRunValue> runs = Runs(&starts);
    if (index < 0 || index >= static_cast<int32_t>(runs.size()))
        return false;
    *run = runs[static_cast<size_t>(index)];
    if (start)
        *start = starts[static_cast<size_t>(index)];
    return true;
}

bool EditPane::InsertRun(const StyleRunValue &run, int32_t index) {
    if (!mTextView)
        return false;
    std::vector<int32_t> starts;
    std::vector<StyleRunValue> runs = Runs(&starts);
    if (index < 0 || index > static_cast<int32_t>(runs.size()))
        return false;
    int32_t at =
        index == static_cast<int32_t>(runs.size()) ? Length() : starts[static_cast<size_t>(index)];
    GtkTextIter iter;
    gtk_text_buffer_get_iter_at_offset(mBuffer, &iter, at);
    gtk_text_buffer_insert(mBuffer, &iter, run.text.data(), static_cast<gint>(run.text.size()));
    ApplyStyle(at, CharCount(run.text), run);
    return true;
}

void EditPane::AppendRun(const StyleRunValue &run) {
    if (!mTextView)
        return;
    int32_t at = Length();
    GtkTextIter end;
    gtk_text_buffer_get_end_iter(mBuffer, &end);
    gtk_text_buffer_insert(mBuffer, &end, run.text.data(), static_cast<gint>(run.text.size()));
    ApplyStyle(at, CharCount(run.text), run);
}

bool EditPane::RemoveRun(int32_t index) {
    std::vector<int32_t> starts;
    std::vector<StyleRunValue> runs = Runs(&starts);
    if (!mTextView || index < 0 || index >= static_cast<int32_t>(runs.size()))
        return false;
    GtkTextIter a, b;
    Iters(starts[static_cast<size_t>(index)], CharCount(runs[static_cast<size_t>(index)].text), &a,
          &b);
    gtk_text_buffer_delete(mBuffer, &a, &b);
    return true;
}

int32_t EditPane::GetAlignment(int32_t start, int32_t) {
    if (!mTextView)
        return 0;
    GtkTextIter a, b;
    Iters(start, 0, &a, &b);
    return StyleAt(a).alignment;
}

void EditPane::SetAlignment(int32_t start, int32_t length, int32_t align) {
    if (!mTextView)
        return;
    GtkTextIter a, b;
    Iters(start, length, &a, &b);
    gtk_text_iter_set_line_offset(&a, 0); // whole paragraphs
    if (!gtk_text_iter_ends_line(&b))
        gtk_text_iter_forward_to_line_end(&b);
    gtk_text_buffer_remove_tag_by_name(mBuffer, "center", &a, &b);
    gtk_text_buffer_remove_tag_by_name(mBuffer, "right justify", &a, &b);
    if (align == 1 || align == 2)
        gtk_text_buffer_apply_tag_by_name(mBuffer, align == 1 ? "center" : "right justify", &a, &b);
}

// ------------------------------------------------------- TextStyleData

// One record per character: flags (1 bold, 2 italic, 4 underline, 8 a font
// name follows, 16 a colour follows), the name as a length byte and bytes
// when it differs from the previous character's, the colour's three high
// bytes when not black, and the size in points.
std::string EditPane::StyleData() {
    std::string data;
    if (!mTextView)
        return data;
    GtkTextIter i, end;
    gtk_text_buffer_get_bounds(mBuffer, &i, &end);
    std::string lastFont;
    bool first = true;
    for (; gtk_text_iter_compare(&i, &end) < 0; gtk_text_iter_forward_char(&i)) {
        StyleRunValue s = StyleAt(i);
        std::string name = s.font.substr(0, 255);
        bool withName = first || name != lastFont;
        bool withColor = (s.color & 0xffffff) != 0;
        data += static_cast<char>((s.bold ? 1 : 0) | (s.italic ? 2 : 0) | (s.underline ? 4 : 0) |
                                  (withName ? 8 : 0) | (withColor ? 16 : 0));
        if (withName) {
            data += static_cast<char>(name.size());
            data += name;
            lastFont = name;
        }
        if (withColor) {
            data += static_cast<char>((s.color >> 16) & 0xff);
            data += static_cast<char>((s.color >> 8) & 0xff);
            data += static_cast<char>(s.color & 0xff);
        }
        data += static_cast<char>(std::clamp(s.size, 0, 255));
        first = false;
    }
    return data;
}

void EditPane::SetTextAndStyle(const std::string &utf8, std::string_view style) {
    SetText(utf8);
    if (!IsStyled())
        return;
    const int32_t count = Length();
    StyleRunValue current;
    int32_t runStart = 0, index = 0;
    size_t p = 0;
    std::string font;
    bool any = false;
    for (; index < count; ++index) {
        // A record cut short ends the data: the rest keeps its style.
        if (p >= style.size())
            break;
        uint8_t flags = static_cast<uint8_t>(style[p++]);
        StyleRunValue s;
        s.bold = flags & 1, s.italic = flags & 2, s.underline = flags & 4;
        if (flags & 8) {
            if (p >= style.size())
                break;
            size_t n = static_cast<uint8_t>(style[p++]);
            if (p + n > style.size())
                break;
            font = std::string(style.substr(p, n));
            p += n;
        }
        s.font = font;
        if (flags & 16) {
            if (p + 3 > style.size())
                break;
            s.color = (static_cast<uint8_t>(style[p]) << 16) |
                      (static_cast<uint8_t>(style[p + 1]) << 8) |
                      static_cast<uint8_t>(style[p + 2]);
            p += 3;
        }
        if (p >= style.size())
            break;
        s.size = static_cast<uint8_t>(style[p++]);
        if (any && !s.SameStyle(current)) {
            ApplyStyle(runStart, index - runStart, current);
            runStart = index;
        }
        current = s;
        any = true;
    }
    if (any)
        ApplyStyle(runStart, index - runStart, current);
}

} // namespace kelp
