// The pack's entry and what its controls share.
#include "pack.h"

namespace pack {

Host host;

namespace {

template <typename F> bool Find(KELPResolver resolve, const char *name, F &slot) {
    slot = reinterpret_cast<F>(resolve(name));
    return slot != nullptr;
}

} // namespace

bool ResolveHost(KELPResolver resolve) {
    return Find(resolve, "RegisterPluginVersion", host.registerVersion) &&
           Find(resolve, "PluginRegisterControl", host.registerControl) &&
           Find(resolve, "GetControlBounds", host.bounds) &&
           Find(resolve, "KELPGetControlEnabled", host.enabled) &&
           Find(resolve, "GetControlVisible", host.visible) &&
           Find(resolve, "GetTabPanelVisible", host.panelVisible) &&
           Find(resolve, "KELPGetControlHandle", host.handle) &&
           Find(resolve, "KELPInvalidateControl", host.invalidate) &&
           Find(resolve, "KELPGetControlGraphics", host.controlGraphics) &&
           Find(resolve, "GetEventInstance", host.eventInstance) &&
           Find(resolve, "KELPGraphicsGdkDrawable", host.drawable) &&
           Find(resolve, "KELPGetGraphicsOrigin", host.graphicsOrigin) &&
           Find(resolve, "KELPLockObject", host.lockObject) &&
           Find(resolve, "KELPUnlockObject", host.unlockObject) &&
           Find(resolve, "KELPLoadGlobalMethod", host.globalMethod) &&
           Find(resolve, "KELPLockString", host.lockString) &&
           Find(resolve, "KELPUnlockString", host.unlockString) &&
           Find(resolve, "RuntimeGraphicsDrawPicture", host.drawPicture) &&
           Find(resolve, "KELPGetPropValueInt", host.propertyInt) &&
           Find(resolve, "PluginDefaultControlCaption", host.defaultCaption) &&
           Find(resolve, "PluginDefaultControlFont", host.defaultFont) &&
           Find(resolve, "PluginDefaultControlFontSize", host.defaultFontSize);
}

int32_t Ticks() {
    static auto ticks =
        reinterpret_cast<int32_t (*)()>(host.globalMethod(nullptr, "Ticks() As Integer"));
    if (ticks)
        return ticks();
    return int32_t(g_get_monotonic_time() * 60 / G_USEC_PER_SEC);
}

Box BoundsOf(RuntimeObject *self) {
    KelpRect r{};
    host.bounds(self, &r);
    return Box{r.left, r.top, r.right - r.left, r.bottom - r.top};
}

Canvas::Canvas(RuntimeObject *self, RuntimeObject *graphics) : mGraphics(graphics) {
    if (!mGraphics) {
        mGraphics = host.controlGraphics(self);
        mOwnsGraphics = true;
    }
    mDrawable = mGraphics ? static_cast<GdkDrawable *>(host.drawable(mGraphics)) : nullptr;
    mWidget = static_cast<GtkWidget *>(host.handle(self));
    if (mDrawable)
        mGC = gdk_gc_new(mDrawable);
    mStyle = mWidget ? gtk_widget_get_style(mWidget) : nullptr;
    if (!mStyle)
        mStyle = gtk_widget_get_default_style();
}

Canvas::~Canvas() {
    if (mGC)
        g_object_unref(mGC);
    if (mOwnsGraphics && mGraphics)
        host.unlockObject(mGraphics);
}

void Canvas::Rgb(uint32_t rgb) {
    Colour(GdkColor{0, uint16_t(((rgb >> 16) & 0xFF) * 0x101),
                    uint16_t(((rgb >> 8) & 0xFF) * 0x101), uint16_t((rgb & 0xFF) * 0x101)});
}

bool FireMouse(RuntimeObject *self, const KELPevent &event, int32_t x, int32_t y) {
    void *code = Handler(self, event);
    if (!code)
        return false;
    const Box b = BoundsOf(self);
    return reinterpret_cast<uint8_t (*)(RuntimeObject *, int32_t, int32_t)>(code)(self, x - b.x,
                                                                                  y - b.y) != 0;
}

void Fire(RuntimeObject *self, const KELPevent &event) {
    if (void *code = Handler(self, event))
        reinterpret_cast<void (*)(RuntimeObject *)>(code)(self);
}

void Nothing(RuntimeObject *) {}
void NothingWithCode(RuntimeObject *, int32_t) {}

GtkWidget *NewOwnedFixed() {
    GtkWidget *w = gtk_fixed_new();
    g_object_ref_sink(w); // the control's until its destructor
    return w;
}

void ReleaseOwned(GtkWidget *&widget) {
    if (widget)
        g_object_unref(widget);
    widget = nullptr;
}

} // namespace pack

extern "C" __attribute__((visibility("default"))) void KELPPluginMain(KELPResolver resolve) {
    using namespace pack;
    if (!resolve || !ResolveHost(resolve))
        return;
    ResolveBevelButtonCalls(resolve);
    host.registerVersion(7);
    KELPcontrol *(*const controls[])() = {
        BevelButtonControl,        ChasingArrowsControl, ProgressWheelControl, LittleArrowsControl,
        UpDownArrowsControl,       PlacardControl,       SeparatorControl,     PopupArrowControl,
        DisclosureTriangleControl, ImageWellControl,
    };
    for (auto control : controls)
        host.registerControl(control());
}
