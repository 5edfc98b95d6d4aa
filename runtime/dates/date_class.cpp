// The Date class of the language and the DateCommon functions: a thin
// object around its DateImpUnix.
#include "dates/date_common.h"
#include "dates/date_imp.h"

#include "kelp/dates.h"
#include "kelp/objects.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"

#include <cstdio>
#include <new>
#include <string>
#include <vector>

namespace kelp {
namespace {

DateImpUnix *ImpOf(RuntimeObject *date) {
    if (!date) {
        RaiseNilObject();
        return nullptr;
    }
    return static_cast<DateImpUnix *>(reinterpret_cast<RuntimeDateObject *>(date)->imp);
}

// The leading integer of a field: blanks, a sign, digits; 0 without digits.
// Long digit runs saturate instead of overflowing.
int32_t ReadInteger(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+'))
        negative = text[i++] == '-';
    int64_t value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
        if (value < 10000000000)
            value = value * 10 + (text[i] - '0');
    if (negative)
        value = -value;
    return value > INT32_MAX ? INT32_MAX : value < INT32_MIN ? INT32_MIN : int32_t(value);
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> fields;
    size_t start = 0;
    for (;;) {
        const size_t at = text.find(separator, start);
        fields.push_back(text.substr(start, at == std::string_view::npos ? at : at - start));
        if (at == std::string_view::npos)
            return fields;
        start = at + 1;
    }
}

void RaiseFormat(const char *message) { RaiseWithMessage("UnsupportedFormatException", message); }

// "YYYY-MM-DD" into year, month, day; false when it hasn't three fields.
bool ReadSQLDate(std::string_view text, int32_t out[3]) {
    const auto fields = Split(text, '-');
    if (fields.size() != 3)
        return false;
    out[0] = ReadInteger(fields[0]);
    out[1] = ReadInteger(fields[1]);
    out[2] = ReadInteger(fields[2].substr(0, 2));
    return true;
}

// The six fields of "YYYY-MM-DD[ HH:MM:SS]"; false for any other shape.
bool ReadSQLDateTime(std::string_view text, int32_t out[6]) {
    const size_t blank = text.find(' ');
    const std::string_view date = text.substr(0, blank);
    const std::string_view time =
        blank == std::string_view::npos ? std::string_view() : text.substr(blank + 1);
    if (!ReadSQLDate(date, out))
        return false;
    out[3] = out[4] = out[5] = 0;
    if (time.empty())
        return true;
    const auto fields = Split(time, ':');
    if (fields.size() != 3)
        return false;
    for (int i = 0; i < 3; ++i)
        out[3 + i] = ReadInteger(fields[static_cast<size_t>(i)]);
    return true;
}

string Text(const std::string &text) {
    return string::FromBytes(text.data(), static_cast<long>(text.size()), kEncodingASCII);
}

std::string SQLDateText(DateImpUnix *imp) {
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", imp->GetField(kDateYear),
                  imp->GetField(kDateMonth), imp->GetField(kDateDay));
    return text;
}

std::string SQLDateTimeText(DateImpUnix *imp) {
    char text[64];
    std::snprintf(text, sizeof text, " %02d:%02d:%02d", imp->GetField(kDateHour),
                  imp->GetField(kDateMinute), imp->GetField(kDateSecond));
    return SQLDateText(imp) + text;
}

} // namespace

ObjectDefinition *DateDefinition() {
    static const PropertyRow properties[] = {
        {0, "Year", &kTypeInteger, KELP_ENTRY(dateFieldGetter), KELP_ENTRY(dateFieldSetter),
         kDateYear},
        {0, "Month", &kTypeInteger, KELP_ENTRY(dateFieldGetter), KELP_ENTRY(dateFieldSetter),
         kDateMonth},
        {0, "Day", &kTypeInteger, KELP_ENTRY(dateFieldGetter), KELP_ENTRY(dateFieldSetter),
         kDateDay},
        {0, "Hour", &kTypeInteger, KELP_ENTRY(dateFieldGetter), KELP_ENTRY(dateFieldSetter),
         kDateHour},
        {0, "Minute", &kTypeInteger, KELP_ENTRY(dateFieldGetter), KELP_ENTRY(dateFieldSetter),
         kDateMinute},
        {0, "Second", &kTypeInteger, KELP_ENTRY(dateFieldGetter), KELP_ENTRY(dateFieldSetter),
         kDateSecond},
        {0, "DayOfWeek", &kTypeInteger, KELP_ENTRY(dateFieldGetter), {}, kDateDayOfWeek},
        {0, "DayOfYear", &kTypeInteger, KELP_ENTRY(dateFieldGetter), {}, kDateDayOfYear},
        {0, "WeekOfYear", &kTypeInteger, KELP_ENTRY(dateFieldGetter), {}, kDateWeekOfYear},
        {0, "ShortDate", &kTypeString, KELP_ENTRY(dateStringGetter), {}, kShortDate},
        {0, "LongDate", &kTypeString, KELP_ENTRY(dateStringGetter), {}, kLongDate},
        {0, "AbbreviatedDate", &kTypeString, KELP_ENTRY(dateStringGetter), {}, kAbbreviatedDate},
        {0, "ShortTime", &kTypeString, KELP_ENTRY(dateStringGetter), {}, kShortTime},
        {0, "LongTime", &kTypeString, KELP_ENTRY(dateStringGetter), {}, kLongTime},
        {0, "TotalSeconds", &kTypeDouble, KELP_ENTRY(dateTotalSecondsGetter),
         KELP_ENTRY(dateTotalSecondsSetter)},
        {0, "SQLDate", &kTypeString, KELP_ENTRY(dateSQLDateGetter), KELP_ENTRY(dateSQLDateSetter)},
        {0, "SQLDateTime", &kTypeString, KELP_ENTRY(dateSQLDateTimeGetter),
         KELP_ENTRY(dateSQLDateTimeSetter)},
    };
    static const TypeRecord dateType{kTypeObjectOf, nullptr, nullptr, 0, &DateDefinition};
    static const ParameterRow compareParameters[] = {{"other", &dateType}};
    static const MethodRow methods[] = {
        {"Operator_Compare", &kTypeInteger, compareParameters, 1, KELP_ENTRY(DateCompare)},
    };
    static const ClassDescription description = {
        .name = "Date",
        .instanceSize = sizeof(RuntimeDateObject),
        .targetFlags = {1, 0, 0},
        .initializer = KELP_ENTRY(AutoInitDate),
        .finalizer = KELP_ENTRY(DateFinalizer),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

RuntimeClass *DateClass() { return ClassForDefinition(DateDefinition()); }

bool IsDate(RuntimeObject *object) { return object && RuntimeObjectIsa(object, DateClass()); }

RuntimeObject *NewDate(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
                       int32_t second) {
    RuntimeObject *date = NewObjectOfDefinition(DateDefinition());
    DateImpUnix *imp = date ? ImpOf(date) : nullptr;
    if (!imp)
        return date;
    if (year != 0 && month != 0 && day != 0) {
        imp->SetAll(year, month, day, hour, minute, second);
    } else {
        imp->SetField(kDateHour, hour);
        imp->SetField(kDateMinute, minute);
        imp->SetField(kDateSecond, second);
    }
    return date;
}

RuntimeObject *NewDateWithTotalSeconds(double seconds) {
    RuntimeObject *date = NewObjectOfDefinition(DateDefinition());
    if (DateImpUnix *imp = date ? ImpOf(date) : nullptr)
        imp->SetTotalSeconds(seconds);
    return date;
}

RuntimeObject *NewDateFromSQLDateTime(const string &text) {
    int32_t f[6];
    if (!ReadSQLDateTime(text.View(), f)) {
        RaiseFormat("The text is not a date and time of the form YYYY-MM-DD HH:MM:SS");
        return nullptr;
    }
    RuntimeObject *date = NewObjectOfDefinition(DateDefinition());
    if (DateImpUnix *imp = date ? ImpOf(date) : nullptr)
        imp->SetAll(f[0], f[1], f[2], f[3], f[4], f[5]);
    return date;
}

string SQLDateTimeOf(RuntimeObject *date) {
    DateImpUnix *imp = date ? ImpOf(date) : nullptr;
    return imp ? Text(SQLDateTimeText(imp)) : string();
}

double TotalSecondsOf(RuntimeObject *date) {
    DateImpUnix *imp = date ? ImpOf(date) : nullptr;
    return imp ? imp->GetTotalSeconds() : 0.0;
}

double NowTotalSeconds() { return TotalSecondsFromUnixTime(time(nullptr)); }

double TotalSecondsFromUnixTime(int64_t unixSeconds) {
    return static_cast<double>(unixSeconds) + 2082844800.0;
}

int64_t UnixTimeFromTotalSeconds(double totalSeconds) {
    const double unix = totalSeconds - 2082844800.0;
    if (!(unix > -9.0e18)) // NaN too
        return INT64_MIN;
    if (unix > 9.0e18)
        return INT64_MAX;
    return static_cast<int64_t>(unix);
}

} // namespace kelp

using namespace kelp;

extern "C" void AutoInitDate(RuntimeObject *date) {
    if (!date)
        return;
    auto *record = reinterpret_cast<RuntimeDateObject *>(date);
    auto *imp = new (std::nothrow) DateImpUnix;
    if (imp)
        imp->Initialise();
    record->imp = imp;
}

extern "C" void DateFinalizer(RuntimeObject *date) {
    if (!date)
        return;
    auto *record = reinterpret_cast<RuntimeDateObject *>(date);
    delete static_cast<DateImpUnix *>(record->imp);
    record->imp = nullptr;
}

extern "C" int32_t DateCompare(RuntimeObject *a, RuntimeObject *b) {
    if (!a || !b)
        return a ? 1 : b ? -1 : 0;
    const double x = TotalSecondsOf(a), y = TotalSecondsOf(b);
    return x < y ? -1 : x > y ? 1 : 0;
}

extern "C" int32_t dateFieldGetter(RuntimeObject *date, int32_t field) {
    DateImpUnix *imp = ImpOf(date);
    return imp ? imp->GetField(field) : 0;
}

extern "C" void dateFieldSetter(RuntimeObject *date, int32_t field, int32_t value) {
    if (DateImpUnix *imp = ImpOf(date))
        imp->SetField(field, value);
}

extern "C" KelpString dateStringGetter(RuntimeObject *date, int32_t format) {
    DateImpUnix *imp = ImpOf(date);
    return imp ? imp->GetText(format).ExtractStringStorage() : nullptr;
}

extern "C" double dateTotalSecondsGetter(RuntimeObject *date, int32_t) {
    DateImpUnix *imp = ImpOf(date);
    return imp ? imp->GetTotalSeconds() : 0.0;
}

extern "C" void dateTotalSecondsSetter(RuntimeObject *date, int32_t, double seconds) {
    if (DateImpUnix *imp = ImpOf(date))
        imp->SetTotalSeconds(seconds);
}

extern "C" KelpString dateSQLDateGetter(RuntimeObject *date, int32_t) {
    DateImpUnix *imp = ImpOf(date);
    return imp ? Text(SQLDateText(imp)).ExtractStringStorage() : nullptr;
}

extern "C" void dateSQLDateSetter(RuntimeObject *date, int32_t, KelpString text) {
    DateImpUnix *imp = ImpOf(date);
    if (!imp)
        return;
    int32_t f[3];
    if (!ReadSQLDate(string::Wrap(text).View(), f)) {
        RaiseFormat("The text is not a date of the form YYYY-MM-DD");
        return;
    }
    imp->SetField(kDateYear, f[0]);
    imp->SetField(kDateMonth, f[1]);
    imp->SetField(kDateDay, f[2]);
}

extern "C" KelpString dateSQLDateTimeGetter(RuntimeObject *date, int32_t) {
    DateImpUnix *imp = ImpOf(date);
    return imp ? Text(SQLDateTimeText(imp)).ExtractStringStorage() : nullptr;
}

extern "C" void dateSQLDateTimeSetter(RuntimeObject *date, int32_t, KelpString text) {
    DateImpUnix *imp = ImpOf(date);
    if (!imp)
        return;
    int32_t f[6];
    if (!ReadSQLDateTime(string::Wrap(text).View(), f)) {
        RaiseFormat("The text is not a date and time of the form YYYY-MM-DD HH:MM:SS");
        return;
    }
    imp->SetAll(f[0], f[1], f[2], f[3], f[4], f[5]);
}

extern "C" uint8_t parseDate(KelpString text, RuntimeObject **result) {
    RuntimeObject *date = NewObjectOfDefinition(DateDefinition());
    DateImpUnix *imp = date ? ImpOf(date) : nullptr;
    if (!imp || !imp->ParseDate(string::Wrap(text))) {
        RuntimeUnlockObject(date);
        return 0;
    }
    if (!result) { // nowhere to put it: the answer alone
        RuntimeUnlockObject(date);
        return 1;
    }
    RuntimeObject *old = *result;
    *result = date;
    RuntimeUnlockObject(old);
    return 1;
}
