#include "graphics/graphics_base.h"

#include <cstring>

namespace kelp {

namespace {
Graphics *gCurrentGraphics = nullptr;
}

Graphics *CurrentGraphics() { return gCurrentGraphics; }
void SetCurrentGraphics(Graphics *g) { gCurrentGraphics = g; }

Graphics::Graphics(GraphicsTarget *t, bool owns)
    : target(t), textFont("System"), textSize(12), textStyle(0), penWidth(1), penHeight(1),
      scale(1.0f), foreColor{0, 0, 0}, backColor{65535, 65535, 65535}, penX(0), penY(0), originX(0),
      originY(0), margin(0), patternOriginX(0), patternOriginY(0), pattern{}, shiftedPattern{},
      ownsTarget(owns), pageProvider(nullptr) {
    std::memset(pattern, 0xFF, sizeof pattern);
    std::memset(shiftedPattern, 0xFF, sizeof shiftedPattern);
}

Graphics::~Graphics() {
    if (gCurrentGraphics == this)
        gCurrentGraphics = nullptr;
    if (ownsTarget)
        delete target;
}

void Graphics::ApplyPatternOrigin() {}

void Graphics::SetPattern(const uint8_t bytes[8]) {
    std::memcpy(pattern, bytes, 8);
    ApplyPatternOrigin();
}

void Graphics::SetPatternKind(int32_t kind) {
    for (int i = 0; i < 8; ++i) {
        switch (kind) {
        case 1: pattern[i] = (i % 2) ? 0xAA : 0x55; break;
        case 2: pattern[i] = (i % 2) ? 0x00 : 0xFF; break;
        case 3: pattern[i] = 0xAA; break;
        default: pattern[i] = 0xFF; break;
        }
    }
    ApplyPatternOrigin();
}

void Graphics::SetFont(const FontSpec &spec) {
    SetTextFont(spec.name);
    SetTextSize(spec.size);
    SetTextStyle(spec.style);
}

void Graphics::SetTextFont(const std::string &name) { textFont = name; }
void Graphics::SetTextSize(int32_t size) { textSize = size; }
void Graphics::SetTextStyle(int32_t style) { textStyle = style; }

void Graphics::SetPenSize(int32_t w, int32_t h) {
    penWidth = w;
    penHeight = h;
}

void Graphics::MoveTo(int32_t x, int32_t y) {
    penX = x;
    penY = y;
}

void Graphics::LineTo(int32_t x, int32_t y) {
    penX = x;
    penY = y;
}

namespace {

// Steps back from `n` to the start of a UTF-8 character.
int32_t ToCharBoundary(std::string_view text, int32_t n) {
    while (n > 0 && n < static_cast<int32_t>(text.size()) &&
           (static_cast<uint8_t>(text[n]) & 0xC0) == 0x80)
        --n;
    return n;
}

bool IsMultiByte(std::string_view text) {
    for (char c : text)
        if (static_cast<uint8_t>(c) >= 0x80)
            return true;
    return false;
}

} // namespace

int32_t Graphics::FitText(std::string_view text, int32_t width, bool wordBreak) {
    const int32_t length = static_cast<int32_t>(text.size());
    if (length == 0 || TextWidth(text) <= width)
        return length;
    if (width <= 0)
        return 0;

    // First probe: as many characters as an average glyph of a sample says;
    // texts of several bytes a character take more bytes per glyph.
    static constexpr std::string_view kSample = "abcdefghijklmnopqrstuvwxyz ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    int32_t sampleWidth = TextWidth(kSample);
    double average = sampleWidth > 0 ? static_cast<double>(sampleWidth) / kSample.size() : 7.0;
    double factor = IsMultiByte(text) ? 1.8 : 1.0;
    int32_t probe = static_cast<int32_t>(width / average * factor);

    // Invariant: lo bytes fit, hi bytes don't.
    int32_t lo = 0, hi = length;
    while (hi - lo > 1) {
        if (probe <= lo || probe >= hi)
            probe = lo + (hi - lo) / 2;
        int32_t at = ToCharBoundary(text, probe);
        if (at <= lo) {
            // No character starts between lo and the probe: look further on.
            at = probe;
            while (at < hi && (static_cast<uint8_t>(text[at]) & 0xC0) == 0x80)
                ++at;
            if (at >= hi)
                break;
        }
        if (TextWidth(text.substr(0, at)) <= width)
            lo = at;
        else
            hi = at;
        probe = -1;
    }
    int32_t fit = ToCharBoundary(text, lo);
    if (wordBreak) {
        int32_t b = fit;
        while (b > 0 && text[b - 1] != ' ' && text[b - 1] != '\t')
            --b;
        if (b > 0)
            fit = b;
    }
    return fit;
}

void Graphics::DrawStringCondensed(std::string_view text, int32_t x, int32_t y, int32_t width,
                                   std::string_view ellipsis) {
    const int32_t savedStyle = textStyle;
    BeginText();
    UpdateFont();
    std::string_view shown = text;
    bool cut = false;
    if (TextWidth(shown) > width) {
        // Ask for the condensed face; the toolkit has none, so the measure
        // is the same and the text is cut below.
        SetTextStyle(textStyle | kStyleCondensed);
        if (TextWidth(shown) > width) {
            int32_t ellipsisWidth = TextWidth(ellipsis);
            if (ellipsisWidth >= width) {
                shown = {};
            } else {
                shown = text.substr(0, FitText(text, width - ellipsisWidth, false));
                cut = true;
            }
        }
    }
    if (!shown.empty())
        DrawText(shown, x, y, 0);
    if (cut)
        DrawText(ellipsis, x + TextWidth(shown), y, 0);
    EndText();
    SetTextStyle(savedStyle);
}

// ---------------------------------------------------------------- savers

ClipSaver::ClipSaver(Graphics &g) : g_(g), had_(g.ClipRect() != nullptr) {
    if (had_) {
        // The stored clip is already moved by the origin; give it back in the
        // caller's terms.
        saved_ = *g.ClipRect();
        saved_.left = static_cast<int16_t>(saved_.left + g.OriginX());
        saved_.right = static_cast<int16_t>(saved_.right + g.OriginX());
        saved_.top = static_cast<int16_t>(saved_.top + g.OriginY());
        saved_.bottom = static_cast<int16_t>(saved_.bottom + g.OriginY());
    }
}

ClipSaver::~ClipSaver() { g_.SetClipRect(had_ ? &saved_ : nullptr); }

GraphicsStateSaver::GraphicsStateSaver(Graphics &g)
    : g_(g), fore_(g.ForeColor()), back_(g.BackColor()), penW_(g.PenWidth()), penH_(g.PenHeight()),
      penX_(g.PenX()), penY_(g.PenY()), font_(g.TextFont()), size_(g.TextSize()),
      style_(g.TextStyle()), clip_(g) {}

GraphicsStateSaver::~GraphicsStateSaver() {
    g_.SetForeColor(fore_);
    g_.SetBackColor(back_);
    g_.SetPenSize(penW_, penH_);
    g_.MoveTo(penX_, penY_);
    g_.SetTextFont(font_);
    g_.SetTextSize(size_);
    g_.SetTextStyle(style_);
}

} // namespace kelp
