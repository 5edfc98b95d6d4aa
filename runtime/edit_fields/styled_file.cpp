#include "edit_fields/styled_file.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace kelp {
namespace {

// Groups nest deeper than this only in a damaged or hostile file; deeper
// groups are read with the state of this depth.
constexpr size_t kMaxDepth = 256;

void AppendUtf8(std::string &out, uint32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | c >> 6);
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | c >> 12);
        out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | c >> 18);
        out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
        out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Next code point of UTF-8 text; a stray byte stands for itself (Latin-1).
uint32_t NextCodePoint(std::string_view s, size_t &i) {
    const auto b = static_cast<unsigned char>(s[i++]);
    const int extra = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : 0;
    if (extra == 0 || i + extra > s.size())
        return b;
    uint32_t c = b & (0x3F >> extra);
    for (int k = 0; k < extra; ++k) {
        const auto next = static_cast<unsigned char>(s[i + k]);
        if ((next & 0xC0) != 0x80)
            return b;
        c = c << 6 | (next & 0x3F);
    }
    i += extra;
    return c;
}

void EscapeText(std::string &out, std::string_view text) {
    for (size_t i = 0; i < text.size();) {
        const uint32_t c = NextCodePoint(text, i);
        if (c == '\\' || c == '{' || c == '}') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c == '\n') {
            out += "\\par\n";
        } else if (c == '\t') {
            out += "\\tab ";
        } else if (c >= 0x20 && c < 0x80) {
            out += static_cast<char>(c);
        } else if (c >= 0x80) {
            // \u takes a signed 16-bit unit; beyond it, a surrogate pair.
            auto unit = [&out](uint32_t u) {
                out += "\\u" + std::to_string(static_cast<int16_t>(u)) + "?";
            };
            if (c < 0x10000) {
                unit(c);
            } else {
                unit(0xD800 + ((c - 0x10000) >> 10));
                unit(0xDC00 + ((c - 0x10000) & 0x3FF));
            }
        }
    }
}

// Control characters other than tab and line end are no text of a field.
bool IsTextCodePoint(uint32_t c) { return c >= 0x20 || c == '\t' || c == '\n'; }

struct ReadState {
    bool bold = false, italic = false, underline = false;
    int32_t font = -1, halfPoints = 0, colour = 0;
    bool skip = false;       // a destination that holds no text of the document
    int table = 0;           // 1 inside the font table, 2 inside the colour table
    int32_t unicodeSkip = 1; // fallback characters after \u
};

class Reader {
public:
    explicit Reader(std::string_view rtf) : mIn(rtf) {}

    std::vector<StyleRunValue> Read() {
        std::vector<ReadState> stack{ReadState{}};
        size_t depthPastLimit = 0;
        int32_t pendingSkip = 0; // fallback characters still to pass over
        while (mAt < mIn.size()) {
            const char c = mIn[mAt++];
            ReadState &s = stack.back();
            if (c == '{') {
                if (stack.size() < kMaxDepth)
                    stack.push_back(s);
                else
                    ++depthPastLimit;
                pendingSkip = 0;
            } else if (c == '}') {
                if (depthPastLimit > 0)
                    --depthPastLimit;
                else if (stack.size() > 1)
                    stack.pop_back();
                pendingSkip = 0;
            } else if (c == '\\') {
                ControlWord(stack.back(), pendingSkip);
            } else if (c == '\r' || c == '\n') {
                // line breaks of the file are not text
            } else if (pendingSkip > 0) {
                --pendingSkip;
            } else {
                // RTF is 7-bit; a raw byte above that is read as Latin-1, so
                // the text handed on is always valid UTF-8.
                std::string utf8;
                AppendUtf8(utf8, static_cast<unsigned char>(c));
                if (IsTextCodePoint(static_cast<unsigned char>(c)))
                    Text(s, utf8);
            }
        }
        return std::move(mRuns);
    }

private:
    void ControlWord(ReadState &s, int32_t &pendingSkip) {
        if (mAt >= mIn.size())
            return;
        const char first = mIn[mAt];
        if (!std::isalpha(static_cast<unsigned char>(first))) {
            ++mAt;
            if (first == '\'') {
                // A byte of the document's code page: taken as Latin-1.
                const std::string hex(mIn.substr(mAt, 2));
                mAt = std::min(mIn.size(), mAt + 2);
                if (hex.size() != 2 || !std::isxdigit(static_cast<unsigned char>(hex[0])) ||
                    !std::isxdigit(static_cast<unsigned char>(hex[1])))
                    return; // cut short: no byte
                if (pendingSkip > 0) {
                    --pendingSkip;
                    return;
                }
                const auto byte = static_cast<uint32_t>(std::strtoul(hex.c_str(), nullptr, 16));
                std::string utf8;
                AppendUtf8(utf8, byte);
                if (IsTextCodePoint(byte))
                    Text(s, utf8);
            } else if (first == '*') {
                s.skip = true; // an optional destination this reader doesn't know
            } else if (first == '~') {
                Text(s, "\xC2\xA0");
            } else if (first == '\\' || first == '{' || first == '}') {
                Text(s, std::string(1, first));
            } else if (first == '\n' || first == '\r') {
                Text(s, "\n");
            }
            return;
        }
        const size_t start = mAt;
        while (mAt < mIn.size() && mAt - start < 32 &&
               std::isalpha(static_cast<unsigned char>(mIn[mAt])))
            ++mAt;
        const std::string word(mIn.substr(start, mAt - start));
        bool hasNumber = false;
        long number = 0;
        const size_t numberStart = mAt;
        if (mAt < mIn.size() &&
            (mIn[mAt] == '-' || std::isdigit(static_cast<unsigned char>(mIn[mAt])))) {
            ++mAt;
            while (mAt < mIn.size() && std::isdigit(static_cast<unsigned char>(mIn[mAt])))
                ++mAt;
            // Ten digits at most are read: beyond, the value is out of every
            // range anyway and is clamped below.
            number = std::strtol(
                std::string(mIn.substr(numberStart, std::min<size_t>(mAt - numberStart, 10)))
                    .c_str(),
                nullptr, 10);
            hasNumber = true;
        }
        if (mAt < mIn.size() && mIn[mAt] == ' ')
            ++mAt; // the delimiter belongs to the word
        const bool on = !hasNumber || number != 0;
        const auto value = static_cast<int32_t>(std::clamp(number, -100000L, 100000L));
        if (word == "fonttbl") {
            s.table = 1;
        } else if (word == "colortbl") {
            s.table = 2;
            mColours.clear(); // its first entry, before the first ";", is the automatic colour
            mPending = 0;
        } else if (word == "stylesheet" || word == "info" || word == "pict" || word == "header" ||
                   word == "footer" || word == "footnote" || word == "object") {
            s.skip = true;
        } else if (s.table == 2 && (word == "red" || word == "green" || word == "blue")) {
            const int shift = word == "red" ? 16 : word == "green" ? 8 : 0;
            mPending |= (std::clamp(value, 0, 255)) << shift;
        } else if (word == "f") {
            s.font = value;
            if (s.table == 1)
                mFontNames.push_back({value, std::string()});
        } else if (word == "b") {
            s.bold = on;
        } else if (word == "i") {
            s.italic = on;
        } else if (word == "ul") {
            s.underline = on;
        } else if (word == "ulnone") {
            s.underline = false;
        } else if (word == "fs") {
            s.halfPoints = std::max(0, value);
        } else if (word == "cf") {
            s.colour = value;
        } else if (word == "plain") {
            s.bold = s.italic = s.underline = false;
            s.halfPoints = 0, s.colour = 0, s.font = -1;
        } else if (word == "par" || word == "line") {
            Text(s, "\n");
        } else if (word == "tab") {
            Text(s, "\t");
        } else if (word == "uc") {
            s.unicodeSkip = std::max(0, value);
        } else if (word == "u" && hasNumber) {
            uint32_t unit = static_cast<uint16_t>(static_cast<int16_t>(value));
            if (unit >= 0xD800 && unit < 0xDC00) {
                mHighSurrogate = unit;
            } else {
                if (unit >= 0xDC00 && unit < 0xE000 && mHighSurrogate)
                    unit = 0x10000 + ((mHighSurrogate - 0xD800) << 10) + (unit - 0xDC00);
                mHighSurrogate = 0;
                std::string utf8;
                AppendUtf8(utf8, unit);
                if (IsTextCodePoint(unit) && (unit < 0xD800 || unit >= 0xE000))
                    Text(s, utf8);
            }
            pendingSkip = s.unicodeSkip;
        }
    }

    void Text(const ReadState &s, const std::string &utf8) {
        if (s.skip)
            return;
        if (s.table == 1) { // a font's name, up to its ";"
            if (!mFontNames.empty()) {
                if (utf8 == ";")
                    mFontNames.back().second += '\0';
                else if (mFontNames.back().second.find('\0') == std::string::npos)
                    mFontNames.back().second += utf8;
            }
            return;
        }
        if (s.table == 2) {
            if (utf8 == ";") {
                mColours.push_back(mPending);
                mPending = 0;
            }
            return;
        }
        StyleRunValue style;
        style.bold = s.bold, style.italic = s.italic, style.underline = s.underline;
        style.size = s.halfPoints / 2;
        style.font = FontName(s.font);
        style.color = s.colour > 0 && static_cast<size_t>(s.colour) < mColours.size()
                          ? mColours[static_cast<size_t>(s.colour)]
                          : 0;
        if (mRuns.empty() || !mRuns.back().SameStyle(style))
            mRuns.push_back(style);
        mRuns.back().text += utf8;
    }

    std::string FontName(int32_t index) const {
        for (const auto &[number, name] : mFontNames)
            if (number == index)
                return name.substr(0, name.find('\0'));
        return std::string();
    }

    std::string_view mIn;
    size_t mAt = 0;
    std::vector<StyleRunValue> mRuns;
    std::vector<std::pair<int32_t, std::string>> mFontNames; // name ends at a NUL once closed
    std::vector<int32_t> mColours{0};                        // index 0: the automatic colour
    int32_t mPending = 0;
    uint32_t mHighSurrogate = 0;
};

} // namespace

bool IsRichText(std::string_view bytes) { return bytes.substr(0, 5) == "{\\rtf"; }

std::string RunsToRichText(const std::vector<StyleRunValue> &runs) {
    // Font 0 is the field's own (an empty name); colour 0 is the automatic
    // one, black, so black text carries no colour.
    std::vector<std::string> fonts{""};
    std::vector<int32_t> colours;
    for (const StyleRunValue &r : runs) {
        if (std::find(fonts.begin(), fonts.end(), r.font) == fonts.end())
            fonts.push_back(r.font);
        if (r.color != 0 && std::find(colours.begin(), colours.end(), r.color) == colours.end())
            colours.push_back(r.color);
    }
    std::string out = "{\\rtf1\\ansi\\deff0{\\fonttbl";
    for (size_t i = 0; i < fonts.size(); ++i) {
        out += "{\\f" + std::to_string(i) + "\\fnil ";
        EscapeText(out, fonts[i]);
        out += ";}";
    }
    out += "}\n{\\colortbl;";
    for (int32_t c : colours)
        out += "\\red" + std::to_string(c >> 16 & 255) + "\\green" + std::to_string(c >> 8 & 255) +
               "\\blue" + std::to_string(c & 255) + ";";
    out += "}\n";
    for (const StyleRunValue &r : runs) {
        if (r.text.empty())
            continue;
        const auto font = std::find(fonts.begin(), fonts.end(), r.font) - fonts.begin();
        out += "{\\f" + std::to_string(font);
        if (r.size > 0)
            out += "\\fs" + std::to_string(r.size * 2);
        if (r.color != 0)
            out += "\\cf" + std::to_string(std::find(colours.begin(), colours.end(), r.color) -
                                           colours.begin() + 1);
        out += std::string(r.bold ? "\\b" : "") + (r.italic ? "\\i" : "") +
               (r.underline ? "\\ul" : "") + " ";
        EscapeText(out, r.text);
        out += "}";
    }
    out += "}\n";
    return out;
}

std::vector<StyleRunValue> RunsFromRichText(std::string_view rtf) { return Reader(rtf).Read(); }

} // namespace kelp
