#pragma once
// The implementation behind a FolderItem: one file, folder or link, named
// whether it exists yet or not.  The language object is a thin holder; all
// decisions are here.  FolderItemImpUnix names a path of the host system;
// entries inside a virtual volume will be a second implementation.
//
// Failure channel: operations answer false, nil, 0 or "" and leave the raw
// errno of the failing call in mLastError (never translated).  Nothing here
// raises.  Paths are the UTF-8 bytes the program gave, passed unchanged.
#include "streams/random_access_mechanism.h"

#include <cstdint>
#include <memory>
#include <string>

namespace kelp {

// File times in the language's seconds: counted from 1 January 1904, UTC.
inline constexpr int64_t kSecondsFrom1904To1970 = 2082844800;

class FolderItemImp {
public:
    FolderItemImp() = default;
    virtual ~FolderItemImp() = default;
    FolderItemImp(const FolderItemImp &) = delete;
    FolderItemImp &operator=(const FolderItemImp &) = delete;

    virtual std::unique_ptr<FolderItemImp> Clone() const = 0;
    virtual bool IsVirtual() const { return false; }
    // Same item: compared by path.
    virtual bool SameAs(const FolderItemImp &other) const = 0;

    virtual bool Exists() = 0;
    virtual bool IsAlias() = 0;
    virtual bool IsDirectory() = 0;
    virtual std::string Name() const = 0;
    virtual std::string DisplayName() const { return Name(); }
    virtual bool Rename(const std::string &newName) = 0;
    virtual std::string AbsolutePath() const = 0;
    virtual std::string ShellPath() const { return AbsolutePath(); }
    virtual std::string URLPath() const = 0;

    virtual int32_t Permissions() { return 0; }
    virtual bool SetPermissions(int32_t) { return false; }
    virtual std::string Owner() { return std::string(); }
    virtual bool SetOwner(const std::string &) { return false; }
    virtual std::string Group() { return std::string(); }
    virtual bool SetGroup(const std::string &) { return false; }
    virtual bool Visible() { return true; }
    virtual bool SetVisible(bool) { return false; }
    virtual bool Locked() { return !IsWriteable(); }
    virtual bool IsReadable() { return true; }
    // Tries the file (or, for a folder or a missing file, a scratch file in
    // the folder) without leaving a trace.
    virtual bool IsWriteable();

    virtual int64_t CreationSeconds() { return 0; }
    virtual bool SetCreationSeconds(int64_t) { return false; }
    // The four-character type code, where the item keeps one; "" otherwise.
    virtual std::string MacType() { return std::string(); }
    virtual bool SetMacType(const std::string &) { return false; }
    // The number of the folder that holds the item, where there is one.
    virtual int32_t MacDirID() { return 0; }
    virtual int64_t ModificationSeconds() { return 0; }
    virtual bool SetModificationSeconds(int64_t) { return false; }

    virtual int64_t Length() { return 0; }
    virtual bool SetLength(int64_t) { return false; }
    // The data of the file, for reading or reading and writing; null on failure.
    virtual std::unique_ptr<RandomAccessMechanism> OpenData(bool write) = 0;
    // An empty file, made or emptied; null on failure.
    virtual std::unique_ptr<RandomAccessMechanism> CreateData() = 0;

    virtual std::unique_ptr<FolderItemImp> Parent() const = 0;
    virtual int32_t Count() = 0;
    // Zero-based; null past the end.
    virtual std::unique_ptr<FolderItemImp> Item(int32_t index, bool resolve) = 0;
    virtual std::unique_ptr<FolderItemImp> Child(const std::string &name) = 0;
    // The target of a link, one level; null when this is no link.
    virtual std::unique_ptr<FolderItemImp> ResolveAlias() = 0;

    virtual bool CreateAsFolder() = 0;
    virtual bool Delete() = 0;
    // A folder and everything in it, children first; false at the first failure.
    virtual bool DeleteWithContents();
    virtual bool CopyTo(FolderItemImp &destination) = 0;
    // The copy that works between any two kinds of item: the bytes through
    // the items' own mechanisms, a folder with everything in it.  Into a
    // folder, the copy is its child of the same name.
    bool CopyContentsTo(FolderItemImp &destination);
    virtual bool MoveTo(FolderItemImp &destination) = 0;
    virtual bool Launch(const std::string &parameters) = 0;
    virtual void MakeExecutable() {}

    int32_t mLastError = 0; // raw errno of the last failure, 0 at construction
};

} // namespace kelp
