// Encoding words: combination, the upper-casing table, case folding of
// Unicode characters, and conversion through the C library's iconv.
#include "strings/encodings.h"

#include "base/ascii.h"
#include "strings/kstring.h"

#include <cerrno>
#include <clocale>
#include <cstring>
#include <cwctype>
#include <iconv.h>
#include <locale.h>
#include <new>
#include <string>

namespace kelp {

// ASCII letters raised; the high half folded over the Macintosh Roman
// repertoire (0x87 -> 0xE7, 0x88 -> 0xCB, 0x8A -> 0x80, ...).
const uint8_t kUpperCaseTable[256] = {
    0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F,
    0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1A, 0x1B, 0x1C, 0x1D, 0x1E, 0x1F,
    0x20, 0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x27, 0x28, 0x29, 0x2A, 0x2B, 0x2C, 0x2D, 0x2E, 0x2F,
    0x30, 0x31, 0x32, 0x33, 0x34, 0x35, 0x36, 0x37, 0x38, 0x39, 0x3A, 0x3B, 0x3C, 0x3D, 0x3E, 0x3F,
    0x40, 0x41, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B, 0x4C, 0x4D, 0x4E, 0x4F,
    0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56, 0x57, 0x58, 0x59, 0x5A, 0x5B, 0x5C, 0x5D, 0x5E, 0x5F,
    0x60, 0x41, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B, 0x4C, 0x4D, 0x4E, 0x4F,
    0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56, 0x57, 0x58, 0x59, 0x5A, 0x7B, 0x7C, 0x7D, 0x7E, 0x7F,
    0x80, 0x81, 0x82, 0x83, 0x84, 0x85, 0x86, 0xE7, 0xCB, 0xE5, 0x80, 0xCC, 0x81, 0x82, 0x83, 0xE9,
    0xE6, 0xE8, 0xEA, 0xED, 0xEB, 0xEC, 0x84, 0xEE, 0xF1, 0xEF, 0x85, 0xCD, 0xF2, 0xF4, 0xF3, 0x86,
    0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7, 0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF,
    0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 0xB5, 0xB6, 0xB7, 0xB8, 0xB9, 0xBA, 0xBB, 0xBC, 0xBD, 0xAE, 0xAF,
    0xC0, 0xC1, 0xC2, 0xC3, 0xC4, 0xC5, 0xC6, 0xC7, 0xC8, 0xC9, 0xCA, 0xCB, 0xCC, 0xCD, 0xCE, 0xCE,
    0xD0, 0xD1, 0xD2, 0xD3, 0xD4, 0xD5, 0xD6, 0xD7, 0xD9, 0xD9, 0xDA, 0xDB, 0xDC, 0xDD, 0xDE, 0xDF,
    0xE0, 0xE1, 0xE2, 0xE3, 0xE4, 0xE5, 0xE6, 0xE7, 0xE8, 0xE9, 0xEA, 0xEB, 0xEC, 0xED, 0xEE, 0xEF,
    0xF0, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF,
};

uint32_t CommonEncoding(uint32_t a, uint32_t b, bool force) {
    if (a == b)
        return a;
    bool aPlain = a == kEncodingASCII || a == kEncodingUTF8;
    bool bPlain = b == kEncodingASCII || b == kEncodingUTF8;
    if (aPlain && bPlain)
        return kEncodingUTF8;
    if (a == kEncodingASCII && !IsUnicodeFamily(b))
        return b;
    if (b == kEncodingASCII && !IsUnicodeFamily(a))
        return a;
    if (force) {
        if ((a == kEncodingUTF16 || b == kEncodingUTF16) && a != kEncodingUTF8 &&
            b != kEncodingUTF8)
            return kEncodingUTF16;
        return kEncodingUTF8;
    }
    return kEncodingUnknown;
}

const char *IconvNameForEncoding(uint32_t encoding) {
    struct Row {
        uint32_t word;
        const char *name;
    };
    static const Row kRows[] = {
        {0, "MAC"},          {7, "MACCYRILLIC"},        {29, "MACUK"},
        {256, "UTF16LE"},    {513, "ISO_8859-1"},       {514, "ISO_8859-2"},
        {515, "ISO_8859-3"}, {516, "ISO_8859-4"},       {517, "ISO_8859-5"},
        {518, "ISO_8859-6"}, {519, "ISO_8859-7"},       {520, "ISO_8859-8"},
        {521, "ISO_8859-9"}, {527, "ISO_8859-15:1998"}, {1024, "CP437"},
        {1029, "CP737"},     {1030, "CP775"},           {1040, "CP850"},
        {1041, "CP851"},     {1042, "CP852"},           {1043, "CP855"},
        {1044, "CP857"},     {1045, "CP860"},           {1046, "CP861"},
        {1047, "CP862"},     {1048, "CP863"},           {1049, "CP864"},
        {1050, "CP865"},     {1051, "CP866"},           {1052, "CP869"},
        {1053, "CP874"},     {1056, "CP932"},           {1057, "CP936"},
        {1058, "CP949"},     {1059, "CP950"},           {1280, "CP1252"},
        {1281, "CP1250"},    {1282, "CP1251"},          {1283, "CP1253"},
        {1284, "CP1254"},    {1285, "CP1255"},          {1286, "CP1256"},
        {1287, "CP1257"},    {1288, "CP1258"},          {1296, "CP1361"},
        {1536, "US-ASCII"},  {1585, "CP936"},           {2080, "ISO-2022-JP"},
        {2336, "EUCJP"},     {2561, "CP932"},           {3073, "CP037"},
        {3074, "CP037"},     {kEncodingUTF8, "UTF8"},
    };
    if (encoding == kEncodingUnknown)
        encoding = kSystemDefaultEncoding;
    for (const Row &row : kRows)
        if (row.word == encoding)
            return row.name;
    return nullptr;
}

// ------------------------------------------------------------ Unicode case

namespace {

// The C library's Unicode case tables, independent of the process locale.
locale_t UnicodeLocale() {
    static locale_t locale = [] {
        locale_t l = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(0));
        if (!l)
            l = newlocale(LC_CTYPE_MASK, "C.utf8", static_cast<locale_t>(0));
        return l;
    }();
    return locale;
}

} // namespace

uint32_t UnicodeCharToUpper(uint32_t c) {
    if (c < 128)
        return AsciiUpper(static_cast<unsigned char>(c));
    if (c > 0xFFFF) // case maps cover the Basic Multilingual Plane
        return c;
    locale_t l = UnicodeLocale();
    uint32_t upper = l ? static_cast<uint32_t>(towupper_l(static_cast<wint_t>(c), l)) : c;
    return upper <= 0xFFFF ? upper : c;
}

uint32_t UnicodeCharToLower(uint32_t c) {
    if (c < 128)
        return AsciiLower(static_cast<unsigned char>(c));
    if (c > 0xFFFF)
        return c;
    locale_t l = UnicodeLocale();
    uint32_t lower = l ? static_cast<uint32_t>(towlower_l(static_cast<wint_t>(c), l)) : c;
    return lower <= 0xFFFF ? lower : c;
}

int UnicodeCharCompare(uint32_t a, uint32_t b, bool fold) {
    if (a == b)
        return 0;
    if (fold) {
        a = UnicodeCharToUpper(a);
        b = UnicodeCharToUpper(b);
    }
    return a < b ? -1 : (a == b ? 0 : 1);
}

uint32_t UTF8DecodeAndAdvance(const uint8_t *&p, const uint8_t *end) {
    if (p >= end)
        return 0;
    uint8_t lead = *p++;
    int extra;
    uint32_t c;
    if (lead < 0x80)
        return lead;
    if ((lead & 0xE0) == 0xC0) {
        extra = 1;
        c = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        extra = 2;
        c = lead & 0x0F;
    } else {
        extra = 3;
        c = lead & 0x07;
    }
    // Continuation bytes are taken as they come; a text that ends early
    // simply ends the character.
    while (extra-- > 0 && p < end)
        c = (c << 6) | (*p++ & 0x3F);
    return c;
}

int UTF8Encode(uint32_t c, uint8_t out[5]) {
    int n;
    if (c < 0x80) {
        out[0] = static_cast<uint8_t>(c);
        n = 1;
    } else if (c < 0x800) {
        out[0] = static_cast<uint8_t>(0xC0 | (c >> 6));
        out[1] = static_cast<uint8_t>(0x80 | (c & 0x3F));
        n = 2;
    } else if (c < 0x10000) {
        out[0] = static_cast<uint8_t>(0xE0 | (c >> 12));
        out[1] = static_cast<uint8_t>(0x80 | ((c >> 6) & 0x3F));
        out[2] = static_cast<uint8_t>(0x80 | (c & 0x3F));
        n = 3;
    } else if (c < 0x200000) {
        out[0] = static_cast<uint8_t>(0xF0 | (c >> 18));
        out[1] = static_cast<uint8_t>(0x80 | ((c >> 12) & 0x3F));
        out[2] = static_cast<uint8_t>(0x80 | ((c >> 6) & 0x3F));
        out[3] = static_cast<uint8_t>(0x80 | (c & 0x3F));
        n = 4;
    } else {
        n = 0;
    }
    out[n] = 0;
    return n;
}

int UTF8StringCompare(const uint8_t *a, long lengthA, const uint8_t *b, long lengthB, bool fold) {
    const uint8_t *pa = a, *ea = a + (lengthA > 0 ? lengthA : 0);
    const uint8_t *pb = b, *eb = b + (lengthB > 0 ? lengthB : 0);
    while (pa < ea && pb < eb) {
        int r =
            UnicodeCharCompare(UTF8DecodeAndAdvance(pa, ea), UTF8DecodeAndAdvance(pb, eb), fold);
        if (r)
            return r;
    }
    if (pa < ea)
        return 1;
    if (pb < eb)
        return -1;
    return 0;
}

int UCS2StringCompare(const uint8_t *a, long unitsA, const uint8_t *b, long unitsB, bool fold) {
    long n = unitsA < unitsB ? unitsA : unitsB;
    for (long i = 0; i < n; ++i) {
        uint16_t ua, ub; // units may sit at odd addresses
        std::memcpy(&ua, a + 2 * i, 2);
        std::memcpy(&ub, b + 2 * i, 2);
        int r = UnicodeCharCompare(ua, ub, fold);
        if (r)
            return r;
    }
    return unitsA < unitsB ? -1 : (unitsA > unitsB ? 1 : 0);
}

uint32_t UTF8Decode(const uint8_t *p, const uint8_t *end) { return UTF8DecodeAndAdvance(p, end); }

const uint8_t *AdvanceUTF8(const uint8_t *p, const uint8_t *end, long count) {
    while (count-- > 0 && p < end) {
        ++p;
        while (p < end && (*p & 0xC0) == 0x80)
            ++p;
    }
    return p;
}

const uint8_t *BackupUTF8(const uint8_t *p, const uint8_t *start, long count) {
    while (count-- > 0 && p > start) {
        --p;
        while (p > start && (*p & 0xC0) == 0x80)
            --p;
    }
    return p;
}

bool UTF8IsCaseless(const uint8_t *text, long length) {
    const uint8_t *p = text, *end = text + (length > 0 ? length : 0);
    while (p < end) {
        uint32_t c = UTF8DecodeAndAdvance(p, end);
        if (UnicodeCharToUpper(c) != c || UnicodeCharToLower(c) != c)
            return false;
    }
    return true;
}

bool IsTextWhitespace(uint32_t c) {
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           c == 0x180E || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 ||
           c == 0x202F || c == 0x205F || c == 0x3000;
}

namespace {

enum class CaseChange { Upper, Lower, Capitalize };

uint32_t ChangeOne(uint32_t c, CaseChange change, bool &wordStart) {
    uint32_t out;
    if (change == CaseChange::Upper)
        out = UnicodeCharToUpper(c);
    else if (change == CaseChange::Lower)
        out = UnicodeCharToLower(c);
    else
        out = wordStart ? UnicodeCharToUpper(c) : UnicodeCharToLower(c);
    wordStart = IsTextWhitespace(c);
    return out;
}

string ChangeUTF8(const string &s, CaseChange change) {
    if (s.Length() == 0)
        return s;
    const auto *p = reinterpret_cast<const uint8_t *>(s.CString());
    const uint8_t *end = p + s.Length();
    // A changed character may take up to 3 bytes more than the original 1.
    std::string out;
    out.reserve(static_cast<size_t>(s.Length()) + 8);
    bool wordStart = true;
    while (p < end) {
        uint8_t bytes[5];
        int n = UTF8Encode(ChangeOne(UTF8DecodeAndAdvance(p, end), change, wordStart), bytes);
        out.append(reinterpret_cast<const char *>(bytes), static_cast<size_t>(n));
    }
    return string::FromBytes(out.data(), static_cast<long>(out.size()), s.Encoding());
}

string ChangeUCS2(const string &s, CaseChange change) {
    long units = s.Length() / 2;
    if (units == 0)
        return s;
    std::string out(s.CString(), static_cast<size_t>(s.Length()));
    bool wordStart = true;
    for (long i = 0; i < units; ++i) {
        uint16_t unit;
        std::memcpy(&unit, out.data() + 2 * i, 2);
        unit = static_cast<uint16_t>(ChangeOne(unit, change, wordStart));
        std::memcpy(out.data() + 2 * i, &unit, 2);
    }
    return string::FromBytes(out.data(), static_cast<long>(out.size()), s.Encoding());
}

} // namespace

string UTF8ToUpper(const string &s) { return ChangeUTF8(s, CaseChange::Upper); }
string UTF8ToLower(const string &s) { return ChangeUTF8(s, CaseChange::Lower); }
string UTF8Capitalize(const string &s) { return ChangeUTF8(s, CaseChange::Capitalize); }
string UCS2ToUpper(const string &s) { return ChangeUCS2(s, CaseChange::Upper); }
string UCS2ToLower(const string &s) { return ChangeUCS2(s, CaseChange::Lower); }
string UCS2Capitalize(const string &s) { return ChangeUCS2(s, CaseChange::Capitalize); }

// ----------------------------------------------------------------- iconv

namespace {

constexpr uint32_t kEncodingISO2022JP = 2080;

bool AllBytesBelow128(const string &s) {
    const uint8_t *p = reinterpret_cast<const uint8_t *>(s.CString());
    for (long i = 0, n = s.Length(); i < n; ++i)
        if (p[i] >= 128)
            return false;
    return true;
}

// One-entry cache: the last converted source and its result.  Both are held
// by reference, so the source record can't be freed and reused while the
// entry stands.  The entry is never destroyed: at exit the source may be a
// constant whose memory is already gone, and dropping it would touch that.
string &gCacheSource = *new string;
string &gCacheResult = *new string;

// The conversion of the bytes from `from` to `to`; the source itself when it
// can't be done.
string IconvConvert(const string &s, uint32_t from, uint32_t to, bool *converted) {
    *converted = false;
    const char *fromName = IconvNameForEncoding(from);
    const char *toName = IconvNameForEncoding(to);
    if (!fromName || !toName)
        return s;
    iconv_t cd = iconv_open(toName, fromName);
    if (cd == reinterpret_cast<iconv_t>(-1))
        return s;
    long length = s.Length();
    size_t outSize = static_cast<size_t>(length) * 4 + 4;
    char *out = new (std::nothrow) char[outSize];
    if (!out) {
        iconv_close(cd);
        return s;
    }
    char *in = const_cast<char *>(s.CString());
    size_t inLeft = static_cast<size_t>(length);
    char *outPtr = out;
    size_t outLeft = outSize;
    bool ok = true;
    // A character without a counterpart becomes "?": in the target's own
    // form, so that 16-bit text keeps its units aligned.
    const bool wideTarget = to == kEncodingUTF16;
    while (inLeft > 0) {
        size_t r = iconv(cd, &in, &inLeft, &outPtr, &outLeft);
        if (r != static_cast<size_t>(-1))
            break;
        if ((errno == EILSEQ || errno == EINVAL) && outLeft >= 2) {
            ++in;
            --inLeft;
            *outPtr++ = '?';
            --outLeft;
            if (wideTarget) {
                *outPtr++ = 0;
                --outLeft;
            }
            if (inLeft == 0) {
                ok = false;
                break;
            }
            continue;
        }
        ok = false;
        break;
    }
    if (ok) {
        // Close any shift state of a stateful target.
        if (iconv(cd, nullptr, nullptr, &outPtr, &outLeft) == static_cast<size_t>(-1))
            ok = false;
    }
    iconv_close(cd);
    if (!ok) {
        delete[] out;
        return s;
    }
    string result = string::FromBytes(out, static_cast<long>(outPtr - out), to);
    delete[] out;
    *converted = true;
    return result;
}

} // namespace

string ConvertEncoding(const string &s, uint32_t target) {
    uint32_t source = s.Encoding();
    if (target == kEncodingUnknown || s.Length() == 0 || source == kEncodingUnknown ||
        source == target)
        return s;
    if (gCacheSource.Storage() == s.Storage() && gCacheResult.Length() > 0 &&
        gCacheResult.Encoding() == target)
        return gCacheResult;
    bool holdsAscii = target < 256 || target > 512 || target == kEncodingUTF8;
    // ISO-2022-JP is 7-bit too, but its escapes switch to two-byte
    // characters: bytes below 128 are not ASCII text there.
    bool asciiSource = source != kEncodingISO2022JP && !IsUnicodeFamily(source);
    if (holdsAscii && (source == kEncodingASCII || (asciiSource && AllBytesBelow128(s)))) {
        string copy = string::FromBytes(s.CString(), s.Length(), target);
        gCacheSource = s;
        gCacheResult = copy;
        return copy;
    }
    bool converted = false;
    string result = IconvConvert(s, source, target, &converted);
    if (converted) {
        gCacheSource = s;
        gCacheResult = result;
    } else {
        // Forget the entry: a stale result must never answer for another
        // conversion.
        gCacheSource = string();
        gCacheResult = string();
    }
    return result;
}

string GetUTF8String(const string &s) { return ConvertEncoding(s, kEncodingUTF8); }

string GetUTF16String(const string &s) {
    if (s.Length() > 0 && s.Encoding() == kEncodingUnknown) {
        // Read unknown bytes as the system default, without relabelling the
        // caller's record.
        string asDefault = string::FromBytes(s.CString(), s.Length(), kSystemDefaultEncoding);
        return ConvertEncoding(asDefault, kEncodingUTF16);
    }
    return ConvertEncoding(s, kEncodingUTF16);
}

string ConvertToSystemEncoding(const string &s) {
    return ConvertEncoding(s, kSystemDefaultEncoding);
}

void ClearConversionCache() {
    gCacheSource = string();
    gCacheResult = string();
}

} // namespace kelp
