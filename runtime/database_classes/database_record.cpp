// DatabaseRecord: named values for InsertRecord, in the order they were
// first set.  Every value is kept as the text the engine will read; setting
// a name again replaces its value.
#include "database_classes/database_object.h"

#include "database/sql_value.h"
#include "dates/date_common.h"
#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "pictures/picture_object.h"

#include "kelp/dates.h"
#include "kelp/objects.h"

#include <charconv>

namespace kelp {
namespace {

std::vector<RecordColumn> *Columns(RuntimeObject *self) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    DatabaseRecordObject *r = RecordOf(self);
    if (!r->columns)
        r->columns = new std::vector<RecordColumn>();
    return r->columns;
}

const RecordColumn *Find(RuntimeObject *self, KelpString name) {
    std::vector<RecordColumn> *columns = Columns(self);
    if (!columns)
        return nullptr;
    std::string wanted = Text(name);
    for (const RecordColumn &c : *columns)
        if (SameName(c.name, wanted))
            return &c;
    return nullptr;
}

std::string Value(RuntimeObject *self, KelpString name) {
    const RecordColumn *c = Find(self, name);
    return c ? c->value : std::string();
}

void Put(RuntimeObject *self, KelpString name, std::string value, int32_t kind) {
    if (Columns(self))
        AddRecordColumn(self, Text(name), std::move(value), kind);
}

} // namespace

void AddRecordColumn(RuntimeObject *record, std::string_view name, std::string value,
                     int32_t kind) {
    std::vector<RecordColumn> *columns = Columns(record);
    for (RecordColumn &c : *columns)
        if (SameName(c.name, name)) {
            c.value = std::move(value);
            c.kind = kind;
            return;
        }
    columns->push_back({std::string(name), std::move(value), kind});
}

RuntimeObject *NewDatabaseRecord() { return NewObjectOfDefinition(DatabaseRecordDefinition()); }

ObjectDefinition *DatabaseRecordDefinition() {
    static const TypeRecord kDateType{kTypeObjectOf, nullptr, nullptr, 0, &DateDefinition};
    static const TypeRecord kPictureType{kTypeObjectOf, nullptr, nullptr, 0, &PictureDefinition};
    static const ParameterRow nameParam[] = {{"Name", &kTypeString}};
    static const ParameterRow indexParam[] = {{"v", &kTypeInteger}};
#define KELP_RECORD_COLUMN(method, type, getter, setter)                                           \
    { method, type, nameParam, 1, KELP_ENTRY(getter), KELP_ENTRY(setter) }
    static const MethodRow methods[] = {
        KELP_RECORD_COLUMN("Column", &kTypeString, getDatabaseRecordColumn,
                           setDatabaseRecordColumn),
        KELP_RECORD_COLUMN("IntegerColumn", &kTypeInteger, getDatabaseRecordIntegerColumn,
                           setDatabaseRecordIntegerColumn),
        KELP_RECORD_COLUMN("DoubleColumn", &kTypeDouble, getDatabaseRecordDoubleColumn,
                           setDatabaseRecordDoubleColumn),
        KELP_RECORD_COLUMN("BooleanColumn", &kTypeBoolean, GetDatabaseRecordBooleanColumn,
                           SetDatabaseRecordBooleanColumn),
        KELP_RECORD_COLUMN("DateColumn", &kDateType, getDatabaseRecordDateColumn,
                           setDatabaseRecordDateColumn),
        KELP_RECORD_COLUMN("BlobColumn", &kTypeString, GetDatabaseRecordBlobColumn,
                           SetDatabaseRecordBlobColumn),
        KELP_RECORD_COLUMN("MacPictColumn", &kPictureType, getDatabaseRecordMacPictColumn,
                           setDatabaseRecordMacPictColumn),
        KELP_RECORD_COLUMN("JPEGColumn", &kPictureType, getDatabaseRecordJPEGColumn,
                           setDatabaseRecordJPEGColumn),
        {"getIndString", &kTypeString, indexParam, 1, KELP_ENTRY(getDatabaseRecordIndString)},
    };
#undef KELP_RECORD_COLUMN
    static const PropertyRow properties[] = {
        {0, "FieldCount", &kTypeInteger, KELP_ENTRY(getDatabaseRecordFieldCount), {}},
    };
    static const ClassDescription description = {
        .name = "DatabaseRecord",
        .instanceSize = sizeof(DatabaseRecordObject),
        .finalizer = KELP_ENTRY(databaseRecordDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" {

void databaseRecordDestructor(RuntimeObject *self) {
    delete RecordOf(self)->columns;
    RecordOf(self)->columns = nullptr;
}

KelpString getDatabaseRecordColumn(RuntimeObject *self, KelpString name) {
    return NewText(Value(self, name));
}
void setDatabaseRecordColumn(RuntimeObject *self, KelpString name, KelpString value) {
    Put(self, name, Text(value), kDBTypeText);
}

int32_t getDatabaseRecordIntegerColumn(RuntimeObject *self, KelpString name) {
    return int32_t(db::ReadDecimal(Value(self, name)));
}
void setDatabaseRecordIntegerColumn(RuntimeObject *self, KelpString name, int32_t value) {
    Put(self, name, std::to_string(value), kDBTypeInteger);
}

double getDatabaseRecordDoubleColumn(RuntimeObject *self, KelpString name) {
    return db::ReadDouble(Value(self, name));
}
void setDatabaseRecordDoubleColumn(RuntimeObject *self, KelpString name, double value) {
    char buffer[64];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    Put(self, name, std::string(buffer, result.ptr), kDBTypeDouble);
}

uint8_t GetDatabaseRecordBooleanColumn(RuntimeObject *self, KelpString name) {
    return SameName(Value(self, name), "true");
}
void SetDatabaseRecordBooleanColumn(RuntimeObject *self, KelpString name, uint8_t value) {
    Put(self, name, value ? "true" : "false", kDBTypeBoolean);
}

RuntimeObject *getDatabaseRecordDateColumn(RuntimeObject *self, KelpString name) {
    std::string text = Value(self, name);
    if (text.empty())
        return nullptr;
    RuntimeObject *date = nullptr;
    KelpString s = NewText(text);
    parseDate(s, &date);
    RuntimeUnlockString(s);
    return date;
}
// The date part alone: a date column reads "year-month-day".
void setDatabaseRecordDateColumn(RuntimeObject *self, KelpString name, RuntimeObject *date) {
    if (!date) {
        RaiseNilObject();
        return;
    }
    Put(self, name, std::string(SQLDateTimeOf(date).View().substr(0, 10)), kDBTypeDate);
}

KelpString GetDatabaseRecordBlobColumn(RuntimeObject *self, KelpString name) {
    return NewText(Value(self, name));
}
void SetDatabaseRecordBlobColumn(RuntimeObject *self, KelpString name, KelpString value) {
    Put(self, name, Text(value), kDBTypeLongBinary);
}

RuntimeObject *getDatabaseRecordMacPictColumn(RuntimeObject *self, KelpString name) {
    std::string bytes = Value(self, name);
    return bytes.empty()
               ? nullptr
               : PictureFromBmp(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
}
void setDatabaseRecordMacPictColumn(RuntimeObject *self, KelpString name, RuntimeObject *picture) {
    Put(self, name, PictureBytes(picture), kDBTypeLongBinary);
}
RuntimeObject *getDatabaseRecordJPEGColumn(RuntimeObject *self, KelpString name) {
    return getDatabaseRecordMacPictColumn(self, name);
}
void setDatabaseRecordJPEGColumn(RuntimeObject *self, KelpString name, RuntimeObject *picture) {
    setDatabaseRecordMacPictColumn(self, name, picture);
}

int32_t getDatabaseRecordFieldCount(RuntimeObject *self, int32_t) {
    std::vector<RecordColumn> *columns = Columns(self);
    return columns ? int32_t(columns->size()) : 0;
}

// The name of the index-th column (from 1), so a program can walk a record.
KelpString getDatabaseRecordIndString(RuntimeObject *self, int32_t index) {
    std::vector<RecordColumn> *columns = Columns(self);
    if (!columns || index < 1 || size_t(index) > columns->size())
        return nullptr;
    return NewText((*columns)[size_t(index) - 1].name);
}

} // extern "C"
