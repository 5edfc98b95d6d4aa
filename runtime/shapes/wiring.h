#pragma once
#include "kelp/records.h"

#include <cstdint>

namespace kelp {
// The shape classes; the pictures' vector part; System's window pictures.
void WireShapes();

// A new picture of a window's content: `fill`, then the backdrop.
RuntimeObject *MakeWindowPicture(int32_t width, int32_t height, RuntimeObject *backDrop,
                                 bool stretch, uint32_t fill);
} // namespace kelp
