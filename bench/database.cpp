// The embedded database side by side with SQLite on the same workload, each
// line timed once on both and given as a ratio (SQLite's time / ours: above
// 1 means faster than SQLite).  Both wait for the disk at each commit.
#include "database/sql_engine.h"

#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

using namespace kelp::db;

namespace {

struct Engine {
    virtual ~Engine() = default;
    virtual void Run(const std::string &sql) = 0;
    virtual size_t Query(const std::string &sql) = 0; // rows read
    // Ours opens a transaction at the first change; SQLite needs the word.
    virtual void Begin() {}
};

struct Ours : Engine {
    Storage db;
    explicit Ours(const std::string &path) {
        if (!db.Create(path))
            std::printf("create: %s\n", db.LastError().message.c_str());
    }
    void Run(const std::string &sql) override {
        if (!SqlExecute(db, sql))
            std::printf("ours: %s: %s\n", sql.substr(0, 60).c_str(),
                        db.LastError().message.c_str());
    }
    size_t Query(const std::string &sql) override {
        auto rows = SqlSelect(db, sql);
        size_t n = 0;
        Error error;
        while (rows && rows->Next(error))
            ++n;
        if (!rows || error.Failed())
            std::printf("ours: %s: %s\n", sql.c_str(), db.LastError().message.c_str());
        return n;
    }
};

struct Lite : Engine {
    sqlite3 *db = nullptr;
    explicit Lite(const std::string &path) {
        sqlite3_open(path.c_str(), &db);
        Run("PRAGMA synchronous = FULL");
    }
    ~Lite() override { sqlite3_close(db); }
    void Begin() override { Run("BEGIN"); }
    void Run(const std::string &sql) override {
        char *message = nullptr;
        if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK)
            std::printf("sqlite: %s: %s\n", sql.substr(0, 60).c_str(), message);
        sqlite3_free(message);
    }
    size_t Query(const std::string &sql) override {
        sqlite3_stmt *statement = nullptr;
        sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr);
        size_t n = 0;
        while (sqlite3_step(statement) == SQLITE_ROW) {
            for (int i = 0; i < sqlite3_column_count(statement); ++i)
                sqlite3_column_text(statement, i);
            ++n;
        }
        sqlite3_finalize(statement);
        return n;
    }
};

double Seconds(const std::function<void()> &work) {
    auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::string InsertText(int k) {
    return "INSERT INTO t VALUES (" + std::to_string(k) + ", " + std::to_string(k % 100) + ", " +
           std::to_string(k * 7 % 1000) + ", 'name " + std::to_string(k * 7919 % 100003) + "')";
}

} // namespace

int main() {
    std::string folder = "/tmp/kelp-bench-database";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    std::unique_ptr<Engine> engines[2];
    const char *names[2] = {"ours", "sqlite"};
    std::string blob(1 << 20, 'b');
    struct Line {
        const char *what;
        std::function<void(Engine &)> work;
    };
    const std::vector<Line> lines = {
        {"create",
         [](Engine &e) {
             e.Begin();
             e.Run("CREATE TABLE t (k integer, g integer, n integer, v varchar(40), PRIMARY KEY "
                   "(k))");
             e.Run("CREATE TABLE u (k integer, m integer, w varchar(20), PRIMARY KEY (k))");
             e.Run("CREATE TABLE b (k integer, data long varchar, PRIMARY KEY (k))");
             e.Run("COMMIT");
         }},
        {"10,000 inserts, one transaction",
         [](Engine &e) {
             e.Begin();
             for (int k = 0; k < 10000; ++k)
                 e.Run(InsertText(k));
             e.Run("COMMIT");
         }},
        {"100,000 inserts, one transaction",
         [](Engine &e) {
             e.Begin();
             for (int k = 10000; k < 110000; ++k)
                 e.Run(InsertText(k));
             e.Run("COMMIT");
         }},
        {"1,000 inserts, each committed",
         [](Engine &e) {
             for (int k = 0; k < 1000; ++k) {
                 e.Begin();
                 e.Run("INSERT INTO u VALUES (" + std::to_string(k * 3) + ", " +
                       std::to_string(k * 3 + 1000000) + ", 'u')");
                 e.Run("COMMIT");
             }
         }},
        {"10,000 point selects by key",
         [](Engine &e) {
             for (int k = 0; k < 10000; ++k)
                 e.Query("SELECT v FROM t WHERE k = " + std::to_string(k * 11 % 110000));
         }},
        {"range scan of 10,000 rows",
         [](Engine &e) { e.Query("SELECT k, v FROM t WHERE k >= 50000 AND k < 60000"); }},
        {"ORDER BY on 110,000 rows", [](Engine &e) { e.Query("SELECT k, v FROM t ORDER BY v"); }},
        {"GROUP BY with count, avg, sum",
         [](Engine &e) { e.Query("SELECT g, count(*), avg(n), sum(n) FROM t GROUP BY g"); }},
        {"join of two tables on keys",
         [](Engine &e) { e.Query("SELECT t.v, u.w FROM u, t WHERE t.k = u.k"); }},
        {"key-changing UPDATE of 1,000 rows",
         [](Engine &e) {
             e.Begin();
             e.Run("UPDATE u SET k = m");
             e.Run("COMMIT");
         }},
        {"1 MB BLOB written and read",
         [&blob](Engine &e) {
             e.Begin();
             e.Run("INSERT INTO b VALUES (1, '" + blob + "')");
             e.Run("COMMIT");
             e.Query("SELECT data FROM b WHERE k = 1");
         }},
    };
    engines[0] = std::make_unique<Ours>(folder + "/ours.db");
    engines[1] = std::make_unique<Lite>(folder + "/sqlite.db");
    std::printf("%-36s %10s %10s %8s\n", "workload", names[0], names[1], "ratio");
    for (const Line &line : lines) {
        double t[2];
        for (int i = 0; i < 2; ++i)
            t[i] = Seconds([&] { line.work(*engines[i]); });
        std::printf("%-36s %9.3fs %9.3fs %8.2f\n", line.what, t[0], t[1], t[1] / t[0]);
    }
    engines[0].reset();
    engines[1].reset();
    double rows = 110000 + 1000;
    std::printf("file bytes per row: ours %.1f, sqlite %.1f\n",
                double(std::filesystem::file_size(folder + "/ours.db")) / rows,
                double(std::filesystem::file_size(folder + "/sqlite.db")) / rows);
    std::filesystem::remove_all(folder);
    return 0;
}
