#pragma once
// Graphics: every drawing of the runtime goes through this abstract class.
// The base level keeps the state (font, pen, colours, origin, pattern, clip)
// and has empty drawing operations; GraphicsGTK (graphics_gtk.h) draws them
// on the toolkit.  The language's "Graphics" object is a thin handle on one
// of these (graphics_object.h).
#include "graphics/font_mapping.h"
#include "graphics/geometry.h"
#include "graphics/graphics_target.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kelp {

class Graphics {
public:
    // The target is borrowed unless `ownsTarget`, in which case the
    // destructor deletes it.
    explicit Graphics(GraphicsTarget *target, bool ownsTarget = false);
    virtual ~Graphics();
    Graphics(const Graphics &) = delete;
    Graphics &operator=(const Graphics &) = delete;

    // --- pattern: kept for callers that set one; it draws nothing on GDK.
    virtual void ApplyPatternOrigin();
    void SetPattern(const uint8_t bytes[8]);
    void SetPatternKind(int32_t kind);

    // --- clip, in window coordinates; null clears it.
    virtual bool HasClip() const { return false; }
    virtual void SetClipRect(const Rect *rect) { (void)rect; }
    virtual const Rect *ClipRect() const { return nullptr; }

    // --- font
    virtual void UpdateFont() {}
    void SetFont(const FontSpec &spec);
    // Each of these leaves the cached font alone unless the value changes.
    virtual void SetTextFont(const std::string &name);
    virtual void SetTextSize(int32_t size);
    virtual void SetTextStyle(int32_t style);
    const std::string &TextFont() const { return mTextFont; }
    int32_t TextSize() const { return mTextSize; }
    int32_t TextStyle() const { return mTextStyle; }

    // --- pen and colours.  The pen size is remembered but GDK lines stay one
    // pixel wide.
    virtual void SetPenSize(int32_t w, int32_t h);
    virtual void ResetPen() { SetPenSize(1, 1); }
    virtual void SetForeColor(const RGBColor &rgb) { mForeColor = rgb; }
    virtual void SetBackColor(const RGBColor &rgb) { mBackColor = rgb; }
    const RGBColor &ForeColor() const { return mForeColor; }
    const RGBColor &BackColor() const { return mBackColor; }

    // --- shapes, in window coordinates.
    virtual void FrameRect(const Rect &r) { (void)r; }
    virtual void FillRect(const Rect &r) { (void)r; }
    virtual void EraseRect(const Rect &r) { (void)r; }
    virtual void FrameRoundRect(const Rect &r, int32_t cw, int32_t ch) {
        (void)r, (void)cw, (void)ch;
    }
    virtual void FillRoundRect(const Rect &r, int32_t cw, int32_t ch) {
        (void)r, (void)cw, (void)ch;
    }
    virtual void FrameOval(const Rect &r) { (void)r; }
    virtual void FillOval(const Rect &r) { (void)r; }
    virtual void MoveTo(int32_t x, int32_t y);
    virtual void LineTo(int32_t x, int32_t y);
    // x1, y1, x2, y2, ... in window coordinates; `count` is the number of
    // coordinates (an odd count repeats nothing: the last y is 0).
    virtual void DrawPolygon(const int32_t *coords, int32_t count, bool fill) {
        (void)coords, (void)count, (void)fill;
    }

    // --- text.  Texts are UTF-8.  `y` is the baseline.
    virtual void DrawText(std::string_view text, int32_t x, int32_t y, int32_t width) {
        (void)text, (void)x, (void)y, (void)width;
    }
    virtual int32_t TextWidth(std::string_view text) {
        (void)text;
        return 0;
    }
    virtual int32_t StringDirection() const { return -1; }
    virtual int32_t StringDirection(std::string_view text) const {
        (void)text;
        return -1;
    }
    virtual int32_t Ascent() { return -1; }
    virtual int32_t Descent() { return -1; }
    virtual int32_t TextHeight() { return -1; }
    virtual int32_t MaxDepth() const { return 65535; }
    virtual int32_t WrappedHeight(std::string_view text, int32_t width) {
        (void)text, (void)width;
        return 0;
    }
    // The rect's top is the top of the text; align 1 centres, 2 right-aligns.
    virtual void DrawTextWrapped(std::string_view text, const Rect &r, int32_t align) {
        (void)text, (void)r, (void)align;
    }
    // The text cut to fit `width`, with `ellipsis` after it when cut; an
    // ellipsis that alone is too wide draws nothing.
    void DrawStringCondensed(std::string_view text, int32_t x, int32_t y, int32_t width,
                             std::string_view ellipsis);
    // The number of bytes of `text` (UTF-8) that fit in `width`, on a
    // character boundary; with `wordBreak`, backed up to the last blank.
    int32_t FitText(std::string_view text, int32_t width, bool wordBreak);

    // --- icons and pixels.  Kind 0 error, 1 info, 2 warning, 3 question.
    virtual void DrawStockIcon(int32_t kind, int32_t x, int32_t y, int32_t w, int32_t h) {
        (void)kind, (void)x, (void)y, (void)w, (void)h;
    }
    virtual bool GetPixel(int32_t x, int32_t y, RGBColor &rgb) {
        (void)x, (void)y, (void)rgb;
        return false;
    }
    virtual void SetPixel(int32_t x, int32_t y, const RGBColor &rgb) {
        (void)x, (void)y, (void)rgb;
    }
    virtual void DrawFocusRing(const Rect &r) { (void)r; }
    // Pixels of a picture: `rgba` holds `width` x `height` pixels of four
    // bytes (red, green, blue, then alpha, not premultiplied), rows `stride`
    // bytes apart.  They fill `dest` (window coordinates), scaled without
    // smoothing when the sizes differ.  The screen draws pictures from its
    // own pixmaps and never comes here; a page or other vector target does.
    virtual void DrawImage(const uint8_t *rgba, int32_t stride, int32_t width, int32_t height,
                           const Rect &dest) {
        (void)rgba, (void)stride, (void)width, (void)height, (void)dest;
    }

    // --- target
    GraphicsTarget *Target() const { return mTarget; }
    void SetOrigin(int32_t x, int32_t y) {
        mOriginX = x;
        mOriginY = y;
    }
    int32_t OriginX() const { return mOriginX; }
    int32_t OriginY() const { return mOriginY; }
    int32_t PenX() const { return mPenX; }
    int32_t PenY() const { return mPenY; }
    int32_t PenWidth() const { return mPenWidth; }
    int32_t PenHeight() const { return mPenHeight; }
    const uint8_t *Pattern() const { return mPattern; }
    const uint8_t *ShiftedPattern() const { return mShiftedPattern; }
    void SetPatternOrigin(int32_t x, int32_t y) {
        mPatternOriginX = x;
        mPatternOriginY = y;
    }

protected:
    // Hooks that text operations call first; nothing to do on GDK.
    virtual void BeginText() {}
    virtual void EndText() {}

    GraphicsTarget *mTarget;
    std::string mTextFont;
    int32_t mTextSize;
    int32_t mTextStyle;
    int32_t mPenWidth, mPenHeight;
    float mScale;
    RGBColor mForeColor, mBackColor;
    int32_t mPenX, mPenY;
    int32_t mOriginX, mOriginY;
    int32_t mMargin;
    int32_t mPatternOriginX, mPatternOriginY;
    uint8_t mPattern[8];
    uint8_t mShiftedPattern[8];
    bool mOwnsTarget;
    void *mPageProvider;
};

// The Graphics being drawn with at the moment (a Paint event's), or null.
Graphics *CurrentGraphics();
void SetCurrentGraphics(Graphics *g);

// Puts back the clip at the end of a scope.
class ClipSaver {
public:
    explicit ClipSaver(Graphics &g);
    ~ClipSaver();
    ClipSaver(const ClipSaver &) = delete;
    ClipSaver &operator=(const ClipSaver &) = delete;

private:
    Graphics &mGraphics;
    bool mHad;
    Rect mSaved;
};

// Puts back colours, pen, position, font, style and clip at the end of a
// scope, so a helper may draw without disturbing its caller.
class GraphicsStateSaver {
public:
    explicit GraphicsStateSaver(Graphics &g);
    ~GraphicsStateSaver();
    GraphicsStateSaver(const GraphicsStateSaver &) = delete;
    GraphicsStateSaver &operator=(const GraphicsStateSaver &) = delete;

private:
    Graphics &mGraphics;
    RGBColor mFore, mBack;
    int32_t mPenW, mPenH, mPenX, mPenY;
    std::string mFont;
    int32_t mSize, mStyle;
    ClipSaver mClip;
};

} // namespace kelp
