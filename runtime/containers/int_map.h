#pragma once
// IntMap<V>: a fixed-size hash map from an integer (or pointer) key to a
// value.  1,024 bins live inside the object, so a map needs no table
// allocation; it never rehashes and has no removal.  It serves pointer keys
// on hot paths (a class definition to its class), hence the key is
// pointer-sized on this platform.
#include <cstdint>

namespace kelp {

template <typename V> class IntMap {
public:
    using Key = uintptr_t;
    static constexpr uint32_t kBinCount = 1024;

    IntMap() = default;
    IntMap(const IntMap &) = delete;
    IntMap &operator=(const IntMap &) = delete;
    virtual ~IntMap() {
        Node *node = mHead;
        while (node) {
            Node *next = node->nextInOrder;
            delete node;
            node = next;
        }
    }

    // Insert, or replace the value of an equal key.
    void AddEntry(Key key, const V &value) {
        uint32_t bin = BinOf(key);
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
    }
    template <typename P> void AddEntry(P *key, const V &value) {
        AddEntry(reinterpret_cast<Key>(key), value);
    }

    // True and the value when the key is present.
    bool GetEntry(Key key, V &value) const {
        for (Node *node = mBins[BinOf(key)]; node; node = node->nextInBin) {
            if (KeyEquals(node->key, key)) {
                value = node->value;
                return true;
            }
        }
        return false;
    }
    template <typename P> bool GetEntry(P *key, V &value) const {
        return GetEntry(reinterpret_cast<Key>(key), value);
    }

    bool Has(Key key) const {
        V ignored;
        return GetEntry(key, ignored);
    }
    uint32_t Count() const { return mCount; }

    // Calls fn(key, value, argument) in insertion order; stops and answers
    // false at the first call that answers false.
    bool ForEach(bool (*fn)(Key key, V &value, void *argument), void *argument) {
        for (Node *node = mHead; node; node = node->nextInOrder)
            if (!fn(node->key, node->value, argument))
                return false;
        return true;
    }

    static uint32_t BinOf(Key key) { return static_cast<uint32_t>((key * 13) & 0x3FF); }

protected:
    virtual bool KeyEquals(Key a, Key b) const { return a == b; }

private:
    struct Node {
        Node *nextInBin;
        Node *nextInOrder;
        Key key;
        V value;
    };
    Node *mBins[kBinCount] = {};
    Node *mHead = nullptr;
    Node *mTail = nullptr;
    uint32_t mCount = 0;
};

} // namespace kelp
