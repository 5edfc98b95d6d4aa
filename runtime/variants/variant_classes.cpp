// The boxing classes: Variant(Integer), Variant(UInteger), Variant(String),
// Variant(Double), Variant(Boolean), Variant(Color).  Each has six
// Operator_Convert rows and an Operator_Hash row; the conversion of a box is
// its row's function, the same code the method lookup would find.
#include "variants/variant_classes.h"
#include "variants/variant_rows.h"

#include "kelp/numbers.h"
#include "kelp/objects.h"
#include "kelp/string_functions.h"
#include "kelp/strings.h"

#include "base/ascii.h"
#include "objects/definitions.h"
#include "string_functions/number_text.h"
#include "strings/kstring.h"

#include <cmath>
#include <cstring>
#include <string>
#include <unordered_map>

namespace kelp {
namespace {

uint32_t Word(RuntimeObject *o) { return reinterpret_cast<RuntimeVariantWord *>(o)->value; }
double DoubleOf(RuntimeObject *o) { return reinterpret_cast<RuntimeVariantDouble *>(o)->value; }
bool BoolOf(RuntimeObject *o) { return reinterpret_cast<RuntimeVariantBoolean *>(o)->value != 0; }
stringStorage *TextOf(RuntimeObject *o) {
    return reinterpret_cast<RuntimeVariantString *>(o)->value;
}

KelpString Ascii(const std::string &text) {
    return string::FromBytes(text.data(), static_cast<long>(text.size()), kEncodingASCII)
        .ExtractStringStorage();
}

// A double through a 64-bit integer into 32 bits, as UInteger takes it.
uint32_t ThroughInt64(double value) {
    if (!(value > -9.2e18)) // NaN too
        return 0;
    if (value >= 9.2e18)
        return UINT32_MAX;
    return static_cast<uint32_t>(static_cast<int64_t>(value));
}

#define KELP_BOX_ROWS(Prefix, ToInteger, ToUInteger)                                               \
    static const MethodRow methods[] = {                                                           \
        {"Operator_Convert", &kTypeInteger, nullptr, 0, KELP_ENTRY(ToInteger)},                    \
        {"Operator_Convert", &kTypeUInteger, nullptr, 0, KELP_ENTRY(ToUInteger)},                  \
        {"Operator_Convert", &kTypeBoolean, nullptr, 0, KELP_ENTRY(Prefix##ToBoolean)},            \
        {"Operator_Convert", &kTypeDouble, nullptr, 0, KELP_ENTRY(Prefix##ToDouble)},              \
        {"Operator_Convert", &kTypeColor, nullptr, 0, KELP_ENTRY(Prefix##ToColor)},                \
        {"Operator_Convert", &kTypeString, nullptr, 0, KELP_ENTRY(Prefix##ToString)},              \
        {"Operator_Hash", &kTypeInteger, nullptr, 0, KELP_ENTRY(Prefix##Hash)},                    \
    }

ObjectDefinition *IntegerBox() {
    KELP_BOX_ROWS(IntegerObject, IntegerObjectToInteger, IntegerObjectToInteger);
    static const ClassDescription d = {.name = "Variant(Integer)",
                                       .instanceSize = sizeof(RuntimeVariantWord),
                                       .targetFlags = {1, 0, 0},
                                       .methods = methods};
    static ObjectDefinition *definition = BuildDefinition(d);
    return definition;
}

ObjectDefinition *UIntegerBox() {
    KELP_BOX_ROWS(UnsignedIntegerObject, UnsignedIntegerObjectToInteger,
                  UnsignedIntegerObjectToInteger);
    static const ClassDescription d = {.name = "Variant(UInteger)",
                                       .instanceSize = sizeof(RuntimeVariantWord),
                                       .targetFlags = {1, 0, 0},
                                       .methods = methods};
    static ObjectDefinition *definition = BuildDefinition(d);
    return definition;
}

ObjectDefinition *StringBox() {
    KELP_BOX_ROWS(StringObject, StringObjectToInteger, StringObjectToUInteger);
    static const ClassDescription d = {.name = "Variant(String)",
                                       .instanceSize = sizeof(RuntimeVariantString),
                                       .targetFlags = {1, 0, 0},
                                       .finalizer = KELP_ENTRY(StringObjectFinalizer),
                                       .methods = methods};
    static ObjectDefinition *definition = BuildDefinition(d);
    return definition;
}

ObjectDefinition *DoubleBox() {
    KELP_BOX_ROWS(DoubleObject, DoubleObjectToInteger, DoubleObjectToUInteger);
    static const ClassDescription d = {.name = "Variant(Double)",
                                       .instanceSize = sizeof(RuntimeVariantDouble),
                                       .targetFlags = {1, 0, 0},
                                       .methods = methods};
    static ObjectDefinition *definition = BuildDefinition(d);
    return definition;
}

ObjectDefinition *BooleanBox() {
    KELP_BOX_ROWS(BooleanObject, BooleanObjectToInteger, BooleanObjectToInteger);
    static const ClassDescription d = {.name = "Variant(Boolean)",
                                       .instanceSize = sizeof(RuntimeVariantBoolean),
                                       .targetFlags = {1, 0, 0},
                                       .methods = methods};
    static ObjectDefinition *definition = BuildDefinition(d);
    return definition;
}

ObjectDefinition *ColorBox() {
    KELP_BOX_ROWS(ColorObject, ColorObjectToInteger, ColorObjectToInteger);
    static const ClassDescription d = {.name = "Variant(Color)",
                                       .instanceSize = sizeof(RuntimeVariantWord),
                                       .targetFlags = {1, 0, 0},
                                       .methods = methods};
    static ObjectDefinition *definition = BuildDefinition(d);
    return definition;
}

struct BoxClasses {
    RuntimeClass *integer, *uinteger, *string, *dbl, *boolean, *color;
};

const BoxClasses &Classes() {
    static const BoxClasses classes = {
        ClassForDefinition(IntegerBox()), ClassForDefinition(UIntegerBox()),
        ClassForDefinition(StringBox()),  ClassForDefinition(DoubleBox()),
        ClassForDefinition(BooleanBox()), ClassForDefinition(ColorBox())};
    return classes;
}

RuntimeObject *NewBox(RuntimeClass *klass) { return klass ? RuntimeNewObject(klass) : nullptr; }

// Case-insensitive search, as InStr looks for the signature text.
bool HoldsText(stringStorage *signature, const char *text) {
    if (!signature || signature->length <= 0 || !signature->buffer)
        return false;
    const std::string_view haystack(reinterpret_cast<const char *>(signature->buffer + 1),
                                    static_cast<size_t>(signature->length));
    const size_t n = std::strlen(text);
    if (n > haystack.size())
        return false;
    for (size_t i = 0; i + n <= haystack.size(); ++i)
        if (AsciiEqualNoCase(haystack.substr(i, n), text))
            return true;
    return false;
}

} // namespace

uint32_t VariantWordHash(const void *bytes, size_t n) {
    uint32_t words[2] = {0, 0};
    std::memcpy(words, bytes, n < 8 ? n : 8);
    uint32_t h = (words[0] << 16) | (words[0] >> 16);
    for (size_t i = (n < 8 ? n : 8) / 4; i-- > 0;)
        h ^= words[i];
    return h;
}

Box BoxOf(RuntimeObject *object) {
    if (!object)
        return Box::kNone;
    const BoxClasses &c = Classes();
    RuntimeClass *k = object->klass;
    if (k == c.integer)
        return Box::kInteger;
    if (k == c.string)
        return Box::kString;
    if (k == c.dbl)
        return Box::kDouble;
    if (k == c.boolean)
        return Box::kBoolean;
    if (k == c.uinteger)
        return Box::kUInteger;
    if (k == c.color)
        return Box::kColor;
    return Box::kNone;
}

namespace {
// Stands for any object in the signatures of rows that take a variant.
ObjectDefinition *VariantTypeDefinition() {
    static const ClassDescription d = {.name = "Variant", .targetFlags = {1, 0, 0}};
    static ObjectDefinition *definition = BuildDefinition(d);
    return definition;
}
} // namespace

const TypeRecord &VariantType() {
    static const TypeRecord type{kTypeObjectOf, nullptr, nullptr, 0, &VariantTypeDefinition};
    return type;
}

RuntimeClass *BoxClass(Box box) {
    const BoxClasses &c = Classes();
    switch (box) {
    case Box::kInteger: return c.integer;
    case Box::kUInteger: return c.uinteger;
    case Box::kString: return c.string;
    case Box::kDouble: return c.dbl;
    case Box::kBoolean: return c.boolean;
    case Box::kColor: return c.color;
    default: return nullptr;
    }
}

RuntimeObject *NewUIntegerVariant(uint32_t value) {
    RuntimeObject *o = NewBox(Classes().uinteger);
    if (o)
        reinterpret_cast<RuntimeVariantWord *>(o)->value = value;
    return o;
}

void *FindConversion(RuntimeClass *klass, ConvertTarget target) {
    static const char *const kTexts[] = {"Operator_Convert%i4%o<", "Operator_Convert%u4%o<",
                                         "Operator_Convert%b%o<",  "Operator_Convert%f8%o<",
                                         "Operator_Convert%c%o<",  "Operator_Convert%s%o<",
                                         "Operator_Convert%f4%o<", "Operator_Hash%i4%o<"};
    static std::unordered_map<RuntimeClass *, void *> caches[8];
    if (!klass)
        return nullptr;
    const auto t = static_cast<size_t>(target);
    auto &cache = caches[t];
    if (auto it = cache.find(klass); it != cache.end())
        return it->second;
    void *code = nullptr;
    for (int32_t i = 0; !code && klass->methodTable && i < klass->methodCount; ++i)
        if (HoldsText(klass->methodTable[i].signature, kTexts[t]))
            code = klass->methodTable[i].code;
    for (int32_t i = 0; !code && klass->directMethodTable && i < klass->directMethodCount; ++i)
        if (HoldsText(klass->directMethodTable[i].signature, kTexts[t]))
            code = klass->directMethodTable[i].code;
    cache.emplace(klass, code);
    return code;
}

} // namespace kelp

using namespace kelp;

// ------------------------------------------------------------------ boxing

extern "C" RuntimeObject *intToVariant(int32_t value) {
    RuntimeObject *o = NewBox(Classes().integer);
    if (o)
        reinterpret_cast<RuntimeVariantWord *>(o)->value = static_cast<uint32_t>(value);
    return o;
}

extern "C" RuntimeObject *colorToVariant(uint32_t value) {
    RuntimeObject *o = NewBox(Classes().color);
    if (o)
        reinterpret_cast<RuntimeVariantWord *>(o)->value = value;
    return o;
}

extern "C" RuntimeObject *doubleToVariant(double value) {
    RuntimeObject *o = NewBox(Classes().dbl);
    if (o)
        reinterpret_cast<RuntimeVariantDouble *>(o)->value = value;
    return o;
}

extern "C" RuntimeObject *booleanToVariant(uint8_t value) {
    RuntimeObject *o = NewBox(Classes().boolean);
    if (o)
        reinterpret_cast<RuntimeVariantBoolean *>(o)->value = value ? 1 : 0;
    return o;
}

extern "C" RuntimeObject *stringToVariant(KelpString value) {
    RuntimeObject *o = NewBox(Classes().string);
    if (o)
        reinterpret_cast<RuntimeVariantString *>(o)->value = RuntimeLockString(value);
    return o;
}

extern "C" void StringObjectFinalizer(RuntimeObject *object) {
    if (!object)
        return;
    auto *box = reinterpret_cast<RuntimeVariantString *>(object);
    RuntimeUnlockString(box->value);
    box->value = nullptr;
}

// ------------------------------------------------------- Variant(Integer)

extern "C" int32_t IntegerObjectToInteger(RuntimeObject *o) { return int32_t(Word(o)); }
extern "C" uint8_t IntegerObjectToBoolean(RuntimeObject *o) { return Word(o) != 0; }
extern "C" double IntegerObjectToDouble(RuntimeObject *o) { return int32_t(Word(o)); }
extern "C" uint32_t IntegerObjectToColor(RuntimeObject *o) { return Word(o); }
extern "C" KelpString IntegerObjectToString(RuntimeObject *o) {
    return Ascii(std::to_string(int32_t(Word(o))));
}
extern "C" int32_t IntegerObjectHash(RuntimeObject *o) {
    const uint32_t v = Word(o);
    return int32_t(VariantWordHash(&v, 4));
}

// ------------------------------------------------------ Variant(UInteger)

extern "C" int32_t UnsignedIntegerObjectToInteger(RuntimeObject *o) { return int32_t(Word(o)); }
extern "C" uint8_t UnsignedIntegerObjectToBoolean(RuntimeObject *o) { return Word(o) != 0; }
extern "C" double UnsignedIntegerObjectToDouble(RuntimeObject *o) { return Word(o); }
extern "C" uint32_t UnsignedIntegerObjectToColor(RuntimeObject *o) { return Word(o); }
extern "C" KelpString UnsignedIntegerObjectToString(RuntimeObject *o) {
    static stringStorage *const mask = string("-#").Release(); // lives for the process
    return StringFormat(static_cast<double>(Word(o)), mask);
}
extern "C" int32_t UnsignedIntegerObjectHash(RuntimeObject *o) {
    const uint32_t v = Word(o);
    return int32_t(VariantWordHash(&v, 4));
}

// --------------------------------------------------------- Variant(String)

extern "C" int32_t StringObjectToInteger(RuntimeObject *o) {
    return RuntimeFloatToInt(StringVal(TextOf(o)));
}
extern "C" uint32_t StringObjectToUInteger(RuntimeObject *o) {
    return ThroughInt64(std::trunc(StringVal(TextOf(o))));
}
extern "C" uint8_t StringObjectToBoolean(RuntimeObject *o) {
    const string text = string::Wrap(TextOf(o));
    return text.Compare(string("true")) == 0 || text.Compare(string("1")) == 0;
}
extern "C" double StringObjectToDouble(RuntimeObject *o) { return StringVal(TextOf(o)); }
extern "C" uint32_t StringObjectToColor(RuntimeObject *o) {
    string text = string::Wrap(TextOf(o));
    if (text.Length() >= 2 && text.View()[0] == '&' && (text.View()[1] | 0x20) == 'c')
        text = string("&h") + mid(text, 2);
    return uint32_t(RuntimeFloatToInt(StringVal(text.Storage())));
}
extern "C" KelpString StringObjectToString(RuntimeObject *o) {
    return RuntimeLockString(TextOf(o));
}
extern "C" int32_t StringObjectHash(RuntimeObject *o) {
    const stringStorage *s = TextOf(o);
    uint32_t h = 0;
    if (s && s->buffer)
        for (int32_t i = 0; i < s->length; ++i) {
            signed char c = static_cast<signed char>(s->buffer[1 + i]);
            if (c >= 'a' && c <= 'z')
                c = static_cast<signed char>(c - 32);
            h = h * 31 + static_cast<uint32_t>(static_cast<int32_t>(c));
        }
    return int32_t(h);
}

// --------------------------------------------------------- Variant(Double)

extern "C" int32_t DoubleObjectToInteger(RuntimeObject *o) {
    return RuntimeFloatToInt(DoubleOf(o));
}
extern "C" uint32_t DoubleObjectToUInteger(RuntimeObject *o) {
    return ThroughInt64(std::trunc(DoubleOf(o)));
}
extern "C" uint8_t DoubleObjectToBoolean(RuntimeObject *o) { return DoubleOf(o) != 0.0; }
extern "C" double DoubleObjectToDouble(RuntimeObject *o) { return DoubleOf(o); }
extern "C" uint32_t DoubleObjectToColor(RuntimeObject *o) {
    return uint32_t(RuntimeFloatToInt(DoubleOf(o)));
}
extern "C" KelpString DoubleObjectToString(RuntimeObject *o) {
    // Exponent form with 17 digits, the mantissa's trailing zeros dropped:
    // 1.5 reads "1.5e+0", so the text gives the double back exactly.
    std::string text = text::NumberToText(DoubleOf(o), text::NumberMode::kExponent, 17);
    const size_t e = text.find('e');
    if (e != std::string::npos) {
        size_t end = e;
        while (end > 0 && text[end - 1] == '0')
            --end;
        if (end > 0 && text[end - 1] == '.')
            --end;
        text.erase(end, e - end);
    }
    return Ascii(text);
}
extern "C" int32_t DoubleObjectHash(RuntimeObject *o) {
    const double v = DoubleOf(o);
    return int32_t(VariantWordHash(&v, 8));
}

// -------------------------------------------------------- Variant(Boolean)

extern "C" int32_t BooleanObjectToInteger(RuntimeObject *o) { return BoolOf(o) ? 1 : 0; }
extern "C" uint8_t BooleanObjectToBoolean(RuntimeObject *o) { return BoolOf(o); }
extern "C" double BooleanObjectToDouble(RuntimeObject *o) { return BoolOf(o) ? 1.0 : 0.0; }
extern "C" uint32_t BooleanObjectToColor(RuntimeObject *o) { return BoolOf(o) ? 0xFFFFFFu : 0; }
extern "C" KelpString BooleanObjectToString(RuntimeObject *o) {
    return Ascii(BoolOf(o) ? "True" : "False");
}
extern "C" int32_t BooleanObjectHash(RuntimeObject *o) {
    return reinterpret_cast<RuntimeVariantBoolean *>(o)->value;
}

// ---------------------------------------------------------- Variant(Color)

extern "C" int32_t ColorObjectToInteger(RuntimeObject *o) { return int32_t(Word(o)); }
extern "C" uint8_t ColorObjectToBoolean(RuntimeObject *o) { return Word(o) != 0; }
extern "C" double ColorObjectToDouble(RuntimeObject *o) { return Word(o); }
extern "C" uint32_t ColorObjectToColor(RuntimeObject *o) { return Word(o); }
extern "C" KelpString ColorObjectToString(RuntimeObject *o) {
    // "&h" and six digits: "&h000000" cut to make room for the hex digits.
    const string hex = string::Adopt(RuntimeHex(int32_t(Word(o))));
    const long keep = 8 - hex.Length();
    return (left(string("&h000000"), keep > 0 ? keep : 0) + hex).ExtractStringStorage();
}
extern "C" int32_t ColorObjectHash(RuntimeObject *o) {
    const uint32_t v = Word(o);
    return int32_t(VariantWordHash(&v, 4));
}
