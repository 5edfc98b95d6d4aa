/* The runtime's Variant and Dictionary exports, as compiled code calls them.
 *
 * A variant is an object reference; null is the nil variant.  Numbers,
 * strings, booleans and colours are boxed in objects of hidden classes, and
 * any object whose class has Operator_Convert methods converts like them.
 * Arguments are borrowed; returned objects and strings are new references.
 * Failures raise a language exception and return a neutral result:
 * TypeMismatchException for a conversion that can't be made,
 * NilObjectException for a nil operand of +, - and *, RuntimeException
 * "Division by zero" for \ and Mod by 0, KeyNotFoundException and
 * OutOfBoundsException for dictionary look-ups. */
#ifndef KELP_VARIANTS_H
#define KELP_VARIANTS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Boxing: a new box each time.  A null string gives a String box. */
RuntimeObject *intToVariant(int32_t value);
RuntimeObject *doubleToVariant(double value);
RuntimeObject *booleanToVariant(uint8_t value);
RuntimeObject *colorToVariant(uint32_t value);
RuntimeObject *stringToVariant(KelpString value);
/* The same object with a new reference. */
RuntimeObject *DateToVariant(RuntimeObject *date);
RuntimeObject *objectToVariant(RuntimeObject *object);

/* Unboxing; nil gives 0, false, empty, nil. */
int32_t variantToInt(RuntimeObject *v);
double variantToDouble(RuntimeObject *v);
uint8_t variantToBoolean(RuntimeObject *v);
uint32_t variantToColor(RuntimeObject *v);
KelpString variantToString(RuntimeObject *v);
RuntimeObject *variantToObject(RuntimeObject *v);
/* A Date of the value: seconds for numbers, parsed text for strings; nil
 * raises NilObjectException. */
RuntimeObject *VariantToDate(RuntimeObject *v);

/* 0 nil, 2 Integer or UInteger, 5 Double, 7 Date, 8 String, 9 object,
 * 11 Boolean, 16 Color. */
int32_t VarType(RuntimeObject *v);
uint8_t IsNull(RuntimeObject *v);
int32_t VariantHash(RuntimeObject *v);
uint8_t VariantEqual(RuntimeObject *a, RuntimeObject *b);
/* Below, equal to or above 0, by the common kind of the two. */
int32_t VariantCompare(RuntimeObject *a, RuntimeObject *b);

RuntimeObject *VariantAdd(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantAddRight(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantSubtract(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantSubtractRight(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantMultiply(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantDivide(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantDivideRight(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantIntegerDivide(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantIntegerDivideRight(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantModulo(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantModuloRight(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantNegate(RuntimeObject *v);
RuntimeObject *VariantAnd(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantOr(RuntimeObject *a, RuntimeObject *b);
RuntimeObject *VariantNot(RuntimeObject *v);

/* IsNumeric of a variant; the kind of number a C text holds: 0 none, 1 a
 * &h/&o/&b literal, 2 an integer up to 2,147,483,647, 3 any other number. */
uint8_t RuntimeIsNumeric(RuntimeObject *v);
int32_t RuntimeTypeOfNumeric(const char *text);
/* CStr: numbers as Str with the locale's decimal point, the rest as
 * variantToString. */
KelpString runCStr(RuntimeObject *v);

/* Dictionary: initializer and finalizer, then its members. */
void dictionaryConstructor(RuntimeObject *dictionary);
void dictionaryDestructor(RuntimeObject *dictionary);
int32_t dictionaryCount(RuntimeObject *dictionary);
int32_t dictionaryGetBins(RuntimeObject *dictionary, int32_t parameter);
void dictionarySetBins(RuntimeObject *dictionary, int32_t parameter, int32_t count);
RuntimeObject *dictionaryKey(RuntimeObject *dictionary, int32_t index);
RuntimeObject *dictionaryValueGetter(RuntimeObject *dictionary, RuntimeObject *key);
void dictionaryValueSetter(RuntimeObject *dictionary, RuntimeObject *key, RuntimeObject *value);
RuntimeObject *dictionaryValueByIndex(RuntimeObject *dictionary, int32_t index);
uint8_t dictionaryHasKey(RuntimeObject *dictionary, RuntimeObject *key);
RuntimeObject *DictionaryLookup(RuntimeObject *dictionary, RuntimeObject *key,
                                RuntimeObject *defaultValue);
void dictionaryRemove(RuntimeObject *dictionary, RuntimeObject *key);
void dictionaryRemoveAll(RuntimeObject *dictionary);

/* The Collection class: values with optional text keys, indexes from 1.
 * Adding takes a reference to the value and the key; an item handed out is
 * the caller's reference.  An index out of range raises
 * OutOfBoundsException; a key nobody has reads nil and removes nothing; a
 * nil collection raises NilObjectException. */
void collectionAdd(RuntimeObject *self, RuntimeObject *value, KelpString key);
int32_t collectionCount(RuntimeObject *self);
RuntimeObject *collectionIdxItem(RuntimeObject *self, int32_t index);
RuntimeObject *collectionItem(RuntimeObject *self, KelpString key);
void collectionIdxRemove(RuntimeObject *self, int32_t index);
void collectionKeyRemove(RuntimeObject *self, KelpString key);
void collectionDestructor(RuntimeObject *self);

#ifdef __cplusplus
}
#endif

#endif
