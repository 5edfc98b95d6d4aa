// Upper, lower and title case, the Unicode-aware trims, and StrComp.
#include "kelp/string_functions.h"
#include "string_functions/text_units.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

using namespace kelp;
using namespace kelp::text;

namespace {

string MapBytes(const string &s, int (*map)(int)) {
    if (s.IsEmpty())
        return s;
    std::string out(s.View());
    for (char &c : out)
        c = static_cast<char>(map(static_cast<unsigned char>(c)));
    return string::FromBytes(out.data(), static_cast<long>(out.size()), s.Encoding());
}

} // namespace

extern "C" stringStorage *StringUCase(stringStorage *s) {
    const string str = Arg(s);
    if (IsUTF8(str))
        return Out(UTF8ToUpper(str));
    if (IsUTF16(str))
        return Out(UCS2ToUpper(str));
    return Out(MapBytes(str, &::toupper));
}

extern "C" stringStorage *StringLCase(stringStorage *s) {
    const string str = Arg(s);
    if (IsUTF8(str))
        return Out(UTF8ToLower(str));
    if (IsUTF16(str))
        return Out(UCS2ToLower(str));
    return Out(MapBytes(str, &::tolower));
}

extern "C" stringStorage *StringTitleCase(stringStorage *s) {
    const string str = Arg(s);
    if (IsUTF8(str))
        return Out(UTF8Capitalize(str));
    if (IsUTF16(str))
        return Out(UCS2Capitalize(str));
    return Out(str);
}

// ------------------------------------------------------------------- Trim

namespace {

bool IsTrimSpace(uint32_t c) { return IsTextWhitespace(c); }

// Byte offsets of the first kept character and behind the last one.
void Scan(const string &s, long *head, long *tail) {
    const uint8_t *p = Bytes(s);
    const long n = s.Length();
    if (IsUTF16(s)) {
        auto unit = [p](long i) {
            uint16_t u;
            std::memcpy(&u, p + 2 * i, 2);
            return static_cast<uint32_t>(u);
        };
        long a = 0, b = n / 2;
        while (a < b && IsTrimSpace(unit(a)))
            ++a;
        b = n / 2;
        while (b > 0 && IsTrimSpace(unit(b - 1)))
            --b;
        *head = 2 * a;
        *tail = 2 * b;
        return;
    }
    const bool utf8 = IsUTF8(s);
    const uint8_t *end = p + n, *q = p;
    while (q < end) {
        const uint8_t *next = q;
        const uint32_t c = utf8 ? UTF8DecodeAndAdvance(next, end) : *next++;
        if (!IsTrimSpace(c))
            break;
        q = next;
    }
    *head = q - p;
    // The right scan stands on its own: a one-sided trim of a text that is
    // all whitespace must still cut it all.
    const uint8_t *r = end;
    while (r > p) {
        const uint8_t *start = utf8 ? BackupUTF8(r, p, 1) : r - 1;
        const uint8_t *at = start;
        const uint32_t c = utf8 ? UTF8DecodeAndAdvance(at, end) : *at;
        if (!IsTrimSpace(c))
            break;
        r = start;
    }
    *tail = r - p;
}

enum Side { kLeft = 1, kRight = 2, kBoth = 3 };

string Trim(const string &in, Side side) {
    if (in.IsEmpty())
        return string();
    const uint32_t word = in.Encoding();
    const bool direct = word == kEncodingUTF8 || word == kEncodingUTF16 || word == kEncodingASCII;
    const string s = direct ? in : GetUTF16String(in);
    long head, tail;
    Scan(s, &head, &tail);
    if (!(side & kLeft))
        head = 0;
    if (!(side & kRight))
        tail = s.Length();
    if (head == 0 && tail == s.Length() && side == kBoth)
        return in;
    if (tail <= head)
        return string();
    string cut = mid(s, head, tail - head);
    if (direct)
        return cut;
    if (word == kEncodingUnknown) {
        string back = ConvertToSystemEncoding(cut);
        if (!back.IsEmpty())
            back.SetEncoding(kEncodingUnknown);
        return back;
    }
    return ConvertEncoding(cut, word);
}

} // namespace

extern "C" stringStorage *runTrim(stringStorage *s) { return Out(Trim(Arg(s), kBoth)); }
extern "C" stringStorage *runLTrim(stringStorage *s) { return Out(Trim(Arg(s), kLeft)); }
extern "C" stringStorage *runRTrim(stringStorage *s) { return Out(Trim(Arg(s), kRight)); }

// ---------------------------------------------------------------- StrComp

extern "C" int32_t StringStrCompare(stringStorage *a, stringStorage *b, int32_t mode) {
    if (a == b)
        return 0;
    if (a == nullptr)
        return -1;
    if (b == nullptr)
        return 1;
    string x = Arg(a), y = Arg(b);
    auto sign = [](long v) { return v < 0 ? -1 : v > 0 ? 1 : 0; };
    if (mode == 0) {
        const long n = std::min(x.Length(), y.Length());
        const int r = std::memcmp(x.CString(), y.CString(), static_cast<size_t>(n));
        if (r != 0)
            return sign(r);
        return sign(x.Length() - y.Length());
    }
    const uint32_t word = ConvertToSameEncoding(x, y);
    if (word == kEncodingUTF8)
        return sign(UTF8StringCompare(Bytes(x), x.Length(), Bytes(y), y.Length(), false));
    if (word == kEncodingUTF16)
        return sign(UCS2StringCompare(Bytes(x), x.Length() / 2, Bytes(y), y.Length() / 2, false));
    return sign(std::strcmp(x.CString(), y.CString()));
}
