// The list of caches in order of last use, and allocation that purges them
// when memory runs short.
#include "memory/purgable.h"

#include "strings/small_alloc.h"

#include <cstring>

namespace kelp {
namespace {

purgableObject *gHead = nullptr; // most recently used
purgableObject *gTail = nullptr; // least recently used
int gFailuresToInject = 0;       // test hook
constexpr int kMaxPurgeRounds = 1024;

void *TryAllocate(long size) {
    if (gFailuresToInject > 0) {
        --gFailuresToInject;
        return nullptr;
    }
    return OSalloclen(size, kMemFullSoft);
}

} // namespace

purgableObject::~purgableObject() { RemoveFromList(); }

void purgableObject::AddToList() {
    if (mInList)
        return;
    mPrevious = nullptr;
    mNext = gHead;
    if (gHead)
        gHead->mPrevious = this;
    gHead = this;
    if (!gTail)
        gTail = this;
    mInList = true;
}

void purgableObject::RemoveFromList() {
    if (!mInList)
        return;
    if (mPrevious)
        mPrevious->mNext = mNext;
    else
        gHead = mNext;
    if (mNext)
        mNext->mPrevious = mPrevious;
    else
        gTail = mPrevious;
    mNext = mPrevious = nullptr;
    mInList = false;
}

void purgableObject::Touch() {
    RemoveFromList();
    AddToList();
}

bool purgableObject::PurgeOne() {
    // Purge may take the object out of the list (or destroy it): step to
    // the neighbour first.
    for (purgableObject *p = gTail; p;) {
        purgableObject *towardsHead = p->mPrevious;
        if (p->Purge())
            return true;
        p = towardsHead;
    }
    return false;
}

purgableObject *purgableObject::Head() { return gHead; }

void *AllocateBlockBytes(long size) {
    if (size < 1)
        return nullptr;
    void *bytes = TryAllocate(size);
    // A cache that answers true has freed something; the bound keeps a
    // cache that always answers true from holding the request forever.
    for (int round = 0; !bytes && round < kMaxPurgeRounds && purgableObject::PurgeOne(); ++round)
        bytes = TryAllocate(size);
    if (bytes)
        std::memset(bytes, 0, static_cast<size_t>(size));
    return bytes;
}

void FreeBlockBytes(void *bytes, long size) { OSfreelen(bytes, size); }

void FailNextBlockAllocations(int count) { gFailuresToInject = count < 0 ? 0 : count; }

} // namespace kelp
