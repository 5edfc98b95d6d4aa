#pragma once
// The hidden classes that box numbers, strings, booleans and colours in a
// Variant, and the conversion lookup that every Variant function goes
// through.  A variant is a plain object reference; null is the nil variant.
#include "kelp/records.h"

#include <cstddef>
#include <cstdint>

namespace kelp {

// VarType codes.
enum VariantKind : int32_t {
    kVarNull = 0,
    kVarInteger = 2, // Integer and UInteger
    kVarDouble = 5,
    kVarDate = 7,
    kVarString = 8,
    kVarObject = 9,
    kVarBoolean = 11,
    kVarColor = 16,
};

// Which of our own boxes an object is, by its class; kBoxNone for any other
// object (a Date, an application object) and for null.
enum class Box { kNone, kInteger, kUInteger, kString, kDouble, kBoolean, kColor };
Box BoxOf(RuntimeObject *object);

RuntimeClass *BoxClass(Box box);

// The type "Variant" in signatures of library rows: "o<Variant>".
struct TypeRecord;
const TypeRecord &VariantType();

// The hash of 4 or 8 bytes: h = rotate-left(word[0], 16), then h ^= each
// word from the last to the first, so the first word enters twice.
uint32_t VariantWordHash(const void *bytes, size_t n);
RuntimeObject *NewUIntegerVariant(uint32_t value);

// The targets of Operator_Convert (and the hash method), by type code.
enum class ConvertTarget {
    kInteger,
    kUInteger,
    kBoolean,
    kDouble,
    kColor,
    kString,
    kSingle,
    kHash
};
// The code of the class's method whose signature holds
// "Operator_Convert%<code>%o<" (or "Operator_Hash%i4%o<"): the method rows,
// then the direct method rows.  Cached per class and target; null if none.
void *FindConversion(RuntimeClass *klass, ConvertTarget target);

} // namespace kelp
