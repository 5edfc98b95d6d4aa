#pragma once
// The reading side of a text stream: a mechanism, a 1,024-byte read buffer
// and the encoding its texts are tagged with.  Texts are never converted,
// only tagged; a line ends at CR, LF or CRLF, also when the CR is the last
// byte of one buffer fill and the LF the first of the next.  With UTF-16 the
// scan goes by 16-bit units in machine order.
//
// Failure channel: none raises.  Reads at the end and on a closed stream give
// the empty string; the mechanism's error shows through LastError().
#include "stream_classes/stream_encoding.h"
#include "streams/random_access_mechanism.h"
#include "strings/kstring.h"

#include <cstdint>
#include <memory>

namespace kelp {

class TextInput {
public:
    // Large enough that the C stream underneath hands reads straight to the
    // system instead of copying through its own buffer, and that a fill
    // holds hundreds of lines; no rule depends on the size.
    static constexpr int kBufferSize = 64 * 1024;

    // `bufferSize` below the default is for tests that put line ends at a
    // fill's edge with few bytes.
    explicit TextInput(std::unique_ptr<RandomAccessMechanism> mechanism,
                       int32_t bufferSize = kBufferSize)
        : mMechanism(std::move(mechanism)), mBufferSize(bufferSize < 2 ? 2 : bufferSize),
          mBufferStore(new uint8_t[static_cast<size_t>(mBufferSize)]), mBuffer(mBufferStore.get()) {
    }
    ~TextInput() { Close(); }
    TextInput(const TextInput &) = delete;
    TextInput &operator=(const TextInput &) = delete;

    // Up to `count` bytes; fewer at the end.  `encoding` 0 means the stream's.
    string Read(int64_t count, uint32_t encoding = kEncodingNotGiven);
    // The next line without its line end; the last line needs none.
    string ReadLine(uint32_t encoding = kEncodingNotGiven);
    // Everything from the stream position to the end.
    string ReadAll(uint32_t encoding = kEncodingNotGiven);

    // Buffer used up and mechanism at its end; false when closed.
    bool IsEOF();
    // Offset of the next byte the stream gives out.
    int64_t Position();
    // Negative means 0; refills the buffer from there.
    void SetPosition(int64_t position);
    // Closes and destroys the mechanism, keeping its error code.  Twice is harmless.
    void Close();
    bool IsOpen() const { return mMechanism != nullptr; }
    int32_t LastError() const { return mMechanism ? mMechanism->LastError() : mStoredError; }

    uint32_t mEncoding = kEncodingUTF8; // tag of texts read without an encoding

private:
    // Moves what is left unread to the front and reads more behind it.  False
    // when nothing came.
    bool Refill();
    uint32_t Effective(uint32_t encoding) const {
        return encoding == kEncodingNotGiven ? mEncoding : encoding;
    }
    string ReadLineBytes(uint32_t encoding);
    // Offset of the first CR or LF at or after the buffer position, or the fill.
    int32_t FindLineEnd();
    string ReadLineUnits(uint32_t encoding);

    std::unique_ptr<RandomAccessMechanism> mMechanism; // null once closed
    int32_t mStoredError = 0;                          // the code at Close
    int32_t mBufferPosition = 0;                       // next unread byte
    int32_t mBufferFill = 0;                           // bytes in mBuffer
    int32_t mBufferSize;                               // bytes mBuffer holds, 2 or more
    std::unique_ptr<uint8_t[]> mBufferStore;           // owns mBuffer
    uint8_t *mBuffer;
};

} // namespace kelp
