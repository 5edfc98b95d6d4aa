// Strings made and compared by the object runtime (class names, signatures,
// exception messages), through the string class and its exports.
#include "objects/text.h"

#include "base/ascii.h"
#include "kelp/strings.h"
#include "strings/kstring.h"

namespace kelp::objtext {

KelpString Make(std::string_view text) {
    if (text.empty())
        return nullptr; // the empty string is null
    kelp::string s(text.data(), static_cast<long>(text.size()));
    s.SetEncoding(kEncodingASCII);
    return s.Release();
}

void Retain(KelpString s) { RuntimeLockString(s); }
void Release(KelpString s) { RuntimeUnlockString(s); }

std::string_view View(KelpString s) {
    if (!s || !s->buffer || s->length <= 0)
        return {};
    return {reinterpret_cast<const char *>(s->buffer + 1), static_cast<size_t>(s->length)};
}

bool SameName(std::string_view a, std::string_view b) { return AsciiEqualNoCase(a, b); }

} // namespace kelp::objtext
