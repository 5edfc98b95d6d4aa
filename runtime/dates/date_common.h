#pragma once
// DateCommon: how the rest of the runtime makes and reads Date objects.
// Returned objects carry a reference for the caller.  Seconds are counted
// from 1 January 1904, 00:00:00 universal time, as TotalSeconds is.
#include "kelp/records.h"

#include "strings/kstring.h"

#include <cstdint>

namespace kelp {

struct ObjectDefinition;
ObjectDefinition *DateDefinition();
RuntimeClass *DateClass();
// True for an object of class Date or a subclass.
bool IsDate(RuntimeObject *object);

// Year, month and day are set only when all three are not 0 (else the date
// keeps today); hour, minute and second always.  Month counts from 1.
RuntimeObject *NewDate(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
                       int32_t second);
RuntimeObject *NewDateWithTotalSeconds(double seconds);
// A Date from "YYYY-MM-DD[ HH:MM:SS]"; null with UnsupportedFormatException.
RuntimeObject *NewDateFromSQLDateTime(const string &text);
// "YYYY-MM-DD HH:MM:SS"; empty for a nil date.
string SQLDateTimeOf(RuntimeObject *date);
// The date's TotalSeconds; 0 for nil.
double TotalSecondsOf(RuntimeObject *date);

// Now, and the system's seconds since 1970 (file times) both ways.
double NowTotalSeconds();
double TotalSecondsFromUnixTime(int64_t unixSeconds);
int64_t UnixTimeFromTotalSeconds(double totalSeconds);

} // namespace kelp
