// The strict number reading behind IsNumeric.
#include "string_functions/numeric_parse.h"

#include "strings/encodings.h"

#include <cstdint>
#include <cstdlib>
#include <locale.h>
#include <string>

namespace kelp {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The digit's value in `base`, or -1.
int DigitValue(char c, int base) {
    int v = -1;
    if (c >= '0' && c <= '9')
        v = c - '0';
    else if (c >= 'a' && c <= 'f')
        v = c - 'a' + 10;
    else if (c >= 'A' && c <= 'F')
        v = c - 'A' + 10;
    return v < base ? v : -1;
}

bool ParsePrefixed(const char *p, long n, double *value) {
    int base;
    switch (p[1]) {
    case 'h':
    case 'H': base = 16; break;
    case 'o':
    case 'O': base = 8; break;
    case 'b':
    case 'B': base = 2; break;
    default: return false;
    }
    long i = 2;
    uint32_t acc = 0;
    for (; i < n; ++i) {
        const int v = DigitValue(p[i], base);
        if (v < 0)
            break;
        // Wraps as Val's accumulator does, so both agree on long texts.
        acc = acc * static_cast<uint32_t>(base) + static_cast<uint32_t>(v);
    }
    if (i == 2)
        return false;
    while (i < n && IsBlank(p[i]))
        ++i;
    if (i != n)
        return false;
    if (value)
        *value = static_cast<double>(static_cast<int32_t>(acc));
    return true;
}

locale_t CLocale() {
    static const locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return c;
}

bool ParseDecimal(const char *p, long n, double *value) {
    long i = 0;
    while (i < n && IsBlank(p[i]))
        ++i;
    while (n > i && IsBlank(p[n - 1]))
        --n;
    if (i == n)
        return false;

    // The number as the C library reads it: grouping commas left out, the
    // exponent marker made an "e".
    std::string clean;
    clean.reserve(static_cast<size_t>(n - i));
    if (p[i] == '+' || p[i] == '-')
        clean += p[i++];

    long digits = 0;
    for (; i < n; ++i) {
        if (IsDigit(p[i])) {
            clean += p[i];
            ++digits;
        } else if (p[i] == ',') {
            // A comma groups digits: one must stand on each side.
            if (digits == 0 || i + 1 >= n || !IsDigit(p[i + 1]))
                return false;
        } else {
            break;
        }
    }
    if (i < n && p[i] == '.') {
        clean += p[i++];
        for (; i < n && IsDigit(p[i]); ++i) {
            clean += p[i];
            ++digits;
        }
    }
    if (digits == 0)
        return false;

    if (i < n && (p[i] == 'e' || p[i] == 'E' || p[i] == 'd' || p[i] == 'D')) {
        clean += 'e';
        ++i;
        if (i < n && (p[i] == '+' || p[i] == '-'))
            clean += p[i++];
        const long start = i;
        for (; i < n && IsDigit(p[i]); ++i)
            clean += p[i];
        if (i == start)
            return false;
    }
    if (i != n)
        return false;

    // The language writes "." for the point whatever the user's locale.
    if (value)
        *value = strtod_l(clean.c_str(), nullptr, CLocale());
    return true;
}

} // namespace

bool ParseNumberStrict(const string &text, double *value) {
    string s = text;
    if ((s.Encoding() & 0x100) != 0 && s.Encoding() != kEncodingUTF8)
        s = GetUTF8String(s);
    const char *p = s.CString();
    const long n = s.Length();
    if (n == 0)
        return false;
    if (n > 1 && p[0] == '&')
        return ParsePrefixed(p, n, value);
    return ParseDecimal(p, n, value);
}

} // namespace kelp
