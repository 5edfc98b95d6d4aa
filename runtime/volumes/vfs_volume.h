#pragma once
// VFSVolume: numbered files kept as chains of blocks inside one host file.
// It knows nothing of names or folders (VHFSVolume builds those on it).
// Each open file is a record with its own position; the same file may be
// open in several records at once, and they don't see each other's moves.
//
// Failure channel: nothing raises and nothing asserts on file contents.
// Operations answer false, 0, -1 or a short count; a volume that could not
// be opened is invalid, and `Diagnostic()` says why in a line for the log.
// A volume found damaged opens read-only: every block up to the damage can
// still be read, and nothing is written that could lose what is there.
#include "streams/random_access_mechanism.h"
#include "volumes/block_map.h"
#include "volumes/volume_format.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kelp::volume {

struct BlockHeader {
    uint32_t magic = 0;
    uint32_t idnum = 0;    // 0 for a free block
    uint32_t sequence = 0; // place in the chain
    int64_t length = 0;    // whole block, header and trailer included
    int64_t next = 0;      // position of the next block, 0 for none
};

struct OpenFileRecord {
    BlockHeader header;                        // of the current block; idnum 0 once the chain broke
    int64_t filePosition = 0;                  // logical offset in the file's content
    int64_t blockStart = 0;                    // position of the current block
    int64_t posWithinBlock = kBlockHeaderSize; // 28 .. length - 4
    int64_t firstBlock = 0;
    uint32_t idnum = 0; // the file, also after the chain broke
};

// How the volume reaches the disk on Flush and close.  Plain mechanisms
// flush; a file mechanism passes a function that waits for the disk.
using SyncFunction = bool (*)(RandomAccessMechanism &disk);

class VFSVolume {
public:
    // Opens the volume in `disk`.  Test IsValid() afterwards.  With
    // `ownsDisk` the volume closes and destroys the mechanism when done
    // (also when the open fails).
    VFSVolume(RandomAccessMechanism *disk, bool ownsDisk, SyncFunction sync = nullptr);
    // Empties `disk` and writes a new volume into it; null on failure.
    static std::unique_ptr<VFSVolume> CreateVolume(RandomAccessMechanism *disk, bool ownsDisk,
                                                   SyncFunction sync = nullptr);
    // Saves the block map, waits for the disk, closes the mechanism.
    virtual ~VFSVolume();
    VFSVolume(const VFSVolume &) = delete;
    VFSVolume &operator=(const VFSVolume &) = delete;

    bool IsValid() const { return mValid; }
    bool IsReadOnly() const { return mReadOnly; }
    const std::string &Diagnostic() const { return mDiagnostic; }
    uint32_t Version() const { return mVersion; }
    // Bytes of whole blocks in the host file: no content is longer.
    int64_t DiskLength() const { return mDiskLength; }
    // Numbers inside file content are big-endian from version 3 on.
    bool ContentBigEndian() const { return mVersion > 2; }

    // A new file of one empty block; its idnum, or 0.
    uint32_t NewFile();
    // A handle, or -1 when the file has no first block or too many are open.
    int16_t OpenFile(uint32_t idnum);
    void CloseFile(int16_t handle);
    // Frees the file's blocks; refused while any record has it open.
    bool DeleteFile(uint32_t idnum);
    bool IsOpen(uint32_t idnum) const;

    bool Seek(int16_t handle, int64_t position);
    int64_t Tell(int16_t handle) const;
    // `count` comes back as what was read; false when fewer bytes were there.
    bool Read(int16_t handle, int64_t &count, void *buffer);
    bool Write(int16_t handle, const void *buffer, int64_t count);
    // Byte length of the chain's data, however much of it is in use.
    int64_t Capacity(int16_t handle);

    // Typed values inside file content, in the version's byte order.
    bool WriteShort(int16_t handle, uint16_t value);
    bool WriteLong(int16_t handle, uint32_t value);
    bool WriteDouble(int16_t handle, double value);
    bool ReadShort(int16_t handle, uint16_t &value);
    bool ReadLong(int16_t handle, uint32_t &value);
    bool ReadDouble(int16_t handle, double &value);

    // Saves the block map and waits until the host file is on the disk.
    bool Flush();

    const BlockMap &Map() const { return mMap; }
    // Writes its block map into file 1 now (Flush does it too).
    bool SaveMap();

private:
    VFSVolume(RandomAccessMechanism *disk, bool ownsDisk, SyncFunction sync, bool forCreate);
    bool Create();
    bool Open();
    bool ScanBlocks(std::vector<BlockMapEntry> &found, int64_t &end, bool &torn);
    void AdoptSavedMap(const std::vector<BlockMapEntry> &scanned);
    bool Fail(std::string why);

    bool ReadHeader(int64_t position, BlockHeader &out);
    bool WriteHeader(int64_t position, const BlockHeader &header);
    bool HeaderUsable(int64_t position, const BlockHeader &header) const;
    // A block for (`idnum`, `sequence`), reused or appended; -1 on failure.
    int64_t Allocate(uint32_t idnum, uint32_t sequence, int64_t &length);
    OpenFileRecord *Record(int16_t handle) const;
    bool Reload(OpenFileRecord &record, int64_t blockStart, uint32_t expected);
    bool Advance(OpenFileRecord &record);
    bool Grow(OpenFileRecord &record);
    int64_t AppendRun(OpenFileRecord &record, const uint8_t *data, int64_t count);
    bool Writable() const { return mValid && !mReadOnly; }
    bool RepairMetadataChain();
    bool ReadTyped(int16_t handle, uint8_t *bytes, int64_t width);

    RandomAccessMechanism *mDisk; // the host file
    bool mOwnsDisk;
    SyncFunction mSync;
    bool mValid = false;
    bool mReadOnly = false;   // damaged: reading only
    bool mMapDirty = false;   // the saved map lags behind mMap
    bool mTornTail = false;   // bytes of a cut-off block follow the last whole one
    int64_t mMetadataCut = 0; // block of file 1 whose next leads nowhere, 0 for none
    uint32_t mVersion = kCurrentVersion;
    uint32_t mNextId = kFirstUserFile; // the counter in file 1
    int64_t mDiskLength = 0;           // end of the last whole block
    BlockMap mMap;
    std::vector<std::unique_ptr<OpenFileRecord>> mOpen; // null for a free slot
    std::string mDiagnostic;
};

} // namespace kelp::volume
