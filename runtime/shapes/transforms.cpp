#include "shapes/transforms.h"

#include <cmath>

namespace kelp {
namespace {

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

} // namespace

void MoveShape(ShapeRecord &s, double dx, double dy, int32_t depth) {
    if (!std::isfinite(dx) || !std::isfinite(dy) || depth < 0)
        return;
    s.x += dx;
    s.y += dy;
    if (s.tag == kTagCurve)
        EachCurvePoint(s, [&](double &x, double &y) { x += dx, y += dy; });
    if (IsGroupTag(s.tag))
        EachMember(s, [&](ShapeRecord &m) { MoveShape(m, dx, dy, depth - 1); });
}

void ScaleShape(ShapeRecord &s, double factor, int32_t depth) {
    if (!(factor > 0) || !std::isfinite(factor) || depth < 0)
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
            MoveShape(m, (m.x - cx) * (factor - 1), (m.y - cy) * (factor - 1), depth - 1);
            ScaleShape(m, factor, depth - 1);
        });
}

void RotateShape(ShapeRecord &s, double delta, int32_t depth) {
    if (!std::isfinite(delta) || depth < 0)
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
            double x = m.x, y = m.y;
            turn(x, y);
            MoveShape(m, x - m.x, y - m.y, depth - 1);
            RotateShape(m, delta, depth - 1);
        });
}

} // namespace kelp
