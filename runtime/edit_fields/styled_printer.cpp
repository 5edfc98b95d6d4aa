// StyledTextPrinter: a field's styled text drawn block by block on any
// Graphics (a window, a picture, a printer page).  The printer copies the
// text and its runs when made, so the field may change or close while
// pages are printed, and keeps its place: each DrawBlock draws the lines
// that fit and moves on, until no word is left.
//
// Lines are broken at blanks by measuring words with the Graphics itself,
// so the breaks are those of the target's own fonts; a word wider than the
// whole line is broken between characters.  A line always moves the place
// on, so a loop until EOF ends even when a block is too small for a line.
#include "edit_fields/styled_text.h"

#include "edit_fields/edit_field.h"
#include "edit_fields/utf8_text.h"
#include "graphics/graphics_base.h"
#include "graphics/graphics_object.h"
#include "objects/definitions.h"
#include "objects/text.h"

#include "kelp/edit_fields.h"
#include "kelp/objects.h"

#include <glib.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kelp {
namespace {

enum class TokenKind { kWord, kSpace, kBreak };

struct Token {
    size_t style;
    TokenKind kind;
    std::string text; // UTF-8; empty for a break
};

class BlockLayout {
public:
    BlockLayout(std::vector<StyleRunValue> runs, const FontSpec &fieldFont);
    bool AtEnd() const { return mLastWord < 0 || mPos > static_cast<size_t>(mLastWord); }
    // Draws the lines that fit in `height`, and at least one; the height used.
    int32_t DrawBlock(Graphics &g, int32_t x, int32_t y, int32_t height, int32_t width);

private:
    struct Line {
        std::vector<size_t> items; // token indices to draw
        size_t end;                // the place after the line
        int32_t ascent, descent;
    };
    Line NextLine(Graphics &g, int32_t width);
    void Apply(Graphics &g, size_t style) const;
    void Metrics(Graphics &g, size_t style, int32_t *ascent, int32_t *descent) const;
    int32_t Measure(Graphics &g, const Token &t) const {
        Apply(g, t.style);
        return std::max(g.TextWidth(t.text), 0);
    }

    std::vector<StyleRunValue> mStyles;
    std::vector<Token> mTokens;
    size_t mPos = 0;
    long mLastWord = -1;
};

BlockLayout::BlockLayout(std::vector<StyleRunValue> runs, const FontSpec &fieldFont) {
    const std::string family =
        fieldFont.name.empty() || fieldFont.name == "System" || fieldFont.name == "SmallSystem"
            ? DefaultFontFamily()
            : fieldFont.name;
    const int32_t size = fieldFont.size > 0 ? fieldFont.size : DefaultFontSize();
    for (StyleRunValue &run : runs) {
        size_t style = mStyles.size();
        const std::string &text = run.text;
        size_t i = 0;
        while (i < text.size()) {
            char c = text[i];
            if (c == '\r' || c == '\n') {
                i += (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ? 2 : 1;
                mTokens.push_back(Token{style, TokenKind::kBreak, {}});
                continue;
            }
            const bool blank = c == ' ' || c == '\t';
            size_t j = i;
            while (j < text.size() && text[j] != '\r' && text[j] != '\n' &&
                   (text[j] == ' ' || text[j] == '\t') == blank)
                ++j;
            mTokens.push_back(
                Token{style, blank ? TokenKind::kSpace : TokenKind::kWord, text.substr(i, j - i)});
            if (!blank)
                mLastWord = static_cast<long>(mTokens.size()) - 1;
            i = j;
        }
        run.text.clear();
        if (run.font.empty())
            run.font = family;
        if (run.size <= 0)
            run.size = size;
        mStyles.push_back(run);
    }
}

void BlockLayout::Apply(Graphics &g, size_t style) const {
    const StyleRunValue &s = mStyles[style];
    g.SetTextFont(s.font);
    g.SetTextSize(std::clamp(s.size, 1, 1000));
    g.SetTextStyle((s.bold ? kStyleBold : 0) | (s.italic ? kStyleItalic : 0) |
                   (s.underline ? kStyleUnderline : 0));
    g.SetForeColor(ColorWordToRGB(static_cast<uint32_t>(s.color)));
}

// A Graphics without font metrics gets the size's own proportions.
void BlockLayout::Metrics(Graphics &g, size_t style, int32_t *ascent, int32_t *descent) const {
    Apply(g, style);
    int32_t a = g.Ascent(), d = g.Descent();
    const int32_t size = std::clamp(mStyles[style].size, 1, 1000);
    *ascent = a > 0 ? a : size;
    *descent = d >= 0 ? d : size / 4;
}

BlockLayout::Line BlockLayout::NextLine(Graphics &g, int32_t width) {
    Line line{{}, mPos, 0, 0};
    const bool paragraphStart = mPos == 0 || mTokens[mPos - 1].kind == TokenKind::kBreak;
    int32_t used = 0;
    bool haveWord = false;
    size_t i = mPos;
    size_t metricsStyle = i < mTokens.size() ? mTokens[i].style : 0;
    while (i < mTokens.size()) {
        Token &t = mTokens[i];
        if (t.kind == TokenKind::kBreak) {
            ++i;
            break;
        }
        if (t.kind == TokenKind::kSpace) {
            // Blanks that end a wrapped line vanish with the break; those
            // that open a paragraph are its indent.
            if (line.items.empty() && !paragraphStart) {
                ++i;
                continue;
            }
            int32_t w = Measure(g, t);
            if (used + w > width) {
                ++i;
                break;
            }
            line.items.push_back(i++);
            used += w;
            continue;
        }
        int32_t w = Measure(g, t);
        if (used + w <= width) {
            line.items.push_back(i++);
            used += w;
            haveWord = true;
            continue;
        }
        if (haveWord)
            break;
        // Alone and too wide: keep the characters that fit (at least one).
        const char *start = t.text.c_str(), *p = g_utf8_next_char(start);
        for (const char *next = p; *p; p = next) {
            next = g_utf8_next_char(p);
            Apply(g, t.style);
            if (used + g.TextWidth(std::string_view(start, static_cast<size_t>(p - start))) > width)
                break;
        }
        const size_t cut = static_cast<size_t>(p - start);
        if (cut < t.text.size()) {
            Token rest{t.style, TokenKind::kWord, t.text.substr(cut)};
            t.text.resize(cut);
            mTokens.insert(mTokens.begin() + static_cast<long>(i) + 1, rest);
            if (mLastWord >= static_cast<long>(i))
                ++mLastWord;
        }
        line.items.push_back(i++);
        break;
    }
    while (!line.items.empty() && mTokens[line.items.back()].kind == TokenKind::kSpace)
        line.items.pop_back();
    line.end = i;
    if (line.items.empty()) {
        Metrics(g, metricsStyle, &line.ascent, &line.descent);
        return line;
    }
    for (size_t item : line.items) {
        int32_t a, d;
        Metrics(g, mTokens[item].style, &a, &d);
        line.ascent = std::max(line.ascent, a);
        line.descent = std::max(line.descent, d);
    }
    return line;
}

int32_t BlockLayout::DrawBlock(Graphics &g, int32_t x, int32_t y, int32_t height, int32_t width) {
    GraphicsStateSaver saver(g);
    int32_t used = 0;
    while (!AtEnd()) {
        Line line = NextLine(g, width);
        const int32_t lineHeight = line.ascent + line.descent;
        // A line for the next block; a word split for it stays split,
        // which changes nothing of where that block begins.
        if (used > 0 && used + lineHeight > height)
            break;
        int32_t at = x;
        for (size_t item : line.items) {
            const Token &t = mTokens[item];
            Apply(g, t.style);
            g.DrawText(t.text, at, y + used + line.ascent, 0);
            at += g.TextWidth(t.text);
        }
        used += lineHeight;
        mPos = line.end;
    }
    return used;
}

struct PrinterRecord {
    RuntimeObject object;
    RuntimeObject *graphics; // counted
    int32_t width;
    BlockLayout *layout; // owned
};

PrinterRecord *Printer(RuntimeObject *o) { return reinterpret_cast<PrinterRecord *>(o); }

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void StyledTextPrinterFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    delete Printer(self)->layout;
    Printer(self)->layout = nullptr;
    RuntimeUnlockObject(Printer(self)->graphics);
    Printer(self)->graphics = nullptr;
}

// A printer of the field's text as it is now, for `g` at `width` pixels.
// A field with no text, or no Graphics, gives a printer that is at its end.
extern "C" RuntimeObject *editStyleTextPrinter(RuntimeObject *field, RuntimeObject *g,
                                               int32_t width) {
    if (!field)
        return nullptr;
    std::vector<StyleRunValue> runs;
    if (StyledTextDelegate *store = FieldStyleStore(field)) {
        StyleRunValue run;
        for (int32_t i = 0; store->GetRun(i, &run, nullptr); ++i)
            runs.push_back(run);
    } else {
        KelpString text = editTextGetter(field, 0);
        StyleRunValue run;
        FontSpec font = FieldFontSpec(field);
        run.bold = font.style & kStyleBold, run.italic = font.style & kStyleItalic;
        run.underline = font.style & kStyleUnderline;
        run.color = EditRecord(field)->textColor;
        run.text = ToUtf8(text);
        objtext::Release(text);
        runs.push_back(run);
    }
    RuntimeObject *printer = RuntimeNewObject(ClassForDefinition(StyledTextPrinterDefinition()));
    PrinterRecord *r = Printer(printer);
    RuntimeLockObject(g);
    r->graphics = g;
    r->width = width;
    r->layout = new BlockLayout(std::move(runs), FieldFontSpec(field));
    return printer;
}

extern "C" void styledPrinterDrawBlock(RuntimeObject *self, int32_t x, int32_t y, int32_t height) {
    if (!self || !Printer(self)->layout)
        return;
    if (Graphics *g = GraphicsOfObject(Printer(self)->graphics))
        Printer(self)->layout->DrawBlock(*g, x, y, height, Printer(self)->width);
}

extern "C" uint8_t styledPrinterEOF(RuntimeObject *self) {
    return !self || !Printer(self)->layout || Printer(self)->layout->AtEnd() ||
           !GraphicsOfObject(Printer(self)->graphics);
}

extern "C" void styledPrinterWidthSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (self)
        Printer(self)->width = value;
}

namespace kelp {

ObjectDefinition *StyledTextPrinterDefinition() {
    static const PropertyRow properties[] = {
        {0, "Width", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(styledPrinterWidthSetter),
         offsetof(PrinterRecord, width)},
        {0, "EOF", &kTypeBoolean, KELP_ENTRY(styledPrinterEOF), {}},
    };
    static const ParameterRow block[] = {
        {"x", &kTypeInteger}, {"y", &kTypeInteger}, {"height", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"DrawBlock", nullptr, block, 3, KELP_ENTRY(styledPrinterDrawBlock)},
    };
    static const ClassDescription description = {
        .name = "StyledTextPrinter",
        .instanceSize = sizeof(PrinterRecord),
        .finalizer = KELP_ENTRY(StyledTextPrinterFinalizer),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
