#pragma once
// Values as the SQL dialect reads, writes, compares and sorts them.
#include "database/record.h"

#include <string>
#include <string_view>

namespace kelp::db {

// The decimal reader: an optional sign and the leading digits; anything
// else ends the number ("12abc" is 12, "x" is 0).
int64_t ReadDecimal(std::string_view text);
// The double reader: the longest leading number, 0 when there is none.
double ReadDouble(std::string_view text);
// "year-month-day" and "hour:minute:second", each part a number in range.
bool ReadDate(std::string_view text, uint16_t parts[3]);
bool ReadTime(std::string_view text, uint16_t parts[3]);

// A value as the text a literal would give ("" for NULL).
std::string ValueText(const FieldValue &value);
// A value's numeric reading (text by the double reader, NULL as 0).
double NumericValue(const FieldValue &value);

// The order of the sorter: NULL first, then numbers by value, then texts
// by collation rank, then other types by type code and value.
int CompareForSort(const FieldValue &a, const FieldValue &b);

// `%` any run, `_` one byte, every other byte itself, case counted.
bool Like(std::string_view text, std::string_view pattern);
// Byte order after folding ASCII letters.
int CompareNoCase(std::string_view a, std::string_view b);

} // namespace kelp::db
