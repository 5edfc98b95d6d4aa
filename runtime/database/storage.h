#pragma once
// A database file as tables: the directory of trees, the system tables that
// hold each table's name and columns, rows, and BLOBs cut into pieces.
//
// The system tables: "sys$tables" (table number, name), "sys$fields" (table
// number, column number, name, not-null, type, key position, length) and
// "sys$blob" (one row per BLOB piece).  A user table's tree is named by the
// decimal text of its number.  Keys are built from the collation table byte
// for byte, so "abc" and "ABC" are two keys: a unique text key takes both.
//
// Failure channel: false (or null) and `LastError()`.
#include "database/pager.h"
#include "database/tree.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kelp::db {

struct Column {
    std::string name;
    uint8_t number = 0;   // the field number in rows
    uint8_t type = kText; // a type code
    bool notNull = false;
    uint16_t primary = 0; // position in the primary key from 1; 0: not in it
    int32_t length = -1;  // declared length, or -1
};

struct Table {
    std::string name;
    uint32_t number = 0;
    std::vector<Column> columns; // in column order
    Tree *tree = nullptr;
    const Column *Find(std::string_view columnName) const;
};

class Storage {
public:
    Storage() = default;
    ~Storage();
    Storage(const Storage &) = delete;
    Storage &operator=(const Storage &) = delete;

    bool Create(const std::string &path);
    bool Open(const std::string &path);
    bool OpenBytes(std::unique_ptr<RandomAccessMechanism> bytes);
    bool Close();
    bool IsOpen() const { return mPager.IsOpen(); }

    bool Commit();
    bool Rollback();

    // Tables by SQL name, without regard to ASCII case; null when missing.
    Table *FindTable(std::string_view name);
    std::vector<std::string> TableNames() const;
    bool CreateTable(const std::string &name, const std::vector<Column> &columns);
    bool AddColumn(const std::string &table, const Column &column);
    // Gives the row a new id and puts it in the table.
    bool InsertRow(Table &table, Row &row);

    // BLOBs: pieces of up to 4,000 bytes, chained through index pieces.
    bool WriteBlob(std::string_view data, uint32_t &id);
    bool ReadBlob(uint32_t id, std::string &data);
    bool DeleteBlob(uint32_t id);

    Pager &pager() { return mPager; }
    // Changes whenever the tables are read again (a rollback, a reopening):
    // walks over the old ones must end.
    uint64_t Epoch() const { return mEpoch; }
    Error &LastError() { return mError; }
    // A tree of the directory by storage name; null when missing.
    Tree *OpenTree(const std::string &name, KeySpec spec, bool unique);

private:
    bool CreateTree(const std::string &name, uint32_t &root);
    bool FindTreeRoot(const std::string &name, uint32_t &root, bool &found);
    bool LoadSchema();
    bool LoadColumns(Table &table);
    bool AddColumnRow(uint32_t table, const Column &column);
    bool FindPiece(uint32_t id, TreeCursor &cursor, Row &row);
    bool WritePiece(uint32_t kind, std::string_view data, uint32_t &id);
    void Forget();

    Pager mPager;
    Error mError;
    std::unique_ptr<Tree> mDirectory;
    std::map<std::string, std::unique_ptr<Tree>> mTrees; // by storage name
    std::vector<std::unique_ptr<Table>> mTables;
    Tree *mSysTables = nullptr;
    Tree *mSysFields = nullptr;
    Tree *mSysBlob = nullptr;
    uint64_t mEpoch = 0;
};

} // namespace kelp::db
