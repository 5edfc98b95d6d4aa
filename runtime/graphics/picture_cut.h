#pragma once
// The placement of a picture drawn with DrawPicture: defaults filled in and
// the source cut to the picture's own pixels, the destination shrinking with
// it so that what remains keeps its scale.
#include <cstdint>

namespace kelp {

// The value the language passes for "use the picture's (or the destination's) size".
inline constexpr int32_t kPictureSizeDefault = -10000;

struct PictureCut {
    int32_t x = 0, y = 0; // destination
    int32_t destWidth = kPictureSizeDefault, destHeight = kPictureSizeDefault;
    int32_t sourceX = 0, sourceY = 0;
    int32_t sourceWidth = kPictureSizeDefault, sourceHeight = kPictureSizeDefault;
};

// Fills in the defaults for a picture of storeWidth by storeHeight and cuts
// the source to it.  False when nothing is left to draw.
bool CutPictureToStore(PictureCut &cut, int32_t storeWidth, int32_t storeHeight);

} // namespace kelp
