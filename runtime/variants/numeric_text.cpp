// IsNumeric of a variant, the kind of number a C text holds, and CStr.
#include "variants/variant_classes.h"
#include "variants/variant_kind.h"

#include "kelp/string_functions.h"
#include "kelp/variants.h"

#include "base/ascii.h"
#include "string_functions/number_text.h"
#include "string_functions/numeric_parse.h"

#include <cstring>
#include <string>

namespace kelp {
namespace {

bool IsNaNOrInf(std::string_view three) {
    return AsciiEqualNoCase(three, "NaN") || AsciiEqualNoCase(three, "Inf");
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

int DigitValue(char c) {
    if (IsDigit(c))
        return c - '0';
    const char u = static_cast<char>(AsciiUpper(static_cast<unsigned char>(c)));
    return u >= 'A' && u <= 'F' ? u - 'A' + 10 : 99;
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" uint8_t RuntimeIsNumeric(RuntimeObject *v) {
    const int32_t kind = KindOf(v);
    if (kind == kVarInteger || kind == kVarDouble)
        return 1;
    if (kind != kVarString)
        return 0;
    const string text = string::Wrap(reinterpret_cast<RuntimeVariantString *>(v)->value);
    const std::string_view t = text.View();
    if (t.empty())
        return 0;
    // The texts Str writes for the special values: "NaN", "Inf", "NaN(001)".
    if (t.size() == 3 && IsNaNOrInf(t))
        return 1;
    if (t.size() == 8 && IsNaNOrInf(t.substr(0, 3)) && t[3] == '(' && IsDigit(t[4]) &&
        IsDigit(t[5]) && IsDigit(t[6]) && t[7] == ')')
        return 1;
    return ParseNumberStrict(text, nullptr) ? 1 : 0;
}

extern "C" int32_t RuntimeTypeOfNumeric(const char *text) {
    if (!text)
        return 0;
    if (text[0] == '&') {
        const char prefix = static_cast<char>(AsciiLower(static_cast<unsigned char>(text[1])));
        const int base = prefix == 'h' ? 16 : prefix == 'o' ? 8 : prefix == 'b' ? 2 : 0;
        if (base == 0 || text[2] == '\0')
            return 0;
        for (const char *p = text + 2; *p; ++p)
            if (DigitValue(*p) >= base)
                return 0;
        return 1;
    }
    const char *p = text;
    bool digits = false, point = false, exponent = false;
    double value = 0;
    for (; IsDigit(*p); ++p, digits = true)
        value = value * 10 + (*p - '0');
    if (*p == '.') {
        point = true;
        for (++p; IsDigit(*p); ++p)
            digits = true;
    }
    if (!digits) // "" and "." hold no number
        return 0;
    if (*p == 'e' || *p == 'E') {
        exponent = true;
        ++p;
        if (*p == '+' || *p == '-')
            ++p;
        if (!IsDigit(*p))
            return 0;
        while (IsDigit(*p))
            ++p;
    }
    if (*p != '\0')
        return 0;
    return !point && !exponent && value <= 2147483647.0 ? 2 : 3;
}

extern "C" KelpString runCStr(RuntimeObject *v) {
    if (!v)
        return nullptr;
    const int32_t kind = KindOf(v);
    if (kind != kVarInteger && kind != kVarDouble)
        return variantToString(v);
    // Str's text with the point the user's locale writes.
    std::string text(string::Adopt(StringStr(variantToDouble(v))).View());
    const std::string point = text::LocaleDecimalPoint();
    const size_t at = text.find('.');
    if (at != std::string::npos)
        text.replace(at, 1, point);
    const bool ascii = point.size() == 1 && static_cast<unsigned char>(point[0]) < 128;
    return string::FromBytes(text.data(), static_cast<long>(text.size()),
                             ascii ? kEncodingASCII : kEncodingUTF8)
        .ExtractStringStorage();
}
