#pragma once
// Byte order of the volume format.  Header integers, the metadata counter
// and the saved block map are big-endian in every version; the doubles of
// the block headers are little-endian only in version 1; numbers inside
// file content (entry records) are big-endian only from version 3 on.
#include <cstdint>
#include <cstring>

namespace kelp::volume {

inline uint32_t GetBig32(const uint8_t *p) {
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}

inline void PutBig32(uint8_t *p, uint32_t v) {
    p[0] = uint8_t(v >> 24);
    p[1] = uint8_t(v >> 16);
    p[2] = uint8_t(v >> 8);
    p[3] = uint8_t(v);
}

inline uint16_t GetWord16(const uint8_t *p, bool big) {
    return big ? uint16_t(p[0] << 8 | p[1]) : uint16_t(p[1] << 8 | p[0]);
}

inline void PutWord16(uint8_t *p, uint16_t v, bool big) {
    p[big ? 0 : 1] = uint8_t(v >> 8);
    p[big ? 1 : 0] = uint8_t(v);
}

inline uint32_t GetWord32(const uint8_t *p, bool big) {
    return big ? GetBig32(p)
               : uint32_t(p[3]) << 24 | uint32_t(p[2]) << 16 | uint32_t(p[1]) << 8 | p[0];
}

inline void PutWord32(uint8_t *p, uint32_t v, bool big) {
    if (big)
        return PutBig32(p, v);
    for (int i = 0; i < 4; ++i)
        p[i] = uint8_t(v >> (8 * i));
}

inline double GetDouble(const uint8_t *p, bool big) {
    uint64_t bits = 0;
    for (int i = 0; i < 8; ++i)
        bits |= uint64_t(p[big ? i : 7 - i]) << (8 * (7 - i));
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

inline void PutDouble(uint8_t *p, double value, bool big) {
    uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    for (int i = 0; i < 8; ++i)
        p[big ? i : 7 - i] = uint8_t(bits >> (8 * (7 - i)));
}

} // namespace kelp::volume
