#pragma once
// What a StyledText object asks of the store behind it: an edit field's
// buffer or a free-standing list of runs.  Positions and lengths count
// characters; a getter over a range that mixes values sets `mixed` and
// answers the first value (Boolean kinds), -1 (size and colour) or "" (font).
#include <cstdint>
#include <string>

namespace kelp {

// One run of equal style, as the store hands it out or takes it in.
struct StyleRunValue {
    bool bold = false, italic = false, underline = false;
    int32_t size = 0;
    std::string font;  // "" for the field's own
    int32_t color = 0; // 0xRRGGBB
    std::string text;  // UTF-8
    int32_t alignment = 0;
    bool SameStyle(const StyleRunValue &o) const {
        return bold == o.bold && italic == o.italic && underline == o.underline && size == o.size &&
               font == o.font && color == o.color;
    }
};

enum StyleKind : int32_t {
    kStyleKindBold = 0,
    kStyleKindItalic = 1,
    kStyleKindUnderline = 2,
    kStyleKindSize = 3,
    kStyleKindFont = 4,
    kStyleKindColor = 5,
};

class StyledTextDelegate {
public:
    virtual ~StyledTextDelegate() = default;
    // Flags and numbers: bold, italic, underline take 0 or 1.
    virtual void SetAttribute(int32_t start, int32_t length, StyleKind kind, int32_t value,
                              const std::string &font) = 0;
    // Answers the number (or fills `font` for kStyleKindFont).
    virtual int32_t GetAttribute(int32_t start, int32_t length, StyleKind kind, bool *mixed,
                                 std::string *font) = 0;
    virtual int32_t RunCount() = 0;
    // False when `index` is out of range.
    virtual bool GetRun(int32_t index, StyleRunValue *run, int32_t *start) = 0;
    virtual bool InsertRun(const StyleRunValue &run, int32_t index) = 0;
    virtual void AppendRun(const StyleRunValue &run) = 0;
    virtual bool RemoveRun(int32_t index) = 0;
    virtual int32_t GetAlignment(int32_t start, int32_t length) = 0;
    virtual void SetAlignment(int32_t start, int32_t length, int32_t align) = 0;
    virtual std::string Text() = 0;
    virtual void SetText(const std::string &utf8) = 0;
    virtual void Update() {}
};

} // namespace kelp
