// TextEncoding: an encoding as the language holds it, with its parts, its
// internet name and a one-character maker.
#include "encodings/text_encoding.h"

#include "containers/int_map.h"
#include "objects/definitions.h"
#include "strings/encodings.h"
#include "strings/kstring.h"

#include "kelp/encodings.h"
#include "kelp/objects.h"

#include <cstddef>
#include <cstring>

namespace kelp {
namespace {

constexpr uint32_t kUnicodeBase = 256;

TextEncodingObject *Record(RuntimeObject *object) {
    return reinterpret_cast<TextEncodingObject *>(object);
}

RuntimeObject *NewEncoding(uint32_t base, uint32_t variant, uint32_t format) {
    RuntimeObject *object = NewObjectOfDefinition(TextEncodingDefinition());
    if (!object)
        return nullptr;
    TextEncodingObject *e = Record(object);
    e->base = base;
    e->variant = variant;
    e->format = format;
    e->valid = 1;
    e->word = EncodingWordOf(base, variant, format);
    return object;
}

} // namespace

uint32_t EncodingWordOf(uint32_t base, uint32_t /*variant*/, uint32_t format) {
    return base == kUnicodeBase && format == 2 ? kEncodingUTF8 : base;
}

RuntimeObject *SharedTextEncoding(uint32_t word) {
    if (word == kEncodingUnknown)
        return nullptr;
    // The objects live to the process end: the map holds their first
    // reference, and every caller gets one more.
    static IntMap<RuntimeObject *> *cache = new IntMap<RuntimeObject *>();
    RuntimeObject *object = nullptr;
    if (!cache->GetEntry(word, object)) {
        object = NewEncoding(word & 0xFFFF, (word >> 16) & 0x3FF, word >> 26);
        if (!object)
            return nullptr;
        cache->AddEntry(word, object);
    }
    RuntimeLockObject(object);
    return object;
}

uint32_t WordOfEncodingObject(RuntimeObject *encoding) {
    return encoding ? Record(encoding)->word : kEncodingUnknown;
}

ObjectDefinition *TextEncodingDefinition() {
    static const ParameterRow code[] = {{"code", &kTypeInteger}};
    static const TypeRecord encodingType{kTypeObjectOf, nullptr, nullptr, 0,
                                         &TextEncodingDefinition};
    static const ParameterRow other[] = {{"other", &encodingType}};
    static const PropertyRow properties[] = {
        {0, "Base", &kTypeInteger, KELP_ENTRY(textEncodingBaseGetter), {}},
        {0, "Variant", &kTypeInteger, KELP_ENTRY(textEncodingVariantGetter), {}},
        {0, "Format", &kTypeInteger, KELP_ENTRY(textEncodingFormatGetter), {}},
        {0, "InternetName", &kTypeString, KELP_ENTRY(textEncodingInternetName), {}},
    };
    static const MethodRow methods[] = {
        {"Chr", &kTypeString, code, 1, KELP_ENTRY(TextEncodingChr)},
        {"Equals", &kTypeBoolean, other, 1, KELP_ENTRY(TextEncodingEquals)},
    };
    static const ClassDescription description = {
        .name = "TextEncoding",
        .instanceSize = sizeof(TextEncodingObject),
        .targetFlags = {1, 0, 0},
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *getTextEncoding(int32_t base, int32_t variant, int32_t format) {
    return NewEncoding(static_cast<uint32_t>(base), static_cast<uint32_t>(variant),
                       static_cast<uint32_t>(format));
}

extern "C" RuntimeObject *getInternetTextEncoding(int32_t base, int32_t variant) {
    return getTextEncoding(base, variant, 0);
}

extern "C" RuntimeObject *getFontTextEncoding(KelpString /*fontName*/) {
    // Fonts carry no encoding of their own on this platform.
    return SharedTextEncoding(kSystemDefaultEncoding);
}

extern "C" int32_t textEncodingBaseGetter(RuntimeObject *encoding) {
    return encoding ? static_cast<int32_t>(Record(encoding)->base) : 0;
}
extern "C" int32_t textEncodingVariantGetter(RuntimeObject *encoding) {
    return encoding ? static_cast<int32_t>(Record(encoding)->variant) : 0;
}
extern "C" int32_t textEncodingFormatGetter(RuntimeObject *encoding) {
    return encoding ? static_cast<int32_t>(Record(encoding)->format) : 0;
}

extern "C" KelpString textEncodingInternetName(RuntimeObject *encoding) {
    if (!encoding)
        return nullptr;
    const TextEncodingObject *e = Record(encoding);
    const char *name = nullptr;
    if (e->word == kEncodingUTF8) {
        name = "UTF-8";
    } else if (e->base == kUnicodeBase) {
        static const char *const kByFormat[] = {"UTF-16", "UTF-7", "UTF-8", "UCS-4"};
        name = e->format < 4 ? kByFormat[e->format] : nullptr;
    } else {
        switch (e->base) {
        case 1280: name = "windows-1252"; break;
        case 1536: name = "US-ASCII"; break;
        case 0: name = "macintosh"; break;
        case 1: name = "X-MAC-JAPANESE"; break;
        case 2561: name = "Shift_JIS"; break;
        default: break;
        }
    }
    return name ? string(name).ExtractStringStorage() : nullptr;
}

extern "C" KelpString TextEncodingChr(RuntimeObject *encoding, int32_t code) {
    if (!encoding)
        return nullptr;
    const TextEncodingObject *e = Record(encoding);
    auto c = static_cast<uint32_t>(code);
    uint8_t bytes[5];
    int n = 0;
    if (IsUnicodeFamily(e->base)) {
        if (e->format == 3) {
            std::memcpy(bytes, &c, 4);
            n = 4;
        } else if (e->format != 0) {
            n = UTF8Encode(c, bytes);
        } else {
            auto unit = static_cast<uint16_t>(c);
            std::memcpy(bytes, &unit, 2);
            n = 2;
        }
    } else {
        // Most significant byte first, leading zero bytes dropped; the
        // character 0 keeps its one byte.
        for (int shift = 16; shift >= 0; shift -= 8)
            if ((c >> shift) & 0xFF || n > 0 || shift == 0)
                bytes[n++] = static_cast<uint8_t>(c >> shift);
    }
    return string::FromBytes(bytes, n, e->word).ExtractStringStorage();
}

extern "C" uint8_t TextEncodingEquals(RuntimeObject *a, RuntimeObject *b) {
    if (a == b)
        return 1;
    return a && b && Record(a)->word == Record(b)->word ? 1 : 0;
}

extern "C" uint32_t GetEncodingFromTEObject(RuntimeObject *encoding) {
    return WordOfEncodingObject(encoding);
}
