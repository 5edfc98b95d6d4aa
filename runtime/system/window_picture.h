#pragma once
// System._DrawWindow makes a Picture, which belongs to a layer above the
// System object; that layer supplies the maker.
#include "kelp/records.h"

#include <cstdint>

namespace kelp {

// A new picture of width x height filled with `fill` (0xRRGGBB), the
// backdrop drawn at its top left or stretched over it; the caller's
// reference, or null.
using WindowPictureMaker = RuntimeObject *(*)(int32_t width, int32_t height,
                                              RuntimeObject *backDrop, bool stretch, uint32_t fill);
void SetWindowPictureMaker(WindowPictureMaker maker);

} // namespace kelp
