#pragma once
// Drawing that GDK can't turn (text, pictures) turned all the same: it is
// painted into a square offscreen store around the square's centre, once in
// its colours and once as a mask, both stores are turned by shears, and the
// result is copied onto the target through the mask.  Edge pixels of the
// turned mask are grey, so the copy blends them.
//
// Only a GraphicsGTK target can take the masked copy; on any other the
// drawing is left out.
#include "graphics/graphics_base.h"

#include <cstdint>
#include <functional>

namespace kelp {

class DrawablePane;
class GraphicsGTK;

class RotatedDrawing {
public:
    // A square big enough for anything within `radius` of its centre, held
    // to kMaxSide pixels so that a huge text can't take unbounded memory.
    static constexpr int32_t kMaxSide = 1500;

    RotatedDrawing(Graphics &target, double radius);
    ~RotatedDrawing();
    RotatedDrawing(const RotatedDrawing &) = delete;
    RotatedDrawing &operator=(const RotatedDrawing &) = delete;

    // Calls `paint` twice on a white square: for the picture (mask false) and
    // for the mask (mask true: draw in black whatever must show).  (cx, cy)
    // is the square's centre, about which the drawing turns.
    void Paint(const std::function<void(Graphics &g, int32_t cx, int32_t cy, bool mask)> &paint);
    // Turns both by `rotation` radians, clockwise on the screen, and copies
    // the result onto the target with the centre at (x, y).
    void Place(double x, double y, double rotation);

private:
    GraphicsGTK *mTarget;
    int32_t mSide = 0;
    DrawablePane *mImage = nullptr, *mMask = nullptr; // owned references
};

} // namespace kelp
