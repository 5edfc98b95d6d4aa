#pragma once
// MemoryManager: the byte queue under the socket buffers.
//
// Bytes are appended at the tail and consumed at the head of a chain of
// fixed-size nodes.  Stored bytes never move: appending fills the tail node
// and then fresh nodes, consuming moves the head node's read offset, and a
// used-up node goes to a spare list to be filled again.  A steady stream
// therefore allocates nothing after its first node.  Not thread-safe: one
// thread at a time, as everywhere in the runtime.
#include "containers/simple_vector.h"

#include <cstddef>
#include <cstdint>

namespace kelp {

class MemoryManager {
public:
    static constexpr long kDefaultNodeSize = 0x100000; // 1 MiB

    // `nodeSize` bytes per node; below 1 takes the default.
    explicit MemoryManager(long nodeSize = kDefaultNodeSize);
    ~MemoryManager(); // frees the chain and the spare nodes
    MemoryManager(const MemoryManager &) = delete;
    MemoryManager &operator=(const MemoryManager &) = delete;

    // Appends `count` bytes.  Answers false, having stored nothing, when a
    // node can't be allocated (caches are purged first).
    bool Append(const void *bytes, long count);
    // The contiguous bytes at the head and their number (0 and null when
    // empty).  Valid until the next Append, Consume or Clear.
    const uint8_t *Peek(long *count) const;
    // Drops up to `count` bytes from the head; answers how many.
    long Consume(long count);
    // Copies up to `count` bytes from the head into `buffer`, consuming them
    // when `consume` is set; answers how many.
    long Copy(void *buffer, long count, bool consume);
    // Empties the queue; its nodes become spares.
    void Clear();
    // Bytes held.
    long Count() const { return mTotal; }

    // Nodes in the chain and spare, for tests and the benchmark.
    long ChainNodes() const;
    long SpareNodes() const { return static_cast<long>(mSpare.Count()); }

private:
    struct Node {
        uint8_t *mBuffer;
        long mSize;
        long mRead;  // next byte to consume
        long mWrite; // next byte to fill
        Node *mNext;
        Node *mPrev;
    };
    Node *TakeNode();
    void Retire(Node *node);
    static void FreeNode(Node *node);

    Node *mHead = nullptr;
    Node *mTail = nullptr;
    long mNodeSize;              // bytes per node buffer
    long mTotal = 0;             // bytes held in the chain
    SimpleVector<Node *> mSpare; // emptied nodes, reused first
};

} // namespace kelp
