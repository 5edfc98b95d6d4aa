#include "database/sql_result.h"

#include "database/sql_value.h"

namespace kelp::db {

bool ResultSet::Next(Error &error) {
    error.Clear();
    Values row;
    if (!Fetch(row, error))
        return false;
    row.resize(mColumns.size());
    mRow = std::move(row);
    return true;
}

bool RowsResult::Fetch(Values &row, Error &) {
    if (mNext >= mRows.size())
        return false;
    row = std::move(mRows[mNext++]);
    return true;
}

JoinCursor::JoinCursor(Storage &db, std::shared_ptr<const SelectStatement> select)
    : mDb(db), mSelect(std::move(select)), mEpoch(db.Epoch()) {
    for (const FromTable &from : mSelect->from)
        mLevels.emplace_back().table = from.table;
    mValues.resize(mLevels.size());
    if (mSelect->where) {
        std::vector<const WhereNode *> tests;
        Conjuncts(*mSelect->where, tests);
        for (const WhereNode *test : tests)
            mLevels[size_t(std::max(0, HighestTable(*test)))].tests.push_back(test);
    }
}

// A range on an integer first key column against literals: the walk starts
// at the lower end and stops past the upper one, as the keys are in order.
void JoinCursor::Bound(size_t level) {
    Level &l = mLevels[level];
    l.start.clear();
    l.keyColumn = -1;
    uint8_t keyField = l.table->tree->Spec().fields[0];
    for (const WhereNode *t : l.tests) {
        if (t->function != kNoFunction || t->rightIsColumn || t->left.tableIndex != int(level))
            continue;
        const Column &key = l.table->columns[size_t(t->left.column)];
        if (key.number != keyField || (key.type != kSmallInt && key.type != kInteger))
            continue;
        int64_t value = ReadDecimal(t->literal);
        if ((t->op == kGreater || t->op == kGreaterEqual) && l.start.empty() && value > -32768 &&
            value < (key.type == kSmallInt ? 32767 : 2147483647)) {
            FieldValue v;
            v.type = key.type;
            v.integer = value + (t->op == kGreater);
            AppendKeyValue(l.start, v);
        } else if ((t->op == kLess || t->op == kLessEqual) && l.keyColumn < 0) {
            l.keyColumn = t->left.column;
            l.upper = value;
            l.inclusive = t->op == kLessEqual;
        }
    }
}

bool JoinCursor::Open(size_t level, Error &) {
    Level &l = mLevels[level];
    l.cursor = std::make_unique<TreeCursor>(*l.table->tree);
    l.fresh = true;
    l.start.clear();
    l.keyColumn = -1;
    const KeySpec &spec = l.table->tree->Spec();
    if (spec.kind != KeySpec::kColumns)
        return true;
    uint8_t keyField = spec.fields[0];
    for (const WhereNode *t : l.tests) {
        if (t->op != kEqual || t->function != kNoFunction)
            continue;
        // One side is this table's first key column, the other known now.
        auto isKey = [&](const ColumnRef &r) {
            return r.tableIndex == int(level) &&
                   l.table->columns[size_t(r.column)].number == keyField;
        };
        const ColumnRef *other = nullptr;
        if (isKey(t->left))
            other = t->rightIsColumn ? &t->right : nullptr;
        else if (t->rightIsColumn && isKey(t->right))
            other = &t->left;
        else
            continue;
        if (other && other->tableIndex >= int(level))
            continue;
        const Column &key =
            l.table->columns[size_t(isKey(t->left) ? t->left.column : t->right.column)];
        if (key.type != kSmallInt && key.type != kInteger)
            continue;
        std::string text =
            other ? ValueText(mValues[size_t(other->tableIndex)][size_t(other->column)])
                  : t->literal;
        FieldValue v;
        v.type = key.type;
        v.integer = key.type == kSmallInt ? int16_t(ReadDecimal(text)) : int32_t(ReadDecimal(text));
        if (v.integer != ReadDecimal(text))
            continue; // out of the column's range: let the test refuse every row
        std::string prefix;
        AppendKeyValue(prefix, v);
        l.cursor->SetFilter(prefix);
        return true;
    }
    Bound(level);
    return true;
}

bool JoinCursor::Passes(size_t level) const {
    for (const WhereNode *t : mLevels[level].tests)
        if (!Evaluate(*t, mValues))
            return false;
    return true;
}

bool JoinCursor::Fetch(Values &row, Error &error) {
    if (mDone)
        return false;
    if (mEpoch != mDb.Epoch()) {
        mDone = true;
        return error.Set(kFileError, "The tables changed while their rows were being read");
    }
    size_t level = mLevels.size() - 1;
    if (!mStarted) {
        mStarted = true;
        level = 0;
        Open(0, error);
    }
    for (;;) {
        Level &l = mLevels[level];
        bool has = !l.fresh          ? l.cursor->Next(error)
                   : l.start.empty() ? l.cursor->First(error)
                                     : l.cursor->Seek(l.start, error);
        l.fresh = false;
        if (has && l.keyColumn >= 0 &&
            !LoadRow(mDb, *l.table, *l.cursor, mScratch, mValues[level], error)) {
            mDone = true;
            return false;
        }
        if (has && l.keyColumn >= 0) {
            const FieldValue &key = mValues[level][size_t(l.keyColumn)];
            if (!key.IsNull() &&
                (key.integer > l.upper || (!l.inclusive && key.integer == l.upper)))
                has = false; // past the range: no later row can pass
        }
        if (!has) {
            if (error.Failed() || level == 0) {
                mDone = true;
                return false;
            }
            --level;
            continue;
        }
        if (!LoadRow(mDb, *l.table, *l.cursor, mScratch, mValues[level], error)) {
            mDone = true;
            return false;
        }
        if (!Passes(level))
            continue;
        if (level + 1 < mLevels.size()) {
            Open(++level, error);
            continue;
        }
        row.clear();
        for (const SelectItem &item : mSelect->items)
            row.push_back(item.aggregate == kCount
                              ? FieldValue{}
                              : mValues[size_t(item.ref.tableIndex)][size_t(item.ref.column)]);
        return true;
    }
}

} // namespace kelp::db
