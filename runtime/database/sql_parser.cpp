#include "database/sql_parser.h"

#include <algorithm>

namespace kelp::db {

namespace {

bool IsReserved(const Token &t) {
    for (const char *word : {"WHERE", "ORDER", "GROUP", "FROM", "AND", "OR", "BY"})
        if (t.Is(word))
            return true;
    return false;
}

bool AllDigits(const std::string &s) {
    return !s.empty() &&
           std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

bool SelectStatement::HasAggregate() const {
    return std::any_of(items.begin(), items.end(),
                       [](const SelectItem &i) { return i.aggregate != kNoAggregate; });
}

std::string SqlParser::Head() {
    Token t = mLexer.Next();
    std::string head = t.kind == Token::kWord ? t.text : std::string();
    for (char &c : head)
        if (c >= 'a' && c <= 'z')
            c = char(c - 32);
    mLexer.PutBack(std::move(t));
    return head;
}

bool SqlParser::Expect(std::string_view keyword, int32_t code, const char *message) {
    return mLexer.Next().Is(keyword) ? true : mError.Set(code, message);
}

bool SqlParser::ParseEnd() {
    return mLexer.Next().kind == Token::kEnd ? true : Syntax("Invalid column/table identifier");
}

bool SqlParser::ColumnName(const Token &first, ColumnRef &ref, const char *message) {
    if (!first.IsIdentifier())
        return Syntax(message);
    ref.name = first.text;
    if (mLexer.Peek().Is(".")) {
        mLexer.Next();
        Token name = mLexer.Next();
        if (!name.IsIdentifier())
            return Syntax(message);
        ref.table = first.text;
        ref.name = name.text;
    }
    return true;
}

bool SqlParser::ParseSelect(SelectStatement &s) {
    if (!Expect("SELECT", kParseError, "Expected 'SELECT'"))
        return false;
    for (;;) {
        Token t = mLexer.Next();
        SelectItem item;
        if (t.Is("*")) {
            item.star = true;
        } else if (t.IsIdentifier() && mLexer.Peek().Is("(")) {
            mLexer.Next();
            static const std::pair<const char *, Aggregate> kFunctions[] = {
                {"count", kCount}, {"avg", kAvg}, {"sum", kSum}, {"min", kMin}, {"max", kMax}};
            for (auto [name, aggregate] : kFunctions)
                if (t.Is(name))
                    item.aggregate = aggregate;
            if (item.aggregate == kNoAggregate)
                return Syntax("Unsupported SELECT function");
            Token argument = mLexer.Next();
            if (item.aggregate == kCount) {
                if (!argument.Is("*"))
                    return Syntax("Only COUNT(*) supported");
                item.ref.name.assign(1, '*');
            } else if (!ColumnName(argument, item.ref, "Invalid column/table identifier")) {
                return false;
            }
            if (!Expect(")", kParseError, "Expected ')'"))
                return false;
        } else if (t.IsIdentifier() && mLexer.Peek().Is(".")) {
            mLexer.Next();
            Token name = mLexer.Next();
            item.ref.table = t.text;
            if (name.Is("*"))
                item.star = true;
            else if (name.IsIdentifier())
                item.ref.name = name.text;
            else
                return Syntax("Invalid column/table identifier");
        } else if (t.IsIdentifier() && !IsReserved(t)) {
            item.ref.name = t.text;
        } else {
            return Syntax("Invalid column/table identifier");
        }
        s.items.push_back(std::move(item));
        if (!mLexer.Peek().Is(","))
            break;
        mLexer.Next();
    }
    if (!Expect("FROM", kParseError, "Expecting 'FROM'"))
        return false;
    for (;;) {
        Token t = mLexer.Next();
        if (!t.IsIdentifier() || IsReserved(t))
            return Syntax("Invalid table name");
        FromTable table;
        table.name = t.text;
        Token alias = mLexer.Peek();
        if (alias.IsIdentifier() && !IsReserved(alias)) {
            mLexer.Next();
            table.alias = alias.text;
        }
        s.from.push_back(std::move(table));
        if (!mLexer.Peek().Is(","))
            break;
        mLexer.Next();
    }
    if (mLexer.Peek().Is("WHERE")) {
        mLexer.Next();
        if (!Condition(s.where, 0))
            return false;
    }
    for (;;) {
        Token t = mLexer.Next();
        if (t.Is("ORDER")) {
            if (s.grouped || !s.order.empty())
                return Syntax("ORDER BY can't be used in conjunction with GROUP BY");
            if (!Expect("BY", kParseError, "Expecting 'BY'"))
                return false;
            for (;;) {
                Token sort = mLexer.Next();
                SortKey key;
                ColumnRef ref;
                if (sort.kind == Token::kNumber && AllDigits(sort.text)) {
                    long position = sort.text.size() > 6 ? 0 : std::stol(sort.text);
                    if (position < 1)
                        return Syntax("Invalid column index");
                    key.item = int(position - 1);
                } else if (!ColumnName(sort, ref, "Invalid ORDER BY column")) {
                    return false;
                }
                if (mLexer.Peek().Is("DESC") || mLexer.Peek().Is("ASC"))
                    key.descending = mLexer.Next().Is("DESC");
                s.order.push_back(key);
                s.orderNames.push_back(std::move(ref));
                if (!mLexer.Peek().Is(","))
                    break;
                mLexer.Next();
            }
        } else if (t.Is("GROUP")) {
            if (s.grouped || !s.order.empty())
                return Syntax("ORDER BY can't be used in conjunction with GROUP BY");
            if (!Expect("BY", kParseError, "Expecting 'BY'"))
                return false;
            SelectItem item;
            item.hidden = true;
            if (!ColumnName(mLexer.Next(), item.ref, "Invalid GROUP BY column"))
                return false;
            if (mLexer.Peek().Is(","))
                return Syntax("Only single GROUP BY columns currently supported");
            s.items.push_back(std::move(item));
            s.grouped = true;
            s.order.push_back({int(s.items.size() - 1), false});
            s.orderNames.emplace_back();
        } else {
            mLexer.PutBack(std::move(t));
            return ParseEnd();
        }
    }
}

bool SqlParser::Condition(std::unique_ptr<WhereNode> &node, int depth) {
    if (depth > kMaxConditionDepth)
        return Syntax("Condition nested too deeply");
    if (!Test(node))
        return false;
    Token t = mLexer.Next();
    if (!t.Is("AND") && !t.Is("OR")) {
        mLexer.PutBack(std::move(t));
        return true;
    }
    // AND and OR rank alike and group to the right.
    auto joined = std::make_unique<WhereNode>();
    joined->op = t.Is("AND") ? kAnd : kOr;
    joined->first = std::move(node);
    node = std::move(joined);
    return Condition(node->second, depth + 1);
}

bool SqlParser::Test(std::unique_ptr<WhereNode> &node) {
    node = std::make_unique<WhereNode>();
    Token t = mLexer.Next();
    if ((t.Is("upper") || t.Is("lower")) && mLexer.Peek().Is("(")) {
        mLexer.Next();
        node->function = t.Is("upper") ? kUpper : kLower;
        if (!ColumnName(mLexer.Next(), node->left, "Invalid column/table name") ||
            !Expect(")", kParseError, "Expected ')'"))
            return false;
    } else if (!ColumnName(t, node->left, "Invalid column/table name")) {
        return false;
    }
    Token op = mLexer.Next();
    static const std::pair<const char *, Operator> kOperators[] = {
        {"=", kEqual},      {"<", kLess},          {">", kGreater},
        {"<=", kLessEqual}, {">=", kGreaterEqual}, {"<>", kNotEqual}};
    for (auto [text, code] : kOperators)
        if (op.kind == Token::kSymbol && op.text == text) {
            node->op = code;
            Token value = mLexer.Next();
            if (value.kind == Token::kString) {
                node->literal = Unquote(value.text);
            } else if (value.kind == Token::kNumber) {
                node->literal = value.text;
            } else {
                node->rightIsColumn = true;
                return ColumnName(value, node->right, "Invalid column/table name");
            }
            return true;
        }
    if (op.Is("NOT")) {
        if (!mLexer.Peek().Is("LIKE"))
            return Syntax("Invalid operator NOT");
        op = mLexer.Next();
        node->op = kNotLike;
    } else if (op.Is("LIKE")) {
        node->op = kLike;
    } else if (op.Is("IS")) {
        node->op = kIsNull;
        if (mLexer.Peek().Is("NOT")) {
            mLexer.Next();
            node->op = kIsNotNull;
        }
        return Expect("NULL", kParseError, "Expecting 'NULL'");
    } else {
        return Syntax("Invalid operator " + op.text);
    }
    Token pattern = mLexer.Next();
    if (pattern.kind != Token::kString)
        return Syntax("Quotes expected after LIKE operation");
    node->literal = Unquote(pattern.text);
    return true;
}

bool SqlParser::Type(Column &c) {
    Token t = mLexer.Next();
    static const std::pair<const char *, FieldType> kPlain[] = {
        {"smallint", kSmallInt},   {"integer", kInteger}, {"float", kFloat},
        {"double", kDouble},       {"date", kDate},       {"time", kTime},
        {"timestamp", kTimestamp}, {"boolean", kBoolean}};
    for (auto [name, type] : kPlain)
        if (t.Is(name)) {
            c.type = type;
            return true;
        }
    if (t.Is("long")) {
        Token u = mLexer.Next();
        if (!u.Is("varchar") && !u.Is("varbinary"))
            return mError.Set(kParseError, "Expecting field type");
        c.type = u.Is("varchar") ? kLongText : kLongBinary;
        return true;
    }
    if (!t.Is("char") && !t.Is("character") && !t.Is("varchar"))
        return mError.Set(kParseError, "Expecting field type");
    c.type = kText;
    if (!mLexer.Peek().Is("(")) {
        if (t.Is("varchar"))
            return true;
        return mError.Set(kParseError, "Expecting '('");
    }
    mLexer.Next();
    Token n = mLexer.Next();
    if (n.kind != Token::kNumber || !AllDigits(n.text) || n.text.size() > 9)
        return Syntax("Invalid column/table identifier");
    c.length = std::stoi(n.text);
    return Expect(")", kParseError, "Expecting ')'");
}

bool SqlParser::ParseCreate(std::string &table, std::vector<Column> &columns) {
    mLexer.Next(); // CREATE
    if (!mLexer.Next().Is("TABLE"))
        return Syntax("Invalid column/table identifier");
    Token name = mLexer.Next();
    if (!name.IsIdentifier())
        return Syntax("Invalid table name");
    table = name.text;
    if (!Expect("(", kParseError, "Expecting '('"))
        return false;
    std::vector<std::string> keys;
    for (;;) {
        Token t = mLexer.Next();
        if (t.Is(")") && columns.empty())
            break;
        if (t.Is("PRIMARY")) {
            if (!Expect("KEY", kParseError, "Expecting 'KEY'") ||
                !Expect("(", kParseError, "Expecting '('"))
                return false;
            for (;;) {
                Token key = mLexer.Next();
                auto found = std::find_if(columns.begin(), columns.end(), [&](const Column &c) {
                    return SameWord(c.name, key.text);
                });
                if (!key.IsIdentifier() || found == columns.end())
                    return Syntax("Invalid column");
                keys.push_back(found->name);
                Token next = mLexer.Next();
                if (next.Is(")"))
                    break;
                if (!next.Is(","))
                    return mError.Set(kParseError, "Expecting ',' or ')'");
            }
            if (!Expect(")", kParseError, "Expecting ')'"))
                return false;
            break;
        }
        if (!t.IsIdentifier())
            return Syntax("Invalid column name");
        // The field number is one byte.
        if (columns.size() == 256)
            return Syntax("Too many columns");
        Column c;
        c.name = t.text;
        if (!Type(c))
            return false;
        Token next = mLexer.Next();
        for (;; next = mLexer.Next()) {
            if (next.Is("NOT")) {
                if (!Expect("NULL", kParseError, "Expecting 'NULL'"))
                    return false;
                c.notNull = true;
            } else if (next.Is("PRIMARY")) {
                if (!Expect("KEY", kParseError, "Expecting 'KEY'"))
                    return false;
                keys.push_back(c.name);
            } else {
                break;
            }
        }
        columns.push_back(std::move(c));
        if (next.Is(")"))
            break;
        if (!next.Is(","))
            return next.kind == Token::kWord ? Syntax("Invalid field constraint")
                                             : mError.Set(kParseError, "Expecting ',' or ')'");
    }
    if (columns.empty())
        return mError.Set(kUnknownColumn, "CREATE TABLE requires at least one column defined");
    uint16_t position = 0;
    for (const std::string &key : keys)
        for (Column &c : columns)
            if (c.name == key && !c.primary)
                c.primary = ++position;
    return ParseEnd();
}

bool SqlParser::ParseAlter(std::string &table, Column &column) {
    mLexer.Next(); // ALTER
    if (!mLexer.Next().Is("TABLE"))
        return Syntax("Invalid column/table identifier");
    Token name = mLexer.Next();
    if (!name.IsIdentifier())
        return Syntax("Invalid table name");
    table = name.text;
    Token t = mLexer.Next();
    if (t.Is("DROP"))
        return mError.Set(kDropColumn, "Dropping columns is not supported for this database");
    if (!t.Is("ADD"))
        return mError.Set(kParseError, "Expected 'ADD'");
    if (mLexer.Peek().Is("COLUMN"))
        mLexer.Next();
    Token columnName = mLexer.Next();
    if (!columnName.IsIdentifier())
        return Syntax("Invalid column name");
    column.name = columnName.text;
    if (!Type(column))
        return false;
    if (mLexer.Peek().Is("NOT")) {
        mLexer.Next();
        if (!Expect("NULL", kParseError, "Expecting 'NULL'"))
            return false;
        column.notNull = true;
    }
    return ParseEnd();
}

bool SqlParser::ParseInsert(DataStatement &s) {
    s.kind = DataStatement::kInsert;
    mLexer.Next(); // INSERT
    if (!Expect("INTO", kParseError, "Expecting 'INTO'"))
        return false;
    Token name = mLexer.Next();
    if (!name.IsIdentifier())
        return Syntax("Invalid table name");
    s.table = name.text;
    std::vector<std::string> names;
    if (mLexer.Peek().Is("(")) {
        mLexer.Next();
        for (;;) {
            Token column = mLexer.Next();
            if (!column.IsIdentifier())
                return Syntax("Invalid column name");
            names.push_back(column.text);
            Token next = mLexer.Next();
            if (next.Is(")"))
                break;
            if (!next.Is(","))
                return mError.Set(kParseError, "Expecting ',' or ')'");
        }
    }
    if (!Expect("VALUES", kParseError, "Expecting 'VALUES'") ||
        !Expect("(", kParseError, "Expecting '('"))
        return false;
    for (;;) {
        Token value = mLexer.Next();
        Assignment a;
        if (value.kind == Token::kString) {
            a.value = Unquote(value.text);
        } else if (value.kind == Token::kNumber || value.kind == Token::kWord ||
                   value.kind == Token::kQuoted) {
            a.isNull = value.Is("NULL");
            a.value = value.text;
        } else {
            return mError.Set(kParseError, "Expecting ',' or ')'");
        }
        s.values.push_back(std::move(a));
        Token next = mLexer.Next();
        if (next.Is(")"))
            break;
        if (!next.Is(","))
            return mError.Set(kParseError, "Expecting ',' or ')'");
    }
    if (!names.empty()) {
        if (names.size() != s.values.size())
            return mError.Set(kMismatch, "Mismatched INSERT columns");
        for (size_t i = 0; i < names.size(); ++i)
            s.values[i].column = names[i];
    }
    return ParseEnd();
}

bool SqlParser::ParseUpdate(DataStatement &s) {
    s.kind = DataStatement::kUpdate;
    mLexer.Next(); // UPDATE
    Token name = mLexer.Next();
    if (!name.IsIdentifier())
        return Syntax("Invalid table name");
    s.table = name.text;
    if (!Expect("SET", kParseError, "Expecting 'SET'"))
        return false;
    for (;;) {
        Token column = mLexer.Next();
        if (!column.IsIdentifier())
            return Syntax("Invalid column name");
        if (!Expect("=", kParseError, "Expecting '='"))
            return false;
        Token value = mLexer.Next();
        Assignment a;
        a.column = column.text;
        if (value.kind == Token::kEnd)
            return mError.Set(kMismatch, "Mismatched update fields");
        if (value.kind == Token::kString) {
            a.value = Unquote(value.text);
        } else if (value.kind == Token::kNumber) {
            a.value = value.text;
        } else if (value.Is("NULL")) {
            a.isNull = true;
        } else if (value.IsIdentifier()) {
            a.isColumn = true;
            a.value = value.text;
        } else {
            return Syntax("Invalid column/table name");
        }
        s.values.push_back(std::move(a));
        if (!mLexer.Peek().Is(","))
            break;
        mLexer.Next();
    }
    if (mLexer.Peek().Is("WHERE")) {
        mLexer.Next();
        if (!Condition(s.where, 0))
            return false;
    }
    return ParseEnd();
}

bool SqlParser::ParseDelete(DataStatement &s) {
    s.kind = DataStatement::kDelete;
    mLexer.Next(); // DELETE
    if (!Expect("FROM", kParseError, "Expecting 'FROM'"))
        return false;
    Token name = mLexer.Next();
    if (!name.IsIdentifier())
        return Syntax("Invalid table name");
    s.table = name.text;
    if (mLexer.Peek().Is("WHERE")) {
        mLexer.Next();
        if (!Condition(s.where, 0))
            return false;
    }
    return ParseEnd();
}

} // namespace kelp::db
