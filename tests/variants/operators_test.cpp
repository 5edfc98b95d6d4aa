// Comparison by common kind, arithmetic and its failures, hashing, the
// numeric tests and CStr.
#include "dates/date_kit.h"
#include "support/class_kit.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>

using datekit::Lit;
using datekit::Raised;
using datekit::Ref;
using datekit::Text;

namespace {

using Make = std::function<RuntimeObject *()>;
Make I(int32_t v) {
    return [v] { return intToVariant(v); };
}
Make D(double v) {
    return [v] { return doubleToVariant(v); };
}
Make S(const char *v) {
    return [v] { return stringToVariant(Lit(v)); };
}
Make B(bool v) {
    return [v] { return booleanToVariant(v); };
}
Make C(uint32_t v) {
    return [v] { return colorToVariant(v); };
}
Make Nil() {
    return [] { return nullptr; };
}
Make Plain() {
    return [] {
        static RuntimeClass *c = kelp::test::MakeClass(nullptr, "Plain", sizeof(RuntimeObject));
        return RuntimeNewObject(c);
    };
}
int Sign(int32_t v) { return v < 0 ? -1 : v > 0 ? 1 : 0; }

TEST(VariantCompare, ByTheCommonKindOfTheOperands) {
    datekit::Zone utc("UTC");
    struct Case {
        const char *name;
        Make a, b;
        int sign;
    } cases[] = {
        {"1 = \"1\" as text", I(1), S("1"), 0},
        {"2 < 2.5", I(2), D(2.5), -1},
        {"\"abc\" = \"ABC\"", S("abc"), S("ABC"), 0},
        {"\"10\" < \"9\" as text", S("10"), I(9), -1},
        {"True before False", B(true), B(false), -1},
        {"False after True", B(false), B(true), 1},
        {"True is 1 beside an Integer", B(true), I(0), 1},
        {"Colour against Integer", C(5), I(3), 1},
        {"MinInt < MaxInt", I(INT_MIN), I(INT_MAX), -1},
        {"MaxInt > MinInt", I(INT_MAX), I(INT_MIN), 1},
        {"nil = nil", Nil(), Nil(), 0},
        {"nil against a value", Nil(), I(0), 1},
        {"a value against nil", I(0), Nil(), -1},
        {"object and number have no common kind", Plain(), I(3), 0},
        {"Date against Double by seconds", [] { return kelp::NewDate(1904, 1, 1, 0, 0, 10); },
         D(11.0), -1},
        {"Date against Date", [] { return kelp::NewDate(2000, 1, 1, 0, 0, 0); },
         [] { return kelp::NewDate(1999, 1, 1, 0, 0, 0); }, 1},
    };
    for (const Case &c : cases) {
        Ref a(c.a()), b(c.b());
        EXPECT_EQ(Sign(VariantCompare(a.get(), b.get())), c.sign) << c.name;
        EXPECT_EQ(VariantEqual(a.get(), b.get()) != 0, c.sign == 0) << c.name;
    }
}

using Op = RuntimeObject *(*)(RuntimeObject *, RuntimeObject *);
RuntimeObject *Negate(RuntimeObject *v, RuntimeObject *) { return VariantNegate(v); }
RuntimeObject *Not(RuntimeObject *v, RuntimeObject *) { return VariantNot(v); }

TEST(VariantArithmetic, ResultKindsValuesAndFailures) {
    struct Case {
        const char *name;
        Op op;
        Make a, b;
        int32_t kind;         // of the result
        const char *expected; // its text, or the exception class
    } cases[] = {
        {"2 + 3", VariantAdd, I(2), I(3), 2, "5"},
        {"2 + 0.5", VariantAdd, I(2), D(0.5), 5, "2.5e+0"},
        {"\"a\" + 1", VariantAdd, S("a"), I(1), 8, "a1"},
        {"1 + \"2\"", VariantAdd, I(1), S("2"), 8, "12"},
        {"True + 1", VariantAdd, B(true), I(1), 2, "2"},
        {"MaxInt + 1 wraps", VariantAdd, I(INT_MAX), I(1), 2, "-2147483648"},
        {"colour + colour", VariantAdd, C(1), C(2), 0, "TypeMismatchException"},
        {"nil + 1", VariantAdd, Nil(), I(1), 0, "NilObjectException"},
        {"1 - nil", VariantSubtract, I(1), Nil(), 0, "NilObjectException"},
        {"nil * 1", VariantMultiply, Nil(), I(1), 0, "NilObjectException"},
        {"\"5\" - 2", VariantSubtract, S("5"), I(2), 5, "3e+0"},
        {"6 * 7", VariantMultiply, I(6), I(7), 2, "42"},
        {"7 / 2", VariantDivide, I(7), I(2), 5, "3.5e+0"},
        {"7 \\ 2", VariantIntegerDivide, I(7), I(2), 2, "3"},
        {"-7 \\ 2", VariantIntegerDivide, I(-7), I(2), 2, "-3"},
        {"-7 Mod 2", VariantModulo, I(-7), I(2), 2, "-1"},
        {"7.9 \\ 2 on integers", VariantIntegerDivide, D(7.9), I(2), 2, "3"},
        {"1 \\ 0", VariantIntegerDivide, I(1), I(0), 0, "RuntimeException"},
        {"1 Mod 0", VariantModulo, I(1), I(0), 0, "RuntimeException"},
        {"1 \\ 0.4 truncates to 0", VariantIntegerDivide, I(1), D(0.4), 0, "RuntimeException"},
        {"MinInt \\ -1 wraps", VariantIntegerDivide, I(INT_MIN), I(-1), 2, "-2147483648"},
        {"MinInt Mod -1", VariantModulo, I(INT_MIN), I(-1), 2, "0"},
        {"10 - 2, operands swapped", VariantSubtractRight, I(2), I(10), 2, "8"},
        {"10 \\ 3, operands swapped", VariantIntegerDivideRight, I(3), I(10), 2, "3"},
        {"10 Mod 3, operands swapped", VariantModuloRight, I(3), I(10), 2, "1"},
        {"\"x\" + \"y\", operands swapped", VariantAddRight, S("y"), S("x"), 8, "xy"},
        {"1 / 4, operands swapped", VariantDivideRight, I(4), I(1), 5, "2.5e-01"},
        {"True And False", VariantAnd, B(true), B(false), 11, "False"},
        {"False And an object: not asked", VariantAnd, B(false), Plain(), 11, "False"},
        {"True Or an object: not asked", VariantOr, B(true), Plain(), 11, "True"},
        {"False Or an object", VariantOr, B(false), Plain(), 0, "TypeMismatchException"},
        // The unary forms, which take the first operand.
        {"-5", Negate, I(5), Nil(), 2, "-5"},
        {"-MinInt wraps", Negate, I(INT_MIN), Nil(), 2, "-2147483648"},
        {"-1.5", Negate, D(1.5), Nil(), 5, "-1.5e+0"},
        {"-\"2\" as a Double", Negate, S("2"), Nil(), 5, "-2e+0"},
        {"Not 0", Not, I(0), Nil(), 11, "True"},
        {"Not \"true\"", Not, S("true"), Nil(), 11, "False"},
    };
    for (const Case &c : cases) {
        Ref a(c.a()), b(c.b());
        RuntimeObject *result = nullptr;
        const std::string raised = Raised([&] { result = c.op(a.get(), b.get()); });
        Ref owned(result);
        if (!raised.empty()) {
            EXPECT_EQ(raised, c.expected) << c.name;
            continue;
        }
        EXPECT_EQ(VarType(result), c.kind) << c.name;
        EXPECT_EQ(Text(variantToString(result)), c.expected) << c.name;
    }
}

TEST(VariantArithmetic, DivisionByZeroSaysSoAndTheProgramGoesOn) {
    Ref one(intToVariant(1)), zero(intToVariant(0));
    RuntimeEnterHandlerRegion();
    RuntimeObject *result = VariantModulo(one.get(), zero.get());
    auto *e = reinterpret_cast<RuntimeExceptionObject *>(RuntimeTakeException());
    RuntimeLeaveHandlerRegion();
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(kelp::string::Wrap(e->message).View(), "Division by zero");
    RuntimeUnlockObject(&e->object);
}

TEST(VariantHash, WordHashesAndCaseBlindStrings) {
    struct Case {
        Make v;
        uint32_t expected;
    } cases[] = {
        {I(1), 0x00010001u},
        {I(-1), 0u},
        {I(0x12345678), 0x56781234u ^ 0x12345678u},
        {C(1), 0x00010001u},
        {D(1.0), 0x3FF00000u}, // low word 0 enters twice and cancels
        {B(true), 1u},
        {S("ab"), 65u * 31 + 66},
        {S("AB"), 65u * 31 + 66},
        {S(""), 0u},
        {S("\xe9"), uint32_t(-23)}, // bytes are signed
        {Nil(), 0u},
    };
    for (const Case &c : cases) {
        Ref v(c.v());
        EXPECT_EQ(uint32_t(VariantHash(v.get())), c.expected);
    }
    Ref a(Plain()()), b(Plain()());
    EXPECT_NE(VariantHash(a.get()), VariantHash(b.get()));
}

TEST(VariantNumeric, IsNumericTypeOfNumericAndCStr) {
    struct IsCase {
        Make v;
        bool expected;
    } isCases[] = {
        {Nil(), false},        {I(3), true},       {D(0.5), true},    {B(true), false},
        {S(""), false},        {S("NaN"), true},   {S("inf"), true},  {S("NaN(001)"), true},
        {S("NaN(01)"), false}, {S("1,000"), true}, {S(" 12 "), true}, {S("12a"), false},
        {S("&hFF"), true},     {Plain(), false},   {C(1), false},
    };
    for (const IsCase &c : isCases) {
        Ref v(c.v());
        EXPECT_EQ(RuntimeIsNumeric(v.get()) != 0, c.expected) << Text(variantToString(v.get()));
    }
    struct TypeCase {
        const char *text;
        int32_t expected;
    } typeCases[] = {
        {nullptr, 0}, {"123", 2},  {"2147483647", 2}, {"2147483648", 3}, {"1.5", 3},
        {"1e5", 3},   {"1E-5", 3}, {"1e", 0},         {".5", 3},         {".", 0},
        {"&hFF", 1},  {"&HfG", 0}, {"&b102", 0},      {"&o17", 1},       {"&h", 0},
        {"12x", 0},   {"", 0},     {"-1", 0},         {" 1", 0},
    };
    for (const TypeCase &c : typeCases)
        EXPECT_EQ(RuntimeTypeOfNumeric(c.text), c.expected) << (c.text ? c.text : "null");
    struct CStrCase {
        Make v;
        const char *expected;
    } cstrCases[] = {
        {Nil(), ""}, {I(5), "5"}, {D(1.5), "1.5"}, {S("x"), "x"}, {B(false), "False"},
    };
    for (const CStrCase &c : cstrCases) {
        Ref v(c.v());
        EXPECT_EQ(Text(runCStr(v.get())), c.expected);
    }
}

} // namespace
