#include "stream_classes/text_input.h"

#include <bit>
#ifdef __SSE2__
#include <emmintrin.h>
#endif
#include <cstring>
#include <string>

namespace kelp {

bool TextInput::Refill() {
    int32_t rest = mBufferFill - mBufferPosition;
    if (rest > 0 && mBufferPosition > 0)
        std::memmove(mBuffer, mBuffer + mBufferPosition, static_cast<size_t>(rest));
    mBufferPosition = 0;
    mBufferFill = rest > 0 ? rest : 0;
    int64_t got = 0;
    mMechanism->Read(mBuffer + mBufferFill, mBufferSize - mBufferFill, &got);
    mBufferFill += static_cast<int32_t>(got);
    return got > 0;
}

string TextInput::Read(int64_t count, uint32_t encoding) {
    if (count <= 0 || !mMechanism)
        return string();
    std::string bytes;
    int64_t buffered = mBufferFill - mBufferPosition;
    int64_t fromBuffer = count < buffered ? count : buffered;
    bytes.reserve(static_cast<size_t>(count < (1 << 20) ? count : fromBuffer));
    bytes.append(reinterpret_cast<const char *>(mBuffer + mBufferPosition),
                 static_cast<size_t>(fromBuffer));
    mBufferPosition += static_cast<int32_t>(fromBuffer);
    if (fromBuffer < count) {
        mBufferPosition = mBufferFill = 0;
        // The rest comes straight from the mechanism, in pieces, so that a
        // huge count asks for no more memory than the file can give.
        int64_t wanted = count - fromBuffer;
        char chunk[65536];
        while (wanted > 0) {
            int64_t got = 0;
            int64_t ask = wanted < (int64_t)sizeof chunk ? wanted : (int64_t)sizeof chunk;
            if (!mMechanism->Read(chunk, ask, &got) || got <= 0)
                break;
            bytes.append(chunk, static_cast<size_t>(got));
            wanted -= got;
        }
    }
    return string::FromBytes(bytes.data(), static_cast<long>(bytes.size()), Effective(encoding));
}

string TextInput::ReadAll(uint32_t encoding) {
    if (!mMechanism)
        return string();
    return Read(mMechanism->GetLength() - Position(), encoding);
}

string TextInput::ReadLine(uint32_t encoding) {
    if (!mMechanism)
        return string();
    const uint32_t effective = Effective(encoding);
    return effective == kEncodingUTF16 ? ReadLineUnits(effective) : ReadLineBytes(effective);
}

int32_t TextInput::FindLineEnd() {
    // One pass finds either end, sixteen bytes at a time: two searches, one
    // per byte, would each start over on every short line.
    const uint8_t *p = mBuffer + mBufferPosition;
    const uint8_t *const end = mBuffer + mBufferFill;
#ifdef __SSE2__
    const __m128i lf = _mm_set1_epi8('\n'), cr = _mm_set1_epi8('\r');
    for (; end - p >= 16; p += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
        const int hits =
            _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(bytes, lf), _mm_cmpeq_epi8(bytes, cr)));
        if (hits)
            return static_cast<int32_t>(p - mBuffer) + std::countr_zero(unsigned(hits));
    }
#endif
    while (p < end && *p != '\n' && *p != '\r')
        ++p;
    return static_cast<int32_t>(p - mBuffer);
}

string TextInput::ReadLineBytes(uint32_t encoding) {
    std::string pieces; // used only when a line crosses a buffer fill
    for (;;) {
        const uint8_t *start = mBuffer + mBufferPosition;
        const uint8_t *end = mBuffer + mBufferFill;
        const uint8_t *at = mBuffer + FindLineEnd();
        if (at < end) {
            if (!pieces.empty())
                pieces.append(reinterpret_cast<const char *>(start), at - start);
            string line = pieces.empty()
                              ? string::FromBytes(start, at - start, encoding)
                              : string::FromBytes(pieces.data(), (long)pieces.size(), encoding);
            bool cr = *at == '\r';
            mBufferPosition = static_cast<int32_t>(at - mBuffer) + 1;
            if (cr) {
                if (mBufferPosition >= mBufferFill)
                    Refill();
                if (mBufferPosition < mBufferFill && mBuffer[mBufferPosition] == '\n')
                    ++mBufferPosition;
            }
            return line;
        }
        pieces.append(reinterpret_cast<const char *>(start), end - start);
        mBufferPosition = mBufferFill;
        // A read that brings nothing is the end: asking EOF first would
        // cost the file mechanism a length query per fill.
        if (!Refill())
            return string::FromBytes(pieces.data(), (long)pieces.size(), encoding);
    }
}

string TextInput::ReadLineUnits(uint32_t encoding) {
    std::string pieces;
    auto unitAt = [this](int32_t offset) {
        uint16_t unit;
        std::memcpy(&unit, mBuffer + offset, 2);
        return unit;
    };
    for (;;) {
        int32_t at = mBufferPosition;
        while (at + 1 < mBufferFill && unitAt(at) != 13 && unitAt(at) != 10)
            at += 2;
        pieces.append(reinterpret_cast<const char *>(mBuffer + mBufferPosition),
                      static_cast<size_t>(at - mBufferPosition));
        mBufferPosition = at;
        if (at + 1 < mBufferFill) {
            bool cr = unitAt(at) == 13;
            mBufferPosition = at + 2;
            if (cr) {
                if (mBufferPosition + 1 >= mBufferFill)
                    Refill();
                if (mBufferPosition + 1 < mBufferFill && unitAt(mBufferPosition) == 10)
                    mBufferPosition += 2;
            }
            break;
        }
        // Half a unit may be left: Refill keeps it in front of the next bytes.
        if (!Refill()) {
            // An odd byte at the very end belongs to the last line.
            pieces.append(reinterpret_cast<const char *>(mBuffer + mBufferPosition),
                          static_cast<size_t>(mBufferFill - mBufferPosition));
            mBufferPosition = mBufferFill;
            break;
        }
    }
    return string::FromBytes(pieces.data(), (long)pieces.size(), encoding);
}

bool TextInput::IsEOF() {
    if (!mMechanism)
        return false;
    // An empty buffer is refilled rather than the mechanism asked: a read
    // that brings nothing is the end, and costs no length query.
    return mBufferPosition >= mBufferFill && !Refill();
}

int64_t TextInput::Position() {
    if (!mMechanism)
        return 0;
    return mMechanism->GetPosition() - mBufferFill + mBufferPosition;
}

void TextInput::SetPosition(int64_t position) {
    if (!mMechanism)
        return;
    mMechanism->SetPosition(position < 0 ? 0 : position);
    mBufferPosition = mBufferFill = 0;
    Refill();
}

void TextInput::Close() {
    if (!mMechanism)
        return;
    mMechanism->Close();
    mStoredError = mMechanism->LastError();
    mMechanism.reset();
    mBufferPosition = mBufferFill = 0;
}

} // namespace kelp
