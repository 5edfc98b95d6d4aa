#pragma once
// One tree of records per table (and one for the table directory), ordered
// by a key computed from each record.  Interior records hold a child page
// and the child's lowest key; leaves hold the records.  Pages split when
// full and are never merged; a page's dead records stay until it is next
// loaded from the file.
//
// Failure channel: false and the `Error`; a damaged tree (a cycle, a page of
// another tree, a depth past any real file) is reported, never followed.
#include "database/pager.h"
#include "database/record.h"

#include <functional>
#include <string>
#include <vector>

namespace kelp::db {

class Tree {
public:
    // Called with the new root page when the root splits.
    using RootMoved = std::function<bool(uint32_t root, Error &error)>;

    Tree(Pager &pager, uint32_t root, KeySpec spec, bool unique, RootMoved moved);

    // Puts a record (head included) at its key.  2005 when the key must be
    // unique and is taken; 2006 when the record or its key cannot fit a page.
    bool Insert(const std::string &record, Error &error);
    bool InsertAt(const std::string &record, const std::string &key, Error &error);

    Pager &pager() { return mPager; }
    uint32_t Root() const { return mRoot; }
    uint32_t Id() const { return mId; }
    const KeySpec &Spec() const { return mSpec; }
    uint32_t LeafType() const {
        return mSpec.kind == KeySpec::kDirectoryName ? kDirectoryLeaf : kTableLeaf;
    }
    // The key of any record of this tree's pages.
    bool KeyOf(uint32_t pageType, const uint8_t *record, std::string &key, Error &error) const;

private:
    friend class TreeCursor;
    struct Level {
        uint32_t page;
        uint32_t offset; // into the page's records
    };
    bool Put(std::vector<Level> &stack, size_t level, const std::string &data, Error &error);

    Pager &mPager;
    uint32_t mRoot;
    uint32_t mId; // the tree's first page, kept by every page of it
    KeySpec mSpec;
    bool mUnique;
    RootMoved mMoved;
};

// Walks the live records of a tree in key order.  A cursor survives inserts
// into its tree: it finds its record again by key and row id.
class TreeCursor {
public:
    explicit TreeCursor(Tree &tree) : mTree(tree) {}

    // Each positions on a live record and answers true, or answers false at
    // the end (error unset) or on failure (error set).
    bool First(Error &error);
    bool Seek(const std::string &key, Error &error);
    bool Next(Error &error);
    // Only records whose key begins with `prefix` (empty: all).
    void SetFilter(std::string prefix) { mFilter = std::move(prefix); }

    bool Valid() const { return mValid; }
    const uint8_t *Record();
    uint32_t Length();

    // The current record, writable: its page joins the transaction.
    uint8_t *Modify(Error &error);
    // Marks the current record dead.
    bool Delete(Error &error);
    // Replaces the current row: a new image with a new row id.  One that
    // keeps its key goes in before the old one, so the walk does not meet it
    // again; one that moves waits in the cursor until Finish.
    bool Update(Row row, Error &error);
    bool Finish(Error &error);

    // Positions at the leaf place where `key` belongs, live records only;
    // `equal` tells whether the first live record at or after it has the key.
    bool Locate(const std::string &key, bool *equal, Error &error);

private:
    friend class Tree;
    bool Descend(uint32_t page, const std::string *key, Error &error);
    bool FirstNotBelow(Page *page, const std::string &key, size_t &first, Error &error);
    bool Settle(bool includeDead, Error &error);
    bool Step(Error &error);
    bool Accept(Error &error);
    bool Remember(Error &error);
    bool Refind(bool &found, Error &error);
    Page *LeafPage(Error &error);

    Tree &mTree;
    std::vector<Tree::Level> mStack;
    std::string mFilter;
    bool mValid = false;
    uint64_t mGeneration = 0;
    uint32_t mEntered = 0; // pages entered since the last seek: a walk enters each once
    std::string mKey;      // the current record's key and row id, to find it again
    uint32_t mRowId = 0;
    std::vector<std::string> mMoved; // updated rows waiting for Finish
    std::vector<uint32_t> mOffsets;  // scratch of the binary search
    std::string mFound;
};

} // namespace kelp::db
