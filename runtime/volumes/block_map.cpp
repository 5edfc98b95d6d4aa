#include "volumes/block_map.h"

#include "volumes/byte_order.h"
#include "volumes/volume_format.h"

namespace kelp::volume {

void BlockMap::Index(size_t i) {
    const BlockMapEntry &e = mEntries[i];
    mByPosition.emplace(e.position, i);
    if (e.idnum == 0)
        mFree.insert(i);
    else
        mByOwner.emplace(Key(e.idnum, e.sequence), i);
}

void BlockMap::Reindex() {
    mByOwner.clear();
    mByPosition.clear();
    mFree.clear();
    for (size_t i = 0; i < mEntries.size(); ++i)
        Index(i);
}

void BlockMap::Add(uint32_t idnum, int64_t position, uint32_t sequence) {
    if (mByPosition.count(position)) {
        SetOwner(position, idnum, sequence);
        return;
    }
    mEntries.push_back({position, idnum, sequence});
    Index(mEntries.size() - 1);
}

bool BlockMap::SetOwner(int64_t position, uint32_t idnum, uint32_t sequence) {
    auto it = mByPosition.find(position);
    if (it == mByPosition.end())
        return false;
    size_t i = it->second;
    BlockMapEntry &e = mEntries[i];
    if (e.idnum == 0) {
        mFree.erase(i);
    } else {
        auto owner = mByOwner.find(Key(e.idnum, e.sequence));
        if (owner != mByOwner.end() && owner->second == i)
            mByOwner.erase(owner);
    }
    e.idnum = idnum;
    e.sequence = sequence;
    if (idnum == 0)
        mFree.insert(i);
    else
        mByOwner[Key(idnum, sequence)] = i; // the newest claim is the live one
    return true;
}

int64_t BlockMap::Find(uint32_t idnum, uint32_t sequence) const {
    auto it = mByOwner.find(Key(idnum, sequence));
    return it == mByOwner.end() ? -1 : mEntries[it->second].position;
}

const BlockMapEntry *BlockMap::At(int64_t position) const {
    auto it = mByPosition.find(position);
    return it == mByPosition.end() ? nullptr : &mEntries[it->second];
}

void BlockMap::RemoveFile(uint32_t idnum) {
    std::erase_if(mEntries, [idnum](const BlockMapEntry &e) { return e.idnum == idnum; });
    Reindex();
}

void BlockMap::RemovePosition(int64_t position) {
    std::erase_if(mEntries, [position](const BlockMapEntry &e) { return e.position == position; });
    Reindex();
}

void BlockMap::Clear() {
    mEntries.clear();
    Reindex();
}

std::vector<int64_t> BlockMap::FreePositions() const {
    std::vector<int64_t> out;
    out.reserve(mFree.size());
    for (size_t i : mFree)
        out.push_back(mEntries[i].position);
    return out;
}

std::string BlockMap::Serialize() const {
    std::string out(kMapHeaderSize + kMapEntrySize * mEntries.size(), '\0');
    auto *p = reinterpret_cast<uint8_t *>(out.data());
    PutBig32(p, kMapMagic);
    PutBig32(p + 4, uint32_t(mEntries.size()));
    p += kMapHeaderSize;
    for (const BlockMapEntry &e : mEntries) {
        PutBig32(p, uint32_t(e.position)); // the format keeps 32 bits
        PutBig32(p + 4, e.idnum);
        PutBig32(p + 8, e.sequence);
        p += kMapEntrySize;
    }
    return out;
}

bool BlockMap::Deserialize(const uint8_t *bytes, size_t size) {
    Clear();
    if (size < kMapHeaderSize || GetBig32(bytes) != kMapMagic)
        return false;
    uint32_t count = GetBig32(bytes + 4);
    if (count > (size - kMapHeaderSize) / kMapEntrySize)
        return false;
    mEntries.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        const uint8_t *p = bytes + kMapHeaderSize + size_t(i) * kMapEntrySize;
        mEntries.push_back({int64_t(GetBig32(p)), GetBig32(p + 4), GetBig32(p + 8)});
    }
    Reindex();
    return true;
}

} // namespace kelp::volume
