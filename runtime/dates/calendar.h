#pragma once
// The runtime's own calendar: Julian up to 4 October 1582, Gregorian from
// 15 October 1582 on, days counted from 1 January of year 1 (day 1).  The
// C library's calendar is proleptic Gregorian and knows nothing of 1582, so
// the day arithmetic and the formatting are done here.
#include <cstddef>
#include <cstdint>

namespace kelp::calendar {

// Divisible by 4, and from 1582 on not by 100 unless by 400.
bool IsLeapYear(int32_t year);
// Days of month 0..11 of the year; 0 for a month outside that range.
int32_t MonthLength(int32_t month, int32_t year);

// The day number of a date (month from 0), or -1 for a year below 1, a
// month outside 0..11 or a day outside its month.  1 January 1904 is
// kDay1904; 15 October 1582 follows 4 October directly.
int64_t DayNumber(int32_t year, int32_t month, int32_t day);
constexpr int64_t kDay1904 = 695058;
// The largest day number the inverse accepts: the end of year 1,000,000.
int64_t LastDayNumber();

struct CalendarDate {
    int32_t year;
    int32_t month; // 0..11
    int32_t day;   // 1..31
};
// The inverse of DayNumber.  Numbers below 1 give 1 January of year 1, and
// numbers above LastDayNumber() its date: bad input stays in range.
CalendarDate FromDayNumber(int64_t n);
// 0 is Sunday.
int32_t Weekday(int64_t n);

// The fields TimeSprintf formats, all already normalised except the time.
struct TimeFields {
    int32_t year, month, day; // month from 0
    int32_t hour, minute, second;
    int32_t weekday;   // 0 is Sunday
    int32_t dayOfYear; // 1 is 1 January
};
// The runtime's strftime for the conversions of the Date formats: builds
// the text in a work buffer of 1,024 bytes, copies at most `length` bytes
// (NUL included) to `buffer`, and answers the text length, or 0 when the
// text did not fit.  An unknown conversion writes "Error in TimeSprintf() ".
size_t TimeSprintf(char *buffer, size_t length, const char *format, const TimeFields &fields);

} // namespace kelp::calendar
