// Text to and from the operating system, which speaks UTF-8.
#include "encodings/os_text.h"

#include <cstdint>

namespace kelp {

bool IsValidUTF8(const char *bytes, long length) {
    const auto *p = reinterpret_cast<const uint8_t *>(bytes);
    const uint8_t *end = p + (length > 0 ? length : 0);
    while (p < end) {
        uint8_t c = *p++;
        if (c < 0x80)
            continue;
        int extra;
        uint32_t value, minimum;
        if ((c & 0xE0) == 0xC0) {
            extra = 1, value = c & 0x1F, minimum = 0x80;
        } else if ((c & 0xF0) == 0xE0) {
            extra = 2, value = c & 0x0F, minimum = 0x800;
        } else if ((c & 0xF8) == 0xF0) {
            extra = 3, value = c & 0x07, minimum = 0x10000;
        } else {
            return false;
        }
        if (end - p < extra)
            return false;
        while (extra-- > 0) {
            if ((*p & 0xC0) != 0x80)
                return false;
            value = (value << 6) | (*p++ & 0x3F);
        }
        if (value < minimum || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
            return false;
    }
    return true;
}

std::string TextForSystem(const string &s) {
    uint32_t word = s.Encoding();
    if (s.Length() == 0)
        return std::string();
    if (word == kEncodingUTF8 || word == kEncodingASCII || word == kEncodingUnknown)
        return std::string(s.View());
    string utf8 = GetUTF8String(s);
    // A text that can't be converted goes as it is rather than not at all.
    return std::string(utf8.View());
}

string TextFromSystem(const char *bytes, long length) {
    if (!bytes || length < 1)
        return string();
    uint32_t word = IsValidUTF8(bytes, length) ? kEncodingUTF8 : kEncodingUnknown;
    return string::FromBytes(bytes, length, word);
}

string TextFromSystem(const std::string &bytes) {
    return TextFromSystem(bytes.data(), static_cast<long>(bytes.size()));
}

} // namespace kelp
