// Strings in the forms that declared external functions take: C and Pascal
// texts, 16-bit wide text and four-character codes.  The pointer views stay
// valid while the caller holds the string.
#include "kelp/strings.h"

#include "strings/kstring.h"

using kelp::string;

namespace {
// The text of a record or of the empty string, without touching its count.
const char *CView(stringStorage *s) {
    return s && s->buffer ? reinterpret_cast<const char *>(s->buffer + 1) : "";
}
const uint8_t *PView(stringStorage *s) {
    static const uint8_t kEmpty[2] = {0, 0};
    return s && s->buffer ? s->buffer : kEmpty;
}
} // namespace

extern "C" const char *StringGetCString(stringStorage *s) { return CView(s); }
extern "C" const char *StringToCString(stringStorage *s) { return CView(s); }
extern "C" const uint8_t *StringGetPString(stringStorage *s) { return PView(s); }
extern "C" const uint8_t *StringToPString(stringStorage *s) { return PView(s); }

extern "C" stringStorage *StringToWString(stringStorage *s) {
    return kelp::GetUTF16String(string::Wrap(s)).ExtractStringStorage();
}

extern "C" stringStorage *StringToCFString(stringStorage *s) {
    return kelp::GetUTF8String(string::Wrap(s)).ExtractStringStorage();
}

extern "C" uint32_t StringToOSType(stringStorage *s) {
    // The first four bytes, most significant first; a shorter text is
    // padded with blanks, as four-character codes are written ("ttx ").
    string text = string::Wrap(s);
    uint32_t code = 0;
    for (long i = 0; i < 4; ++i)
        code = (code << 8) | (i < text.Length() ? static_cast<uint8_t>(text.CString()[i]) : 0x20);
    return code;
}
