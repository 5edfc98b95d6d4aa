#pragma once
// VHFSVolume: a tree of named files and folders on the numbered files of a
// VFSVolume.  Every entry is one VFS file whose first 256 bytes are its
// record (length, type, parent, two dates, name); a folder's content is its
// child count and the children's idnums, a file's content is its bytes.
//
// Failure channel: nothing raises.  Operations answer false or a reference
// of type 0; the caller checks names for collisions before creating, as
// this layer doesn't.  A folder whose record can't be believed lists as
// empty, so a damaged volume never makes a listing run away.
#include "volumes/vfs_volume.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kelp::volume {

inline constexpr uint32_t kRootIdnum = 2;
inline constexpr uint32_t kFolderType = 0x666F6C64;  // "fold"
inline constexpr uint32_t kPendingType = 0x74656D70; // "temp", a folder being made
inline constexpr uint32_t kUnknownType = 0x3F3F3F3F; // "????"
inline constexpr int64_t kEntryRecordSize = 256;
inline constexpr size_t kNameField = 224; // NUL-padded
inline constexpr size_t kMaxNameLength = kNameField - 1;
inline constexpr int64_t kModifiedOffset = 24; // in the record

struct EntryRef {
    uint32_t idnum = 0;
    std::string name;
    uint32_t type = 0; // 0: no such entry
    bool IsFolder() const { return type == kFolderType; }
};

// The 256-byte record at the start of every entry.
struct EntryRecord {
    double length = 0; // a file's content; a folder's 4 + 4 per child ever held
    uint32_t type = 0;
    uint32_t parent = 0; // 0 for the root
    double created = 0;  // seconds since 1904
    double modified = 0;
    std::string name;
};

struct FileInfo {
    double created = 0;
    double modified = 0;
    double length = 0;
};

class VFile;

// Seconds since 1 January 1904 for the dates of new entries.
using VolumeClock = double (*)();

class VHFSVolume {
public:
    // Opens the volume in `disk`; test IsValid().
    VHFSVolume(RandomAccessMechanism *disk, bool ownsDisk, SyncFunction sync = nullptr);
    // A new volume with its root folder; null on failure.
    static std::unique_ptr<VHFSVolume> CreateVolume(RandomAccessMechanism *disk, bool ownsDisk,
                                                    SyncFunction sync = nullptr,
                                                    VolumeClock clock = nullptr);
    virtual ~VHFSVolume() = default;
    VHFSVolume(const VHFSVolume &) = delete;
    VHFSVolume &operator=(const VHFSVolume &) = delete;

    bool IsValid() const { return mVolume && mVolume->IsValid(); }
    VFSVolume &Core() { return *mVolume; }
    void SetClock(VolumeClock clock) { mClock = clock; }

    EntryRef GetRoot();
    EntryRef CreateFolder(const EntryRef &parent, const std::string &name);
    EntryRef CreateEntry(const EntryRef &parent, const std::string &name, uint32_t type);
    bool GetFolderContents(const EntryRef &folder, std::vector<EntryRef> &out);
    // The child called `name`, compared by `same`; type 0 when none.
    EntryRef FindChild(const EntryRef &folder, const std::string &name,
                       bool (*same)(const std::string &, const std::string &));
    EntryRef GetParent(const EntryRef &entry);
    // The entry's record as it is now; false when it can't be read.
    bool GetRecord(uint32_t idnum, EntryRecord &out);
    bool GetInfo(const EntryRef &entry, FileInfo &out);
    bool SetInfo(const EntryRef &entry, const FileInfo &info);
    bool SetType(const EntryRef &entry, uint32_t type);
    bool Rename(EntryRef &entry, const std::string &name);
    // Refuses the root, a parent that is no folder, and a folder into its
    // own subtree.
    bool Move(const EntryRef &entry, const EntryRef &newParent);
    bool Delete(const EntryRef &entry);
    // The content of a file entry; null for a folder or a missing entry.
    std::unique_ptr<VFile> OpenFile(const EntryRef &entry);
    bool Flush() { return IsValid() && mVolume->Flush(); }
    // Seconds since 1904 by the volume's clock.
    double NowSeconds() const;

private:
    VHFSVolume() = default;
    bool WriteRecord(int16_t handle, const EntryRecord &record);
    bool ReadRecord(int16_t handle, EntryRecord &out);
    bool ReadChildIds(int16_t handle, const EntryRecord &folder, std::vector<uint32_t> &ids);
    bool AppendChild(uint32_t folder, uint32_t child);
    bool RemoveChild(uint32_t folder, uint32_t child);
    bool IsInside(uint32_t idnum, uint32_t ancestor);
    template <typename Visit> bool ForEachChild(const EntryRef &folder, Visit &&visit);

    std::unique_ptr<VFSVolume> mVolume;
    VolumeClock mClock = nullptr;
};

} // namespace kelp::volume
