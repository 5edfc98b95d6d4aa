// Canvas: an empty GtkFixed painted at each expose.  The backdrop is drawn
// at the pane's corner, cut off at its right and bottom, never scaled; then
// the Paint event gets a Graphics whose coordinates start at that corner.
#include "canvas/canvas.h"

#include "controls/classes.h"
#include "graphics/graphics_gtk.h"
#include "graphics/graphics_object.h"
#include "objects/definitions.h"
#include "pictures/picture_object.h"
#include "strings/kstring.h"
#include "windows/runtime_view.h"

#include "kelp/canvas.h"
#include "kelp/graphics.h"
#include "kelp/objects.h"

#include <algorithm>
#include <cstddef>

namespace kelp {
namespace {

ObjectHook *gPaint, *gGotFocus, *gLostFocus, *gKeyDown, *gMouseDown, *gMouseDrag, *gMouseUp,
    *gEnableMenuItems;

CanvasRecord *Record(RuntimeObject *o) { return reinterpret_cast<CanvasRecord *>(o); }

uint32_t gDragsEnded = 0;

constexpr int32_t kWholeSide = -10000; // Scroll's default width and height

Rect Intersect(const Rect &a, const Rect &b) {
    return Rect{std::max(a.top, b.top), std::max(a.left, b.left), std::min(a.bottom, b.bottom),
                std::min(a.right, b.right)};
}
bool IsEmpty(const Rect &r) { return r.right <= r.left || r.bottom <= r.top; }

// Another Graphics' target seen with its pane moved: DrawInto hands the
// Paint handler a Graphics whose language coordinates start at (x, y) of
// the Graphics it draws into.
class ShiftedTarget : public GraphicsTarget {
public:
    ShiftedTarget(GraphicsTarget *inner, Rect bounds) : mInner(inner), mBounds(bounds) {}
    GdkDrawable *Drawable() override { return mInner->Drawable(); }
    GdkGC *GetGC() override { return mInner->GetGC(); }
    GtkWidget *Widget() override { return mInner->Widget(); }
    bool OnScreen() const override { return mInner->OnScreen(); }
    Rect Bounds() const override { return mBounds; }
    int32_t DrawableOffsetX() const override { return mInner->DrawableOffsetX(); }
    int32_t DrawableOffsetY() const override { return mInner->DrawableOffsetY(); }
    bool SharesWindowDrawable() const override { return mInner->SharesWindowDrawable(); }
    bool BackColor(uint32_t &colorWord) const override { return mInner->BackColor(colorWord); }
    void PrepareForDrawing() override { mInner->PrepareForDrawing(); }

private:
    GraphicsTarget *mInner;
    Rect mBounds;
};

// Lends a Graphics for a Paint drawn into `g` with its corner at `at` and
// clipped to `clip`.  The screen's drawing goes through a GraphicsGTK on a
// target shifted to `at`; any other Graphics (a printed page) is lent
// itself with its origin moved to `at`, so a print-out gets the Paint too.
template <typename Paint>
void PaintInto(Graphics &g, const Rect &at, const Rect &clip, Paint &&paint) {
    if (dynamic_cast<GraphicsGTK *>(&g)) {
        ShiftedTarget shifted(g.Target(), at);
        GraphicsGTK lent(&shifted);
        lent.SetClipRect(&clip);
        paint(&lent);
        return;
    }
    GraphicsStateSaver state(g);
    const int32_t x = g.OriginX(), y = g.OriginY();
    const Rect own{
        static_cast<int16_t>(clip.top - at.top), static_cast<int16_t>(clip.left - at.left),
        static_cast<int16_t>(clip.bottom - at.top), static_cast<int16_t>(clip.right - at.left)};
    g.SetOrigin(x - at.left, y - at.top);
    g.SetClipRect(&own);
    paint(&g);
    g.SetOrigin(x, y);
}

// The window makes the pane that took a press the capture pane when
// MouseDown returns; after a drag the button is already up, so nothing would
// end that capture.  The pane is only compared, never touched: it may be
// gone by then.
void ReleaseCaptureAfterDrag(SubPane *pane) {
    g_idle_add(
        [](gpointer data) -> gboolean {
            if (MouseCapturePane() == static_cast<SubPane *>(data))
                SetMouseCapturePane(nullptr);
            return FALSE;
        },
        pane);
}

gboolean OnExpose(GtkWidget *, GdkEventExpose *, gpointer data) {
    static_cast<CanvasPane *>(data)->Expose();
    return FALSE;
}

} // namespace

CanvasPane::CanvasPane(CanvasRecord *record) : ControlPane(&record->control), mRecord(record) {
    SetWidget(gtk_fixed_new());
    g_signal_connect(mWidget, "expose-event", G_CALLBACK(OnExpose), this);
    gtk_widget_show(mWidget);
}

// The Graphics property's object draws on this pane's widget: it must not
// outlive it with a handle.
CanvasPane::~CanvasPane() { DetachGraphicsObject(mRecord->graphicsObject); }

void CanvasPane::Draw(Graphics *g) {
    if (!g || !visible || !panelVisible)
        return;
    // Only the part of the pane inside its window is drawn.
    PaneRoot *root = Root();
    Rect rect = bounds;
    if (root)
        rect = Intersect(rect, Rect{0, 0, int16_t(root->height), int16_t(root->width)});
    if (IsEmpty(rect))
        return;
    g->SetClipRect(&rect);
    DrawBackColor(*g, rect);
    DrawBackdrop(*g, bounds);
    if (!mRunControl || !FindEventHandler(mRunControl, gPaint))
        return;
    // The handler's Graphics is clipped to the pane, not to the exposed part.
    Graphics *paint = NewGraphics();
    if (!paint)
        return;
    {
        ClipSaver saver(*paint);
        FirePaint(paint);
    }
    delete paint;
}

// An embedded container's back colour, under its backdrop and controls;
// a plain canvas has none.
void CanvasPane::DrawBackColor(Graphics &g, const Rect &at) {
    auto *view = reinterpret_cast<ViewRecord *>(mRecord->templateWindow);
    if (!view || !view->hasBackColor)
        return;
    GraphicsStateSaver state(g);
    g.SetForeColor(ColorWordToRGB(uint32_t(view->backColor)));
    g.FillRect(at);
}

void CanvasPane::DrawBackdrop(Graphics &g, const Rect &at) {
    DrawablePane *store = StoreOf(mRecord->backdrop);
    if (!store)
        return;
    const int32_t w = std::min(store->Width(), width), h = std::min(store->Height(), height);
    if (w <= 0 || h <= 0)
        return;
    mRecord->backdropSerial = store->Width() ^ (store->Height() << 16);
    const bool masked = store->mMask != nullptr ||
                        reinterpret_cast<PictureRecord *>(mRecord->backdrop)->transparent == 1;
    store->CopyRect(g, RectFromXYWH(0, 0, w, h), RectFromXYWH(at.left, at.top, w, h), masked);
}

// Paint with `g` wrapped in a Graphics object for the length of the event;
// an object the handler keeps draws nothing afterwards.
void CanvasPane::FirePaint(Graphics *g) {
    RuntimeObject *object = NewGraphicsObject(g, false);
    bool alive;
    FireLocked(gPaint, &alive, object);
    DetachGraphicsObject(object);
    RuntimeUnlockObject(object);
}

void CanvasPane::DrawInto(Graphics &g, int32_t x, int32_t y) {
    if (!visible || !panelVisible || !g.Target())
        return;
    const Rect origin = g.Target()->Bounds();
    const Rect at = RectFromXYWH(origin.left + x, origin.top + y, width, height);
    {
        GraphicsStateSaver state(g);
        g.SetClipRect(&at);
        DrawBackColor(g, at);
        DrawBackdrop(g, at);
    }
    if (mRunControl && FindEventHandler(mRunControl, gPaint))
        PaintInto(g, at, at, [this](Graphics *lent) { FirePaint(lent); });
    for (SubPane *child : std::vector<SubPane *>(mChildren))
        if (auto *canvas = dynamic_cast<CanvasPane *>(child))
            canvas->DrawInto(g, x + child->bounds.left - bounds.left,
                             y + child->bounds.top - bounds.top);
}

void CanvasPane::EnableMenuItems() {
    bool alive;
    FireLocked(gEnableMenuItems, &alive);
    if (alive && !closing)
        ControlPane::EnableMenuItems();
}

// Controls on the canvas get the press first; the one that takes it gets the
// drag and the release too.
bool CanvasPane::MouseDown(int32_t x, int32_t y, int32_t modifiers) {
    mChildPress = nullptr;
    mPressTaken = false;
    for (size_t i = mChildren.size(); i-- > 0;) {
        SubPane *child = mChildren[i];
        if (child->visible && child->HitTest(x, y) && child->MouseDown(x, y, modifiers)) {
            mChildPress = child;
            return true;
        }
    }
    if (!enabled || !mRunControl || !FindEventHandler(mRunControl, gMouseDown))
        return false;
    const uint32_t drags = gDragsEnded;
    bool alive;
    bool taken = FireLocked<uint8_t>(gMouseDown, &alive, x - bounds.left, y - bounds.top) != 0;
    if (!alive)
        return true;
    // A drag started by the handler ended with the button up: no MouseDrag
    // or MouseUp belongs to this press any more.
    mPressTaken = taken && drags == gDragsEnded;
    if (taken && !mPressTaken)
        ReleaseCaptureAfterDrag(this);
    return taken;
}

void CanvasPane::MouseDrag(int32_t x, int32_t y) {
    if (mChildPress) {
        if (Contains(mChildPress))
            mChildPress->MouseDrag(x, y);
        return;
    }
    bool alive;
    if (mPressTaken)
        FireLocked(gMouseDrag, &alive, x - bounds.left, y - bounds.top);
}

void CanvasPane::MouseUp(int32_t x, int32_t y) {
    SubPane *child = mChildPress;
    mChildPress = nullptr;
    if (child) {
        if (Contains(child))
            child->MouseUp(x, y);
        return;
    }
    bool alive;
    if (mPressTaken)
        FireLocked(gMouseUp, &alive, x - bounds.left, y - bounds.top);
    mPressTaken = false;
}

bool CanvasPane::CanFocus() {
    return mRecord->acceptFocus && enabled && visible && panelVisible && !closing;
}

// The GtkFixed can't hold the toolkit's focus; the window's focus widget is
// cleared so that no other widget goes on taking the keys.
void CanvasPane::GainFocus() {
    if (Window *window = WindowOf(this); window && window->GtkWin())
        gtk_window_set_focus(GTK_WINDOW(window->GtkWin()), nullptr);
    bool alive;
    FireLocked(gGotFocus, &alive);
}

void CanvasPane::LoseFocus() {
    bool alive;
    FireLocked(gLostFocus, &alive);
}

// A Tab goes to the window (which moves the focus) unless the canvas takes
// tabs.  Characters beyond ASCII come as UTF-8 from the key event itself;
// the others as one character of the system's encoding.
bool CanvasPane::KeyDown(int32_t character, int32_t, int32_t) {
    if (character == 9 && !mRecord->acceptTabs)
        return false;
    if (!mRunControl || !FindEventHandler(mRunControl, gKeyDown))
        return false;
    uint32_t unicode = 0;
    if (GdkEvent *event = gtk_get_current_event()) {
        if (event->type == GDK_KEY_PRESS)
            unicode = gdk_keyval_to_unicode(event->key.keyval);
        gdk_event_free(event);
    }
    kelp::string key;
    if (unicode > 127) {
        key = kelp::string::UnicodeChar(unicode, kEncodingUTF8);
    } else {
        const char byte = static_cast<char>(character);
        key = kelp::string::FromBytes(&byte, 1, kSystemDefaultEncoding);
    }
    bool alive;
    const bool taken = FireLocked<uint8_t>(gKeyDown, &alive, key.Storage()) != 0;
    return taken || !alive || closing;
}

void CanvasPane::ScrollPixels(int32_t dx, int32_t dy, const Rect &area) {
    GdkWindow *drawable = GetDrawable();
    if (!drawable || closing)
        return;
    PaneRoot *root = Root();
    const int32_t top = area.top + (root ? root->ContentTop() : 0);
    GdkRectangle r{area.left, top, area.right - area.left, area.bottom - area.top};
    if (r.width <= 0 || r.height <= 0)
        return;
    GdkRegion *region = gdk_region_rectangle(&r);
    gdk_window_move_region(drawable, region, dx, dy);
    // What moved past the area is not the area's any more: expose it too,
    // so that what lies there is drawn again.
    GdkRegion *moved = gdk_region_rectangle(&r);
    gdk_region_offset(moved, dx, dy);
    gdk_region_subtract(moved, region);
    gdk_window_invalidate_region(drawable, moved, TRUE);
    gdk_region_destroy(moved);
    gdk_region_destroy(region);
}

void NoteDragEnded() { ++gDragsEnded; }

CanvasPane *CanvasPaneOf(RuntimeObject *control) {
    if (!control || !IsControl(control))
        return nullptr;
    return dynamic_cast<CanvasPane *>(static_cast<ControlPane *>(Ctl(control)->pane));
}

} // namespace kelp

using namespace kelp;

extern "C" void CanvasCreatePane(RuntimeObject *self) {
    if (!self || Ctl(self)->pane || !WindowForControl(Ctl(self)))
        return;
    Ctl(self)->pane = new CanvasPane(Record(self));
}

extern "C" void RuntimeCanvasInitializer(RuntimeObject *self) {
    if (self)
        Record(self)->acceptFocus = 0;
}

extern "C" void RuntimeCanvasDestructor(RuntimeObject *self) {
    if (!self)
        return;
    CanvasRecord *r = Record(self);
    DetachGraphicsObject(r->graphicsObject);
    RuntimeUnlockObject(r->graphicsObject);
    RuntimeUnlockObject(r->backdrop);
    r->graphicsObject = r->backdrop = nullptr; // templateWindow isn't counted
}

// One object for the control's life, drawing on the widget's window; the
// next exposure erases what it drew.
extern "C" RuntimeObject *canvasGraphicsGetter(RuntimeObject *self, int32_t) {
    CanvasPane *pane = CanvasPaneOf(self);
    if (!pane)
        return nullptr;
    CanvasRecord *r = Record(self);
    if (r->graphicsObject && !GraphicsOfObject(r->graphicsObject)) {
        RuntimeUnlockObject(r->graphicsObject); // an earlier pane's, detached
        r->graphicsObject = nullptr;
    }
    if (!r->graphicsObject)
        r->graphicsObject = NewGraphicsObject(pane->NewGraphics(), true);
    if (Graphics *g = GraphicsOfObject(r->graphicsObject))
        g->SetClipRect(&pane->bounds);
    RuntimeLockObject(r->graphicsObject);
    return r->graphicsObject;
}

extern "C" void canvasBackdropSetter(RuntimeObject *self, int32_t, RuntimeObject *picture) {
    if (!self)
        return;
    RuntimeLockObject(picture);
    RuntimeUnlockObject(Record(self)->backdrop);
    Record(self)->backdrop = picture;
    if (CanvasPane *pane = CanvasPaneOf(self))
        pane->Invalidate(true);
}

extern "C" void canvasScroll(RuntimeObject *self, int32_t dx, int32_t dy, int32_t left, int32_t top,
                             int32_t width, int32_t height, uint8_t scrollControls) {
    if (dx == 0 && dy == 0)
        return;
    CanvasPane *pane = CanvasPaneOf(self);
    if (!pane)
        return;
    if (width == kWholeSide)
        width = pane->width;
    if (height == kWholeSide)
        height = pane->height;
    const int32_t x = pane->bounds.left + left, y = pane->bounds.top + top;
    pane->ScrollPixels(dx, dy, RectFromXYWH(x, y, width, height));
    if (!scrollControls)
        return;
    for (SubPane *child : std::vector<SubPane *>(pane->Children())) {
        Rect b = child->bounds;
        child->SetBounds(Rect{int16_t(b.top + dy), int16_t(b.left + dx), int16_t(b.bottom + dy),
                              int16_t(b.right + dx)},
                         false);
    }
}

extern "C" void RuntimeControlDrawInto(RuntimeObject *control, RuntimeObject *graphics,
                                       int32_t left, int32_t top) {
    Graphics *g = GraphicsOfObject(graphics);
    if (CanvasPane *pane = CanvasPaneOf(control); pane && g)
        pane->DrawInto(*g, left, top);
}

namespace kelp {

// A window's Backdrop on the screen or on any Graphics: whole, unscaled, at
// the top left, masked as the picture says, cut off by the window.
void DrawWindowBackdrop(Graphics &g, RuntimeObject *picture, int32_t width, int32_t height) {
    DrawablePane *store = StoreOf(picture);
    if (!store)
        return;
    const int32_t w = std::min(store->Width(), width);
    const int32_t h = std::min(store->Height(), height);
    if (w <= 0 || h <= 0)
        return;
    Rect bounds{};
    if (GraphicsTarget *target = g.Target()) {
        target->PrepareForDrawing();
        bounds = target->Bounds();
    }
    const bool masked =
        store->mMask != nullptr || reinterpret_cast<PictureRecord *>(picture)->transparent == 1;
    store->CopyRect(g, RectFromXYWH(0, 0, w, h), RectFromXYWH(bounds.left, bounds.top, w, h),
                    masked);
}

} // namespace kelp

namespace {

// The window's background into `g` with the content's corner at `at`: the
// back colour (else the theme's fill), the Backdrop picture at the corner,
// cut and not scaled, then the window's Paint.  Drawing stays inside `g`'s
// own clip, if it has one.
void DrawWindowBackground(Graphics &g, ViewRecord *view, RuntimeViewWindow *window,
                          const Rect &at) {
    Rect clip = at;
    if (const Rect *own = g.ClipRect())
        clip = Rect{std::max(at.top, own->top), std::max(at.left, own->left),
                    std::min(at.bottom, own->bottom), std::min(at.right, own->right)};
    if (IsEmpty(clip))
        return;
    {
        GraphicsStateSaver state(g);
        g.SetClipRect(&clip);
        g.SetForeColor(
            ColorWordToRGB(window->hasBackdropColor ? window->backdropColor : getFillColor()));
        g.FillRect(at);
        if (DrawablePane *store = StoreOf(view->backdrop)) {
            const int32_t w = std::min(store->Width(), window->width);
            const int32_t h = std::min(store->Height(), window->height);
            const bool masked = store->mMask != nullptr ||
                                reinterpret_cast<PictureRecord *>(view->backdrop)->transparent == 1;
            if (w > 0 && h > 0)
                store->CopyRect(g, RectFromXYWH(0, 0, w, h), RectFromXYWH(at.left, at.top, w, h),
                                masked);
        }
    }
    PaintInto(g, at, clip, [window](Graphics *lent) { window->DrawContents(lent); });
}

} // namespace

// The window's background, its Paint, and the canvases on it, into
// `graphics` with the content's corner at (left, top).
extern "C" void formDrawInto(RuntimeObject *view, RuntimeObject *graphics, int32_t left,
                             int32_t top) {
    Graphics *g = GraphicsOfObject(graphics);
    RuntimeViewWindow *window = view ? reinterpret_cast<ViewRecord *>(view)->pane : nullptr;
    if (!g || !window || !g->Target())
        return;
    const Rect origin = g->Target()->Bounds();
    DrawWindowBackground(
        *g, reinterpret_cast<ViewRecord *>(view), window,
        RectFromXYWH(origin.left + left, origin.top + top, window->width, window->height));
    for (SubPane *child : std::vector<SubPane *>(window->Children()))
        if (auto *canvas = dynamic_cast<CanvasPane *>(child))
            canvas->DrawInto(*g, left + child->bounds.left, top + child->bounds.top);
}

// What lies behind a control at (x, y) of the window, for a control that
// draws itself and wants to look see-through: the window's background as
// formDrawInto draws it, shifted so that the window's point (x, y) lands on
// the origin of `graphics`.  Controls are not background: none is drawn.
extern "C" void formDrawBackground(RuntimeObject *view, RuntimeObject *graphics, int32_t x,
                                   int32_t y) {
    Graphics *g = GraphicsOfObject(graphics);
    RuntimeViewWindow *window = view ? reinterpret_cast<ViewRecord *>(view)->pane : nullptr;
    if (!g || !window || !g->Target())
        return;
    const Rect origin = g->Target()->Bounds();
    DrawWindowBackground(
        *g, reinterpret_cast<ViewRecord *>(view), window,
        RectFromXYWH(origin.left - x, origin.top - y, window->width, window->height));
}

namespace kelp {

ObjectDefinition *CanvasDefinition() {
    static const PropertyRow properties[] = {
        {0, "Graphics", &kTypePtr, KELP_ENTRY(canvasGraphicsGetter), {}, -9},
        {0, "Backdrop", &kTypePtr, KELP_ENTRY(objGetter), KELP_ENTRY(canvasBackdropSetter),
         offsetof(CanvasRecord, backdrop)},
        {0, "AcceptFocus", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD,
         offsetof(CanvasRecord, acceptFocus)},
        {0, "AcceptTabs", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD,
         offsetof(CanvasRecord, acceptTabs)},
        {0, "UseFocusRing", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD,
         offsetof(CanvasRecord, useFocusRing)},
        {0, "EraseBackground", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD,
         offsetof(CanvasRecord, eraseBackground)},
    };
    static const ParameterRow scrollParams[] = {
        {"dx", &kTypeInteger},
        {"dy", &kTypeInteger},
        {"left", &kTypeInteger, "0"},
        {"top", &kTypeInteger, "0"},
        {"width", &kTypeInteger, "-10000"},
        {"height", &kTypeInteger, "-10000"},
        {"scrollControls", &kTypeBoolean, "True"},
    };
    static const MethodRow methods[] = {
        {"Scroll", nullptr, scrollParams, 7, KELP_ENTRY(canvasScroll)},
    };
    static const EventRow events[] = {
        {"Paint", "g As Graphics", nullptr, &gPaint},
        {"GotFocus", "", nullptr, &gGotFocus},
        {"LostFocus", "", nullptr, &gLostFocus},
        {"KeyDown", "Key As String", "Boolean", &gKeyDown},
        {"MouseDown", "X As Integer, Y As Integer", "Boolean", &gMouseDown},
        {"MouseDrag", "X As Integer, Y As Integer", nullptr, &gMouseDrag},
        {"MouseUp", "X As Integer, Y As Integer", nullptr, &gMouseUp},
        {"EnableMenuItems", "", nullptr, &gEnableMenuItems},
        {"DragEnter", "obj As DragItem"},
        {"DragExit", "obj As DragItem"},
        {"DragMove", "X As Integer, Y As Integer, obj As DragItem"},
    };
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&CanvasCreatePane)}};
    static const ClassDescription description = {
        .name = "Canvas",
        .super = RectControlDefinition,
        .instanceSize = sizeof(CanvasRecord),
        .initializer = KELP_ENTRY(RuntimeCanvasInitializer),
        .finalizer = KELP_ENTRY(RuntimeCanvasDestructor),
        .properties = properties,
        .methods = methods,
        .events = events,
        .hookInstances = hooks,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
