// Left, Right, Mid, Len, Asc and Chr, in their byte and character forms.
#include "kelp/string_functions.h"
#include "string_functions/text_units.h"

#include <cstring>

using namespace kelp;
using namespace kelp::text;

extern "C" stringStorage *StringLeft(stringStorage *s, int32_t count) {
    return Out(left(Arg(s), count));
}

extern "C" stringStorage *StringRight(stringStorage *s, int32_t count) {
    return Out(right(Arg(s), count));
}

extern "C" stringStorage *StringMid2(stringStorage *s, int32_t position) {
    return Out(mid(Arg(s), static_cast<long>(position) - 1));
}

extern "C" stringStorage *StringMid3(stringStorage *s, int32_t position, int32_t length) {
    return Out(mid(Arg(s), static_cast<long>(position) - 1, length));
}

extern "C" int32_t StringLen(stringStorage *s) { return s ? s->length : 0; }

extern "C" int32_t StringAsc(stringStorage *s) { return s && s->length > 0 ? s->buffer[1] : 0; }

extern "C" stringStorage *StringChr(int32_t code) {
    const char byte = static_cast<char>(code & 0xFF);
    return Out(
        string::FromBytes(&byte, 1, (code & 0xFF) < 128 ? kEncodingASCII : kEncodingUnknown));
}

extern "C" stringStorage *StringDBCSLeft(stringStorage *s, int32_t count) {
    if (s == nullptr || count < 1)
        return nullptr;
    const string str = Arg(s);
    return Out(left(str, UnitsToBytes(str, 0, count)));
}

extern "C" stringStorage *StringDBCSRight(stringStorage *s, int32_t count) {
    if (s == nullptr || count < 1)
        return nullptr;
    const string str = Arg(s);
    const long length = str.Length();
    long bytes;
    if (IsUTF8(str)) {
        const uint8_t *start = Bytes(str);
        bytes = (start + length) - BackupUTF8(start + length, start, count);
    } else if (IsUTF16(str)) {
        bytes = static_cast<long>(count) * 2;
    } else {
        bytes = count;
    }
    return Out(right(str, bytes));
}

extern "C" stringStorage *StringDBCSMid2(stringStorage *s, int32_t position) {
    if (s == nullptr)
        return nullptr;
    const string str = Arg(s);
    if (position <= 1)
        return Out(str);
    return Out(mid(str, UnitsToBytes(str, 0, static_cast<long>(position) - 1)));
}

extern "C" stringStorage *StringDBCSMid3(stringStorage *s, int32_t position, int32_t length) {
    if (s == nullptr || length < 1)
        return nullptr;
    long pos = position, len = length;
    if (pos < 1) {
        // A start before the text eats into the length.
        len += pos - 1;
        pos = 1;
    }
    if (len < 1)
        return nullptr;
    const string str = Arg(s);
    const long start = UnitsToBytes(str, 0, pos - 1);
    if (start >= str.Length() || (IsUTF16(str) && pos - 1 > str.Length() / 2))
        return nullptr;
    return Out(mid(str, start, UnitsToBytes(str, start, len)));
}

extern "C" int32_t StringDBCSLen(stringStorage *s) {
    if (s == nullptr)
        return 0;
    const string str = Arg(s);
    if (IsUTF8(str))
        return static_cast<int32_t>(BytesToUnits(str, str.Length()));
    if (IsUTF16(str))
        return static_cast<int32_t>(str.Length() / 2);
    return static_cast<int32_t>(str.Length());
}

extern "C" int32_t StringDBCSAsc(stringStorage *s) {
    if (s == nullptr || s->length == 0)
        return 0;
    const string str = Arg(s);
    const uint8_t *p = Bytes(str);
    if (IsUTF8(str))
        return static_cast<int32_t>(UTF8Decode(p, p + str.Length()));
    if (IsUTF16(str)) {
        if (str.Length() < 2)
            return 0;
        uint16_t unit;
        std::memcpy(&unit, p, 2);
        return unit;
    }
    return p[0];
}

extern "C" stringStorage *StringDBCSChr(int32_t code) {
    if (code < 256) {
        const char byte = static_cast<char>(code & 0xFF);
        return Out(string::FromBytes(&byte, 1,
                                     code >= 0 && code < 128 ? kEncodingASCII : kEncodingUnknown));
    }
    // A double-byte code: the high byte of its low 16 bits first.
    const char pair[2] = {static_cast<char>((code >> 8) & 0xFF), static_cast<char>(code & 0xFF)};
    return Out(string::FromBytes(pair, 2, kEncodingUnknown));
}
