#pragma once
// The recursive parser of the dialect: one statement per text, read token
// by token.  Each refusal sets the error's code and text and answers false.
#include "database/db_error.h"
#include "database/sql_lexer.h"
#include "database/sql_statement.h"
#include "database/storage.h"

namespace kelp::db {

class SqlParser {
public:
    SqlParser(std::string_view text, Error &error) : mLexer(text), mError(error) {}

    // The first word of the statement, upper-cased ("" at the end).
    std::string Head();
    bool ParseSelect(SelectStatement &select);
    bool ParseCreate(std::string &table, std::vector<Column> &columns);
    bool ParseAlter(std::string &table, Column &column);
    bool ParseInsert(DataStatement &statement);
    bool ParseUpdate(DataStatement &statement);
    bool ParseDelete(DataStatement &statement);
    // Nothing may follow a whole statement.
    bool ParseEnd();

private:
    bool Expect(std::string_view keyword, int32_t code, const char *message);
    bool ColumnName(const Token &first, ColumnRef &ref, const char *message);
    bool Condition(std::unique_ptr<WhereNode> &node, int depth);
    bool Test(std::unique_ptr<WhereNode> &node);
    bool Type(Column &column);
    bool Syntax(const std::string &message) { return mError.Set(kSyntaxError, message); }

    Lexer mLexer;
    Error &mError;
};

} // namespace kelp::db
