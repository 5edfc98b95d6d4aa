/* A plug-in database engine for the tests: two fixed rows to select, and a
 * log of every statement it is asked to execute.  It offers no insert,
 * update, delete, commit or row count, so a Database must write those as
 * statements, and the log shows their exact text. */
#include "kelp/database.h"
#include "kelp/plugin.h"

#include <stdlib.h>
#include <string.h>

#define EXPORT __attribute__((visibility("default")))

static struct {
    KelpString (*build)(const char *, int32_t);
    RuntimeObject *(*wrapDatabase)(void *, KELPDatabaseEngineDefinition *);
    RuntimeObject *(*wrapCursor)(void *, KELPDatabaseCursorDefinition *);
    KelpString (*host)(RuntimeObject *);
    void *(*dataOf)(RuntimeObject *);
} kelp;

typedef struct {
    char log[4096];
    int32_t error;
} Memory;
static Memory gMemory;

typedef struct {
    int32_t row; /* 0 before the first */
    int32_t id;
} Cursor;

static const char *kNames[] = {"Ann", "Bob"};

static const char *Bytes(KelpString s) { return s ? (const char *)s->buffer + 1 : ""; }
static int32_t Length(KelpString s) { return s ? s->length : 0; }

static void CursorClose(void *c) { free(c); }
static int32_t ColumnCount(void *c) {
    (void)c;
    return 2;
}
static KelpString ColumnName(void *c, int32_t column) {
    (void)c;
    return kelp.build(column == 0 ? "id" : "name", column == 0 ? 2 : 4);
}
static void ColumnValue(void *data, int32_t column, void **value, uint8_t *type, int32_t *length) {
    Cursor *c = data;
    if (column == 0) {
        c->id = c->row;
        *value = &c->id, *type = kDBTypeInteger, *length = 4;
    } else {
        *value = (void *)kNames[c->row - 1], *type = kDBTypeText, *length = 3;
    }
}
static void Release(void *c) { (void)c; }
static uint8_t Next(void *data) {
    Cursor *c = data;
    return ++c->row <= 2;
}
static int32_t ColumnType(void *c, int32_t column) {
    (void)c;
    return column == 0 ? kDBTypeInteger : kDBTypeText;
}
static KELPDatabaseCursorDefinition cursorDefinition = {
    .version = 4,
    .closeCursor = CursorClose,
    .columnCount = ColumnCount,
    .columnName = ColumnName,
    .columnValue = ColumnValue,
    .releaseValue = Release,
    .nextRow = Next,
    .columnType = ColumnType,
};

static void Append(Memory *m, const char *bytes, int32_t length) {
    size_t used = strlen(m->log);
    if (used + (size_t)length + 2 < sizeof m->log) {
        memcpy(m->log + used, bytes, (size_t)length);
        memcpy(m->log + used + length, "\n", 2);
    }
}
static void Execute(void *db, KelpString sql) {
    Memory *m = db;
    Append(m, Bytes(sql), Length(sql));
    m->error = Length(sql) >= 4 && memcmp(Bytes(sql), "fail", 4) == 0 ? 77 : 0;
}
static RuntimeObject *Select(void *db, KelpString sql) {
    Execute(db, sql);
    return kelp.wrapCursor(calloc(1, sizeof(Cursor)), &cursorDefinition);
}
static int32_t ErrorCode(void *db) { return ((Memory *)db)->error; }
static KelpString ErrorText(void *db) {
    return ((Memory *)db)->error ? kelp.build("refused", 7) : NULL;
}
static void Close(void *db) { Append(db, "closed", 6); }

static KELPDatabaseEngineDefinition engine = {
    .version = 4,
    .closeDatabase = Close,
    .directSQLSelect = Select,
    .directSQLExecute = Execute,
    .lastErrorCode = ErrorCode,
    .lastErrorText = ErrorText,
};

static RuntimeObject *Open(void) {
    gMemory.log[0] = 0;
    return kelp.wrapDatabase(&gMemory, &engine);
}
static KelpString Log(void) { return kelp.build(gMemory.log, (int32_t)strlen(gMemory.log)); }
/* What the host gives back for a Database of this engine. */
static KelpString HostOf(RuntimeObject *db) {
    return kelp.dataOf(db) == &gMemory ? kelp.host(db) : NULL;
}

/* ReloadCounter: a receiver of a DatabaseQuery that counts its reloads. */
static int32_t gReloads;
static void Reload(RuntimeObject *self) {
    (void)self;
    ++gReloads;
}
static int32_t Reloads(void) { return gReloads; }
static KELPmethodDefinition counterMethods[] = {
    {(void *)Reload, KELP_NO_SETTER, "listDataReload()", NULL},
};
static KELPclassDefinition counter = {
    7, "ReloadCounter", NULL, 0, 0, NULL, NULL, NULL, 0, counterMethods, 1, NULL, 0, NULL, 0, NULL,
};

static KELPmethodDefinition methods[] = {
    {(void *)Open, KELP_NO_SETTER, "Open() As Database", NULL},
    {(void *)Log, KELP_NO_SETTER, "Log() As String", NULL},
    {(void *)HostOf, KELP_NO_SETTER, "HostOf(db As Database) As String", NULL},
    {(void *)Reloads, KELP_NO_SETTER, "Reloads() As Integer", NULL},
};
static KELPmoduleDefinition module = {7, "MemoryEngine", methods, 4};

EXPORT void KELPPluginMain(KELPResolver resolve) {
    kelp.build = (KelpString(*)(const char *, int32_t))resolve("KELPBuildString");
    kelp.wrapDatabase = (RuntimeObject * (*)(void *, KELPDatabaseEngineDefinition *))
        resolve("KELPdbDatabaseFromDBDatabase");
    kelp.wrapCursor = (RuntimeObject * (*)(void *, KELPDatabaseCursorDefinition *))
        resolve("KELPdbCursorFromDBCursor");
    kelp.host = (KelpString(*)(RuntimeObject *))resolve("KELPGetDBHost");
    kelp.dataOf = (void *(*)(RuntimeObject *))resolve("KELPGetDBFromKELPdbDatabase");
    ((void (*)(int32_t))resolve("RegisterPluginVersion"))(KELP_PLUGIN_VERSION);
    ((void (*)(KELPmoduleDefinition *))resolve("PluginRegisterModule"))(&module);
    ((void (*)(KELPclassDefinition *))resolve("PluginRegisterClass"))(&counter);
    ((void (*)(void *))resolve("PluginRegisterDBEngine"))(&engine);
    ((void (*)(void *))resolve("PluginRegisterDBCursor"))(&cursorDefinition);
}
