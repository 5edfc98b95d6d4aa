#pragma once
// DateImp and DateImpUnix: the calendar fields behind a Date object.
//
// Time zones.  The fields are local wall-clock time, as the user reads it.
// TotalSeconds counts the moment itself: seconds since 1 January 1904,
// 00:00:00 in universal time.  Going between the two applies the offset
// the system's zone rules give for that moment (daylight saving included),
// so a TotalSeconds stored in a file or a database names the same moment
// when it is read back under another zone or season, and the difference of
// two TotalSeconds is the time that really passed.  In the universal zone
// the two views coincide and TotalSeconds 0 reads 1 January 1904, 00:00:00.
// A local time that a change to summer time skips is read as the moment
// the same number of seconds past the change; one that the change back
// repeats is read as either of its two moments, whichever the zone rules
// give first.
#include <cstdint>
#include <ctime>

#include "strings/kstring.h"

namespace kelp {

enum DateField : int32_t {
    kDateYear = 0,
    kDateMonth = 1,
    kDateDay = 2,
    kDateHour = 3,
    kDateMinute = 4,
    kDateSecond = 5,
    kDateDayOfWeek = 6,
    kDateDayOfYear = 7,
    kDateWeekOfYear = 8,
};

// The texts of GetText.
enum DateText : int32_t {
    kShortDate = 0,       // "%m/%d/%Y"
    kLongDate = 1,        // "%A, %B %d, %Y"
    kAbbreviatedDate = 2, // "%a, %b %d, %Y"
    kShortTime = 3,       // "%I:%M %p"
    kLongTime = 4,        // "%I:%M:%S %p"
};

class DateImp {
public:
    DateImp() = default;
    DateImp(const DateImp &) = delete;
    DateImp &operator=(const DateImp &) = delete;
    virtual ~DateImp() = default;
    virtual void Normalise() = 0;
    virtual void Initialise() = 0;
    virtual void SetField(int32_t field, int32_t value) = 0;
    virtual int32_t GetField(int32_t field) = 0;
    virtual string GetText(int32_t format) = 0;
    virtual double GetTotalSeconds() = 0;
    virtual void SetTotalSeconds(double seconds) = 0;
    virtual bool ParseDate(const string &text) = 0;
};

class DateImpUnix final : public DateImp {
public:
    // Loads the current time on first use, unless a value is set before.
    void Initialise() override;
    // Wraps month and day into range; the time of day stays as assigned.
    void Normalise() override;
    // A field number outside 0..8 is a failed assertion and changes nothing.
    void SetField(int32_t field, int32_t value) override;
    // A field number outside 0..8 is a failed assertion and reads 0.
    int32_t GetField(int32_t field) override;
    // One of the DateText formats; another number gives the empty text.
    string GetText(int32_t format) override;
    double GetTotalSeconds() override;
    // NaN reads as 0; moments beyond year 1 to 1,000,000 land on its ends.
    void SetTotalSeconds(double seconds) override;
    // Tries the 20 month-first and day-first formats; false leaves the
    // fields as they were.
    bool ParseDate(const string &text) override;

    // Year, month (1..12), day, hour, minute, second together.
    void SetAll(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
                int32_t second);

private:
    int64_t LocalSeconds(); // wall-clock seconds since 1904

    uint8_t mInitialised = 0; // the fields hold a value
    uint8_t mDirty = 0;       // a field was set; Normalise is due
    std::tm mTm{};            // tm_year is the whole year; tm_mon from 0
};

// The system's offset from universal time, in seconds east, at the moment
// `utcSeconds` (seconds since 1904 in universal time), and the universal
// moment of a local wall-clock count.
int64_t ZoneOffsetAt(int64_t utcSeconds);
int64_t UniversalFromLocal(int64_t localSeconds);

} // namespace kelp
