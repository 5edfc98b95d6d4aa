#include "listbox/utf8.h"

#include "objects/text.h"
#include "strings/kstring.h"

namespace kelp::listbox {

std::string ToUtf8(KelpString text) {
    if (!text || text->length <= 0)
        return std::string();
    uint32_t encoding = text->encoding;
    if (encoding == kEncodingUTF8 || encoding == kEncodingASCII || encoding == kEncodingUnknown)
        return std::string(objtext::View(text));
    string converted = ConvertEncoding(string::Wrap(text), kEncodingUTF8);
    return std::string(objtext::View(converted.Storage()));
}

KelpString MakeUtf8(std::string_view text) {
    return text.empty() ? nullptr : string::FromUTF8(text).ExtractStringStorage();
}

} // namespace kelp::listbox
