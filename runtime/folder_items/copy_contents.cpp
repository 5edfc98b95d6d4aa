// The copy that needs no shell: what a virtual item uses, and what a real
// item uses when the other side is virtual (the shell knows no path there).
#include "folder_items/folder_item_imp.h"

#include <vector>

namespace kelp {
namespace {

// Deeper than any tree a person makes; it stops a folder copied into
// itself from copying forever.
constexpr int kMaxCopyDepth = 64;
constexpr int64_t kCopyBuffer = 1 << 16;

bool CopyBytes(FolderItemImp &source, FolderItemImp &target) {
    std::unique_ptr<RandomAccessMechanism> in = source.OpenData(false);
    if (!in)
        return false;
    target.Delete(); // a failure shows as a failed creation below
    std::unique_ptr<RandomAccessMechanism> out = target.CreateData();
    if (!out) {
        source.mLastError = target.mLastError;
        return false;
    }
    const int64_t length = in->GetLength();
    std::vector<uint8_t> buffer(size_t(length > 0 && length < kCopyBuffer ? length : kCopyBuffer));
    bool ok = true;
    for (int64_t done = 0; ok && done < length;) {
        int64_t got = 0;
        ok = in->Read(buffer.data(), int64_t(buffer.size()), &got) && got > 0 &&
             out->Write(buffer.data(), got);
        done += got;
    }
    ok = out->Close() && ok;
    in->Close();
    if (ok && !source.MacType().empty())
        target.SetMacType(source.MacType());
    return ok;
}

bool CopyInto(FolderItemImp &source, FolderItemImp &destination, int depth) {
    if (source.SameAs(destination))
        return true;
    std::unique_ptr<FolderItemImp> target =
        destination.IsDirectory() ? destination.Child(source.Name()) : destination.Clone();
    if (!target)
        return false;
    if (!source.IsDirectory())
        return CopyBytes(source, *target);
    if (source.IsAlias() || depth >= kMaxCopyDepth)
        return false; // a link to a folder could lead back into the copy
    if (!target->Exists() && !target->CreateAsFolder()) {
        source.mLastError = target->mLastError;
        return false;
    }
    if (!target->IsDirectory())
        return false;
    std::vector<std::unique_ptr<FolderItemImp>> children;
    const int32_t count = source.Count();
    for (int32_t i = 0; i < count; ++i)
        if (std::unique_ptr<FolderItemImp> child = source.Item(i, false))
            children.push_back(std::move(child));
    for (std::unique_ptr<FolderItemImp> &child : children)
        if (!CopyInto(*child, *target, depth + 1)) {
            source.mLastError = child->mLastError;
            return false;
        }
    return true;
}

} // namespace

bool FolderItemImp::CopyContentsTo(FolderItemImp &destination) {
    return CopyInto(*this, destination, 0);
}

} // namespace kelp
