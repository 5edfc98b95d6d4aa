#pragma once
// Little-endian words read from and written into byte buffers, one byte at a
// time: the image format, the resources and the binder all meet words that a
// damaged or foreign file may place off their alignment.
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kelp {

// Little-endian words.
inline uint32_t ReadU32(const uint8_t *p) {
    return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
}
inline uint64_t ReadU64(const uint8_t *p) { return ReadU32(p) | uint64_t(ReadU32(p + 4)) << 32; }
inline void WriteU32(uint8_t *p, uint32_t v) {
    for (int i = 0; i < 4; ++i)
        p[i] = uint8_t(v >> (8 * i));
}
inline void WriteU64(uint8_t *p, uint64_t v) {
    for (int i = 0; i < 8; ++i)
        p[i] = uint8_t(v >> (8 * i));
}
inline void AppendU32(std::vector<uint8_t> &out, uint32_t v) {
    for (int i = 0; i < 4; ++i)
        out.push_back(uint8_t(v >> (8 * i)));
}

} // namespace kelp
