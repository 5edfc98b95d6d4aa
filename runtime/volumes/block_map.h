#pragma once
// The index of every block of a volume: which file owns the block at a
// position, and at which place of the file's chain.  Kept in the order the
// blocks became known, because free blocks are handed out again in that
// order; hash indexes on top keep opening a file and finding a block
// constant-time, so a volume of many thousands of files stays usable.
//
// This function set can't fail, except Deserialize, which answers false and
// leaves the map empty on bytes that are not a whole map.
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace kelp::volume {

struct BlockMapEntry {
    int64_t position;  // of the block in the host file, 8 or more
    uint32_t idnum;    // owning file, 0 for a free block
    uint32_t sequence; // place in the owner's chain, 0 first
    bool operator==(const BlockMapEntry &) const = default;
};

class BlockMap {
public:
    void Add(uint32_t idnum, int64_t position, uint32_t sequence);
    // Gives the block at `position` a new owner; false when it is not mapped.
    bool SetOwner(int64_t position, uint32_t idnum, uint32_t sequence);
    // The block of (`idnum`, `sequence`), or -1.
    int64_t Find(uint32_t idnum, uint32_t sequence) const;
    // The owner of the block at `position`, or null when unmapped.
    const BlockMapEntry *At(int64_t position) const;
    void RemoveFile(uint32_t idnum);
    void RemovePosition(int64_t position);
    void Clear();

    // Free blocks, in map order.
    std::vector<int64_t> FreePositions() const;
    size_t FreeCount() const { return mFree.size(); }
    size_t Count() const { return mEntries.size(); }
    const std::vector<BlockMapEntry> &Entries() const { return mEntries; }

    // The saved form: "BMap", the count, then position (cut to 32 bits),
    // idnum and sequence per entry, all big-endian.
    std::string Serialize() const;
    // Reads at most `size` bytes; an entry count that the bytes can't hold
    // fails rather than being believed.
    bool Deserialize(const uint8_t *bytes, size_t size);

private:
    static uint64_t Key(uint32_t idnum, uint32_t sequence) {
        return uint64_t(idnum) << 32 | sequence;
    }
    void Index(size_t i);
    void Reindex();

    std::vector<BlockMapEntry> mEntries;             // insertion order
    std::unordered_map<uint64_t, size_t> mByOwner;   // (idnum, sequence) -> first entry
    std::unordered_map<int64_t, size_t> mByPosition; // position -> entry
    std::set<size_t> mFree;                          // entries of idnum 0, in map order
};

} // namespace kelp::volume
