// The file engine: the engine and cursor tables of KELPDatabase, over the
// runtime's own storage and SQL.  A plain SELECT's cursor reads the tables
// as it moves; a sorted or grouped one holds all its rows, so it can also
// move back, to its first and to its last row, and count them.
#include "database_classes/database_object.h"

#include "database/sql_engine.h"
#include "database/sql_value.h"

#include <cstring>
#include <memory>

namespace kelp {
namespace {

struct FileDb {
    db::Storage storage;
};

struct FileCursor {
    FileDb *db = nullptr;
    std::unique_ptr<db::ResultSet> rows; // null when every row is in `all`
    std::vector<db::Values> all;
    size_t at = 0; // row of `all` + 1; 0 before the first
    db::Values current;
    std::vector<db::ResultColumn> columns;
    // The value handed out by columnValue, kept until the next one.
    std::string bytes;
    union {
        int32_t integer;
        float single;
        double real;
        uint16_t parts[3];
        uint8_t boolean;
    } scalar{};
};

FileDb *Db(void *data) { return static_cast<FileDb *>(data); }
FileCursor *Cursor(void *data) { return static_cast<FileCursor *>(data); }
std::string_view View(KelpString s) {
    return s && s->length > 0
               ? std::string_view(reinterpret_cast<const char *>(s->buffer + 1), s->length)
               : std::string_view();
}

// ---- cursor slots ----

void CloseCursor(void *data) { delete Cursor(data); }
int32_t ColumnCount(void *data) { return int32_t(Cursor(data)->columns.size()); }
KelpString ColumnName(void *data, int32_t column) {
    FileCursor *c = Cursor(data);
    if (column < 0 || size_t(column) >= c->columns.size())
        return nullptr;
    return NewText(c->columns[size_t(column)].name);
}
int32_t RowCount(void *data) { return int32_t(Cursor(data)->all.size()); }

void ColumnValue(void *data, int32_t column, void **value, uint8_t *type, int32_t *length) {
    FileCursor *c = Cursor(data);
    *value = nullptr;
    *type = kDBTypeNull;
    *length = 0;
    if (column < 0 || size_t(column) >= c->current.size())
        return;
    const db::FieldValue &v = c->current[size_t(column)];
    *type = v.type;
    switch (v.type) {
    case db::kNull: return;
    case db::kSmallInt:
    case db::kInteger:
        c->scalar.integer = int32_t(v.integer);
        *value = &c->scalar.integer;
        *length = 4;
        return;
    case db::kBoolean:
        c->scalar.boolean = v.integer != 0;
        *value = &c->scalar.boolean;
        *length = 1;
        return;
    case db::kFloat:
        c->scalar.single = float(v.real);
        *value = &c->scalar.single;
        *length = 4;
        return;
    case db::kDouble:
        c->scalar.real = v.real;
        *value = &c->scalar.real;
        *length = 8;
        return;
    case db::kDate:
    case db::kTime:
        std::memcpy(c->scalar.parts, v.parts, sizeof v.parts);
        *value = c->scalar.parts;
        *length = sizeof v.parts;
        return;
    default: // text, binary; a BLOB's content was read with the row
        c->bytes = v.bytes;
        *value = c->bytes.data();
        *length = int32_t(c->bytes.size());
    }
}
void ReleaseValue(void *) {}

uint8_t NextRow(void *data) {
    FileCursor *c = Cursor(data);
    if (!c->rows) {
        if (c->at >= c->all.size()) {
            c->at = c->all.size() + 1;
            return false;
        }
        c->current = c->all[c->at++];
        return true;
    }
    db::Error &error = c->db->storage.LastError();
    if (!c->rows->Next(error))
        return false;
    c->current = c->rows->Row();
    return true;
}
uint8_t MoveTo(FileCursor *c, size_t row) { // row from 1
    if (row < 1 || row > c->all.size())
        return false;
    c->at = row;
    c->current = c->all[row - 1];
    return true;
}
uint8_t FirstRow(void *data) { return MoveTo(Cursor(data), 1); }
uint8_t LastRow(void *data) { return MoveTo(Cursor(data), Cursor(data)->all.size()); }
uint8_t PreviousRow(void *data) {
    FileCursor *c = Cursor(data);
    if (c->at <= 1) {
        c->at = 0;
        return false;
    }
    return MoveTo(c, c->at - 1);
}
int32_t ColumnType(void *data, int32_t column) {
    FileCursor *c = Cursor(data);
    if (column < 0 || size_t(column) >= c->columns.size())
        return -1;
    return c->columns[size_t(column)].type;
}

// The rows of a select are views: a changed or deleted row goes back as an
// UPDATE or DELETE statement the Database writes, so those slots stay empty.
const KELPDatabaseCursorDefinition kStreamCursor = {
    4,           0,           &CloseCursor, &ColumnCount,
    &ColumnName, nullptr,     &ColumnValue, &ReleaseValue,
    &NextRow,    nullptr,     nullptr,      nullptr,
    nullptr,     nullptr,     nullptr,      nullptr,
    nullptr,     &ColumnType,
};
const KELPDatabaseCursorDefinition kHeldCursor = {
    4,           0,           &CloseCursor, &ColumnCount,
    &ColumnName, &RowCount,   &ColumnValue, &ReleaseValue,
    &NextRow,    nullptr,     nullptr,      nullptr,
    nullptr,     &FirstRow,   &LastRow,     &PreviousRow,
    nullptr,     &ColumnType,
};

RuntimeObject *CursorOver(FileDb *db, std::unique_ptr<db::ResultSet> rows, std::string_view sql) {
    auto cursor = std::make_unique<FileCursor>();
    cursor->db = db;
    cursor->columns = rows->Columns();
    const KELPDatabaseCursorDefinition *definition = &kStreamCursor;
    if (!dynamic_cast<db::JoinCursor *>(rows.get())) {
        // Sorted or grouped: the rows were gathered anyway; keep them.
        db::Error &error = db->storage.LastError();
        while (rows->Next(error))
            cursor->all.push_back(rows->Row());
        if (error.Failed())
            return nullptr;
        definition = &kHeldCursor;
    } else {
        cursor->rows = std::move(rows);
    }
    return NewRecordSet(cursor.release(), definition, nullptr, sql);
}

RuntimeObject *RowsCursor(FileDb *db, std::vector<db::ResultColumn> columns,
                          std::vector<db::Values> rows) {
    auto cursor = std::make_unique<FileCursor>();
    cursor->db = db;
    cursor->columns = std::move(columns);
    cursor->all = std::move(rows);
    return NewRecordSet(cursor.release(), &kHeldCursor, nullptr, "");
}

db::FieldValue TextValue(std::string text) {
    db::FieldValue v;
    v.type = db::kText;
    v.bytes = std::move(text);
    return v;
}
db::FieldValue IntegerValue(int64_t n, uint8_t type = db::kInteger) {
    db::FieldValue v;
    v.type = type;
    v.integer = n;
    return v;
}

// ---- engine slots ----

void CloseDatabase(void *data) {
    FileDb *db = Db(data);
    db->storage.Commit();
    db->storage.Close();
    delete db;
}

RuntimeObject *TableSchema(void *data) {
    std::vector<db::Values> rows;
    for (const std::string &name : Db(data)->storage.TableNames())
        rows.push_back({TextValue(name)});
    return RowsCursor(Db(data), {{"TableName", db::kText}}, std::move(rows));
}

RuntimeObject *FieldSchema(void *data, KelpString table) {
    db::Table *t = Db(data)->storage.FindTable(View(table));
    if (!t)
        return nullptr;
    std::vector<db::Values> rows;
    for (const db::Column &c : t->columns)
        rows.push_back({TextValue(c.name), IntegerValue(c.type),
                        IntegerValue(c.primary != 0, db::kBoolean),
                        IntegerValue(c.notNull, db::kBoolean), IntegerValue(c.length)});
    return RowsCursor(Db(data),
                      {{"ColumnName", db::kText},
                       {"FieldType", db::kInteger},
                       {"IsPrimary", db::kBoolean},
                       {"NotNull", db::kBoolean},
                       {"Length", db::kInteger}},
                      std::move(rows));
}

RuntimeObject *Select(void *data, KelpString sql) {
    FileDb *db = Db(data);
    std::unique_ptr<db::ResultSet> rows = db::SqlSelect(db->storage, View(sql));
    return rows ? CursorOver(db, std::move(rows), View(sql)) : nullptr;
}
void Execute(void *data, KelpString sql) { db::SqlExecute(Db(data)->storage, View(sql)); }

void AddRecord(void *data, KelpString table, int32_t count, const KelpString *names,
               const KelpString *values) {
    std::vector<RecordColumn> columns;
    for (int32_t i = 0; i < count; ++i)
        columns.push_back({Text(names[i]), Text(values[i]), kDBTypeText});
    db::SqlExecute(Db(data)->storage, InsertText(View(table), columns));
}

void AddColumn(void *data, KelpString table, KelpString column, int32_t type) {
    db::Column c;
    c.name = Text(column);
    c.type = uint8_t(type);
    if (!db::IsStorableType(c.type)) {
        Db(data)->storage.LastError().Set(db::kUnsupportedType, "Unsupported data type");
        return;
    }
    Db(data)->storage.AddColumn(Text(table), c);
}

int32_t LastErrorCode(void *data) { return Db(data)->storage.LastError().code; }
KelpString LastErrorText(void *data) { return NewText(Db(data)->storage.LastError().message); }
void Commit(void *data) { Db(data)->storage.Commit(); }
void Rollback(void *data) { Db(data)->storage.Rollback(); }

const KELPDatabaseEngineDefinition kFileEngine = {
    .version = 4,
    .flags = 0,
    .closeDatabase = &CloseDatabase,
    .tableSchema = &TableSchema,
    .fieldSchema = &FieldSchema,
    .directSQLSelect = &Select,
    .directSQLExecute = &Execute,
    .createTable = nullptr,
    .addTableRecord = &AddRecord,
    .getTableCursor = nullptr,
    .alterTable = nullptr,
    .addTableColumn = &AddColumn,
    .indexSchema = nullptr,
    .lastErrorCode = &LastErrorCode,
    .lastErrorText = &LastErrorText,
    .commit = &Commit,
    .rollback = &Rollback,
    .getProperty = nullptr,
};

} // namespace

const KELPDatabaseEngineDefinition *FileEngine() { return &kFileEngine; }

void *OpenFileEngine(const std::string &path, bool create, bool readOnly, std::string &error) {
    auto db = std::make_unique<FileDb>();
    bool opened = create ? db->storage.Create(path) : db->storage.Open(path);
    (void)readOnly; // the storage opens read-only by itself when it can't write
    if (!opened) {
        error = db->storage.LastError().message;
        return nullptr;
    }
    return db.release();
}

void SetFileEngineSync(void *engineData, bool sync) {
    if (engineData)
        Db(engineData)->storage.pager().SetSync(sync);
}

} // namespace kelp
