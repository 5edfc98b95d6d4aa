#include "database/sql_value.h"

#include "database/collation.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace kelp::db {

namespace {

char Fold(char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; }

bool ReadParts(std::string_view text, char divider, uint16_t parts[3], const int limits[3][2]) {
    size_t at = 0;
    while (at < text.size() && text[at] == ' ')
        ++at;
    for (int i = 0; i < 3; ++i) {
        if (i && (at >= text.size() || text[at++] != divider))
            return false;
        int64_t v = 0;
        size_t digits = 0;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9' && digits < 6) {
            v = v * 10 + (text[at++] - '0');
            ++digits;
        }
        if (!digits || v < limits[i][0] || v > limits[i][1])
            return false;
        parts[i] = uint16_t(v);
    }
    // A time of day after a date, or blanks, may follow.
    return at == text.size() || text[at] == ' ';
}

} // namespace

int64_t ReadDecimal(std::string_view text) {
    size_t at = 0;
    while (at < text.size() && text[at] == ' ')
        ++at;
    bool negative = false;
    if (at < text.size() && (text[at] == '-' || text[at] == '+'))
        negative = text[at++] == '-';
    int64_t v = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at)
        if (v < (int64_t(1) << 60))
            v = v * 10 + (text[at] - '0');
    return negative ? -v : v;
}

double ReadDouble(std::string_view text) {
    std::string copy(text.substr(0, 400));
    return std::strtod(copy.c_str(), nullptr);
}

bool ReadDate(std::string_view text, uint16_t parts[3]) {
    static const int limits[3][2] = {{0, 65535}, {1, 12}, {1, 31}};
    return ReadParts(text, '-', parts, limits);
}

bool ReadTime(std::string_view text, uint16_t parts[3]) {
    static const int limits[3][2] = {{0, 23}, {0, 59}, {0, 59}};
    return ReadParts(text, ':', parts, limits);
}

std::string ValueText(const FieldValue &v) {
    char buffer[64];
    switch (v.type) {
    case kNull: return {};
    case kSmallInt:
    case kInteger:
    case kLongText:
    case kLongBinary:
        if (IsBlobType(v.type) && !v.bytes.empty())
            return v.bytes;
        return std::to_string(v.integer);
    case kBoolean: return v.integer ? "True" : "False";
    case kFloat:
    case kDouble:
        std::snprintf(buffer, sizeof buffer, "%.*g", v.type == kFloat ? 9 : 17, v.real);
        return buffer;
    case kDate:
        std::snprintf(buffer, sizeof buffer, "%04u-%02u-%02u", v.parts[0], v.parts[1], v.parts[2]);
        return buffer;
    case kTime:
        std::snprintf(buffer, sizeof buffer, "%02u:%02u:%02u", v.parts[0], v.parts[1], v.parts[2]);
        return buffer;
    default: return v.bytes;
    }
}

double NumericValue(const FieldValue &v) {
    switch (v.type) {
    case kSmallInt:
    case kInteger:
    case kBoolean: return double(v.integer);
    case kFloat:
    case kDouble: return v.real;
    case kNull: return 0;
    default: return ReadDouble(ValueText(v));
    }
}

int CompareForSort(const FieldValue &a, const FieldValue &b) {
    auto rank = [](const FieldValue &v) {
        if (v.IsNull())
            return 0;
        if (IsNumericType(v.type))
            return 1;
        if (v.type == kText || v.type == kLongText)
            return 2;
        return 3;
    };
    int ra = rank(a), rb = rank(b);
    if (ra != rb)
        return ra < rb ? -1 : 1;
    switch (ra) {
    case 0: return 0;
    case 1: {
        double x = NumericValue(a), y = NumericValue(b);
        if (std::isnan(x) || std::isnan(y))
            return std::isnan(x) - std::isnan(y);
        return x < y ? -1 : x > y;
    }
    case 2: return CompareCollated(a.bytes, b.bytes); // rows carry BLOB text in bytes too
    default:
        if (a.type != b.type)
            return a.type < b.type ? -1 : 1;
        if (a.type == kDate || a.type == kTime) {
            for (int i = 0; i < 3; ++i)
                if (a.parts[i] != b.parts[i])
                    return a.parts[i] < b.parts[i] ? -1 : 1;
            return 0;
        }
        if (a.type == kBoolean)
            return (a.integer > b.integer) - (a.integer < b.integer);
        return ValueText(a).compare(ValueText(b)) < 0 ? -1 : ValueText(a) != ValueText(b);
    }
}

bool Like(std::string_view text, std::string_view pattern) {
    // Greedy with one back-track point: linear for each `%`, never exponential.
    size_t t = 0, p = 0, starP = std::string_view::npos, starT = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '%') {
            starP = p++;
            starT = t;
        } else if (p < pattern.size() && (pattern[p] == '_' || pattern[p] == text[t])) {
            ++t;
            ++p;
        } else if (starP != std::string_view::npos) {
            p = starP + 1;
            t = ++starT;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '%')
        ++p;
    return p == pattern.size();
}

int CompareNoCase(std::string_view a, std::string_view b) {
    size_t n = a.size() < b.size() ? a.size() : b.size();
    for (size_t i = 0; i < n; ++i) {
        auto x = uint8_t(Fold(a[i])), y = uint8_t(Fold(b[i]));
        if (x != y)
            return x < y ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

} // namespace kelp::db
