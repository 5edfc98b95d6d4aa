// Dates checked against references the runtime did not write: Python's
// calendar (with the Julian calendar before the reform worked out from the
// Julian day number) and the C library's timegm and mktime.
#include "dates/date_kit.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <vector>

using datekit::Ref;
using datekit::Text;

namespace {

struct Moment {
    int y, m, d, h, mi, s;
};

// Fixed dates around the reform, 1904, 1970 and 2038, then seeded random
// ones from 1400 to 2400.
std::vector<Moment> Moments() {
    std::vector<Moment> list = {
        {1500, 2, 29, 0, 0, 0},   {1582, 10, 4, 23, 59, 59}, {1582, 10, 15, 0, 0, 0},
        {1582, 12, 31, 12, 0, 0}, {1583, 1, 1, 0, 0, 0},     {1600, 2, 29, 6, 7, 8},
        {1700, 2, 28, 1, 2, 3},   {1700, 3, 1, 0, 0, 0},     {1903, 12, 31, 23, 59, 59},
        {1904, 1, 1, 0, 0, 0},    {1904, 2, 29, 0, 0, 1},    {1969, 12, 31, 23, 59, 59},
        {1970, 1, 1, 0, 0, 0},    {2000, 2, 29, 12, 30, 0},  {2038, 1, 19, 3, 14, 7},
        {2038, 1, 19, 3, 14, 8},  {2100, 2, 28, 23, 0, 0},   {2400, 2, 29, 0, 0, 0},
        {1, 1, 1, 0, 0, 0},       {1000, 6, 15, 8, 0, 0}};
    std::mt19937 rng(1582);
    for (int i = 0; i < 300; ++i) {
        Moment t{1400 + int(rng() % 1000), 1 + int(rng() % 12), 1 + int(rng() % 28),
                 int(rng() % 24),          int(rng() % 60),     int(rng() % 60)};
        if (t.y == 1582 && t.m == 10 && t.d > 4 && t.d < 15)
            t.d = 20;
        list.push_back(t);
    }
    return list;
}

// TotalSeconds, weekday (1 is Sunday) and day of year for each line
// "y m d h mi s", by Julian day numbers.
const char *kReference = R"(
import sys, datetime
def jdn(y, m, d):
    if (y, m, d) >= (1582, 10, 15):
        return datetime.date(y, m, d).toordinal() + 1721425
    a = (14 - m) // 12; yy = y + 4800 - a; mm = m + 12 * a - 3
    return d + (153 * mm + 2) // 5 + 365 * yy + yy // 4 - 32083
base = jdn(1904, 1, 1)
for line in sys.stdin:
    y, m, d, h, mi, s = map(int, line.split())
    n = jdn(y, m, d)
    print((n - base) * 86400 + h * 3600 + mi * 60 + s, (n + 1) % 7 + 1, n - jdn(y, 1, 1) + 1)
)";

TEST(DateAgainstPython, TotalSecondsWeekdayAndDayOfYearAcrossTheReform) {
    datekit::Zone utc("UTC");
    const auto moments = Moments();
    std::ostringstream input;
    for (const Moment &t : moments)
        input << t.y << ' ' << t.m << ' ' << t.d << ' ' << t.h << ' ' << t.mi << ' ' << t.s << '\n';
    std::istringstream expected(datekit::RunPython(kReference, input.str()));
    for (const Moment &t : moments) {
        double seconds = 0;
        int weekday = 0, dayOfYear = 0;
        ASSERT_TRUE(expected >> seconds >> weekday >> dayOfYear) << "python gave no line";
        Ref date(kelp::NewDate(t.y, t.m, t.d, t.h, t.mi, t.s));
        SCOPED_TRACE(Text(dateSQLDateTimeGetter(date.get(), 0)));
        EXPECT_EQ(dateTotalSecondsGetter(date.get(), 0), seconds);
        EXPECT_EQ(dateFieldGetter(date.get(), 6), weekday);
        EXPECT_EQ(dateFieldGetter(date.get(), 7), dayOfYear);
        // And back: the seconds give the same fields.
        Ref back(kelp::NewDateWithTotalSeconds(seconds));
        const int fields[6] = {t.y, t.m, t.d, t.h, t.mi, t.s};
        for (int f = 0; f < 6; ++f)
            EXPECT_EQ(dateFieldGetter(back.get(), f), fields[f]) << "field " << f;
    }
}

TEST(DateAgainstPython, TextsMatchStrftimeInTheCLocale) {
    datekit::Zone utc("UTC");
    std::vector<Moment> moments;
    for (const Moment &t : Moments())
        if (t.y >= 1583) // Python's calendar is Gregorian before the reform too
            moments.push_back(t);
    std::ostringstream input;
    for (const Moment &t : moments)
        input << t.y << ' ' << t.m << ' ' << t.d << ' ' << t.h << ' ' << t.mi << ' ' << t.s << '\n';
    const char *script = R"(
import sys, datetime
for line in sys.stdin:
    t = datetime.datetime(*map(int, line.split()))
    print('|'.join(t.strftime(f) for f in
          ['%m/%d/%Y', '%A, %B %d, %Y', '%a, %b %d, %Y', '%I:%M:%S %p']))
)";
    std::istringstream expected(datekit::RunPython(script, input.str()));
    for (const Moment &t : moments) {
        std::string line;
        ASSERT_TRUE(std::getline(expected, line));
        Ref date(kelp::NewDate(t.y, t.m, t.d, t.h, t.mi, t.s));
        std::string ours = Text(dateStringGetter(date.get(), 0)) + "|" +
                           Text(dateStringGetter(date.get(), 1)) + "|" +
                           Text(dateStringGetter(date.get(), 2)) + "|" +
                           Text(dateStringGetter(date.get(), 4));
        // Python writes 12 for the hour 0; this runtime writes 00.
        if (t.h == 0)
            line.replace(line.rfind("|12:") + 1, 2, "00");
        EXPECT_EQ(ours, line);
    }
}

// The C library's calendar: timegm in universal time, mktime in a zone with
// daylight saving, for dates its calendar shares with ours.
TEST(DateAgainstTheCLibrary, TotalSecondsIsTheMomentInEveryZone) {
    const char *zones[] = {"UTC", "America/New_York", "Australia/Lord_Howe", "Asia/Kolkata"};
    for (const char *zone : zones) {
        datekit::Zone z(zone);
        for (const Moment &t : Moments()) {
            if (t.y < 1900 || t.h == 1 || t.h == 2) // skip the hours a change can skip or repeat
                continue;
            std::tm tm{};
            tm.tm_year = t.y - 1900;
            tm.tm_mon = t.m - 1;
            tm.tm_mday = t.d;
            tm.tm_hour = t.h;
            tm.tm_min = t.mi;
            tm.tm_sec = t.s;
            tm.tm_isdst = -1;
            const time_t unix = mktime(&tm);
            Ref date(kelp::NewDate(t.y, t.m, t.d, t.h, t.mi, t.s));
            EXPECT_EQ(dateTotalSecondsGetter(date.get(), 0), double(unix) + 2082844800.0)
                << zone << " " << t.y << "-" << t.m << "-" << t.d << " " << t.h;
        }
    }
}

TEST(DateAgainstTheCLibrary, AStoredTotalSecondsNamesTheSameMomentUnderAnotherZone) {
    double stored = 0;
    {
        datekit::Zone z("America/New_York");
        Ref date(kelp::NewDate(2024, 7, 4, 18, 30, 0)); // summer time, UTC-4
        stored = dateTotalSecondsGetter(date.get(), 0);
    }
    datekit::Zone z("Asia/Tokyo"); // UTC+9: 13 hours later on the clock
    Ref date(kelp::NewDateWithTotalSeconds(stored));
    EXPECT_EQ(Text(dateSQLDateTimeGetter(date.get(), 0)), "2024-07-05 07:30:00");
    EXPECT_EQ(dateTotalSecondsGetter(date.get(), 0), stored);
    EXPECT_EQ(kelp::UnixTimeFromTotalSeconds(stored), 1720132200);
}

} // namespace
