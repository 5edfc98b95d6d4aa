#pragma once
// FolderItemImpVirtual: a FolderItem that names an entry inside a virtual
// volume, by its parent folder and its name, whether the entry exists yet
// or not.  Every operation looks the name up again in the parent folder, so
// an item stays right when the volume changes under it.  Names compare as
// the language compares strings, without regard to case.
//
// Failure channel: false, 0, nil or "" for a missing entry or a closed
// volume; mLastError stays 0, as a volume keeps no error codes.
#include "folder_items/folder_item_imp.h"
#include "volumes/vhfs_volume.h"

#include "kelp/records.h"

namespace kelp {

class FolderItemImpVirtual : public FolderItemImp {
public:
    // Holds a counted reference to `volumeObject` (a VirtualVolume).
    FolderItemImpVirtual(RuntimeObject *volumeObject, volume::EntryRef parent, std::string name,
                         bool isRoot);
    ~FolderItemImpVirtual() override;
    // The root folder of the volume; null when the volume is closed.
    static std::unique_ptr<FolderItemImpVirtual> RootOf(RuntimeObject *volumeObject);
    RuntimeObject *VolumeObject() const { return mVolumeObject; }

    std::unique_ptr<FolderItemImp> Clone() const override;
    bool IsVirtual() const override { return true; }
    bool SameAs(const FolderItemImp &other) const override;
    bool Exists() override { return Resolve().type != 0; }
    bool IsAlias() override { return false; }
    bool IsDirectory() override { return Resolve().IsFolder(); }
    std::string Name() const override { return mName; }
    bool Rename(const std::string &newName) override;
    std::string AbsolutePath() const override;
    std::string URLPath() const override { return std::string(); }
    bool IsWriteable() override;
    int64_t CreationSeconds() override;
    bool SetCreationSeconds(int64_t seconds) override;
    int64_t ModificationSeconds() override;
    bool SetModificationSeconds(int64_t seconds) override;
    std::string MacType() override;
    bool SetMacType(const std::string &code) override;
    int32_t MacDirID() override;
    int64_t Length() override;
    bool SetLength(int64_t length) override;
    std::unique_ptr<RandomAccessMechanism> OpenData(bool write) override;
    std::unique_ptr<RandomAccessMechanism> CreateData() override;
    std::unique_ptr<FolderItemImp> Parent() const override;
    int32_t Count() override;
    std::unique_ptr<FolderItemImp> Item(int32_t index, bool resolve) override;
    std::unique_ptr<FolderItemImp> Child(const std::string &name) override;
    std::unique_ptr<FolderItemImp> ResolveAlias() override { return nullptr; }
    bool CreateAsFolder() override;
    bool Delete() override;
    bool CopyTo(FolderItemImp &destination) override { return CopyContentsTo(destination); }
    bool MoveTo(FolderItemImp &destination) override;
    bool Launch(const std::string &) override { return false; }

private:
    volume::VHFSVolume *Volume() const;
    // The entry as it is now; type 0 when it doesn't exist.
    volume::EntryRef Resolve() const;
    // The entry's record when it is a file (not a folder) that exists.
    bool FileRecord(volume::EntryRef &ref, volume::EntryRecord &record);
    std::unique_ptr<RandomAccessMechanism> Open(const volume::EntryRef &ref);
    bool SetDates(bool creation, int64_t seconds);

    RuntimeObject *mVolumeObject; // counted; the VirtualVolume
    volume::EntryRef mParent;     // the folder the entry is in; the root's own for the root
    std::string mName;            // the entry's own name
    bool mIsRoot;
};

} // namespace kelp
