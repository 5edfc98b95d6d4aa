// Entries, folders and the operations on them.  Each entry is read through
// its record; a folder's child list is trusted only as far as its length
// field allows, and a child counts only when its own record names the
// folder as its parent, once, and is not the root.  Every entry has one
// parent field, so what a listing shows from the root is a tree: a damaged
// volume never makes a walk of it loop.
#include "volumes/vhfs_volume.h"

#include "volumes/byte_order.h"
#include "volumes/vfile.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <unordered_set>

namespace kelp::volume {
namespace {

constexpr int64_t kTypeOffset = 8;
constexpr int64_t kParentOffset = 12;
constexpr int64_t kDatesOffset = 16;
constexpr int64_t kNameOffset = 32;
constexpr int64_t kChildCountOffset = kEntryRecordSize;
constexpr double kSecondsFrom1904To1970 = 2082844800.0;

std::string CutName(const std::string &name) {
    return name.substr(0, std::min(name.size(), kMaxNameLength));
}

// A handle that closes itself.
class Handle {
public:
    Handle(VFSVolume &volume, uint32_t idnum) : mVolume(volume), mHandle(volume.OpenFile(idnum)) {}
    ~Handle() { mVolume.CloseFile(mHandle); }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;
    bool ok() const { return mHandle >= 0; }
    operator int16_t() const { return mHandle; }

private:
    VFSVolume &mVolume;
    int16_t mHandle;
};

// The number of children a folder's length field leaves room for.
int64_t ChildRoom(const EntryRecord &folder) {
    if (!std::isfinite(folder.length) || folder.length < 4)
        return 0;
    return int64_t(std::min(folder.length, 1e15) - 4) / 4;
}

} // namespace

VHFSVolume::VHFSVolume(RandomAccessMechanism *disk, bool ownsDisk, SyncFunction sync)
    : mVolume(std::make_unique<VFSVolume>(disk, ownsDisk, sync)) {}

std::unique_ptr<VHFSVolume> VHFSVolume::CreateVolume(RandomAccessMechanism *disk, bool ownsDisk,
                                                     SyncFunction sync, VolumeClock clock) {
    std::unique_ptr<VHFSVolume> volume(new VHFSVolume());
    volume->mClock = clock;
    volume->mVolume = VFSVolume::CreateVolume(disk, ownsDisk, sync);
    if (!volume->mVolume || volume->mVolume->NewFile() != kRootIdnum)
        return nullptr;
    Handle root(*volume->mVolume, kRootIdnum);
    const double now = volume->NowSeconds();
    if (!root.ok() || !volume->WriteRecord(root, {4.0, kFolderType, 0, now, now, "/"}) ||
        !volume->mVolume->WriteLong(root, 0))
        return nullptr;
    return volume;
}

double VHFSVolume::NowSeconds() const {
    return mClock ? mClock() : double(std::time(nullptr)) + kSecondsFrom1904To1970;
}

// ---------------------------------------------------------------- records

bool VHFSVolume::WriteRecord(int16_t handle, const EntryRecord &record) {
    uint8_t bytes[kEntryRecordSize] = {};
    const bool big = mVolume->ContentBigEndian();
    PutDouble(bytes, record.length, big);
    PutWord32(bytes + kTypeOffset, record.type, big);
    PutWord32(bytes + kParentOffset, record.parent, big);
    PutDouble(bytes + kDatesOffset, record.created, big);
    PutDouble(bytes + kModifiedOffset, record.modified, big);
    const std::string name = CutName(record.name);
    std::copy(name.begin(), name.end(), bytes + kNameOffset);
    return mVolume->Seek(handle, 0) && mVolume->Write(handle, bytes, kEntryRecordSize);
}

bool VHFSVolume::ReadRecord(int16_t handle, EntryRecord &out) {
    uint8_t bytes[kEntryRecordSize];
    int64_t count = kEntryRecordSize;
    if (!mVolume->Seek(handle, 0) || !mVolume->Read(handle, count, bytes))
        return false;
    const bool big = mVolume->ContentBigEndian();
    out.length = GetDouble(bytes, big);
    out.type = GetWord32(bytes + kTypeOffset, big);
    out.parent = GetWord32(bytes + kParentOffset, big);
    out.created = GetDouble(bytes + kDatesOffset, big);
    out.modified = GetDouble(bytes + kModifiedOffset, big);
    // A name without its NUL ends with the field.
    const char *name = reinterpret_cast<const char *>(bytes + kNameOffset);
    out.name.assign(name, strnlen(name, kNameField));
    return true;
}

bool VHFSVolume::GetRecord(uint32_t idnum, EntryRecord &out) {
    if (!IsValid() || idnum < kRootIdnum)
        return false;
    Handle handle(*mVolume, idnum);
    return handle.ok() && ReadRecord(handle, out);
}

// Child ids as far as the count and the length field agree; false (and no
// ids) for a folder whose count its length, or the volume, can't hold.
bool VHFSVolume::ReadChildIds(int16_t handle, const EntryRecord &folder,
                              std::vector<uint32_t> &ids) {
    ids.clear();
    uint32_t count = 0;
    if (folder.type != kFolderType || !mVolume->Seek(handle, kChildCountOffset) ||
        !mVolume->ReadLong(handle, count) || int64_t(count) > ChildRoom(folder) ||
        int64_t(count) * 4 > mVolume->DiskLength())
        return false;
    if (count == 0)
        return true;
    std::vector<uint8_t> bytes(size_t(count) * 4);
    int64_t got = int64_t(bytes.size());
    if (!mVolume->Read(handle, got, bytes.data()))
        return false;
    ids.reserve(count);
    const bool big = mVolume->ContentBigEndian();
    for (uint32_t i = 0; i < count; ++i)
        ids.push_back(GetWord32(bytes.data() + 4 * i, big));
    return true;
}

// ---------------------------------------------------------------- folders

EntryRef VHFSVolume::GetRoot() {
    EntryRecord record;
    if (!GetRecord(kRootIdnum, record))
        return {};
    return {kRootIdnum, record.name, record.type};
}

// Calls `visit` with each child a listing shows, in list order, until it
// answers true.  False for no folder.
template <typename Visit> bool VHFSVolume::ForEachChild(const EntryRef &folder, Visit &&visit) {
    if (!IsValid() || !folder.IsFolder())
        return false;
    std::vector<uint32_t> ids;
    {
        Handle handle(*mVolume, folder.idnum);
        EntryRecord record;
        if (!handle.ok() || !ReadRecord(handle, record))
            return false;
        ReadChildIds(handle, record, ids); // a damaged list reads as empty
    }
    std::unordered_set<uint32_t> listed;
    for (uint32_t id : ids) {
        EntryRecord child;
        if (id != kRootIdnum && id != folder.idnum && GetRecord(id, child) &&
            child.parent == folder.idnum && child.type != 0 && listed.insert(id).second &&
            visit(EntryRef{id, std::move(child.name), child.type}))
            break;
    }
    return true;
}

bool VHFSVolume::GetFolderContents(const EntryRef &folder, std::vector<EntryRef> &out) {
    out.clear();
    return ForEachChild(folder, [&](EntryRef &&child) {
        out.push_back(std::move(child));
        return false;
    });
}

EntryRef VHFSVolume::FindChild(const EntryRef &folder, const std::string &name,
                               bool (*same)(const std::string &, const std::string &)) {
    EntryRef found;
    ForEachChild(folder, [&](EntryRef &&child) {
        if (!same(child.name, name))
            return false;
        found = std::move(child);
        return true;
    });
    return found;
}

EntryRef VHFSVolume::GetParent(const EntryRef &entry) {
    EntryRecord record, parent;
    if (!GetRecord(entry.idnum, record) || record.parent == 0 || !GetRecord(record.parent, parent))
        return {};
    return {record.parent, parent.name, parent.type};
}

bool VHFSVolume::AppendChild(uint32_t folder, uint32_t child) {
    Handle handle(*mVolume, folder);
    EntryRecord record;
    std::vector<uint32_t> ids;
    if (!handle.ok() || !ReadRecord(handle, record) || !ReadChildIds(handle, record, ids))
        return false;
    const uint32_t count = uint32_t(ids.size()) + 1;
    const double length = std::max(record.length, 4.0 + 4.0 * count);
    return mVolume->Seek(handle, kChildCountOffset) && mVolume->WriteLong(handle, count) &&
           mVolume->Seek(handle, kChildCountOffset + 4 * int64_t(count)) &&
           mVolume->WriteLong(handle, child) && mVolume->Seek(handle, 0) &&
           mVolume->WriteDouble(handle, length);
}

// The last child moves into the gap.  A child that isn't listed is no
// reason to drop the last one: the list is left alone.
bool VHFSVolume::RemoveChild(uint32_t folder, uint32_t child) {
    Handle handle(*mVolume, folder);
    EntryRecord record;
    std::vector<uint32_t> ids;
    if (!handle.ok() || !ReadRecord(handle, record) || !ReadChildIds(handle, record, ids) ||
        ids.empty())
        return false;
    auto slot = std::find(ids.begin(), ids.end(), child);
    if (slot == ids.end())
        return false;
    const uint32_t count = uint32_t(ids.size());
    if (slot != ids.end() - 1 &&
        !(mVolume->Seek(handle, kChildCountOffset + 4 + 4 * (slot - ids.begin())) &&
          mVolume->WriteLong(handle, ids.back())))
        return false;
    return mVolume->Seek(handle, kChildCountOffset) && mVolume->WriteLong(handle, count - 1);
}

// ---------------------------------------------------------------- entries

EntryRef VHFSVolume::CreateEntry(const EntryRef &parent, const std::string &name, uint32_t type) {
    EntryRecord parentRecord;
    if (!IsValid() || !parent.IsFolder() || type == 0 || name.empty() ||
        !GetRecord(parent.idnum, parentRecord) || parentRecord.type != kFolderType)
        return {};
    const uint32_t idnum = mVolume->NewFile();
    if (idnum == 0)
        return {};
    const bool folder = type == kFolderType;
    const double now = NowSeconds();
    bool ok;
    {
        Handle handle(*mVolume, idnum);
        ok = handle.ok() &&
             WriteRecord(handle, {folder ? 4.0 : 0.0, type, parent.idnum, now, now, name}) &&
             (!folder || mVolume->WriteLong(handle, 0));
    }
    if (!ok || !AppendChild(parent.idnum, idnum)) {
        mVolume->DeleteFile(idnum);
        return {};
    }
    return {idnum, CutName(name), type};
}

// Made as a folder at once: the record is whole before the parent lists it.
EntryRef VHFSVolume::CreateFolder(const EntryRef &parent, const std::string &name) {
    return CreateEntry(parent, name, kFolderType);
}

bool VHFSVolume::GetInfo(const EntryRef &entry, FileInfo &out) {
    EntryRecord record;
    if (!GetRecord(entry.idnum, record))
        return false;
    out = {record.created, record.modified, record.length};
    return true;
}

bool VHFSVolume::SetInfo(const EntryRef &entry, const FileInfo &info) {
    if (!IsValid() || entry.type == 0)
        return false;
    Handle handle(*mVolume, entry.idnum);
    return handle.ok() && mVolume->Seek(handle, 0) && mVolume->WriteDouble(handle, info.length) &&
           mVolume->Seek(handle, kDatesOffset) && mVolume->WriteDouble(handle, info.created) &&
           mVolume->WriteDouble(handle, info.modified);
}

bool VHFSVolume::SetType(const EntryRef &entry, uint32_t type) {
    EntryRecord record;
    if (type == 0 || type == kFolderType || !GetRecord(entry.idnum, record) || record.type == 0 ||
        record.type == kFolderType)
        return false;
    Handle handle(*mVolume, entry.idnum);
    return handle.ok() && mVolume->Seek(handle, kTypeOffset) && mVolume->WriteLong(handle, type);
}

bool VHFSVolume::Rename(EntryRef &entry, const std::string &name) {
    if (!IsValid() || entry.type == 0 || name.empty())
        return false;
    uint8_t field[kNameField] = {};
    const std::string cut = CutName(name);
    std::copy(cut.begin(), cut.end(), field);
    Handle handle(*mVolume, entry.idnum);
    if (!handle.ok() || !mVolume->Seek(handle, kNameOffset) ||
        !mVolume->Write(handle, field, kNameField))
        return false;
    entry.name = cut;
    return true;
}

// True when `ancestor` is `idnum` or above it.  The climb is bounded by the
// number of blocks, and stops at an entry it has seen, so a damaged parent
// chain that loops can't hold it.
bool VHFSVolume::IsInside(uint32_t idnum, uint32_t ancestor) {
    std::unordered_set<uint32_t> seen;
    for (size_t steps = 0; idnum != 0 && steps <= mVolume->Map().Count(); ++steps) {
        if (idnum == ancestor)
            return true;
        EntryRecord record;
        if (!seen.insert(idnum).second || !GetRecord(idnum, record))
            return false;
        idnum = record.parent;
    }
    return false;
}

bool VHFSVolume::Move(const EntryRef &entry, const EntryRef &newParent) {
    EntryRecord record, target;
    if (!IsValid() || entry.type == 0 || entry.idnum == kRootIdnum || !newParent.IsFolder() ||
        !GetRecord(entry.idnum, record) || !GetRecord(newParent.idnum, target) ||
        target.type != kFolderType)
        return false;
    if (record.parent == newParent.idnum)
        return true;
    if (IsInside(newParent.idnum, entry.idnum))
        return false; // a folder can't hold itself
    if (!RemoveChild(record.parent, entry.idnum))
        return false;
    if (!AppendChild(newParent.idnum, entry.idnum)) {
        AppendChild(record.parent, entry.idnum);
        return false;
    }
    Handle handle(*mVolume, entry.idnum);
    return handle.ok() && mVolume->Seek(handle, kParentOffset) &&
           mVolume->WriteLong(handle, newParent.idnum);
}

bool VHFSVolume::Delete(const EntryRef &entry) {
    EntryRecord record, parent;
    if (!IsValid() || entry.type == 0 || entry.idnum == kRootIdnum ||
        !GetRecord(entry.idnum, record))
        return false;
    if (record.type == kFolderType) {
        // Any listed id keeps the folder, also one whose list is damaged:
        // what can't be read must not be thrown away.
        Handle handle(*mVolume, entry.idnum);
        std::vector<uint32_t> ids;
        if (!handle.ok() || !ReadChildIds(handle, record, ids) || !ids.empty())
            return false;
    }
    if (!GetRecord(record.parent, parent) || parent.type != kFolderType)
        return false;
    return mVolume->DeleteFile(entry.idnum) && RemoveChild(record.parent, entry.idnum);
}

std::unique_ptr<VFile> VHFSVolume::OpenFile(const EntryRef &entry) {
    EntryRecord record;
    if (!GetRecord(entry.idnum, record) || record.type == 0 || record.type == kFolderType)
        return nullptr;
    const int16_t handle = mVolume->OpenFile(entry.idnum);
    if (handle < 0)
        return nullptr;
    const double length = std::isfinite(record.length) && record.length > 0 ? record.length : 0;
    return std::make_unique<VFile>(*this, handle, int64_t(std::min(length, 9.0e15)));
}

} // namespace kelp::volume
