// Str, Format, Val, CDbl, Hex, Oct and Bin.
#include "string_functions/number_text.h"

#include "kelp/string_functions.h"
#include "string_functions/text_units.h"

#include "base/ascii.h"

#include <cctype>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <locale.h>

using namespace kelp;
using namespace kelp::text;

namespace kelp::text {

namespace {
// Masks may ask for any number of places; past this many the digits carry no
// information and only cost memory.
constexpr int kMaxDigits = 400;
} // namespace

std::string LocaleDecimalPoint() {
    const lconv *lc = std::localeconv();
    return (lc && lc->decimal_point && *lc->decimal_point) ? lc->decimal_point : ".";
}

std::string LocaleThousandsSeparator() {
    const lconv *lc = std::localeconv();
    return (lc && lc->thousands_sep && *lc->thousands_sep) ? lc->thousands_sep : ",";
}

std::string NumberToText(double value, NumberMode mode, int digits) {
    if (value == 0)
        value = 0.0; // a negative zero loses its sign
    if (digits < 0)
        digits = 0;
    if (digits > kMaxDigits)
        digits = kMaxDigits;
    const bool exponent = mode == NumberMode::kExponent;
    const int precision = exponent ? (digits > 0 ? digits - 1 : 0) : digits;
    char small[128];
    std::string text;
    const char *format = exponent ? "%.*e" : "%.*f";
    const int n = std::snprintf(small, sizeof small, format, precision, value);
    if (n < static_cast<int>(sizeof small)) {
        text.assign(small, static_cast<size_t>(n));
    } else {
        text.resize(static_cast<size_t>(n) + 1);
        std::snprintf(text.data(), text.size(), format, precision, value);
        text.resize(static_cast<size_t>(n));
    }
    if (exponent) {
        const size_t at = text.find("e+0");
        if (at != std::string::npos)
            text.erase(at + 2, 1);
    }
    const char point = LocaleDecimalPoint()[0];
    if (point != '.') {
        const size_t at = text.find(point);
        if (at != std::string::npos)
            text[at] = '.';
    }
    if (!text.empty() && text[0] == ' ')
        text.erase(0, 1);
    if (text.size() >= 3 && AsciiEqualNoCase(std::string_view(text).substr(text.size() - 3), "nan"))
        return "NaN";
    if (!text.empty() && text[0] == '-' && text.find_first_not_of("0.", 1) == std::string::npos)
        text.erase(0, 1);
    return text;
}

} // namespace kelp::text

namespace {

stringStorage *Ascii(const std::string &text) {
    return Out(string::FromBytes(text.data(), static_cast<long>(text.size()), kEncodingASCII));
}

} // namespace

// -------------------------------------------------------------------- Str

extern "C" stringStorage *StringStr(double value) {
    const double magnitude = std::fabs(value);
    if (value == 0 || (magnitude >= 0.00001 && magnitude <= 1000000.0)) {
        int k = 0;
        for (double x = magnitude; x >= 1; x /= 10)
            ++k;
        const int digits = 7 - k;
        std::string text = NumberToText(value, NumberMode::kFixed, digits);
        if (digits != 0 && text.find('.') != std::string::npos) {
            text.erase(text.find_last_not_of('0') + 1);
            if (!text.empty() && text.back() == '.')
                text.pop_back();
        }
        return Ascii(text);
    }
    return Ascii(NumberToText(value, NumberMode::kExponent, 7));
}

// ----------------------------------------------------------------- Format

namespace {

struct Section {
    const char *p;
    long n;
};

// Picks the section for the value: positive; negative; zero.
Section PickSection(const char *mask, long n, double value) {
    long cut[2];
    int cuts = 0;
    for (long i = 0; i < n && cuts < 2; ++i) {
        if (mask[i] == '\\') {
            ++i;
        } else if (mask[i] == ';') {
            cut[cuts++] = i;
        }
    }
    Section first{mask, cuts > 0 ? cut[0] : n};
    if (value < 0 && cuts >= 1)
        return {mask + cut[0] + 1, (cuts >= 2 ? cut[1] : n) - cut[0] - 1};
    if (value == 0 && cuts >= 2)
        return {mask + cut[1] + 1, n - cut[1] - 1};
    return first;
}

// What a mask section asks for, read before any digit is written.
struct MaskShape {
    int intPlaces = 0, fracPlaces = 0;
    bool percent = false, grouping = false, exponent = false;
};

MaskShape ReadMask(const Section &sec) {
    MaskShape shape;
    bool inFraction = false;
    for (long i = 0; i < sec.n; ++i) {
        const char c = sec.p[i];
        if (c == '\\') {
            ++i;
        } else if (c == '#' || c == '0') {
            if (!shape.exponent)
                (inFraction ? shape.fracPlaces : shape.intPlaces)++;
        } else if (c == '.') {
            inFraction = true;
        } else if (c == '%') {
            shape.percent = true;
        } else if (c == ',') {
            shape.grouping = true;
        } else if (c == 'e' || c == 'E') {
            shape.exponent = true;
        }
    }
    return shape;
}

// The value's digits as the C library writes them for the mask, trailing
// fraction zeros dropped, with where the integer part and the exponent end.
struct DigitText {
    std::string text;
    long point = 0;        // end of the integer digits
    long exponentAt = 0;   // the 'e', or the end of the text
    bool exponent = false; // the text has an exponent
};

DigitText WriteDigits(double magnitude, const MaskShape &shape) {
    DigitText d;
    std::string &text = d.text;
    text = NumberToText(magnitude, shape.exponent ? NumberMode::kExponent : NumberMode::kFixed,
                        shape.exponent ? shape.fracPlaces + 1 : shape.fracPlaces);
    text.erase(0, text.find_first_not_of(' ') == std::string::npos ? text.size()
                                                                   : text.find_first_not_of(' '));
    size_t ePos = text.find('e');
    if (shape.fracPlaces != 0) {
        if (ePos != std::string::npos) {
            size_t start = ePos;
            while (start > 0 && text[start - 1] == '0')
                --start;
            text.erase(start, ePos - start);
        } else {
            text.erase(text.find_last_not_of('0') + 1);
        }
    }
    ePos = text.find('e');
    d.exponent = shape.exponent && ePos != std::string::npos;
    d.exponentAt =
        ePos == std::string::npos ? static_cast<long>(text.size()) : static_cast<long>(ePos);
    const size_t dot = text.find('.');
    d.point = (dot == std::string::npos || static_cast<long>(dot) > d.exponentAt)
                  ? d.exponentAt
                  : static_cast<long>(dot);
    return d;
}

// Walks the mask section once, writing the digits into its placeholders.
class MaskWriter {
public:
    MaskWriter(const Section &sec, const MaskShape &shape, const DigitText &digits, double value)
        : mSec(sec), mShape(shape), mDigits(digits), mValue(value),
          mSeparator(LocaleThousandsSeparator()), mRemaining(shape.intPlaces) {}

    std::string Write() {
        for (long i = 0; i < mSec.n; ++i) {
            const char c = mSec.p[i];
            switch (c) {
            case '\\': Literal(i); break;
            case '#':
            case '0': Placeholder(c); break;
            case '.': DecimalPoint(); break;
            case '+':
                if (mValue < 0)
                    mOut += '-';
                else if (mValue > 0)
                    mOut += '+';
                break;
            case '-':
                if (mValue < 0)
                    mOut += '-';
                break;
            case '%':
            case '(':
            case ')': mOut += c; break;
            case 'e':
            case 'E': Exponent(c, i); break;
            default: break;
            }
        }
        return mOut;
    }

private:
    // A backslash writes the next character as it is, all its UTF-8 bytes.
    void Literal(long &i) {
        if (i + 1 >= mSec.n)
            return;
        mOut += mSec.p[++i];
        while (i + 1 < mSec.n && (static_cast<unsigned char>(mSec.p[i + 1]) & 0xC0) == 0x80)
            mOut += mSec.p[++i];
    }

    void Digit(long at) {
        if (mShape.grouping && mAnyDigit && (mDigits.point - at) % 3 == 0)
            mOut += mSeparator;
        mOut += mDigits.text[static_cast<size_t>(at)];
        mAnyDigit = true;
    }

    // '#' writes a digit that is there, '0' a digit or a zero.  The first
    // integer placeholder also takes the digits that the mask has no room
    // for.
    void Placeholder(char c) {
        if (mPastMark)
            return;
        const long point = mDigits.point;
        if (!mPointDone) {
            if (mFirstPlaceholder) {
                mFirstPlaceholder = false;
                for (long at = 0; at < point - mShape.intPlaces; ++at)
                    Digit(at);
            }
            const long at = point - mRemaining--;
            if (at >= 0 && at < point) {
                Digit(at);
            } else if (c == '0') {
                mOut += '0';
                mAnyDigit = true;
            }
        } else {
            const long at = point + 1 + mFractionIndex++;
            if (at < mDigits.exponentAt)
                mOut += mDigits.text[static_cast<size_t>(at)];
            else if (c == '0')
                mOut += '0';
        }
    }

    void DecimalPoint() {
        if (mPointDone)
            return;
        mPointDone = true;
        mOut += LocaleDecimalPoint();
    }

    // The mark and the power once; a following '+' forces the power's sign,
    // a '-' drops a plus.
    void Exponent(char c, long &i) {
        mPastMark = true;
        if (!mDigits.exponent || mExponentDone)
            return;
        mExponentDone = true;
        mOut += c;
        std::string power = mDigits.text.substr(static_cast<size_t>(mDigits.exponentAt) + 1);
        const char next = i + 1 < mSec.n ? mSec.p[i + 1] : '\0';
        if (next == '+') {
            ++i;
            if (power.empty() || (power[0] != '+' && power[0] != '-'))
                power.insert(0, "+");
        } else if (next == '-') {
            ++i;
            if (!power.empty() && power[0] == '+')
                power.erase(0, 1);
        }
        mOut += power;
    }

    const Section &mSec;
    const MaskShape &mShape;
    const DigitText &mDigits;
    const double mValue;
    const std::string mSeparator;
    std::string mOut;
    long mRemaining, mFractionIndex = 0;
    bool mFirstPlaceholder = true, mAnyDigit = false, mPointDone = false, mPastMark = false,
         mExponentDone = false;
};

std::string FormatNumber(double value, const char *maskText, long maskLength) {
    static const char kScientific[] = "-#.000000E+";
    if (maskLength == 10 && AsciiEqualNoCase(std::string_view(maskText, 10), "Scientific")) {
        maskText = kScientific;
        maskLength = static_cast<long>(sizeof kScientific) - 1;
    }
    const Section sec = PickSection(maskText, maskLength, value);
    const MaskShape shape = ReadMask(sec);
    const double magnitude = std::fabs(value) * (shape.percent ? 100 : 1);
    const DigitText digits = WriteDigits(magnitude, shape);
    return MaskWriter(sec, shape, digits, value).Write();
}

} // namespace

extern "C" stringStorage *StringFormat(double value, stringStorage *mask) {
    const string m = Arg(mask);
    const std::string out = FormatNumber(value, m.CString(), m.Length());
    return Out(string::FromBytes(out.data(), static_cast<long>(out.size()),
                                 mask ? m.Encoding() : kEncodingASCII));
}

// -------------------------------------------------------------------- Val

namespace {

locale_t CLocale() {
    static locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return c;
}

double ValOf(const string &in) {
    string s = in;
    if ((s.Encoding() & 0x100) != 0 && s.Encoding() != kEncodingUTF8)
        s = GetUTF8String(s);
    const char *p = s.CString();
    const long n = s.Length();
    if (n > 1 && p[0] == '&') {
        int base;
        switch (p[1]) {
        case 'h':
        case 'H': base = 16; break;
        case 'o':
        case 'O': base = 8; break;
        case 'b':
        case 'B': base = 2; break;
        default: return 0;
        }
        uint32_t acc = 0;
        for (long i = 2; i < n; ++i) {
            const unsigned char c = static_cast<unsigned char>(p[i]);
            int v = -1;
            if (c >= '0' && c <= '9')
                v = c - '0';
            else if (base == 16 && c >= 'a' && c <= 'z')
                v = c - 'a' + 10;
            else if (base == 16 && c >= 'A' && c <= 'Z')
                v = c - 'A' + 10;
            if (v < 0 || (base != 16 && v >= base))
                continue; // anything else is skipped
            acc = acc * static_cast<uint32_t>(base) + static_cast<uint32_t>(v);
        }
        return static_cast<double>(static_cast<int32_t>(acc));
    }
    // The language's numbers always use "." whatever the user's locale.
    return strtod_l(p, nullptr, CLocale());
}

} // namespace

extern "C" double StringVal(stringStorage *s) {
    if (s == nullptr)
        return 0;
    return ValOf(Arg(s));
}

extern "C" double runCDbl(stringStorage *s) {
    if (s == nullptr)
        return 0;
    string str = Arg(s);
    if ((str.Encoding() & 0x100) != 0 && str.Encoding() != kEncodingUTF8)
        str = GetUTF8String(str);
    // CDbl reads the user's way of writing numbers.
    const std::string sep = LocaleThousandsSeparator(), point = LocaleDecimalPoint();
    std::string text(str.View()), clean;
    clean.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        if (text.compare(i, sep.size(), sep) == 0) {
            i += sep.size();
        } else if (text.compare(i, point.size(), point) == 0) {
            clean += '.';
            i += point.size();
        } else {
            clean += text[i++];
        }
    }
    return ValOf(string::FromBytes(clean.data(), static_cast<long>(clean.size()), kEncodingUTF8));
}

// -------------------------------------------------------- Hex, Oct, Bin

namespace {
stringStorage *InBase(int32_t value, unsigned shift) {
    uint32_t v = static_cast<uint32_t>(value);
    char digits[33];
    int at = 33;
    const uint32_t mask = (1u << shift) - 1;
    do {
        digits[--at] = "0123456789ABCDEF"[v & mask];
        v >>= shift;
    } while (v != 0);
    return Out(string::FromBytes(digits + at, 33 - at, kEncodingASCII));
}
} // namespace

extern "C" stringStorage *RuntimeHex(int32_t value) { return InBase(value, 4); }
extern "C" stringStorage *RuntimeOct(int32_t value) { return InBase(value, 3); }
extern "C" stringStorage *RuntimeBin(int32_t value) { return InBase(value, 1); }
