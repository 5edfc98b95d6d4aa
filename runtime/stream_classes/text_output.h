#pragma once
// The writing side of a text stream: bytes go out as they are, no
// conversion; WriteLine adds the delimiter (the platform's "\n" while
// Delimiter is empty), converted to the line's encoding when both are known.
//
// Failure channel: the mechanism's answer is not looked at; its error code
// shows through LastError().  A closed stream does nothing.
#include "streams/random_access_mechanism.h"
#include "strings/kstring.h"

#include <memory>

namespace kelp {

class TextOutput {
public:
    explicit TextOutput(std::unique_ptr<RandomAccessMechanism> mechanism)
        : mMechanism(std::move(mechanism)) {}
    ~TextOutput() { Close(); }
    TextOutput(const TextOutput &) = delete;
    TextOutput &operator=(const TextOutput &) = delete;

    void Write(const string &text);
    void WriteLine(const string &text);
    void Flush();
    void Close();
    bool IsOpen() const { return mMechanism != nullptr; }
    int32_t LastError() const { return mMechanism ? mMechanism->LastError() : mStoredError; }
    RandomAccessMechanism *Mechanism() { return mMechanism.get(); }

    string mDelimiter; // empty: the platform's line end

private:
    std::unique_ptr<RandomAccessMechanism> mMechanism; // null once closed
    int32_t mStoredError = 0;
};

// Closes a mechanism and answers its last error code; used by every stream.
int32_t CloseMechanism(RandomAccessMechanism &mechanism);

} // namespace kelp
