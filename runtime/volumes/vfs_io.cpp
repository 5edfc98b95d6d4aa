// Moving, reading and writing inside one open file of a volume.  A record
// walks its file's chain block by block; each block it steps to must carry
// the file's idnum and the next sequence number, so a damaged chain that
// loops or wanders into another file ends the walk instead of the program.
#include "volumes/byte_order.h"
#include "volumes/vfs_volume.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace kelp::volume {

OpenFileRecord *VFSVolume::Record(int16_t handle) const {
    if (!mValid || handle < 0 || size_t(handle) >= mOpen.size())
        return nullptr;
    OpenFileRecord *record = mOpen[size_t(handle)].get();
    return record && record->header.idnum ? record : nullptr;
}

bool VFSVolume::IsOpen(uint32_t idnum) const {
    for (const auto &record : mOpen)
        if (record && record->idnum == idnum)
            return true;
    return false;
}

int16_t VFSVolume::OpenFile(uint32_t idnum) {
    if (!mValid || idnum == 0)
        return -1;
    const int64_t first = mMap.Find(idnum, 0);
    if (first < 0)
        return -1;
    auto record = std::make_unique<OpenFileRecord>();
    record->idnum = idnum;
    record->header.idnum = idnum;
    record->firstBlock = first;
    if (!Reload(*record, first, 0))
        return -1;
    // A free slot from the end of the table down, else one more slot.
    size_t slot = mOpen.size();
    for (size_t i = mOpen.size(); i-- > 0;)
        if (!mOpen[i]) {
            slot = i;
            break;
        }
    if (slot == mOpen.size()) {
        if (mOpen.size() >= kMaxOpenFiles)
            return -1;
        mOpen.push_back(nullptr);
    }
    mOpen[slot] = std::move(record);
    return int16_t(slot);
}

void VFSVolume::CloseFile(int16_t handle) {
    if (handle >= 0 && size_t(handle) < mOpen.size())
        mOpen[size_t(handle)].reset();
}

// Makes the block at `blockStart` the record's current one.  A header that
// isn't this file's block at place `expected` of the chain clears the
// record: it answers false from then on.
bool VFSVolume::Reload(OpenFileRecord &record, int64_t blockStart, uint32_t expected) {
    BlockHeader header;
    if (!ReadHeader(blockStart, header) || !HeaderUsable(blockStart, header) ||
        header.idnum != record.idnum || header.sequence != expected) {
        record.header.idnum = 0;
        return false;
    }
    record.header = header;
    record.blockStart = blockStart;
    record.posWithinBlock = kBlockHeaderSize;
    return true;
}

// Only to a block the map knows: a next field into the middle of a block
// or past the end is where the chain ends.
bool VFSVolume::Advance(OpenFileRecord &record) {
    return record.header.next > 0 && mMap.At(record.header.next) &&
           Reload(record, record.header.next, record.header.sequence + 1);
}

// Links a new block behind the current, last one.  The new block's header
// is on the disk before the link, so a crash between the two leaves an
// unreachable block, never a chain into nothing.
bool VFSVolume::Grow(OpenFileRecord &record) {
    int64_t length = 0;
    const int64_t position = Allocate(record.idnum, record.header.sequence + 1, length);
    if (position < 0)
        return false;
    record.header.next = position;
    if (!WriteHeader(record.blockStart, record.header))
        return false;
    record.header = {kBlockMagic, record.idnum, record.header.sequence + 1, length, 0};
    record.blockStart = position;
    record.posWithinBlock = kBlockHeaderSize;
    return true;
}

int64_t VFSVolume::Tell(int16_t handle) const {
    const OpenFileRecord *record = Record(handle);
    return record ? record->filePosition : -1;
}

bool VFSVolume::Seek(int16_t handle, int64_t target) {
    OpenFileRecord *record = Record(handle);
    if (!record || target < 0)
        return false;
    if (target == record->filePosition)
        return true;
    // File positions of the current block's first data byte and its end.
    int64_t first = record->filePosition - record->posWithinBlock + kBlockHeaderSize;
    if (target < first) {
        record->filePosition = 0;
        if (!Reload(*record, record->firstBlock, 0))
            return false;
        first = 0;
    }
    int64_t last = first + record->header.length - kBlockOverhead;
    while (target >= last) {
        if (record->header.next <= 0) {
            if (target != last)
                return false;
            break; // at the trailer of the last block
        }
        record->filePosition = last;
        if (!Advance(*record))
            return false;
        first = last;
        last = first + record->header.length - kBlockOverhead;
    }
    record->posWithinBlock = kBlockHeaderSize + (target - first);
    record->filePosition = target;
    return true;
}

bool VFSVolume::Read(int16_t handle, int64_t &count, void *buffer) {
    const int64_t wanted = count;
    count = 0;
    OpenFileRecord *record = Record(handle);
    if (!record || wanted <= 0 || !buffer)
        return false;
    auto *out = static_cast<uint8_t *>(buffer);
    while (count < wanted) {
        const int64_t available = record->header.length - record->posWithinBlock - 4;
        const int64_t take = std::min(available, wanted - count);
        if (take > 0) {
            int64_t got = 0;
            mDisk->SetPosition(record->blockStart + record->posWithinBlock);
            mDisk->Read(out + count, take, &got);
            count += got;
            record->posWithinBlock += got;
            record->filePosition += got;
            if (got < take)
                return false;
        }
        if (count < wanted && !Advance(*record))
            return false;
    }
    return true;
}

bool VFSVolume::Write(int16_t handle, const void *buffer, int64_t count) {
    OpenFileRecord *record = Record(handle);
    if (!record || !Writable() || count < 0 || (count > 0 && !buffer))
        return false;
    auto *in = static_cast<const uint8_t *>(buffer);
    int64_t done = 0;
    while (done < count) {
        const int64_t available = record->header.length - record->posWithinBlock - 4;
        const int64_t take = std::min(available, count - done);
        if (take > 0) {
            mDisk->SetPosition(record->blockStart + record->posWithinBlock);
            if (!mDisk->Write(in + done, take))
                return false;
            done += take;
            record->posWithinBlock += take;
            record->filePosition += take;
        }
        if (done == count)
            break;
        if (record->header.next <= 0) {
            // Another record of this file may have grown it meanwhile.
            BlockHeader onDisk;
            if (ReadHeader(record->blockStart, onDisk) && HeaderUsable(record->blockStart, onDisk))
                record->header.next = onDisk.next;
        }
        if (record->header.next > 0) {
            if (!Advance(*record))
                return false;
        } else if (mMap.FreeCount() == 0 && count - done > kNewBlockLength - kBlockOverhead) {
            const int64_t taken = AppendRun(*record, in + done, count - done);
            if (taken <= 0)
                return false;
            done += taken;
        } else if (!Grow(*record)) {
            return false;
        }
    }
    return true;
}

// With no free block to fill, the blocks a long write needs go on the end
// of the file in one piece, data and links included, and only then does
// the current last block link to them.  Returns the bytes taken, or -1.
int64_t VFSVolume::AppendRun(OpenFileRecord &record, const uint8_t *data, int64_t count) {
    constexpr int64_t kData = kNewBlockLength - kBlockOverhead;
    constexpr int64_t kMaxRun = 1024; // blocks per piece, so memory stays bounded
    const int64_t blocks = std::min(kMaxRun, (count + kData - 1) / kData);
    const int64_t taken = std::min(count, blocks * kData);
    if (!Writable() || (mTornTail && !mDisk->SetLength(mDiskLength)))
        return -1;
    mTornTail = false;
    const int64_t start = mDiskLength;
    const bool bigDoubles = mVersion != 1;
    std::vector<uint8_t> run(size_t(blocks * kNewBlockLength), 0);
    for (int64_t i = 0; i < blocks; ++i) {
        uint8_t *block = run.data() + i * kNewBlockLength;
        PutBig32(block, kBlockMagic);
        PutBig32(block + 4, record.idnum);
        PutBig32(block + 8, record.header.sequence + 1 + uint32_t(i));
        PutDouble(block + 12, double(kNewBlockLength), bigDoubles);
        PutDouble(block + 20, i + 1 < blocks ? double(start + (i + 1) * kNewBlockLength) : 0.0,
                  bigDoubles);
        std::memcpy(block + kBlockHeaderSize, data + i * kData,
                    size_t(std::min(kData, taken - i * kData)));
        PutBig32(block + kNewBlockLength - 4, kBlockTrailer);
    }
    mDisk->SetPosition(start);
    if (!mDisk->Write(run.data(), int64_t(run.size())))
        return -1;
    mDiskLength += int64_t(run.size());
    for (int64_t i = 0; i < blocks; ++i)
        mMap.Add(record.idnum, start + i * kNewBlockLength,
                 record.header.sequence + 1 + uint32_t(i));
    mMapDirty = true;
    record.header.next = start;
    if (!WriteHeader(record.blockStart, record.header))
        return -1;
    record.header = {kBlockMagic, record.idnum, record.header.sequence + uint32_t(blocks),
                     kNewBlockLength, 0};
    record.blockStart = start + (blocks - 1) * kNewBlockLength;
    record.posWithinBlock = kBlockHeaderSize + (taken - (blocks - 1) * kData);
    record.filePosition += taken;
    return taken;
}

int64_t VFSVolume::Capacity(int16_t handle) {
    OpenFileRecord *record = Record(handle);
    if (!record)
        return -1;
    const int64_t here = record->filePosition;
    int64_t end = record->filePosition - record->posWithinBlock + record->header.length - 4;
    while (record->header.next > 0) {
        record->filePosition = end;
        if (!Advance(*record))
            return -1;
        end += record->header.length - kBlockOverhead;
    }
    record->filePosition = end;
    record->posWithinBlock = record->header.length - 4;
    Seek(handle, here);
    return end;
}

// ---------------------------------------------------------------- typed values

bool VFSVolume::ReadTyped(int16_t handle, uint8_t *bytes, int64_t width) {
    int64_t count = width;
    return Read(handle, count, bytes) && count == width;
}

bool VFSVolume::WriteShort(int16_t handle, uint16_t value) {
    uint8_t bytes[2];
    PutWord16(bytes, value, ContentBigEndian());
    return Write(handle, bytes, 2);
}

bool VFSVolume::WriteLong(int16_t handle, uint32_t value) {
    uint8_t bytes[4];
    PutWord32(bytes, value, ContentBigEndian());
    return Write(handle, bytes, 4);
}

bool VFSVolume::WriteDouble(int16_t handle, double value) {
    uint8_t bytes[8];
    PutDouble(bytes, value, ContentBigEndian());
    return Write(handle, bytes, 8);
}

bool VFSVolume::ReadShort(int16_t handle, uint16_t &value) {
    uint8_t bytes[2];
    if (!ReadTyped(handle, bytes, 2))
        return false;
    value = GetWord16(bytes, ContentBigEndian());
    return true;
}

bool VFSVolume::ReadLong(int16_t handle, uint32_t &value) {
    uint8_t bytes[4];
    if (!ReadTyped(handle, bytes, 4))
        return false;
    value = GetWord32(bytes, ContentBigEndian());
    return true;
}

bool VFSVolume::ReadDouble(int16_t handle, double &value) {
    uint8_t bytes[8];
    if (!ReadTyped(handle, bytes, 8))
        return false;
    value = GetDouble(bytes, ContentBigEndian());
    return true;
}

} // namespace kelp::volume
