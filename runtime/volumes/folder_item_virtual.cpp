#include "volumes/folder_item_virtual.h"

#include "volumes/vfile.h"
#include "volumes/virtual_volume_object.h"

#include "strings/kstring.h"

#include "kelp/objects.h"

#include <cmath>
#include <unordered_set>

namespace kelp {
namespace {

using volume::EntryRecord;
using volume::EntryRef;

bool SameName(const std::string &a, const std::string &b) {
    return LanguageCompare(string::FromUTF8(a), string::FromUTF8(b)) == 0;
}

// A type code from text: its first four bytes, blank-padded.
uint32_t CodeOf(const std::string &text) {
    uint32_t code = 0;
    for (size_t i = 0; i < 4; ++i)
        code = code << 8 | uint8_t(i < text.size() ? text[i] : ' ');
    return code;
}

std::string TextOf(uint32_t code) {
    return {char(code >> 24), char(code >> 16), char(code >> 8), char(code)};
}

int64_t WholeSeconds(double seconds) {
    return std::isfinite(seconds) && std::fabs(seconds) < 9.0e15 ? int64_t(std::floor(seconds)) : 0;
}

} // namespace

FolderItemImpVirtual::FolderItemImpVirtual(RuntimeObject *volumeObject, EntryRef parent,
                                           std::string name, bool isRoot)
    : mVolumeObject(volumeObject), mParent(std::move(parent)), mName(std::move(name)),
      mIsRoot(isRoot) {
    RuntimeLockObject(mVolumeObject);
}

FolderItemImpVirtual::~FolderItemImpVirtual() { RuntimeUnlockObject(mVolumeObject); }

std::unique_ptr<FolderItemImpVirtual> FolderItemImpVirtual::RootOf(RuntimeObject *volumeObject) {
    volume::VHFSVolume *vhfs = VolumeOf(volumeObject);
    EntryRef root = vhfs ? vhfs->GetRoot() : EntryRef();
    if (root.idnum != volume::kRootIdnum)
        return nullptr;
    std::string name = root.name;
    return std::make_unique<FolderItemImpVirtual>(volumeObject, std::move(root), std::move(name),
                                                  true);
}

volume::VHFSVolume *FolderItemImpVirtual::Volume() const { return VolumeOf(mVolumeObject); }

EntryRef FolderItemImpVirtual::Resolve() const {
    volume::VHFSVolume *vhfs = Volume();
    if (!vhfs)
        return {};
    if (mIsRoot)
        return vhfs->GetRoot();
    return vhfs->FindChild(mParent, mName, &SameName);
}

std::unique_ptr<FolderItemImp> FolderItemImpVirtual::Clone() const {
    return std::make_unique<FolderItemImpVirtual>(mVolumeObject, mParent, mName, mIsRoot);
}

bool FolderItemImpVirtual::SameAs(const FolderItemImp &other) const {
    const auto *o = dynamic_cast<const FolderItemImpVirtual *>(&other);
    return o && o->mVolumeObject == mVolumeObject && o->mIsRoot == mIsRoot &&
           (mIsRoot || (o->mParent.idnum == mParent.idnum && SameName(o->mName, mName)));
}

bool FolderItemImpVirtual::Rename(const std::string &newName) {
    EntryRef entry = Resolve();
    volume::VHFSVolume *vhfs = Volume();
    if (entry.type == 0 || mIsRoot || newName.empty())
        return false;
    // Another entry of that name would make both unreachable by name.
    EntryRef other = vhfs->FindChild(mParent, newName, &SameName);
    if (other.type != 0 && other.idnum != entry.idnum)
        return false;
    if (!vhfs->Rename(entry, newName))
        return false;
    mName = entry.name;
    return true;
}

// The names up to the root joined by "/", the root's own name being "/":
// a child of the root is "//name".  The climb stops at an entry seen before.
std::string FolderItemImpVirtual::AbsolutePath() const {
    volume::VHFSVolume *vhfs = Volume();
    if (!vhfs)
        return mName;
    if (mIsRoot)
        return mName;
    std::string path = mName;
    std::unordered_set<uint32_t> seen;
    for (EntryRef folder = mParent; folder.type != 0 && seen.insert(folder.idnum).second;
         folder = vhfs->GetParent(folder))
        path = folder.name + "/" + path;
    return path;
}

bool FolderItemImpVirtual::IsWriteable() {
    volume::VHFSVolume *vhfs = Volume();
    return vhfs && !vhfs->Core().IsReadOnly();
}

bool FolderItemImpVirtual::FileRecord(EntryRef &ref, EntryRecord &record) {
    volume::VHFSVolume *vhfs = Volume();
    ref = Resolve();
    return ref.type != 0 && !ref.IsFolder() && vhfs->GetRecord(ref.idnum, record);
}

int64_t FolderItemImpVirtual::CreationSeconds() {
    EntryRecord record;
    volume::VHFSVolume *vhfs = Volume();
    EntryRef ref = Resolve();
    return ref.type && vhfs->GetRecord(ref.idnum, record) ? WholeSeconds(record.created) : 0;
}

int64_t FolderItemImpVirtual::ModificationSeconds() {
    EntryRecord record;
    volume::VHFSVolume *vhfs = Volume();
    EntryRef ref = Resolve();
    return ref.type && vhfs->GetRecord(ref.idnum, record) ? WholeSeconds(record.modified) : 0;
}

bool FolderItemImpVirtual::SetDates(bool creation, int64_t seconds) {
    EntryRef ref;
    EntryRecord record;
    if (!FileRecord(ref, record))
        return false;
    (creation ? record.created : record.modified) = double(seconds);
    return Volume()->SetInfo(ref, {record.created, record.modified, record.length});
}

bool FolderItemImpVirtual::SetCreationSeconds(int64_t seconds) { return SetDates(true, seconds); }

bool FolderItemImpVirtual::SetModificationSeconds(int64_t seconds) {
    return SetDates(false, seconds);
}

std::string FolderItemImpVirtual::MacType() {
    EntryRef ref = Resolve();
    return ref.type ? TextOf(ref.type) : std::string();
}

bool FolderItemImpVirtual::SetMacType(const std::string &code) {
    EntryRef ref;
    EntryRecord record;
    return !code.empty() && FileRecord(ref, record) && Volume()->SetType(ref, CodeOf(code));
}

int32_t FolderItemImpVirtual::MacDirID() {
    EntryRef ref = Resolve();
    if (ref.type == 0)
        return 0;
    return int32_t(mIsRoot ? ref.idnum : mParent.idnum);
}

int64_t FolderItemImpVirtual::Length() {
    EntryRecord record;
    volume::VHFSVolume *vhfs = Volume();
    EntryRef ref = Resolve();
    if (ref.type == 0 || !vhfs->GetRecord(ref.idnum, record) || !std::isfinite(record.length) ||
        record.length < 0)
        return 0;
    return int64_t(std::min(record.length, 9.0e15));
}

bool FolderItemImpVirtual::SetLength(int64_t length) {
    EntryRef ref;
    EntryRecord record;
    if (length < 0 || !FileRecord(ref, record))
        return false;
    return Volume()->SetInfo(ref, {record.created, record.modified, double(length)});
}

// The file keeps the volume object alive while it is open.
std::unique_ptr<RandomAccessMechanism> FolderItemImpVirtual::Open(const EntryRef &ref) {
    std::unique_ptr<volume::VFile> file = Volume()->OpenFile(ref);
    if (!file)
        return nullptr;
    RuntimeLockObject(mVolumeObject);
    file->SetOwner(std::shared_ptr<void>(mVolumeObject, &RuntimeUnlockObject));
    file->SetSwapped();
    file->SetSwapFloats(true);
    return file;
}

std::unique_ptr<RandomAccessMechanism> FolderItemImpVirtual::OpenData(bool) {
    EntryRef ref = Resolve();
    if (ref.type == 0 || ref.IsFolder())
        return nullptr;
    return Open(ref);
}

// A new file only: an entry of this name (in any case) is already there.
std::unique_ptr<RandomAccessMechanism> FolderItemImpVirtual::CreateData() {
    volume::VHFSVolume *vhfs = Volume();
    if (!vhfs || mIsRoot || Resolve().type != 0)
        return nullptr;
    EntryRef ref = vhfs->CreateEntry(mParent, mName, volume::kUnknownType);
    return ref.type ? Open(ref) : nullptr;
}

std::unique_ptr<FolderItemImp> FolderItemImpVirtual::Parent() const {
    volume::VHFSVolume *vhfs = Volume();
    if (mIsRoot || !vhfs)
        return nullptr;
    EntryRef grandparent = vhfs->GetParent(mParent);
    if (grandparent.type == 0) // the parent is the root
        return std::make_unique<FolderItemImpVirtual>(mVolumeObject, mParent, mParent.name, true);
    return std::make_unique<FolderItemImpVirtual>(mVolumeObject, std::move(grandparent),
                                                  mParent.name, false);
}

int32_t FolderItemImpVirtual::Count() {
    std::vector<EntryRef> children;
    EntryRef ref = Resolve();
    if (!ref.IsFolder() || !Volume()->GetFolderContents(ref, children))
        return 0;
    return int32_t(children.size());
}

std::unique_ptr<FolderItemImp> FolderItemImpVirtual::Item(int32_t index, bool) {
    std::vector<EntryRef> children;
    EntryRef ref = Resolve();
    if (!ref.IsFolder() || !Volume()->GetFolderContents(ref, children) || index < 0 ||
        size_t(index) >= children.size())
        return nullptr;
    std::string name = children[size_t(index)].name;
    return std::make_unique<FolderItemImpVirtual>(mVolumeObject, std::move(ref), std::move(name),
                                                  false);
}

std::unique_ptr<FolderItemImp> FolderItemImpVirtual::Child(const std::string &name) {
    EntryRef ref = Resolve();
    if (!ref.IsFolder())
        return nullptr;
    return std::make_unique<FolderItemImpVirtual>(mVolumeObject, std::move(ref), name, false);
}

bool FolderItemImpVirtual::CreateAsFolder() {
    volume::VHFSVolume *vhfs = Volume();
    if (!vhfs || mIsRoot || Resolve().type != 0)
        return false;
    return vhfs->CreateFolder(mParent, mName).type != 0;
}

bool FolderItemImpVirtual::Delete() {
    EntryRef ref = Resolve();
    return ref.type != 0 && Volume()->Delete(ref);
}

// Within one volume the entry moves; anywhere else it is copied, and the
// original goes only when the copy is whole.
bool FolderItemImpVirtual::MoveTo(FolderItemImp &destination) {
    if (SameAs(destination))
        return true;
    auto *target = dynamic_cast<FolderItemImpVirtual *>(&destination);
    if (!target || target->mVolumeObject != mVolumeObject)
        return CopyContentsTo(destination) && DeleteWithContents();
    EntryRef entry = Resolve();
    volume::VHFSVolume *vhfs = Volume();
    if (entry.type == 0 || !vhfs)
        return false;
    EntryRef place = target->Resolve();
    if (place.IsFolder()) {
        if (vhfs->FindChild(place, mName, &SameName).type != 0)
            return false; // the folder has an entry of that name already
        if (!vhfs->Move(entry, place))
            return false;
        mParent = place;
        return true;
    }
    if (target->mIsRoot)
        return false;
    if (place.type != 0) {
        if (place.idnum == entry.idnum)
            return Rename(target->mName); // the same entry, named in another case
        if (!vhfs->Delete(place))
            return false;
    }
    if (!vhfs->Move(entry, target->mParent))
        return false;
    mParent = target->mParent;
    if (!vhfs->Rename(entry, target->mName))
        return false;
    mName = entry.name;
    return true;
}

} // namespace kelp
