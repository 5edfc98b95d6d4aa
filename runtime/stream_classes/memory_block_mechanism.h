#pragma once
// The mechanism under a BinaryStream made on a MemoryBlock.  A sized block
// bounds reads, grows under writes past its end and is trimmed to what was
// written when the stream closes; an unsized view is read and written
// wherever it points, as the view itself is.
//
// Failure channel: answers false with an errno in LastError(); a block
// that can't grow raises OutOfMemoryException as every allocation of a
// block does.
#include "kelp/records.h"
#include "streams/random_access_mechanism.h"

namespace kelp {

class MemoryBlockMechanism : public RandomAccessMechanism {
public:
    // Takes a reference on `block`, which must not be nil.
    explicit MemoryBlockMechanism(MemoryBlockObject *block);
    ~MemoryBlockMechanism() override { Close(); }

    bool Read(void *buffer, int64_t count, int64_t *outRead) override;
    bool Write(const void *buffer, int64_t count) override;
    // Trims a sized block to the length and drops the reference.
    bool Close() override;
    bool IsEOF() override;
    void SetPosition(int64_t offset) override;
    // -1 for an unsized view.
    int64_t GetLength() override { return SizeKnown() ? mLength : -1; }
    bool SetLength(int64_t length) override;
    int64_t GetPosition() override { return mPosition; }

private:
    bool SizeKnown() const { return mBlock && mBlock->mSizeKnown; }
    // Makes a sized block hold at least `end` bytes, with slack.
    bool Grow(int64_t end);

    MemoryBlockObject *mBlock; // counted reference; null once closed
    int64_t mPosition = 0;     // 0..the block's size when sized
    int64_t mLength;           // bytes written or there at the start
};

} // namespace kelp
