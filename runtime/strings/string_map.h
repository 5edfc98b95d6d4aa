#pragma once
// StringMap<V>: a chained hash map from kelp::string to a value.
//
// Keys are case-insensitive (string::Compare) and hashed over their stored
// bytes with ASCII letters raised to upper case, so two equal keys in
// different encodings may land in different bins: keep one encoding per map.
// The map remembers insertion order, grows to twice its bins when the entry
// count passes three quarters of them, and lets iterators live through
// removals: an iterator whose entry goes away moves on to the following one
// without skipping it.
//
// StringMapIterator<V> walks in insertion order.  StringMap<bool> serves as a
// set of strings, with StringSetIterator.
#include "base/ascii.h"
#include "base/fatal_report.h"
#include "strings/kstring.h"

#include <cstdint>

namespace kelp {

template <typename V> class StringMapIterator;

template <typename V> class StringMap {
public:
    explicit StringMap(uint32_t binCount = 256) : mBinCount(binCount ? binCount : 1) {}
    StringMap(const StringMap &) = delete;
    StringMap &operator=(const StringMap &) = delete;
    virtual ~StringMap() {
        // No iterator may outlive its map: detach (and disarm) the stragglers.
        while (mIterators) {
            StringMapIterator<V> *it = mIterators;
            mIterators = it->mNextIterator;
            it->Orphan();
        }
        Node *node = mHead;
        while (node) {
            Node *next = node->nextInOrder;
            delete node;
            node = next;
        }
        delete[] mBins;
    }

    // Insert, or replace the value of an equal key (the first key stays).
    void AddEntry(const string &key, const V &value) {
        if (!mBins)
            mBins = new Node *[mBinCount]();
        uint32_t bin = Hash(key) % mBinCount;
        for (Node *node = mBins[bin]; node; node = node->nextInBin) {
            if (KeyEquals(node->key, key)) {
                node->value = value;
                return;
            }
        }
        Node *node = new Node{mBins[bin], nullptr, key, value};
        mBins[bin] = node;
        if (mTail)
            mTail->nextInOrder = node;
        else
            mHead = node;
        mTail = node;
        ++mCount;
        if (mCount > mBinCount * 3 / 4)
            Rehash(mBinCount * 2);
    }

    // True and the value when the key is present.
    bool GetEntry(const string &key, V &value) const {
        Node *node = Find(key);
        if (!node)
            return false;
        value = node->value;
        return true;
    }
    bool Has(const string &key) const { return Find(key) != nullptr; }

    // Removes the key if present.  Iterators standing on it move on to the
    // entry that followed it.
    void Remove(const string &key) {
        Node *inHash = nullptr;
        if (mBins) {
            Node **link = &mBins[Hash(key) % mBinCount];
            while (*link) {
                if (KeyEquals((*link)->key, key)) {
                    inHash = *link;
                    *link = inHash->nextInBin;
                    break;
                }
                link = &(*link)->nextInBin;
            }
        }
        Node *inOrder = nullptr;
        Node *previous = nullptr;
        for (Node *node = mHead; node; previous = node, node = node->nextInOrder) {
            if (node == inHash || (!inHash && KeyEquals(node->key, key))) {
                inOrder = node;
                break;
            }
        }
        bool foundInHash = inHash != nullptr, foundInOrder = inOrder != nullptr;
        if (foundInHash != foundInOrder)
            FatalReport(kFatalFailedAssertion, "Universal/StringMap", __LINE__,
                        "foundInHash == foundInOrder", "");
        if (!inOrder)
            return;
        if (!inHash) {
            // The bins lost this node; never leave a dangling link behind.
            UnlinkFromBins(inOrder);
        }
        // Every iterator that refers to the node (standing on it, or waiting
        // to take it next) goes on to its follower.
        for (StringMapIterator<V> *it = mIterators; it; it = it->mNextIterator) {
            if (it->mCurrent == inOrder) {
                it->mCurrent = inOrder->nextInOrder;
                it->mPositioned = false;
            }
        }
        if (previous)
            previous->nextInOrder = inOrder->nextInOrder;
        else
            mHead = inOrder->nextInOrder;
        if (mTail == inOrder)
            mTail = previous;
        delete inOrder;
        --mCount;
    }

    uint32_t Count() const { return mCount; }
    uint32_t BinCount() const { return mBinCount; }
    // False until the first insertion: a map without insertions has no bins.
    bool HasBins() const { return mBins != nullptr; }

    // Calls fn(key, value, argument) bin by bin, each bin from its chain's
    // head (not insertion order).  Stops and answers false at the first call
    // that answers false.
    bool ForEach(bool (*fn)(const string &key, V &value, void *argument), void *argument) {
        if (!mBins)
            return true;
        for (uint32_t bin = 0; bin < mBinCount; ++bin)
            for (Node *node = mBins[bin]; node; node = node->nextInBin)
                if (!fn(node->key, node->value, argument))
                    return false;
        return true;
    }

    // Re-sorts the entries into `newSize` bins; insertion order is kept.
    void Rehash(uint32_t newSize) {
        if (newSize == mBinCount)
            return;
        if (newSize == 0) {
            FatalReport(kFatalFailedAssertion, "Universal/StringMap", __LINE__, "newSize > 0", "");
            return;
        }
        delete[] mBins;
        mBinCount = newSize;
        mBins = new Node *[mBinCount]();
        for (Node *node = mHead; node; node = node->nextInOrder) {
            uint32_t bin = Hash(node->key) % mBinCount;
            node->nextInBin = mBins[bin];
            mBins[bin] = node;
        }
    }

    // The key hash: h = h * 31 + c over the stored bytes, ASCII lower case
    // raised, each byte taken as signed.
    static uint32_t HashKey(const string &key) {
        uint32_t h = 0;
        const char *p = key.CString();
        for (long i = 0, n = key.Length(); i < n; ++i) {
            const auto c = static_cast<signed char>(AsciiUpper(static_cast<unsigned char>(p[i])));
            h = h * 31 + static_cast<uint32_t>(static_cast<int32_t>(c));
        }
        return h;
    }

protected:
    virtual uint32_t Hash(const string &key) const { return HashKey(key); }
    virtual bool KeyEquals(const string &a, const string &b) const { return a.Compare(b) == 0; }

private:
    friend class StringMapIterator<V>;
    struct Node {
        Node *nextInBin;
        Node *nextInOrder;
        string key;
        V value;
    };

    Node *Find(const string &key) const {
        if (!mBins)
            return nullptr;
        for (Node *node = mBins[Hash(key) % mBinCount]; node; node = node->nextInBin)
            if (KeyEquals(node->key, key))
                return node;
        return nullptr;
    }

    void UnlinkFromBins(Node *target) {
        if (!mBins)
            return;
        for (uint32_t bin = 0; bin < mBinCount; ++bin)
            for (Node **link = &mBins[bin]; *link; link = &(*link)->nextInBin)
                if (*link == target) {
                    *link = target->nextInBin;
                    return;
                }
    }

    void Attach(StringMapIterator<V> *it) {
        it->mNextIterator = mIterators;
        mIterators = it;
    }
    void Detach(StringMapIterator<V> *it) {
        for (StringMapIterator<V> **link = &mIterators; *link; link = &(*link)->mNextIterator)
            if (*link == it) {
                *link = it->mNextIterator;
                return;
            }
    }

    uint32_t mBinCount;
    uint32_t mCount = 0;
    Node **mBins = nullptr;
    Node *mHead = nullptr;
    Node *mTail = nullptr;
    StringMapIterator<V> *mIterators = nullptr;
};

// Walks a map in insertion order, surviving removals (its own RemoveCurrent
// and the map's Remove).  It stands before the first entry until Next().
// If the map dies first the iterator is disarmed: Next() answers false.
template <typename V> class StringMapIterator {
public:
    explicit StringMapIterator(StringMap<V> &map) : mMap(&map) { map.Attach(this); }
    StringMapIterator(const StringMapIterator &) = delete;
    StringMapIterator &operator=(const StringMapIterator &) = delete;
    virtual ~StringMapIterator() {
        if (mMap)
            mMap->Detach(this);
    }

    // True if it now stands on an entry.
    bool Next() {
        if (!mMap)
            return false;
        if (!mStarted) {
            mStarted = true;
            mCurrent = mMap->mHead;
        } else if (mPositioned) {
            mCurrent = mCurrent ? mCurrent->nextInOrder : nullptr;
        }
        // Not positioned after a removal: mCurrent already holds the follower.
        mPositioned = mCurrent != nullptr;
        return mPositioned;
    }

    // The current key, or the empty string when on no entry.
    string Key() const { return mPositioned && mCurrent ? mCurrent->key : string(); }
    // True and the current value, false when on no entry.
    bool Value(V &out) const {
        if (!mPositioned || !mCurrent)
            return false;
        out = mCurrent->value;
        return true;
    }

    // Removes the current entry; the next Next() stands on its follower.
    void RemoveCurrent() {
        if (!mMap || !mPositioned || !mCurrent)
            return;
        string key = mCurrent->key; // hold the key: the node dies in Remove
        mCurrent = mCurrent->nextInOrder;
        mPositioned = false;
        mMap->Remove(key);
    }

private:
    friend class StringMap<V>;
    void Orphan() {
        mMap = nullptr;
        mCurrent = nullptr;
        mPositioned = false;
        mNextIterator = nullptr;
    }

    StringMap<V> *mMap;
    bool mPositioned = false;
    typename StringMap<V>::Node *mCurrent = nullptr;
    StringMapIterator *mNextIterator = nullptr;
    bool mStarted = false;
};

using StringSet = StringMap<bool>;
using StringSetIterator = StringMapIterator<bool>;

} // namespace kelp
