// Group2D and FigureShape: an ordered list of shapes, each held with a lock.
// The list grows 16 places at a time.
#include "shapes/shape_record.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"

#include "kelp/objects.h"
#include "kelp/shapes.h"

#include <algorithm>

namespace kelp {
namespace {

constexpr int32_t kGrowthStep = 16;

ShapeRecord *Live(RuntimeObject *self) {
    if (!self)
        RaiseNilObject();
    return self ? Shape(self) : nullptr;
}

// A group's record when `index` is within 0 .. count - 1 (+ 1 with
// `orEnd`); null, with the exception raised, otherwise.
ShapeRecord *AtIndex(RuntimeObject *self, int32_t index, bool orEnd = false) {
    ShapeRecord *s = Live(self);
    if (s && (index < 0 || index > s->memberCount - (orEnd ? 0 : 1))) {
        RaiseOutOfBounds();
        return nullptr;
    }
    return s;
}

void Insert(ShapeRecord &s, int32_t index, RuntimeObject *item) {
    if (s.memberCount == s.memberCapacity) {
        auto *grown = new RuntimeObject *[s.memberCapacity + kGrowthStep];
        std::copy(s.members, s.members + s.memberCount, grown);
        delete[] s.members;
        s.members = grown;
        s.memberCapacity += kGrowthStep;
    }
    std::copy_backward(s.members + index, s.members + s.memberCount, s.members + s.memberCount + 1);
    RuntimeLockObject(item);
    s.members[index] = item;
    ++s.memberCount;
}

void RemoveAt(ShapeRecord &s, int32_t index) {
    RuntimeObject *item = s.members[index];
    std::copy(s.members + index + 1, s.members + s.memberCount, s.members + index);
    --s.memberCount;
    RuntimeUnlockObject(item);
}

// Lets every member go.  Members may release further groups; the list is
// taken out of the record first so that nothing sees it half gone.
void ReleaseMembers(RuntimeObject *self) {
    if (!self)
        return;
    ShapeRecord &s = *Shape(self);
    RuntimeObject **members = s.members;
    const int32_t count = s.memberCount;
    s.members = nullptr;
    s.memberCount = s.memberCapacity = 0;
    for (int32_t i = 0; i < count; ++i)
        RuntimeUnlockObject(members[i]);
    delete[] members;
}

// A new curve of `order` from (x1, y1) to (x2, y2), appended to the figure.
void AddCurve(RuntimeObject *self, int32_t order, const float *points) {
    ShapeRecord *s = Live(self);
    if (!s)
        return;
    RuntimeObject *curve = NewObjectOfDefinition(CurveShapeDefinition());
    if (!curve)
        return;
    ShapeRecord &c = *Shape(curve);
    c.order = order;
    c.x = points[0], c.y = points[1], c.x2 = points[2], c.y2 = points[3];
    for (int32_t i = 0; i < order; ++i)
        c.controlX[i] = points[4 + 2 * i], c.controlY[i] = points[5 + 2 * i];
    Insert(*s, s->memberCount, curve);
    RuntimeUnlockObject(curve); // the figure's lock is the one left
}

} // namespace

RuntimeObject *NewGroup2D() { return NewObjectOfDefinition(Group2DDefinition()); }

} // namespace kelp

using namespace kelp;

extern "C" void Group2DConstructor(RuntimeObject *self) {
    if (ShapeRecord *s = Live(self))
        s->tag = kTagGroup;
}

extern "C" void Group2DDestructor(RuntimeObject *self) { ReleaseMembers(self); }

extern "C" int32_t Group2DCount(RuntimeObject *self) {
    ShapeRecord *s = Live(self);
    return s ? s->memberCount : 0;
}

extern "C" void Group2DAppend(RuntimeObject *self, RuntimeObject *item) {
    if (ShapeRecord *s = Live(self))
        Insert(*s, s->memberCount, item);
}

extern "C" void Group2DInsert(RuntimeObject *self, int32_t index, RuntimeObject *item) {
    if (ShapeRecord *s = AtIndex(self, index, true))
        Insert(*s, index, item);
}

extern "C" RuntimeObject *Group2DGetItem(RuntimeObject *self, int32_t index) {
    ShapeRecord *s = AtIndex(self, index);
    if (!s)
        return nullptr;
    RuntimeLockObject(s->members[index]);
    return s->members[index];
}

extern "C" void Group2DSetItem(RuntimeObject *self, int32_t index, RuntimeObject *item) {
    ShapeRecord *s = AtIndex(self, index);
    if (!s)
        return;
    RuntimeLockObject(item);
    RuntimeObject *old = s->members[index];
    s->members[index] = item;
    RuntimeUnlockObject(old);
}

extern "C" void Group2DRemoveByIndex(RuntimeObject *self, int32_t index) {
    if (ShapeRecord *s = AtIndex(self, index))
        RemoveAt(*s, index);
}

extern "C" void Group2DRemoveByObject(RuntimeObject *self, RuntimeObject *item) {
    ShapeRecord *s = Live(self);
    if (!s)
        return;
    RuntimeObject **end = s->members + s->memberCount;
    RuntimeObject **found = std::find(s->members, end, item);
    if (found != end)
        RemoveAt(*s, static_cast<int32_t>(found - s->members));
}

extern "C" void FigureShapeConstructor(RuntimeObject *self) {
    if (ShapeRecord *s = Live(self))
        s->tag = kTagFigure;
}

// The figure's members go before the group's finalizer runs, which then
// finds the list empty.
extern "C" void FigureShapeDestructor(RuntimeObject *self) { ReleaseMembers(self); }

extern "C" void FigureShapeAddLine(RuntimeObject *self, float x1, float y1, float x2, float y2) {
    const float points[] = {x1, y1, x2, y2};
    AddCurve(self, 0, points);
}

extern "C" void FigureShapeAddQuad(RuntimeObject *self, float x1, float y1, float x2, float y2,
                                   float cx1, float cy1) {
    const float points[] = {x1, y1, x2, y2, cx1, cy1};
    AddCurve(self, 1, points);
}

extern "C" void FigureShapeAddCubic(RuntimeObject *self, float x1, float y1, float x2, float y2,
                                    float cx1, float cy1, float cx2, float cy2) {
    const float points[] = {x1, y1, x2, y2, cx1, cy1, cx2, cy2};
    AddCurve(self, 2, points);
}
