// The page file, trees, transactions and BLOBs, on real files.
#include "database/storage.h"

#include "db_test_util.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <random>

using namespace kelp::db;

namespace {

FieldValue Value(uint8_t type, int64_t i = 0, double d = 0, std::string s = {}) {
    FieldValue v;
    v.type = type;
    v.integer = i;
    v.real = d;
    v.bytes = std::move(s);
    return v;
}

Column Col(const char *name, uint8_t type, uint16_t primary = 0) {
    Column c;
    c.name = name;
    c.type = type;
    c.primary = primary;
    return c;
}

// Every live row of the table, in key order: key column 0 -> column 1.
std::vector<std::pair<int64_t, std::string>> Scan(Storage &db, const char *table) {
    std::vector<std::pair<int64_t, std::string>> rows;
    TreeCursor cursor(*db.FindTable(table)->tree);
    Row row;
    Error &error = db.LastError();
    error.Clear();
    for (bool more = cursor.First(error); more; more = cursor.Next(error)) {
        EXPECT_TRUE(DecodeRow(cursor.Record(), cursor.Length(), row, error));
        const FieldValue *text = row.Find(1);
        rows.emplace_back(row.Find(0)->integer, text ? text->bytes : "");
    }
    EXPECT_FALSE(error.Failed()) << error.message;
    return rows;
}

bool Put(Storage &db, const char *table, int64_t key, const std::string &text) {
    Row row;
    row.Set(0, Value(kInteger, key));
    row.Set(1, Value(kText, 0, 0, text));
    return db.InsertRow(*db.FindTable(table), row);
}

TEST(DatabaseKeys, ValuesSortAsTheirKeys) {
    // Each row: values in the order their keys must take.
    const std::vector<std::vector<FieldValue>> orders = {
        {FieldValue{}, Value(kInteger, -70000), Value(kInteger, -1), Value(kInteger, 0),
         Value(kInteger, 5), Value(kInteger, 70000)},
        {Value(kSmallInt, -300), Value(kSmallInt, -2), Value(kSmallInt, 3)},
        {Value(kDouble, 0, -1e300), Value(kDouble, 0, -2.5), Value(kDouble, 0, -0.5),
         Value(kDouble, 0, 0.25), Value(kDouble, 0, 7), Value(kDouble, 0, 1e300)},
        {Value(kFloat, 0, -3.5), Value(kFloat, 0, -0.125), Value(kFloat, 0, 2),
         Value(kFloat, 0, 9)},
        {FieldValue{}, Value(kText, 0, 0, ""), Value(kText, 0, 0, "ABC"), Value(kText, 0, 0, "abc"),
         Value(kText, 0, 0, "abd"), Value(kText, 0, 0, "b")},
    };
    for (const auto &order : orders)
        for (size_t i = 1; i < order.size(); ++i) {
            std::string a, b;
            AppendKeyValue(a, order[i - 1]);
            AppendKeyValue(b, order[i]);
            EXPECT_LT(CompareKeys(a, b), 0)
                << "row of type " << int(order[i].type) << ", item " << i;
        }
}

TEST(DatabaseStorage, RefusalsCarryTheirCodesAndTexts) {
    TempFolder folder;
    Storage db;
    ASSERT_TRUE(db.Create(folder.File("t.db"))) << db.LastError().message;
    ASSERT_TRUE(db.CreateTable("t", {Col("k", kText, 1), Col("v", kText)}));
    Row big;
    big.Set(0, Value(kText, 0, 0, "x"));
    big.Set(1, Value(kText, 0, 0, std::string(8174 - 10 - 7 - 6, 'y')));
    struct Case {
        std::function<bool()> act;
        int32_t code;
        const char *message;
    } cases[] = {
        {[&] { return db.CreateTable("T", {Col("a", kInteger)}); }, 2000,
         "Unable to create T because it already exists"},
        {[&] { return db.CreateTable("u", {Col("a", kTimestamp)}); }, 2002,
         "Unable to create u because an unsupported column type was used"},
        {[&] { return db.AddColumn("nope", Col("c", kInteger)); }, 202,
         "Unable to add column c because table 'nope' doesn't exist"},
        {[&] { return db.AddColumn("t", Col("c", 11)); }, 2002,
         "Unable to add c because an unsupported  type was used"},
        {[&] { return db.InsertRow(*db.FindTable("t"), big); }, 0, ""}, // exactly 8,174 bytes
        {[&] {
             big.fields[0].value.bytes = "y";
             big.fields[1].value.bytes += "z";
             return db.InsertRow(*db.FindTable("t"), big);
         },
         2006, "Insert failed: data too long"},
        {[&] {
             big.fields[0].value.bytes = "x";
             big.fields[1].value.bytes = "short";
             return db.InsertRow(*db.FindTable("t"), big);
         },
         2005, "Insert failed: primary key violation"},
    };
    for (auto &c : cases) {
        db.LastError().Clear();
        EXPECT_EQ(c.act(), c.code == 0) << c.message;
        EXPECT_EQ(db.LastError().code, c.code);
        EXPECT_EQ(db.LastError().message, c.message);
    }
    // "abc" and "ABC" are different keys.
    TreeCursor cursor(*db.FindTable("t")->tree);
    Row row;
    row.Set(0, Value(kText, 0, 0, "abc"));
    EXPECT_TRUE(db.InsertRow(*db.FindTable("t"), row));
    row.Set(0, Value(kText, 0, 0, "ABC"));
    EXPECT_TRUE(db.InsertRow(*db.FindTable("t"), row)) << db.LastError().message;
}

// Random inserts, deletes, key-changing updates, commits, rollbacks and
// reopenings against a plain map of what was committed and what is pending.
TEST(DatabaseStorage, RandomOperationsMatchAModel) {
    TempFolder folder;
    std::string path = folder.File("r.db");
    Storage db;
    ASSERT_TRUE(db.Create(path));
    ASSERT_TRUE(db.CreateTable("r", {Col("k", kInteger, 1), Col("v", kText)}));
    ASSERT_TRUE(db.Commit());
    db.pager().SetSync(false); // the crash test waits for the disk
    std::map<int64_t, std::string> committed, current;
    std::mt19937 rnd(1234);
    for (int step = 0; step < 6000; ++step) {
        int op = int(rnd() % 100);
        int64_t key = int64_t(rnd() % 3000) - 1500;
        if (op < 55) {
            std::string text(rnd() % 300, char('a' + rnd() % 26));
            bool fresh = !current.count(key);
            db.LastError().Clear();
            ASSERT_EQ(Put(db, "r", key, text), fresh) << db.LastError().message;
            if (fresh)
                current[key] = text;
        } else if (op < 84) {
            // Delete, re-key or rewrite everything in a key range through one cursor.
            Error &error = db.LastError();
            TreeCursor cursor(*db.FindTable("r")->tree);
            std::string from;
            AppendKeyValue(from, Value(kInteger, key));
            bool move = op >= 70 && op < 78, rewrite = op >= 78;
            Row row;
            for (bool more = cursor.Seek(from, error); more; more = cursor.Next(error)) {
                ASSERT_TRUE(DecodeRow(cursor.Record(), cursor.Length(), row, error));
                int64_t k = row.Find(0)->integer;
                if (k > key + 20)
                    break;
                if (rewrite) {
                    row.Set(1, Value(kText, 0, 0, std::string(rnd() % 900, 'r')));
                    ASSERT_TRUE(cursor.Update(row, error)) << error.message;
                    current[k] = row.Find(1)->bytes;
                    continue;
                }
                if (move && !current.count(k + 5000)) {
                    row.Set(0, Value(kInteger, k + 5000));
                    ASSERT_TRUE(cursor.Update(row, error)) << error.message;
                    current[k + 5000] = current[k];
                } else {
                    ASSERT_TRUE(cursor.Delete(error));
                }
                current.erase(k);
            }
            ASSERT_TRUE(cursor.Finish(error)) << error.message;
        } else if (op < 92) {
            ASSERT_TRUE(db.Commit());
            committed = current;
        } else if (op < 96) {
            ASSERT_TRUE(db.Rollback()) << db.LastError().message;
            current = committed;
        } else {
            ASSERT_TRUE(db.Close());
            ASSERT_TRUE(db.Open(path)) << db.LastError().message;
            db.pager().SetSync(false);
            committed = current;
        }
        if (step % 500 == 0 || op >= 84) {
            auto rows = Scan(db, "r");
            ASSERT_EQ(rows.size(), current.size()) << "step " << step;
            ASSERT_TRUE(std::equal(
                rows.begin(), rows.end(), current.begin(),
                [](auto &a, auto &b) { return a.first == b.first && a.second == b.second; }))
                << "step " << step;
        }
    }
    EXPECT_GT(db.pager().PageCount(), 20u); // the tree grew interior levels
}

TEST(DatabaseStorage, RollbackGivesBackTheStateBeforeTheTransaction) {
    TempFolder folder;
    Storage db;
    ASSERT_TRUE(db.Create(folder.File("t.db")));
    ASSERT_TRUE(db.CreateTable("t", {Col("k", kInteger, 1), Col("v", kText)}));
    ASSERT_TRUE(Put(db, "t", 1, "one") && Put(db, "t", 2, "two") && db.Commit());
    Error &error = db.LastError();
    ASSERT_TRUE(Put(db, "t", 3, "three"));
    {
        TreeCursor cursor(*db.FindTable("t")->tree);
        Row row;
        for (bool more = cursor.First(error); more; more = cursor.Next(error)) {
            DecodeRow(cursor.Record(), cursor.Length(), row, error);
            if (row.Find(0)->integer == 3)
                cursor.Delete(error); // inserted and deleted inside
            if (row.Find(0)->integer == 2) {
                row.Set(1, Value(kText, 0, 0, "changed"));
                cursor.Update(row, error); // updated twice
                cursor.Update(row, error);
            }
        }
        ASSERT_TRUE(cursor.Finish(error));
    }
    ASSERT_TRUE(db.CreateTable("gone", {Col("a", kInteger)}));
    ASSERT_TRUE(db.Rollback());
    using Rows = std::vector<std::pair<int64_t, std::string>>;
    EXPECT_EQ(Scan(db, "t"), (Rows{{1, "one"}, {2, "two"}}));
    EXPECT_EQ(db.FindTable("gone"), nullptr);
}

TEST(DatabaseStorage, BlobsRoundTripInPieces) {
    TempFolder folder;
    Storage db;
    ASSERT_TRUE(db.Create(folder.File("b.db")));
    // Size -> pieces written (content pieces plus index pieces).
    const std::pair<size_t, int> cases[] = {
        {0, 1}, {4000, 1}, {4001, 3}, {1 << 20, 263 + 1}, {2000 * 1000 + 1, 501 + 2}};
    std::mt19937 rnd(7);
    for (auto [size, pieces] : cases) {
        std::string data(size, '\0');
        for (char &c : data)
            c = char(rnd());
        uint32_t before = 0, id = 0, after = 0;
        db.pager().TakeRowId(before, db.LastError());
        ASSERT_TRUE(db.WriteBlob(data, id)) << db.LastError().message;
        db.pager().TakeRowId(after, db.LastError());
        EXPECT_EQ(int(after - before - 1), pieces) << size;
        ASSERT_TRUE(db.Commit());
        std::string back;
        ASSERT_TRUE(db.ReadBlob(id, back)) << db.LastError().message;
        EXPECT_TRUE(back == data) << size;
        ASSERT_TRUE(db.DeleteBlob(id));
        EXPECT_FALSE(db.ReadBlob(id, back));
    }
}

// A file left inside a transaction (the flag at offset 12) with pages that
// reached the disk before their commit is repaired on open by undoing the
// records the transaction marked.
TEST(DatabaseStorage, FileLeftInATransactionIsRepairedFromItsMarks) {
    TempFolder folder;
    std::string path = folder.File("c.db");
    {
        Storage db;
        ASSERT_TRUE(db.Create(path));
        ASSERT_TRUE(db.CreateTable("t", {Col("k", kInteger, 1), Col("v", kText)}));
        for (int i = 0; i < 3; ++i)
            ASSERT_TRUE(Put(db, "t", i, "v"));
        ASSERT_TRUE(db.Close());
    }
    std::fstream f(path, std::ios::in | std::ios::out | std::ios::binary);
    uint8_t header[64];
    f.read(reinterpret_cast<char *>(header), 64);
    uint32_t open = Get32(header + 8) + 1; // the transaction that "crashed"
    Put32(header + 12, 1);
    f.seekp(0);
    f.write(reinterpret_cast<char *>(header), 64);
    // The table's leaf is the last page.  Row 0 becomes a row that
    // transaction inserted, row 1 one it deleted.
    f.seekg(0, std::ios::end);
    int64_t last = (int64_t(f.tellg()) - 64) / 8192 - 1;
    uint8_t page[8192];
    f.seekg(64 + last * 8192);
    f.read(reinterpret_cast<char *>(page), 8192);
    ASSERT_EQ(Get32(page), kTableLeaf);
    Put32(header + 8, open);
    f.seekp(8);
    f.write(reinterpret_cast<char *>(header + 8), 4);
    Put32(page + 8, open);
    uint8_t *first = page + 18, *second = first + Get16(first);
    Put24(first + 3, open);
    second[2] = 'D';
    Put24(second + 3, open);
    f.seekp(64 + last * 8192);
    f.write(reinterpret_cast<char *>(page), 8192);
    f.close();

    Storage db;
    ASSERT_TRUE(db.Open(path)) << db.LastError().message;
    using Rows = std::vector<std::pair<int64_t, std::string>>;
    EXPECT_EQ(Scan(db, "t"), (Rows{{1, "v"}, {2, "v"}}));
    ASSERT_TRUE(db.Close());
    std::ifstream in(path, std::ios::binary);
    in.read(reinterpret_cast<char *>(header), 64);
    EXPECT_EQ(Get32(header + 12), 0u);
}

std::string Slurp(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
void Spill(const std::string &path, const std::string &bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// A commit torn half-way (some pages new, some old, the flag still set) is
// put back from the journal to the state before it.
TEST(DatabaseStorage, TornCommitIsRestoredFromTheJournal) {
    TempFolder folder;
    std::string path = folder.File("torn.db");
    Storage db;
    ASSERT_TRUE(db.Create(path));
    ASSERT_TRUE(db.CreateTable("t", {Col("k", kInteger, 1), Col("v", kText)}));
    for (int i = 0; i < 300; ++i)
        ASSERT_TRUE(Put(db, "t", i * 2, std::string(200, 'a')));
    ASSERT_TRUE(db.Commit());
    auto before = Scan(db, "t");
    std::string old = Slurp(path);
    for (int i = 0; i < 300; ++i) // lands in every leaf and splits them
        ASSERT_TRUE(Put(db, "t", i * 2 + 1, std::string(300, 'b')));
    ASSERT_TRUE(db.Commit());
    std::string torn = Slurp(path), journal = Slurp(path + "-journal");
    ASSERT_TRUE(db.Close());
    for (size_t page = 0; 64 + (page + 1) * 8192 <= old.size(); page += 2)
        torn.replace(64 + page * 8192, 8192, old, 64 + page * 8192, 8192);
    torn[15] = 1; // still inside the transaction
    Spill(path, torn);
    Spill(path + "-journal", journal);
    ASSERT_TRUE(db.Open(path)) << db.LastError().message;
    EXPECT_TRUE(Scan(db, "t") == before);
    EXPECT_EQ(Slurp(path).size(), old.size());
}

} // namespace
