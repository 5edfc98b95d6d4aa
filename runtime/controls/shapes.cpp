// The shapes: Line, Oval, Rectangle and RoundRectangle, each an empty
// GtkFixed painted at its expose.  Later controls lie above earlier ones,
// as their widgets do.  Colours are 0xRRGGBB words; BorderWidth is signed
// 16-bit and its size is what counts.
#include "controls/control.h"

#include "controls/classes.h"
#include "graphics/graphics_base.h"
#include "objects/definitions.h"

#include "kelp/controls.h"
#include "kelp/objects.h"

#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace kelp {
namespace {

enum ShapeKind { kLine, kOval, kRectangle, kRoundRectangle };

struct ShapeRecord {
    RuntimeControl control;
    int32_t fillColor, borderColor, topLeftColor, bottomRightColor; // also LineColor
    int32_t borderWidth;                                            // 16-bit in effect
    int32_t ovalWidth, ovalHeight;
    int32_t x1, y1, x2, y2;
    int32_t kind;
};

ShapeRecord *Record(RuntimeObject *o) { return reinterpret_cast<ShapeRecord *>(o); }

ObjectHook *gMouseDown[4], *gMouseDrag[4], *gMouseUp[4];

int32_t Border(const ShapeRecord *r) { return std::abs(int32_t(int16_t(r->borderWidth))); }

// The pane's rectangle for a line: the box of its ends, grown by half the
// border width (the odd pixel goes to the far side).
KelpRect LineBounds(const ShapeRecord *r) {
    int32_t half = Border(r) / 2, rest = Border(r) - half;
    return KelpRect{int16_t(std::min(r->y1, r->y2) - half), int16_t(std::min(r->x1, r->x2) - half),
                    int16_t(std::max(r->y1, r->y2) + rest + 1),
                    int16_t(std::max(r->x1, r->x2) + rest + 1)};
}

class ShapePane : public ControlPane {
public:
    explicit ShapePane(ShapeRecord *record) : ControlPane(&record->control), mRecord(record) {
        SetWidget(gtk_fixed_new());
        g_signal_connect(mWidget, "expose-event", G_CALLBACK(OnExpose), this);
        gtk_widget_show(mWidget);
    }

    void Draw(Graphics *g) override {
        if (!g || !visible)
            return;
        const ShapeRecord *r = mRecord;
        const Rect b = bounds;
        const int32_t border = Border(r);
        switch (r->kind) {
        case kOval:
        case kRoundRectangle: {
            g->SetForeColor(ColorWordToRGB(uint32_t(r->fillColor)));
            r->kind == kOval ? g->FillOval(b) : g->FillRoundRect(b, r->ovalWidth, r->ovalHeight);
            if (border) {
                g->SetForeColor(ColorWordToRGB(uint32_t(r->borderColor)));
                r->kind == kOval ? g->FrameOval(b)
                                 : g->FrameRoundRect(b, r->ovalWidth, r->ovalHeight);
            }
            break;
        }
        case kRectangle: {
            Rect inner{int16_t(b.top + border), int16_t(b.left + border),
                       int16_t(b.bottom - border), int16_t(b.right - border)};
            g->SetForeColor(ColorWordToRGB(uint32_t(r->fillColor)));
            g->FillRect(inner);
            g->SetForeColor(ColorWordToRGB(uint32_t(r->topLeftColor)));
            for (int32_t i = 0; i < border; ++i) {
                g->MoveTo(b.left + i, b.bottom - i - 1);
                g->LineTo(b.left + i, b.top + i);
                g->LineTo(b.right - i - 1, b.top + i);
            }
            g->SetForeColor(ColorWordToRGB(uint32_t(r->bottomRightColor)));
            for (int32_t i = 0; i < border; ++i) {
                g->MoveTo(b.left + i + 1, b.bottom - i - 1);
                g->LineTo(b.right - i - 1, b.bottom - i - 1);
                g->LineTo(b.right - i - 1, b.top + i + 1);
            }
            break;
        }
        default: DrawLine(g); break;
        }
    }

    // A line takes a press only near it: the squared distance from the
    // point to the line through both ends at most 35.
    bool HitsLine(int32_t x, int32_t y) const {
        const ShapeRecord *r = mRecord;
        double dx = r->x2 - r->x1, dy = r->y2 - r->y1;
        double length = dx * dx + dy * dy;
        if (length == 0)
            return (x - r->x1) * (x - r->x1) + (y - r->y1) * (y - r->y1) <= 35;
        double cross = dx * (y - r->y1) - dy * (x - r->x1);
        return cross * cross / length <= 35;
    }

    bool PassesClicksThrough() override { return true; }
    bool MouseDown(int32_t x, int32_t y, int32_t) override {
        int k = mRecord->kind;
        return (k == kLine ? HitsLine(x, y) : enabled) && FireMouseDown(gMouseDown[k], x, y);
    }
    void MouseDrag(int32_t x, int32_t y) override {
        FireMouseDrag(gMouseDrag[mRecord->kind], x, y);
    }
    void MouseUp(int32_t x, int32_t y) override { FireMouseUp(gMouseUp[mRecord->kind], x, y); }

private:
    void DrawLine(Graphics *g) {
        const ShapeRecord *r = mRecord;
        int32_t x1 = r->x1, y1 = r->y1, x2 = r->x2, y2 = r->y2;
        if (x1 > x2)
            std::swap(x1, x2), std::swap(y1, y2);
        g->SetForeColor(ColorWordToRGB(uint32_t(r->borderColor)));
        const int32_t border = Border(r);
        if (border < 2) {
            // The end pixel belongs to the line.
            int32_t ex = x2 + (x2 > x1 ? 1 : 0), ey = y2 + (y2 > y1 ? 1 : y2 < y1 ? -1 : 0);
            if (x1 == x2 && y1 == y2)
                ex = x2 + 1;
            g->MoveTo(x1, y1);
            g->LineTo(ex, ey);
            return;
        }
        // Wide: a square of the border's side per pixel along the longer axis.
        int32_t dx = x2 - x1, dy = y2 - y1, steps = std::max(std::abs(dx), std::abs(dy));
        int32_t half = border / 2;
        for (int32_t i = 0; i <= steps; ++i) {
            double t = steps ? double(i) / steps : 0;
            int32_t cx = x1 + int32_t(std::lround(dx * t)), cy = y1 + int32_t(std::lround(dy * t));
            g->FillRect(Rect{int16_t(cy - half), int16_t(cx - half), int16_t(cy - half + border),
                             int16_t(cx - half + border)});
        }
    }

    static gboolean OnExpose(GtkWidget *, GdkEventExpose *, gpointer data) {
        static_cast<ShapePane *>(data)->Expose();
        return FALSE;
    }

    ShapeRecord *mRecord; // the control's record, alive while bound
};

void Repaint(RuntimeObject *self) {
    if (ShapePane *pane = PaneOf<ShapePane>(self))
        pane->Invalidate(true);
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void ShapeCreatePane(RuntimeObject *self) {
    if (self && !Ctl(self)->pane && Record(self)->kind == kLine)
        Ctl(self)->bounds = LineBounds(Record(self));
    MakePane<ShapePane, ShapeRecord>(self);
}

// Colours and sizes: the field at the row's offset, then a repaint.
extern "C" void shapeAttributeSetter(RuntimeObject *self, int32_t offset, int32_t value) {
    if (!self)
        return;
    intSetter(self, offset, value);
    Repaint(self);
}

// X1, Y1, X2, Y2: the ends move the pane's rectangle too.
extern "C" void linePosSetter(RuntimeObject *self, int32_t offset, int32_t value) {
    if (!self)
        return;
    intSetter(self, offset, value);
    Repaint(self);
    KelpRect b = LineBounds(Record(self));
    RuntimeControlMove(self, b.left, b.top, b.right - b.left, b.bottom - b.top);
    Repaint(self);
}

#define KELP_SHAPE_INITIALIZER(fn, k)                                                              \
    extern "C" void fn(RuntimeObject *self) {                                                      \
        if (self) {                                                                                \
            Record(self)->kind = k;                                                                \
            Record(self)->borderWidth = 1;                                                         \
            Record(self)->fillColor = k == kLine ? 0 : 0xffffff;                                   \
        }                                                                                          \
    }
KELP_SHAPE_INITIALIZER(LineInitializer, kLine)
KELP_SHAPE_INITIALIZER(OvalInitializer, kOval)
KELP_SHAPE_INITIALIZER(RectangleInitializer, kRectangle)
KELP_SHAPE_INITIALIZER(RoundRectangleInitializer, kRoundRectangle)
#undef KELP_SHAPE_INITIALIZER

namespace kelp {
namespace {

#define KELP_SHAPE_ROW(name, field)                                                                \
    PropertyRow {                                                                                  \
        0, name, &kTypeColor, KELP_ENTRY(intGetter), KELP_ENTRY(shapeAttributeSetter),             \
            offsetof(ShapeRecord, field)                                                           \
    }
#define KELP_SIZE_ROW(name, field)                                                                 \
    PropertyRow {                                                                                  \
        0, name, &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(shapeAttributeSetter),           \
            offsetof(ShapeRecord, field)                                                           \
    }
#define KELP_END_ROW(name, field)                                                                  \
    PropertyRow {                                                                                  \
        0, name, &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(linePosSetter),                  \
            offsetof(ShapeRecord, field)                                                           \
    }

const PropertyRow kLineRows[] = {
    KELP_END_ROW("X1", x1),
    KELP_END_ROW("Y1", y1),
    KELP_END_ROW("X2", x2),
    KELP_END_ROW("Y2", y2),
    KELP_SIZE_ROW("BorderWidth", borderWidth),
    KELP_SHAPE_ROW("LineColor", borderColor),
};
const PropertyRow kOvalRows[] = {
    KELP_SHAPE_ROW("FillColor", fillColor),
    KELP_SIZE_ROW("BorderWidth", borderWidth),
    KELP_SHAPE_ROW("BorderColor", borderColor),
};
const PropertyRow kRectangleRows[] = {
    KELP_SHAPE_ROW("FillColor", fillColor),
    KELP_SIZE_ROW("BorderWidth", borderWidth),
    KELP_SHAPE_ROW("TopLeftColor", topLeftColor),
    KELP_SHAPE_ROW("BottomRightColor", bottomRightColor),
};
const PropertyRow kRoundRectangleRows[] = {
    KELP_SHAPE_ROW("FillColor", fillColor),     KELP_SIZE_ROW("BorderWidth", borderWidth),
    KELP_SHAPE_ROW("BorderColor", borderColor), KELP_SIZE_ROW("OvalWidth", ovalWidth),
    KELP_SIZE_ROW("OvalHeight", ovalHeight),
};
#undef KELP_SHAPE_ROW
#undef KELP_SIZE_ROW
#undef KELP_END_ROW

template <int kind>
ObjectDefinition *ShapeDefinition(const char *name, std::span<const PropertyRow> rows,
                                  EntryPoint initializer) {
    static const EventRow events[] = {
        {"MouseDown", "X As Integer, Y As Integer", "Boolean", &gMouseDown[kind]},
        {"MouseDrag", "X As Integer, Y As Integer", nullptr, &gMouseDrag[kind]},
        {"MouseUp", "X As Integer, Y As Integer", nullptr, &gMouseUp[kind]},
    };
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&ShapeCreatePane)}};
    static const ClassDescription description = {
        .name = name,
        .super = RectControlDefinition,
        .instanceSize = sizeof(ShapeRecord),
        .initializer = initializer,
        .properties = rows,
        .events = events,
        .hookInstances = hooks,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace

ObjectDefinition *LineDefinition() {
    return ShapeDefinition<kLine>("Line", kLineRows, KELP_ENTRY(LineInitializer));
}
ObjectDefinition *OvalDefinition() {
    return ShapeDefinition<kOval>("Oval", kOvalRows, KELP_ENTRY(OvalInitializer));
}
ObjectDefinition *RectangleDefinition() {
    return ShapeDefinition<kRectangle>("Rectangle", kRectangleRows,
                                       KELP_ENTRY(RectangleInitializer));
}
ObjectDefinition *RoundRectangleDefinition() {
    return ShapeDefinition<kRoundRectangle>("RoundRectangle", kRoundRectangleRows,
                                            KELP_ENTRY(RoundRectangleInitializer));
}

} // namespace kelp
