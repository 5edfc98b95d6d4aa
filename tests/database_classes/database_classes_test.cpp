// The database classes on real database files: rows read through record
// sets agree with SQLite on the same statements, each field type reads as
// every type, edits reach the file (checked by opening it again), and what
// a program leaves open is closed and committed at the end.
#include "database_classes/database_object.h"

#include "dates/date_common.h"
#include "objects/definitions.h"
#include "support/class_kit.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

namespace kelp::test {
namespace {

std::string Take(KelpString s) {
    std::string out = Str(s);
    RuntimeUnlockString(s);
    return out;
}

// Holds the objects a test makes and releases them at its end.
struct Held {
    std::vector<RuntimeObject *> objects;
    RuntimeObject *operator()(RuntimeObject *o) {
        objects.push_back(o);
        return o;
    }
    ~Held() {
        for (auto it = objects.rbegin(); it != objects.rend(); ++it)
            RuntimeUnlockObject(*it);
    }
};

class DatabaseClasses : public ::testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/kelp-dbc-XXXXXX";
        mFolder = mkdtemp(name);
    }
    void TearDown() override { std::filesystem::remove_all(mFolder); }

    RuntimeObject *File(const std::string &name) {
        return keep(RuntimeGetFolderItem(Lit(mFolder + "/" + name), 0));
    }
    RuntimeObject *Create(const std::string &name) { return keep(newKELPDatabase(File(name))); }
    RuntimeObject *Open(const std::string &name) { return keep(openKELPDatabase(File(name))); }
    void Exec(RuntimeObject *db, const std::string &sql) {
        databaseSQLExecute(db, Lit(sql));
        ASSERT_EQ(databaseErrorCodeGetter(db, 0), 0)
            << sql << ": " << Take(databaseErrorStringGetter(db, 0));
    }
    RuntimeObject *Select(RuntimeObject *db, const std::string &sql) {
        return keep(databaseSQLSelect(db, Lit(sql)));
    }
    std::string Field(RuntimeObject *rs, int32_t index) {
        RuntimeObject *f = keep(cursorGetFieldByIndex(rs, index));
        return f ? Take(cursorFieldStringValueGetter(f, 0)) : "<nil>";
    }
    // Every row from the current one on: values by "|", rows by ";".
    std::string Rows(RuntimeObject *rs) {
        std::string out;
        for (; rs && !cursorEOFGetter(rs, 0); cursorMoveNext(rs)) {
            for (int32_t i = 1; i <= cursorFieldCount(rs, 0); ++i)
                out += (i > 1 ? "|" : "") + Field(rs, i);
            out += ";";
        }
        return out;
    }

    Held keep;
    std::string mFolder;
};

// The same statements in SQLite, rows printed as Rows prints ours.
std::string Sqlite(const std::vector<std::string> &setup, const std::string &select) {
    std::string script = "import sqlite3\nc = sqlite3.connect(':memory:')\n";
    for (const std::string &s : setup)
        script += "c.execute(" + std::string("'''") + s + "''')\n";
    script += "t = lambda v: '' if v is None else repr(v)[:-2] if isinstance(v, float) and "
              "v.is_integer() else str(v)\n";
    script += "print(''.join('|'.join(t(v) for v in r) + ';' for r in c.execute('''" + select +
              "''')), end='')\n";
    std::string path = std::filesystem::temp_directory_path() / "kelp-dbc-sqlite.py";
    FILE *f = std::fopen(path.c_str(), "w");
    std::fputs(script.c_str(), f);
    std::fclose(f);
    std::string out;
    if (FILE *pipe = popen(("python3 " + path + " 2>&1").c_str(), "r")) {
        char buffer[4096];
        for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
            out.append(buffer, n);
        pclose(pipe);
    }
    std::remove(path.c_str());
    return out;
}

TEST_F(DatabaseClasses, RecordSetsAgreeWithSqlite) {
    const std::vector<std::string> setup = {
        "create table t (id integer, name varchar(20), score double)",
        "create table u (id integer, city varchar(20))",
        "insert into t (id, name, score) values (1, 'Ann', 2.5)",
        "insert into t (id, name, score) values (2, 'O''Brien', 10.25)",
        "insert into t (id, name, score) values (3, 'Cy', 7)",
        "insert into t (id, name) values (4, 'Dee')",
        "insert into u (id, city) values (1, 'Oslo')",
        "insert into u (id, city) values (3, 'Rome')",
        "insert into u (id, city) values (3, 'Bonn')",
    };
    const char *selects[] = {
        "select id, name from t",
        "select name, score from t where score > 5 order by score desc",
        "select t.name, u.city from t, u where u.id = t.id order by u.city",
        "select name from t where id = 2 or name = 'Cy' order by name",
        "select id, count(*) from u group by id",
        "select name from t where score is null",
    };
    RuntimeObject *db = Create("agree.kdb");
    ASSERT_NE(db, nullptr);
    for (const std::string &s : setup)
        Exec(db, s);
    for (const char *select : selects) {
        std::string ours = Rows(Select(db, select));
        EXPECT_EQ(ours, Sqlite(setup, select)) << select;
        EXPECT_NE(ours, "") << select;
    }
}

TEST_F(DatabaseClasses, EachFieldTypeReadsAsEveryType) {
    RuntimeObject *db = Create("types.kdb");
    Exec(db, "create table v (s smallint, i integer, t varchar(10), f float, d double, dt date, "
             "tm time, b boolean, lt long varchar, n integer)");
    Exec(db, "insert into v (s, i, t, f, d, dt, tm, b, lt) values ('-7', '42', '12abc', '1.5', "
             "'2.25', '2024-02-29', '13:05:09', 'true', 'TRUE')");
    RuntimeObject *rs = Select(db, "select * from v");
    ASSERT_NE(rs, nullptr);
    struct Case {
        const char *name;
        int32_t type;
        const char *text;
        int32_t integer;
        double real;
        bool boolean;
    } cases[] = {
        {"S", 2, "-7", -7, -7, true},       {"i", 3, "42", 42, 42, true},
        {"t", 5, "12abc", 12, 12, false},   {"f", 6, "1.5", 1, 1.5, true},
        {"d", 7, "2.25", 2, 2.25, true},    {"dt", 8, "2024-02-29", 0, 0, false},
        {"tm", 9, "13:05:09", 0, 0, false}, {"b", 12, "true", 1, 1, true},
        {"LT", 15, "TRUE", 0, 0, true},     {"n", 3, "", 0, 0, false},
    };
    for (size_t c = 0; c < std::size(cases); ++c) {
        const Case &k = cases[c];
        RuntimeObject *f = keep(cursorGetFieldByName(rs, Lit(k.name)));
        ASSERT_NE(f, nullptr) << k.name;
        EXPECT_EQ(RecordSetColumnType(rs, int32_t(c) + 1), k.type) << k.name;
        EXPECT_EQ(Take(cursorFieldStringValueGetter(f, 0)), k.text) << k.name;
        EXPECT_EQ(Take(CursorFieldConvertToString(f)), k.text) << k.name;
        EXPECT_EQ(cursorFieldIntegerValueGetter(f, 0), k.integer) << k.name;
        EXPECT_DOUBLE_EQ(cursorFieldDoubleValueGetter(f, 0), k.real) << k.name;
        EXPECT_EQ(CursorFieldBooleanValueGetter(f, 0), k.boolean) << k.name;
    }
    // Dates and times become Date objects; the variant keeps each kind.
    RuntimeObject *date =
        keep(cursorFieldDateValueGetter(keep(cursorGetFieldByName(rs, Lit("dt"))), 0));
    EXPECT_EQ(std::string(SQLDateTimeOf(date).View()).substr(0, 10), "2024-02-29");
    RuntimeObject *time = keep(CursorFieldConvertToDate(keep(cursorGetFieldByName(rs, Lit("tm")))));
    EXPECT_EQ(std::string(SQLDateTimeOf(time).View()).substr(11), "13:05:09");
    RuntimeObject *text =
        keep(cursorFieldDateValueGetter(keep(cursorGetFieldByName(rs, Lit("t"))), 0));
    EXPECT_EQ(text, nullptr); // "12abc" is no date
    EXPECT_EQ(variantToInt(keep(CursorFieldValueGetter(keep(cursorGetFieldByIndex(rs, 2)), 0))),
              42);
    EXPECT_EQ(variantToDouble(keep(CursorFieldValueGetter(keep(cursorGetFieldByIndex(rs, 5)), 0))),
              2.25);
    EXPECT_EQ(CursorFieldValueGetter(keep(cursorGetFieldByIndex(rs, 10)), 0), nullptr);
    // Unknown names and indexes give nil, not an exception.
    EXPECT_EQ(cursorGetFieldByName(rs, Lit("missing")), nullptr);
    EXPECT_EQ(cursorGetFieldByIndex(rs, 11), nullptr);
    EXPECT_EQ(cursorGetFieldByIndex(rs, 0), nullptr);
    EXPECT_EQ(Take(cursorFieldNameGetter(keep(cursorGetFieldByName(rs, Lit("TM"))), 0)), "tm");
}

TEST_F(DatabaseClasses, EditsReachTheFile) {
    RuntimeObject *db = Create("edit.kdb");
    Exec(db, "create table p (id integer, name varchar(20), born date)");
    for (const char *row :
         {"(1, 'Ann', '2001-01-01')", "(2, 'Bob', '2002-02-02')", "(3, 'Cy', '2003-03-03')"})
        Exec(db, std::string("insert into p (id, name, born) values ") + row);
    RuntimeObject *rs = Select(db, "select * from p");
    RuntimeObject *name = keep(cursorGetFieldByName(rs, Lit("name")));
    cursorFieldStringValueSetter(name, 0, Lit("ignored")); // no Edit yet
    cursorEdit(rs);
    cursorFieldStringValueSetter(name, 0, Lit("O'Brien"));
    EXPECT_EQ(Take(cursorFieldStringValueGetter(name, 0)), "O'Brien");
    CursorFieldValueSetter(keep(cursorGetFieldByName(rs, Lit("born"))), 0, nullptr);
    cursorUpdate(rs);
    EXPECT_EQ(databaseErrorCodeGetter(db, 0), 0) << Take(databaseErrorStringGetter(db, 0));
    cursorMoveNext(rs);
    cursorDeleteRecord(rs);
    cursorMoveNext(rs);
    cursorEdit(rs);
    cursorFieldIntegerValueSetter(keep(cursorGetFieldByName(rs, Lit("id"))), 0, 30);
    cursorFieldDateValueSetter(keep(cursorGetFieldByName(rs, Lit("born"))), 0,
                               keep(NewDate(1999, 12, 31, 8, 0, 0)));
    cursorUpdate(rs);
    cursorClose(rs);
    EXPECT_TRUE(cursorEOFGetter(rs, 0));
    databaseCommit(db);
    databaseClose(db);
    RuntimeObject *again = Open("edit.kdb");
    EXPECT_EQ(Rows(Select(again, "select id, name, born from p order by id")),
              "1|O'Brien|;30|Cy|1999-12-31;");
}

TEST_F(DatabaseClasses, OnlyHeldRowsMoveBackAndCount) {
    RuntimeObject *db = Create("move.kdb");
    Exec(db, "create table m (k integer)");
    for (int k : {3, 1, 2})
        Exec(db, "insert into m (k) values (" + std::to_string(k) + ")");
    struct Case {
        const char *sql;
        int32_t count;
        const char *walk; // first, after MoveLast, after MovePrevious, after MoveFirst
    } cases[] = {
        {"select k from m order by k", 3, "1 3 2 1"},
        {"select k from m", -1, "3 3 3 3"},
        {"select k from m where k > 5 order by k", 0, "<nil> <nil> <nil> <nil>"},
    };
    for (const Case &c : cases) {
        RuntimeObject *rs = Select(db, c.sql);
        EXPECT_EQ(RecordSetRecordCount(rs), c.count) << c.sql;
        auto at = [&] { return cursorEOFGetter(rs, 0) ? std::string("<nil>") : Field(rs, 1); };
        std::string walk = at();
        for (void (*move)(RuntimeObject *) : {&CursorMoveLast, &CursorMovePrev, &CursorMoveFirst}) {
            move(rs);
            walk += " " + at();
        }
        EXPECT_EQ(walk, c.walk) << c.sql;
        CursorMovePrev(rs);
        EXPECT_EQ(cursorBOFGetter(rs, 0), c.count >= 0) << c.sql;
    }
}

TEST_F(DatabaseClasses, ErrorsAreReadBackNotRaised) {
    RuntimeObject *bare = keep(NewObjectOfDefinition(KELPDatabaseDefinition()));
    EXPECT_FALSE(KELPDatabaseConnect(bare));
    EXPECT_EQ(databaseErrorCodeGetter(bare, 0), 1);
    EXPECT_EQ(Take(databaseErrorStringGetter(bare, 0)), "A Database file was not specified");
    EXPECT_FALSE(KELPDatabaseCreateDatabaseFile(bare));
    EXPECT_EQ(databaseSQLSelect(bare, Lit("select * from t")), nullptr);

    RuntimeObject *db = Create("errors.kdb");
    EXPECT_EQ(databaseSQLSelect(db, Lit("select * from nowhere")), nullptr);
    EXPECT_TRUE(databaseErrorGetter(db, 0));
    EXPECT_EQ(databaseErrorCodeGetter(db, 0), 202);
    EXPECT_NE(Take(databaseErrorStringGetter(db, 0)), "");
    Exec(db, "create table t (a integer)"); // clears the error
    EXPECT_FALSE(databaseErrorGetter(db, 0));
    EXPECT_EQ(openKELPDatabase(File("absent.kdb")), nullptr);
    std::FILE *junk = std::fopen((mFolder + "/junk.kdb").c_str(), "w");
    std::fputs("this is not a database", junk);
    std::fclose(junk);
    EXPECT_EQ(openKELPDatabase(File("junk.kdb")), nullptr);
}

TEST_F(DatabaseClasses, RecordsInsertTypedValuesAndSchemasDescribeTables) {
    RuntimeObject *db = Create("records.kdb");
    Exec(db, "create table r (id integer not null, note varchar(30), w double, ok boolean, "
             "day date, data long varbinary, primary key (id))");
    RuntimeObject *record = keep(NewDatabaseRecord());
    setDatabaseRecordIntegerColumn(record, Lit("id"), 7);
    setDatabaseRecordColumn(record, Lit("note"), Lit("it's"));
    setDatabaseRecordDoubleColumn(record, Lit("w"), 0.1);
    SetDatabaseRecordBooleanColumn(record, Lit("ok"), true);
    setDatabaseRecordDateColumn(record, Lit("day"), keep(NewDate(2020, 5, 6, 7, 8, 9)));
    std::string blob(70000, '\0');
    for (size_t i = 0; i < blob.size(); ++i)
        blob[i] = char(i * 7);
    SetDatabaseRecordBlobColumn(record, Lit("data"),
                                string::FromBytes(blob.data(), long(blob.size()), 0).Release());
    setDatabaseRecordColumn(record, Lit("NOTE"), Lit("it's mine")); // replaces
    EXPECT_EQ(getDatabaseRecordFieldCount(record, 0), 6);
    EXPECT_EQ(Take(getDatabaseRecordIndString(record, 2)), "note");
    EXPECT_EQ(getDatabaseRecordIntegerColumn(record, Lit("ID")), 7);
    databaseInsertRecord(db, Lit("r"), record);
    ASSERT_EQ(databaseErrorCodeGetter(db, 0), 0) << Take(databaseErrorStringGetter(db, 0));
    databaseClose(db);

    RuntimeObject *again = Open("records.kdb");
    RuntimeObject *rs = Select(again, "select id, note, w, ok, day from r");
    EXPECT_EQ(Rows(rs), "7|it's mine|0.1|true|2020-05-06;");
    RuntimeObject *data = Select(again, "select data from r");
    EXPECT_EQ(Take(cursorFieldNativeValueGetter(keep(cursorGetFieldByIndex(data, 1)), 0)), blob);
    EXPECT_EQ(Rows(databaseTableSchema(again)), "r;");
    EXPECT_EQ(Rows(keep(databaseFieldSchema(again, Lit("r")))),
              "id|3|true|true|-1;note|5|false|false|30;w|7|false|false|-1;"
              "ok|12|false|false|-1;day|8|false|false|-1;data|16|false|false|-1;");
    EXPECT_EQ(databaseIndexSchema(again, Lit("r")), nullptr);
}

TEST_F(DatabaseClasses, ScrollableCursorHoldsEveryRow) {
    RuntimeObject *db = Create("scroll.kdb");
    Exec(db, "create table s (k integer, v varchar(5))");
    for (int k = 0; k < 300; ++k)
        Exec(db,
             "insert into s (k, v) values (" + std::to_string(k) + (k % 7 ? ", 'x')" : ", NULL)"));
    RuntimeObject *rs = Select(db, "select k, v from s order by k desc");
    RuntimeObject *cursor = keep(NewObjectOfDefinition(ScrollableCursorDefinition()));
    scrollableCursorConstructor(cursor, rs);
    EXPECT_TRUE(cursorEOFGetter(rs, 0));
    ASSERT_EQ(scrollableCursorGetCount(cursor), 300);
    for (int32_t row : {0, 1, 299 - 7, 299}) {
        RuntimeObject *r = keep(scrollableCursorGetRow(cursor, row));
        EXPECT_EQ(getDatabaseRecordIntegerColumn(r, Lit("k")), 299 - row);
        EXPECT_EQ(getDatabaseRecordFieldCount(r, 0), (299 - row) % 7 ? 2 : 1) << row;
    }
    EXPECT_EQ(scrollableCursorGetRow(cursor, 300), nullptr);
    EXPECT_EQ(scrollableCursorGetRow(cursor, -1), nullptr);
}

TEST_F(DatabaseClasses, TheRunDownClosesAndCommitsWhatIsOpen) {
    RuntimeObject *db = Create("left.kdb");
    KELPDatabaseSyncSetter(db, 0, false); // a bulk load; Close still writes it
    Exec(db, "create table l (k integer)");
    for (int k = 0; k < 50; ++k)
        Exec(db, "insert into l (k) values (" + std::to_string(k) + ")");
    RuntimeObject *rs = Select(db, "select k from l");
    EXPECT_FALSE(cursorEOFGetter(rs, 0));
    CloseAllDatabases();
    EXPECT_TRUE(cursorEOFGetter(rs, 0));
    RuntimeObject *again = Open("left.kdb");
    EXPECT_EQ(Rows(Select(again, "select count(*) from l")), "50;");
    EXPECT_FALSE(std::filesystem::exists(mFolder + "/left.kdb-journal"));
}

} // namespace
} // namespace kelp::test
