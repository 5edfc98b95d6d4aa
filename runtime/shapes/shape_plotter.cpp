#include "shapes/shape_plotter.h"

#include "graphics/graphics_gtk.h"
#include "graphics/picture_cut.h"
#include "pictures/picture_object.h"
#include "shapes/rotated_drawing.h"
#include "strings/kstring.h"

#include "kelp/shapes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kelp {
namespace {

// X coordinates are 16-bit on the wire; points beyond are held at the edge.
constexpr double kCoordinateLimit = 32000;
// How near four points must be to an axis-parallel rectangle to be drawn
// as one.
constexpr double kAxisTolerance = 0.001;

bool Finite(const PointD &p) { return std::isfinite(p.x) && std::isfinite(p.y); }

int32_t ToPixel(double v) {
    if (std::isnan(v))
        return 0;
    return static_cast<int32_t>(std::clamp(v, -kCoordinateLimit, kCoordinateLimit) + 0.5);
}

bool Near(double a, double b) { return std::fabs(a - b) <= kAxisTolerance; }

bool AxisParallel(const PointD q[4]) {
    return (Near(q[0].y, q[1].y) && Near(q[1].x, q[2].x) && Near(q[2].y, q[3].y) &&
            Near(q[3].x, q[0].x)) ||
           (Near(q[0].x, q[1].x) && Near(q[1].y, q[2].y) && Near(q[2].x, q[3].x) &&
            Near(q[3].y, q[0].y));
}

std::string Utf8(KelpString s) {
    if (!s || s->length <= 0)
        return {};
    return std::string(GetUTF8String(string::Wrap(s)).View());
}

// The unit normal of a -> b scaled to h; false for a segment of no length.
bool Normal(const PointD &a, const PointD &b, double h, PointD &n) {
    const double dx = b.x - a.x, dy = b.y - a.y, length = std::hypot(dx, dy);
    if (!(length > 1e-9))
        return false;
    n = {-dy / length * h, dx / length * h};
    return true;
}

} // namespace

void ShapePlotter::DrawObject(RuntimeObject *object, int32_t depth) {
    if (!object)
        return;
    GraphicsStateSaver saver(mGraphics);
    mGraphics.SetPenSize(1, 1);
    Plot(*Shape(object), depth);
}

void ShapePlotter::DrawObjectAt(RuntimeObject *object, double x, double y) {
    if (!object)
        return;
    if (x == 0 && y == 0) {
        DrawObject(object);
        return;
    }
    ShapeRecord &s = *Shape(object);
    const double oldX = s.x, oldY = s.y;
    Object2DDoubleSetter(object, offsetof(ShapeRecord, x), oldX + x);
    Object2DDoubleSetter(object, offsetof(ShapeRecord, y), oldY + y);
    DrawObject(object);
    Object2DDoubleSetter(object, offsetof(ShapeRecord, x), oldX);
    Object2DDoubleSetter(object, offsetof(ShapeRecord, y), oldY);
}

void ShapePlotter::Plot(ShapeRecord &s, int32_t depth) {
    switch (s.tag) {
    case kTagRect:
    case kTagRoundRect:
    case kTagOval:
        ClosedOutline(s, mOutline);
        PlotClosed(s, mOutline);
        break;
    case kTagArc: PlotArc(s); break;
    case kTagCurve: PlotCurve(s); break;
    case kTagString: PlotString(s); break;
    case kTagPixmap: PlotPixmap(s); break;
    case kTagFigure: PlotFigure(s); break;
    case kTagGroup:
        if (depth <= 0)
            return;
        for (int32_t i = 0; i < s.memberCount; ++i)
            if (RuntimeObject *member = s.members[i])
                Plot(*Shape(member), depth - 1);
        break;
    default: break; // a plain Object2D has nothing to draw
    }
}

void ShapePlotter::SetColour(int32_t word) {
    mGraphics.SetForeColor(ColorWordToRGB(static_cast<uint32_t>(word)));
}

void ShapePlotter::FillPoints(const PointD *points, size_t count) {
    mCoords.clear();
    for (size_t i = 0; i < count; ++i) {
        if (!Finite(points[i]))
            return; // a NaN anywhere makes the polygon meaningless
        mCoords.push_back(ToPixel(points[i].x));
        mCoords.push_back(ToPixel(points[i].y));
    }
    // A polygon without area (a shape of no width or height) fills nothing,
    // though GDK would draw its outline.
    double area = 0;
    for (size_t i = 0; i < count; ++i) {
        const PointD &a = points[i], &b = points[(i + 1) % count];
        area += a.x * b.y - b.x * a.y;
    }
    if (count >= 3 && std::fabs(area) > 1e-9)
        mGraphics.DrawPolygon(mCoords.data(), static_cast<int32_t>(mCoords.size()), true);
}

void ShapePlotter::PlotClosed(const ShapeRecord &s, const std::vector<PointD> &outline) {
    if (s.fill >= 0.5) {
        SetColour(s.fillColor);
        FillPoints(outline.data(), outline.size());
    }
    PlotBorder(s, outline, true);
}

void ShapePlotter::PlotArc(const ShapeRecord &s) {
    // The fill is the pie, centre included; the border follows the curve
    // only, as a person drawing an arc would expect.
    ClosedOutline(s, mOutline);
    if (s.fill >= 0.5) {
        SetColour(s.fillColor);
        FillPoints(mOutline.data(), mOutline.size());
    }
    if (!mOutline.empty())
        mOutline.pop_back();
    PlotBorder(s, mOutline, false);
}

void ShapePlotter::PlotCurve(const ShapeRecord &s) {
    CurvePoints(s, mOutline);
    if (s.fill >= 0.5 && s.order > 0) {
        SetColour(s.fillColor);
        FillPoints(mOutline.data(), mOutline.size());
    }
    PlotBorder(s, mOutline, false);
}

void ShapePlotter::PlotFigure(const ShapeRecord &s) {
    // A figure is one outline: its curves end to end, closed, with the
    // figure's own fill and border.
    mOutline.clear();
    for (int32_t i = 0; i < s.memberCount; ++i) {
        RuntimeObject *member = s.members[i];
        if (!member || Shape(member)->tag != kTagCurve)
            continue;
        CurvePoints(*Shape(member), mPart);
        for (const PointD &p : mPart)
            if (mOutline.empty() || p.x != mOutline.back().x || p.y != mOutline.back().y)
                mOutline.push_back(p);
    }
    PlotClosed(s, mOutline);
}

void ShapePlotter::PlotBorder(const ShapeRecord &s, const std::vector<PointD> &points,
                              bool closed) {
    if (!(s.border >= 0.5 && s.borderWidth > 0) || points.size() < 2)
        return;
    for (const PointD &p : points)
        if (!Finite(p))
            return;
    SetColour(s.borderColor);
    const double t = std::fabs(s.scale * s.borderWidth);
    if (t >= 1.5) {
        PlotThickBorder(points, closed, t);
        return;
    }
    mGraphics.MoveTo(ToPixel(points[0].x), ToPixel(points[0].y));
    for (size_t i = 1; i < points.size(); ++i)
        mGraphics.LineTo(ToPixel(points[i].x), ToPixel(points[i].y));
    if (closed)
        mGraphics.LineTo(ToPixel(points[0].x), ToPixel(points[0].y));
}

void ShapePlotter::FillQuad(const PointD q[4]) {
    if (AxisParallel(q)) {
        double left = q[0].x, right = q[0].x, top = q[0].y, bottom = q[0].y;
        for (int i = 1; i < 4; ++i) {
            left = std::min(left, q[i].x), right = std::max(right, q[i].x);
            top = std::min(top, q[i].y), bottom = std::max(bottom, q[i].y);
        }
        const int32_t l = ToPixel(left), t = ToPixel(top), r = ToPixel(right), b = ToPixel(bottom);
        mGraphics.FillRect(
            Rect{int16_t(t), int16_t(l), int16_t(std::max(b, t + 1)), int16_t(std::max(r, l + 1))});
        return;
    }
    FillPoints(q, 4);
}

void ShapePlotter::PlotThickBorder(const std::vector<PointD> &points, bool closed, double t) {
    // Each segment becomes the band between its two parallels at t / 2.  A
    // corner is where neighbouring parallels meet (a mitre); where that
    // point lies further out than t, the corner is cut (a bevel) and the gap
    // filled with two triangles.
    const double h = t / 2;
    const size_t n = points.size(), segments = closed ? n : n - 1;
    std::vector<PointD> normals(segments);
    std::vector<bool> usable(segments);
    for (size_t i = 0; i < segments; ++i)
        usable[i] = Normal(points[i], points[(i + 1) % n], h, normals[i]);

    // The offset at the start and at the end of segment i.
    auto joint = [&](size_t into, size_t outOf, PointD &offset) {
        const PointD a = normals[into], b = normals[outOf];
        const double denominator = h * h + a.x * b.x + a.y * b.y;
        if (denominator > 1e-9) {
            const PointD v{(a.x + b.x) * h * h / denominator, (a.y + b.y) * h * h / denominator};
            if (v.x * v.x + v.y * v.y <= 4 * h * h) {
                offset = v;
                return true;
            }
        }
        return false;
    };
    for (size_t i = 0; i < segments; ++i) {
        if (!usable[i])
            continue;
        const PointD &p = points[i], &q = points[(i + 1) % n];
        PointD start = normals[i], end = normals[i];
        // Neighbours: the nearest usable segments before and after.
        size_t before = i, after = i;
        bool hasBefore = false, hasAfter = false;
        for (size_t k = 1; k < segments && (closed || k <= i); ++k) {
            before = (i + segments - k) % segments;
            if (usable[before]) {
                hasBefore = true;
                break;
            }
        }
        for (size_t k = 1; k < segments && (closed || i + k < segments); ++k) {
            after = (i + k) % segments;
            if (usable[after]) {
                hasAfter = true;
                break;
            }
        }
        if (hasBefore && !joint(before, i, start))
            start = normals[i];
        if (hasAfter && !joint(i, after, end)) {
            end = normals[i];
            // The bevel: fill the wedge between this band's end and the next.
            const PointD m = normals[after];
            const PointD outer[3] = {q, {q.x + end.x, q.y + end.y}, {q.x + m.x, q.y + m.y}};
            const PointD inner[3] = {q, {q.x - end.x, q.y - end.y}, {q.x - m.x, q.y - m.y}};
            FillPoints(outer, 3);
            FillPoints(inner, 3);
        }
        const PointD quad[4] = {{p.x + start.x, p.y + start.y},
                                {q.x + end.x, q.y + end.y},
                                {q.x - end.x, q.y - end.y},
                                {p.x - start.x, p.y - start.y}};
        FillQuad(quad);
    }
}

void ShapePlotter::PlotString(const ShapeRecord &s) {
    const std::string text = Utf8(s.text);
    if (text.empty())
        return;
    const double size = s.scale * s.textSize;
    mGraphics.SetTextFont(s.textFont ? Utf8(s.textFont) : std::string("System"));
    mGraphics.SetTextSize(std::isfinite(size) ? static_cast<int32_t>(std::clamp(size, -1e4, 1e4))
                                              : 0);
    mGraphics.SetTextStyle((s.bold ? kStyleBold : 0) | (s.italic ? kStyleItalic : 0) |
                           (s.underline ? kStyleUnderline : 0));
    SetColour(s.fillColor);
    // The text is centred on X, with its baseline on Y.
    const int32_t width = mGraphics.TextWidth(text);
    if (!std::isfinite(s.x) || !std::isfinite(s.y))
        return;
    if (std::fabs(s.rotation) <= kRotationEpsilon || !std::isfinite(s.rotation)) {
        mGraphics.DrawText(text, ToPixel(s.x - width / 2.0), ToPixel(s.y), 0);
        return;
    }
    // Turned about that point: the text is drawn centred in a square store,
    // turned there and copied back through its mask.
    const int32_t ascent = std::max(0, mGraphics.Ascent());
    const int32_t descent = std::max(0, mGraphics.Descent());
    RotatedDrawing rotated(mGraphics, std::hypot(width / 2.0 + 1, std::max(ascent, descent) + 1));
    const FontSpec font{mGraphics.TextFont(), mGraphics.TextSize(), mGraphics.TextStyle()};
    const RGBColor colour = mGraphics.ForeColor();
    rotated.Paint([&](Graphics &g, int32_t cx, int32_t cy, bool mask) {
        g.SetFont(font);
        g.SetForeColor(mask ? RGBColor{} : colour);
        g.DrawText(text, cx - width / 2, cy, 0);
    });
    rotated.Place(s.x, s.y, s.rotation);
}

void ShapePlotter::PlotPixmap(const ShapeRecord &s) {
    DrawablePane *store = StoreOf(s.image);
    const double dw = std::fabs(s.width * s.scale), dh = std::fabs(s.height * s.scale);
    if (store && s.fill >= 0.5 && std::isfinite(s.x) && std::isfinite(s.y)) {
        PictureCut cut{ToPixel(s.x - dw / 2),
                       ToPixel(s.y - dh / 2),
                       ToPixel(dw),
                       ToPixel(dh),
                       ToPixel(s.sourceLeft),
                       ToPixel(s.sourceTop),
                       ToPixel(s.sourceWidth),
                       ToPixel(s.sourceHeight)};
        const bool transparent = reinterpret_cast<PictureRecord *>(s.image)->transparent == 1;
        if (CutPictureToStore(cut, store->Width(), store->Height())) {
            const Rect source =
                RectFromXYWH(cut.sourceX, cut.sourceY, cut.sourceWidth, cut.sourceHeight);
            if (std::fabs(s.rotation) <= 0.001 || !std::isfinite(s.rotation)) {
                if (auto *gtk = dynamic_cast<GraphicsGTK *>(&mGraphics))
                    store->CopyRect(*gtk, source,
                                    RectFromXYWH(cut.x, cut.y, cut.destWidth, cut.destHeight),
                                    transparent);
            } else {
                // Drawn around the square's centre as it would be around X, Y.
                const int32_t dx = cut.x - ToPixel(s.x), dy = cut.y - ToPixel(s.y);
                RotatedDrawing rotated(mGraphics, std::hypot(dw / 2 + 1, dh / 2 + 1));
                rotated.Paint([&](Graphics &g, int32_t cx, int32_t cy, bool mask) {
                    const Rect dest = RectFromXYWH(cx + dx, cy + dy, cut.destWidth, cut.destHeight);
                    if (mask) {
                        g.SetForeColor(RGBColor{});
                        g.FillRect(dest);
                    } else if (auto *gtk = dynamic_cast<GraphicsGTK *>(&g)) {
                        store->CopyRect(*gtk, source, dest, false);
                    }
                });
                rotated.Place(s.x, s.y, s.rotation);
            }
        }
    }
    ClosedOutline(s, mOutline);
    PlotBorder(s, mOutline, true);
}

} // namespace kelp
