// Unboxing: a variant's value as each type, through the Operator_Convert
// method of its class, a Date's seconds, or a TypeMismatchException.
#include "variants/variant_classes.h"
#include "variants/variant_kind.h"
#include "variants/variant_rows.h"

#include "kelp/dates.h"
#include "kelp/numbers.h"
#include "kelp/objects.h"
#include "kelp/strings.h"
#include "kelp/variants.h"

#include "dates/date_common.h"
#include "exceptions/raise.h"
#include "objects/object_model.h"

#include <unordered_map>

namespace kelp {
namespace {

void RaiseTypeMismatch() { RaiseWithMessage("TypeMismatchException", ""); }

template <typename R> bool CallConversion(RuntimeObject *v, ConvertTarget target, R *out) {
    void *code = FindConversion(v->klass, target);
    if (!code)
        return false;
    *out = CallCompiledCode<R>(code, v);
    return true;
}

} // namespace

int32_t KindOf(RuntimeObject *v) {
    if (!v)
        return kVarNull;
    switch (BoxOf(v)) {
    case Box::kInteger:
    case Box::kUInteger: return kVarInteger;
    case Box::kString: return kVarString;
    case Box::kDouble: return kVarDouble;
    case Box::kBoolean: return kVarBoolean;
    case Box::kColor: return kVarColor;
    case Box::kNone: break;
    }
    static std::unordered_map<RuntimeClass *, int32_t> cache;
    if (auto it = cache.find(v->klass); it != cache.end())
        return it->second;
    // Subclasses of a box can't be made, so only Date needs the Isa test.
    const int32_t kind = IsDate(v) ? kVarDate : kVarObject;
    cache.emplace(v->klass, kind);
    return kind;
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *DateToVariant(RuntimeObject *date) {
    RuntimeLockObject(date);
    return date;
}

extern "C" RuntimeObject *objectToVariant(RuntimeObject *object) {
    RuntimeLockObject(object);
    return object;
}

extern "C" RuntimeObject *variantToObject(RuntimeObject *v) {
    RuntimeLockObject(v);
    return v;
}

extern "C" int32_t variantToInt(RuntimeObject *v) {
    if (!v)
        return 0;
    switch (BoxOf(v)) { // the rows the lookup would find, without the look
    case Box::kInteger: return IntegerObjectToInteger(v);
    case Box::kUInteger: return UnsignedIntegerObjectToInteger(v);
    case Box::kString: return StringObjectToInteger(v);
    case Box::kDouble: return DoubleObjectToInteger(v);
    case Box::kBoolean: return BooleanObjectToInteger(v);
    case Box::kColor: return ColorObjectToInteger(v);
    case Box::kNone: break;
    }
    int32_t result = 0;
    if (CallConversion(v, ConvertTarget::kInteger, &result))
        return result;
    if (IsDate(v))
        return RuntimeFloatToInt(TotalSecondsOf(v));
    RaiseTypeMismatch();
    return 0;
}

extern "C" uint32_t variantToColor(RuntimeObject *v) {
    if (!v)
        return 0;
    switch (BoxOf(v)) {
    case Box::kInteger: return IntegerObjectToColor(v);
    case Box::kUInteger: return UnsignedIntegerObjectToColor(v);
    case Box::kString: return StringObjectToColor(v);
    case Box::kDouble: return DoubleObjectToColor(v);
    case Box::kBoolean: return BooleanObjectToColor(v);
    case Box::kColor: return ColorObjectToColor(v);
    case Box::kNone: break;
    }
    uint32_t result = 0;
    if (CallConversion(v, ConvertTarget::kColor, &result))
        return result;
    if (IsDate(v))
        return uint32_t(RuntimeFloatToInt(TotalSecondsOf(v)));
    RaiseTypeMismatch();
    return 0;
}

extern "C" uint8_t variantToBoolean(RuntimeObject *v) {
    if (!v)
        return 0;
    switch (BoxOf(v)) {
    case Box::kInteger: return IntegerObjectToBoolean(v);
    case Box::kUInteger: return UnsignedIntegerObjectToBoolean(v);
    case Box::kString: return StringObjectToBoolean(v);
    case Box::kDouble: return DoubleObjectToBoolean(v);
    case Box::kBoolean: return BooleanObjectToBoolean(v);
    case Box::kColor: return ColorObjectToBoolean(v);
    case Box::kNone: break;
    }
    uint8_t result = 0;
    if (CallConversion(v, ConvertTarget::kBoolean, &result))
        return result ? 1 : 0;
    if (IsDate(v))
        return TotalSecondsOf(v) != 0.0;
    RaiseTypeMismatch();
    return 0;
}

extern "C" double variantToDouble(RuntimeObject *v) {
    if (!v)
        return 0.0;
    switch (BoxOf(v)) {
    case Box::kInteger: return IntegerObjectToDouble(v);
    case Box::kUInteger: return UnsignedIntegerObjectToDouble(v);
    case Box::kString: return StringObjectToDouble(v);
    case Box::kDouble: return DoubleObjectToDouble(v);
    case Box::kBoolean: return BooleanObjectToDouble(v);
    case Box::kColor: return ColorObjectToDouble(v);
    case Box::kNone: break;
    }
    double result = 0.0;
    if (CallConversion(v, ConvertTarget::kDouble, &result))
        return result;
    if (IsDate(v))
        return TotalSecondsOf(v);
    float single = 0.0f; // a class that converts to Single only
    if (CallConversion(v, ConvertTarget::kSingle, &single))
        return single;
    RaiseTypeMismatch();
    return 0.0;
}

extern "C" KelpString variantToString(RuntimeObject *v) {
    if (!v)
        return nullptr;
    switch (BoxOf(v)) {
    case Box::kInteger: return IntegerObjectToString(v);
    case Box::kUInteger: return UnsignedIntegerObjectToString(v);
    case Box::kString: return StringObjectToString(v);
    case Box::kDouble: return DoubleObjectToString(v);
    case Box::kBoolean: return BooleanObjectToString(v);
    case Box::kColor: return ColorObjectToString(v);
    case Box::kNone: break;
    }
    KelpString result = nullptr;
    if (CallConversion(v, ConvertTarget::kString, &result))
        return result;
    if (IsDate(v))
        return SQLDateTimeOf(v).ExtractStringStorage();
    RaiseTypeMismatch();
    return nullptr;
}

extern "C" RuntimeObject *VariantToDate(RuntimeObject *v) {
    switch (KindOf(v)) {
    case kVarNull: RaiseNilObject(); return nullptr;
    case kVarInteger:
    case kVarBoolean:
    case kVarColor: {
        const int32_t seconds = variantToInt(v);
        return NewDateWithTotalSeconds(seconds < 0 ? seconds + 4294967296.0 : seconds);
    }
    case kVarDouble: return NewDateWithTotalSeconds(variantToDouble(v));
    case kVarDate: RuntimeLockObject(v); return v;
    case kVarString: {
        RuntimeObject *date = nullptr;
        const string text = string::Adopt(variantToString(v));
        if (!parseDate(text.Storage(), &date))
            RaiseTypeMismatch(); // text that is no date: no date to give
        return date;
    }
    default: RaiseTypeMismatch(); return nullptr;
    }
}

extern "C" int32_t VarType(RuntimeObject *v) { return KindOf(v); }

extern "C" uint8_t IsNull(RuntimeObject *v) { return v == nullptr; }
