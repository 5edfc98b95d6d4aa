#pragma once
// Object2D and every shape share one record: a tag says which class made it,
// and each class uses the fields it needs.  One layout for all keeps the
// group and plotter code free of casts between record kinds, and lets a
// group's setters reach any member the same way.
#include "kelp/records.h"

#include <cstdint>

namespace kelp {

struct ObjectDefinition;

constexpr uint32_t FourChars(const char (&s)[5]) {
    return uint32_t(uint8_t(s[0])) << 24 | uint32_t(uint8_t(s[1])) << 16 |
           uint32_t(uint8_t(s[2])) << 8 | uint32_t(uint8_t(s[3]));
}

// The class of a shape, set by each class's initializer (the most derived
// one runs last).
enum ShapeTag : uint32_t {
    kTagObject2D = FourChars("ob2D"),
    kTagRect = FourChars("rect"),
    kTagRoundRect = FourChars("roun"),
    kTagOval = FourChars("oval"),
    kTagArc = FourChars("arc "),
    kTagPixmap = FourChars("pix "),
    kTagString = FourChars("strn"),
    kTagCurve = FourChars("curv"),
    kTagGroup = FourChars("grup"),
    kTagFigure = FourChars("figr"),
};

struct ShapeRecord {
    RuntimeObject object;
    uint32_t tag;
    int32_t fillColor, borderColor; // 0xRRGGBB
    int32_t segments;               // below 3: automatic
    int32_t order;                  // curves: 0 line, 1 quadratic, 2 cubic
    uint8_t bold, italic, underline;
    double x, y;         // the centre (a curve's start)
    double rotation;     // radians, clockwise on the screen
    double scale;        // 1 is natural size
    double fill, border; // 0 .. 1
    double borderWidth;
    double width, height;
    double cornerWidth, cornerHeight;
    double startAngle, arcAngle;
    double sourceLeft, sourceTop, sourceWidth, sourceHeight;
    double textSize;
    double x2, y2;                       // a curve's end
    double controlX[2], controlY[2];     // a curve's control points, absolute
    RuntimeObject *image;                // PixmapShape's picture, counted
    KelpString text, textFont;           // StringShape's, counted
    RuntimeObject **members;             // groups: counted items, may be nil
    int32_t memberCount, memberCapacity; // capacity grows by 16
};

inline ShapeRecord *Shape(RuntimeObject *o) { return reinterpret_cast<ShapeRecord *>(o); }
inline bool IsGroupTag(uint32_t tag) { return tag == kTagGroup || tag == kTagFigure; }
// The shapes with a Width and Height (RectShape and its subclasses).
inline bool HasSize(uint32_t tag) {
    return tag == kTagRect || tag == kTagRoundRect || tag == kTagOval || tag == kTagArc ||
           tag == kTagPixmap;
}

ObjectDefinition *Object2DDefinition();
ObjectDefinition *RectShapeDefinition();
ObjectDefinition *RoundRectShapeDefinition();
ObjectDefinition *OvalShapeDefinition();
ObjectDefinition *ArcShapeDefinition();
ObjectDefinition *PixmapShapeDefinition();
ObjectDefinition *StringShapeDefinition();
ObjectDefinition *CurveShapeDefinition();
ObjectDefinition *Group2DDefinition();
ObjectDefinition *FigureShapeDefinition();

// A new, empty group (the caller's reference): a vector picture's Objects.
RuntimeObject *NewGroup2D();

} // namespace kelp
