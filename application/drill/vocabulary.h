// The pools' sizes and a few read-outs of the vocabulary tables, beside the
// pickers declared in bank/problem_kit.h.
#pragma once

#include <cstdint>

namespace sumbrook {

inline constexpr int32_t kNameCount = 61; // asNames 0 to 60
inline constexpr int32_t kItemCount = 51; // asItems 0 to 50

// Fills asNames and asItems in index order.
void mFillPools();

// The price range of item `index` (min to max - 1 can come).
int32_t ItemMin(int32_t index);
int32_t ItemMax(int32_t index);
// Items that read as the same thing share a kind ("a pencil", "pencils");
// any other item is a kind of its own, its index.
int32_t ItemKind(int32_t index);
// The gender tag of name `index`: true for "male".
bool NameIsMale(int32_t index);

} // namespace sumbrook
