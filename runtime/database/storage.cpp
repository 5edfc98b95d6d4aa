#include "database/storage.h"

#include "streams/random_access_mechanism.h"

#include <algorithm>

namespace kelp::db {

namespace {

constexpr const char *kSysTables = "sys$tables";
constexpr const char *kSysFields = "sys$fields";
constexpr const char *kSysBlob = "sys$blob";

// System table fields.
enum : uint8_t { kTableNumber = 0, kTableName = 1 };
enum : uint8_t {
    kFieldTable = 0,
    kFieldNumber = 1,
    kFieldName = 2,
    kFieldNotNull = 3,
    kFieldType = 4,
    kFieldPrimary = 5,
    kFieldLength = 6,
};

KeySpec TablesKey() { return {KeySpec::kColumns, {kTableNumber}}; }
KeySpec FieldsKey() { return {KeySpec::kColumns, {kFieldTable, kFieldName}}; }
KeySpec BlobKey() { return {KeySpec::kRowId, {}}; }

FieldValue Int(uint8_t type, int64_t v) {
    FieldValue f;
    f.type = type;
    f.integer = v;
    return f;
}
FieldValue Text(std::string_view s) {
    FieldValue f;
    f.type = kText;
    f.bytes = s;
    return f;
}

bool SameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; };
               return lower(x) == lower(y);
           });
}

} // namespace

const Column *Table::Find(std::string_view columnName) const {
    for (const Column &c : columns)
        if (SameName(c.name, columnName))
            return &c;
    return nullptr;
}

Storage::~Storage() { Close(); }

void Storage::Forget() {
    ++mEpoch;
    mTables.clear();
    mTrees.clear();
    mDirectory.reset();
    mSysTables = mSysFields = mSysBlob = nullptr;
}

bool Storage::Create(const std::string &path) {
    Forget();
    mError.Clear();
    if (!mPager.Create(path, mError))
        return false;
    Page *root = mPager.Allocate(kDirectoryLeaf, Pager::kNewTree, mError);
    if (!root)
        return false;
    uint32_t page;
    bool ok = CreateTree(kSysTables, page) && CreateTree(kSysFields, page) &&
              CreateTree(kSysBlob, page) && mPager.Commit(mError);
    return ok && LoadSchema();
}

bool Storage::Open(const std::string &path) {
    Forget();
    mError.Clear();
    return mPager.Open(path, mError) && LoadSchema();
}

bool Storage::OpenBytes(std::unique_ptr<RandomAccessMechanism> bytes) {
    Forget();
    mError.Clear();
    return mPager.OpenReadOnly(std::move(bytes), mError) && LoadSchema();
}

bool Storage::Close() {
    Forget();
    return mPager.Close(mError);
}

bool Storage::Commit() {
    mError.Clear();
    return mPager.Commit(mError);
}

bool Storage::Rollback() {
    // The trees' roots and the tables may have changed inside the transaction.
    mError.Clear();
    Forget();
    return mPager.Rollback(mError) && LoadSchema();
}

bool Storage::FindTreeRoot(const std::string &name, uint32_t &root, bool &found) {
    found = false;
    if (!mDirectory)
        mDirectory = std::make_unique<Tree>(
            mPager, mPager.DirectoryRoot(), KeySpec{KeySpec::kDirectoryName, {}}, true,
            [this](uint32_t page, Error &error) { return mPager.SetDirectoryRoot(page, error); });
    TreeCursor cursor(*mDirectory);
    std::string key = DirectoryKey(name);
    if (!cursor.Seek(key, mError))
        return !mError.Failed();
    const uint8_t *r = cursor.Record();
    uint32_t length = Get16(r);
    std::string_view stored(reinterpret_cast<const char *>(r + kDirectoryHead), Get32(r + 14));
    if (length < kDirectoryHead || DirectoryKey(stored) != key)
        return true;
    root = Get32(r + 10);
    found = true;
    return true;
}

bool Storage::CreateTree(const std::string &name, uint32_t &root) {
    bool found;
    if (!FindTreeRoot(name, root, found))
        return false;
    if (found)
        return mError.Set(kTableExists, "Unable to create " + name + " because it already exists");
    Page *page = mPager.Allocate(kTableLeaf, Pager::kNewTree, mError);
    uint32_t id;
    if (!page || !mPager.TakeRowId(id, mError))
        return false;
    root = page->number;
    std::string record(kRecordHead, '\0');
    Append32(record, id);
    Append32(record, root);
    Append32(record, uint32_t(name.size()));
    record += name;
    auto *p = reinterpret_cast<uint8_t *>(record.data());
    Put16(p, uint32_t(record.size()));
    p[2] = kLive;
    Put24(p + 3, mPager.Transaction() & 0xFFFFFF);
    return mDirectory->Insert(record, mError);
}

Tree *Storage::OpenTree(const std::string &name, KeySpec spec, bool unique) {
    auto known = mTrees.find(name);
    if (known != mTrees.end())
        return known->second.get();
    uint32_t root = 0;
    bool found;
    if (!FindTreeRoot(name, root, found))
        return nullptr;
    if (!found) {
        mError.Damaged("the tree " + name + " is missing");
        return nullptr;
    }
    // A root that splits is recorded in the tree's directory record.
    auto moved = [this, name](uint32_t page, Error &error) {
        TreeCursor cursor(*mDirectory);
        if (!cursor.Seek(DirectoryKey(name), error))
            return error.Failed() ? false : error.Damaged("the tree " + name + " is missing");
        uint8_t *r = cursor.Modify(error);
        if (!r)
            return false;
        Put32(r + 10, page);
        return true;
    };
    auto tree = std::make_unique<Tree>(mPager, root, std::move(spec), unique, moved);
    Tree *raw = tree.get();
    mTrees.emplace(name, std::move(tree));
    return raw;
}

bool Storage::LoadSchema() {
    mError.Clear();
    mSysTables = OpenTree(kSysTables, TablesKey(), true);
    mSysFields = mSysTables ? OpenTree(kSysFields, FieldsKey(), true) : nullptr;
    mSysBlob = mSysFields ? OpenTree(kSysBlob, BlobKey(), false) : nullptr;
    if (!mSysBlob)
        return false;
    TreeCursor cursor(*mSysTables);
    Row row;
    for (bool more = cursor.First(mError); more; more = cursor.Next(mError)) {
        if (!DecodeRow(cursor.Record(), cursor.Length(), row, mError))
            return false;
        const FieldValue *number = row.Find(kTableNumber), *name = row.Find(kTableName);
        if (!number || !name || number->type != kInteger || name->type != kText)
            return mError.Damaged("a row of sys$tables is incomplete");
        auto table = std::make_unique<Table>();
        table->name = name->bytes;
        table->number = uint32_t(number->integer);
        if (!LoadColumns(*table))
            return false;
        mTables.push_back(std::move(table));
    }
    return !mError.Failed();
}

bool Storage::LoadColumns(Table &table) {
    TreeCursor cursor(*mSysFields);
    std::string prefix;
    AppendKeyValue(prefix, Int(kInteger, int32_t(table.number)));
    cursor.SetFilter(prefix);
    Row row;
    for (bool more = cursor.First(mError); more; more = cursor.Next(mError)) {
        if (!DecodeRow(cursor.Record(), cursor.Length(), row, mError))
            return false;
        const FieldValue *number = row.Find(kFieldNumber), *name = row.Find(kFieldName),
                         *type = row.Find(kFieldType), *notNull = row.Find(kFieldNotNull),
                         *primary = row.Find(kFieldPrimary), *length = row.Find(kFieldLength);
        if (!number || !name || !type || number->integer < 0 || number->integer > 255 ||
            name->type != kText)
            return mError.Damaged("a row of sys$fields is incomplete");
        Column c;
        c.name = name->bytes;
        c.number = uint8_t(number->integer);
        c.type = uint8_t(type->integer);
        c.notNull = notNull && notNull->integer != 0;
        c.primary = primary ? uint16_t(primary->integer) : 0;
        c.length = length ? int32_t(length->integer) : -1;
        table.columns.push_back(std::move(c));
    }
    if (mError.Failed())
        return false;
    std::sort(table.columns.begin(), table.columns.end(),
              [](const Column &a, const Column &b) { return a.number < b.number; });
    KeySpec spec;
    std::vector<const Column *> key;
    for (const Column &c : table.columns)
        if (c.primary)
            key.push_back(&c);
    std::sort(key.begin(), key.end(),
              [](const Column *a, const Column *b) { return a->primary < b->primary; });
    spec.kind = key.empty() ? KeySpec::kRowId : KeySpec::kColumns;
    for (const Column *c : key)
        spec.fields.push_back(c->number);
    table.tree = OpenTree(std::to_string(table.number), std::move(spec), !key.empty());
    return table.tree != nullptr;
}

Table *Storage::FindTable(std::string_view name) {
    for (auto &table : mTables)
        if (SameName(table->name, name))
            return table.get();
    return nullptr;
}

std::vector<std::string> Storage::TableNames() const {
    std::vector<std::string> names;
    for (const auto &table : mTables)
        names.push_back(table->name);
    return names;
}

bool Storage::AddColumnRow(uint32_t table, const Column &c) {
    Row row;
    row.Set(kFieldTable, Int(kInteger, int32_t(table)));
    row.Set(kFieldNumber, Int(kInteger, c.number));
    row.Set(kFieldName, Text(c.name));
    row.Set(kFieldNotNull, Int(kSmallInt, c.notNull));
    row.Set(kFieldType, Int(kSmallInt, c.type));
    if (c.primary)
        row.Set(kFieldPrimary, Int(kSmallInt, c.primary));
    if (c.length >= 0)
        row.Set(kFieldLength, Int(kInteger, c.length));
    if (!mPager.TakeRowId(row.id, mError))
        return false;
    return mSysFields->Insert(EncodeRow(row, mPager.Transaction() & 0xFFFFFF), mError);
}

bool Storage::CreateTable(const std::string &name, const std::vector<Column> &columns) {
    mError.Clear();
    if (FindTable(name))
        return mError.Set(kTableExists, "Unable to create " + name + " because it already exists");
    for (const Column &c : columns)
        if (!IsStorableType(c.type))
            return mError.Set(kUnsupportedType, "Unable to create " + name +
                                                    " because an unsupported column type was used");
    uint32_t number, root;
    if (!mPager.TakeRowId(number, mError) || !CreateTree(std::to_string(number), root))
        return false;
    Row row;
    row.Set(kTableNumber, Int(kInteger, int32_t(number)));
    row.Set(kTableName, Text(name));
    if (!mPager.TakeRowId(row.id, mError) ||
        !mSysTables->Insert(EncodeRow(row, mPager.Transaction() & 0xFFFFFF), mError))
        return false;
    for (size_t i = 0; i < columns.size(); ++i) {
        Column c = columns[i];
        c.number = uint8_t(i);
        if (!AddColumnRow(number, c))
            return false;
    }
    auto table = std::make_unique<Table>();
    table->name = name;
    table->number = number;
    if (!LoadColumns(*table))
        return false;
    mTables.push_back(std::move(table));
    return true;
}

bool Storage::AddColumn(const std::string &tableName, const Column &column) {
    mError.Clear();
    Table *table = FindTable(tableName);
    // The code of a missing table here is ours: the message is the one users know.
    if (!table)
        return mError.Set(kInvalidTable, "Unable to add column " + column.name +
                                             " because table '" + tableName + "' doesn't exist");
    if (!IsStorableType(column.type))
        return mError.Set(kUnsupportedType, "Unable to add " + column.name +
                                                " because an unsupported  type was used");
    if (table->columns.size() >= 256)
        return mError.Set(kSyntaxError, "Too many columns");
    Column c = column;
    c.number = uint8_t(table->columns.size());
    c.primary = 0;
    if (!AddColumnRow(table->number, c))
        return false;
    table->columns.push_back(c);
    return true;
}

bool Storage::InsertRow(Table &table, Row &row) {
    mError.Clear();
    if (!mPager.TakeRowId(row.id, mError))
        return false;
    std::string record = EncodeRow(row, mPager.Transaction() & 0xFFFFFF);
    if (record.size() > kMaxRecordBlock)
        return mError.Set(kDataTooLong, "Insert failed: data too long");
    return table.tree->Insert(record, mError);
}

} // namespace kelp::db
