#pragma once
// The SQL entry points of a database: one statement per call.  The error
// (code and text) is left in the storage's `LastError()`, cleared first.
#include "database/sql_result.h"
#include "database/storage.h"

#include <memory>
#include <string_view>

namespace kelp::db {

// A SELECT's rows, or null with the error set.  The rows read the tables
// as they go: they end with an error once the tables are read again
// (rollback, reopening), and must not outlive the storage.
std::unique_ptr<ResultSet> SqlSelect(Storage &db, std::string_view sql);
// Any statement; false with the error set.
bool SqlExecute(Storage &db, std::string_view sql);

} // namespace kelp::db
