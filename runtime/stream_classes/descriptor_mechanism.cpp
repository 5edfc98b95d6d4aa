#include "stream_classes/descriptor_mechanism.h"

#include <cerrno>
#include <unistd.h>

namespace kelp {

bool DescriptorMechanism::Read(void *buffer, int64_t count, int64_t *outRead) {
    if (outRead)
        *outRead = 0;
    if (count <= 0)
        return true;
    if (mDescriptor < 0 || !buffer) {
        mLastError = EBADF;
        return false;
    }
    ssize_t got;
    do
        got = ::read(mDescriptor, buffer, static_cast<size_t>(count));
    while (got < 0 && errno == EINTR);
    if (got < 0) {
        mLastError = errno;
        return false;
    }
    mAtEnd = got == 0;
    mPosition += got;
    if (outRead)
        *outRead = got;
    return got > 0;
}

bool DescriptorMechanism::Write(const void *buffer, int64_t count) {
    if (mDescriptor < 0) {
        mLastError = EBADF;
        return false;
    }
    const auto *bytes = static_cast<const char *>(buffer);
    // A pipe may take fewer bytes than asked; the rest follow.
    while (bytes && count > 0) {
        const ssize_t put = ::write(mDescriptor, bytes, static_cast<size_t>(count));
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0) {
            mLastError = put < 0 ? errno : EIO;
            return false;
        }
        bytes += put;
        count -= put;
        mPosition += put;
    }
    return true;
}

bool DescriptorMechanism::Close() {
    mDescriptor = -1;
    return true;
}

bool DescriptorMechanism::SetLength(int64_t) {
    mLastError = ESPIPE;
    return false;
}

} // namespace kelp
