#include "database/record.h"

#include "database/collation.h"
#include "database/db_format.h"

#include <cstring>

namespace kelp::db {

bool IsStorableType(uint8_t t) {
    switch (t) {
    case kSmallInt:
    case kInteger:
    case kText:
    case kFloat:
    case kDouble:
    case kDate:
    case kTime:
    case kBoolean:
    case kBinary:
    case kLongText:
    case kLongBinary: return true;
    default: return false;
    }
}
bool IsTextType(uint8_t t) { return t == kText || t == kBinary; }
bool IsBlobType(uint8_t t) { return t == kLongText || t == kLongBinary; }
bool IsNumericType(uint8_t t) {
    return t == kSmallInt || t == kInteger || t == kFloat || t == kDouble;
}

const FieldValue *Row::Find(uint8_t number) const {
    for (const Field &f : fields)
        if (f.number == number)
            return &f.value;
    return nullptr;
}

void Row::Set(uint8_t number, FieldValue value) {
    for (Field &f : fields)
        if (f.number == number) {
            f.value = std::move(value);
            return;
        }
    fields.push_back({number, std::move(value)});
}

// One field value of `type` at `p`, with `left` bytes to the record's end.
// With `out` null only the width is found.
static bool DecodeField(uint8_t type, const uint8_t *p, uint32_t left, FieldValue *out,
                        uint32_t &width, Error &error) {
    switch (type) {
    case kSmallInt: width = 2; break;
    case kInteger:
    case kFloat:
    case kLongText:
    case kLongBinary: width = 4; break;
    case kDouble: width = 8; break;
    case kDate:
    case kTime: width = 6; break;
    case kBoolean: width = 1; break;
    case kText:
    case kBinary:
        if (left < 4 || Get32(p) > left - 4)
            return error.Damaged("a text field runs past its record");
        width = 4 + Get32(p);
        break;
    default: return error.Damaged("a field has an unknown type code");
    }
    if (width > left)
        return error.Damaged("a field runs past its record");
    if (!out)
        return true;
    FieldValue &v = *out;
    v = FieldValue{};
    v.type = type;
    switch (type) {
    case kSmallInt: v.integer = int16_t(Get16(p)); break;
    case kInteger: v.integer = int32_t(Get32(p)); break;
    case kLongText:
    case kLongBinary: v.integer = Get32(p); break;
    case kBoolean: v.integer = p[0] != 0; break;
    case kFloat: {
        uint32_t bits = Get32(p);
        float x;
        std::memcpy(&x, &bits, 4);
        v.real = x;
        break;
    }
    case kDouble: {
        uint64_t bits = uint64_t(Get32(p)) << 32 | Get32(p + 4);
        std::memcpy(&v.real, &bits, 8);
        break;
    }
    case kDate:
    case kTime:
        for (int i = 0; i < 3; ++i)
            v.parts[i] = Get16(p + 2 * i);
        break;
    default: v.bytes.assign(reinterpret_cast<const char *>(p + 4), width - 4);
    }
    return true;
}

// Calls `visit(number, type, p, left)` for each field head; the visitor
// answers the field's width, or 0 after setting the error.
template <typename Visit>
static bool WalkFields(const uint8_t *rec, uint32_t length, Error &error, Visit visit) {
    if (length < kRowHead)
        return error.Damaged("a row record is too short");
    for (uint32_t at = kRowHead; at < length;) {
        if (length - at < 2)
            return error.Damaged("a field runs past its record");
        uint32_t width = visit(rec[at], rec[at + 1], rec + at + 2, length - at - 2);
        if (!width)
            return false;
        at += 2 + width;
    }
    return true;
}

bool DecodeRow(const uint8_t *rec, uint32_t length, Row &row, Error &error) {
    row.fields.clear();
    if (length >= kRowHead)
        row.id = Get32(rec + kRecordHead);
    return WalkFields(rec, length, error,
                      [&](uint8_t number, uint8_t type, const uint8_t *p, uint32_t left) {
                          Field f{number, {}};
                          uint32_t width = 0;
                          if (!DecodeField(type, p, left, &f.value, width, error))
                              return 0u;
                          row.fields.push_back(std::move(f));
                          return width;
                      });
}

static void AppendValue(std::string &out, const FieldValue &v) {
    switch (v.type) {
    case kSmallInt: Append16(out, uint32_t(v.integer)); break;
    case kInteger:
    case kLongText:
    case kLongBinary: Append32(out, uint32_t(v.integer)); break;
    case kBoolean: out += char(v.integer ? 1 : 0); break;
    case kFloat: {
        float x = float(v.real);
        uint32_t bits;
        std::memcpy(&bits, &x, 4);
        Append32(out, bits);
        break;
    }
    case kDouble: {
        uint64_t bits;
        std::memcpy(&bits, &v.real, 8);
        Append32(out, uint32_t(bits >> 32));
        Append32(out, uint32_t(bits));
        break;
    }
    case kDate:
    case kTime:
        for (uint16_t part : v.parts)
            Append16(out, part);
        break;
    default: Append32(out, uint32_t(v.bytes.size())); out += v.bytes;
    }
}

std::string EncodeRow(const Row &row, uint32_t transaction) {
    std::string out(kRecordHead, '\0');
    Append32(out, row.id);
    for (const Field &f : row.fields) {
        if (f.value.IsNull())
            continue;
        out += char(f.number);
        out += char(f.value.type);
        AppendValue(out, f.value);
    }
    // Lengths past 16 bits are refused by the caller, which knows the limit.
    uint8_t *p = reinterpret_cast<uint8_t *>(out.data());
    Put16(p, uint32_t(out.size() > 0xFFFF ? 0xFFFF : out.size()));
    p[2] = kLive;
    Put24(p + 3, transaction);
    return out;
}

void AppendKeyValue(std::string &key, const FieldValue &v) {
    if (v.IsNull()) {
        key += '\0';
        return;
    }
    key += '\1';
    size_t at = key.size();
    switch (v.type) {
    case kSmallInt:
    case kInteger:
    case kLongText:
    case kLongBinary:
        AppendValue(key, v);
        key[at] = char(key[at] ^ 0x80);
        break;
    case kText:
    case kBinary:
        key += Collate(v.bytes);
        key += '\0';
        break;
    case kFloat:
    case kDouble:
        AppendValue(key, v);
        if (key[at] & 0x80) {
            for (size_t i = at; i < key.size(); ++i)
                key[i] = char(~key[i]);
        } else {
            key[at] = char(key[at] ^ 0x80);
        }
        break;
    default: AppendValue(key, v);
    }
}

std::string DirectoryKey(std::string_view name) {
    std::string key("\1\1", 2);
    key += Collate(name);
    key += '\0';
    return key;
}

std::string RowIdKey(uint32_t id) {
    std::string key(4, '\0');
    for (int i = 0; i < 4; ++i)
        key[i] = char(id >> (8 * i));
    return key;
}

std::string KeyOfRow(const KeySpec &spec, const Row &row) {
    if (spec.kind == KeySpec::kRowId)
        return RowIdKey(row.id);
    std::string key;
    static const FieldValue kMissing;
    for (uint8_t field : spec.fields) {
        const FieldValue *v = row.Find(field);
        AppendKeyValue(key, v ? *v : kMissing);
    }
    return key;
}

bool KeyOfLeafRecord(const KeySpec &spec, const uint8_t *rec, uint32_t length, std::string &key,
                     Error &error) {
    if (spec.kind == KeySpec::kDirectoryName) {
        if (length < kDirectoryHead || Get32(rec + 14) > length - kDirectoryHead)
            return error.Damaged("a directory record is too short");
        key = DirectoryKey({reinterpret_cast<const char *>(rec + kDirectoryHead), Get32(rec + 14)});
        return true;
    }
    if (spec.kind == KeySpec::kRowId) {
        if (length < kRowHead)
            return error.Damaged("a row record is too short");
        key = RowIdKey(Get32(rec + kRecordHead));
        return true;
    }
    // Only the key columns are decoded: this runs for every record a search
    // compares.
    FieldValue values[8];
    const FieldValue *found[8] = {};
    size_t count = spec.fields.size();
    if (count > 8) {
        Row row;
        if (!DecodeRow(rec, length, row, error))
            return false;
        key = KeyOfRow(spec, row);
        return true;
    }
    bool ok = WalkFields(
        rec, length, error, [&](uint8_t number, uint8_t type, const uint8_t *p, uint32_t left) {
            size_t i = 0;
            while (i < count && spec.fields[i] != number)
                ++i;
            uint32_t width = 0;
            if (!DecodeField(type, p, left, i < count ? &values[i] : nullptr, width, error))
                return 0u;
            if (i < count)
                found[i] = &values[i];
            return width;
        });
    if (!ok)
        return false;
    key.clear();
    static const FieldValue kMissing;
    for (size_t i = 0; i < count; ++i)
        AppendKeyValue(key, found[i] ? *found[i] : kMissing);
    return true;
}

int CompareKeys(std::string_view a, std::string_view b) {
    size_t n = a.size() < b.size() ? a.size() : b.size();
    int c = n ? std::memcmp(a.data(), b.data(), n) : 0;
    if (c)
        return c < 0 ? -1 : 1;
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

} // namespace kelp::db
