// The SQL dialect: the statement/result corpus, the refusals with their
// codes and texts, and what the corpus cannot show (large sorts, BLOBs).
#include "database/sql_engine.h"
#include "database/sql_value.h"

#include "db_test_util.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

using namespace kelp::db;

namespace {

std::string Text(const FieldValue &v) {
    if (v.IsNull())
        return "NULL";
    if ((v.type == kDouble || v.type == kFloat) && std::abs(v.real) < 1e15 &&
        v.real == std::floor(v.real))
        return std::to_string(int64_t(v.real));
    if (v.type == kDouble || v.type == kFloat) {
        char buffer[40];
        std::snprintf(buffer, sizeof buffer, "%.15g", v.real);
        return buffer;
    }
    return ValueText(v);
}

// The rows of a query as "a|b" lines, or the error.
std::vector<std::string> Query(Storage &db, const std::string &sql) {
    auto rows = SqlSelect(db, sql);
    if (!rows)
        return {"error " + std::to_string(db.LastError().code) + " " + db.LastError().message};
    std::vector<std::string> lines;
    Error error;
    while (rows->Next(error)) {
        std::string line;
        for (const FieldValue &v : rows->Row())
            line += (line.empty() && &v == &rows->Row()[0] ? "" : "|") + Text(v);
        lines.push_back(line);
    }
    if (error.Failed())
        lines.push_back("error " + error.message);
    return lines;
}

class Corpus : public testing::TestWithParam<std::string> {};

TEST_P(Corpus, GivesTheListedRows) {
    TempFolder folder;
    Storage db;
    ASSERT_TRUE(db.Create(folder.File("corpus.db")));
    std::ifstream in(std::string(KELP_DATABASE_CORPUS) + "/" + GetParam());
    ASSERT_TRUE(in) << GetParam();
    std::string head, sql, line;
    int queries = 0;
    while (std::getline(in, head)) {
        if (head.empty() || head[0] == '#')
            continue;
        std::getline(in, sql);
        if (head == "statement ok") {
            EXPECT_TRUE(SqlExecute(db, sql)) << sql << ": " << db.LastError().message;
            continue;
        }
        std::vector<std::string> expected;
        std::getline(in, line); // ----
        while (std::getline(in, line) && !line.empty())
            expected.push_back(line);
        if (head.rfind("statement error", 0) == 0) {
            EXPECT_FALSE(SqlExecute(db, sql)) << sql;
            EXPECT_EQ(std::to_string(db.LastError().code) + " " + db.LastError().message,
                      expected.at(0))
                << sql;
            continue;
        }
        ++queries;
        EXPECT_EQ(Query(db, sql), expected) << sql;
    }
    EXPECT_GT(queries, 0);
}

INSTANTIATE_TEST_SUITE_P(Database, Corpus,
                         testing::Values("basics.test", "dialect.test", "errors.test"));

TEST(DatabaseSql, LimitsGiveTheirMessages) {
    TempFolder folder;
    Storage db;
    ASSERT_TRUE(db.Create(folder.File("limits.db")));
    auto columns = [](int n) {
        std::string sql = "CREATE TABLE c" + std::to_string(n) + " (";
        for (int i = 0; i < n; ++i)
            sql += (i ? ", c" : "c") + std::to_string(i) + " integer";
        return sql + ")";
    };
    auto nested = [](int n) {
        std::string sql = "SELECT a FROM t WHERE a = 1";
        for (int i = 0; i < n; ++i)
            sql += i % 2 ? " AND a = 1" : " OR a = 2";
        return sql;
    };
    const std::pair<std::string, std::string> cases[] = {
        {"CREATE TABLE t (a integer)", ""},
        {columns(256), ""},
        {columns(257), "Too many columns"},
        {nested(400), ""},
        {nested(600), "Condition nested too deeply"},
        {"SELECT a FROM t WHERE a = '" + std::string(17 << 20, 'x') + "'", "Statement too long"},
    };
    for (const auto &[sql, message] : cases) {
        EXPECT_EQ(SqlExecute(db, sql), message.empty()) << sql.substr(0, 40);
        EXPECT_EQ(db.LastError().message, message) << sql.substr(0, 40);
    }
}

// Enough rows to pass the sorter's memory budget several times over.
TEST(DatabaseSql, LargeSortsMergeTheirRuns) {
    TempFolder folder;
    Storage db;
    ASSERT_TRUE(db.Create(folder.File("sort.db")));
    db.pager().SetSync(false);
    ASSERT_TRUE(SqlExecute(db, "CREATE TABLE r (n integer, t varchar)"));
    std::mt19937 rnd(5);
    const int kRows = 20000;
    for (int i = 0; i < kRows; ++i) {
        std::string text(rnd() % 40, 'a');
        for (char &c : text)
            c = "aAbBz.-"[rnd() % 7];
        ASSERT_TRUE(SqlExecute(db, "INSERT INTO r VALUES (" + std::to_string(int(rnd() % 500)) +
                                       ", '" + std::string(text) + "')"));
    }
    auto rows = SqlSelect(db, "SELECT t, n FROM r ORDER BY t DESC, n");
    ASSERT_TRUE(rows);
    Error error;
    std::vector<Values> seen;
    while (rows->Next(error))
        seen.push_back(rows->Row());
    ASSERT_FALSE(error.Failed()) << error.message;
    ASSERT_EQ(seen.size(), size_t(kRows));
    for (size_t i = 1; i < seen.size(); ++i) {
        int c = CompareForSort(seen[i - 1][0], seen[i][0]);
        ASSERT_TRUE(c > 0 || (c == 0 && CompareForSort(seen[i - 1][1], seen[i][1]) <= 0)) << i;
    }
    auto groups = Query(db, "SELECT n, count(*) FROM r GROUP BY n");
    int total = 0;
    for (const std::string &line : groups)
        total += std::stoi(line.substr(line.find('|') + 1));
    EXPECT_EQ(total, kRows);
    EXPECT_EQ(groups.size(), 500u);
}

TEST(DatabaseSql, UpdatesAndBlobsThroughStatements) {
    TempFolder folder;
    Storage db;
    ASSERT_TRUE(db.Create(folder.File("u.db")));
    ASSERT_TRUE(
        SqlExecute(db, "CREATE TABLE s (a integer PRIMARY KEY, c integer, b long varchar)"));
    for (int i = 0; i < 600; ++i)
        ASSERT_TRUE(SqlExecute(db, "INSERT INTO s (a, c) VALUES (" + std::to_string(i) + ", " +
                                       std::to_string(i + 1000) + ")"));
    // Every row moves to a key above all others; a row met twice would swap back.
    ASSERT_TRUE(SqlExecute(db, "UPDATE s SET a = c, c = a")) << db.LastError().message;
    EXPECT_EQ(Query(db, "SELECT count(*), min(a), max(c) FROM s WHERE a >= 1000"),
              std::vector<std::string>{"600|1000|599"});
    std::string big(1 << 20, 'q');
    big[77] = 'Z';
    ASSERT_TRUE(SqlExecute(db, "UPDATE s SET b = '" + big + "' WHERE a = 1005"));
    ASSERT_TRUE(SqlExecute(db, "COMMIT"));
    auto rows = SqlSelect(db, "SELECT b FROM s WHERE a = 1005");
    Error error;
    ASSERT_TRUE(rows && rows->Next(error));
    EXPECT_TRUE(rows->Row()[0].bytes == big);
    EXPECT_EQ(Query(db, "SELECT a FROM s WHERE b LIKE '%Z%'"), std::vector<std::string>{"1005"});
    ASSERT_TRUE(SqlExecute(db, "DELETE FROM s WHERE a > 1002"));
    ASSERT_TRUE(SqlExecute(db, "ROLLBACK"));
    EXPECT_EQ(Query(db, "SELECT count(*) FROM s"), std::vector<std::string>{"600"});
}

} // namespace
