// What a plug-in may call for databases: wrapping its engine data and its
// cursors into the language's objects, and reading a Database's settings.
// Each takes nil quietly (nil, empty or nothing) and never raises, since a
// plug-in has no handler for the language's exceptions.
#include "database_classes/database_object.h"

#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/objects.h"

namespace kelp {
namespace {

// The tables of format 4 have every slot the classes read; an older table
// is shorter, and reading it as 4 would run past its end.
constexpr int32_t kTableVersion = 4;

KelpString Copy(RuntimeObject *database, KelpString DatabaseObject::*field) {
    if (!database)
        return nullptr;
    KelpString s = DatabaseOf(database)->*field;
    return string::Wrap(s).ExtractStringStorage();
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" {

RuntimeObject *KELPdbDatabaseFromDBDatabase(void *data, KELPDatabaseEngineDefinition *engine) {
    if (!data || !engine || engine->version < kTableVersion)
        return nullptr;
    RuntimeObject *db = NewObjectOfDefinition(DatabaseDefinition());
    if (db)
        AttachEngine(db, data, engine);
    return db;
}

RuntimeObject *KELPdbCursorFromDBCursor(void *data, KELPDatabaseCursorDefinition *cursor) {
    if (!data || !cursor || cursor->version < kTableVersion)
        return nullptr;
    return NewRecordSet(data, cursor, nullptr, "");
}

void *KELPGetDBFromKELPdbDatabase(RuntimeObject *database) {
    return database ? DatabaseOf(database)->engineData : nullptr;
}

void *KELPGetCursorFromKELPdbCursor(RuntimeObject *recordSet) {
    return recordSet ? RecordSetOf(recordSet)->cursorData : nullptr;
}

// A new object of a Database subclass a plug-in registered, by its name;
// nil when there is no such class or it is not a Database.
RuntimeObject *KELPConstructDBDatabase(KelpString className) {
    RuntimeClass *klass = RuntimeLookupClass(className);
    if (!klass)
        return nullptr;
    RuntimeObject *object = RuntimeNewObject(klass);
    if (object && !RuntimeObjectIsa(object, ClassForDefinition(DatabaseDefinition()))) {
        RuntimeUnlockObject(object);
        return nullptr;
    }
    return object;
}

// A plug-in's Connect reports here whether its engine is now in use.
void KELPSetDBIsConnected(RuntimeObject *database, uint8_t connected) {
    if (database)
        DatabaseOf(database)->engineLoaded = connected != 0;
}

KelpString KELPGetDBHost(RuntimeObject *database) { return Copy(database, &DatabaseObject::host); }
KelpString KELPGetDBDatabaseName(RuntimeObject *database) {
    return Copy(database, &DatabaseObject::databaseName);
}
KelpString KELPGetDBPassword(RuntimeObject *database) {
    return Copy(database, &DatabaseObject::password);
}
KelpString KELPGetDBUserName(RuntimeObject *database) {
    return Copy(database, &DatabaseObject::userName);
}

} // extern "C"
