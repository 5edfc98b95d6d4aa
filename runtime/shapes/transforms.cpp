#include "shapes/transforms.h"

#include <cmath>
#include <unordered_set>

namespace kelp {
namespace {

// The shapes one change has reached: each moves once, however often it is
// held (a group may hold a shape twice, or itself).
using Reached = std::unordered_set<const ShapeRecord *>;

bool FirstVisit(Reached &reached, const ShapeRecord &s) { return reached.insert(&s).second; }

// Applies `f` to a curve's end and control points.
template <typename F> void EachCurvePoint(ShapeRecord &s, F f) {
    f(s.x2, s.y2);
    for (int i = 0; i < 2; ++i)
        f(s.controlX[i], s.controlY[i]);
}

template <typename F> void EachMember(ShapeRecord &s, F f) {
    for (int32_t i = 0; i < s.memberCount; ++i)
        if (RuntimeObject *member = s.members[i])
            f(*Shape(member));
}

void Move(ShapeRecord &s, double dx, double dy, int32_t depth, Reached &reached) {
    if (depth < 0 || !FirstVisit(reached, s))
        return;
    s.x += dx;
    s.y += dy;
    if (s.tag == kTagCurve)
        EachCurvePoint(s, [&](double &x, double &y) { x += dx, y += dy; });
    if (IsGroupTag(s.tag))
        EachMember(s, [&](ShapeRecord &m) { Move(m, dx, dy, depth - 1, reached); });
}

// Each member's centre goes to c + (centre - c) * factor, its scale is
// multiplied by factor: so Move before Scale, each reaching a shape once.
void Scale(ShapeRecord &s, double factor, int32_t depth, Reached &reached) {
    if (depth < 0 || !FirstVisit(reached, s))
        return;
    s.scale *= factor;
    const double cx = s.x, cy = s.y;
    if (s.tag == kTagCurve)
        EachCurvePoint(s, [&](double &x, double &y) {
            x = cx + (x - cx) * factor;
            y = cy + (y - cy) * factor;
        });
    if (IsGroupTag(s.tag))
        EachMember(s, [&](ShapeRecord &m) {
            if (reached.count(&m))
                return;
            Reached moved;
            Move(m, (m.x - cx) * (factor - 1), (m.y - cy) * (factor - 1), depth - 1, moved);
            Scale(m, factor, depth - 1, reached);
        });
}

void Rotate(ShapeRecord &s, double delta, int32_t depth, Reached &reached) {
    if (depth < 0 || !FirstVisit(reached, s))
        return;
    s.rotation += delta;
    const double cx = s.x, cy = s.y, c = std::cos(delta), n = std::sin(delta);
    auto turn = [&](double &x, double &y) {
        const double rx = x - cx, ry = y - cy;
        x = cx + rx * c - ry * n;
        y = cy + rx * n + ry * c;
    };
    if (s.tag == kTagCurve)
        EachCurvePoint(s, turn);
    if (IsGroupTag(s.tag))
        EachMember(s, [&](ShapeRecord &m) {
            if (reached.count(&m))
                return;
            double x = m.x, y = m.y;
            turn(x, y);
            Reached moved;
            Move(m, x - m.x, y - m.y, depth - 1, moved);
            Rotate(m, delta, depth - 1, reached);
        });
}

} // namespace

void MoveShape(ShapeRecord &s, double dx, double dy, int32_t depth) {
    if (!std::isfinite(dx) || !std::isfinite(dy))
        return;
    Reached reached;
    Move(s, dx, dy, depth, reached);
}

void ScaleShape(ShapeRecord &s, double factor, int32_t depth) {
    if (!(factor > 0) || !std::isfinite(factor))
        return;
    Reached reached;
    Scale(s, factor, depth, reached);
}

void RotateShape(ShapeRecord &s, double delta, int32_t depth) {
    if (!std::isfinite(delta))
        return;
    Reached reached;
    Rotate(s, delta, depth, reached);
}

} // namespace kelp
