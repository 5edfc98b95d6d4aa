#include "graphics/graphics_base.h"

#include <cstring>

namespace kelp {

namespace {
Graphics *gCurrentGraphics = nullptr;
}

Graphics *CurrentGraphics() { return gCurrentGraphics; }
void SetCurrentGraphics(Graphics *g) { gCurrentGraphics = g; }

Graphics::Graphics(GraphicsTarget *t, bool owns)
    : mTarget(t), mTextFont("System"), mTextSize(12), mTextStyle(0), mPenWidth(1), mPenHeight(1),
      mScale(1.0f), mForeColor{0, 0, 0}, mBackColor{65535, 65535, 65535}, mPenX(0), mPenY(0),
      mOriginX(0), mOriginY(0), mMargin(0), mPatternOriginX(0),
      mPatternOriginY(0), mPattern{}, mShiftedPattern{}, mOwnsTarget(owns), mPageProvider(nullptr) {
    std::memset(mPattern, 0xFF, sizeof mPattern);
    std::memset(mShiftedPattern, 0xFF, sizeof mShiftedPattern);
}

Graphics::~Graphics() {
    if (gCurrentGraphics == this)
        gCurrentGraphics = nullptr;
    if (mOwnsTarget)
        delete mTarget;
}

void Graphics::ApplyPatternOrigin() {}

void Graphics::SetPattern(const uint8_t bytes[8]) {
    std::memcpy(mPattern, bytes, 8);
    ApplyPatternOrigin();
}

void Graphics::SetPatternKind(int32_t kind) {
    for (int i = 0; i < 8; ++i) {
        switch (kind) {
        case 1: mPattern[i] = (i % 2) ? 0xAA : 0x55; break;
        case 2: mPattern[i] = (i % 2) ? 0x00 : 0xFF; break;
        case 3: mPattern[i] = 0xAA; break;
        default: mPattern[i] = 0xFF; break;
        }
    }
    ApplyPatternOrigin();
}

void Graphics::SetFont(const FontSpec &spec) {
    SetTextFont(spec.name);
    SetTextSize(spec.size);
    SetTextStyle(spec.style);
}

void Graphics::SetTextFont(const std::string &name) { mTextFont = name; }
void Graphics::SetTextSize(int32_t size) { mTextSize = size; }
void Graphics::SetTextStyle(int32_t style) { mTextStyle = style; }

void Graphics::SetPenSize(int32_t w, int32_t h) {
    mPenWidth = w;
    mPenHeight = h;
}

void Graphics::MoveTo(int32_t x, int32_t y) {
    mPenX = x;
    mPenY = y;
}

void Graphics::LineTo(int32_t x, int32_t y) {
    mPenX = x;
    mPenY = y;
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
    static constexpr std::string_view kSample =
        "abcdefghijklmnopqrstuvwxyz ABCDEFGHIJKLMNOPQRSTUVWXYZ";
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
    const int32_t savedStyle = mTextStyle;
    BeginText();
    UpdateFont();
    std::string_view shown = text;
    bool cut = false;
    if (TextWidth(shown) > width) {
        // Ask for the condensed face; the toolkit has none, so the measure
        // is the same and the text is cut below.
        SetTextStyle(mTextStyle | kStyleCondensed);
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

ClipSaver::ClipSaver(Graphics &g) : mGraphics(g), mHad(g.ClipRect() != nullptr) {
    if (mHad) {
        // The stored clip is already moved by the origin; give it back in the
        // caller's terms.
        mSaved = *g.ClipRect();
        mSaved.left = static_cast<int16_t>(mSaved.left + g.OriginX());
        mSaved.right = static_cast<int16_t>(mSaved.right + g.OriginX());
        mSaved.top = static_cast<int16_t>(mSaved.top + g.OriginY());
        mSaved.bottom = static_cast<int16_t>(mSaved.bottom + g.OriginY());
    }
}

ClipSaver::~ClipSaver() { mGraphics.SetClipRect(mHad ? &mSaved : nullptr); }

GraphicsStateSaver::GraphicsStateSaver(Graphics &g)
    : mGraphics(g), mFore(g.ForeColor()), mBack(g.BackColor()), mPenW(g.PenWidth()),
      mPenH(g.PenHeight()), mPenX(g.PenX()), mPenY(g.PenY()), mFont(g.TextFont()),
      mSize(g.TextSize()), mStyle(g.TextStyle()), mClip(g) {}

GraphicsStateSaver::~GraphicsStateSaver() {
    mGraphics.SetForeColor(mFore);
    mGraphics.SetBackColor(mBack);
    mGraphics.SetPenSize(mPenW, mPenH);
    mGraphics.MoveTo(mPenX, mPenY);
    mGraphics.SetTextFont(mFont);
    mGraphics.SetTextSize(mSize);
    mGraphics.SetTextStyle(mStyle);
}

} // namespace kelp
