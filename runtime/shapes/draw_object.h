#pragma once
// The vector part of a picture drawn where DrawPicture puts the picture:
// clipped to the destination and moved to it.
#include "graphics/graphics_base.h"

#include "kelp/records.h"

namespace kelp {

struct PictureCut;

void DrawVectorPicture(Graphics &g, RuntimeObject *group, const PictureCut &cut, int32_t width,
                       int32_t height);

} // namespace kelp
