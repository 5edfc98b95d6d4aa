// TextConverter: a fixed pair of encodings that text is converted between,
// whatever word the text itself carries.
#include "encodings/text_encoding.h"

#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/encodings.h"

namespace kelp {

ObjectDefinition *TextConverterDefinition() {
    static const ParameterRow text[] = {{"s", &kTypeString}};
    static const MethodRow methods[] = {
        {"Convert", &kTypeString, text, 1, KELP_ENTRY(textConverterConvert)},
        {"Clear", nullptr, nullptr, 0, KELP_ENTRY(textConverterClear)},
    };
    static const ClassDescription description = {
        .name = "TextConverter",
        .instanceSize = sizeof(TextConverterObject),
        .targetFlags = {1, 0, 0},
        .finalizer = KELP_ENTRY(textConverterDestructor),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *getTextConverter(RuntimeObject *from, RuntimeObject *to) {
    if (!from || !to)
        return nullptr;
    RuntimeObject *object = NewObjectOfDefinition(TextConverterDefinition());
    if (!object)
        return nullptr;
    auto *converter = reinterpret_cast<TextConverterObject *>(object);
    converter->source = WordOfEncodingObject(from);
    converter->target = WordOfEncodingObject(to);
    return object;
}

extern "C" KelpString textConverterConvert(RuntimeObject *object, KelpString s) {
    if (!object || !s)
        return nullptr;
    const auto *converter = reinterpret_cast<TextConverterObject *>(object);
    string text = string::Wrap(s);
    if (converter->source == converter->target) {
        if (text.Encoding() == converter->target)
            return text.ExtractStringStorage();
        return string::FromBytes(text.CString(), text.Length(), converter->target)
            .ExtractStringStorage();
    }
    // Read the bytes as the source encoding, whatever the text says.
    string asSource = string::FromBytes(text.CString(), text.Length(), converter->source);
    return ConvertEncoding(asSource, converter->target).ExtractStringStorage();
}

extern "C" void textConverterClear(RuntimeObject * /*converter*/) {}

extern "C" void textConverterDestructor(RuntimeObject * /*converter*/) {}
