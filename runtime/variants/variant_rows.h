#pragma once
// The method rows of the boxing classes: Operator_Convert to each type and
// Operator_Hash, each with the box as only argument.  Strings come back as
// new references.
#include "kelp/records.h"

extern "C" {
void StringObjectFinalizer(RuntimeObject *object);

int32_t IntegerObjectToInteger(RuntimeObject *o);
uint8_t IntegerObjectToBoolean(RuntimeObject *o);
double IntegerObjectToDouble(RuntimeObject *o);
uint32_t IntegerObjectToColor(RuntimeObject *o);
KelpString IntegerObjectToString(RuntimeObject *o);
int32_t IntegerObjectHash(RuntimeObject *o);

int32_t UnsignedIntegerObjectToInteger(RuntimeObject *o);
uint8_t UnsignedIntegerObjectToBoolean(RuntimeObject *o);
double UnsignedIntegerObjectToDouble(RuntimeObject *o);
uint32_t UnsignedIntegerObjectToColor(RuntimeObject *o);
KelpString UnsignedIntegerObjectToString(RuntimeObject *o);
int32_t UnsignedIntegerObjectHash(RuntimeObject *o);

int32_t StringObjectToInteger(RuntimeObject *o);
uint32_t StringObjectToUInteger(RuntimeObject *o);
uint8_t StringObjectToBoolean(RuntimeObject *o);
double StringObjectToDouble(RuntimeObject *o);
uint32_t StringObjectToColor(RuntimeObject *o);
KelpString StringObjectToString(RuntimeObject *o);
int32_t StringObjectHash(RuntimeObject *o);

int32_t DoubleObjectToInteger(RuntimeObject *o);
uint32_t DoubleObjectToUInteger(RuntimeObject *o);
uint8_t DoubleObjectToBoolean(RuntimeObject *o);
double DoubleObjectToDouble(RuntimeObject *o);
uint32_t DoubleObjectToColor(RuntimeObject *o);
KelpString DoubleObjectToString(RuntimeObject *o);
int32_t DoubleObjectHash(RuntimeObject *o);

int32_t BooleanObjectToInteger(RuntimeObject *o);
uint8_t BooleanObjectToBoolean(RuntimeObject *o);
double BooleanObjectToDouble(RuntimeObject *o);
uint32_t BooleanObjectToColor(RuntimeObject *o);
KelpString BooleanObjectToString(RuntimeObject *o);
int32_t BooleanObjectHash(RuntimeObject *o);

int32_t ColorObjectToInteger(RuntimeObject *o);
uint8_t ColorObjectToBoolean(RuntimeObject *o);
double ColorObjectToDouble(RuntimeObject *o);
uint32_t ColorObjectToColor(RuntimeObject *o);
KelpString ColorObjectToString(RuntimeObject *o);
int32_t ColorObjectHash(RuntimeObject *o);
}
