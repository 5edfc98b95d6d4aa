#include "stream_classes/binary_data.h"

#include "stream_classes/text_output.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace kelp {
namespace {

// Bytes read without an encoding are just bytes: no encoding is claimed.
uint32_t Tag(uint32_t encoding) {
    return encoding == kEncodingNotGiven ? kEncodingUnknown : encoding;
}

} // namespace

bool BinaryData::ReadOrdered(void *value, int count) {
    if (!mMechanism)
        return false;
    auto *bytes = static_cast<uint8_t *>(value);
    int64_t got = 0;
    if (!mMechanism->Read(bytes, count, &got) || got != count)
        return false;
    if (!mLittleEndian)
        std::reverse(bytes, bytes + count);
    return true;
}

void BinaryData::WriteOrdered(const void *value, int count) {
    if (!mMechanism)
        return;
    uint8_t bytes[8];
    std::memcpy(bytes, value, static_cast<size_t>(count));
    if (!mLittleEndian)
        std::reverse(bytes, bytes + count);
    mMechanism->Write(bytes, count);
}

int32_t BinaryData::ReadByte() {
    uint8_t value = 0;
    return ReadOrdered(&value, 1) ? value : 0;
}

int32_t BinaryData::ReadShort() {
    int16_t value = 0;
    return ReadOrdered(&value, 2) ? value : 0;
}

int32_t BinaryData::ReadLong() {
    int32_t value = 0;
    return ReadOrdered(&value, 4) ? value : 0;
}

double BinaryData::ReadSingle() {
    float value = 0;
    return ReadOrdered(&value, 4) ? value : 0.0;
}

double BinaryData::ReadDouble() {
    double value = 0;
    return ReadOrdered(&value, 8) ? value : 0.0;
}

bool BinaryData::ReadBoolean() {
    uint8_t value = 0;
    return ReadOrdered(&value, 1) && value != 0;
}

string BinaryData::ReadPString(uint32_t encoding) {
    uint8_t length = 0;
    if (!ReadOrdered(&length, 1) || length == 0)
        return string();
    char bytes[255];
    int64_t got = 0;
    mMechanism->Read(bytes, length, &got);
    return string::FromBytes(bytes, static_cast<long>(got), Tag(encoding));
}

string BinaryData::Read(int64_t count, uint32_t encoding) {
    if (!mMechanism)
        return string();
    // Cutting to what is left keeps a huge count from a huge allocation.
    int64_t left = mMechanism->GetLength() - mMechanism->GetPosition();
    if (count > left)
        count = left;
    if (count <= 0)
        return string();
    std::string bytes(static_cast<size_t>(count), '\0');
    int64_t got = 0;
    mMechanism->Read(bytes.data(), count, &got);
    return string::FromBytes(bytes.data(), static_cast<long>(got), Tag(encoding));
}

void BinaryData::WriteByte(int32_t value) {
    uint8_t byte = static_cast<uint8_t>(value);
    WriteOrdered(&byte, 1);
}

void BinaryData::WriteShort(int32_t value) {
    int16_t v = static_cast<int16_t>(value);
    WriteOrdered(&v, 2);
}

void BinaryData::WriteLong(int32_t value) { WriteOrdered(&value, 4); }

void BinaryData::WriteSingle(double value) {
    float v = static_cast<float>(value);
    WriteOrdered(&v, 4);
}

void BinaryData::WriteDouble(double value) { WriteOrdered(&value, 8); }

void BinaryData::WriteBoolean(bool value) { WriteByte(value ? 1 : 0); }

void BinaryData::WritePString(const string &text) {
    if (!mMechanism)
        return;
    long length = std::min(text.Length(), 255L);
    WriteByte(static_cast<int32_t>(length));
    if (length > 0)
        mMechanism->Write(text.CString(), length);
}

void BinaryData::Write(const string &text) {
    if (mMechanism && text.Length() > 0)
        mMechanism->Write(text.CString(), text.Length());
}

void BinaryData::Close() {
    if (!mMechanism)
        return;
    mStoredError = CloseMechanism(*mMechanism);
    mMechanism.reset();
}

} // namespace kelp
