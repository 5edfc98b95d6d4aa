// The life of a shape's fields: defaults per class, the setters that carry
// a group's members and a curve's points along, and the inside test.
#include "shapes/shape_record.h"

#include "exceptions/raise.h"
#include "shapes/outline.h"
#include "shapes/transforms.h"
#include "strings/kstring.h"

#include "kelp/objects.h"
#include "kelp/pictures.h"
#include "kelp/shapes.h"
#include "kelp/strings.h"

#include <cmath>
#include <cstddef>
#include <numbers>

namespace kelp {
namespace {

// The record of a live shape; null (with NilObjectException) for nil.
ShapeRecord *Live(RuntimeObject *self) {
    if (!self)
        RaiseNilObject();
    return self ? Shape(self) : nullptr;
}

KelpString Text(const char *text) { return string::FromUTF8(text).ExtractStringStorage(); }

} // namespace
} // namespace kelp

using namespace kelp;

// ------------------------------------------------------------------ Object2D

extern "C" void Object2DConstructor(RuntimeObject *self) {
    if (ShapeRecord *s = Live(self)) {
        s->tag = kTagObject2D;
        s->scale = 1;
        s->fill = 1;
        s->borderWidth = 1;
    }
}

extern "C" void Object2DDoubleSetter(RuntimeObject *self, int32_t offset, double value) {
    ShapeRecord *s = Live(self);
    if (!s)
        return;
    const bool carries = IsGroupTag(s->tag) || s->tag == kTagCurve;
    switch (offset) {
    case offsetof(ShapeRecord, x):
        if (carries)
            MoveShape(*s, value - s->x, 0, kMaxCarryDepth);
        else
            s->x = value;
        return;
    case offsetof(ShapeRecord, y):
        if (carries)
            MoveShape(*s, 0, value - s->y, kMaxCarryDepth);
        else
            s->y = value;
        return;
    case offsetof(ShapeRecord, scale):
        if (carries)
            ScaleShape(*s, value / s->scale, kMaxCarryDepth);
        else
            s->scale = value;
        return;
    case offsetof(ShapeRecord, rotation):
        if (carries)
            RotateShape(*s, value - s->rotation, kMaxCarryDepth);
        else
            s->rotation = value;
        return;
    default: doubleSetter(self, offset, value); return;
    }
}

extern "C" double doublePercentGetter(RuntimeObject *self, int32_t offset) {
    return doubleGetter(self, offset) * 100;
}

extern "C" void doublePercentSetter(RuntimeObject *self, int32_t offset, double value) {
    doubleSetter(self, offset, value * 0.01);
}

// ------------------------------------------------------------------ shapes

extern "C" void RectShapeConstructor(RuntimeObject *self) {
    if (ShapeRecord *s = Live(self)) {
        s->tag = kTagRect;
        s->width = s->height = 100;
    }
}

extern "C" uint8_t RectShapeContains(RuntimeObject *self, double x, double y) {
    ShapeRecord *s = Live(self);
    return s && ShapeContains(*s, x, y) ? 1 : 0;
}

extern "C" void RoundRectShapeConstructor(RuntimeObject *self) {
    if (ShapeRecord *s = Live(self))
        s->tag = kTagRoundRect;
}

extern "C" void OvalShapeConstructor(RuntimeObject *self) {
    if (ShapeRecord *s = Live(self))
        s->tag = kTagOval;
}

extern "C" void ArcShapeConstructor(RuntimeObject *self) {
    if (ShapeRecord *s = Live(self)) {
        s->tag = kTagArc;
        s->arcAngle = std::numbers::pi / 2;
    }
}

extern "C" void ArcStartAngleSetter(RuntimeObject *self, int32_t offset, double value) {
    doubleSetter(self, offset, ReduceAngle(value));
}

extern "C" void PixmapShapeConstructor(RuntimeObject *self) {
    if (ShapeRecord *s = Live(self))
        s->tag = kTagPixmap;
}

extern "C" void PixmapShapeDestructor(RuntimeObject *self) {
    if (!self)
        return;
    RuntimeUnlockObject(Shape(self)->image);
    Shape(self)->image = nullptr;
}

extern "C" void PixmapShapeImageCtor(RuntimeObject *self, RuntimeObject *picture) {
    ShapeRecord *s = Live(self);
    if (!s)
        return;
    RuntimeLockObject(picture);
    RuntimeUnlockObject(s->image);
    s->image = picture;
    s->sourceLeft = s->sourceTop = 0;
    s->width = s->sourceWidth = picture ? pictureWidthGetter(picture, 0) : 0;
    s->height = s->sourceHeight = picture ? pictureHeightGetter(picture, 0) : 0;
}

extern "C" void StringShapeConstructor(RuntimeObject *self) {
    if (ShapeRecord *s = Live(self)) {
        s->tag = kTagString;
        s->textSize = 12;
        s->text = Text("-");
        s->textFont = Text("System");
    }
}

extern "C" void StringShapeDestructor(RuntimeObject *self) {
    if (!self)
        return;
    RuntimeUnlockString(Shape(self)->text);
    RuntimeUnlockString(Shape(self)->textFont);
    Shape(self)->text = Shape(self)->textFont = nullptr;
}

extern "C" KelpString StringToSSGetter(RuntimeObject *self, int32_t) {
    return stringGetter(self, offsetof(ShapeRecord, text));
}

extern "C" void SSToStringSetter(RuntimeObject *self, int32_t, KelpString text) {
    stringSetter(self, offsetof(ShapeRecord, text), text);
}

// ------------------------------------------------------------------ curves

extern "C" void CurveShapeConstructor(RuntimeObject *self) {
    if (ShapeRecord *s = Live(self)) {
        s->tag = kTagCurve;
        s->fill = 0;
        s->border = 1;
        s->x2 = s->y2 = 100;
    }
}

namespace {

// The control coordinate at index, or null with OutOfBoundsException.
double *Control(RuntimeObject *self, int32_t index, bool wantX) {
    ShapeRecord *s = Live(self);
    if (!s)
        return nullptr;
    if (index < 0 || index > 1) {
        RaiseOutOfBounds();
        return nullptr;
    }
    return wantX ? &s->controlX[index] : &s->controlY[index];
}

} // namespace

extern "C" double CurveGetControlX(RuntimeObject *self, int32_t index) {
    const double *v = Control(self, index, true);
    return v ? *v : 0;
}

extern "C" double CurveGetControlY(RuntimeObject *self, int32_t index) {
    const double *v = Control(self, index, false);
    return v ? *v : 0;
}

extern "C" void CurveSetControlX(RuntimeObject *self, int32_t index, double value) {
    if (double *v = Control(self, index, true))
        *v = value;
}

extern "C" void CurveSetControlY(RuntimeObject *self, int32_t index, double value) {
    if (double *v = Control(self, index, false))
        *v = value;
}

extern "C" void CurveOrderSetter(RuntimeObject *self, int32_t, int32_t order) {
    if (ShapeRecord *s = Live(self))
        s->order = order < 0 ? 0 : order > 2 ? 2 : order;
}
