#include "shapes/rotated_drawing.h"

#include "bitmaps/pixel_ops.h"
#include "graphics/graphics_gtk.h"
#include "pictures/drawable.h"

#include <algorithm>
#include <cmath>

namespace kelp {

RotatedDrawing::RotatedDrawing(Graphics &target, double radius)
    : mTarget(dynamic_cast<GraphicsGTK *>(&target)) {
    if (!mTarget || !std::isfinite(radius) || !target.Target() || !target.Target()->Drawable())
        return;
    mSide = std::min(kMaxSide, 2 * static_cast<int32_t>(std::ceil(std::max(radius, 1.0))) + 4);
    mImage = new DrawablePane(mSide, mSide, 32);
    mMask = new DrawablePane(mSide, mSide, 32);
}

RotatedDrawing::~RotatedDrawing() {
    if (mImage)
        mImage->Release();
    if (mMask)
        mMask->Release();
}

void RotatedDrawing::Paint(
    const std::function<void(Graphics &g, int32_t cx, int32_t cy, bool mask)> &paint) {
    if (!mImage)
        return;
    for (DrawablePane *store : {mImage, mMask}) {
        GraphicsGTK g(store->Target());
        store->Target()->PrepareForDrawing();
        paint(g, mSide / 2, mSide / 2, store == mMask);
    }
}

void RotatedDrawing::Place(double x, double y, double rotation) {
    if (!mImage || !std::isfinite(x) || !std::isfinite(y) || !std::isfinite(rotation))
        return;
    auto *image = new DrawablePane(mSide, mSide, 32);
    auto *mask = new DrawablePane(mSide, mSide, 32);
    // The shears turn counter-clockwise for a positive angle.
    if (PixMapRotate(mImage, image, -rotation, kRotateFillWhite) &&
        PixMapRotate(mMask, mask, -rotation, kRotateFillWhite)) {
        image->mMask = mask;
        mask->AddRef();
        image->ContentChanged();
        const int32_t left = static_cast<int32_t>(std::floor(x + 0.5)) - mSide / 2;
        const int32_t top = static_cast<int32_t>(std::floor(y + 0.5)) - mSide / 2;
        image->CopyRect(*mTarget, RectFromXYWH(0, 0, mSide, mSide),
                        RectFromXYWH(left, top, mSide, mSide), false);
    }
    image->Release();
    mask->Release();
}

} // namespace kelp
