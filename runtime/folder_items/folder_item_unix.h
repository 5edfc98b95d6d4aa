#pragma once
// FolderItemImp for a path of the host system.  A folder's path ends in
// "/" once the item is known to be a directory; a file's never does.
#include "folder_items/folder_item_imp.h"

namespace kelp {

class FolderItemImpUnix : public FolderItemImp {
public:
    // `path` must be absolute; a directory gets its "/" here.
    explicit FolderItemImpUnix(std::string path);

    // An item for a path as the program gave it: a relative path is taken
    // from the default folder.  Null when the path can't be reached (stat
    // fails with anything but ENOENT): a missing file is a valid item.
    static std::unique_ptr<FolderItemImpUnix> FromPath(const std::string &path);

    std::unique_ptr<FolderItemImp> Clone() const override;
    bool SameAs(const FolderItemImp &other) const override;
    bool Exists() override;
    bool IsAlias() override;
    bool IsDirectory() override;
    std::string Name() const override;
    bool Rename(const std::string &newName) override;
    std::string AbsolutePath() const override { return mPath; }
    std::string URLPath() const override;
    int32_t Permissions() override;
    bool SetPermissions(int32_t mode) override;
    std::string Owner() override;
    bool SetOwner(const std::string &user) override;
    std::string Group() override;
    bool SetGroup(const std::string &group) override;
    bool Visible() override;
    bool SetVisible(bool visible) override;
    bool IsReadable() override;
    bool IsWriteable() override;
    int64_t CreationSeconds() override;
    int64_t ModificationSeconds() override;
    bool SetModificationSeconds(int64_t seconds) override;
    int64_t Length() override;
    bool SetLength(int64_t length) override;
    std::unique_ptr<RandomAccessMechanism> OpenData(bool write) override;
    std::unique_ptr<RandomAccessMechanism> CreateData() override;
    std::unique_ptr<FolderItemImp> Parent() const override;
    int32_t Count() override;
    std::unique_ptr<FolderItemImp> Item(int32_t index, bool resolve) override;
    std::unique_ptr<FolderItemImp> Child(const std::string &name) override;
    std::unique_ptr<FolderItemImp> ResolveAlias() override;
    bool CreateAsFolder() override;
    bool Delete() override;
    bool CopyTo(FolderItemImp &destination) override;
    bool MoveTo(FolderItemImp &destination) override;
    bool Launch(const std::string &parameters) override;
    void MakeExecutable() override;

private:
    bool Fail();
    std::string mPath; // absolute
};

// The folder of the executable, without a trailing "/": the base of every
// relative path.  Computed once from argv[0] (given by the process start-up).
void SetProgramPath(const char *argv0);
const std::string &DefaultFolder();

} // namespace kelp
