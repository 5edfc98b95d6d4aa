#include "database/tree.h"

#include <cstring>

namespace kelp::db {

namespace {

constexpr size_t kMaxDepth = 40; // 8,174-byte pages: no real tree comes near
constexpr uint32_t kUnknownTree = 0xFFFFFFFF;

std::string InteriorRecord(uint32_t transaction, uint32_t count, uint32_t child,
                           const std::string &key) {
    std::string r(kRecordHead, '\0');
    Append16(r, count > 0xFFFF ? 0xFFFF : count);
    Append32(r, child);
    r += key;
    uint8_t *p = reinterpret_cast<uint8_t *>(r.data());
    Put16(p, uint32_t(r.size()));
    p[2] = kLive;
    Put24(p + 3, transaction);
    return r;
}

uint32_t CountRecords(Page *page) {
    uint32_t count = 0;
    for (uint32_t at = 0; at < page->Used(); at += Get16(page->Records() + at))
        ++count;
    return count;
}

} // namespace

Tree::Tree(Pager &pager, uint32_t root, KeySpec spec, bool unique, RootMoved moved)
    : mPager(pager), mRoot(root), mId(kUnknownTree), mSpec(std::move(spec)), mUnique(unique),
      mMoved(std::move(moved)) {}

bool Tree::KeyOf(uint32_t pageType, const uint8_t *record, std::string &key, Error &error) const {
    uint32_t length = Get16(record);
    if (pageType == kInterior) {
        key.assign(reinterpret_cast<const char *>(record + kInteriorHead), length - kInteriorHead);
        return true;
    }
    return KeyOfLeafRecord(mSpec, record, length, key, error);
}

bool Tree::Insert(const std::string &record, Error &error) {
    std::string key;
    if (record.size() < kRowHead || record.size() > kMaxRecordBlock)
        return error.Set(kDataTooLong, "Insert failed: data too long");
    if (!KeyOfLeafRecord(mSpec, reinterpret_cast<const uint8_t *>(record.data()),
                         uint32_t(record.size()), key, error))
        return false;
    return InsertAt(record, key, error);
}

bool Tree::InsertAt(const std::string &record, const std::string &key, Error &error) {
    // A key must fit twice in one interior page, as a split may give the
    // parent two records at once.
    if (record.size() > kMaxRecordBlock || 2 * (kInteriorHead + key.size()) > kMaxRecordBlock)
        return error.Set(kDataTooLong, "Insert failed: data too long");
    TreeCursor cursor(*this);
    bool equal = false;
    if (!cursor.Locate(key, &equal, error))
        return false;
    if (mUnique && equal)
        return error.Set(kPrimaryKeyViolation, "Insert failed: primary key violation");
    bool ok = Put(cursor.mStack, cursor.mStack.size() - 1, record, error);
    mPager.Bump();
    return ok;
}

// Puts `data` (one record, or two interior records) at stack[level]'s
// offset, splitting the page and growing the parent as needed.
bool Tree::Put(std::vector<Level> &stack, size_t level, const std::string &data, Error &error) {
    Page *page = mPager.Get(stack[level].page, error);
    if (!page || !mPager.Change(page, error))
        return false;
    uint8_t *r = page->Records();
    const auto *d = reinterpret_cast<const uint8_t *>(data.data());
    uint32_t used = page->Used(), at = stack[level].offset, tail = used - at;
    uint32_t size = uint32_t(data.size());
    if (at + tail + size <= kMaxRecordBlock) {
        std::memmove(r + at + size, r + at, tail);
        std::memcpy(r + at, d, size);
        page->SetUsed(used + size);
        return true;
    }
    uint32_t transaction = mPager.Transaction() & 0xFFFFFF;
    if (level == 0) {
        Page *root = mPager.Allocate(kInterior, page->Tree(), error);
        if (!root)
            return false;
        std::string first = InteriorRecord(transaction, CountRecords(page), page->number, {});
        std::memcpy(root->Records(), first.data(), first.size());
        root->SetUsed(uint32_t(first.size()));
        mRoot = root->number;
        if (mMoved && !mMoved(mRoot, error))
            return false;
        stack.insert(stack.begin(), Level{root->number, 0});
        ++level;
    }
    uint32_t type = page->Type(), tree = page->Tree();
    auto fresh = [&](const uint8_t *a, uint32_t na, const uint8_t *b, uint32_t nb) -> Page * {
        Page *n = mPager.Allocate(type, tree, error);
        if (n) {
            std::memcpy(n->Records(), a, na);
            if (nb)
                std::memcpy(n->Records() + na, b, nb);
            n->SetUsed(na + nb);
        }
        return n;
    };
    std::string dataKey, tailKey;
    if (!KeyOf(type, d, dataKey, error) || (tail && !KeyOf(type, r + at, tailKey, error)))
        return false;
    std::string parent;
    if (at + size <= kMaxRecordBlock) {
        // The tail moves to a new page; the record stays here.
        Page *n = fresh(r + at, tail, nullptr, 0);
        if (!n)
            return false;
        std::memcpy(r + at, d, size);
        std::memset(r + at + size, 0, kMaxRecordBlock - at - size);
        page->SetUsed(at + size);
        parent = InteriorRecord(transaction, CountRecords(n), n->number, tailKey);
    } else if (size + tail <= kMaxRecordBlock) {
        Page *n = fresh(d, size, r + at, tail);
        if (!n)
            return false;
        std::memset(r + at, 0, kMaxRecordBlock - at);
        page->SetUsed(at);
        parent = InteriorRecord(transaction, CountRecords(n), n->number, dataKey);
    } else {
        Page *n1 = fresh(d, size, nullptr, 0);
        Page *n2 = n1 ? fresh(r + at, tail, nullptr, 0) : nullptr;
        if (!n2)
            return false;
        std::memset(r + at, 0, kMaxRecordBlock - at);
        page->SetUsed(at);
        parent = InteriorRecord(transaction, CountRecords(n1), n1->number, dataKey) +
                 InteriorRecord(transaction, CountRecords(n2), n2->number, tailKey);
    }
    Page *up = mPager.Get(stack[level - 1].page, error);
    if (!up)
        return false;
    stack[level - 1].offset += Get16(up->Records() + stack[level - 1].offset);
    return Put(stack, level - 1, parent, error);
}

// ---- cursor ----

// Records of every state stay in key order in a page, so a binary search
// finds the first whose key is not below `key` (its index in mOffsets).
bool TreeCursor::FirstNotBelow(Page *page, const std::string &key, size_t &first, Error &error) {
    const uint8_t *r = page->Records();
    mOffsets.clear();
    for (uint32_t at = 0; at < page->Used(); at += Get16(r + at))
        mOffsets.push_back(at);
    size_t low = 0, high = mOffsets.size();
    while (low < high) {
        size_t middle = (low + high) / 2;
        if (!mTree.KeyOf(page->Type(), r + mOffsets[middle], mFound, error))
            return false;
        if (CompareKeys(mFound, key) < 0)
            low = middle + 1;
        else
            high = middle;
    }
    first = low;
    return true;
}

bool TreeCursor::Descend(uint32_t number, const std::string *key, Error &error) {
    Pager &pager = mTree.mPager;
    for (;;) {
        if (mStack.size() >= kMaxDepth)
            return error.Damaged("a tree is deeper than any real file");
        if (++mEntered > pager.PageCount() + kMaxDepth)
            return error.Damaged("a tree refers to a page twice");
        Page *page = pager.Get(number, error);
        if (!page)
            return false;
        if (mTree.mId == kUnknownTree)
            mTree.mId = page->Tree();
        if (page->Tree() != mTree.mId)
            return error.Damaged("a page belongs to another tree");
        const uint8_t *r = page->Records();
        uint32_t used = page->Used(), at = 0;
        if (page->Type() == kInterior) {
            if (used == 0)
                return error.Damaged("an interior page is empty");
            uint32_t chosen = 0;
            if (key) {
                // The last record whose key is below the search key, or the first.
                size_t first;
                if (!FirstNotBelow(page, *key, first, error))
                    return false;
                chosen = mOffsets[first ? first - 1 : 0];
            }
            mStack.push_back({number, chosen});
            number = Get32(r + chosen + 8);
            continue;
        }
        if (page->Type() != mTree.LeafType())
            return error.Damaged("a leaf is of the wrong kind");
        if (key) {
            size_t first;
            if (!FirstNotBelow(page, *key, first, error))
                return false;
            at = first < mOffsets.size() ? mOffsets[first] : used;
        }
        mStack.push_back({number, at});
        return true;
    }
}

Page *TreeCursor::LeafPage(Error &error) { return mTree.mPager.Get(mStack.back().page, error); }

// Moves to the next record slot of any state; the stack empties at the end.
bool TreeCursor::Step(Error &error) {
    Page *page = LeafPage(error);
    if (!page)
        return false;
    if (mStack.back().offset < page->Used())
        mStack.back().offset += Get16(page->Records() + mStack.back().offset);
    for (;;) {
        page = LeafPage(error);
        if (!page)
            return false;
        if (mStack.back().offset < page->Used())
            return true;
        mStack.pop_back();
        if (mStack.empty())
            return true;
        Tree::Level &up = mStack.back();
        Page *parent = mTree.mPager.Get(up.page, error);
        if (!parent)
            return false;
        up.offset += Get16(parent->Records() + up.offset);
        if (up.offset < parent->Used() &&
            !Descend(Get32(parent->Records() + up.offset + 8), nullptr, error))
            return false;
    }
}

// From the current slot, forward to a record (live unless `includeDead`).
bool TreeCursor::Settle(bool includeDead, Error &error) {
    mValid = false;
    while (!mStack.empty()) {
        Page *page = LeafPage(error);
        if (!page)
            return false;
        uint32_t at = mStack.back().offset;
        if (at < page->Used() && (includeDead || page->Records()[at + 2] == kLive)) {
            mValid = true;
            return true;
        }
        if (!Step(error))
            return false;
    }
    return true;
}

bool TreeCursor::Remember(Error &error) {
    Page *page = LeafPage(error);
    if (!page)
        return false;
    const uint8_t *r = page->Records() + mStack.back().offset;
    mRowId = Get32(r + kRecordHead);
    mGeneration = mTree.mPager.Generation();
    return mTree.KeyOf(page->Type(), r, mKey, error);
}

// Ends the walk once the keys leave the filter's range.
bool TreeCursor::Accept(Error &error) {
    if (!mValid)
        return false;
    if (!Remember(error)) {
        mValid = false;
        return false;
    }
    if (!mFilter.empty() && mKey.compare(0, mFilter.size(), mFilter) != 0)
        mValid = false;
    return mValid;
}

bool TreeCursor::Locate(const std::string &key, bool *equal, Error &error) {
    mStack.clear();
    mEntered = 0;
    if (!Descend(mTree.mRoot, &key, error))
        return false;
    TreeCursor peek(*this);
    if (!peek.Settle(false, error))
        return false;
    *equal = false;
    if (peek.mValid) {
        if (!peek.Remember(error))
            return false;
        *equal = peek.mKey == key;
    }
    return true;
}

bool TreeCursor::First(Error &error) {
    mStack.clear();
    mEntered = 0;
    bool ok = mFilter.empty() ? Descend(mTree.mRoot, nullptr, error)
                              : Descend(mTree.mRoot, &mFilter, error);
    return ok && Settle(false, error) && Accept(error);
}

bool TreeCursor::Seek(const std::string &key, Error &error) {
    mStack.clear();
    mEntered = 0;
    return Descend(mTree.mRoot, &key, error) && Settle(false, error) && Accept(error);
}

// After a change to the tree's shape: down again by key, then on to the
// record with our row id (dead or not).  `found` is false when it is gone;
// the cursor then stands on what follows it.
bool TreeCursor::Refind(bool &found, Error &error) {
    found = false;
    mStack.clear();
    mEntered = 0;
    if (!Descend(mTree.mRoot, &mKey, error))
        return false;
    std::string key;
    for (;;) {
        if (!Settle(true, error))
            return false;
        if (!mValid)
            return true;
        Page *page = LeafPage(error);
        const uint8_t *r = page->Records() + mStack.back().offset;
        if (Get32(r + kRecordHead) == mRowId) {
            found = true;
            return true;
        }
        if (!mTree.KeyOf(page->Type(), r, key, error))
            return false;
        if (CompareKeys(key, mKey) > 0)
            return true;
        if (!Step(error))
            return false;
    }
}

bool TreeCursor::Next(Error &error) {
    if (!mValid)
        return false;
    bool step = true;
    if (mGeneration != mTree.mPager.Generation() && !Refind(step, error))
        return mValid = false;
    if (step && !mStack.empty() && !Step(error))
        return mValid = false;
    return Settle(false, error) && Accept(error);
}

const uint8_t *TreeCursor::Record() {
    Error error;
    bool found = true;
    if (!mValid)
        return nullptr;
    if (mGeneration != mTree.mPager.Generation() && (!Refind(found, error) || !found)) {
        mValid = false;
        return nullptr;
    }
    mGeneration = mTree.mPager.Generation();
    Page *page = LeafPage(error);
    return page ? page->Records() + mStack.back().offset : nullptr;
}

uint32_t TreeCursor::Length() {
    const uint8_t *r = Record();
    return r ? Get16(r) : 0;
}

uint8_t *TreeCursor::Modify(Error &error) {
    if (!Record()) {
        error.Set(kFileError, "There is no current record");
        return nullptr;
    }
    Page *page = LeafPage(error);
    if (!page || !mTree.mPager.Change(page, error))
        return nullptr;
    return page->Records() + mStack.back().offset;
}

bool TreeCursor::Delete(Error &error) {
    uint8_t *r = Modify(error);
    if (!r)
        return false;
    uint32_t now = mTree.mPager.Transaction() & 0xFFFFFF;
    // A record born in this transaction dies with no mark to undo: a rollback
    // must not bring back a row that was inserted and deleted inside it.
    bool bornNow = r[2] == kLive && Get24(r + 3) == now;
    r[2] = kDead;
    Put24(r + 3, bornNow ? 0 : now);
    return true;
}

bool TreeCursor::Update(Row row, Error &error) {
    if (!Record())
        return error.Set(kFileError, "There is no current record");
    if (!mTree.mPager.TakeRowId(row.id, error))
        return false;
    std::string record = EncodeRow(row, mTree.mPager.Transaction() & 0xFFFFFF);
    std::string key = KeyOfRow(mTree.mSpec, row);
    if (record.size() > kMaxRecordBlock || 2 * (kInteriorHead + key.size()) > kMaxRecordBlock)
        return error.Set(kDataTooLong, "Insert failed: data too long");
    if (!Delete(error))
        return false;
    if (key != mKey) {
        mMoved.push_back(std::move(record));
        return true;
    }
    std::vector<Tree::Level> stack = mStack;
    bool ok = mTree.Put(stack, stack.size() - 1, record, error);
    mTree.mPager.Bump();
    return ok;
}

bool TreeCursor::Finish(Error &error) {
    std::vector<std::string> moved;
    moved.swap(mMoved);
    for (const std::string &record : moved)
        if (!mTree.Insert(record, error))
            return false;
    return true;
}

} // namespace kelp::db
