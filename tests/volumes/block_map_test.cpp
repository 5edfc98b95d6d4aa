// The block map's indexes against a plain list, under seeded random
// operations: finding a block, the owner of a position, free blocks in map
// order, and the saved form read back.
#include "volumes/block_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

namespace kelp::volume {
namespace {

TEST(BlockMap, IndexesAgreeWithAPlainListUnderRandomOperations) {
    std::mt19937 random(20);
    BlockMap map;
    std::vector<BlockMapEntry> model;               // insertion order, as the map keeps it
    std::set<std::pair<uint32_t, uint32_t>> owners; // no two blocks claim one place
    auto claim = [&](uint32_t &idnum, uint32_t &sequence) {
        do {
            idnum = random() % 40;
            sequence = random() % 8;
        } while (idnum && owners.count({idnum, sequence}));
        if (idnum)
            owners.insert({idnum, sequence});
    };
    for (int step = 0; step < 20000; ++step) {
        const unsigned op = random() % 100;
        uint32_t idnum, sequence;
        if (op < 40 || model.empty()) {
            const int64_t position =
                8 + 1024 * int64_t(model.size()) + (random() % 2) * (int64_t(1) << 33);
            if (map.At(position))
                continue;
            claim(idnum, sequence);
            map.Add(idnum, position, sequence);
            model.push_back({position, idnum, sequence});
        } else if (op < 90) {
            BlockMapEntry &e = model[random() % model.size()];
            owners.erase({e.idnum, e.sequence});
            claim(idnum, sequence);
            ASSERT_TRUE(map.SetOwner(e.position, idnum, sequence));
            e.idnum = idnum;
            e.sequence = sequence;
        } else if (op < 92) {
            idnum = 1 + random() % 39;
            map.RemoveFile(idnum);
            std::erase_if(model, [&](const BlockMapEntry &e) { return e.idnum == idnum; });
            std::erase_if(owners, [&](auto &o) { return o.first == idnum; });
        } else {
            const BlockMapEntry &e = model[random() % model.size()];
            ASSERT_NE(map.At(e.position), nullptr);
            EXPECT_EQ(*map.At(e.position), e);
            if (e.idnum) {
                EXPECT_EQ(map.Find(e.idnum, e.sequence), e.position);
            }
        }
        ASSERT_EQ(map.Entries(), model) << step;
        std::vector<int64_t> free;
        for (const BlockMapEntry &e : model)
            if (e.idnum == 0)
                free.push_back(e.position);
        ASSERT_EQ(map.FreePositions(), free) << step;
    }
    for (const auto &[idnum, sequence] : owners)
        EXPECT_GE(map.Find(idnum, sequence), 8);
    EXPECT_EQ(map.Find(41, 0), -1);
    // Saved and read back: the same blocks, positions cut to 32 bits.
    const std::string saved = map.Serialize();
    BlockMap back;
    ASSERT_TRUE(back.Deserialize(reinterpret_cast<const uint8_t *>(saved.data()), saved.size()));
    ASSERT_EQ(back.Count(), model.size());
    for (size_t i = 0; i < model.size(); ++i)
        EXPECT_EQ(back.Entries()[i], (BlockMapEntry{model[i].position & 0xFFFFFFFF, model[i].idnum,
                                                    model[i].sequence}));
    EXPECT_FALSE(
        back.Deserialize(reinterpret_cast<const uint8_t *>(saved.data()), saved.size() - 1));
}

} // namespace
} // namespace kelp::volume
