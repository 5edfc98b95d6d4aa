#include "graphics/picture_cut.h"

namespace kelp {

namespace {

// One axis: a negative source start cuts the destination's front; a source
// end past the picture cuts its back.  The destination keeps the scale.
bool CutAxis(int32_t &dest, int32_t &destSize, int32_t &source, int32_t &sourceSize,
             int32_t storeSize) {
    if (source < 0) {
        const int64_t cut = static_cast<int64_t>(-source) * destSize / sourceSize;
        destSize -= static_cast<int32_t>(cut);
        dest += static_cast<int32_t>(cut);
        sourceSize += source;
        source = 0;
    }
    if (sourceSize < 1 || destSize < 1)
        return false;
    if (static_cast<int64_t>(source) + sourceSize > storeSize) {
        const int32_t shorter = storeSize - source;
        if (shorter < 1)
            return false;
        destSize = static_cast<int32_t>(static_cast<int64_t>(destSize) * shorter / sourceSize);
        sourceSize = shorter;
    }
    return sourceSize >= 1 && destSize >= 1;
}

} // namespace

bool CutPictureToStore(PictureCut &c, int32_t storeWidth, int32_t storeHeight) {
    if (storeWidth < 1 || storeHeight < 1)
        return false;
    if (c.destWidth == kPictureSizeDefault)
        c.destWidth = storeWidth;
    if (c.destHeight == kPictureSizeDefault)
        c.destHeight = storeHeight;
    if (c.sourceWidth == kPictureSizeDefault)
        c.sourceWidth = c.destWidth;
    if (c.sourceHeight == kPictureSizeDefault)
        c.sourceHeight = c.destHeight;
    if (c.destWidth < 1 || c.sourceWidth < 1 || c.destHeight < 1 || c.sourceHeight < 1)
        return false;
    return CutAxis(c.x, c.destWidth, c.sourceX, c.sourceWidth, storeWidth) &&
           CutAxis(c.y, c.destHeight, c.sourceY, c.sourceHeight, storeHeight);
}

} // namespace kelp
