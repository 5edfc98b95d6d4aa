#pragma once
// VFile: the content of one file entry of a volume as a byte mechanism, so
// that streams read and write it as they would a file on disk.  Content
// position p is position 256 + p of the entry's VFS file.
//
// Failure channel: as every mechanism, false and a neutral value; nothing
// raises.  The length in the entry's record is brought up to date by Flush
// and Close.  Writing past the end fills the gap with zeros.
#include "streams/random_access_mechanism.h"

#include <cstdint>
#include <memory>

namespace kelp::volume {

class VHFSVolume;

class VFile : public RandomAccessMechanism {
public:
    VFile(VHFSVolume &volume, int16_t handle, int64_t length);
    ~VFile() override;

    // Something to keep alive while the file is open: the language object
    // that owns the volume.
    void SetOwner(std::shared_ptr<void> owner) { mOwner = std::move(owner); }

    bool Read(void *buffer, int64_t count, int64_t *outRead) override;
    bool Write(const void *buffer, int64_t count) override;
    bool Close() override;
    bool IsEOF() override { return mPosition >= mLength; }
    void SetPosition(int64_t offset) override;
    int64_t GetLength() override { return mLength; }
    // A longer file reads zeros up to its new end; a shorter one keeps its
    // blocks, as the format never gives blocks back from a file.
    bool SetLength(int64_t length) override;
    int64_t GetPosition() override { return mPosition; }
    bool Flush() override;

private:
    bool Seeked();
    bool SaveLength();

    VHFSVolume *mVolume;     // null once closed
    int16_t mHandle;         // VFS handle
    int64_t mPosition = 0;   // in the content
    int64_t mLength;         // of the content
    bool mSeekNeeded = true; // the VFS record isn't at mPosition yet
    bool mWritten = false;   // modification date is due
    std::shared_ptr<void> mOwner;
};

} // namespace kelp::volume
