// Fuzz entry for the virtual volume reader: open, list, read every file,
// and for a volume that opens writable, one write and a second open.
#include "volume_input.h"

#include "volumes/vfile.h"
#include "volumes/vhfs_volume.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <unordered_set>
#include <vector>

namespace kelp::volume {
namespace {

// A host file in memory.
class MemoryDisk : public RandomAccessMechanism {
public:
    explicit MemoryDisk(std::string bytes) : mBytes(std::move(bytes)) {}
    bool Read(void *buffer, int64_t count, int64_t *outRead) override {
        int64_t n = std::max<int64_t>(0, std::min<int64_t>(count, Size() - mPosition));
        if (n > 0)
            std::memcpy(buffer, mBytes.data() + mPosition, size_t(n));
        mPosition += n;
        if (outRead)
            *outRead = n;
        return n > 0 || count == 0;
    }
    bool Write(const void *buffer, int64_t count) override {
        if (mPosition + count > (int64_t(1) << 26))
            return false; // a damaged length must not eat the memory
        if (mPosition + count > Size())
            mBytes.resize(size_t(mPosition + count));
        std::memcpy(mBytes.data() + mPosition, buffer, size_t(count));
        mPosition += count;
        return true;
    }
    bool Close() override { return true; }
    bool IsEOF() override { return mPosition >= Size(); }
    void SetPosition(int64_t offset) override { mPosition = std::max<int64_t>(0, offset); }
    int64_t GetLength() override { return Size(); }
    bool SetLength(int64_t length) override {
        if (length < 0 || length > (int64_t(1) << 26))
            return false;
        mBytes.resize(size_t(length));
        return true;
    }
    int64_t GetPosition() override { return mPosition; }
    const std::string &Bytes() const { return mBytes; }

private:
    int64_t Size() const { return int64_t(mBytes.size()); }
    std::string mBytes;
    int64_t mPosition = 0;
};

void Walk(VHFSVolume &vhfs, VolumeWalk &walk) {
    std::vector<EntryRef> pending{vhfs.GetRoot()};
    std::unordered_set<uint32_t> seen;
    std::vector<uint8_t> buffer(1 << 16);
    while (!pending.empty()) {
        EntryRef folder = std::move(pending.back());
        pending.pop_back();
        // The tree guarantees each entry is reached once; a second visit is
        // a loop the listing let through.
        if (!seen.insert(folder.idnum).second)
            std::abort();
        std::vector<EntryRef> children;
        vhfs.GetFolderContents(folder, children);
        ++walk.folders;
        for (EntryRef &child : children) {
            if (child.IsFolder()) {
                pending.push_back(std::move(child));
                continue;
            }
            if (!seen.insert(child.idnum).second)
                std::abort();
            std::unique_ptr<VFile> file = vhfs.OpenFile(child);
            if (!file)
                continue;
            ++walk.files;
            int64_t got = 0;
            while (file->Read(buffer.data(), int64_t(buffer.size()), &got) && got > 0)
                walk.bytes += size_t(got);
        }
    }
}

} // namespace

VolumeWalk WalkVolume(const uint8_t *data, size_t size) {
    VolumeWalk walk;
    MemoryDisk disk(std::string(reinterpret_cast<const char *>(data), size));
    {
        VHFSVolume vhfs(&disk, false);
        walk.valid = vhfs.IsValid();
        if (!walk.valid)
            return walk;
        walk.readOnly = vhfs.Core().IsReadOnly();
        Walk(vhfs, walk);
        EntryRef root = vhfs.GetRoot();
        if (walk.readOnly || root.type != kFolderType)
            return walk;
        EntryRef made = vhfs.CreateEntry(root, "fuzz", kUnknownType);
        if (made.type == 0)
            return walk;
        const std::string text(3000, 'v');
        if (std::unique_ptr<VFile> file = vhfs.OpenFile(made))
            file->Write(text.data(), int64_t(text.size()));
        vhfs.Delete(made);
    }
    walk.after = disk.Bytes();
    MemoryDisk again(walk.after);
    VHFSVolume reopened(&again, false);
    // What this code wrote to a volume it accepted must open again.
    if (!reopened.IsValid())
        std::abort();
    VolumeWalk second;
    Walk(reopened, second);
    return walk;
}

} // namespace kelp::volume

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    kelp::volume::WalkVolume(data, size);
    return 0;
}
