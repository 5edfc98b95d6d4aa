// Calendar arithmetic and formatting for Date.
#include "dates/calendar.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kelp::calendar {
namespace {

constexpr int32_t kMonthDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
constexpr int64_t kReformDay = 577738; // 15 October 1582, after the 10 days dropped
constexpr int32_t kLastYear = 1000000;

const char *const kWeekdays[7] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                  "Thursday", "Friday", "Saturday"};
const char *const kMonths[12] = {"January",   "February", "March",    "April",
                                 "May",       "June",     "July",     "August",
                                 "September", "October",  "November", "December"};

// Days from 1 January of year 1 to 1 January of `year`, before the reform's
// 10 days are taken off.
int64_t DaysBeforeYear(int32_t year) {
    const int64_t y = year - 1;
    int64_t n = 365 * y + y / 4;
    if (y >= 1583)
        n += -y / 100 + y / 400 + 12;
    return n;
}

} // namespace

bool IsLeapYear(int32_t year) {
    if (year % 4 != 0)
        return false;
    if (year >= 1582 && year % 100 == 0 && year % 400 != 0)
        return false;
    return true;
}

int32_t MonthLength(int32_t month, int32_t year) {
    if (month < 0 || month > 11)
        return 0;
    return month == 1 && IsLeapYear(year) ? 29 : kMonthDays[month];
}

int64_t DayNumber(int32_t year, int32_t month, int32_t day) {
    if (year < 1 || month < 0 || month > 11 || day < 1 || day > MonthLength(month, year))
        return -1;
    int64_t n = DaysBeforeYear(year);
    for (int32_t m = 0; m < month; ++m)
        n += MonthLength(m, year);
    n += day;
    if (n >= kReformDay)
        n -= 10;
    return n;
}

int64_t LastDayNumber() { return DayNumber(kLastYear, 11, 31); }

CalendarDate FromDayNumber(int64_t n) {
    if (n < 1)
        n = 1;
    if (n > LastDayNumber())
        n = LastDayNumber();
    // The estimate is at most a year or two off; the two walks settle it.
    int32_t year = static_cast<int32_t>(n / 365) + 1;
    if (year > kLastYear)
        year = kLastYear;
    while (year > 1 && DayNumber(year, 0, 1) > n)
        --year;
    while (year < kLastYear && DayNumber(year + 1, 0, 1) <= n)
        ++year;
    int32_t month = 0;
    while (month < 11 && DayNumber(year, month + 1, 1) <= n)
        ++month;
    int32_t day = static_cast<int32_t>(n - DayNumber(year, month, 1)) + 1;
    // October 1582 lost the 5th to the 14th: the 5th counted is the 15th.
    if (year == 1582 && month == 9 && day >= 5)
        day += 10;
    return {year, month, day};
}

int32_t Weekday(int64_t n) {
    const int64_t r = ((n % 7) + 5) % 7;
    return static_cast<int32_t>(r < 0 ? r + 7 : r);
}

namespace {

// The work buffer: appends until full, then drops the rest.
class Work {
public:
    void Add(const char *text, size_t n) {
        for (size_t i = 0; i < n && mLength < sizeof mText; ++i)
            mText[mLength++] = text[i];
    }
    void Add(const char *text) { Add(text, std::strlen(text)); }
    void Number(const char *format, long value) {
        char digits[32];
        const int n = std::snprintf(digits, sizeof digits, format, value);
        if (n > 0)
            Add(digits, static_cast<size_t>(n));
    }
    const char *Text() const { return mText; }
    size_t Length() const { return mLength; }

private:
    char mText[1024];
    size_t mLength = 0;
};

int32_t WeekOfYear(const TimeFields &f, bool mondayFirst) {
    int32_t d = f.dayOfYear;
    const int32_t firstWeekday = ((f.weekday - (f.dayOfYear - 1)) % 7 + 7) % 7;
    if (firstWeekday != 0)
        d += firstWeekday - 7;
    int32_t week = d < 1 ? 0 : (d - 1) / 7 + 1;
    if (mondayFirst && f.weekday == 0)
        --week;
    return week;
}

void Format(Work &out, const char *format, const TimeFields &f, int depth) {
    const int32_t weekday = f.weekday >= 0 && f.weekday < 7 ? f.weekday : 0;
    const int32_t month = f.month >= 0 && f.month < 12 ? f.month : 0;
    for (const char *p = format; *p; ++p) {
        if (*p != '%' || p[1] == '\0') {
            out.Add(p, 1);
            continue;
        }
        switch (*++p) {
        case '%': out.Add("%"); break;
        case 'A': out.Add(kWeekdays[weekday]); break;
        case 'a': out.Add(kWeekdays[weekday], 3); break;
        case 'B': out.Add(kMonths[month]); break;
        case 'b': out.Add(kMonths[month], 3); break;
        case 'c': Format(out, "%b %d %H:%M:%S %Y", f, depth + 1); break;
        case 'd': out.Number("%02ld", f.day); break;
        case 'H': out.Number("%02ld", f.hour); break;
        case 'I': out.Number("%02ld", f.hour > 12 ? f.hour - 12 : f.hour); break;
        case 'j': out.Number("%ld", f.dayOfYear); break;
        case 'M': out.Number("%02ld", f.minute); break;
        case 'S': out.Number("%02ld", f.second); break;
        case 'm': out.Number("%02ld", f.month + 1L); break;
        case 'p': out.Add(f.hour < 12 ? "AM" : "PM"); break;
        case 'U': out.Number("%ld", WeekOfYear(f, false)); break;
        case 'W': out.Number("%ld", WeekOfYear(f, true)); break;
        case 'w': out.Number("%ld", weekday); break;
        case 'X': Format(out, "%H:%M:%S", f, depth + 1); break;
        case 'x': Format(out, "%a, %b %d, %Y", f, depth + 1); break;
        case 'Y': out.Number("%ld", f.year); break;
        case 'y':
            if (f.year < 0)
                out.Add("-");
            out.Number("%02ld", std::labs(static_cast<long>(f.year)) % 100);
            break;
        case 'Z': {
            const char *name = std::setlocale(LC_TIME, nullptr);
            out.Add(name && *name ? name : "C");
            break;
        }
        default: out.Add("Error in TimeSprintf() "); break;
        }
    }
}

} // namespace

size_t TimeSprintf(char *buffer, size_t length, const char *format, const TimeFields &fields) {
    Work work;
    Format(work, format ? format : "", fields, 0);
    if (!buffer || work.Length() >= length)
        return 0;
    std::memcpy(buffer, work.Text(), work.Length());
    buffer[work.Length()] = '\0';
    return work.Length();
}

} // namespace kelp::calendar
