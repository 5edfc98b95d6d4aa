#pragma once
// Row records and the keys computed from them.  A row is a row id and the
// fields that have a value, each a field number, a type code and the value;
// a field that is absent is NULL.  Decoding checks every length against the
// record, so a damaged page gives an error, never a read past its end.
#include "database/db_error.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelp::db {

enum FieldType : uint8_t {
    kNull = 0, // no value (never stored)
    kSmallInt = 2,
    kInteger = 3,
    kText = 5,
    kFloat = 6,
    kDouble = 7,
    kDate = 8,
    kTime = 9,
    kTimestamp = 10, // known to the parser, held by no table
    kBoolean = 12,
    kBinary = 14,
    kLongText = 15,
    kLongBinary = 16,
};

// The types a table column may have.
bool IsStorableType(uint8_t type);
bool IsTextType(uint8_t type);    // 5, 14: bytes stored in the row
bool IsBlobType(uint8_t type);    // 15, 16: a BLOB id in the row
bool IsNumericType(uint8_t type); // 2, 3, 6, 7

struct FieldValue {
    uint8_t type = kNull;
    int64_t integer = 0; // 2, 3, 12, and the BLOB id of 15, 16
    double real = 0;     // 6, 7
    std::string bytes;   // 5, 14
    uint16_t parts[3]{}; // 8: year, month, day; 9: hour, minute, second
    bool IsNull() const { return type == kNull; }
};

struct Field {
    uint8_t number;
    FieldValue value;
};

struct Row {
    uint32_t id = 0;
    std::vector<Field> fields; // in record order
    const FieldValue *Find(uint8_t number) const;
    void Set(uint8_t number, FieldValue value);
};

// Parses a whole row record (head included).
bool DecodeRow(const uint8_t *record, uint32_t length, Row &row, Error &error);
// The record's bytes, head included, live in transaction `transaction`.
std::string EncodeRow(const Row &row, uint32_t transaction);

// How a tree orders its records.
struct KeySpec {
    enum Kind { kDirectoryName, kColumns, kRowId } kind = kRowId;
    std::vector<uint8_t> fields; // the key columns' field numbers, in order
};

void AppendKeyValue(std::string &key, const FieldValue &value);
std::string DirectoryKey(std::string_view storageName);
std::string RowIdKey(uint32_t id);
// The key of a leaf record of a tree ordered by `spec`.
bool KeyOfLeafRecord(const KeySpec &spec, const uint8_t *record, uint32_t length, std::string &key,
                     Error &error);
std::string KeyOfRow(const KeySpec &spec, const Row &row);

// Unsigned bytes, shorter first at equality of the common part.
int CompareKeys(std::string_view a, std::string_view b);

} // namespace kelp::db
