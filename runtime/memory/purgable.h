#pragma once
// purgableObject: caches that give memory back when an allocation fails.
//
// Every cache that can rebuild what it holds (decoded pictures, record
// tracking of a database) derives from purgableObject and calls Touch when it
// is used.  The objects form one list in order of last use; when memory runs
// short, PurgeOne asks the least recently used first.  One thread at a time
// runs runtime code, so the list takes no lock.
#include <cstddef>

namespace kelp {

class purgableObject {
public:
    purgableObject() = default;
    purgableObject(const purgableObject &) = delete;
    purgableObject &operator=(const purgableObject &) = delete;
    virtual ~purgableObject(); // leaves the list

    // Frees what can be rebuilt; true when something was freed.
    virtual bool Purge() = 0;

    void AddToList();      // at the head, unless already in the list
    void RemoveFromList(); // no effect when not in the list
    void Touch();          // marks as just used: to the head
    bool InList() const { return mInList; }

    // Walks from the least recently used towards the most recently used,
    // calling Purge, and stops at the first that answers true.  Answers
    // whether one did.
    static bool PurgeOne();

    // The list from most to least recently used, for tests and diagnostics.
    static purgableObject *Head();
    purgableObject *Next() const { return mNext; }

private:
    bool mInList = false;
    purgableObject *mNext = nullptr;     // towards the least recently used
    purgableObject *mPrevious = nullptr; // towards the most recently used
};

// `size` bytes from the small-block allocator, zeroed.  When the allocator
// can't serve them, caches are purged one by one and the request retried;
// null only when nothing is left to purge.  A size below 1 gives null.
void *AllocateBlockBytes(long size);
// Gives back what AllocateBlockBytes handed out, with the same size.
void FreeBlockBytes(void *bytes, long size);

// Test hook: the next `count` requests of AllocateBlockBytes to reach the
// allocator fail as if memory were short (purging still runs between them).
void FailNextBlockAllocations(int count);

} // namespace kelp
