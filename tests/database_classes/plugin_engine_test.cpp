// A plug-in's engine through the Database class: the plug-in wraps its own
// data with the host's calls, and what the engine does not offer (insert,
// update, delete, commit) reaches it as statements whose text is fixed.
#include "database_classes/database_object.h"
#include "objects/definitions.h"
#include "plugins/database_registry.h"
#include "plugins/host.h"

#include "support/class_kit.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace kelp::test {
namespace {

void *Entry(const std::string &declaration) {
    static const bool loaded = [] {
        RuntimeInitExternalClasses();
        std::string error;
        bool ok = plugins::LoadPluginLibrary(KELP_BIN_DIR "/libKPMemoryEngine.so", "", error);
        EXPECT_EQ(error, "");
        plugins::LinkPluginClasses(nullptr);
        plugins::ForgetEntryTableForTest();
        return ok;
    }();
    EXPECT_TRUE(loaded);
    return RuntimeLookupPluginEntrypoint(Lit("MemoryEngine." + declaration));
}

std::string Take(KelpString s) {
    std::string out = Str(s);
    RuntimeUnlockString(s);
    return out;
}

TEST(PluginEngine, MissingSlotsBecomeTheseStatements) {
    auto open = reinterpret_cast<RuntimeObject *(*)()>(Entry("Open() As Database"));
    auto log = reinterpret_cast<KelpString (*)()>(Entry("Log() As String"));
    ASSERT_TRUE(open && log);
    RuntimeObject *db = open();
    ASSERT_NE(db, nullptr);
    EXPECT_TRUE(DatabaseConnect(db));

    RuntimeObject *record = NewDatabaseRecord();
    setDatabaseRecordIntegerColumn(record, Lit("id"), 3);
    setDatabaseRecordColumn(record, Lit("name"), Lit("O'Neil"));
    databaseInsertRecord(db, Lit("people"), record);
    RuntimeUnlockObject(record);

    RuntimeObject *rs = databaseSQLSelect(db, Lit("SELECT id, name FROM people WHERE id > 0"));
    ASSERT_NE(rs, nullptr);
    EXPECT_EQ(RecordSetRecordCount(rs), -1); // the engine has no row count
    CursorMoveLast(rs);                      // nor row access: it stays put
    RuntimeObject *name = cursorGetFieldByName(rs, Lit("NAME"));
    EXPECT_EQ(Take(cursorFieldStringValueGetter(name, 0)), "Ann");
    cursorEdit(rs);
    cursorFieldStringValueSetter(name, 0, Lit("O'Brien"));
    CursorFieldValueSetter(cursorGetFieldByIndex(rs, 1), 0, nullptr);
    cursorUpdate(rs);
    cursorMoveNext(rs);
    cursorDeleteRecord(rs);
    cursorMoveNext(rs);
    EXPECT_TRUE(cursorEOFGetter(rs, 0));
    RuntimeUnlockObject(name);
    databaseCommit(db);
    databaseRollback(db);
    KelpString fail = Lit("fail now");
    databaseSQLExecute(db, fail);
    EXPECT_EQ(databaseErrorCodeGetter(db, 0), 77);
    EXPECT_EQ(Take(databaseErrorStringGetter(db, 0)), "refused");
    databaseClose(db);
    EXPECT_TRUE(cursorEOFGetter(rs, 0)); // closing the database closed its record sets
    RuntimeUnlockObject(rs);
    RuntimeUnlockObject(db);

    EXPECT_EQ(Take(log()), "insert into people (id,name) values ('3','O''Neil')\n"
                           "SELECT id, name FROM people WHERE id > 0\n"
                           "UPDATE [people] SET [id] = NULL, [name] = 'O''Brien' "
                           "WHERE [id] = '1' AND [name] = 'Ann'\n"
                           "DELETE FROM [people] WHERE [id] = '2' AND [name] = 'Bob'\n"
                           "commit\n"
                           "rollback\n"
                           "fail now\n"
                           "commit\n"
                           "closed\n");
}

TEST(PluginEngine, HostCallsReadTheDatabaseAndCheckTables) {
    auto open = reinterpret_cast<RuntimeObject *(*)()>(Entry("Open() As Database"));
    auto hostOf = reinterpret_cast<KelpString (*)(RuntimeObject *)>(
        Entry("HostOf(db As Database) As String"));
    ASSERT_TRUE(open && hostOf);
    EXPECT_EQ(plugins::RegisteredDBEngines().size(), 1u);
    EXPECT_EQ(plugins::RegisteredDBCursors().size(), 1u);
    RuntimeObject *db = open();
    stringSetter(db, offsetof(DatabaseObject, host), Lit("db.example"));
    stringSetter(db, offsetof(DatabaseObject, userName), Lit("kim"));
    EXPECT_EQ(Take(hostOf(db)), "db.example");
    EXPECT_EQ(Take(KELPGetDBUserName(db)), "kim");
    EXPECT_EQ(Take(KELPGetDBPassword(db)), "");
    EXPECT_EQ(KELPGetDBHost(nullptr), nullptr);

    // Tables of an older format are refused, not read past their end.
    KELPDatabaseEngineDefinition old{};
    old.version = 3;
    EXPECT_EQ(KELPdbDatabaseFromDBDatabase(&old, &old), nullptr);
    KELPDatabaseCursorDefinition oldCursor{};
    oldCursor.version = 2;
    EXPECT_EQ(KELPdbCursorFromDBCursor(&oldCursor, &oldCursor), nullptr);
    EXPECT_EQ(KELPConstructDBDatabase(Lit("NoSuchClass")), nullptr);
    EXPECT_EQ(KELPConstructDBDatabase(Lit("Date")), nullptr); // not a Database
    RuntimeObject *made = KELPConstructDBDatabase(Lit("KELPDatabase"));
    EXPECT_TRUE(IsKELPDatabase(made));
    RuntimeUnlockObject(made);
    databaseClose(db);
    RuntimeUnlockObject(db);
}

TEST(PluginEngine, QueriesTakeParametersAsLiteralsAndTellTheirReceivers) {
    auto reloads = reinterpret_cast<int32_t (*)()>(Entry("Reloads() As Integer"));
    ASSERT_TRUE(reloads);
    char folder[] = "/tmp/kelp-dbq-XXXXXX";
    ASSERT_TRUE(mkdtemp(folder));
    RuntimeObject *file = RuntimeGetFolderItem(Lit(std::string(folder) + "/q.kdb"), 0);
    RuntimeObject *db = newKELPDatabase(file);
    databaseSQLExecute(db, Lit("create table w (n integer, word varchar(20))"));
    for (const char *row : {"(1, 'one')", "(2, 'two')", "(3, 'it''s')"})
        databaseSQLExecute(db, Lit(std::string("insert into w (n, word) values ") + row));
    RuntimeObject *query = NewObjectOfDefinition(DatabaseQueryDefinition());
    ASSERT_TRUE(KELPSetPropValueObject(query, "Database", db));
    ASSERT_TRUE(KELPSetPropValueString(query, "SQLQuery",
                                       Lit("select n from w where word = :w or n > :n")));
    RuntimeObject *counter = PluginNewInstance("ReloadCounter");
    ASSERT_NE(counter, nullptr);
    databaseQueryAddLDNR(query, counter);
    databaseQueryAddLDNR(query, counter); // once only
    struct Case {
        const char *word, *n;
        int32_t count;
    } cases[] = {
        {"two", "5", 1},
        {"it's", "5", 1},
        {"x' or 'a' = 'a", "9", 0},
        {":n", "2", 1},
    };
    int32_t before = reloads();
    for (const Case &c : cases) {
        databaseQuerySetParameter(query, Lit("W"), Lit(c.word));
        databaseQuerySetParameter(query, Lit("n"), Lit(c.n));
        databaseQueryRunQuery(query);
        EXPECT_EQ(databaseQueryGetCount(query), c.count) << c.word;
    }
    EXPECT_EQ(reloads() - before, int32_t(std::size(cases)));
    RuntimeObject *last = databaseQueryGetRow(query, 0);
    EXPECT_EQ(getDatabaseRecordIntegerColumn(last, Lit("n")), 3);
    EXPECT_EQ(databaseQueryGetRow(query, 1), nullptr);
    databaseQueryRemoveLDNR(query, counter);
    databaseQueryRunQuery(query);
    EXPECT_EQ(reloads() - before, int32_t(std::size(cases)));
    for (RuntimeObject *o : {last, counter, query, db, file})
        RuntimeUnlockObject(o);
    std::filesystem::remove_all(folder);
}

} // namespace
} // namespace kelp::test
