// The mask walk.  The input and the mask move on together; a position
// that may be left empty ("9", "a") lets the same input character try the
// next position instead.  Separators come from the locale, so a mask
// written once reads the user's own decimal point and thousands mark.
#include "edit_fields/mask.h"

#include <glib.h>

#include <clocale>
#include <cstdint>

namespace kelp {

const char *const kInvalidMaskMessage =
    "Invalid Mask.  The tilde character (~) is reserved for future use.";

namespace {

// One character of UTF-8 text from `pos`; a bad byte stands for itself.
std::string_view NextChar(std::string_view text, size_t pos) {
    const char *start = text.data() + pos;
    const char *end = text.data() + text.size();
    const char *next = g_utf8_find_next_char(start, end);
    size_t length = next ? static_cast<size_t>(next - start) : text.size() - pos;
    if (!g_utf8_validate(start, static_cast<gssize>(length), nullptr))
        length = 1;
    return text.substr(pos, length);
}

gunichar CodeOf(std::string_view c) {
    gunichar code = g_utf8_get_char_validated(c.data(), static_cast<gssize>(c.size()));
    return code == static_cast<gunichar>(-1) || code == static_cast<gunichar>(-2)
               ? static_cast<unsigned char>(c[0])
               : code;
}

std::string Utf8(gunichar code) {
    char buffer[8];
    return std::string(buffer, static_cast<size_t>(g_unichar_to_utf8(code, buffer)));
}

// A locale separator, or its default when the locale gives none.
std::string Separator(char kind) {
    const struct lconv *conv = localeconv();
    const char *given = nullptr;
    if (kind == ',')
        given = conv ? conv->thousands_sep : nullptr;
    else if (kind == '.')
        given = conv ? conv->decimal_point : nullptr;
    if (given && *given)
        return given;
    return std::string(1, kind);
}

bool IsLetter(gunichar c) {
    return g_unichar_toupper(c) != g_unichar_tolower(c) || g_unichar_isalpha(c);
}

bool IsDigit(gunichar c) { return c >= '0' && c <= '9'; }

bool IsControl(std::string_view c) {
    unsigned char b = static_cast<unsigned char>(c[0]);
    return c.size() == 1 && (b < 32 || b == 127);
}

// Mask characters that take input: they end the literal tail.
bool TakesInput(char m) {
    switch (m) {
    case '#':
    case '&':
    case '9':
    case '<':
    case '>':
    case '?':
    case 'A':
    case 'C':
    case 'a':
    case '~': return true;
    default: return false;
    }
}

std::string LiteralTail(std::string_view mask, size_t pos) {
    std::string tail;
    while (pos < mask.size()) {
        char m = mask[pos];
        if (TakesInput(m))
            break;
        if (m == '\\') {
            if (pos + 1 >= mask.size())
                break;
            std::string_view literal = NextChar(mask, pos + 1);
            tail += literal;
            pos += 1 + literal.size();
            continue;
        }
        std::string_view c = NextChar(mask, pos);
        tail += (m == ',' || m == '.') ? Separator(m) : std::string(c);
        pos += c.size();
    }
    return tail;
}

} // namespace

MaskOutcome ApplyMask(std::string_view input, std::string_view mask) {
    MaskOutcome out;
    if (mask.find('~') != std::string_view::npos) {
        out.result = MaskResult::kInvalidMask;
        return out;
    }
    bool forceUpper = false, forceLower = false;
    size_t in = 0, at = 0;
    while (in < input.size()) {
        std::string_view raw = NextChar(input, in);
        std::string c(raw);
        gunichar code = CodeOf(raw);
        if (forceUpper || forceLower) {
            code = forceUpper ? g_unichar_toupper(code) : g_unichar_tolower(code);
            if (raw.size() > 1 || code < 128)
                c = Utf8(code);
        }
        if (at >= mask.size()) {
            if (!forceUpper && !forceLower) {
                out.result = MaskResult::kRejected;
                return out;
            }
            out.text += c;
            in += raw.size();
            continue;
        }
        std::string_view m = NextChar(mask, at);
        at += m.size();
        bool ok = true, consume = true;
        std::string expected;
        switch (m[0]) {
        case '#': ok = IsDigit(code); break;
        case '9': consume = IsDigit(code); break;
        case '&':
        case 'C': consume = !IsControl(raw); break;
        case '?': ok = IsLetter(code); break;
        case 'A': ok = IsLetter(code) || IsDigit(code); break;
        case 'a': consume = IsLetter(code) || IsDigit(code); break;
        case ',':
        case '.': expected = Separator(m[0]); break;
        case '/':
        case ':': expected = std::string(m); break;
        case '<': forceLower = true, forceUpper = false, consume = false; break;
        case '>': forceUpper = true, forceLower = false, consume = false; break;
        case '\\':
            if (at >= mask.size()) {
                out.result = MaskResult::kRejected;
                return out;
            }
            expected = std::string(NextChar(mask, at));
            at += expected.size();
            break;
        default: expected = std::string(m); break;
        }
        if (!expected.empty())
            ok = c == expected;
        if (!ok) {
            out.result = MaskResult::kRejected;
            return out;
        }
        if (consume) {
            out.text += c;
            in += raw.size();
        }
    }
    out.tail = LiteralTail(mask, at);
    return out;
}

} // namespace kelp
