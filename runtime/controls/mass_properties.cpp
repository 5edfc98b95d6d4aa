// Mass property data: how a compiled layout gives an object its
// properties in one string.  Records follow each other to the end of the
// data: a 16-bit big-endian row of the class's property table, then the
// value in the width the row's type letter gives.  Every read is checked
// against the end first, so damaged data stops with a report, never reads
// past the string.
#include "base/fatal_report.h"
#include "objects/object_model.h"
#include "objects/text.h"

#include "kelp/controls.h"
#include "kelp/objects.h"

#include <cstring>
#include <string>

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/controls/mass_properties.cpp";

uint32_t ReadBig(const uint8_t *p, int bytes) {
    uint32_t v = 0;
    for (int i = 0; i < bytes; ++i)
        v = (v << 8) | p[i];
    return v;
}

// The type letter of a row: the first character of the signature's second
// "%" field ("Left%i4%" gives 'i'), and whether it is an 8-byte float.
char TypeLetter(KelpString signature, bool *wide) {
    std::string_view text = objtext::View(signature);
    size_t percent = text.find('%');
    *wide = false;
    if (percent == std::string_view::npos || percent + 1 >= text.size())
        return 0;
    char letter = text[percent + 1];
    // A Double's type code is "f8": eight bytes, as a "d" value.
    if (letter == 'f' && percent + 2 < text.size() && text[percent + 2] == '8')
        *wide = true;
    return letter;
}

void Truncated() {
    FatalReport(kFatalFailedAssertion, kFile, __LINE__, "0",
                "Mass property input ends inside a record.");
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void RuntimeMassPropertySetter(RuntimeObject *object, KelpString data) {
    if (!object || !data || data->length <= 0 || !object->klass)
        return;
    RuntimeClass *klass = object->klass;
    const uint8_t *p = data->buffer + 1;
    const uint8_t *end = p + data->length;
    // Each pass consumes at least two bytes, so the walk ends.
    while (p < end) {
        if (end - p < 2)
            return Truncated();
        uint32_t index = ReadBig(p, 2);
        p += 2;
        if (index >= static_cast<uint32_t>(klass->propertyCount) || !klass->propertyTable) {
            FatalReport(
                kFatalFailedAssertion, kFile, __LINE__, "index < propertyCount",
                ("Mass property index " + std::to_string(index) + " is past the table.").c_str());
            return;
        }
        const RuntimePropertyRow &row = klass->propertyTable[index];
        if (!row.setter) {
            std::string message =
                "Assignment to read-only property " + std::string(objtext::View(row.signature));
            FatalReport(kFatalFailedAssertion, kFile, __LINE__, "0", message.c_str());
            return;
        }
        const bool plain = row.setter == reinterpret_cast<void *>(1);
        const int32_t param = row.fieldOffset;
        bool wide = false;
        char letter = TypeLetter(row.signature, &wide);
        switch (letter) {
        case 'b': {
            if (end - p < 1)
                return Truncated();
            uint8_t v = *p++ != 0;
            plain ? boolSetter(object, param, v)
                  : CallCompiledCode<void>(row.setter, object, param, v);
            break;
        }
        case 'c':
        case 'i': {
            int width = letter == 'c' ? 3 : 4;
            if (end - p < width)
                return Truncated();
            auto v = static_cast<int32_t>(ReadBig(p, width));
            p += width;
            plain ? intSetter(object, param, v)
                  : CallCompiledCode<void>(row.setter, object, param, v);
            break;
        }
        case 'd':
        case 'f': {
            if (letter == 'd' || wide) {
                if (end - p < 8)
                    return Truncated();
                uint64_t bits = (uint64_t(ReadBig(p, 4)) << 32) | ReadBig(p + 4, 4);
                p += 8;
                double v;
                std::memcpy(&v, &bits, sizeof v);
                plain ? doubleSetter(object, param, v)
                      : CallCompiledCode<void>(row.setter, object, param, v);
            } else {
                if (end - p < 4)
                    return Truncated();
                uint32_t bits = ReadBig(p, 4);
                p += 4;
                float v;
                std::memcpy(&v, &bits, sizeof v);
                plain ? singleSetter(object, param, v)
                      : CallCompiledCode<void>(row.setter, object, param, v);
            }
            break;
        }
        case 's': {
            if (end - p < 4)
                return Truncated();
            uint32_t n = ReadBig(p, 4);
            p += 4;
            if (static_cast<uint64_t>(end - p) < n)
                return Truncated();
            KelpString v = objtext::Make(std::string_view(reinterpret_cast<const char *>(p), n));
            p += n;
            if (v)
                v->encoding = kEncodingUTF8;
            plain ? stringSetter(object, param, v)
                  : CallCompiledCode<void>(row.setter, object, param, v);
            objtext::Release(v);
            break;
        }
        default:
            FatalReport(kFatalFailedAssertion, kFile, __LINE__, "0",
                        "Illegal type in mass property input.");
            return;
        }
    }
}
