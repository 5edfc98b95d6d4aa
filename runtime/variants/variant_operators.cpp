// Comparison, hashing and arithmetic of variants, by the common kind of the
// two operands.
#include "variants/variant_classes.h"
#include "variants/variant_kind.h"
#include "variants/variant_rows.h"

#include "kelp/dates.h"
#include "kelp/objects.h"
#include "kelp/strings.h"
#include "kelp/variants.h"

#include "base/fatal_report.h"
#include "dates/date_common.h"
#include "exceptions/raise.h"
#include "objects/object_model.h"

#include <cstring>

namespace kelp {
namespace {

constexpr const char *kFile = "Common/variant";

// Kinds in table order: 0, 2, 5, 7, 8, 9, 11, 16.
int32_t KindIndex(int32_t kind) {
    switch (kind) {
    case kVarNull: return 0;
    case kVarInteger: return 1;
    case kVarDouble: return 2;
    case kVarDate: return 3;
    case kVarString: return 4;
    case kVarObject: return 5;
    case kVarBoolean: return 6;
    case kVarColor: return 7;
    default: return -1;
    }
}

// The kind both operands are brought to; 0 where there is none.
int32_t CommonKind(int32_t a, int32_t b) {
    static const int32_t kTable[8][8] = {                          //  0  2   5   7   8   9  11  16
                                         {0, 0, 0, 0, 0, 0, 0, 0}, // 0
                                         {0, 2, 5, 5, 8, 0, 2, 2}, // 2
                                         {0, 5, 5, 5, 8, 0, 5, 5}, // 5
                                         {0, 5, 5, 7, 8, 9, 0, 0}, // 7
                                         {0, 8, 8, 8, 8, 0, 8, 8}, // 8
                                         {0, 0, 0, 9, 0, 9, 0, 0}, // 9
                                         {0, 2, 5, 0, 8, 0, 11, 16},  // 11
                                         {0, 2, 5, 0, 8, 0, 16, 16}}; // 16
    KELP_ASSERT(a >= 0 && a <= 16, kFile, "a >= 0 && a <= 16");
    KELP_ASSERT(b >= 0 && b <= 16, kFile, "b >= 0 && b <= 16");
    const int32_t ai = KindIndex(a), bi = KindIndex(b);
    KELP_ASSERT(ai >= 0 && ai <= 7, kFile, "aindex >= 0 && aindex <= 7");
    KELP_ASSERT(bi >= 0 && bi <= 7, kFile, "bindex >= 0 && bindex <= 7");
    if (ai < 0 || bi < 0)
        return kVarNull;
    return kTable[ai][bi];
}

int32_t Common(RuntimeObject *a, RuntimeObject *b) { return CommonKind(KindOf(a), KindOf(b)); }

int32_t ClampToInt32(int64_t difference) {
    return difference < INT32_MIN   ? INT32_MIN
           : difference > INT32_MAX ? INT32_MAX
                                    : static_cast<int32_t>(difference);
}

int32_t Wrap(int64_t value) { return static_cast<int32_t>(static_cast<uint32_t>(value)); }

void RaiseTypeMismatch() { RaiseWithMessage("TypeMismatchException", ""); }

// The integer operators need a right operand other than 0; the language has
// no exception class of its own for that, so the base class says it.
bool CheckDivisor(int32_t divisor) {
    if (divisor != 0)
        return true;
    RaiseWithMessage("RuntimeException", "Division by zero");
    return false;
}

// +, - and * share everything but the operation.
template <typename IntOp, typename DoubleOp>
RuntimeObject *Arithmetic(RuntimeObject *a, RuntimeObject *b, IntOp intOp, DoubleOp doubleOp) {
    if (!a || !b) {
        RaiseNilObject();
        return nullptr;
    }
    if (Common(a, b) == kVarInteger) {
        const int32_t x = variantToInt(a), y = variantToInt(b);
        return intToVariant(Wrap(intOp(int64_t(x), int64_t(y))));
    }
    const double x = variantToDouble(a), y = variantToDouble(b);
    return doubleToVariant(doubleOp(x, y));
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" int32_t VariantHash(RuntimeObject *v) {
    if (!v)
        return 0;
    switch (BoxOf(v)) {
    case Box::kInteger: return IntegerObjectHash(v);
    case Box::kUInteger: return UnsignedIntegerObjectHash(v);
    case Box::kString: return StringObjectHash(v);
    case Box::kDouble: return DoubleObjectHash(v);
    case Box::kBoolean: return BooleanObjectHash(v);
    case Box::kColor: return ColorObjectHash(v);
    case Box::kNone: break;
    }
    if (void *code = FindConversion(v->klass, ConvertTarget::kHash))
        return CallCompiledCode<int32_t>(code, v);
    if (IsDate(v)) {
        const double seconds = TotalSecondsOf(v);
        return int32_t(VariantWordHash(&seconds, 8));
    }
    const auto address = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(v));
    return int32_t(VariantWordHash(&address, 4));
}

extern "C" int32_t VariantCompare(RuntimeObject *a, RuntimeObject *b) {
    switch (Common(a, b)) {
    case kVarNull: return (a == nullptr) - (b == nullptr);
    case kVarInteger:
    case kVarColor: {
        const int64_t x = variantToInt(a);
        return ClampToInt32(x - variantToInt(b));
    }
    case kVarDouble: {
        const double x = variantToDouble(a), y = variantToDouble(b);
        return x < y ? -1 : x > y ? 1 : 0;
    }
    case kVarDate: return DateCompare(a, b);
    case kVarString: {
        if (BoxOf(a) == Box::kString && BoxOf(b) == Box::kString)
            return RuntimeStringCompare(reinterpret_cast<RuntimeVariantString *>(a)->value,
                                        reinterpret_cast<RuntimeVariantString *>(b)->value);
        const string x = string::Adopt(variantToString(a));
        const string y = string::Adopt(variantToString(b));
        return RuntimeStringCompare(x.Storage(), y.Storage());
    }
    case kVarObject: {
        const auto x = reinterpret_cast<intptr_t>(a), y = reinterpret_cast<intptr_t>(b);
        return x < y ? -1 : x > y ? 1 : 0;
    }
    case kVarBoolean: {
        const bool x = variantToBoolean(a), y = variantToBoolean(b);
        return x == y ? 0 : x ? -1 : 1; // True sorts first
    }
    default: RaiseTypeMismatch(); return 0;
    }
}

extern "C" uint8_t VariantEqual(RuntimeObject *a, RuntimeObject *b) {
    return VariantCompare(a, b) == 0;
}

extern "C" RuntimeObject *VariantAdd(RuntimeObject *a, RuntimeObject *b) {
    if (!a || !b) {
        RaiseNilObject();
        return nullptr;
    }
    switch (Common(a, b)) {
    case kVarInteger:
    case kVarDouble:
        return Arithmetic(
            a, b, [](int64_t x, int64_t y) { return x + y; },
            [](double x, double y) { return x + y; });
    case kVarString: {
        const string x = string::Adopt(variantToString(a));
        const string y = string::Adopt(variantToString(b));
        const string joined = string::Adopt(RuntimeAddString(x.Storage(), y.Storage()));
        return stringToVariant(joined.Storage());
    }
    default: RaiseTypeMismatch(); return nullptr;
    }
}

extern "C" RuntimeObject *VariantSubtract(RuntimeObject *a, RuntimeObject *b) {
    return Arithmetic(
        a, b, [](int64_t x, int64_t y) { return x - y; }, [](double x, double y) { return x - y; });
}

extern "C" RuntimeObject *VariantMultiply(RuntimeObject *a, RuntimeObject *b) {
    return Arithmetic(
        a, b, [](int64_t x, int64_t y) { return x * y; }, [](double x, double y) { return x * y; });
}

extern "C" RuntimeObject *VariantDivide(RuntimeObject *a, RuntimeObject *b) {
    const double x = variantToDouble(a);
    return doubleToVariant(x / variantToDouble(b));
}

extern "C" RuntimeObject *VariantIntegerDivide(RuntimeObject *a, RuntimeObject *b) {
    const int32_t x = variantToInt(a), y = variantToInt(b);
    if (!CheckDivisor(y))
        return nullptr;
    return intToVariant(Wrap(int64_t(x) / y)); // MinInt \ -1 wraps, as + and * do
}

extern "C" RuntimeObject *VariantModulo(RuntimeObject *a, RuntimeObject *b) {
    const int32_t x = variantToInt(a), y = variantToInt(b);
    if (!CheckDivisor(y))
        return nullptr;
    return intToVariant(Wrap(int64_t(x) % y));
}

extern "C" RuntimeObject *VariantNegate(RuntimeObject *v) {
    if (KindOf(v) == kVarInteger)
        return intToVariant(Wrap(-int64_t(variantToInt(v))));
    return doubleToVariant(-variantToDouble(v));
}

extern "C" RuntimeObject *VariantAnd(RuntimeObject *a, RuntimeObject *b) {
    return booleanToVariant(variantToBoolean(a) && variantToBoolean(b));
}

extern "C" RuntimeObject *VariantOr(RuntimeObject *a, RuntimeObject *b) {
    return booleanToVariant(variantToBoolean(a) || variantToBoolean(b));
}

extern "C" RuntimeObject *VariantNot(RuntimeObject *v) {
    return booleanToVariant(!variantToBoolean(v));
}

// The Right forms serve compiled code that has the variant on the right.
extern "C" RuntimeObject *VariantAddRight(RuntimeObject *a, RuntimeObject *b) {
    return VariantAdd(b, a);
}
extern "C" RuntimeObject *VariantSubtractRight(RuntimeObject *a, RuntimeObject *b) {
    return VariantSubtract(b, a);
}
extern "C" RuntimeObject *VariantDivideRight(RuntimeObject *a, RuntimeObject *b) {
    return VariantDivide(b, a);
}
extern "C" RuntimeObject *VariantIntegerDivideRight(RuntimeObject *a, RuntimeObject *b) {
    return VariantIntegerDivide(b, a);
}
extern "C" RuntimeObject *VariantModuloRight(RuntimeObject *a, RuntimeObject *b) {
    return VariantModulo(b, a);
}
