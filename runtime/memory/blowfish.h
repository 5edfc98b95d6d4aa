#pragma once
// The cipher behind the language's _Blowfish class: 16 rounds on 64-bit
// blocks split into two 32-bit halves.
#include <cstddef>
#include <cstdint>

namespace kelp {

struct BlowfishKey {
    uint32_t p[18];
    uint32_t s[4][256];
};

// The key schedule of `length` bytes of key, taken cyclically.  `length`
// must be at least 1.
void BlowfishSchedule(BlowfishKey &key, const uint8_t *bytes, size_t length);
void BlowfishEncipherHalves(const BlowfishKey &key, uint32_t &xl, uint32_t &xr);
void BlowfishDecipherHalves(const BlowfishKey &key, uint32_t &xl, uint32_t &xr);

struct ObjectDefinition;
ObjectDefinition *BlowfishDefinition();

} // namespace kelp
