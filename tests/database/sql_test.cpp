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

} // namespace
