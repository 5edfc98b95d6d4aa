// Strings made by the object runtime (class names, signatures, messages).
//
// They are pinned: the record carries one reference that nobody releases, so
// the string runtime never frees a record whose memory came from here.  The
// object runtime makes few strings and nearly all of them live as long as
// the classes that hold them.
#include "objects/text.h"

#include "kelp/strings.h"

#include <cctype>
#include <cstdlib>
#include <cstring>

extern "C" {
// Bound when the string runtime is linked in; the object runtime works on
// the records directly otherwise.
__attribute__((weak)) KelpString RuntimeLockString(KelpString s);
__attribute__((weak)) void RuntimeUnlockString(KelpString s);
}

namespace kelp::objtext {

KelpString Make(std::string_view text) {
    if (text.empty())
        return nullptr; // the empty string is null
    auto *record = static_cast<stringStorage *>(std::calloc(1, sizeof(stringStorage)));
    auto *buffer = static_cast<uint8_t *>(std::malloc(text.size() + 2));
    if (!record || !buffer) {
        std::free(record);
        std::free(buffer);
        return nullptr;
    }
    buffer[0] = static_cast<uint8_t>(text.size() > 255 ? 255 : text.size());
    std::memcpy(buffer + 1, text.data(), text.size());
    buffer[text.size() + 1] = 0;
    record->referenceCount = 2; // the caller's, and the pin
    record->buffer = buffer;
    record->capacity = static_cast<uint32_t>(text.size() + 2);
    record->length = static_cast<int32_t>(text.size());
    record->encoding = kEncodingASCII;
    return record;
}

void Retain(KelpString s) {
    if (!s)
        return;
    if (RuntimeLockString)
        RuntimeLockString(s);
    else
        ++s->referenceCount;
}

void Release(KelpString s) {
    if (!s)
        return;
    if (RuntimeUnlockString)
        RuntimeUnlockString(s);
    else if (s->referenceCount > 1)
        --s->referenceCount;
}

std::string_view View(KelpString s) {
    if (!s || !s->buffer || s->length <= 0)
        return {};
    return {reinterpret_cast<const char *>(s->buffer + 1), static_cast<size_t>(s->length)};
}

bool SameName(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

} // namespace kelp::objtext
