#include "edit_fields/utf8_text.h"

#include "objects/text.h"
#include "strings/kstring.h"

#include <glib.h>

namespace kelp {

std::string ToUtf8(KelpString text) {
    if (!text || text->length <= 0)
        return std::string();
    std::string bytes;
    uint32_t encoding = text->encoding;
    if (encoding == kEncodingUTF8 || encoding == kEncodingASCII || encoding == kEncodingUnknown) {
        bytes = std::string(objtext::View(text));
    } else {
        string converted = ConvertEncoding(string::Wrap(text), kEncodingUTF8);
        bytes = std::string(objtext::View(converted.Storage()));
    }
    if (g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), nullptr))
        return bytes;
    gchar *valid = g_utf8_make_valid(bytes.data(), static_cast<gssize>(bytes.size()));
    std::string out(valid);
    g_free(valid);
    return out;
}

KelpString MakeUtf8(std::string_view text) {
    if (text.empty())
        return nullptr;
    return string::FromUTF8(text).ExtractStringStorage();
}

int32_t CharCount(std::string_view utf8) {
    return static_cast<int32_t>(g_utf8_strlen(utf8.data(), static_cast<gssize>(utf8.size())));
}

size_t ByteOffset(std::string_view utf8, int32_t chars) {
    const char *p = utf8.data(), *end = utf8.data() + utf8.size();
    for (int32_t i = 0; i < chars && p < end; ++i)
        p = g_utf8_next_char(p);
    return static_cast<size_t>(std::min(p, end) - utf8.data());
}

} // namespace kelp
