#include "database/sql_engine.h"

#include "database/sql_parser.h"
#include "database/sql_value.h"

namespace kelp::db {

namespace {

bool TooLong(std::string_view sql, Error &error) {
    return sql.size() > kMaxStatementLength && !error.Set(kSyntaxError, "Statement too long");
}

// ---- names ----

struct Resolver {
    const std::vector<FromTable> &from;
    Error &error;

    bool Resolve(ColumnRef &ref) {
        ref.tableIndex = -1;
        for (size_t i = 0; i < from.size(); ++i) {
            if (!ref.table.empty() && !SameWord(ref.table, from[i].name) &&
                !SameWord(ref.table, from[i].alias))
                continue;
            const Column *c = from[i].table->Find(ref.name);
            if (!c)
                continue;
            if (ref.tableIndex >= 0)
                return error.Set(kAmbiguousColumn, "Ambiguous column reference: " + ref.name);
            ref.tableIndex = int(i);
            ref.column = int(c - from[i].table->columns.data());
        }
        return ref.tableIndex >= 0 ? true
                                   : error.Set(kUnknownColumn, "Unknown column: " + ref.name);
    }

    bool Resolve(WhereNode *n) {
        for (; n->op == kAnd || n->op == kOr; n = n->second.get())
            if (!Resolve(n->first.get()))
                return false;
        return Resolve(n->left) && (!n->rightIsColumn || Resolve(n->right));
    }
};

bool Validate(Storage &db, SelectStatement &s, Error &error) {
    for (FromTable &from : s.from) {
        from.table = db.FindTable(from.name);
        if (!from.table)
            return error.Set(kInvalidTable, "Invalid table " + from.name);
    }
    std::vector<SelectItem> items;
    for (SelectItem &item : s.items) {
        if (!item.star) {
            items.push_back(std::move(item));
            continue;
        }
        bool named = false;
        for (size_t i = 0; i < s.from.size(); ++i) {
            const FromTable &f = s.from[i];
            if (!item.ref.table.empty() && !SameWord(item.ref.table, f.name) &&
                !SameWord(item.ref.table, f.alias))
                continue;
            named = true;
            for (const Column &c : f.table->columns) {
                SelectItem column;
                column.ref = {f.alias.empty() ? f.name : f.alias, c.name, int(i), -1};
                items.push_back(std::move(column));
            }
        }
        if (!named)
            return error.Set(kInvalidTable, "Invalid table " + item.ref.table);
    }
    s.items = std::move(items);
    size_t visible = 0;
    while (visible < s.items.size() && !s.items[visible].hidden)
        ++visible;
    if (s.grouped)
        s.order.back().item = int(s.items.size() - 1);
    Resolver resolver{s.from, error};
    for (SelectItem &item : s.items)
        if (item.aggregate != kCount && !resolver.Resolve(item.ref))
            return false;
    if (s.where && !resolver.Resolve(s.where.get()))
        return false;
    for (size_t i = 0; i < s.order.size(); ++i) {
        ColumnRef &name = s.orderNames[i];
        if (name.name.empty()) {
            if (s.order[i].item >= int(s.items.size()) ||
                (!s.grouped && s.order[i].item >= int(visible)))
                return error.Set(kSyntaxError, "Invalid column index");
            continue;
        }
        if (!resolver.Resolve(name))
            return false;
        int found = -1;
        for (size_t j = 0; j < visible && found < 0; ++j)
            if (s.items[j].aggregate == kNoAggregate &&
                s.items[j].ref.tableIndex == name.tableIndex &&
                s.items[j].ref.column == name.column)
                found = int(j);
        if (found < 0) {
            SelectItem hidden;
            hidden.ref = name;
            hidden.hidden = true;
            s.items.push_back(std::move(hidden));
            found = int(s.items.size() - 1);
        }
        s.order[i].item = found;
    }
    return true;
}

std::vector<ResultColumn> VisibleColumns(const SelectStatement &s) {
    static const char *kNames[] = {"", "count", "avg", "sum", "min", "max"};
    std::vector<ResultColumn> columns;
    for (const SelectItem &item : s.items) {
        if (item.hidden)
            break;
        if (item.aggregate == kCount) {
            columns.push_back({"count(*)", kInteger});
        } else if (item.aggregate != kNoAggregate) {
            columns.push_back(
                {std::string(kNames[item.aggregate]) + "(" + item.ref.name + ")", kDouble});
        } else {
            const Column &c =
                s.from[size_t(item.ref.tableIndex)].table->columns[size_t(item.ref.column)];
            columns.push_back({c.name, c.type});
        }
    }
    return columns;
}

// ---- aggregates ----

struct Accumulator {
    int64_t count = 0, values = 0;
    double sum = 0, mean = 0, low = 0, high = 0;

    void Add(const FieldValue &v) {
        ++count;
        if (v.IsNull())
            return;
        double x = NumericValue(v);
        ++values;
        sum += x;
        mean = ((double(values) - 1) * mean + x) / double(values);
        low = values == 1 || x < low ? x : low;
        high = values == 1 || x > high ? x : high;
    }
    FieldValue Result(Aggregate a) const {
        FieldValue v;
        if (a == kCount) {
            v.type = kInteger;
            v.integer = count;
            return v;
        }
        if (!values)
            return v;
        v.type = kDouble;
        v.real = a == kSum ? sum : a == kAvg ? mean : a == kMin ? low : high;
        return v;
    }
};

bool Fold(ResultSet &source, const SelectStatement &s, size_t visible, std::vector<Values> &out,
          Error &error) {
    std::vector<Accumulator> accumulators(visible);
    Values first, row;
    bool any = false;
    size_t group = s.items.size() - 1;
    auto emit = [&] {
        Values result(visible);
        for (size_t i = 0; i < visible; ++i)
            result[i] = s.items[i].aggregate != kNoAggregate
                            ? accumulators[i].Result(s.items[i].aggregate)
                            : (any ? first[i] : FieldValue{});
        out.push_back(std::move(result));
        accumulators.assign(visible, Accumulator{});
    };
    while (source.Fetch(row, error)) {
        if (any && s.grouped && CompareForSort(row[group], first[group]) != 0) {
            emit();
            any = false;
        }
        if (!any) {
            first = row;
            any = true;
        }
        for (size_t i = 0; i < visible; ++i)
            if (s.items[i].aggregate != kNoAggregate)
                accumulators[i].Add(row[i]);
    }
    if (error.Failed())
        return false;
    if (any || !s.grouped)
        emit();
    return true;
}

// ---- data statements ----

bool Convert(uint8_t type, const std::string &text, FieldValue &v, Error &error) {
    v = FieldValue{};
    v.type = type;
    switch (type) {
    case kSmallInt: v.integer = int16_t(ReadDecimal(text)); break;
    case kInteger: v.integer = int32_t(ReadDecimal(text)); break;
    case kFloat:
    case kDouble: v.real = ReadDouble(text); break;
    case kDate:
        if (!ReadDate(text, v.parts))
            return error.Set(kRowRejected, "Invalid date format");
        break;
    case kTime:
        if (!ReadTime(text, v.parts))
            return error.Set(kRowRejected, "Invalid time format");
        break;
    case kBoolean: v.integer = SameWord(text, "true"); break;
    default: v.bytes = text; // text, binary, and BLOB content still to write
    }
    return true;
}

// The row's fields from its values; BLOB columns keep their ids.
Row RowOf(const Table &table, const Values &values) {
    Row row;
    for (size_t i = 0; i < values.size(); ++i) {
        if (values[i].IsNull())
            continue;
        FieldValue v = values[i];
        if (IsBlobType(v.type) && v.integer)
            v.bytes.clear(); // stored already
        row.Set(table.columns[i].number, std::move(v));
    }
    return row;
}

// Writes the BLOB columns whose content is still in `bytes`.
bool WriteBlobs(Storage &db, Row &row, std::vector<uint32_t> &written, Error &error) {
    for (Field &f : row.fields) {
        if (!IsBlobType(f.value.type) || f.value.integer)
            continue;
        uint32_t id;
        if (!db.WriteBlob(f.value.bytes, id))
            return error.Set(kBlobWriteFailed, "Error writing BLOB");
        written.push_back(id);
        f.value.integer = id;
        f.value.bytes.clear();
    }
    return true;
}

bool CheckNotNull(const Table &table, const Row &row, Error &error) {
    for (const Column &c : table.columns)
        if (c.notNull && !row.Find(c.number))
            return error.Set(kRowRejected, "NotNull column violation");
    return true;
}

bool Insert(Storage &db, DataStatement &s, Error &error) {
    Table *table = db.FindTable(s.table);
    if (!table)
        return error.Set(kRowRejected, "Unknown table " + s.table);
    if (s.values.size() > table->columns.size())
        return error.Set(kMismatch, "Mismatched INSERT columns");
    Row row;
    for (size_t i = 0; i < s.values.size(); ++i) {
        const Assignment &a = s.values[i];
        const Column *c = a.column.empty() ? &table->columns[i] : table->Find(a.column);
        if (!c)
            return error.Set(kRowRejected, "Unknown column " + a.column);
        FieldValue v;
        if (a.isNull)
            continue;
        if (!Convert(c->type, a.value, v, error))
            return false;
        row.Set(c->number, std::move(v));
    }
    std::vector<uint32_t> written;
    if (!CheckNotNull(*table, row, error) || !WriteBlobs(db, row, written, error))
        return false;
    if (db.InsertRow(*table, row))
        return true;
    Error failure = db.LastError();
    for (uint32_t id : written)
        db.DeleteBlob(id);
    return error.Set(failure.code, failure.message);
}

bool Change(Storage &db, DataStatement &s, Error &error) {
    Table *table = db.FindTable(s.table);
    if (!table)
        return error.Set(kRowRejected, "Unknown table " + s.table);
    std::vector<const Column *> targets, sources;
    for (const Assignment &a : s.values) {
        const Column *c = table->Find(a.column);
        const Column *from = a.isColumn ? table->Find(a.value) : nullptr;
        if (!c || (a.isColumn && !from))
            return error.Set(kMismatch, "The column " + (c ? a.value : a.column) +
                                            " does not exist in table " + table->name);
        targets.push_back(c);
        sources.push_back(from);
    }
    std::vector<FromTable> from(1);
    from[0].name = table->name;
    from[0].table = table;
    Resolver resolver{from, error};
    if (s.where && !resolver.Resolve(s.where.get()))
        return false;
    TreeCursor cursor(*table->tree);
    std::vector<Values> rows(1);
    Row scratch;
    for (bool more = cursor.First(error); more; more = cursor.Next(error)) {
        if (!LoadRow(db, *table, cursor, scratch, rows[0], error))
            return false;
        if (s.where && !Evaluate(*s.where, rows))
            continue;
        const Values &old = rows[0];
        if (s.kind == DataStatement::kDelete) {
            if (!cursor.Delete(error))
                return false;
            for (const FieldValue &v : old)
                if (IsBlobType(v.type))
                    db.DeleteBlob(uint32_t(v.integer));
            continue;
        }
        Values updated = old;
        std::vector<uint32_t> replaced;
        for (size_t i = 0; i < targets.size(); ++i) {
            FieldValue &v = updated[size_t(targets[i] - table->columns.data())];
            if (IsBlobType(v.type))
                replaced.push_back(uint32_t(v.integer));
            const Assignment &a = s.values[i];
            if (a.isNull ||
                (sources[i] && old[size_t(sources[i] - table->columns.data())].IsNull())) {
                v = FieldValue{};
                continue;
            }
            std::string text =
                sources[i] ? ValueText(old[size_t(sources[i] - table->columns.data())]) : a.value;
            if (!Convert(targets[i]->type, text, v, error))
                return false;
        }
        Row row = RowOf(*table, updated);
        std::vector<uint32_t> written;
        if (!CheckNotNull(*table, row, error) || !WriteBlobs(db, row, written, error) ||
            !cursor.Update(std::move(row), error))
            return false;
        for (uint32_t id : replaced)
            db.DeleteBlob(id);
    }
    return !error.Failed() && cursor.Finish(error);
}

} // namespace

std::unique_ptr<ResultSet> SqlSelect(Storage &db, std::string_view sql) {
    Error &error = db.LastError();
    error.Clear();
    if (TooLong(sql, error))
        return nullptr;
    auto select = std::make_shared<SelectStatement>();
    SqlParser parser(sql, error);
    if (!parser.ParseSelect(*select) || !Validate(db, *select, error))
        return nullptr;
    std::vector<ResultColumn> columns = VisibleColumns(*select);
    size_t visible = columns.size();
    std::unique_ptr<ResultSet> rows = std::make_unique<JoinCursor>(db, select);
    bool aggregate = select->HasAggregate() || select->grouped;
    if (!select->order.empty()) {
        RowSorter sorter(select->order);
        Values row;
        while (rows->Fetch(row, error))
            if (!sorter.Add(std::move(row), error))
                return nullptr;
        if (error.Failed() || !(rows = sorter.Finish(error)))
            return nullptr;
    }
    if (aggregate) {
        std::vector<Values> folded;
        if (!Fold(*rows, *select, visible, folded, error))
            return nullptr;
        rows = std::make_unique<RowsResult>(std::move(folded));
    }
    rows->SetColumns(std::move(columns));
    return rows;
}

bool SqlExecute(Storage &db, std::string_view sql) {
    Error &error = db.LastError();
    error.Clear();
    if (TooLong(sql, error))
        return false;
    SqlParser parser(sql, error);
    std::string head = parser.Head();
    if (head == "SELECT")
        return SqlSelect(db, sql) != nullptr;
    if (head == "DROP")
        return error.Set(kDropTable,
                         "Dropping tables from this database is not currently supported.");
    if (head == "CREATE") {
        std::string table;
        std::vector<Column> columns;
        return parser.ParseCreate(table, columns) && db.CreateTable(table, columns);
    }
    if (head == "ALTER") {
        std::string table;
        Column column;
        return parser.ParseAlter(table, column) && db.AddColumn(table, column);
    }
    DataStatement data;
    if (head == "INSERT")
        return parser.ParseInsert(data) && Insert(db, data, error);
    if (head == "UPDATE")
        return parser.ParseUpdate(data) && Change(db, data, error);
    if (head == "DELETE")
        return parser.ParseDelete(data) && Change(db, data, error);
    if (head == "COMMIT" || head == "ROLLBACK") {
        parser.Head();
        SqlParser rest(sql.substr(sql.find_first_not_of(" \t\r\n") + head.size()), error);
        if (!rest.ParseEnd())
            return false;
        return head == "COMMIT" ? db.Commit() : db.Rollback();
    }
    return error.Set(kParseError, "Expected 'SELECT'");
}

} // namespace kelp::db
