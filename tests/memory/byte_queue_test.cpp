// The byte queue under seeded random appends, peeks, copies and consumes,
// against a std::deque holding the same bytes.
#include "memory/byte_queue.h"
#include "memory/purgable.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <vector>

namespace {

// Walks what the queue holds through Peek and Copy, and checks it against
// the model.
void ExpectSame(kelp::MemoryManager &queue, const std::deque<uint8_t> &model) {
    ASSERT_EQ(queue.Count(), (long)model.size());
    long n = 0;
    const uint8_t *head = queue.Peek(&n);
    ASSERT_EQ(n == 0, model.empty());
    for (long i = 0; i < n; ++i)
        ASSERT_EQ(head[i], model[i]) << i;
    std::vector<uint8_t> all(model.size() + 3, 0xEE);
    ASSERT_EQ(queue.Copy(all.data(), (long)all.size(), false), (long)model.size());
    ASSERT_TRUE(std::equal(model.begin(), model.end(), all.begin()));
}

TEST(ByteQueue, RandomOperationsAgreeWithADeque) {
    for (long nodeSize : {1L, 7L, 64L, 4096L}) {
        SCOPED_TRACE(nodeSize);
        std::mt19937 random(20261125 + nodeSize);
        kelp::MemoryManager queue(nodeSize);
        std::deque<uint8_t> model;
        uint8_t next = 0;
        long maxNodes = 0;
        for (int step = 0; step < 20000; ++step) {
            long amount = (long)(random() % (nodeSize * 3 + 5));
            switch (random() % 5) {
            case 0:
            case 1: {
                std::vector<uint8_t> bytes((size_t)amount);
                for (uint8_t &b : bytes)
                    model.push_back(b = next++);
                ASSERT_TRUE(queue.Append(bytes.data(), amount));
                break;
            }
            case 2: {
                long expected = std::min<long>(amount, (long)model.size());
                ASSERT_EQ(queue.Consume(amount), expected);
                model.erase(model.begin(), model.begin() + expected);
                break;
            }
            case 3: {
                std::vector<uint8_t> out((size_t)amount + 1);
                long got = queue.Copy(out.data(), amount, true);
                ASSERT_EQ(got, std::min<long>(amount, (long)model.size()));
                ASSERT_TRUE(std::equal(out.begin(), out.begin() + got, model.begin()));
                model.erase(model.begin(), model.begin() + got);
                break;
            }
            default:
                if (random() % 50 == 0) {
                    queue.Clear();
                    model.clear();
                }
            }
            maxNodes = std::max(maxNodes, queue.ChainNodes() + queue.SpareNodes());
            // The chain never holds more nodes than its bytes need, plus a
            // partly read head and a partly filled tail.
            ASSERT_LE(queue.ChainNodes(), queue.Count() / nodeSize + 2);
            if (step % 97 == 0)
                ExpectSame(queue, model);
        }
        ExpectSame(queue, model);
        // Nodes are recycled: never more alive than the peak of the chain.
        EXPECT_LE(queue.ChainNodes() + queue.SpareNodes(), maxNodes);
    }
}

TEST(ByteQueue, OneMegabyteAndOneByteMakeTwoNodes) {
    kelp::MemoryManager queue;
    std::vector<uint8_t> bytes(1048577, 5);
    bytes.back() = 6;
    ASSERT_TRUE(queue.Append(bytes.data(), (long)bytes.size()));
    EXPECT_EQ(queue.ChainNodes(), 2);
    long n = 0;
    queue.Peek(&n);
    EXPECT_EQ(n, 1048576);
    EXPECT_EQ(queue.Consume(1048576), 1048576);
    EXPECT_EQ(*queue.Peek(&n), 6);
    EXPECT_EQ(n, 1);
    EXPECT_EQ(queue.SpareNodes(), 1); // the used-up node waits for reuse
}

TEST(ByteQueue, AFailedAppendStoresNothing) {
    kelp::MemoryManager queue(4);
    ASSERT_TRUE(queue.Append("abcde", 5));
    ASSERT_EQ(queue.Consume(4), 4); // one spare node, "e" in the chain
    // Nine more bytes need two nodes: the spare, and a new one that fails.
    kelp::FailNextBlockAllocations(1);
    EXPECT_FALSE(queue.Append("fghijklmn", 9));
    kelp::FailNextBlockAllocations(0);
    EXPECT_EQ(queue.SpareNodes(), 1);
    std::deque<uint8_t> model = {'e'};
    ExpectSame(queue, model);
    EXPECT_TRUE(queue.Append("d", 1));
    model.push_back('d');
    ExpectSame(queue, model);
    EXPECT_EQ(queue.Consume(-1), 0);
    EXPECT_FALSE(queue.Append(nullptr, 3));
}

} // namespace
