// LittleArrows and UpDownArrows (two halves that repeat while held), and
// ChasingArrows and ProgressWheel (a ring of eight dots that turns while the
// program idles).  Each pair shares one behaviour table.
#include "pack.h"

namespace pack {
namespace {

// ----------------------------------------------------- LittleArrows, UpDown

enum Part { kNone = 0, kUpPart = 1, kDownPart = 2 };

struct ArrowsData {
    int32_t pressedPart, drawnPart, pressTick, hoverPart;
    int32_t lastRepeat;
};

KELPevent gLittleEvents[] = {{"Up", nullptr}, {"Down", nullptr}};
KELPevent gUpDownEvents[] = {{"Up", nullptr}, {"Down", nullptr}};

KELPevent *EventsOf(RuntimeObject *self) {
    // The behaviour is shared: the control's record says whose events.
    const KELPcontrol *c = reinterpret_cast<RuntimeCustomControl *>(self)->definition;
    return c && c->events == gUpDownEvents ? gUpDownEvents : gLittleEvents;
}

// The part under a point relative to the control: rows 0 to 10 are the up
// half, 12 to 22 the down half, of 13 x 23.
int32_t PartAt(RuntimeObject *self, int32_t x, int32_t y) {
    const Box b = BoundsOf(self);
    x -= b.x, y -= b.y;
    if (x < 0 || x >= 13 || y < 0 || y >= 23)
        return kNone;
    return y < 12 ? kUpPart : kDownPart;
}

void ArrowsDraw(RuntimeObject *self, RuntimeObject *graphics, int x, int y) {
    Canvas c(self, graphics);
    if (!c.Ready() || !c.Widget())
        return;
    const ArrowsData *d = Data<ArrowsData>(self);
    const bool enabled = host.enabled(self) != 0;
    for (int part = kUpPart; part <= kDownPart; ++part) {
        const int top = y + (part == kUpPart ? 0 : 12);
        GtkStateType state = GTK_STATE_NORMAL;
        if (!enabled)
            state = GTK_STATE_INSENSITIVE;
        else if (d->hoverPart == part && d->pressedPart == part && d->drawnPart == part)
            state = GTK_STATE_ACTIVE;
        else if (d->hoverPart == part)
            state = GTK_STATE_PRELIGHT;
        gtk_paint_box(c.Style(), c.Drawable(), state, GTK_SHADOW_OUT, nullptr, c.Widget(), "button",
                      x, top, 13, 11);
        gtk_paint_arrow(c.Style(), c.Drawable(), state, GTK_SHADOW_NONE, nullptr, c.Widget(),
                        "arrow", part == kUpPart ? GTK_ARROW_UP : GTK_ARROW_DOWN, TRUE, x + 4,
                        top + 3, 6, 6);
    }
}
void ArrowsRedraw(RuntimeObject *self, RuntimeObject *g) { ArrowsDraw(self, g, 0, 0); }
void ArrowsOffscreen(RuntimeObject *self, RuntimeObject *g) {
    const Box b = BoundsOf(self);
    ArrowsDraw(self, g, b.x, b.y);
}

void FirePart(RuntimeObject *self, int32_t part) {
    Fire(self, EventsOf(self)[part == kUpPart ? 0 : 1]);
}

int32_t ArrowsDown(RuntimeObject *self, int32_t x, int32_t y) {
    const int32_t part = PartAt(self, x, y);
    if (!host.enabled(self) || part == kNone)
        return 0;
    ArrowsData *d = Data<ArrowsData>(self);
    d->pressTick = d->lastRepeat = Ticks();
    d->pressedPart = d->drawnPart = d->hoverPart = part;
    FirePart(self, part);
    ArrowsRedraw(self, nullptr);
    return 1;
}
void ArrowsDrag(RuntimeObject *self, int32_t x, int32_t y) {
    ArrowsData *d = Data<ArrowsData>(self);
    const int32_t on = PartAt(self, x, y) == d->pressedPart ? d->pressedPart : kNone;
    if (on != d->drawnPart) {
        d->drawnPart = on;
        ArrowsRedraw(self, nullptr);
    }
    const int32_t now = Ticks();
    if (on != kNone && now - d->pressTick > 15 && now - d->lastRepeat > 1) {
        d->lastRepeat = now; // held: the event repeats
        FirePart(self, on);
    }
}
void ArrowsUp(RuntimeObject *self, int32_t, int32_t) {
    Data<ArrowsData>(self)->pressedPart = Data<ArrowsData>(self)->drawnPart = kNone;
    ArrowsRedraw(self, nullptr);
}
void ArrowsMove(RuntimeObject *self, int32_t x, int32_t y) {
    Data<ArrowsData>(self)->hoverPart = PartAt(self, x, y);
    host.invalidate(self);
}
void ArrowsExit(RuntimeObject *self) {
    Data<ArrowsData>(self)->hoverPart = kNone;
    host.invalidate(self);
}

KELPcontrolBehaviour gArrowsBehaviour = {
    .redraw = ArrowsRedraw,
    .mouseDown = ArrowsDown,
    .mouseDrag = ArrowsDrag,
    .mouseUp = ArrowsUp,
    .close = Nothing,
    .drawOffscreen = ArrowsOffscreen,
    .mouseExit = ArrowsExit,
    .mouseMove = ArrowsMove,
    .stateChanged = NothingWithCode,
};
KELPcontrol gLittleArrows = {7,
                             "LittleArrows",
                             sizeof(ArrowsData),
                             0xD0,
                             0,
                             0,
                             13,
                             23,
                             nullptr,
                             0,
                             nullptr,
                             0,
                             gLittleEvents,
                             2,
                             &gArrowsBehaviour,
                             0,
                             nullptr,
                             0,
                             nullptr};
KELPcontrol gUpDownArrows = {7,
                             "UpDownArrows",
                             sizeof(ArrowsData),
                             0xD0,
                             0,
                             0,
                             13,
                             23,
                             nullptr,
                             0,
                             nullptr,
                             0,
                             gUpDownEvents,
                             2,
                             &gArrowsBehaviour,
                             0,
                             nullptr,
                             0,
                             nullptr};

// --------------------------------------------- ChasingArrows, ProgressWheel

struct WheelData {
    int32_t frame; // 0 to 7
    uint8_t hidden;
    int32_t lastTick;
    GtkWidget *widget; // made in open
};

struct Dot {
    int x, y;
    uint32_t colour;
};
constexpr Dot kRing[8] = {
    {6, 0, 0x64686A},  {10, 2, 0x717577}, {12, 6, 0x7D8183}, {10, 10, 0x8A8E90},
    {6, 12, 0x979B9D}, {2, 10, 0xA4A8AA}, {0, 6, 0xB0B4B6},  {2, 2, 0xBDC1C3},
};

void WheelDraw(RuntimeObject *self, RuntimeObject *graphics, int x, int y) {
    Canvas c(self, graphics);
    if (!c.Ready())
        return;
    const int32_t frame = Data<WheelData>(self)->frame;
    for (int i = 0; i < 8; ++i) {
        const Dot &at = kRing[7 - i];
        c.Rgb(kRing[(frame + i) % 8].colour);
        // 4 x 4 without its corners
        c.Fill(x + at.x + 1, y + at.y, 2, 4);
        c.Fill(x + at.x, y + at.y + 1, 4, 2);
    }
}
void WheelRedraw(RuntimeObject *self, RuntimeObject *g) {
    GtkWidget *w = Data<WheelData>(self)->widget;
    WheelDraw(self, g, w ? w->allocation.x : 0, w ? w->allocation.y : 0);
}
void WheelOffscreen(RuntimeObject *self, RuntimeObject *g) {
    const Box b = BoundsOf(self);
    int32_t ox = 0, oy = 0;
    host.graphicsOrigin(g, &ox, &oy);
    WheelDraw(self, g, b.x - ox, b.y - oy);
}
void WheelOpen(RuntimeObject *self) {
    if (!Data<WheelData>(self)->widget)
        Data<WheelData>(self)->widget = NewOwnedFixed();
}
void WheelDestructor(RuntimeObject *self) { ReleaseOwned(Data<WheelData>(self)->widget); }
void *WheelHandle(RuntimeObject *self) { return Data<WheelData>(self)->widget; }

// Turns one step when more than a tick has passed; a hidden ring stays still.
void WheelIdle(RuntimeObject *self) {
    WheelData *d = Data<WheelData>(self);
    if (!host.visible(self) || !host.panelVisible(self)) {
        d->hidden = 1;
        return;
    }
    d->hidden = 0;
    const int32_t now = Ticks();
    if (now > d->lastTick + 1) {
        d->lastTick = now;
        d->frame = (d->frame + 1) % 8;
        WheelRedraw(self, nullptr);
    }
}

KELPcontrolBehaviour gWheelBehaviour = {
    .destructor = WheelDestructor,
    .redraw = WheelRedraw,
    .open = WheelOpen,
    .close = Nothing,
    .backgroundIdle = WheelIdle,
    .drawOffscreen = WheelOffscreen,
    .stateChanged = NothingWithCode,
    .controlHandleGetter = WheelHandle,
};
KELPcontrol gChasingArrows = {7,
                              "ChasingArrows",
                              sizeof(WheelData),
                              0xD0,
                              0,
                              0,
                              16,
                              16,
                              nullptr,
                              0,
                              nullptr,
                              0,
                              nullptr,
                              0,
                              &gWheelBehaviour,
                              0,
                              nullptr,
                              0,
                              nullptr};
KELPcontrol gProgressWheel = {7,
                              "ProgressWheel",
                              sizeof(WheelData),
                              0xD0,
                              0,
                              0,
                              16,
                              16,
                              nullptr,
                              0,
                              nullptr,
                              0,
                              nullptr,
                              0,
                              &gWheelBehaviour,
                              0,
                              nullptr,
                              0,
                              nullptr};

} // namespace

KELPcontrol *LittleArrowsControl() { return &gLittleArrows; }
KELPcontrol *UpDownArrowsControl() { return &gUpDownArrows; }
KELPcontrol *ChasingArrowsControl() { return &gChasingArrows; }
KELPcontrol *ProgressWheelControl() { return &gProgressWheel; }

} // namespace pack
