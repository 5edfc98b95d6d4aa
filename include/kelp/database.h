/*
 * The database classes: Database and KELPDatabase, record sets and their
 * fields, DatabaseRecord, ScrollableCursor, and the engine and cursor
 * tables through which a Database reaches its engine (the file engine of
 * the runtime, or one a plug-in registers).
 *
 * Failure channel: database errors never raise.  They are left in the
 * Database's ErrorCode and ErrorMessage, and a call that gives an object
 * gives nil.  A nil self raises NilObjectException.  A returned object or
 * string is the caller's reference.
 */
#ifndef KELP_DATABASE_H
#define KELP_DATABASE_H

#include "kelp/records.h"

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Value type codes, as the file format stores them: what a cursor's
 * column value slot answers in its out type. */
enum {
    kDBTypeNull = 0,
    kDBTypeSmallInt = 2,  /* int32_t */
    kDBTypeInteger = 3,   /* int32_t */
    kDBTypeText = 5,      /* bytes */
    kDBTypeFloat = 6,     /* float */
    kDBTypeDouble = 7,    /* double */
    kDBTypeDate = 8,      /* three uint16_t: year, month, day */
    kDBTypeTime = 9,      /* three uint16_t: hour, minute, second */
    kDBTypeBoolean = 12,  /* one byte */
    kDBTypeBinary = 14,   /* bytes */
    kDBTypeLongText = 15, /* bytes */
    kDBTypeLongBinary = 16
};

/* A zero slot means the engine does not offer the operation.  Every slot is
 * a function address: pointer-sized.  Slots that give a cursor give a
 * record set made by KELPdbCursorFromDBCursor (an owned reference). */
typedef struct KELPDatabaseEngineDefinition {
    int32_t version; /* 4 */
    int32_t flags;
    void (*closeDatabase)(void *db);
    RuntimeObject *(*tableSchema)(void *db);
    RuntimeObject *(*fieldSchema)(void *db, KelpString table);
    RuntimeObject *(*directSQLSelect)(void *db, KelpString sql);
    void (*directSQLExecute)(void *db, KelpString sql);
    void (*createTable)(void *db, KelpString name, KelpString columnsText);
    /* names[i] takes values[i]; `count` pairs. */
    void (*addTableRecord)(void *db, KelpString table, int32_t count, const KelpString *names,
                           const KelpString *values);
    RuntimeObject *(*getTableCursor)(void *db, KelpString table, KelpString predicate);
    void (*alterTable)(void *db, KelpString table, KelpString text);
    void (*addTableColumn)(void *db, KelpString table, KelpString column, int32_t type);
    RuntimeObject *(*indexSchema)(void *db, KelpString table);
    int32_t (*lastErrorCode)(void *db);
    KelpString (*lastErrorText)(void *db); /* owned */
    void (*commit)(void *db);
    void (*rollback)(void *db);
    KelpString (*getProperty)(void *db, KelpString name); /* owned */
} KELPDatabaseEngineDefinition;

typedef struct KELPDatabaseCursorDefinition {
    int32_t version; /* 4 */
    int32_t flags;
    void (*closeCursor)(void *cursor);
    int32_t (*columnCount)(void *cursor);
    KelpString (*columnName)(void *cursor, int32_t column); /* owned; from 0 */
    int32_t (*rowCount)(void *cursor);
    /* The current row's value: *value stays valid until releaseValue or
     * the next move; a NULL gives kDBTypeNull. */
    void (*columnValue)(void *cursor, int32_t column, void **value, uint8_t *type, int32_t *length);
    void (*releaseValue)(void *cursor);
    uint8_t (*nextRow)(void *cursor); /* false at the end */
    void (*deleteRow)(void *cursor);
    void *unused10;
    /* The columns in `columns` (from 0) take values[i]; a null value is NULL. */
    void (*updateRow)(void *cursor, int32_t count, const int32_t *columns,
                      const KelpString *values);
    void (*updateRowWithKey)(void *cursor, int32_t count, const int32_t *columns,
                             const KelpString *values, KelpString key);
    /* Row access: only cursors that hold all their rows offer these. */
    uint8_t (*firstRow)(void *cursor);
    uint8_t (*lastRow)(void *cursor);
    uint8_t (*previousRow)(void *cursor);
    void *unused16;
    int32_t (*columnType)(void *cursor, int32_t column);
} KELPDatabaseCursorDefinition;

#ifdef __cplusplus
static_assert(offsetof(KELPDatabaseEngineDefinition, closeDatabase) == 8, "engine slot 2");
static_assert(offsetof(KELPDatabaseEngineDefinition, commit) == 8 + 13 * sizeof(void *),
              "engine slot 15");
static_assert(offsetof(KELPDatabaseEngineDefinition, getProperty) == 8 + 15 * sizeof(void *),
              "engine slot 17");
static_assert(offsetof(KELPDatabaseCursorDefinition, nextRow) == 8 + 6 * sizeof(void *),
              "cursor slot 8");
static_assert(offsetof(KELPDatabaseCursorDefinition, columnType) == 8 + 15 * sizeof(void *),
              "cursor slot 17");
#else
_Static_assert(offsetof(KELPDatabaseEngineDefinition, closeDatabase) == 8, "engine slot 2");
_Static_assert(offsetof(KELPDatabaseEngineDefinition, getProperty) == 8 + 15 * sizeof(void *),
               "engine slot 17");
_Static_assert(offsetof(KELPDatabaseCursorDefinition, columnType) == 8 + 15 * sizeof(void *),
               "cursor slot 17");
#endif

/* ---- Database ---- */
void DatabaseConstructor(RuntimeObject *self);
void databaseDestructor(RuntimeObject *self);
uint8_t DatabaseConnect(RuntimeObject *self);
void databaseSQLExecute(RuntimeObject *self, KelpString sql);
RuntimeObject *databaseSQLSelect(RuntimeObject *self, KelpString sql);
void databaseInsertRecord(RuntimeObject *self, KelpString table, RuntimeObject *record);
RuntimeObject *databaseTableSchema(RuntimeObject *self);
RuntimeObject *databaseFieldSchema(RuntimeObject *self, KelpString table);
RuntimeObject *databaseIndexSchema(RuntimeObject *self, KelpString table);
void databaseCommit(RuntimeObject *self);
void databaseRollback(RuntimeObject *self);
void databaseClose(RuntimeObject *self);
KelpString getDatabaseProperty(RuntimeObject *self, KelpString name);
uint8_t databaseErrorGetter(RuntimeObject *self, int32_t unused);
int32_t databaseErrorCodeGetter(RuntimeObject *self, int32_t unused);
KelpString databaseErrorStringGetter(RuntimeObject *self, int32_t unused);

/* ---- KELPDatabase ---- */
void KELPDatabaseConstructor(RuntimeObject *self);
void KELPDatabaseDestructor(RuntimeObject *self);
uint8_t KELPDatabaseConnect(RuntimeObject *self);
uint8_t KELPDatabaseCreateDatabaseFile(RuntimeObject *self);
RuntimeObject *KELPDatabaseFolderItemGetter(RuntimeObject *self, int32_t unused);
void KELPDatabaseFolderItemSetter(RuntimeObject *self, int32_t unused, RuntimeObject *file);
void KELPDatabaseSetError(RuntimeObject *self, int32_t code, KelpString text);
/* Commits reach the disk unless a bulk load turns that off (SyncCommits). */
uint8_t KELPDatabaseSyncGetter(RuntimeObject *self, int32_t unused);
void KELPDatabaseSyncSetter(RuntimeObject *self, int32_t unused, uint8_t sync);
/* A new file (an existing one is replaced), or the file opened; nil when it
 * cannot be made or read. */
RuntimeObject *newKELPDatabase(RuntimeObject *file);
RuntimeObject *openKELPDatabase(RuntimeObject *file);
/* The database of the "DBAS" resource `id`; nil when there is none. */
RuntimeObject *RuntimeGetDatabaseFromResource(int32_t id);

/* ---- RecordSet (DatabaseCursor) ---- */
void databaseCursorDestructor(RuntimeObject *self);
void cursorMoveNext(RuntimeObject *self);
void CursorMovePrev(RuntimeObject *self);
void CursorMoveFirst(RuntimeObject *self);
void CursorMoveLast(RuntimeObject *self);
RuntimeObject *cursorGetFieldByName(RuntimeObject *self, KelpString name);
RuntimeObject *cursorGetFieldByIndex(RuntimeObject *self, int32_t index);
void cursorDeleteRecord(RuntimeObject *self);
void cursorEdit(RuntimeObject *self);
void cursorUpdate(RuntimeObject *self);
void cursorClose(RuntimeObject *self);
uint8_t cursorBOFGetter(RuntimeObject *self, int32_t unused);
uint8_t cursorEOFGetter(RuntimeObject *self, int32_t unused);
int32_t cursorFieldCount(RuntimeObject *self, int32_t unused);
int32_t RecordSetRecordCount(RuntimeObject *self);
int32_t RecordSetColumnType(RuntimeObject *self, int32_t index);

/* ---- DatabaseField (DatabaseCursorField) ---- */
void databaseCursorFieldDestructor(RuntimeObject *self);
KelpString cursorFieldNameGetter(RuntimeObject *self, int32_t unused);
KelpString cursorFieldStringValueGetter(RuntimeObject *self, int32_t unused);
void cursorFieldStringValueSetter(RuntimeObject *self, int32_t unused, KelpString value);
KelpString databaseCursorFieldGetString(RuntimeObject *self);
void databaseCursorFieldSetString(RuntimeObject *self, KelpString value);
int32_t cursorFieldIntegerValueGetter(RuntimeObject *self, int32_t unused);
void cursorFieldIntegerValueSetter(RuntimeObject *self, int32_t unused, int32_t value);
double cursorFieldDoubleValueGetter(RuntimeObject *self, int32_t unused);
void cursorFieldDoubleValueSetter(RuntimeObject *self, int32_t unused, double value);
uint8_t CursorFieldBooleanValueGetter(RuntimeObject *self, int32_t unused);
void CursorFieldBooleanValueSetter(RuntimeObject *self, int32_t unused, uint8_t value);
RuntimeObject *cursorFieldDateValueGetter(RuntimeObject *self, int32_t unused);
void cursorFieldDateValueSetter(RuntimeObject *self, int32_t unused, RuntimeObject *date);
KelpString cursorFieldNativeValueGetter(RuntimeObject *self, int32_t unused);
RuntimeObject *cursorFieldMactPictGetter(RuntimeObject *self, int32_t unused);
void cursorFieldMactPictSetter(RuntimeObject *self, int32_t unused, RuntimeObject *picture);
RuntimeObject *cursorFieldJPEGGetter(RuntimeObject *self, int32_t unused);
void cursorFieldJPEGSetter(RuntimeObject *self, int32_t unused, RuntimeObject *picture);
RuntimeObject *CursorFieldValueGetter(RuntimeObject *self, int32_t unused);
void CursorFieldValueSetter(RuntimeObject *self, int32_t unused, RuntimeObject *variant);
KelpString CursorFieldConvertToString(RuntimeObject *self);
int32_t CursorFieldConvertToInteger(RuntimeObject *self);
double CursorFieldConvertToDouble(RuntimeObject *self);
uint8_t CursorFieldConvertToBoolean(RuntimeObject *self);
RuntimeObject *CursorFieldConvertToDate(RuntimeObject *self);

/* ---- DatabaseRecord ---- */
void databaseRecordDestructor(RuntimeObject *self);
KelpString getDatabaseRecordColumn(RuntimeObject *self, KelpString name);
void setDatabaseRecordColumn(RuntimeObject *self, KelpString name, KelpString value);
int32_t getDatabaseRecordIntegerColumn(RuntimeObject *self, KelpString name);
void setDatabaseRecordIntegerColumn(RuntimeObject *self, KelpString name, int32_t value);
double getDatabaseRecordDoubleColumn(RuntimeObject *self, KelpString name);
void setDatabaseRecordDoubleColumn(RuntimeObject *self, KelpString name, double value);
uint8_t GetDatabaseRecordBooleanColumn(RuntimeObject *self, KelpString name);
void SetDatabaseRecordBooleanColumn(RuntimeObject *self, KelpString name, uint8_t value);
RuntimeObject *getDatabaseRecordDateColumn(RuntimeObject *self, KelpString name);
void setDatabaseRecordDateColumn(RuntimeObject *self, KelpString name, RuntimeObject *date);
KelpString GetDatabaseRecordBlobColumn(RuntimeObject *self, KelpString name);
void SetDatabaseRecordBlobColumn(RuntimeObject *self, KelpString name, KelpString value);
RuntimeObject *getDatabaseRecordMacPictColumn(RuntimeObject *self, KelpString name);
void setDatabaseRecordMacPictColumn(RuntimeObject *self, KelpString name, RuntimeObject *picture);
RuntimeObject *getDatabaseRecordJPEGColumn(RuntimeObject *self, KelpString name);
void setDatabaseRecordJPEGColumn(RuntimeObject *self, KelpString name, RuntimeObject *picture);
int32_t getDatabaseRecordFieldCount(RuntimeObject *self, int32_t unused);
/* The name of the index-th column set (from 1); empty past the end. */
KelpString getDatabaseRecordIndString(RuntimeObject *self, int32_t index);

/* ---- ScrollableCursor ---- */
void scrollableCursorConstructor(RuntimeObject *self, RuntimeObject *recordSet);
void scrollableCursorDestructor(RuntimeObject *self);
int32_t scrollableCursorGetCount(RuntimeObject *self);
/* Row `index` from 0 as a new DatabaseRecord; nil out of range. */
RuntimeObject *scrollableCursorGetRow(RuntimeObject *self, int32_t index);

/* ---- DataControl: a bar bound to a table or query of a Database ---- */
void DataControlConstructor(RuntimeObject *self);
void DataControlDestructor(RuntimeObject *self);
void DataControlCreatePane(RuntimeObject *self);
RuntimeObject *DataControlDBGetter(RuntimeObject *self, int32_t unused);
void DataControlDBSetter(RuntimeObject *self, int32_t unused, RuntimeObject *database);
void DataControlTableNameSetter(RuntimeObject *self, int32_t unused, KelpString name);
void DataControlQuerySetter(RuntimeObject *self, int32_t unused, KelpString query);
void DataControlCaptionSetter(RuntimeObject *self, int32_t unused, KelpString caption);
void DataControlReadOnlySetter(RuntimeObject *self, int32_t unused, uint8_t value);
void DataControlAlignSetter(RuntimeObject *self, int32_t unused, int32_t value);
void DataControlColorSetter(RuntimeObject *self, int32_t unused, int32_t value);
void DataControlFontSetter(RuntimeObject *self, int32_t unused, KelpString value);
void DataControlSizeSetter(RuntimeObject *self, int32_t unused, int32_t value);
/* Selector 0 Bold, 1 Italic, 2 Underline. */
void DataControlAttributeSetter(RuntimeObject *self, int32_t selector, uint8_t value);
int32_t DataControlEncodingGetter(RuntimeObject *self, int32_t unused);
void DataControlEncodingSetter(RuntimeObject *self, int32_t unused, int32_t value);
uint8_t DataControlRecordLockedGetter(RuntimeObject *self, int32_t unused);
/* Reads every row of the table or query and shows the first. */
void DataControlRunQuery(RuntimeObject *self);
void DataControlMoveFirst(RuntimeObject *self);
void DataControlMovePrev(RuntimeObject *self);
void DataControlMoveNext(RuntimeObject *self);
void DataControlMoveLast(RuntimeObject *self);
/* Rows count from 0; a row past either end goes to that end. */
void DataControlMoveTo(RuntimeObject *self, int32_t row);
int32_t DataControlRow(RuntimeObject *self); /* -1 with no row */
int32_t DataControlRowCount(RuntimeObject *self);
int32_t DataControlFieldCount(RuntimeObject *self);
KelpString DataControlGetField(RuntimeObject *self, KelpString name);
RuntimeObject *DataControlGetCursor(RuntimeObject *self);
void DataControlNewRecord(RuntimeObject *self);
void DataControlAddNewRecord(RuntimeObject *self);
void DataControlUpdateRecord(RuntimeObject *self);
void DataControlDeleteRecord(RuntimeObject *self);
void DataControlClearBoundControls(RuntimeObject *self);
void DataControlControlBindSetter(RuntimeObject *self, KelpString field, RuntimeObject *control);
RuntimeObject *DataControlGetBoundPart(RuntimeObject *self, KelpString name);
int32_t DataControlGetConstant(RuntimeObject *self, KelpString name);
void DataControlActionPerformAction(RuntimeObject *self);
void DataControlActionDestructor(RuntimeObject *self);

/* ---- DatabaseQuery: a SELECT with ":name" parameters, run on demand ---- */
void databaseQueryDestructor(RuntimeObject *self);
/* The value goes in as a quoted literal wherever ":name" stands. */
void databaseQuerySetParameter(RuntimeObject *self, KelpString name, KelpString value);
/* Reads every row, then calls each receiver's listDataReload(). */
void databaseQueryRunQuery(RuntimeObject *self);
int32_t databaseQueryGetCount(RuntimeObject *self);
/* Row from 0 as a new DatabaseRecord; nil out of range. */
RuntimeObject *databaseQueryGetRow(RuntimeObject *self, int32_t row);
void databaseQueryAddLDNR(RuntimeObject *self, RuntimeObject *receiver);
void databaseQueryRemoveLDNR(RuntimeObject *self, RuntimeObject *receiver);

/* ---- the connection dialog of plug-in engines ---- */
/* A dialog to be filled with fields; Delete frees it. */
void *KELPDBConnectionDialogCreate(KelpString title);
/* A labelled entry showing *value; a password entry hides what is typed.
 * *value stays the caller's: Show replaces it (an owned string) on OK. */
void KELPDBConnectionDialogAddField(void *dialog, KelpString label, KelpString *value,
                                    uint8_t password);
/* Modal; true when the person pressed OK (or Return). */
uint8_t KELPDBConnectionDialogShow(void *dialog);
void KELPDBConnectionDialogDelete(void *dialog);

/* ---- plug-in host calls ---- */
RuntimeObject *KELPdbDatabaseFromDBDatabase(void *data, KELPDatabaseEngineDefinition *engine);
RuntimeObject *KELPdbCursorFromDBCursor(void *data, KELPDatabaseCursorDefinition *cursor);
void *KELPGetDBFromKELPdbDatabase(RuntimeObject *database);
void *KELPGetCursorFromKELPdbCursor(RuntimeObject *recordSet);
RuntimeObject *KELPConstructDBDatabase(KelpString className);
void KELPSetDBIsConnected(RuntimeObject *database, uint8_t connected);
KelpString KELPGetDBHost(RuntimeObject *database);
KelpString KELPGetDBDatabaseName(RuntimeObject *database);
KelpString KELPGetDBPassword(RuntimeObject *database);
KelpString KELPGetDBUserName(RuntimeObject *database);

#ifdef __cplusplus
}
#endif

#endif
