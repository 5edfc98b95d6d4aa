// Every conversion of every box, application classes with their own
// Operator_Convert, Dates as variants, and objects that can't convert.
#include "dates/date_kit.h"
#include "support/class_kit.h"
#include "variants/variant_classes.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>

using datekit::Lit;
using datekit::Raised;
using datekit::Ref;
using datekit::Text;

namespace {

struct Row {
    const char *name;
    std::function<RuntimeObject *()> make;
    int32_t toInt;
    uint32_t toColor;
    bool toBool;
    double toDouble;
    const char *toString;
    int32_t kind;
};

TEST(VariantConversion, EveryBoxToEveryType) {
    const Row rows[] = {
        {"Integer -5", [] { return intToVariant(-5); }, -5, 0xFFFFFFFBu, true, -5.0, "-5", 2},
        {"Integer 0", [] { return intToVariant(0); }, 0, 0, false, 0.0, "0", 2},
        {"UInteger 4e9", [] { return kelp::NewUIntegerVariant(4000000000u); }, -294967296,
         4000000000u, true, 4e9, "4000000000", 2},
        {"String 12.7", [] { return stringToVariant(Lit("12.7")); }, 12, 12, false, 12.7, "12.7",
         8},
        {"String -3.9", [] { return stringToVariant(Lit("-3.9")); }, -3, 0xFFFFFFFDu, false, -3.9,
         "-3.9", 8},
        {"String &cFF8000", [] { return stringToVariant(Lit("&cFF8000")); }, 0, 0xFF8000u, false,
         0.0, "&cFF8000", 8},
        {"String TRUE", [] { return stringToVariant(Lit("TRUE")); }, 0, 0, true, 0.0, "TRUE", 8},
        {"String 1", [] { return stringToVariant(Lit("1")); }, 1, 1, true, 1.0, "1", 8},
        {"String yes", [] { return stringToVariant(Lit("yes")); }, 0, 0, false, 0.0, "yes", 8},
        {"String nil", [] { return stringToVariant(nullptr); }, 0, 0, false, 0.0, "", 8},
        {"Double 1.5", [] { return doubleToVariant(1.5); }, 1, 1, true, 1.5, "1.5e+0", 5},
        {"Double -2.9", [] { return doubleToVariant(-2.9); }, -2, 0xFFFFFFFEu, true, -2.9,
         "-2.8999999999999999e+0", 5},
        {"Double 0", [] { return doubleToVariant(0.0); }, 0, 0, false, 0.0, "0e+0", 5},
        {"Double 1e20", [] { return doubleToVariant(1e20); }, INT_MAX, INT_MAX, true, 1e20, "1e+20",
         5},
        {"Boolean true", [] { return booleanToVariant(1); }, 1, 0xFFFFFFu, true, 1.0, "True", 11},
        {"Boolean false", [] { return booleanToVariant(0); }, 0, 0, false, 0.0, "False", 11},
        {"Color FF8000", [] { return colorToVariant(0xFF8000u); }, 0xFF8000, 0xFF8000u, true,
         16744448.0, "&hFF8000", 16},
        {"Color 0000AB", [] { return colorToVariant(0xABu); }, 0xAB, 0xABu, true, 171.0, "&h0000AB",
         16},
        {"Color 0", [] { return colorToVariant(0); }, 0, 0, false, 0.0, "&h000000", 16},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(r.name);
        Ref v(r.make());
        const std::string raised = Raised([&] {
            EXPECT_EQ(variantToInt(v.get()), r.toInt);
            EXPECT_EQ(variantToColor(v.get()), r.toColor);
            EXPECT_EQ(variantToBoolean(v.get()) != 0, r.toBool);
            EXPECT_EQ(variantToDouble(v.get()), r.toDouble);
            EXPECT_EQ(Text(variantToString(v.get())), r.toString);
            EXPECT_EQ(VarType(v.get()), r.kind);
        });
        EXPECT_EQ(raised, "");
    }
}

// UInteger targets have no export of their own; compiled code reaches them
// through the method rows, as here.
TEST(VariantConversion, UIntegerRowsGoThroughSixtyFourBits) {
    struct Case {
        std::function<RuntimeObject *()> make;
        uint32_t expected;
    } cases[] = {
        {[] { return doubleToVariant(-2.9); }, 0xFFFFFFFEu},
        {[] { return doubleToVariant(5e9); }, uint32_t(5000000000ull)},
        {[] { return stringToVariant(Lit("4294967297")); }, 1u},
        {[] { return intToVariant(-1); }, 0xFFFFFFFFu},
    };
    for (const Case &c : cases) {
        Ref v(c.make());
        void *code = kelp::FindConversion(v.get()->klass, kelp::ConvertTarget::kUInteger);
        ASSERT_NE(code, nullptr);
        EXPECT_EQ(reinterpret_cast<uint32_t (*)(RuntimeObject *)>(code)(v.get()), c.expected);
    }
}

// An application class converts through the rows it declares: Integer and
// String as methods, Single as a direct method (Double widens it).
int32_t gCalls = 0;
int32_t MineToInteger(RuntimeObject *) {
    ++gCalls;
    return 42;
}
float MineToSingle(RuntimeObject *) { return 0.25f; }
KelpString MineToString(RuntimeObject *) { return kelp::string("mine").Release(); }
int32_t MineHash(RuntimeObject *) { return 7; }

RuntimeClass *MineClass() {
    static RuntimeClass *klass = [] {
        RuntimeClass *c = RuntimeNewClass(nullptr, 3, 0, 0, 1, 0);
        c->name = kelp::test::Lit("Mine");
        c->instanceSize = sizeof(RuntimeObject);
        c->methodTable[0] = {reinterpret_cast<void *>(&MineToInteger),
                             kelp::test::Lit("Operator_Convert%i4%o<Mine>")};
        c->methodTable[1] = {reinterpret_cast<void *>(&MineToString),
                             kelp::test::Lit("operator_convert%s%o<Mine>")};
        c->methodTable[2] = {reinterpret_cast<void *>(&MineHash),
                             kelp::test::Lit("Operator_Hash%i4%o<Mine>")};
        c->directMethodTable[0] = {reinterpret_cast<void *>(&MineToSingle),
                                   kelp::test::Lit("Operator_Convert%f4%o<Mine>")};
        return c;
    }();
    return klass;
}

TEST(VariantConversion, ApplicationClassesConvertThroughTheirOwnRows) {
    Ref mine(RuntimeNewObject(MineClass()));
    gCalls = 0;
    EXPECT_EQ(variantToInt(mine.get()), 42);
    EXPECT_EQ(variantToInt(mine.get()), 42);
    EXPECT_EQ(gCalls, 2);
    EXPECT_EQ(Text(variantToString(mine.get())), "mine");
    EXPECT_EQ(variantToDouble(mine.get()), 0.25);
    EXPECT_EQ(VariantHash(mine.get()), 7);
    EXPECT_EQ(VarType(mine.get()), 9);
    EXPECT_EQ(Raised([&] { variantToBoolean(mine.get()); }), "TypeMismatchException");
    EXPECT_EQ(Raised([&] { variantToColor(mine.get()); }), "TypeMismatchException");
}

TEST(VariantConversion, ObjectsWithoutConversionsAndDates) {
    datekit::Zone utc("UTC");
    Ref plain(RuntimeNewObject(kelp::test::MakeClass(nullptr, "Plain", sizeof(RuntimeObject))));
    const std::function<void()> all[] = {[&] { variantToInt(plain.get()); },
                                         [&] { variantToDouble(plain.get()); },
                                         [&] { variantToBoolean(plain.get()); },
                                         [&] { variantToColor(plain.get()); },
                                         [&] { RuntimeUnlockString(variantToString(plain.get())); },
                                         [&] { RuntimeUnlockObject(VariantToDate(plain.get())); }};
    for (const auto &call : all)
        EXPECT_EQ(Raised(call), "TypeMismatchException");
    EXPECT_EQ(VarType(plain.get()), 9);
    EXPECT_EQ(VarType(nullptr), 0);
    EXPECT_TRUE(IsNull(nullptr));
    EXPECT_FALSE(IsNull(plain.get()));

    Ref date(kelp::NewDate(1904, 1, 2, 0, 0, 30));
    EXPECT_EQ(VarType(date.get()), 7);
    EXPECT_EQ(variantToInt(date.get()), 86430);
    EXPECT_EQ(variantToDouble(date.get()), 86430.0);
    EXPECT_TRUE(variantToBoolean(date.get()));
    EXPECT_EQ(Text(variantToString(date.get())), "1904-01-02 00:00:30");
    Ref same(DateToVariant(date.get()));
    EXPECT_EQ(same.get(), date.get());
}

TEST(VariantConversion, VariantToDateByKind) {
    datekit::Zone utc("UTC");
    struct Case {
        std::function<RuntimeObject *()> make;
        const char *expected; // SQLDateTime, or the exception class
    } cases[] = {
        {[] { return intToVariant(86400); }, "1904-01-02 00:00:00"},
        {[] { return intToVariant(-1); }, "2040-02-06 06:28:15"},
        {[] { return doubleToVariant(-1.0); }, "1903-12-31 23:59:59"},
        {[] { return booleanToVariant(1); }, "1904-01-01 00:00:01"},
        {[] { return stringToVariant(Lit("12/25/2004")); }, "2004-12-25 00:00:00"},
        {[] { return stringToVariant(Lit("not a date")); }, "TypeMismatchException"},
        {[] { return nullptr; }, "NilObjectException"},
    };
    for (const Case &c : cases) {
        Ref v(c.make());
        RuntimeObject *date = nullptr;
        const std::string raised = Raised([&] { date = VariantToDate(v.get()); });
        Ref owned(date);
        EXPECT_EQ(date ? Text(dateSQLDateTimeGetter(date, 0)) : raised, c.expected);
    }
}

} // namespace
