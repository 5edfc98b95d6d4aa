// MemoryManager: a byte queue on a chain of fixed-size nodes.
#include "memory/byte_queue.h"

#include "memory/purgable.h"

#include <cstring>
#include <new>

namespace kelp {

MemoryManager::MemoryManager(long nodeSize)
    : mNodeSize(nodeSize > 0 ? nodeSize : kDefaultNodeSize) {}

MemoryManager::~MemoryManager() {
    Clear();
    while (mSpare.Count() > 0)
        FreeNode(mSpare.Pop());
}

void MemoryManager::FreeNode(Node *node) {
    FreeBlockBytes(node->mBuffer, node->mSize);
    delete node;
}

// A spare node if there is one, else a new one; null when memory is short.
MemoryManager::Node *MemoryManager::TakeNode() {
    Node *node;
    if (mSpare.Count() > 0) {
        node = mSpare.Pop();
    } else {
        node = new (std::nothrow) Node{};
        if (!node)
            return nullptr;
        node->mBuffer = static_cast<uint8_t *>(AllocateBlockBytes(mNodeSize));
        if (!node->mBuffer) {
            delete node;
            return nullptr;
        }
        node->mSize = mNodeSize;
    }
    node->mRead = node->mWrite = 0;
    node->mNext = node->mPrev = nullptr;
    return node;
}

void MemoryManager::Retire(Node *node) { mSpare.Append(node); }

bool MemoryManager::Append(const void *bytes, long count) {
    if (count <= 0 || !bytes)
        return count == 0;
    const auto *from = static_cast<const uint8_t *>(bytes);
    long tailRoom = mTail ? mTail->mSize - mTail->mWrite : 0;
    // Take every node the bytes need before storing any, so that a failure
    // leaves the queue as it was.
    long beyond = count - tailRoom;
    long needed = beyond > 0 ? (beyond + mNodeSize - 1) / mNodeSize : 0;
    Node *first = nullptr, *last = nullptr;
    for (long i = 0; i < needed; ++i) {
        Node *node = TakeNode();
        if (!node) {
            while (first) {
                Node *next = first->mNext;
                Retire(first);
                first = next;
            }
            return false;
        }
        node->mPrev = last;
        if (last)
            last->mNext = node;
        else
            first = node;
        last = node;
    }
    long left = count;
    if (mTail && tailRoom > 0) {
        long n = left < tailRoom ? left : tailRoom;
        std::memcpy(mTail->mBuffer + mTail->mWrite, from, static_cast<size_t>(n));
        mTail->mWrite += n;
        from += n;
        left -= n;
    }
    for (Node *node = first; node; node = node->mNext) {
        long n = left < node->mSize ? left : node->mSize;
        std::memcpy(node->mBuffer, from, static_cast<size_t>(n));
        node->mWrite = n;
        from += n;
        left -= n;
    }
    if (first) {
        first->mPrev = mTail;
        if (mTail)
            mTail->mNext = first;
        else
            mHead = first;
        mTail = last;
    }
    mTotal += count;
    return true;
}

const uint8_t *MemoryManager::Peek(long *count) const {
    // Consume retires a node as soon as it is used up, so the head always
    // has bytes when the queue does.
    if (!mHead || mTotal == 0) {
        if (count)
            *count = 0;
        return nullptr;
    }
    if (count)
        *count = mHead->mWrite - mHead->mRead;
    return mHead->mBuffer + mHead->mRead;
}

long MemoryManager::Consume(long count) {
    long done = 0;
    while (count > done && mHead) {
        long available = mHead->mWrite - mHead->mRead;
        long want = count - done;
        if (available > want) {
            mHead->mRead += want;
            done += want;
            break;
        }
        done += available;
        Node *used = mHead;
        mHead = used->mNext;
        if (mHead)
            mHead->mPrev = nullptr;
        else
            mTail = nullptr;
        Retire(used);
    }
    mTotal -= done;
    return done;
}

long MemoryManager::Copy(void *buffer, long count, bool consume) {
    if (count <= 0 || !buffer)
        return 0;
    auto *to = static_cast<uint8_t *>(buffer);
    long done = 0;
    for (Node *node = mHead; node && done < count; node = node->mNext) {
        long available = node->mWrite - node->mRead;
        long n = count - done < available ? count - done : available;
        std::memcpy(to + done, node->mBuffer + node->mRead, static_cast<size_t>(n));
        done += n;
    }
    if (consume)
        Consume(done);
    return done;
}

void MemoryManager::Clear() {
    while (mHead) {
        Node *next = mHead->mNext;
        Retire(mHead);
        mHead = next;
    }
    mTail = nullptr;
    mTotal = 0;
}

long MemoryManager::ChainNodes() const {
    long n = 0;
    for (Node *node = mHead; node; node = node->mNext)
        ++n;
    return n;
}

} // namespace kelp
