// The rules of Date: normalising assigned fields, the calendar reform, the
// texts, parsing, the SQL forms, comparison, and bad input.
#include "dates/date_kit.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

using datekit::Lit;
using datekit::Raised;
using datekit::Ref;
using datekit::Text;

namespace {

std::string Sql(RuntimeObject *date) { return Text(dateSQLDateTimeGetter(date, 0)); }

TEST(DateFields, AssignedFieldsNormaliseAtTheNextRead) {
    datekit::Zone utc("UTC");
    struct Case {
        int start[6];
        int field, value;
        const char *expected;
    } cases[] = {
        {{2004, 5, 10, 8, 0, 0}, 1, 13, "2005-01-10 08:00:00"},
        {{2004, 5, 10, 8, 0, 0}, 1, 0, "2003-12-10 08:00:00"},
        {{2004, 3, 10, 8, 0, 0}, 2, 0, "2004-02-29 08:00:00"},
        {{2003, 3, 10, 8, 0, 0}, 2, 0, "2003-02-28 08:00:00"},
        {{2004, 1, 10, 8, 0, 0}, 2, 32, "2004-02-01 08:00:00"},
        {{2004, 1, 31, 8, 0, 0}, 1, 2, "2004-03-02 08:00:00"},
        {{2004, 1, 10, 8, 0, 0}, 2, 400, "2005-02-03 08:00:00"},
        {{2004, 1, 10, 8, 0, 0}, 2, -400, "2002-11-26 08:00:00"},
        {{1500, 2, 1, 0, 0, 0}, 2, 29, "1500-02-29 00:00:00"},
        {{1700, 2, 1, 0, 0, 0}, 2, 29, "1700-03-01 00:00:00"},
        {{2004, 1, 10, 8, 0, 0}, 3, 25, "2004-01-10 25:00:00"}, // hours are not wrapped
    };
    for (const Case &c : cases) {
        Ref date(
            kelp::NewDate(c.start[0], c.start[1], c.start[2], c.start[3], c.start[4], c.start[5]));
        dateFieldSetter(date.get(), c.field, c.value);
        EXPECT_EQ(Sql(date.get()), c.expected) << "field " << c.field << " = " << c.value;
    }
}

TEST(DateFields, HourBeyondTheDayCountsInTotalSecondsUntilSecondsAreSet) {
    datekit::Zone utc("UTC");
    Ref date(kelp::NewDate(1904, 1, 1, 0, 0, 0));
    dateFieldSetter(date.get(), 3, 25);
    EXPECT_EQ(dateTotalSecondsGetter(date.get(), 0), 25 * 3600.0);
    dateTotalSecondsSetter(date.get(), 0, 25 * 3600.0);
    EXPECT_EQ(Sql(date.get()), "1904-01-02 01:00:00");
}

TEST(DateFields, TheReformAndTheEpoch) {
    datekit::Zone utc("UTC");
    Ref before(kelp::NewDate(1582, 10, 4, 0, 0, 0));
    Ref after(kelp::NewDate(1582, 10, 15, 0, 0, 0));
    EXPECT_EQ(dateTotalSecondsGetter(after.get(), 0) - dateTotalSecondsGetter(before.get(), 0),
              86400.0);
    struct Case {
        double seconds;
        const char *sql, *longDate;
        int weekday;
    } cases[] = {
        {0, "1904-01-01 00:00:00", "Friday, January 01, 1904", 6},
        {-1, "1903-12-31 23:59:59", "Thursday, December 31, 1903", 5},
        {-86400.5, "1903-12-30 23:59:59", "Wednesday, December 30, 1903", 4},
        {2082844800, "1970-01-01 00:00:00", "Thursday, January 01, 1970", 5},
    };
    for (const Case &c : cases) {
        Ref date(kelp::NewDateWithTotalSeconds(c.seconds));
        EXPECT_EQ(Sql(date.get()), c.sql);
        EXPECT_EQ(Text(dateStringGetter(date.get(), 1)), c.longDate);
        EXPECT_EQ(dateFieldGetter(date.get(), 6), c.weekday);
    }
}

TEST(DateTexts, ClockTimesWeeksAndSQLForms) {
    datekit::Zone utc("UTC");
    struct Case {
        int y, m, d, h, mi, s;
        int format; // dateStringGetter, or -1 for SQLDate, -2 WeekOfYear
        const char *expected;
    } cases[] = {
        {2004, 12, 25, 12, 30, 0, 3, "12:30 PM"},
        {2004, 12, 25, 0, 30, 0, 3, "00:30 AM"},
        {2004, 12, 25, 23, 5, 9, 4, "11:05:09 PM"},
        {2004, 12, 25, 0, 0, 0, 0, "12/25/2004"},
        {2004, 12, 25, 0, 0, 0, 2, "Sat, Dec 25, 2004"},
        {5, 3, 7, 0, 0, 0, -1, "0005-03-07"},
        {2004, 1, 1, 0, 0, 0, -2, "1"},
        {2004, 12, 31, 0, 0, 0, -2, "53"},
    };
    for (const Case &c : cases) {
        Ref date(kelp::NewDate(c.y, c.m, c.d, c.h, c.mi, c.s));
        std::string text = c.format >= 0    ? Text(dateStringGetter(date.get(), c.format))
                           : c.format == -1 ? Text(dateSQLDateGetter(date.get(), 0))
                                            : std::to_string(dateFieldGetter(date.get(), 8));
        EXPECT_EQ(text, c.expected);
    }
}

TEST(DateParsing, TheTwentyFormatsAndWhatTheyRefuse) {
    struct Case {
        const char *text;
        const char *expected; // SQLDate, or null for refused
    } cases[] = {
        {"12/25/2004", "2004-12-25"},
        {"12/25/04", "2004-12-25"},
        {"12-25-2004", "2004-12-25"},
        {"12.25.2004", "2004-12-25"},
        {"25Dec2004", "2004-12-25"},
        {"25 Dec 2004", "2004-12-25"},
        {"25.Dec.2004", "2004-12-25"},
        {"Dec 25, 2004", "2004-12-25"},
        {"Dec 25 2004", "2004-12-25"},
        {"Sat, Dec 25, 2004", "2004-12-25"},
        {"Sat Dec 25 2004", "2004-12-25"},
        {"1/2/2003 and more", "2003-01-02"},
        {"2004-12-25", nullptr},
        {"", nullptr},
        {"tomorrow", nullptr},
        {"\xff\xfe\x01", nullptr},
    };
    for (const Case &c : cases) {
        Ref keep(kelp::NewDate(1999, 9, 9, 9, 9, 9));
        RuntimeObject *slot = keep.get();
        RuntimeLockObject(slot);
        const kelp::string text(c.text);
        const bool ok = parseDate(text.Storage(), &slot);
        EXPECT_EQ(ok, c.expected != nullptr) << c.text;
        if (c.expected) {
            EXPECT_NE(slot, keep.get());
            EXPECT_EQ(Text(dateSQLDateGetter(slot, 0)), c.expected) << c.text;
        } else {
            EXPECT_EQ(slot, keep.get()) << "a refused text leaves the result alone";
        }
        RuntimeUnlockObject(slot);
    }
}

TEST(DateSQL, SettersTakeTheirFormsAndRefuseOthers) {
    datekit::Zone utc("UTC");
    struct Case {
        bool withTime;
        const char *text;
        const char *expected; // null: UnsupportedFormatException, date unchanged
    } cases[] = {
        {false, "2004-12-25", "2004-12-25 10:11:12"},
        {false, "2004-12-25T08:00", "2004-12-25 10:11:12"},
        {false, "2004-12", nullptr},
        {false, "2004-12-25-01", nullptr},
        {true, "2004-12-25", "2004-12-25 00:00:00"},
        {true, "2004-02-30 23:59:58", "2004-03-01 23:59:58"},
        {true, "2004-12-25 08:00", nullptr},
        {true, "25/12/2004 08:00:00", nullptr},
        {true, "", nullptr},
        {true, "99999999999999-1-1 0:0:0", "1000000-01-01 00:00:00"},
    };
    for (const Case &c : cases) {
        Ref date(kelp::NewDate(2000, 1, 1, 10, 11, 12));
        const std::string raised = Raised([&] {
            if (c.withTime)
                dateSQLDateTimeSetter(date.get(), 0, Lit(c.text));
            else
                dateSQLDateSetter(date.get(), 0, Lit(c.text));
        });
        EXPECT_EQ(raised, c.expected ? "" : "UnsupportedFormatException") << c.text;
        EXPECT_EQ(Sql(date.get()), c.expected ? c.expected : "2000-01-01 10:11:12") << c.text;
    }
    Ref made(kelp::NewDateFromSQLDateTime(kelp::string("1999-12-31 23:59:59")));
    EXPECT_EQ(kelp::SQLDateTimeOf(made.get()).View(), "1999-12-31 23:59:59");
}

TEST(DateCompareAndNil, NilSortsFirstAndNilDatesRaise) {
    Ref early(kelp::NewDate(2000, 1, 1, 0, 0, 0));
    Ref late(kelp::NewDate(2000, 1, 1, 0, 0, 1));
    EXPECT_EQ(DateCompare(nullptr, nullptr), 0);
    EXPECT_EQ(DateCompare(nullptr, early.get()), -1);
    EXPECT_EQ(DateCompare(early.get(), nullptr), 1);
    EXPECT_EQ(DateCompare(early.get(), late.get()), -1);
    EXPECT_EQ(DateCompare(late.get(), early.get()), 1);
    EXPECT_EQ(DateCompare(late.get(), late.get()), 0);
    EXPECT_EQ(Raised([] { EXPECT_EQ(dateFieldGetter(nullptr, 0), 0); }), "NilObjectException");
    EXPECT_EQ(Raised([] { dateTotalSecondsSetter(nullptr, 0, 1.0); }), "NilObjectException");
}

// Values no calendar holds must end in range, quickly, without a crash.
TEST(DateBadInput, ExtremeValuesStayInRange) {
    datekit::Zone utc("UTC");
    const double seconds[] = {NAN, INFINITY, -INFINITY, 1e300, -1e300, -6e10};
    for (double s : seconds) {
        Ref date(kelp::NewDate(2000, 1, 1, 0, 0, 0));
        dateTotalSecondsSetter(date.get(), 0, s);
        const int year = dateFieldGetter(date.get(), 0);
        EXPECT_GE(year, 1) << s;
        EXPECT_LE(year, 1000000) << s;
    }
    const int fields[][2] = {{2, INT_MAX}, {2, INT_MIN}, {1, INT_MAX}, {1, INT_MIN},
                             {0, INT_MAX}, {0, -5},      {5, INT_MIN}};
    for (const auto &f : fields) {
        Ref date(kelp::NewDate(2000, 1, 1, 0, 0, 0));
        dateFieldSetter(date.get(), f[0], f[1]);
        const int month = dateFieldGetter(date.get(), 1);
        EXPECT_GE(month, 1);
        EXPECT_LE(month, 12);
        EXPECT_FALSE(Text(dateStringGetter(date.get(), 1)).empty());
    }
}

} // namespace
