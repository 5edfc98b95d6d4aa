#pragma once
// The records of the database classes, and what one class needs of another.
// A Database holds its engine's data and the engine's table of functions; a
// RecordSet holds a cursor's data and the cursor's table.  The runtime's own
// file engine and the engines of plug-ins are reached the same way.
#include "kelp/database.h"
#include "kelp/records.h"
#include "kelp/strings.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelp {

struct ObjectDefinition;

struct DatabaseObject {
    RuntimeObject object;
    void *engineData;                           // the engine's own; null when closed
    const KELPDatabaseEngineDefinition *engine; // null until connected
    KelpString source;                          // locked text the engine was opened on
    const uint8_t *resourceData;                // a "DBAS" database not yet loaded
    uint32_t resourceLength;
    int32_t mLastErrorCode; // 0: ask the engine
    KelpString mLastErrorText;
    KelpString databaseName, host, password, userName;
    uint8_t engineLoaded;
};

struct KELPDatabaseObject {
    DatabaseObject base;
    RuntimeObject *databaseFile; // FolderItem, counted
    uint8_t syncCommits;         // commits wait for the disk (the default)
};

struct ColumnCache {
    std::vector<std::string> names;
};

struct RecordSetObject {
    RuntimeObject object;
    void *cursorData; // null once closed
    const KELPDatabaseCursorDefinition *cursor;
    uint8_t eof, bof, inEdit;
    RuntimeObject *owner; // the Database, counted
    KelpString sourceSql;
    ColumnCache *columns; // names, read on first use
    // The row copied by Edit: old and new values, and which were set.
    std::vector<std::string> *oldValues, *newValues;
    std::vector<uint8_t> *oldNull, *changed, *newNull;
};

// The pairs a DatabaseRecord holds, in the order first set.
struct RecordColumn {
    std::string name, value;
    int32_t kind; // a kDBType code
};
struct DatabaseRecordObject {
    RuntimeObject object;
    std::vector<RecordColumn> *columns;
};

ObjectDefinition *DatabaseDefinition();
ObjectDefinition *KELPDatabaseDefinition();
ObjectDefinition *RecordSetDefinition();
ObjectDefinition *DatabaseFieldDefinition();
ObjectDefinition *DatabaseRecordDefinition();
ObjectDefinition *ScrollableCursorDefinition();
ObjectDefinition *DataControlDefinition();
ObjectDefinition *DatabaseQueryDefinition();

inline DatabaseObject *DatabaseOf(RuntimeObject *o) {
    return reinterpret_cast<DatabaseObject *>(o);
}
inline RecordSetObject *RecordSetOf(RuntimeObject *o) {
    return reinterpret_cast<RecordSetObject *>(o);
}
inline DatabaseRecordObject *RecordOf(RuntimeObject *o) {
    return reinterpret_cast<DatabaseRecordObject *>(o);
}
bool IsKELPDatabase(RuntimeObject *o);

// Text in and out of the language's strings.
std::string Text(KelpString s);
KelpString NewText(std::string_view text);
void SetText(KelpString &slot, std::string_view text);

// The open databases and record sets, closed at the end of the run, record
// sets first.
void RegisterOpen(RuntimeObject *databaseOrRecordSet);
void UnregisterOpen(RuntimeObject *databaseOrRecordSet);
// Closes the record sets that `database` owns.
void CloseRecordSetsOf(RuntimeObject *database);
// Runs the shutdown context's work now (for tests of the run-down).
void CloseAllDatabases();

// A new record set on a cursor; the record set owns the cursor from here.
RuntimeObject *NewRecordSet(void *data, const KELPDatabaseCursorDefinition *cursor,
                            RuntimeObject *owner, std::string_view sql);
// What a record set's column holds in its current row (or its edited copy).
struct CellValue {
    uint8_t type = kDBTypeNull;
    std::string bytes; // numbers as the cursor gives them, in machine order
};
CellValue ReadCell(RuntimeObject *recordSet, int32_t column);
// The column's type code, or -1 when the engine doesn't say.
int32_t CellColumnType(RuntimeObject *recordSet, int32_t column);
// Changes the edited copy; null sets NULL.  Ignored without Edit.
void SetCell(RuntimeObject *recordSet, int32_t column, const std::string *value);
std::string ColumnNameOf(RuntimeObject *recordSet, int32_t column);
int32_t ColumnCountOf(RuntimeObject *recordSet);
RuntimeObject *NewDatabaseField(RuntimeObject *recordSet, int32_t column);
// Column names compare without regard to ASCII case.
bool SameName(std::string_view a, std::string_view b);

// A new DatabaseRecord, empty.
RuntimeObject *NewDatabaseRecord();
void AddRecordColumn(RuntimeObject *record, std::string_view name, std::string value, int32_t kind);

// The file engine: its tables, and opening a file or a copy of resource bytes.
const KELPDatabaseEngineDefinition *FileEngine();
// Engine data for the file at `path`, made new or opened; null with the
// reason in `error`.
void *OpenFileEngine(const std::string &path, bool create, bool readOnly, std::string &error);
void SetFileEngineSync(void *engineData, bool sync);
// Engine data for a database kept in a resource under the engine `name`;
// null when the engine is unknown or the bytes are not a database.
void *OpenResourceDatabase(const std::string &name, const uint8_t *data, uint32_t length);
// Hands engine data to a Database (closing what it had) and lists it as open.
bool AttachEngine(RuntimeObject *database, void *data, const KELPDatabaseEngineDefinition *engine);

// The texts a Database sends to an engine that lacks the row slots.
std::string InsertText(std::string_view table, const std::vector<RecordColumn> &columns);
struct ColumnChange {
    std::string column, value;
    bool isNull = false;
};
std::string UpdateText(std::string_view table, const std::vector<ColumnChange> &changes,
                       const std::vector<ColumnChange> &oldRow);
std::string DeleteText(std::string_view table, const std::vector<ColumnChange> &oldRow);
// The first table a SELECT reads, from its text; empty when none is found.
std::string TableOfSelect(std::string_view sql);

// The typed views of a value as the fields give them.
// Pictures kept in columns, as BMP bytes.
std::string PictureBytes(RuntimeObject *picture);
std::string ValueAsText(const void *value, uint8_t type, int32_t length);
double ValueAsDouble(const void *value, uint8_t type, int32_t length);

} // namespace kelp
