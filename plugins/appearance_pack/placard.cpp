// Placard: a bevelled panel that other controls may stand in.  Its widget is
// a fixed container with no window of its own, so it draws on the window it
// shares with its parent, at the widget's place there.
#include "pack.h"

namespace pack {
namespace {

struct PlacardData {
    GtkWidget *widget; // the container controls placed on the placard go into
    uint8_t value;     // pressed look: the bevel shades swap
};

KELPevent gEvents[] = {
    {"MouseDown(X As Integer, Y As Integer) As Boolean", nullptr},
    {"MouseDrag(X As Integer, Y As Integer)", nullptr},
    {"MouseUp(X As Integer, Y As Integer)", nullptr},
};

void ValueSetter(RuntimeObject *self, int32_t, uint8_t value) {
    Data<PlacardData>(self)->value = value != 0;
    host.invalidate(self);
}

KELPproperty gProperties[] = {
    {"Initial State", "Value", "Boolean", 1, KELP_DEFAULT_ACCESSOR,
     reinterpret_cast<void *>(&ValueSetter), offsetof(PlacardData, value), nullptr, 0, nullptr},
};

void Constructor(RuntimeObject *self) { Data<PlacardData>(self)->widget = NewOwnedFixed(); }
void Destructor(RuntimeObject *self) { ReleaseOwned(Data<PlacardData>(self)->widget); }
void *HandleGetter(RuntimeObject *self) { return Data<PlacardData>(self)->widget; }

// The fill, the black outline and, when enabled, the two bevel shades.
void Draw(RuntimeObject *self, RuntimeObject *graphics, int x, int y) {
    Canvas c(self, graphics);
    if (!c.Ready())
        return;
    const Box b = BoundsOf(self);
    const bool enabled = host.enabled(self) != 0;
    const bool value = Data<PlacardData>(self)->value != 0;
    const GtkStyle *s = c.Style();
    c.Colour(!enabled ? s->fg[GTK_STATE_INSENSITIVE]
             : value  ? s->bg[GTK_STATE_ACTIVE]
                      : s->bg[GTK_STATE_NORMAL]);
    c.Fill(x, y, b.w - 1, b.h - 1);
    c.Grey(0);
    c.Frame(x, y, b.w - 1, b.h - 1);
    if (!enabled)
        return;
    c.Grey(value ? kBevelGrey : kWhite);
    c.Line(x + 1, y + 1, x + b.w - 2, y + 1);
    c.Line(x + 1, y + 1, x + 1, y + b.h - 2);
    c.Grey(value ? kWhite : kBevelGrey);
    c.Line(x + b.w - 2, y + 2, x + b.w - 2, y + b.h - 2);
    c.Line(x + 2, y + b.h - 2, x + b.w - 2, y + b.h - 2);
}

void Redraw(RuntimeObject *self, RuntimeObject *graphics) {
    GtkWidget *w = Data<PlacardData>(self)->widget;
    Draw(self, graphics, w ? w->allocation.x : 0, w ? w->allocation.y : 0);
}

void DrawOffscreen(RuntimeObject *self, RuntimeObject *graphics) {
    const Box b = BoundsOf(self);
    Draw(self, graphics, b.x, b.y);
}

int32_t MouseDown(RuntimeObject *self, int32_t x, int32_t y) {
    return FireMouse(self, gEvents[0], x, y);
}
void MouseDrag(RuntimeObject *self, int32_t x, int32_t y) { FireMouse(self, gEvents[1], x, y); }
void MouseUp(RuntimeObject *self, int32_t x, int32_t y) { FireMouse(self, gEvents[2], x, y); }

KELPcontrolBehaviour gBehaviour = {
    .constructor = Constructor,
    .destructor = Destructor,
    .redraw = Redraw,
    .mouseDown = MouseDown,
    .mouseDrag = MouseDrag,
    .mouseUp = MouseUp,
    .close = Nothing,
    .drawOffscreen = DrawOffscreen,
    .setSpecialBackground = Nothing,
    .stateChanged = NothingWithCode,
    .controlHandleGetter = HandleGetter,
};

KELPcontrol gControl = {7,       "Placard", sizeof(PlacardData), 0x158, 0,       0,
                        64,      64,        gProperties,         1,     nullptr, 0,
                        gEvents, 3,         &gBehaviour,         0,     nullptr, 0,
                        nullptr};

} // namespace

KELPcontrol *PlacardControl() { return &gControl; }

} // namespace pack
