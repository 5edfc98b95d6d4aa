#pragma once
// The page file under every table: the header, 8,192-byte pages in a cache,
// and the transaction that every first change of a page opens.
//
// Workload: a handful of pages is read per statement and many are changed
// per transaction, so pages stay cached until the file closes and every
// change is kept in memory until Commit.  Commit reaches the disk: the old
// images of the pages it overwrites go to a journal beside the file first
// (fsynced), then the pages, then the header that closes the transaction.
// A file left open by a crash is repaired on the next open, from the journal
// and from the records' transaction marks.  Rollback drops the changed pages,
// which gives back exactly the state before the transaction.
//
// Failure channel: operations answer false (or null) and fill `Error`.
#include "database/db_error.h"
#include "database/db_format.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace kelp {
class RandomAccessMechanism;
}

namespace kelp::db {

struct Page {
    uint32_t number = 0;
    bool dirty = false; // changed in the open transaction
    uint8_t bytes[kPageSize]{};

    uint32_t Type() const { return Get32(bytes + kPageType); }
    uint32_t Tree() const { return Get32(bytes + kPageTree); }
    uint32_t Used() const { return Get16(bytes + kPageUsed); }
    void SetUsed(uint32_t used) { Put16(bytes + kPageUsed, used); }
    uint8_t *Records() { return bytes + kPageHead; }
    bool IsLeaf() const { return Type() != kInterior; }
};

class Pager {
public:
    static constexpr uint32_t kNewTree = 0xFFFFFFFF; // a page that starts its own tree

    Pager();
    ~Pager();
    Pager(const Pager &) = delete;
    Pager &operator=(const Pager &) = delete;

    // A new, empty file (its folder is synced too).  No pages yet.
    bool Create(const std::string &path, Error &error);
    // Read-write, or read-only when the file cannot be written.  A file left
    // inside a transaction is repaired first.
    bool Open(const std::string &path, Error &error);
    // A read-only database over bytes held elsewhere (a resource).
    bool OpenReadOnly(std::unique_ptr<RandomAccessMechanism> bytes, Error &error);
    // Commits, then closes; the journal goes.
    bool Close(Error &error);
    bool IsOpen() const { return mFile != nullptr; }
    bool ReadOnly() const { return mReadOnly; }

    // The page, loaded and checked if it is not cached; null on failure.
    Page *Get(uint32_t number, Error &error);
    // A new page of `type` in `tree` (kNewTree: a tree of its own), changed.
    Page *Allocate(uint32_t type, uint32_t tree, Error &error);
    // Marks the page as changed in the open transaction, opening it first.
    bool Change(Page *page, Error &error);

    bool Commit(Error &error);
    bool Rollback(Error &error);
    bool InTransaction() const { return mInTransaction; }
    uint32_t Transaction() const { return mTransaction; }

    bool TakeRowId(uint32_t &id, Error &error);
    uint32_t DirectoryRoot() const { return mDirectoryRoot; }
    bool SetDirectoryRoot(uint32_t page, Error &error);
    uint32_t PageCount() const { return mPageCount; }

    // Bulk loads may skip the waits for the disk; a crash may then lose
    // committed rows (never the file).
    void SetSync(bool sync) { mSync = sync; }
    // Counts structural changes, so that cursors know to find their place again.
    uint64_t Generation() const { return mGeneration; }
    void Bump() { ++mGeneration; }

private:
    bool Begin(Error &error);
    bool ReadHeader(Error &error);
    bool WriteHeader(bool open, Error &error);
    bool ReadRaw(uint32_t number, uint8_t *bytes);
    bool WritePage(const Page &page);
    bool SyncFile();
    bool WriteJournal(Error &error);
    bool Recover(Error &error);
    bool RestoreFromJournal(uint32_t transaction);
    bool FlipMarks(uint32_t transaction);
    void Reset();

    std::unique_ptr<RandomAccessMechanism> mFile;
    std::string mPath; // empty for bytes held elsewhere
    bool mReadOnly = false;
    bool mSync = true;
    std::unordered_map<uint32_t, std::unique_ptr<Page>> mCache;
    std::vector<uint32_t> mChanged; // pages changed in the open transaction
    uint32_t mPageCount = 0;        // pages, including new ones not yet written
    uint32_t mDiskPages = 0;        // pages in the file at the last commit
    uint32_t mTransaction = 1;      // the running or next transaction
    bool mInTransaction = false;
    uint32_t mChainHead = 0xFFFFFFFF; // last page changed; -1 ends the chain
    uint32_t mNextRowId = 1;
    uint32_t mDirectoryRoot = 0;
    // Before the open transaction: what Rollback gives back.
    uint32_t mSavedRowId = 1, mSavedRoot = 0, mSavedPageCount = 0;
    uint64_t mGeneration = 0;
};

} // namespace kelp::db
