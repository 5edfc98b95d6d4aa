#include "database/sql_eval.h"

#include "database/sql_lexer.h"
#include "database/sql_value.h"

#include <algorithm>

namespace kelp::db {

bool LoadRow(Storage &db, const Table &table, TreeCursor &cursor, Row &row, Values &values,
             Error &error) {
    if (!DecodeRow(cursor.Record(), cursor.Length(), row, error))
        return false;
    values.assign(table.columns.size(), FieldValue{});
    for (Field &f : row.fields) {
        // Columns are numbered from 0 in order; a field of no column is skipped.
        if (f.number >= values.size() || table.columns[f.number].number != f.number)
            continue;
        FieldValue &v = values[f.number];
        v = std::move(f.value);
        if (IsBlobType(v.type) && !db.ReadBlob(uint32_t(v.integer), v.bytes))
            return error.Set(db.LastError().code, db.LastError().message);
    }
    return true;
}

namespace {

std::string Mapped(std::string text, Function f) {
    for (char &c : text) {
        if (f == kUpper && c >= 'a' && c <= 'z')
            c = char(c - 32);
        else if (f == kLower && c >= 'A' && c <= 'Z')
            c = char(c + 32);
    }
    return text;
}

template <typename T> int Order(T a, T b) { return a < b ? -1 : (b < a ? 1 : 0); }

bool Holds(Operator op, int c) {
    switch (op) {
    case kEqual: return c == 0;
    case kLess: return c < 0;
    case kGreater: return c > 0;
    case kLessEqual: return c <= 0;
    case kGreaterEqual: return c >= 0;
    case kNotEqual: return c != 0;
    default: return false;
    }
}

} // namespace

bool TestValue(const WhereNode &t, const FieldValue &v, const std::string &literal) {
    if (t.op == kIsNull)
        return v.IsNull();
    if (t.op == kIsNotNull)
        return !v.IsNull();
    if (v.IsNull())
        return false;
    if (t.op == kLike || t.op == kNotLike) {
        bool match = t.function
                         ? Like(Mapped(ValueText(v), t.function), Mapped(literal, t.function))
                         : Like(ValueText(v), literal);
        return match == (t.op == kLike);
    }
    int c;
    switch (v.type) {
    case kSmallInt:
    case kInteger: c = Order(v.integer, ReadDecimal(literal)); break;
    case kBoolean:
        c = Order(v.integer, SameWord(literal, "true") ? int64_t(1) : ReadDecimal(literal));
        break;
    case kFloat:
    case kDouble: c = Order(v.real, ReadDouble(literal)); break;
    case kDate:
    case kTime: {
        uint16_t parts[3];
        if (!(v.type == kDate ? ReadDate(literal, parts) : ReadTime(literal, parts)))
            return false;
        c = 0;
        for (int i = 0; i < 3 && c == 0; ++i)
            c = Order(v.parts[i], parts[i]);
        break;
    }
    default:
        c = t.function ? Mapped(ValueText(v), t.function).compare(Mapped(literal, t.function))
                       : CompareNoCase(ValueText(v), literal);
    }
    return Holds(t.op, c);
}

bool Evaluate(const WhereNode &node, const std::vector<Values> &rows) {
    // Right-grouped chains recurse on the right: walk those in a loop.
    const WhereNode *n = &node;
    while (n->op == kAnd || n->op == kOr) {
        bool first = Evaluate(*n->first, rows);
        if (n->op == kAnd && !first)
            return false;
        if (n->op == kOr && first)
            return true;
        n = n->second.get();
    }
    const FieldValue &value = rows[n->left.tableIndex][n->left.column];
    if (!n->rightIsColumn)
        return TestValue(*n, value, n->literal);
    const FieldValue &right = rows[n->right.tableIndex][n->right.column];
    return !right.IsNull() && TestValue(*n, value, ValueText(right));
}

int HighestTable(const WhereNode &node) {
    if (node.op == kAnd || node.op == kOr) {
        int highest = -1;
        for (const WhereNode *n = &node; n;
             n = n->op == kAnd || n->op == kOr ? n->second.get() : nullptr)
            highest =
                std::max(highest, HighestTable(n->op == kAnd || n->op == kOr ? *n->first : *n));
        return highest;
    }
    return std::max(node.left.tableIndex, node.rightIsColumn ? node.right.tableIndex : -1);
}

void Conjuncts(const WhereNode &node, std::vector<const WhereNode *> &out) {
    const WhereNode *n = &node;
    while (n->op == kAnd) {
        out.push_back(n->first.get());
        n = n->second.get();
    }
    out.push_back(n);
}

} // namespace kelp::db
