// Graphics.DrawObject, and the vector part of a picture drawn with it.
#include "shapes/shape_plotter.h"

#include "exceptions/raise.h"
#include "graphics/graphics_object.h"
#include "graphics/picture_cut.h"
#include "shapes/draw_object.h"

#include "kelp/shapes.h"

namespace kelp {
namespace {

// The Graphics of the object ready to draw, and its pane's top-left;
// null when there is nothing to draw on.
Graphics *ForDrawing(RuntimeObject *g, int32_t &left, int32_t &top) {
    if (!g) {
        RaiseNilObject();
        return nullptr;
    }
    Graphics *graphics = GraphicsOfObject(g);
    if (!graphics || !graphics->Target())
        return nullptr;
    const Rect bounds = graphics->Target()->Bounds();
    left = bounds.left;
    top = bounds.top;
    graphics->Target()->PrepareForDrawing();
    return graphics;
}

} // namespace

void DrawVectorPicture(Graphics &g, RuntimeObject *group, const PictureCut &cut, int32_t width,
                       int32_t height) {
    const int32_t dw = cut.destWidth == kPictureSizeDefault ? width : cut.destWidth;
    const int32_t dh = cut.destHeight == kPictureSizeDefault ? height : cut.destHeight;
    const int32_t sw = cut.sourceWidth == kPictureSizeDefault ? dw : cut.sourceWidth;
    const int32_t sh = cut.sourceHeight == kPictureSizeDefault ? dh : cut.sourceHeight;
    if (dw < 1 || dh < 1 || !g.Target())
        return;
    const Rect bounds = g.Target()->Bounds();
    ClipSaver saver(g);
    const Rect clip = RectFromXYWH(cut.x + bounds.left, cut.y + bounds.top, dw, dh);
    g.SetClipRect(&clip);
    ShapePlotter plotter(g);
    plotter.DrawObjectAt(group, double(cut.x) * sw / dw - cut.sourceX + bounds.left,
                         double(cut.y) * sh / dh - cut.sourceY + bounds.top);
}

} // namespace kelp

using namespace kelp;

extern "C" void RuntimeGraphicsDrawObjectXY(RuntimeObject *g, RuntimeObject *shape, int32_t deltaX,
                                            int32_t deltaY) {
    int32_t left = 0, top = 0;
    if (Graphics *graphics = ForDrawing(g, left, top)) {
        ShapePlotter plotter(*graphics);
        plotter.DrawObjectAt(shape, double(deltaX) + left, double(deltaY) + top);
    }
}

extern "C" void RuntimeGraphicsDrawObject(RuntimeObject *g, RuntimeObject *shape) {
    RuntimeGraphicsDrawObjectXY(g, shape, 0, 0);
}
