#pragma once
// Every byte the runtime reads or writes goes through one abstract store: a
// seekable run of bytes with read, write and length.  Files, files inside a
// virtual volume, strings, memory blocks and growing memory handles are all
// mechanisms, so the streams, the volumes and the database never care which
// one they stand on.
//
// Failure channel: operations answer false (or a neutral value) and leave an
// errno or the mechanism's own code in `LastError()`; none raises.
// Positions and lengths are 64-bit so that files past 4 GB work.
#include <cstddef>
#include <cstdint>

namespace kelp {

// A mechanism's own error code for a write to a read-only store.
constexpr int32_t kMechanismReadOnly = 100;

class RandomAccessMechanism {
public:
    RandomAccessMechanism() = default;
    virtual ~RandomAccessMechanism() = default;
    RandomAccessMechanism(const RandomAccessMechanism &) = delete;
    RandomAccessMechanism &operator=(const RandomAccessMechanism &) = delete;

    // True on success; `outRead` (may be null) gets the count obtained.
    virtual bool Read(void *buffer, int64_t count, int64_t *outRead) = 0;
    // True when every byte was written.
    virtual bool Write(const void *buffer, int64_t count) = 0;
    virtual bool Close() = 0;
    // (Named so, because the C library takes the plain name as a macro.)
    virtual bool IsEOF() = 0;
    virtual void SetPosition(int64_t offset) = 0;
    virtual int64_t GetLength() = 0;
    virtual bool SetLength(int64_t length) = 0;
    virtual int64_t GetPosition() = 0;
    virtual bool Flush() { return true; }
    void SetSwapped() { mSwap = true; }
    void SetNative() { mSwap = false; }

    int32_t LastError() const { return mLastError; }
    void SetLastError(int32_t code) { mLastError = code; }
    bool Swapped() const { return mSwap; }
    void SetSwapFloats(bool swap) { mSwapFloats = swap; }

    // Typed helpers on Read and Write.  Multi-byte values are byte-reversed
    // while the mechanism is swapped (doubles only when floats swap too);
    // the readers answer true only when the full width was read.
    bool WriteByte(uint8_t value);
    bool WriteShort(uint16_t value);
    bool WriteLong(uint32_t value);
    bool WriteDouble(double value);
    bool ReadByte(uint8_t &value);
    bool ReadShort(uint16_t &value);
    bool ReadLong(uint32_t &value);
    bool ReadDouble(double &value);

    // The compact integer: six bits and a sign in the first byte, seven bits
    // in each following byte, bit 7 saying that more follow.
    bool WriteCompactInteger(int32_t value);
    bool ReadCompactInteger(int32_t &value);

protected:
    int32_t mLastError = 0;   // errno or the mechanism's own code
    bool mSwap = false;       // byte-reverse multi-byte values
    bool mSwapFloats = false; // reverse doubles too (only with mSwap)
};

// A read-only view of a memory range that someone else owns.
class FilePtr : public RandomAccessMechanism {
public:
    FilePtr(const void *base, int64_t length)
        : mBase(static_cast<const uint8_t *>(base)), mLength(length < 0 ? 0 : length) {}
    bool Read(void *buffer, int64_t count, int64_t *outRead) override;
    // A view has nowhere to put bytes: both are refused with the read-only code.
    bool Write(const void *buffer, int64_t count) override;
    bool SetLength(int64_t length) override;
    bool Close() override { return true; }
    bool IsEOF() override { return mPosition >= mLength; }
    void SetPosition(int64_t offset) override;
    int64_t GetLength() override { return mLength; }
    int64_t GetPosition() override { return mPosition; }

protected:
    const uint8_t *mBase;  // first byte of the view
    int64_t mPosition = 0; // 0..mLength
    int64_t mLength;       // bytes in the view
};

} // namespace kelp
