// Fuzz entry for the SQL parser and executor: each input is one statement
// run on a small database, whose transaction is then rolled back.  Any
// statement must end with rows or an error text, never a crash or a hang.
#include "database_input.h"

#include "database/sql_engine.h"

#include <cstdlib>
#include <string>
#include <unistd.h>

using namespace kelp::db;

namespace {

Storage &Database() {
    static Storage db;
    if (!db.IsOpen()) {
        char name[] = "/tmp/kelp-sql-fuzz-XXXXXX";
        int fd = mkstemp(name);
        if (fd < 0)
            std::abort();
        close(fd);
        db.Create(name);
        unlink(name);
        db.pager().SetSync(false);
        const char *setup[] = {
            "CREATE TABLE t (a integer, b varchar(20), c double, d date, PRIMARY KEY (a))",
            "CREATE TABLE u (a integer, e varchar, f long varchar, g boolean, h time)",
            "INSERT INTO t VALUES (1, 'one', 1.5, '2020-01-02')",
            "INSERT INTO t VALUES (2, 'Two', -3, '1999-12-31')",
            "INSERT INTO u VALUES (1, 'x', 'blob text', 'true', '10:11:12')",
            "INSERT INTO u VALUES (2, NULL, NULL, 'false', '23:59:59')",
            "COMMIT"};
        for (const char *sql : setup)
            if (!SqlExecute(db, sql))
                std::abort();
    }
    return db;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    Storage &db = Database();
    std::string sql(reinterpret_cast<const char *>(data), size);
    auto rows = SqlSelect(db, sql);
    if (rows) {
        Error error;
        for (int n = 0; n < 10000 && rows->Next(error); ++n) {}
    } else if (!db.LastError().Failed()) {
        std::abort(); // a refusal always says why
    }
    rows.reset();
    if (!SqlExecute(db, sql) && !db.LastError().Failed())
        std::abort();
    db.Rollback();
    return 0;
}
