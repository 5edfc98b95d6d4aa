// Database and KELPDatabase: a connection to an engine, SQL through it, and
// the error a program reads back.  Errors never raise: each SQL call clears
// the object's code, and ErrorCode falls back on the engine's own.
#include "database_classes/database_object.h"

#include "exceptions/raise.h"
#include "folder_items/folder_item_imp.h"
#include "folder_items/folder_item_object.h"
#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/objects.h"

#include <cstddef>

namespace kelp {
namespace {

const TypeRecord kRecordSetType{kTypeObjectOf, nullptr, nullptr, 0, &RecordSetDefinition};
const TypeRecord kRecordType{kTypeObjectOf, nullptr, nullptr, 0, &DatabaseRecordDefinition};
const TypeRecord kFolderItemType{kTypeObjectOf, nullptr, nullptr, 0, &FolderItemDefinition};

constexpr int32_t kNoFileCode = 1;
constexpr const char *kNoFileText = "A Database file was not specified";

DatabaseObject *Checked(RuntimeObject *self) {
    if (!self)
        RaiseNilObject();
    return DatabaseOf(self);
}

// A database kept in a resource opens on first use; one that can't be
// loaded stays unconnected, and the call does nothing.
bool EnsureEngine(DatabaseObject *db);

bool Ready(RuntimeObject *self) {
    DatabaseObject *db = Checked(self);
    if (!db)
        return false;
    db->mLastErrorCode = 0;
    SetText(db->mLastErrorText, "");
    return EnsureEngine(db) && db->engine && db->engineData;
}

void SetError(DatabaseObject *db, int32_t code, std::string_view text) {
    db->mLastErrorCode = code;
    SetText(db->mLastErrorText, text);
}

// Takes the owner's reference for a record set an engine made.
RuntimeObject *Owned(RuntimeObject *self, RuntimeObject *recordSet, std::string_view sql) {
    if (!recordSet)
        return nullptr;
    RecordSetObject *rs = RecordSetOf(recordSet);
    if (!rs->owner) {
        rs->owner = self;
        RuntimeLockObject(self);
    }
    if (!sql.empty())
        SetText(rs->sourceSql, sql);
    return recordSet;
}

bool Attach(DatabaseObject *db, void *data, const KELPDatabaseEngineDefinition *engine) {
    if (db->engineData && db->engine && db->engine->closeDatabase)
        databaseClose(&db->object);
    db->engineData = data;
    db->engine = engine;
    db->engineLoaded = data != nullptr;
    if (data)
        RegisterOpen(&db->object);
    return data != nullptr;
}

} // namespace

bool IsKELPDatabase(RuntimeObject *o) {
    return o && RuntimeObjectIsa(o, ClassForDefinition(KELPDatabaseDefinition()));
}

bool AttachEngine(RuntimeObject *database, void *data, const KELPDatabaseEngineDefinition *engine) {
    return Attach(DatabaseOf(database), data, engine);
}

ObjectDefinition *DatabaseDefinition() {
    static const ParameterRow sqlParam[] = {{"sqlString", &kTypeString}};
    static const ParameterRow tableParam[] = {{"tableName", &kTypeString}};
    static const ParameterRow insertParams[] = {{"tableName", &kTypeString},
                                                {"record", &kRecordType}};
    static const ParameterRow propertyParam[] = {{"v", &kTypeString}};
    static const MethodRow methods[] = {
        {"SQLExecute", nullptr, sqlParam, 1, KELP_ENTRY(databaseSQLExecute)},
        {"SQLSelect", &kRecordSetType, sqlParam, 1, KELP_ENTRY(databaseSQLSelect)},
        {"InsertRecord", nullptr, insertParams, 2, KELP_ENTRY(databaseInsertRecord)},
        {"TableSchema", &kRecordSetType, nullptr, 0, KELP_ENTRY(databaseTableSchema)},
        {"FieldSchema", &kRecordSetType, tableParam, 1, KELP_ENTRY(databaseFieldSchema)},
        {"IndexSchema", &kRecordSetType, tableParam, 1, KELP_ENTRY(databaseIndexSchema)},
        {"Commit", nullptr, nullptr, 0, KELP_ENTRY(databaseCommit)},
        {"Rollback", nullptr, nullptr, 0, KELP_ENTRY(databaseRollback)},
        {"GetProperty", &kTypeString, propertyParam, 1, KELP_ENTRY(getDatabaseProperty)},
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(databaseClose)},
        {"Connect", &kTypeBoolean, nullptr, 0, KELP_ENTRY(DatabaseConnect)},
    };
    static const PropertyRow properties[] = {
        {0, "Error", &kTypeBoolean, KELP_ENTRY(databaseErrorGetter), {}},
        {0, "ErrorCode", &kTypeInteger, KELP_ENTRY(databaseErrorCodeGetter), {}},
        {0, "ErrorMessage", &kTypeString, KELP_ENTRY(databaseErrorStringGetter), {}},
        {0, "DatabaseName", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(stringSetter),
         offsetof(DatabaseObject, databaseName)},
        {0, "Host", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(stringSetter),
         offsetof(DatabaseObject, host)},
        {0, "Password", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(stringSetter),
         offsetof(DatabaseObject, password)},
        {0, "UserName", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(stringSetter),
         offsetof(DatabaseObject, userName)},
    };
    static const ClassDescription description = {
        .name = "Database",
        .instanceSize = sizeof(DatabaseObject),
        .initializer = KELP_ENTRY(DatabaseConstructor),
        .finalizer = KELP_ENTRY(databaseDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *KELPDatabaseDefinition() {
    static const MethodRow methods[] = {
        {"Connect", &kTypeBoolean, nullptr, 0, KELP_ENTRY(KELPDatabaseConnect)},
        {"CreateDatabaseFile", &kTypeBoolean, nullptr, 0,
         KELP_ENTRY(KELPDatabaseCreateDatabaseFile)},
    };
    static const PropertyRow properties[] = {
        {0, "DatabaseFile", &kFolderItemType, KELP_ENTRY(KELPDatabaseFolderItemGetter),
         KELP_ENTRY(KELPDatabaseFolderItemSetter)},
        {0, "SyncCommits", &kTypeBoolean, KELP_ENTRY(KELPDatabaseSyncGetter),
         KELP_ENTRY(KELPDatabaseSyncSetter)},
    };
    static const ClassDescription description = {
        .name = "KELPDatabase",
        .super = &DatabaseDefinition,
        .instanceSize = sizeof(KELPDatabaseObject),
        .initializer = KELP_ENTRY(KELPDatabaseConstructor),
        .finalizer = KELP_ENTRY(KELPDatabaseDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

// ---- the generated statements ----

namespace {
std::string Quoted(std::string_view value) {
    std::string out = "'";
    for (char c : value) {
        out += c;
        if (c == '\'')
            out += '\''; // an apostrophe doubled stays one character of the value
    }
    return out + "'";
}
std::string Condition(const std::vector<ColumnChange> &oldRow) {
    std::string out;
    for (const ColumnChange &c : oldRow) {
        if (!out.empty())
            out += " AND ";
        out += "[" + c.column + "]" + (c.isNull ? " IS NULL" : " = " + Quoted(c.value));
    }
    return out;
}
} // namespace

std::string InsertText(std::string_view table, const std::vector<RecordColumn> &columns) {
    std::string names, values;
    for (const RecordColumn &c : columns) {
        if (!names.empty()) {
            names += ",";
            values += ",";
        }
        names += c.name;
        values += Quoted(c.value);
    }
    return "insert into " + std::string(table) + " (" + names + ") values (" + values + ")";
}

std::string UpdateText(std::string_view table, const std::vector<ColumnChange> &changes,
                       const std::vector<ColumnChange> &oldRow) {
    std::string out = "UPDATE [" + std::string(table) + "] SET ";
    for (size_t i = 0; i < changes.size(); ++i) {
        if (i)
            out += ", ";
        out += "[" + changes[i].column +
               "] = " + (changes[i].isNull ? std::string("NULL") : Quoted(changes[i].value));
    }
    return out + " WHERE " + Condition(oldRow);
}

std::string DeleteText(std::string_view table, const std::vector<ColumnChange> &oldRow) {
    return "DELETE FROM [" + std::string(table) + "] WHERE " + Condition(oldRow);
}

std::string TableOfSelect(std::string_view sql) {
    auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; };
    auto blank = [](char c) { return uint8_t(c) <= ' '; };
    for (size_t i = 0; i + 4 <= sql.size(); ++i) {
        bool word = (i == 0 || blank(sql[i - 1])) && lower(sql[i]) == 'f' &&
                    lower(sql[i + 1]) == 'r' && lower(sql[i + 2]) == 'o' &&
                    lower(sql[i + 3]) == 'm' && (i + 4 == sql.size() || blank(sql[i + 4]));
        if (!word)
            continue;
        size_t at = i + 4;
        while (at < sql.size() && blank(sql[at]))
            ++at;
        if (at < sql.size() && sql[at] == '[') {
            size_t end = sql.find(']', at);
            return end == std::string_view::npos ? ""
                                                 : std::string(sql.substr(at + 1, end - at - 1));
        }
        size_t end = at;
        while (end < sql.size() && !blank(sql[end]) && sql[end] != ',' && sql[end] != ';')
            ++end;
        return std::string(sql.substr(at, end - at));
    }
    return "";
}

// ---- the database resource ----

namespace {
bool EnsureEngine(DatabaseObject *db) {
    if (db->engineLoaded || !db->resourceData)
        return true;
    const uint8_t *data = db->resourceData;
    uint32_t length = db->resourceLength;
    db->resourceData = nullptr; // one attempt: a failed load stays failed
    std::string name = Text(db->source);
    void *engineData = OpenResourceDatabase(name, data, length);
    return engineData && Attach(db, engineData, FileEngine());
}
} // namespace

} // namespace kelp

using namespace kelp;

extern "C" {

void DatabaseConstructor(RuntimeObject *) {}

void databaseDestructor(RuntimeObject *self) {
    DatabaseObject *db = DatabaseOf(self);
    if (db->engineData)
        databaseClose(self);
    UnregisterOpen(self);
    for (KelpString *s : {&db->source, &db->mLastErrorText, &db->databaseName, &db->host,
                          &db->password, &db->userName})
        SetText(*s, "");
}

uint8_t DatabaseConnect(RuntimeObject *self) {
    DatabaseObject *db = Checked(self);
    if (!db)
        return false;
    if (db->resourceData)
        return EnsureEngine(db) && db->engineData;
    return db->engineData != nullptr;
}

void databaseSQLExecute(RuntimeObject *self, KelpString sql) {
    if (!Ready(self))
        return;
    DatabaseObject *db = DatabaseOf(self);
    if (db->engine->directSQLExecute)
        db->engine->directSQLExecute(db->engineData, sql);
    else
        SetError(db, 1, "The database engine does not execute SQL");
}

RuntimeObject *databaseSQLSelect(RuntimeObject *self, KelpString sql) {
    if (!Ready(self))
        return nullptr;
    DatabaseObject *db = DatabaseOf(self);
    if (!db->engine->directSQLSelect) {
        SetError(db, 1, "The database engine does not select");
        return nullptr;
    }
    return Owned(self, db->engine->directSQLSelect(db->engineData, sql), Text(sql));
}

void databaseInsertRecord(RuntimeObject *self, KelpString table, RuntimeObject *record) {
    if (!Ready(self))
        return;
    if (!record) {
        RaiseNilObject();
        return;
    }
    DatabaseObject *db = DatabaseOf(self);
    const std::vector<RecordColumn> &columns = *RecordOf(record)->columns;
    if (db->engine->addTableRecord) {
        std::vector<KelpString> names, values;
        for (const RecordColumn &c : columns) {
            names.push_back(NewText(c.name));
            values.push_back(NewText(c.value));
        }
        db->engine->addTableRecord(db->engineData, table, int32_t(columns.size()), names.data(),
                                   values.data());
        for (size_t i = 0; i < names.size(); ++i) {
            SetText(names[i], "");
            SetText(values[i], "");
        }
        return;
    }
    std::string text = InsertText(Text(table), columns);
    KelpString statement = NewText(text);
    databaseSQLExecute(self, statement);
    SetText(statement, "");
}

RuntimeObject *databaseTableSchema(RuntimeObject *self) {
    if (!Ready(self))
        return nullptr;
    DatabaseObject *db = DatabaseOf(self);
    return db->engine->tableSchema ? Owned(self, db->engine->tableSchema(db->engineData), "")
                                   : nullptr;
}

RuntimeObject *databaseFieldSchema(RuntimeObject *self, KelpString table) {
    if (!Ready(self))
        return nullptr;
    DatabaseObject *db = DatabaseOf(self);
    return db->engine->fieldSchema ? Owned(self, db->engine->fieldSchema(db->engineData, table), "")
                                   : nullptr;
}

RuntimeObject *databaseIndexSchema(RuntimeObject *self, KelpString table) {
    if (!Ready(self))
        return nullptr;
    DatabaseObject *db = DatabaseOf(self);
    return db->engine->indexSchema ? Owned(self, db->engine->indexSchema(db->engineData, table), "")
                                   : nullptr;
}

void databaseCommit(RuntimeObject *self) {
    if (!Ready(self))
        return;
    DatabaseObject *db = DatabaseOf(self);
    if (db->engine->commit) {
        db->engine->commit(db->engineData);
        return;
    }
    KelpString word = NewText("commit");
    databaseSQLExecute(self, word);
    SetText(word, "");
}

void databaseRollback(RuntimeObject *self) {
    if (!Ready(self))
        return;
    DatabaseObject *db = DatabaseOf(self);
    if (db->engine->rollback) {
        db->engine->rollback(db->engineData);
        return;
    }
    KelpString word = NewText("rollback");
    databaseSQLExecute(self, word);
    SetText(word, "");
}

void databaseClose(RuntimeObject *self) {
    DatabaseObject *db = Checked(self);
    if (!db || !db->engineData)
        return;
    CloseRecordSetsOf(self);
    databaseCommit(self);
    void *data = db->engineData;
    db->engineData = nullptr;
    if (db->engine->closeDatabase)
        db->engine->closeDatabase(data);
    UnregisterOpen(self);
}

KelpString getDatabaseProperty(RuntimeObject *self, KelpString name) {
    if (!Ready(self))
        return nullptr;
    DatabaseObject *db = DatabaseOf(self);
    return db->engine->getProperty ? db->engine->getProperty(db->engineData, name) : nullptr;
}

int32_t databaseErrorCodeGetter(RuntimeObject *self, int32_t) {
    DatabaseObject *db = Checked(self);
    if (!db)
        return 0;
    if (db->mLastErrorCode || !db->engineData || !db->engine->lastErrorCode)
        return db->mLastErrorCode;
    return db->engine->lastErrorCode(db->engineData);
}

KelpString databaseErrorStringGetter(RuntimeObject *self, int32_t) {
    DatabaseObject *db = Checked(self);
    if (!db)
        return nullptr;
    if (db->mLastErrorCode || !db->engineData || !db->engine->lastErrorText)
        return NewText(Text(db->mLastErrorText));
    return db->engine->lastErrorText(db->engineData);
}

uint8_t databaseErrorGetter(RuntimeObject *self, int32_t unused) {
    return databaseErrorCodeGetter(self, unused) != 0;
}

// ---- KELPDatabase ----

void KELPDatabaseConstructor(RuntimeObject *self) {
    reinterpret_cast<KELPDatabaseObject *>(self)->syncCommits = true;
}

void KELPDatabaseDestructor(RuntimeObject *self) {
    auto *db = reinterpret_cast<KELPDatabaseObject *>(self);
    RuntimeUnlockObject(db->databaseFile);
    db->databaseFile = nullptr;
}

static uint8_t OpenFile(RuntimeObject *self, bool create) {
    auto *db = reinterpret_cast<KELPDatabaseObject *>(self);
    if (!db)
        return false;
    db->base.mLastErrorCode = 0;
    if (!db->databaseFile) {
        SetError(&db->base, kNoFileCode, kNoFileText);
        return false;
    }
    FolderItemImp *imp = ImpOf(db->databaseFile);
    if (!imp)
        return false;
    std::string error;
    void *data = OpenFileEngine(imp->AbsolutePath(), create, false, error);
    if (!data) {
        SetError(&db->base, 2009, error);
        return false;
    }
    SetFileEngineSync(data, db->syncCommits);
    return Attach(&db->base, data, FileEngine());
}

uint8_t KELPDatabaseConnect(RuntimeObject *self) {
    if (!self) {
        RaiseNilObject();
        return false;
    }
    return OpenFile(self, false);
}

uint8_t KELPDatabaseCreateDatabaseFile(RuntimeObject *self) {
    if (!self) {
        RaiseNilObject();
        return false;
    }
    return OpenFile(self, true);
}

RuntimeObject *KELPDatabaseFolderItemGetter(RuntimeObject *self, int32_t) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    RuntimeObject *file = reinterpret_cast<KELPDatabaseObject *>(self)->databaseFile;
    RuntimeLockObject(file);
    return file;
}

void KELPDatabaseFolderItemSetter(RuntimeObject *self, int32_t, RuntimeObject *file) {
    if (!self) {
        RaiseNilObject();
        return;
    }
    auto *db = reinterpret_cast<KELPDatabaseObject *>(self);
    RuntimeLockUnlockObjects(file, db->databaseFile);
    db->databaseFile = file;
}

uint8_t KELPDatabaseSyncGetter(RuntimeObject *self, int32_t) {
    if (!self) {
        RaiseNilObject();
        return false;
    }
    return reinterpret_cast<KELPDatabaseObject *>(self)->syncCommits;
}

void KELPDatabaseSyncSetter(RuntimeObject *self, int32_t, uint8_t sync) {
    if (!self) {
        RaiseNilObject();
        return;
    }
    auto *db = reinterpret_cast<KELPDatabaseObject *>(self);
    db->syncCommits = sync != 0;
    if (db->base.engine == FileEngine())
        SetFileEngineSync(db->base.engineData, db->syncCommits);
}

void KELPDatabaseSetError(RuntimeObject *self, int32_t code, KelpString text) {
    if (!self) {
        RaiseNilObject();
        return;
    }
    SetError(DatabaseOf(self), code, Text(text));
}

static RuntimeObject *NewOnFile(RuntimeObject *file, bool create) {
    if (!file) {
        RaiseNilObject();
        return nullptr;
    }
    RuntimeObject *db = NewObjectOfDefinition(KELPDatabaseDefinition());
    if (!db)
        return nullptr;
    KELPDatabaseFolderItemSetter(db, 0, file);
    if (OpenFile(db, create))
        return db;
    RuntimeUnlockObject(db);
    return nullptr;
}

RuntimeObject *newKELPDatabase(RuntimeObject *file) { return NewOnFile(file, true); }
RuntimeObject *openKELPDatabase(RuntimeObject *file) { return NewOnFile(file, false); }

} // extern "C"
