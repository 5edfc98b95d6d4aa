#pragma once
// A mechanism on one of the process's own descriptors (standard input,
// output, error), read and written as they come: no seeking, no length.
// The descriptor stays open when the mechanism closes, as other code of the
// process writes to it too.
//
// Failure channel: answers false with the errno in LastError().
#include "streams/random_access_mechanism.h"

namespace kelp {

class DescriptorMechanism : public RandomAccessMechanism {
public:
    explicit DescriptorMechanism(int descriptor) : mDescriptor(descriptor) {}

    bool Read(void *buffer, int64_t count, int64_t *outRead) override;
    bool Write(const void *buffer, int64_t count) override;
    bool Close() override;
    // True once a read found the end (a closed pipe, end of file, ^D).
    bool IsEOF() override { return mAtEnd || mDescriptor < 0; }
    void SetPosition(int64_t) override {}
    int64_t GetLength() override { return -1; }
    bool SetLength(int64_t) override;
    // Bytes read or written so far.
    int64_t GetPosition() override { return mPosition; }

private:
    int mDescriptor;       // -1 once closed
    bool mAtEnd = false;   // a read answered 0 bytes
    int64_t mPosition = 0; // bytes passed
};

} // namespace kelp
