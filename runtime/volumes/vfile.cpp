#include "volumes/vfile.h"

#include "volumes/vhfs_volume.h"

#include <algorithm>
#include <vector>

namespace kelp::volume {

VFile::VFile(VHFSVolume &volume, int16_t handle, int64_t length)
    : mVolume(&volume), mHandle(handle), mLength(length) {}

VFile::~VFile() { Close(); }

// Puts the VFS record at the content position.  A position past the end of
// the blocks is reached by writing zeros up to it, as a file on disk would.
bool VFile::Seeked() {
    if (!mSeekNeeded)
        return true;
    VFSVolume &core = mVolume->Core();
    const int64_t target = kEntryRecordSize + mPosition;
    if (!core.Seek(mHandle, target)) {
        const int64_t end = core.Capacity(mHandle);
        if (end < 0 || end >= target || !core.Seek(mHandle, end))
            return false;
        const std::vector<uint8_t> zeros(size_t(std::min<int64_t>(target - end, 1 << 16)));
        for (int64_t left = target - end; left > 0;) {
            const int64_t step = std::min<int64_t>(left, int64_t(zeros.size()));
            if (!core.Write(mHandle, zeros.data(), step))
                return false;
            left -= step;
        }
    }
    mSeekNeeded = false;
    return true;
}

bool VFile::Read(void *buffer, int64_t count, int64_t *outRead) {
    if (outRead)
        *outRead = 0;
    if (!mVolume)
        return false;
    if (count <= 0)
        return true;
    count = std::min(count, mLength - mPosition);
    if (count <= 0 || !Seeked())
        return false;
    int64_t got = count;
    const bool ok = mVolume->Core().Read(mHandle, got, buffer);
    mPosition += got;
    if (outRead)
        *outRead = got;
    return ok || got > 0;
}

bool VFile::Write(const void *buffer, int64_t count) {
    if (!mVolume || count < 0)
        return false;
    if (count == 0)
        return true;
    if (!Seeked())
        return false;
    const int64_t before = mVolume->Core().Tell(mHandle);
    const bool ok = mVolume->Core().Write(mHandle, buffer, count);
    const int64_t after = mVolume->Core().Tell(mHandle);
    mPosition += after >= before ? after - before : 0;
    mLength = std::max(mLength, mPosition);
    mWritten = true;
    if (!ok)
        mSeekNeeded = true;
    return ok;
}

void VFile::SetPosition(int64_t offset) {
    const int64_t position = offset < 0 ? 0 : offset;
    if (position != mPosition)
        mSeekNeeded = true;
    mPosition = position;
}

bool VFile::SetLength(int64_t length) {
    if (!mVolume || length < 0)
        return false;
    if (length > mLength) {
        // Zeros over whatever a shorter past left in the blocks.
        const int64_t here = mPosition;
        const std::vector<uint8_t> zeros(size_t(std::min<int64_t>(length - mLength, 1 << 16)));
        mPosition = mLength;
        mSeekNeeded = true;
        while (mLength < length)
            if (!Write(zeros.data(), std::min<int64_t>(length - mLength, int64_t(zeros.size()))))
                return false;
        SetPosition(here);
    }
    mLength = length;
    if (mPosition > mLength)
        SetPosition(mLength);
    return true;
}

// The record's length and, after writing, its modification date.
bool VFile::SaveLength() {
    VFSVolume &core = mVolume->Core();
    double stored = -1;
    if (!core.Seek(mHandle, 0) || !core.ReadDouble(mHandle, stored))
        return false;
    mSeekNeeded = true;
    bool ok = true;
    if (stored != double(mLength))
        ok = core.Seek(mHandle, 0) && core.WriteDouble(mHandle, double(mLength));
    if (mWritten && ok) {
        ok =
            core.Seek(mHandle, kModifiedOffset) && core.WriteDouble(mHandle, mVolume->NowSeconds());
        mWritten = !ok;
    }
    return ok;
}

bool VFile::Flush() {
    if (!mVolume)
        return false;
    return SaveLength() && mVolume->Flush();
}

bool VFile::Close() {
    if (!mVolume)
        return false;
    const bool ok = mVolume->Core().IsReadOnly() || SaveLength();
    mVolume->Core().CloseFile(mHandle);
    mVolume = nullptr;
    mHandle = -1;
    mOwner.reset(); // last: the owner may hold the volume itself
    return ok;
}

} // namespace kelp::volume
