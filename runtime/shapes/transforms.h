#pragma once
// Moving, scaling and turning a shape as its setters do.  Groups carry no
// transform at draw time: a change to a group is applied to its members at
// once, each about the group's centre, and a curve's end and control points
// (which are absolute) move with it.  Changes that are not finite, and a
// scale factor of 0 or below, are ignored.
#include "shapes/shape_record.h"

#include <cstdint>

namespace kelp {

// How deep a change reaches into nested groups (a group may hold itself).
constexpr int32_t kMaxCarryDepth = 128;

void MoveShape(ShapeRecord &s, double dx, double dy, int32_t depth);
// Scales by `factor` about the shape's own centre.
void ScaleShape(ShapeRecord &s, double factor, int32_t depth);
// Turns by `delta` radians about the shape's own centre.
void RotateShape(ShapeRecord &s, double delta, int32_t depth);

} // namespace kelp
