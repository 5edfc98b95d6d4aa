// The resource exports that need no class of the library beyond strings:
// the application's version properties and text resources.
#include "kelp/resources.h"
#include "objects/text.h"
#include "resources/resource_store.h"

#include <string_view>

namespace {

KelpString MakeText(const uint8_t *bytes, uint32_t length, uint32_t encoding) {
    if (!bytes || length == 0)
        return nullptr;
    KelpString s =
        kelp::objtext::Make(std::string_view(reinterpret_cast<const char *>(bytes), length));
    if (s)
        s->encoding = encoding;
    return s;
}

} // namespace

extern "C" int32_t AppIntegerVersionStuffGetter(RuntimeObject *, int32_t selector) {
    const kelp::VersionInfo *v = kelp::ApplicationVersion();
    if (!v)
        return -1;
    switch (selector) {
    case 0: return v->major;
    case 1: return v->minor;
    case 2: return v->bug;
    case 3: return v->stage;
    case 4: return v->nonRelease;
    case 5: return v->region;
    default: return -1;
    }
}

extern "C" stringStorage *AppStringVersionStuffGetter(RuntimeObject *, int32_t selector) {
    const kelp::VersionInfo *v = kelp::ApplicationVersion();
    if (!v)
        return nullptr;
    switch (selector) {
    case 0: return MakeText(v->shortText, v->shortLength, kEncodingUTF8);
    case 1: return MakeText(v->longText, v->longLength, kEncodingUTF8);
    case 2: return MakeText(v->packageText, v->packageLength, kEncodingUTF8);
    default: return nullptr;
    }
}

extern "C" stringStorage *RuntimeGetTextFileFromResourceManager(int32_t id) {
    if (id < 0 || id > 0xFFFF)
        return nullptr;
    const kelp::ResourceRow row = kelp::FindResource(kelp::kResourceText, uint32_t(id));
    // Text resources carry the system's default encoding, not UTF-8.
    return MakeText(row.data, row.length, kEncodingLatin1);
}
