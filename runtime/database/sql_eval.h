#pragma once
// Conditions on the rows of the tables in a statement, and the rows
// themselves as values per column.
#include "database/sql_statement.h"
#include "database/storage.h"

#include <vector>

namespace kelp::db {

using Values = std::vector<FieldValue>;

// The row of `cursor` as one value per column of `table`; BLOB columns get
// their content in `bytes`.
bool LoadRow(Storage &db, const Table &table, TreeCursor &cursor, Row &row, Values &values,
             Error &error);

// One test on a value, by the value's type: numbers numerically, text
// without regard to case (byte for byte after upper or lower), dates and
// times part by part, LIKE on the bytes; NULL passes only IS NULL.
bool TestValue(const WhereNode &test, const FieldValue &value, const std::string &literal);

// The condition on the current rows, one `Values` per table in FROM order.
bool Evaluate(const WhereNode &node, const std::vector<Values> &rows);

// The table of each column named in the node (the highest one).
int HighestTable(const WhereNode &node);
// The top-level AND chain's members.
void Conjuncts(const WhereNode &node, std::vector<const WhereNode *> &out);

} // namespace kelp::db
