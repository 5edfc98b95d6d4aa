#include "shapes/outline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kelp {
namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

// trunc(v) held to lo .. hi; NaN gives lo, so no conversion is undefined.
int32_t CountOf(double v, int32_t lo, int32_t hi) {
    if (!(v >= lo))
        return lo;
    if (v > hi)
        return hi;
    return static_cast<int32_t>(v);
}

// Corner sizes of a round rect, held below the rectangle's own size.
void CornerRadii(const ShapeRecord &s, double &rx, double &ry) {
    const double w = std::fabs(s.width), h = std::fabs(s.height);
    rx = std::clamp(s.cornerWidth, 0.0, std::max(0.0, w - 0.01)) / 2;
    ry = std::clamp(s.cornerHeight, 0.0, std::max(0.0, h - 0.01)) / 2;
}

void Ellipse(const ShapeRecord &s, double cx, double cy, double rx, double ry, double from,
             double sweep, int32_t steps, std::vector<PointD> &out) {
    for (int32_t i = 0; i <= steps; ++i) {
        const double a = from + sweep * i / steps;
        out.push_back(ToWorld(s, {cx + rx * std::cos(a), cy + ry * std::sin(a)}));
    }
}

} // namespace

double ReduceAngle(double a) {
    double r = std::fmod(a, kTwoPi);
    if (r < 0)
        r += kTwoPi;
    return r;
}

PointD ToWorld(const ShapeRecord &s, PointD p) {
    if (std::fabs(s.rotation) > kRotationEpsilon) {
        const double c = std::cos(s.rotation), n = std::sin(s.rotation);
        p = {p.x * c - p.y * n, p.x * n + p.y * c};
    }
    return {p.x * s.scale + s.x, p.y * s.scale + s.y};
}

int32_t AutomaticRoundCount(const ShapeRecord &s) {
    if (s.segments >= 3)
        return std::min(s.segments, kMaxRoundSegments);
    const double b = s.borderWidth >= 2 ? s.borderWidth / 2 : 1;
    return CountOf(b * (std::fabs(s.width) + std::fabs(s.height)) * s.scale * 0.2, 8,
                   kMaxRoundSegments);
}

void ClosedOutline(const ShapeRecord &s, std::vector<PointD> &out) {
    out.clear();
    const double w = s.width / 2, h = s.height / 2;
    switch (s.tag) {
    case kTagOval: {
        const int32_t n = AutomaticRoundCount(s);
        Ellipse(s, 0, 0, w, h, 0, kTwoPi * (n - 1) / n, n - 1, out);
        break;
    }
    case kTagArc: {
        const double sweep = std::fmod(s.arcAngle, kTwoPi);
        int32_t n = CountOf(s.segments * std::fabs(sweep) / kTwoPi, 0, kMaxRoundSegments);
        if (n < 1)
            n = AutomaticRoundCount(s);
        Ellipse(s, 0, 0, w, h, s.startAngle, sweep, n, out);
        out.push_back(ToWorld(s, {0, 0}));
        break;
    }
    case kTagRoundRect: {
        double rx, ry;
        CornerRadii(s, rx, ry);
        if (rx > 0 && ry > 0) {
            const int32_t q = std::max(2, AutomaticRoundCount(s) / 4);
            const double ix = std::fabs(w) - rx, iy = std::fabs(h) - ry;
            const double half = std::numbers::pi / 2;
            // Upper right, upper left, lower left, lower right, as a rect's.
            Ellipse(s, ix, -iy, rx, ry, 0, -half, q, out);
            Ellipse(s, -ix, -iy, rx, ry, -half, -half, q, out);
            Ellipse(s, -ix, iy, rx, ry, -2 * half, -half, q, out);
            Ellipse(s, ix, iy, rx, ry, -3 * half, -half, q, out);
            break;
        }
        [[fallthrough]];
    }
    default: // rect, pixmap
        out.push_back(ToWorld(s, {w, -h}));
        out.push_back(ToWorld(s, {-w, -h}));
        out.push_back(ToWorld(s, {-w, h}));
        out.push_back(ToWorld(s, {w, h}));
        break;
    }
}

void CurvePoints(const ShapeRecord &s, std::vector<PointD> &out) {
    out.clear();
    const int32_t order = std::clamp(s.order, 0, 2);
    PointD p[4] = {{s.x, s.y}};
    for (int32_t i = 0; i < order; ++i)
        p[i + 1] = {s.controlX[i], s.controlY[i]};
    p[order + 1] = {s.x2, s.y2};
    if (order == 0) {
        out.push_back(p[0]);
        out.push_back(p[1]);
        return;
    }
    int32_t n = std::min(s.segments, kMaxCurveSegments);
    if (s.segments < 3) {
        double legs = 0;
        for (int32_t i = 0; i <= order; ++i)
            legs += (p[i + 1].x - p[i].x) * (p[i + 1].x - p[i].x) +
                    (p[i + 1].y - p[i].y) * (p[i + 1].y - p[i].y);
        n = CountOf(std::sqrt(legs) * s.scale * 0.1, 3, kMaxCurveSegments);
    }
    for (int32_t i = 0; i <= n; ++i) {
        const double t = double(i) / n, u = 1 - t;
        if (order == 1)
            out.push_back({u * u * p[0].x + 2 * t * u * p[1].x + t * t * p[2].x,
                           u * u * p[0].y + 2 * t * u * p[1].y + t * t * p[2].y});
        else
            out.push_back({u * u * u * p[0].x + 3 * t * u * u * p[1].x + 3 * t * t * u * p[2].x +
                               t * t * t * p[3].x,
                           u * u * u * p[0].y + 3 * t * u * u * p[1].y + 3 * t * t * u * p[2].y +
                               t * t * t * p[3].y});
    }
}

bool ShapeContains(const ShapeRecord &s, double x, double y) {
    if (!HasSize(s.tag))
        return false;
    x -= s.x;
    y -= s.y;
    if (std::fabs(s.rotation) > kRotationEpsilon) {
        const double c = std::cos(-s.rotation), n = std::sin(-s.rotation);
        const double rx = x * c - y * n;
        y = x * n + y * c;
        x = rx;
    }
    x /= s.scale;
    y /= s.scale;
    const double w = s.width / 2, h = s.height / 2;
    if (!(std::fabs(x) <= w && std::fabs(y) <= h)) // NaN is outside
        return false;
    switch (s.tag) {
    case kTagOval:
    case kTagArc: {
        const double ex = x / w, ey = y / h;
        if (!(ex * ex + ey * ey <= 1))
            return false;
        if (s.tag == kTagOval)
            return true;
        const double sweep = std::fmod(s.arcAngle, kTwoPi);
        const double a = ReduceAngle(std::atan2(ey, ex));
        const double from = sweep >= 0 ? a - s.startAngle : s.startAngle - a;
        return ReduceAngle(from) <= std::fabs(sweep);
    }
    case kTagRoundRect: {
        double rx, ry;
        CornerRadii(s, rx, ry);
        const double cx = std::fabs(x) - (w - rx), cy = std::fabs(y) - (h - ry);
        if (rx <= 0 || ry <= 0 || cx <= 0 || cy <= 0)
            return true;
        return (cx / rx) * (cx / rx) + (cy / ry) * (cy / ry) <= 1;
    }
    default: return true;
    }
}

} // namespace kelp
