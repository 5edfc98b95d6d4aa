#pragma once
// The initial P-array and S-boxes of the Blowfish cipher.
#include <cstdint>

namespace kelp {
extern const uint32_t kBlowfishInitialP[18];
extern const uint32_t kBlowfishInitialS[4][256];
} // namespace kelp
