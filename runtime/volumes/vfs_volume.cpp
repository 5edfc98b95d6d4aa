// Creating, opening and closing a volume; allocating and freeing blocks;
// the block map and its saved copy.  Reading and writing inside a file is
// in vfs_io.cpp.
#include "volumes/vfs_volume.h"

#include "volumes/byte_order.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace kelp::volume {
namespace {

// A double of a block header as a position or length, or -1 when it is no
// whole number a file could hold (NaN, infinite, negative, fractional).
int64_t WholeBytes(double value) {
    if (!std::isfinite(value) || value < 0 || value > 9007199254740992.0 ||
        value != std::floor(value))
        return -1;
    return int64_t(value);
}

bool SameBlocks(std::vector<BlockMapEntry> a, std::vector<BlockMapEntry> b) {
    auto by32 = [](const BlockMapEntry &x, const BlockMapEntry &y) {
        return std::tuple(uint32_t(x.position), x.idnum, x.sequence) <
               std::tuple(uint32_t(y.position), y.idnum, y.sequence);
    };
    if (a.size() != b.size())
        return false;
    std::sort(a.begin(), a.end(), by32);
    std::sort(b.begin(), b.end(), by32);
    for (size_t i = 0; i < a.size(); ++i)
        if (uint32_t(a[i].position) != uint32_t(b[i].position) || a[i].idnum != b[i].idnum ||
            a[i].sequence != b[i].sequence)
            return false;
    return true;
}

} // namespace

VFSVolume::VFSVolume(RandomAccessMechanism *disk, bool ownsDisk, SyncFunction sync, bool)
    : mDisk(disk), mOwnsDisk(ownsDisk), mSync(sync) {}

VFSVolume::VFSVolume(RandomAccessMechanism *disk, bool ownsDisk, SyncFunction sync)
    : VFSVolume(disk, ownsDisk, sync, false) {
    mValid = mDisk && Open();
}

std::unique_ptr<VFSVolume> VFSVolume::CreateVolume(RandomAccessMechanism *disk, bool ownsDisk,
                                                   SyncFunction sync) {
    std::unique_ptr<VFSVolume> volume(new VFSVolume(disk, ownsDisk, sync, true));
    volume->mValid = disk && volume->Create();
    if (!volume->mValid)
        return nullptr;
    return volume;
}

VFSVolume::~VFSVolume() {
    if (mValid && !mReadOnly)
        Flush();
    mOpen.clear();
    if (mDisk) {
        mDisk->Close();
        if (mOwnsDisk)
            delete mDisk;
    }
}

bool VFSVolume::Fail(std::string why) {
    mDiagnostic = std::move(why);
    return false;
}

// ---------------------------------------------------------------- headers

bool VFSVolume::ReadHeader(int64_t position, BlockHeader &out) {
    uint8_t bytes[kBlockHeaderSize];
    int64_t got = 0;
    mDisk->SetPosition(position);
    if (!mDisk->Read(bytes, kBlockHeaderSize, &got) || got != kBlockHeaderSize)
        return false;
    const bool bigDoubles = mVersion != 1;
    out.magic = GetBig32(bytes);
    out.idnum = GetBig32(bytes + 4);
    out.sequence = GetBig32(bytes + 8);
    out.length = WholeBytes(GetDouble(bytes + 12, bigDoubles));
    out.next = WholeBytes(GetDouble(bytes + 20, bigDoubles));
    return true;
}

bool VFSVolume::WriteHeader(int64_t position, const BlockHeader &header) {
    uint8_t bytes[kBlockHeaderSize];
    const bool bigDoubles = mVersion != 1;
    PutBig32(bytes, kBlockMagic);
    PutBig32(bytes + 4, header.idnum);
    PutBig32(bytes + 8, header.sequence);
    PutDouble(bytes + 12, double(header.length), bigDoubles);
    PutDouble(bytes + 20, double(header.next), bigDoubles);
    mDisk->SetPosition(position);
    return mDisk->Write(bytes, kBlockHeaderSize);
}

// A block that lies inside the volume; its next field is checked when it
// is followed.
bool VFSVolume::HeaderUsable(int64_t position, const BlockHeader &header) const {
    return header.magic == kBlockMagic && header.length >= kBlockOverhead &&
           position + header.length <= mDiskLength && header.next >= 0;
}

// ---------------------------------------------------------------- create

bool VFSVolume::Create() {
    mVersion = kCurrentVersion;
    if (!mDisk->SetLength(0))
        return Fail("The volume file could not be emptied.");
    uint8_t bytes[kFileHeaderSize + kMetadataBlockLength] = {};
    PutBig32(bytes, kVolumeMagic);
    PutBig32(bytes + 4, kCurrentVersion);
    uint8_t *block = bytes + kFileHeaderSize;
    PutBig32(block, kBlockMagic);
    PutBig32(block + 4, kMetadataFile);
    PutDouble(block + 12, double(kMetadataBlockLength), true);
    PutBig32(block + kBlockHeaderSize, kFirstUserFile); // the idnum counter
    PutBig32(block + kBlockHeaderSize + 4, 0);          // no map saved yet
    PutBig32(block + kMetadataBlockLength - 4, kBlockTrailer);
    mDisk->SetPosition(0);
    if (!mDisk->Write(bytes, sizeof bytes))
        return Fail("The volume file could not be written.");
    mDiskLength = sizeof bytes;
    mMap.Add(kMetadataFile, kFirstBlockPosition, 0);
    mNextId = kFirstUserFile;
    return true;
}

// ---------------------------------------------------------------- open

// Walks the blocks from the first to the end of the file.  Every step moves
// on by at least a block's overhead, so the walk ends.  `torn` is set for a
// block cut short by the end of the file, as an append cut off by a crash
// leaves it; any other header that can't be a block stops the walk with
// false, and `end` is where the good blocks end.
bool VFSVolume::ScanBlocks(std::vector<BlockMapEntry> &found, int64_t &end, bool &torn) {
    const int64_t fileLength = mDisk->GetLength();
    int64_t position = kFirstBlockPosition;
    torn = false;
    while (position < fileLength) {
        BlockHeader header;
        if (fileLength - position < kBlockHeaderSize || !ReadHeader(position, header)) {
            torn = true;
            break;
        }
        if (header.magic != kBlockMagic || header.length < kBlockOverhead) {
            end = position;
            return false;
        }
        if (position + header.length > fileLength) {
            torn = header.length == kNewBlockLength;
            if (!torn) {
                end = position;
                return false;
            }
            break;
        }
        found.push_back({position, header.idnum, header.sequence});
        position += header.length;
    }
    end = position;
    return true;
}

bool VFSVolume::Open() {
    uint8_t bytes[kFileHeaderSize];
    int64_t got = 0;
    mDisk->SetPosition(0);
    if (!mDisk->Read(bytes, 4, &got) || got != 4 || GetBig32(bytes) != kVolumeMagic)
        return Fail("Invalid magic code for VFS volume file.");
    if (!mDisk->Read(bytes + 4, 4, &got) || got != 4 || GetBig32(bytes + 4) >= kFirstRefusedVersion)
        return Fail("VFS volume format version is too advanced for me.");
    mVersion = GetBig32(bytes + 4);

    std::vector<BlockMapEntry> scanned;
    int64_t end = 0;
    bool torn = false;
    const bool whole = ScanBlocks(scanned, end, torn);
    mDiskLength = end;
    BlockHeader meta;
    if (!ReadHeader(kFirstBlockPosition, meta) || meta.magic != kBlockMagic ||
        meta.idnum != kMetadataFile || meta.sequence != 0 || meta.length <= kBlockHeaderSize + 8 ||
        scanned.empty())
        return Fail("VFS volume metadata (idnum 1) header is invalid.");
    for (const BlockMapEntry &e : scanned)
        mMap.Add(e.idnum, e.position, e.sequence);
    mValid = true; // for the reads of file 1 below
    // File 1 grows last when the map is saved, so a crash can leave its
    // last link pointing at a block that never became whole.  The map is
    // written anew anyway; the chain is cut before file 1 is written.
    BlockHeader step = meta;
    for (int64_t at = kFirstBlockPosition; step.next > 0;) {
        const BlockMapEntry *next = mMap.At(step.next);
        if (!next || next->idnum != kMetadataFile || next->sequence != step.sequence + 1) {
            mMetadataCut = at;
            break;
        }
        at = step.next;
        if (!ReadHeader(at, step))
            break;
    }
    AdoptSavedMap(scanned);
    if (!whole) {
        mReadOnly = true;
        mDiagnostic = "The volume is damaged at position " + std::to_string(end) +
                      "; it is open for reading only.";
    } else if (torn) {
        mTornTail = true; // cut off before the next block is added
        mMapDirty = true;
    }
    return true;
}

// The saved map is only believed when it names exactly the blocks the scan
// found: a crash after blocks were added but before the map was saved
// leaves a map that looks fine and is out of date.
void VFSVolume::AdoptSavedMap(const std::vector<BlockMapEntry> &scanned) {
    uint32_t highest = kMetadataFile;
    for (const BlockMapEntry &e : scanned)
        highest = std::max(highest, e.idnum);
    auto keepScan = [&](const char *why) {
        mDiagnostic = why;
        mMapDirty = true;
    };

    int16_t handle = OpenFile(kMetadataFile);
    uint8_t head[8];
    int64_t count = sizeof head;
    const bool headRead = handle >= 0 && Read(handle, count, head);
    mNextId = headRead ? GetBig32(head) : 0;
    const uint32_t size = headRead ? GetBig32(head + 4) : 0;
    if (mNextId <= highest) {
        mNextId = highest + 1; // never give out an idnum that is in use
        mMapDirty = true;
    }
    if (!headRead) {
        keepScan("The VirtualVolume does not contain a valid block map");
    } else if (size == 0) {
        mDiagnostic = "The VirtualVolume contains a valid block map of size: 0";
    } else if (int64_t(size) > mDiskLength) {
        keepScan("The VirtualVolume does not contain a valid block map");
    } else {
        std::string saved(size, '\0');
        count = size;
        BlockMap map;
        if (!Read(handle, count, saved.data()) ||
            !map.Deserialize(reinterpret_cast<const uint8_t *>(saved.data()), size)) {
            keepScan("The VirtualVolume does not contain a valid block map");
        } else if (!SameBlocks(map.Entries(), scanned)) {
            keepScan("The VirtualVolume's block map disagrees with its blocks; rebuilt from them");
        } else {
            mDiagnostic =
                "The VirtualVolume contains a valid block map of size: " + std::to_string(size);
            if (mDiskLength <= int64_t(UINT32_MAX))
                mMap = std::move(map); // same blocks, in the order they were handed out
        }
    }
    CloseFile(handle);
}

// ---------------------------------------------------------------- blocks

int64_t VFSVolume::Allocate(uint32_t idnum, uint32_t sequence, int64_t &length) {
    if (!Writable())
        return -1;
    for (int64_t position : mMap.FreePositions()) {
        BlockHeader header;
        if (!ReadHeader(position, header))
            return -1;
        if (header.length < kMinReusableBlock || header.length > kMaxReusableBlock ||
            position + header.length > mDiskLength)
            continue;
        if (!WriteHeader(position, {kBlockMagic, idnum, sequence, header.length, 0}))
            return -1;
        mMap.SetOwner(position, idnum, sequence);
        mMapDirty = true;
        length = header.length;
        return position;
    }
    if (mTornTail) {
        if (!mDisk->SetLength(mDiskLength))
            return -1;
        mTornTail = false;
    }
    // A whole block in one write: header, zeroed data, trailer.
    std::string block(kNewBlockLength, '\0');
    auto *bytes = reinterpret_cast<uint8_t *>(block.data());
    const int64_t position = mDiskLength;
    const bool bigDoubles = mVersion != 1;
    PutBig32(bytes, kBlockMagic);
    PutBig32(bytes + 4, idnum);
    PutBig32(bytes + 8, sequence);
    PutDouble(bytes + 12, double(kNewBlockLength), bigDoubles);
    PutBig32(bytes + kNewBlockLength - 4, kBlockTrailer);
    mDisk->SetPosition(position);
    if (!mDisk->Write(bytes, kNewBlockLength))
        return -1;
    mDiskLength += kNewBlockLength;
    mMap.Add(idnum, position, sequence);
    mMapDirty = true;
    length = kNewBlockLength;
    return position;
}

bool VFSVolume::RepairMetadataChain() {
    if (mMetadataCut == 0)
        return true;
    BlockHeader header;
    if (!ReadHeader(mMetadataCut, header))
        return false;
    header.next = 0;
    if (!WriteHeader(mMetadataCut, header))
        return false;
    mMetadataCut = 0;
    return true;
}

uint32_t VFSVolume::NewFile() {
    if (!Writable() || mNextId == UINT32_MAX || !RepairMetadataChain())
        return 0;
    const uint32_t idnum = mNextId;
    int16_t meta = OpenFile(kMetadataFile);
    uint8_t counter[4];
    PutBig32(counter, idnum + 1);
    const bool counted = meta >= 0 && Write(meta, counter, 4);
    CloseFile(meta);
    if (!counted)
        return 0;
    mNextId = idnum + 1;
    int64_t length = 0;
    return Allocate(idnum, 0, length) < 0 ? 0 : idnum;
}

bool VFSVolume::DeleteFile(uint32_t idnum) {
    if (!Writable() || idnum == kMetadataFile || idnum == 0 || IsOpen(idnum))
        return false;
    int64_t position = mMap.Find(idnum, 0);
    if (position < 0)
        return false;
    // Only the idnum field is cleared; the chain is bounded by the map.
    for (size_t walked = 0; position > 0 && walked <= mMap.Count(); ++walked) {
        BlockHeader header;
        if (!ReadHeader(position, header) || header.magic != kBlockMagic || header.idnum != idnum)
            break;
        uint8_t zero[4] = {};
        mDisk->SetPosition(position + 4);
        if (!mDisk->Write(zero, 4))
            return false;
        mMap.SetOwner(position, 0, 0);
        mMapDirty = true;
        position = header.next > 0 && mMap.At(header.next) ? header.next : 0;
    }
    return true;
}

// ---------------------------------------------------------------- saving

bool VFSVolume::SaveMap() {
    if (!Writable())
        return false;
    if (!mMapDirty)
        return true;
    if (!RepairMetadataChain())
        return false;
    // Writing the map may add blocks to file 1, which changes the map: write
    // again until what was written is what is there.
    for (int round = 0; round < 4; ++round) {
        const std::string saved = mMap.Serialize();
        int16_t meta = OpenFile(kMetadataFile);
        uint8_t head[8];
        PutBig32(head, mNextId);
        PutBig32(head + 4, uint32_t(saved.size()));
        bool ok = meta >= 0 && Write(meta, head, sizeof head) &&
                  Write(meta, saved.data(), int64_t(saved.size()));
        CloseFile(meta);
        if (!ok)
            return false;
        if (mMap.Serialize() == saved) {
            mMapDirty = false;
            return true;
        }
    }
    return false;
}

bool VFSVolume::Flush() {
    if (!mValid)
        return false;
    bool ok = mReadOnly || SaveMap();
    return (mSync ? mSync(*mDisk) : mDisk->Flush()) && ok;
}

} // namespace kelp::volume
