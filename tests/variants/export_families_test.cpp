// The "Numbers", "Dates" and "Variants" families of the export table bind
// completely: each name finds its row, as an image importing it would.
#include "exports/export_table.h"

#include <gtest/gtest.h>

namespace {

TEST(ExportFamilies, NumbersDatesAndVariantsBindCompletely) {
    const char *const names[] = {
        // Numbers
        "BitwiseAnd", "BitwiseOr", "BitwiseXor", "FPToInt", "IntToFP", "rnd", "RuntimeAbs",
        "RuntimeACos", "RuntimeASin", "RuntimeATan", "RuntimeATan2", "RuntimeCeil", "RuntimeCos",
        "RuntimeExp", "RuntimeFloatToInt", "RuntimeFloatToUInt", "RuntimeFloor",
        "RuntimeIntToFloat", "RuntimeLog", "RuntimeMax", "RuntimeMin", "RuntimePow", "RuntimeRound",
        "RuntimeSign", "RuntimeSin", "RuntimeSqrt", "RuntimeTan", "RuntimeUIntToFloat",
        "SingleToInt",
        // Dates
        "AutoInitDate", "DateCompare", "dateFieldGetter", "dateFieldSetter", "DateFinalizer",
        "dateSQLDateGetter", "dateSQLDateSetter", "dateSQLDateTimeGetter", "dateSQLDateTimeSetter",
        "dateStringGetter", "dateTotalSecondsGetter", "dateTotalSecondsSetter", "DateToVariant",
        // Variants
        "intToVariant", "VariantAdd", "VariantAddRight", "VariantAnd", "VariantCompare",
        "VariantDivide", "VariantDivideRight", "VariantEqual", "VariantHash",
        "VariantIntegerDivide", "VariantIntegerDivideRight", "VariantModulo", "VariantModuloRight",
        "VariantMultiply", "VariantNegate", "VariantNot", "VariantOr", "VariantSubtract",
        "VariantSubtractRight", "variantToBoolean", "variantToColor", "VariantToDate",
        "variantToDouble", "variantToInt", "variantToObject", "variantToString",
        // and the rest of this subsystem's names, listed with other families
        "runCStr", "parseDate", "VarType", "IsNull", "RuntimeIsNumeric", "RuntimeTypeOfNumeric",
        "objectToVariant", "stringToVariant", "booleanToVariant", "colorToVariant",
        "doubleToVariant", "dictionaryConstructor", "dictionaryCount", "dictionaryDestructor",
        "dictionaryGetBins", "dictionaryHasKey", "dictionaryKey", "DictionaryLookup",
        "dictionaryRemove", "dictionaryRemoveAll", "dictionarySetBins", "dictionaryValueByIndex",
        "dictionaryValueGetter", "dictionaryValueSetter"};
    for (const char *name : names) {
        const RelocEntry *row = kelp::FindExport(name);
        ASSERT_NE(row, nullptr) << name;
        EXPECT_NE(row->code, nullptr) << name;
    }
}

} // namespace
