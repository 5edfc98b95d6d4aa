#pragma once
// ShapePlotter draws shapes on a Graphics.  Shapes have no toolkit parts of
// their own: every shape becomes polygons and lines for the Graphics, and a
// rotated picture or text goes through offscreen stores turned by shears.
//
// The target here can't blend, so Fill and Border are all or nothing: at
// least 50 draws solid, below it draws nothing.  Coordinates are window
// coordinates of the Graphics (the caller adds the pane's origin).
#include "graphics/graphics_base.h"
#include "shapes/outline.h"

#include <string>
#include <vector>

namespace kelp {

class ShapePlotter {
public:
    // Groups nested deeper than this stop quietly (a group may hold itself).
    static constexpr int32_t kMaxDepth = 128;

    explicit ShapePlotter(Graphics &g) : mGraphics(g) {}
    ShapePlotter(const ShapePlotter &) = delete;
    ShapePlotter &operator=(const ShapePlotter &) = delete;

    // Nil draws nothing.  Pen, colours and font are put back afterwards.
    void DrawObject(RuntimeObject *object, int32_t depth = kMaxDepth);
    // The object moved by (x, y) through its setters for the draw, so that a
    // group takes its members along, and moved back.
    void DrawObjectAt(RuntimeObject *object, double x, double y);

private:
    void Plot(ShapeRecord &s, int32_t depth);
    void PlotClosed(const ShapeRecord &s, const std::vector<PointD> &outline);
    void PlotArc(const ShapeRecord &s);
    void PlotCurve(const ShapeRecord &s);
    void PlotFigure(const ShapeRecord &s);
    void PlotString(const ShapeRecord &s);
    void PlotPixmap(const ShapeRecord &s);
    // The border along `points`: lines when thin, else a band of width t.
    void PlotBorder(const ShapeRecord &s, const std::vector<PointD> &points, bool closed);
    void PlotThickBorder(const std::vector<PointD> &points, bool closed, double t);
    void FillQuad(const PointD q[4]);
    void FillPoints(const PointD *points, size_t count);
    void SetColour(int32_t word);

    Graphics &mGraphics;
    std::vector<PointD> mOutline, mPart; // reused between draws
    std::vector<int32_t> mCoords;
};

} // namespace kelp
