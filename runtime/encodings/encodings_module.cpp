// The Encodings module: one read-only property per named encoding, each
// answering the shared TextEncoding of its word, and GetFromCode.  The same
// properties stand on the hidden class _Encodings, whose one instance
// GetEncodingsObject hands to code that wants Encodings as a value.
#include "encodings/text_encoding.h"

#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/encodings.h"
#include "kelp/objects.h"

#include <vector>

namespace kelp {
namespace {

struct NamedEncoding {
    const char *name;
    uint32_t word;   // base, or 0x08000100 for UTF-8
    uint32_t format; // only UCS4 has one besides UTF-8
};

// The property's selector is its position here, from 1.
const NamedEncoding kNamed[] = {
    {"UTF8", 0x08000100, 0},
    {"UTF16", 0x0100, 0},
    {"UCS4", 0x0100, 3},
    {"MacRoman", 0x0000, 0},
    {"MacJapanese", 0x0001, 0},
    {"MacChineseTrad", 0x0002, 0},
    {"MacKorean", 0x0003, 0},
    {"MacArabic", 0x0004, 0},
    {"MacHebrew", 0x0005, 0},
    {"MacGreek", 0x0006, 0},
    {"MacCyrillic", 0x0007, 0},
    {"MacDevanagari", 0x0009, 0},
    {"MacGurmukhi", 0x000A, 0},
    {"MacGujarati", 0x000B, 0},
    {"MacOriya", 0x000C, 0},
    {"MacBengali", 0x000D, 0},
    {"MacTamil", 0x000E, 0},
    {"MacTelugu", 0x000F, 0},
    {"MacKannada", 0x0010, 0},
    {"MacMalayalam", 0x0011, 0},
    {"MacSinhalese", 0x0012, 0},
    {"MacBurmese", 0x0013, 0},
    {"MacKhmer", 0x0014, 0},
    {"MacThai", 0x0015, 0},
    {"MacLaotian", 0x0016, 0},
    {"MacGeorgian", 0x0017, 0},
    {"MacArmenian", 0x0018, 0},
    {"MacChineseSimp", 0x0019, 0},
    {"MacTibetan", 0x001A, 0},
    {"MacMongolian", 0x001B, 0},
    {"MacEthiopic", 0x001C, 0},
    {"MacCentralEurRoman", 0x001D, 0},
    {"MacVietnamese", 0x001E, 0},
    {"MacExtArabic", 0x001F, 0},
    {"MacSymbol", 0x0021, 0},
    {"MacDingbats", 0x0022, 0},
    {"MacTurkish", 0x0023, 0},
    {"MacCroatian", 0x0024, 0},
    {"MacIcelandic", 0x0025, 0},
    {"MacRomanian", 0x0026, 0},
    {"MacCeltic", 0x0027, 0},
    {"MacGaelic", 0x0028, 0},
    {"ISOLatin1", 0x0201, 0},
    {"ISOLatin2", 0x0202, 0},
    {"ISOLatin3", 0x0203, 0},
    {"ISOLatin4", 0x0204, 0},
    {"ISOLatinCyrillic", 0x0205, 0},
    {"ISOLatinArabic", 0x0206, 0},
    {"ISOLatinGreek", 0x0207, 0},
    {"ISOLatinHebrew", 0x0208, 0},
    {"ISOLatin5", 0x0209, 0},
    {"ISOLatin6", 0x020A, 0},
    {"ISOLatin7", 0x020D, 0},
    {"ISOLatin8", 0x020E, 0},
    {"ISOLatin9", 0x020F, 0},
    {"DOSLatinUS", 0x0400, 0},
    {"DOSGreek", 0x0405, 0},
    {"DOSBalticRim", 0x0406, 0},
    {"DOSLatin1", 0x0410, 0},
    {"DOSGreek1", 0x0411, 0},
    {"DOSLatin2", 0x0412, 0},
    {"DOSCyrillic", 0x0413, 0},
    {"DOSTurkish", 0x0414, 0},
    {"DOSPortuguese", 0x0415, 0},
    {"DOSIcelandic", 0x0416, 0},
    {"DOSHebrew", 0x0417, 0},
    {"DOSCanadianFrench", 0x0418, 0},
    {"DOSArabic", 0x0419, 0},
    {"DOSNordic", 0x041A, 0},
    {"DOSRussian", 0x041B, 0},
    {"DOSGreek2", 0x041C, 0},
    {"DOSThai", 0x041D, 0},
    {"DOSJapanese", 0x0420, 0},
    {"DOSChineseSimplif", 0x0421, 0},
    {"DOSKorean", 0x0422, 0},
    {"DOSChineseTrad", 0x0423, 0},
    {"WindowsLatin1", 0x0500, 0},
    {"WindowsANSI", 0x0500, 0},
    {"WindowsLatin2", 0x0501, 0},
    {"WindowsCyrillic", 0x0502, 0},
    {"WindowsGreek", 0x0503, 0},
    {"WindowsLatin5", 0x0504, 0},
    {"WindowsHebrew", 0x0505, 0},
    {"WindowsArabic", 0x0506, 0},
    {"WindowsBalticRim", 0x0507, 0},
    {"WindowsVietnamese", 0x0508, 0},
    {"WindowsKoreanJohab", 0x0510, 0},
    {"ASCII", 0x0600, 0},
    {"ShiftJIS", 0x0A01, 0},
    {"KOI8_R", 0x0A02, 0},
    {"MacRomanLatin1", 0x0A04, 0},
    {"SystemDefault", kSystemDefaultEncoding, 0},
};
constexpr int32_t kNamedCount = sizeof(kNamed) / sizeof(kNamed[0]);

// The rows shared by the module and the class.
const std::vector<PropertyRow> &NamedProperties() {
    static const TypeRecord encodingType{kTypeObjectOf, nullptr, nullptr, 0,
                                         &TextEncodingDefinition};
    static const std::vector<PropertyRow> properties = [] {
        std::vector<PropertyRow> rows;
        for (int32_t i = 0; i < kNamedCount; ++i)
            rows.push_back(
                {0, kNamed[i].name, &encodingType, KELP_ENTRY(EncodingsGetter), {}, i + 1});
        return rows;
    }();
    return properties;
}

// GetFromCode called on the instance of _Encodings, which has a self.
RuntimeObject *InstanceGetFromCode(RuntimeObject * /*self*/, int32_t word) {
    return EncodingsGetFromCode(word);
}

} // namespace

ObjectDefinition *EncodingsModuleDefinition() {
    static const TypeRecord encodingType{kTypeObjectOf, nullptr, nullptr, 0,
                                         &TextEncodingDefinition};
    static const ParameterRow code[] = {{"code", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"GetFromCode", &encodingType, code, 1, KELP_ENTRY(EncodingsGetFromCode)},
    };
    static const ClassDescription description = {
        .name = "Encodings",
        .instanceSize = 0,
        .targetFlags = {1, 0, 0},
        .properties = NamedProperties(),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *EncodingsClassDefinition() {
    static const TypeRecord encodingType{kTypeObjectOf, nullptr, nullptr, 0,
                                         &TextEncodingDefinition};
    static const ParameterRow code[] = {{"code", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"GetFromCode", &encodingType, code, 1, KELP_ENTRY(InstanceGetFromCode)},
    };
    static const ClassDescription description = {
        .name = "_Encodings",
        .properties = NamedProperties(),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *EncodingsGetter(RuntimeObject * /*module*/, int32_t selector) {
    if (selector < 1 || selector > kNamedCount)
        return nullptr;
    const NamedEncoding &row = kNamed[selector - 1];
    // A format beside the word (UCS4) isn't told by the word alone: such an
    // encoding is an object of its own.
    if (row.format != 0 && row.word != kEncodingUTF8)
        return getTextEncoding(static_cast<int32_t>(row.word), 0, static_cast<int32_t>(row.format));
    return SharedTextEncoding(row.word);
}

extern "C" RuntimeObject *EncodingsGetFromCode(int32_t word) {
    return SharedTextEncoding(static_cast<uint32_t>(word));
}

extern "C" RuntimeObject *GetEncodingsObject(void) {
    // Made at the first call and kept for the process, like the module.
    static RuntimeObject *encodings =
        RuntimeNewObject(ClassForDefinition(EncodingsClassDefinition()));
    RuntimeLockObject(encodings);
    return encodings;
}
