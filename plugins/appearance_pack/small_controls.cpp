// Separator, PopupArrow, DisclosureTriangle and ImageWell: the controls of
// the pack that draw a few lines or one triangle.
#include "pack.h"

#include <algorithm>

namespace pack {
namespace {

bool Inside(RuntimeObject *self, int32_t x, int32_t y) {
    const Box b = BoundsOf(self);
    return x >= b.x && x < b.x + b.w && y >= b.y && y < b.y + b.h;
}

void FillPolygon(Canvas &c, GdkPoint *points, int n, bool outline) {
    gdk_draw_polygon(c.Drawable(), c.GC(), TRUE, points, n);
    if (outline) {
        c.Grey(0);
        gdk_draw_polygon(c.Drawable(), c.GC(), FALSE, points, n);
    }
}

// ---------------------------------------------------------------- Separator

void SeparatorDraw(RuntimeObject *self, RuntimeObject *graphics, int x, int y) {
    Canvas c(self, graphics);
    if (!c.Ready())
        return;
    const Box b = BoundsOf(self);
    if (b.h < b.w) {
        c.Grey(kLineGrey);
        c.Line(x, y + b.h / 2, x + b.w - 1, y + b.h / 2);
        c.Grey(kWhite);
        c.Line(x, y + b.h / 2 + 1, x + b.w - 1, y + b.h / 2 + 1);
    } else {
        c.Grey(kLineGrey);
        c.Line(x + b.w / 2, y, x + b.w / 2, y + b.h - 1);
        c.Grey(kWhite);
        c.Line(x + b.w / 2 + 1, y, x + b.w / 2 + 1, y + b.h - 1);
    }
}
void SeparatorRedraw(RuntimeObject *self, RuntimeObject *g) { SeparatorDraw(self, g, 0, 0); }
void SeparatorOffscreen(RuntimeObject *self, RuntimeObject *g) {
    const Box b = BoundsOf(self);
    SeparatorDraw(self, g, b.x, b.y);
}

KELPcontrolBehaviour gSeparatorBehaviour = {
    .redraw = SeparatorRedraw,
    .close = Nothing,
    .drawOffscreen = SeparatorOffscreen,
    .stateChanged = NothingWithCode,
};
KELPcontrol gSeparator = {
    7, "Separator",          0, 0xD0,    0, 0,      64, 4, nullptr, 0, nullptr, 0, nullptr,
    0, &gSeparatorBehaviour, 0, nullptr, 0, nullptr};

// -------------------------------------------------------------- PopupArrow

struct PopupArrowData {
    int32_t facing; // 0 to 7: right, left, up, down, then the same small
};

KELPevent gArrowEvents[] = {
    {"MouseDown(X As Integer, Y As Integer) As Boolean", nullptr},
    {"MouseDrag(X As Integer, Y As Integer)", nullptr},
    {"MouseUp(X As Integer, Y As Integer)", nullptr},
};
const char *const kFacingLabels[] = {"=#484", "=#485", "=#486", "=#487",
                                     "=#488", "=#489", "=#490", "=#491"};
KELPproperty gArrowProperties[] = {
    {"Appearance", "Facing", "Integer", 1, KELP_DEFAULT_ACCESSOR, KELP_DEFAULT_ACCESSOR,
     offsetof(PopupArrowData, facing), nullptr, 8, kFacingLabels},
};

void ArrowDraw(RuntimeObject *self, RuntimeObject *graphics, int x, int y) {
    Canvas c(self, graphics);
    if (c.Ready())
        DrawPopupArrow(c, Data<PopupArrowData>(self)->facing, x, y, host.enabled(self) != 0);
}
void ArrowRedraw(RuntimeObject *self, RuntimeObject *g) { ArrowDraw(self, g, 0, 0); }
void ArrowOffscreen(RuntimeObject *self, RuntimeObject *g) {
    const Box b = BoundsOf(self);
    ArrowDraw(self, g, b.x, b.y);
}
int32_t ArrowDown(RuntimeObject *self, int32_t x, int32_t y) {
    return FireMouse(self, gArrowEvents[0], x, y);
}
void ArrowDrag(RuntimeObject *self, int32_t x, int32_t y) {
    FireMouse(self, gArrowEvents[1], x, y);
}
void ArrowUp(RuntimeObject *self, int32_t x, int32_t y) { FireMouse(self, gArrowEvents[2], x, y); }

KELPcontrolBehaviour gArrowBehaviour = {
    .redraw = ArrowRedraw,
    .mouseDown = ArrowDown,
    .mouseDrag = ArrowDrag,
    .mouseUp = ArrowUp,
    .close = Nothing,
    .drawOffscreen = ArrowOffscreen,
    .stateChanged = NothingWithCode,
};
KELPcontrol gPopupArrow = {7,
                           "PopupArrow",
                           sizeof(PopupArrowData),
                           0xD0,
                           0,
                           0,
                           10,
                           10,
                           gArrowProperties,
                           1,
                           nullptr,
                           0,
                           gArrowEvents,
                           3,
                           &gArrowBehaviour,
                           0,
                           nullptr,
                           0,
                           nullptr};

// ------------------------------------------------------- DisclosureTriangle

struct TriangleData {
    uint8_t value;     // open: the triangle points down
    int32_t facing;    // closed, 0 points right, 1 left
    uint8_t pressed;   // the mouse is down inside
    GtkWidget *widget; // made in open
};

KELPevent gTriangleEvents[] = {{"Action", nullptr}};

void TriangleValueSetter(RuntimeObject *self, int32_t, uint8_t value) {
    Data<TriangleData>(self)->value = value != 0;
    Fire(self, gTriangleEvents[0]);
    host.invalidate(self);
}
const char *const kTriangleLabels[] = {"=#492", "=#493"};
KELPproperty gTriangleProperties[] = {
    {"Initial State", "Value", "Boolean", 0, KELP_DEFAULT_ACCESSOR,
     reinterpret_cast<void *>(&TriangleValueSetter), offsetof(TriangleData, value), nullptr, 0,
     nullptr},
    {"Appearance", "Facing", "Integer", 1, KELP_DEFAULT_ACCESSOR, KELP_DEFAULT_ACCESSOR,
     offsetof(TriangleData, facing), nullptr, 2, kTriangleLabels},
};

void TriangleDraw(RuntimeObject *self, RuntimeObject *graphics, int x, int y) {
    Canvas c(self, graphics);
    if (!c.Ready())
        return;
    const TriangleData *d = Data<TriangleData>(self);
    const Box b = BoundsOf(self);
    const int m = b.h / 2;
    const GtkStyle *s = c.Style();
    c.Colour(!host.enabled(self) ? s->fg[GTK_STATE_INSENSITIVE]
             : d->pressed        ? s->bg[GTK_STATE_ACTIVE]
                                 : s->bg[GTK_STATE_NORMAL]);
    GdkPoint p[3];
    if (!d->value) {
        const int t = y + std::max(m - 5, 0);
        if (d->facing == 1)
            p[0] = {x + 7, t}, p[1] = {x + 2, t + 5}, p[2] = {x + 7, t + 10};
        else
            p[0] = {x + 2, t}, p[1] = {x + 7, t + 5}, p[2] = {x + 2, t + 10};
    } else {
        const int t = y + std::max(m - 4, 0);
        p[0] = {x, t + 2}, p[1] = {x + 10, t + 2}, p[2] = {x + 5, t + 7};
    }
    FillPolygon(c, p, 3, true);
}
void TriangleRedraw(RuntimeObject *self, RuntimeObject *g) {
    GtkWidget *w = Data<TriangleData>(self)->widget;
    TriangleDraw(self, g, w ? w->allocation.x : 0, w ? w->allocation.y : 0);
}
void TriangleOffscreen(RuntimeObject *self, RuntimeObject *g) {
    const Box b = BoundsOf(self);
    TriangleDraw(self, g, b.x, b.y);
}
void TriangleConstructor(RuntimeObject *self) { Data<TriangleData>(self)->pressed = 0; }
void TriangleDestructor(RuntimeObject *self) { ReleaseOwned(Data<TriangleData>(self)->widget); }
void TriangleOpen(RuntimeObject *self) {
    if (!Data<TriangleData>(self)->widget)
        Data<TriangleData>(self)->widget = NewOwnedFixed();
}
void *TriangleHandle(RuntimeObject *self) { return Data<TriangleData>(self)->widget; }

int32_t TriangleDown(RuntimeObject *self, int32_t x, int32_t y) {
    if (!host.enabled(self))
        return 1;
    if (!Inside(self, x, y))
        return 0;
    Data<TriangleData>(self)->pressed = 1;
    TriangleRedraw(self, nullptr);
    return 1;
}
void TriangleDrag(RuntimeObject *self, int32_t x, int32_t y) {
    const uint8_t inside = Inside(self, x, y);
    if (Data<TriangleData>(self)->pressed != inside) {
        Data<TriangleData>(self)->pressed = inside;
        TriangleRedraw(self, nullptr);
    }
}
void TriangleUp(RuntimeObject *self, int32_t x, int32_t y) {
    TriangleData *d = Data<TriangleData>(self);
    if (!host.enabled(self) || !Inside(self, x, y)) {
        d->pressed = 0;
        return;
    }
    d->value = !d->value;
    d->pressed = 0;
    host.invalidate(self);
    Fire(self, gTriangleEvents[0]);
}
void TriangleAction(RuntimeObject *self, int32_t) { Fire(self, gTriangleEvents[0]); }

KELPcontrolBehaviour gTriangleBehaviour = {
    .constructor = TriangleConstructor,
    .destructor = TriangleDestructor,
    .redraw = TriangleRedraw,
    .mouseDown = TriangleDown,
    .mouseDrag = TriangleDrag,
    .mouseUp = TriangleUp,
    .open = TriangleOpen,
    .close = Nothing,
    .drawOffscreen = TriangleOffscreen,
    .stateChanged = NothingWithCode,
    .actionEvent = TriangleAction,
    .controlHandleGetter = TriangleHandle,
};
KELPcontrol gTriangle = {7,
                         "DisclosureTriangle",
                         sizeof(TriangleData),
                         0xD0,
                         0,
                         0,
                         12,
                         12,
                         gTriangleProperties,
                         2,
                         nullptr,
                         0,
                         gTriangleEvents,
                         1,
                         &gTriangleBehaviour,
                         0,
                         nullptr,
                         0,
                         nullptr};

// ---------------------------------------------------------------- ImageWell

struct ImageWellData {
    void *description;    // the picture's locked description
    RuntimeObject *image; // the Image property, counted
};

void ImageSetter(RuntimeObject *self, int32_t, RuntimeObject *picture) {
    ImageWellData *d = Data<ImageWellData>(self);
    if (picture)
        host.lockObject(picture);
    if (d->image)
        host.unlockObject(d->image);
    d->image = picture;
    host.invalidate(self);
}
KELPproperty gWellProperties[] = {
    {"Appearance", "Image", "Picture", 1, KELP_DEFAULT_ACCESSOR,
     reinterpret_cast<void *>(&ImageSetter), offsetof(ImageWellData, image), nullptr, 0, nullptr},
};
KELPevent gWellEvents[] = {
    {"MouseDown(X As Integer, Y As Integer) As Boolean", nullptr},
    {"MouseDrag(X As Integer, Y As Integer)", nullptr},
    {"MouseUp(X As Integer, Y As Integer)", nullptr},
};

// The well: a white box inset by 2 framed in black, a white rectangle on
// the bounds and the grey lines of a sunken edge at its left and top.
void WellDraw(RuntimeObject *self, RuntimeObject *graphics, int x, int y) {
    Canvas c(self, graphics);
    if (!c.Ready())
        return;
    const Box b = BoundsOf(self);
    c.Grey(kWhite);
    c.Fill(x + 2, y + 2, b.w - 4, b.h - 4);
    if (RuntimeObject *picture = Data<ImageWellData>(self)->image) {
        // At its own size: centred on an axis where it fits, else from the
        // box's left or top edge.
        int32_t pw = 0, ph = 0;
        host.propertyInt(picture, "Width", &pw);
        host.propertyInt(picture, "Height", &ph);
        const int w = b.w - 4, h = b.h - 4;
        const int px = x + 2 + (pw <= w ? (w - pw) / 2 : 0);
        const int py = y + 2 + (ph <= h ? (h - ph) / 2 : 0);
        host.drawPicture(c.Graphics(), picture, px, py, std::min(pw, w), std::min(ph, h), 0, 0,
                         std::min(pw, w), std::min(ph, h));
    }
    c.Grey(0);
    c.Frame(x + 1, y + 1, b.w - 3, b.h - 3);
    c.Grey(kWhite);
    c.Frame(x, y, b.w - 1, b.h - 1);
    c.Grey(kLineGrey);
    c.Line(x, y, x, y + b.h - 1);
    c.Line(x, y, x + b.w - 1, y);
}
void WellRedraw(RuntimeObject *self, RuntimeObject *g) { WellDraw(self, g, 0, 0); }
void WellOffscreen(RuntimeObject *self, RuntimeObject *g) {
    const Box b = BoundsOf(self);
    WellDraw(self, g, b.x, b.y);
}
void WellDestructor(RuntimeObject *self) {
    ImageWellData *d = Data<ImageWellData>(self);
    if (d->image)
        host.unlockObject(d->image);
    d->image = nullptr;
}
int32_t WellDown(RuntimeObject *self, int32_t x, int32_t y) {
    return host.enabled(self) && FireMouse(self, gWellEvents[0], x, y);
}
void WellDrag(RuntimeObject *self, int32_t x, int32_t y) { FireMouse(self, gWellEvents[1], x, y); }
void WellUp(RuntimeObject *self, int32_t x, int32_t y) { FireMouse(self, gWellEvents[2], x, y); }

KELPcontrolBehaviour gWellBehaviour = {
    .destructor = WellDestructor,
    .redraw = WellRedraw,
    .mouseDown = WellDown,
    .mouseDrag = WellDrag,
    .mouseUp = WellUp,
    .close = Nothing,
    .drawOffscreen = WellOffscreen,
    .stateChanged = NothingWithCode,
};
KELPcontrol gWell = {7,           "ImageWell", sizeof(ImageWellData), 0x1D8, 0,       0,
                     32,          32,          gWellProperties,       1,     nullptr, 0,
                     gWellEvents, 3,           &gWellBehaviour,       0,     nullptr, 0,
                     nullptr};

} // namespace

void DrawPopupArrow(Canvas &c, int facing, int x, int y, bool enabled) {
    static const GdkPoint kShapes[8][3] = {
        {{0, 0}, {4, 4}, {0, 8}}, {{4, 0}, {0, 4}, {4, 8}}, {{0, 4}, {4, 0}, {8, 4}},
        {{0, 0}, {8, 0}, {4, 4}}, {{0, 0}, {2, 2}, {0, 4}}, {{2, 0}, {0, 2}, {2, 4}},
        {{0, 2}, {2, 0}, {4, 2}}, {{0, 0}, {4, 0}, {2, 2}},
    };
    if (facing < 0 || facing > 7)
        return;
    GdkPoint p[3];
    for (int i = 0; i < 3; ++i)
        p[i] = {kShapes[facing][i].x + x, kShapes[facing][i].y + y};
    if (enabled)
        c.Grey(0);
    else
        c.Colour(c.Style()->fg[GTK_STATE_INSENSITIVE]);
    FillPolygon(c, p, 3, false);
}

KELPcontrol *SeparatorControl() { return &gSeparator; }
KELPcontrol *PopupArrowControl() { return &gPopupArrow; }
KELPcontrol *DisclosureTriangleControl() { return &gTriangle; }
KELPcontrol *ImageWellControl() { return &gWell; }

} // namespace pack
