// DateImpUnix: normalising, the seconds since 1904, texts and parsing.
#include "dates/date_imp.h"

#include "dates/calendar.h"

#include "base/fatal_report.h"

#include <cmath>
#include <cstring>

namespace kelp {
namespace {

constexpr const char *kFile = "Common/date";
constexpr int64_t kUnixEpochFrom1904 = 2082844800; // 1970-01-01 in seconds since 1904
constexpr int32_t kYearLimit = 1000000;            // keeps the walks short and in range

// Far beyond any zone table: the zone is taken as universal there.
constexpr int64_t kZoneRange = int64_t(1) << 46;

int32_t Clamp(int64_t value, int32_t low, int32_t high) {
    return value < low ? low : value > high ? high : static_cast<int32_t>(value);
}

} // namespace

int64_t ZoneOffsetAt(int64_t utcSeconds) {
    const int64_t unix = utcSeconds - kUnixEpochFrom1904;
    if (unix < -kZoneRange || unix > kZoneRange)
        return 0;
    tzset(); // a changed TZ counts from the next call on
    const time_t t = static_cast<time_t>(unix);
    std::tm local{};
    if (!localtime_r(&t, &local))
        return 0;
    return local.tm_gmtoff;
}

int64_t UniversalFromLocal(int64_t localSeconds) {
    // The offset at the guess, then at the corrected moment: two looks
    // settle every transition but a skipped hour, which keeps the first.
    const int64_t first = ZoneOffsetAt(localSeconds);
    const int64_t second = ZoneOffsetAt(localSeconds - first);
    return localSeconds - second;
}

void DateImpUnix::Initialise() {
    if (mInitialised)
        return;
    tzset();
    const time_t now = time(nullptr);
    std::tm local{};
    if (localtime_r(&now, &local))
        mTm = local;
    mTm.tm_year += 1900;
    mInitialised = 1;
}

void DateImpUnix::Normalise() {
    if (!mDirty)
        return;
    // Whole years first, so that a huge month or day needs few steps.
    int64_t year = mTm.tm_year, month = mTm.tm_mon, day = mTm.tm_mday;
    year += month / 12;
    month %= 12;
    if (month < 0) {
        month += 12;
        --year;
    }
    year = Clamp(year, -kYearLimit, kYearLimit);
    if ((day > 400 || day < -400) && year >= 1 && year <= kYearLimit) {
        // Far off: go through the day number, then walk the rest.
        const int64_t n =
            calendar::DayNumber(static_cast<int32_t>(year), static_cast<int32_t>(month), 1) + day -
            1;
        const calendar::CalendarDate d = calendar::FromDayNumber(n);
        year = d.year;
        month = d.month;
        day = d.day;
    }
    // The walk of the rule, one month at a time; bounded by the clamp above.
    for (int guard = 0; guard < 1000; ++guard) {
        if (day < 1) {
            if (--month < 0) {
                month = 11;
                --year;
            }
            day += calendar::MonthLength(static_cast<int32_t>(month), static_cast<int32_t>(year));
        } else if (day >
                   calendar::MonthLength(static_cast<int32_t>(month), static_cast<int32_t>(year))) {
            day -= calendar::MonthLength(static_cast<int32_t>(month), static_cast<int32_t>(year));
            if (++month > 11) {
                month = 0;
                ++year;
            }
        } else {
            break;
        }
    }
    mTm.tm_year = Clamp(year, -kYearLimit, kYearLimit);
    mTm.tm_mon = static_cast<int32_t>(month);
    mTm.tm_mday = static_cast<int32_t>(day);
    const int64_t n = calendar::DayNumber(mTm.tm_year, mTm.tm_mon, mTm.tm_mday);
    if (n > 0) {
        mTm.tm_wday = calendar::Weekday(n);
        mTm.tm_yday = static_cast<int32_t>(n - calendar::DayNumber(mTm.tm_year, 0, 1));
    }
    mDirty = 0;
}

void DateImpUnix::SetField(int32_t field, int32_t value) {
    Initialise();
    mDirty = 1;
    switch (field) {
    case kDateYear: mTm.tm_year = value; break;
    case kDateMonth: mTm.tm_mon = Clamp(int64_t(value) - 1, INT32_MIN, INT32_MAX); break;
    case kDateDay: mTm.tm_mday = value; break;
    case kDateHour: mTm.tm_hour = value; break;
    case kDateMinute: mTm.tm_min = value; break;
    case kDateSecond: mTm.tm_sec = value; break;
    case kDateDayOfWeek: mTm.tm_wday = Clamp(int64_t(value) - 1, INT32_MIN, INT32_MAX); break;
    case kDateDayOfYear: mTm.tm_yday = Clamp(int64_t(value) - 1, INT32_MIN, INT32_MAX); break;
    case kDateWeekOfYear: break; // computed, nothing to store
    default: KELP_ASSERT(false, kFile, "field >= 0 && field <= 8"); break;
    }
}

int32_t DateImpUnix::GetField(int32_t field) {
    Initialise();
    mDirty = 1; // weekday and day of year are worked out on every read
    Normalise();
    switch (field) {
    case kDateYear: return mTm.tm_year;
    case kDateMonth: return mTm.tm_mon + 1;
    case kDateDay: return mTm.tm_mday;
    case kDateHour: return mTm.tm_hour;
    case kDateMinute: return mTm.tm_min;
    case kDateSecond: return mTm.tm_sec;
    case kDateDayOfWeek: return mTm.tm_wday + 1;
    case kDateDayOfYear: return mTm.tm_yday + 1;
    case kDateWeekOfYear: return (mTm.tm_yday + 1 + 1) / 7 + 1;
    default: KELP_ASSERT(false, kFile, "field >= 0 && field <= 8"); return 0;
    }
}

string DateImpUnix::GetText(int32_t format) {
    static const char *const kFormats[] = {"%m/%d/%Y", "%A, %B %d, %Y", "%a, %b %d, %Y", "%I:%M %p",
                                           "%I:%M:%S %p"};
    if (format < 0 || format > kLongTime)
        return string();
    Initialise();
    mDirty = 1;
    Normalise();
    const calendar::TimeFields fields{mTm.tm_year, mTm.tm_mon, mTm.tm_mday, mTm.tm_hour,
                                      mTm.tm_min,  mTm.tm_sec, mTm.tm_wday, mTm.tm_yday + 1};
    char buffer[1024];
    const size_t n = calendar::TimeSprintf(buffer, sizeof buffer, kFormats[format], fields);
    return string::FromBytes(buffer, static_cast<long>(n), kSystemDefaultEncoding);
}

int64_t DateImpUnix::LocalSeconds() {
    Initialise();
    Normalise();
    const int64_t n = calendar::DayNumber(mTm.tm_year, mTm.tm_mon, mTm.tm_mday);
    return (n - calendar::kDay1904) * 86400 + int64_t(mTm.tm_hour) * 3600 +
           int64_t(mTm.tm_min) * 60 + mTm.tm_sec;
}

double DateImpUnix::GetTotalSeconds() {
    return static_cast<double>(UniversalFromLocal(LocalSeconds()));
}

void DateImpUnix::SetTotalSeconds(double seconds) {
    const double first = static_cast<double>(calendar::DayNumber(1, 0, 1) - calendar::kDay1904);
    const double last = static_cast<double>(calendar::LastDayNumber() - calendar::kDay1904);
    double whole = std::isnan(seconds) ? 0.0 : std::floor(seconds);
    whole = std::fmax(first * 86400.0, std::fmin(whole, (last + 1) * 86400.0 - 1));
    const int64_t utc = static_cast<int64_t>(whole);
    const int64_t local = utc + ZoneOffsetAt(utc);
    // Days round towards negative infinity: -1 is 23:59:59 the day before.
    int64_t days = local / 86400, rest = local % 86400;
    if (rest < 0) {
        rest += 86400;
        --days;
    }
    const calendar::CalendarDate d = calendar::FromDayNumber(calendar::kDay1904 + days);
    mTm.tm_year = d.year;
    mTm.tm_mon = d.month;
    mTm.tm_mday = d.day;
    mTm.tm_hour = static_cast<int32_t>(rest / 3600);
    mTm.tm_min = static_cast<int32_t>(rest / 60 % 60);
    mTm.tm_sec = static_cast<int32_t>(rest % 60);
    mInitialised = 1;
    mDirty = 1;
}

bool DateImpUnix::ParseDate(const string &text) {
    static const char *const kFormats[20] = {
        "%m/%d/%C%y", "%m/%d/%y",        "%m-%d-%C%y",    "%m-%d-%y",      "%m.%d.%C%y",
        "%m.%d.%y",   "%d%b%C%y",        "%d%b%y",        "%d %b %C%y",    "%d %b %y",
        "%d.%b.%C%y", "%d.%b.%y",        "%b %d, %C%y",   "%b %d, %y",     "%b %d %C%y",
        "%b %d %y",   "%a, %b %d, %C%y", "%a, %b %d, %y", "%a %b %d %C%y", "%a %b %d %y"};
    // ASCII reads the same in the system encoding; only other text is
    // converted (the converter keeps its last source alive, which must not
    // be a literal of an image that goes away before the process does).
    bool ascii = true;
    for (char c : text.View())
        ascii = ascii && static_cast<unsigned char>(c) < 128;
    const string system = ascii ? text : ConvertToSystemEncoding(text);
    const char *source = system.CString();
    // Every attempt writes into the same record, as the C library leaves it.
    std::tm parsed{};
    bool matched = false;
    for (const char *format : kFormats) {
        if (strptime(source, format, &parsed)) {
            matched = true;
            break;
        }
    }
    if (!matched)
        return false;
    mTm = parsed;
    mTm.tm_year += 1900;
    mInitialised = 1;
    mDirty = 1;
    return true;
}

void DateImpUnix::SetAll(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
                         int32_t second) {
    Initialise();
    mTm.tm_year = year;
    mTm.tm_mon = month - 1;
    mTm.tm_mday = day;
    mTm.tm_hour = hour;
    mTm.tm_min = minute;
    mTm.tm_sec = second;
    mDirty = 1;
}

} // namespace kelp
