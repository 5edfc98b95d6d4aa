/* The runtime's Date exports, as compiled code calls them.
 *
 * A Date is an object of class "Date" (a RuntimeDateObject).  Returned
 * objects and strings are owned references.  A nil date reads as 0, the
 * empty text or nil and raises NilObjectException; a store to nil does the
 * same.  Failures of the SQL setters raise UnsupportedFormatException. */
#ifndef KELP_DATES_H
#define KELP_DATES_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Initializer and finalizer of Date: the calendar fields, set to now. */
void AutoInitDate(RuntimeObject *date);
void DateFinalizer(RuntimeObject *date);

/* Operator_Compare: nil sorts first; otherwise TotalSeconds decide.
 * -1, 0 or 1. */
int32_t DateCompare(RuntimeObject *a, RuntimeObject *b);

/* Fields 0 Year, 1 Month (from 1), 2 Day, 3 Hour, 4 Minute, 5 Second,
 * 6 DayOfWeek (1 is Sunday), 7 DayOfYear, 8 WeekOfYear. */
int32_t dateFieldGetter(RuntimeObject *date, int32_t field);
void dateFieldSetter(RuntimeObject *date, int32_t field, int32_t value);
/* 0 ShortDate, 1 LongDate, 2 AbbreviatedDate, 3 ShortTime, 4 LongTime. */
KelpString dateStringGetter(RuntimeObject *date, int32_t format);
/* Seconds since 1 January 1904, 00:00:00 universal time; the fields are the
 * local time of that moment. */
double dateTotalSecondsGetter(RuntimeObject *date, int32_t parameter);
void dateTotalSecondsSetter(RuntimeObject *date, int32_t parameter, double seconds);
/* "YYYY-MM-DD" and "YYYY-MM-DD HH:MM:SS". */
KelpString dateSQLDateGetter(RuntimeObject *date, int32_t parameter);
void dateSQLDateSetter(RuntimeObject *date, int32_t parameter, KelpString text);
KelpString dateSQLDateTimeGetter(RuntimeObject *date, int32_t parameter);
void dateSQLDateTimeSetter(RuntimeObject *date, int32_t parameter, KelpString text);

/* ParseDate(text, byref result): true with a new Date in *result (the old
 * one released); false leaves *result alone. */
uint8_t parseDate(KelpString text, RuntimeObject **result);

#ifdef __cplusplus
}
#endif

#endif
