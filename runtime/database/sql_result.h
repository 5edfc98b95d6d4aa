#pragma once
// What a SELECT gives: rows of values, read one at a time.  A plain select
// reads straight off the tables through a join cursor; a sorted or grouped
// one reads rows that were collected first.
#include "database/sql_eval.h"
#include "files/unix_data_file.h"

#include <memory>
#include <string>
#include <vector>

namespace kelp::db {

struct ResultColumn {
    std::string name;
    uint8_t type = kNull; // a type code; count(*) is an integer, other aggregates doubles
};

class ResultSet {
public:
    virtual ~ResultSet() = default;
    // The next row; false at the end (error unset) or on failure.
    bool Next(Error &error);
    // The current row's visible values.
    const Values &Row() const { return mRow; }
    const std::vector<ResultColumn> &Columns() const { return mColumns; }
    void SetColumns(std::vector<ResultColumn> columns) { mColumns = std::move(columns); }

    // Every column of the next row, hidden ones included.
    virtual bool Fetch(Values &row, Error &error) = 0;

private:
    Values mRow;
    std::vector<ResultColumn> mColumns;
};

class RowsResult : public ResultSet {
public:
    explicit RowsResult(std::vector<Values> rows) : mRows(std::move(rows)) {}
    bool Fetch(Values &row, Error &error) override;

private:
    std::vector<Values> mRows;
    size_t mNext = 0;
};

// The nested loop over the FROM tables, the first outermost.  Each test of
// the condition's top AND chain is checked as soon as the tables it names
// are positioned; an OR stays whole.  An equality on an integer first key
// column, against a literal or an outer table's value, seeks instead of
// scanning.
class JoinCursor : public ResultSet {
public:
    JoinCursor(Storage &db, std::shared_ptr<const SelectStatement> select);
    bool Fetch(Values &row, Error &error) override;

private:
    struct Level {
        Table *table;
        std::unique_ptr<TreeCursor> cursor;
        std::vector<const WhereNode *> tests;
        bool fresh = false;
        std::string start;     // first key to seek, or empty for the first row
        int keyColumn = -1;    // an integer first key column bounded from above,
        int64_t upper = 0;     // by this value,
        bool inclusive = true; // itself included
    };
    void Bound(size_t level);
    bool Open(size_t level, Error &error);
    bool Passes(size_t level) const;

    Storage &mDb;
    std::shared_ptr<const SelectStatement> mSelect;
    std::vector<Level> mLevels;
    std::vector<Values> mValues; // the current row of each table
    kelp::db::Row mScratch;
    uint64_t mEpoch;
    bool mStarted = false, mDone = false;
};

// Rows in sort order within a memory budget: full budgets are sorted and
// written out as runs, and the runs are merged as they are read.
class RowSorter {
public:
    explicit RowSorter(std::vector<SortKey> keys) : mKeys(std::move(keys)) {}
    ~RowSorter();
    bool Add(Values row, Error &error);
    std::unique_ptr<ResultSet> Finish(Error &error);
    // The sorter's order: the keys, then every column in turn.
    static int CompareRows(const std::vector<SortKey> &keys, const Values &a, const Values &b);

    static constexpr size_t kBudget = 640000;

private:
    bool Spill(Error &error);

    std::vector<SortKey> mKeys;
    std::vector<Values> mRows;
    size_t mUsed = 0;
    size_t mWidth = 0;
    std::vector<std::unique_ptr<UnixDataFile>> mRuns;
};

} // namespace kelp::db
