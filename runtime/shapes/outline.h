#pragma once
// The geometry of shapes, with no toolkit: outlines as point lists in the
// units of the target Graphics, and the inside test.  A shape's points are
// made around (0, 0), turned by its Rotation, multiplied by its Scale and
// moved to its X, Y.  Counts are capped (1,024 for round shapes, 512 for
// curves) so that a huge Scale can't make an unbounded polygon.
#include "shapes/shape_record.h"

#include <cstdint>
#include <vector>

namespace kelp {

struct PointD {
    double x, y;
};

constexpr int32_t kMaxRoundSegments = 1024;
constexpr int32_t kMaxCurveSegments = 512;
// Rotations smaller than this are taken as none.
constexpr double kRotationEpsilon = 0.00001;

// A local point of the shape in world units.
PointD ToWorld(const ShapeRecord &s, PointD local);

// The automatic segment count of an oval of the shape's size and scale.
int32_t AutomaticRoundCount(const ShapeRecord &s);
// An angle in [0, 2 pi); NaN stays NaN.
double ReduceAngle(double a);

// The closed outline of a rect, round rect, oval or arc (whose last point
// is its centre), in world units, into `out` (cleared first).
void ClosedOutline(const ShapeRecord &s, std::vector<PointD> &out);
// The points of a curve from its start to its end.
void CurvePoints(const ShapeRecord &s, std::vector<PointD> &out);

// The inside test of a shape with a size; false for any other.
bool ShapeContains(const ShapeRecord &s, double x, double y);

} // namespace kelp
