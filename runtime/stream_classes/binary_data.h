#pragma once
// The engine of BinaryStream: typed reads and writes on one mechanism in a
// chosen byte order.  A new stream is big-endian: multi-byte values are
// byte-reversed on this little-endian processor unless LittleEndian is set.
//
// Failure channel: none raises.  A short read gives 0 (false, ""), a closed
// stream does nothing and gives the neutral value; the mechanism's error
// code shows through LastError().
#include "stream_classes/stream_encoding.h"
#include "streams/random_access_mechanism.h"
#include "strings/kstring.h"

#include <memory>

namespace kelp {

class BinaryData {
public:
    explicit BinaryData(std::unique_ptr<RandomAccessMechanism> mechanism)
        : mMechanism(std::move(mechanism)) {}
    ~BinaryData() { Close(); }
    BinaryData(const BinaryData &) = delete;
    BinaryData &operator=(const BinaryData &) = delete;

    int32_t ReadByte();  // 0..255
    int32_t ReadShort(); // signed 16-bit
    int32_t ReadLong();
    double ReadSingle();
    double ReadDouble();
    bool ReadBoolean();
    // One length byte, then up to that many bytes.
    string ReadPString(uint32_t encoding);
    // Cut to what is left; 0 or less gives "".
    string Read(int64_t count, uint32_t encoding);

    void WriteByte(int32_t value);
    void WriteShort(int32_t value);
    void WriteLong(int32_t value);
    void WriteSingle(double value);
    void WriteDouble(double value);
    void WriteBoolean(bool value);
    // Length byte then text; 256 bytes or more write 255 and the first 255.
    void WritePString(const string &text);
    void Write(const string &text);

    bool IsEOF() { return mMechanism ? mMechanism->IsEOF() : false; }
    int64_t Length() { return mMechanism ? mMechanism->GetLength() : 0; }
    void SetLength(int64_t length) {
        if (mMechanism)
            mMechanism->SetLength(length);
    }
    int64_t Position() { return mMechanism ? mMechanism->GetPosition() : 0; }
    void SetPosition(int64_t position) {
        if (mMechanism)
            mMechanism->SetPosition(position);
    }
    void Flush() {
        if (mMechanism)
            mMechanism->Flush();
    }
    void Close();
    bool IsOpen() const { return mMechanism != nullptr; }
    int32_t LastError() const { return mMechanism ? mMechanism->LastError() : mStoredError; }

    bool mLittleEndian = false; // multi-byte values as stored (true) or reversed

private:
    // Reads exactly `count` bytes in the stream's order; false on a short read.
    bool ReadOrdered(void *value, int count);
    void WriteOrdered(const void *value, int count);

    std::unique_ptr<RandomAccessMechanism> mMechanism; // null once closed
    int32_t mStoredError = 0;
};

} // namespace kelp
