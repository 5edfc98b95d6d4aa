#pragma once
// Statements as the parser leaves them for the executor.
#include "database/record.h"

#include <memory>
#include <string>
#include <vector>

namespace kelp::db {

struct Table;
struct Column;

enum Aggregate : uint8_t { kNoAggregate, kCount, kAvg, kSum, kMin, kMax };

enum Operator : uint8_t {
    kEqual,
    kLess,
    kGreater,
    kLessEqual,
    kGreaterEqual,
    kNotEqual,
    kLike,
    kNotLike,
    kIsNull,
    kIsNotNull,
    kAnd = 64,
    kOr = 65,
};

enum Function : uint8_t { kNoFunction = 0, kUpper = 2, kLower = 3 };

struct ColumnRef {
    std::string table; // as written, may be empty
    std::string name;
    int tableIndex = -1; // in FROM order, after validation
    int column = -1;     // index in the table's columns, after validation
};

struct SelectItem {
    ColumnRef ref;
    Aggregate aggregate = kNoAggregate;
    bool star = false;   // `*` or `table.*` before expansion
    bool hidden = false; // added for ORDER BY or GROUP BY
};

struct WhereNode {
    Operator op = kEqual;
    Function function = kNoFunction;
    ColumnRef left;
    bool rightIsColumn = false;
    std::string literal;
    ColumnRef right;
    std::unique_ptr<WhereNode> first, second; // of kAnd and kOr
};

struct FromTable {
    std::string name, alias;
    Table *table = nullptr;
};

struct SortKey {
    int item = -1; // index into the select items
    bool descending = false;
};

struct SelectStatement {
    std::vector<SelectItem> items;
    std::vector<FromTable> from;
    std::unique_ptr<WhereNode> where;
    std::vector<SortKey> order;
    std::vector<ColumnRef> orderNames; // names still to place, parallel to `order`
    bool grouped = false;              // the last item is the group column
    bool HasAggregate() const;
};

struct Assignment {
    std::string column;
    bool isColumn = false; // the value names a column
    bool isNull = false;
    std::string value;
};

struct DataStatement {
    enum Kind { kInsert, kUpdate, kDelete } kind = kInsert;
    std::string table;
    std::vector<Assignment> values; // INSERT without names: columns empty
    std::unique_ptr<WhereNode> where;
};

// Longer statements, and conditions nested deeper, are refused: the parser
// and the evaluator recurse once per AND or OR.
constexpr size_t kMaxStatementLength = 16 << 20;
constexpr int kMaxConditionDepth = 500;

} // namespace kelp::db
