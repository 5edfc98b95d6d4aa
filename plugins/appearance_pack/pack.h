// The appearance control pack: ten controls that draw themselves with the
// toolkit, as one plug-in.  This file is what the controls share: the
// runtime calls found through the resolver, the instance data, drawing.
#pragma once

#include "kelp/plugin.h"

#include <gtk/gtk.h>

#include <cstddef>
#include <cstdint>

namespace pack {

// The runtime's functions, found once through the resolver.
struct Host {
    void (*registerVersion)(int32_t);
    void (*registerControl)(KELPcontrol *);
    void (*bounds)(RuntimeObject *, KelpRect *);
    int32_t (*enabled)(RuntimeObject *);
    int32_t (*visible)(RuntimeObject *);
    int32_t (*panelVisible)(RuntimeObject *);
    void *(*handle)(RuntimeObject *);
    void (*invalidate)(RuntimeObject *);
    RuntimeObject *(*controlGraphics)(RuntimeObject *);
    void *(*eventInstance)(RuntimeObject *, void *);
    void *(*drawable)(RuntimeObject *);
    void (*graphicsOrigin)(RuntimeObject *, int32_t *, int32_t *);
    void (*lockObject)(RuntimeObject *);
    void (*unlockObject)(RuntimeObject *);
    void *(*globalMethod)(void *, const char *);
    void (*lockString)(KelpString);
    void (*unlockString)(KelpString);
    void (*drawPicture)(RuntimeObject *, RuntimeObject *, int32_t, int32_t, int32_t, int32_t,
                        int32_t, int32_t, int32_t, int32_t);
    int32_t (*propertyInt)(RuntimeObject *, const char *, int32_t *);
    KelpString (*defaultCaption)();
    KelpString (*defaultFont)();
    int32_t (*defaultFontSize)();
};
extern Host host;
// False when a function is missing: the pack then registers nothing.
bool ResolveHost(KELPResolver resolve);

// The runtime's clock in sixtieths of a second, by its "Ticks" function.
int32_t Ticks();

// A control's data lie behind the control fields.
template <typename T> T *Data(RuntimeObject *self) {
    return reinterpret_cast<T *>(reinterpret_cast<char *>(self) + KELP_CONTROL_DATA_OFFSET);
}

// The bounds as a box: left, top, width and height.
struct Box {
    int x = 0, y = 0, w = 0, h = 0;
};
Box BoundsOf(RuntimeObject *self);

// Where a drawing goes and with what: the drawable of the Graphics (or of
// the control when none is given), one GC, and the widget's style.
class Canvas {
public:
    Canvas(RuntimeObject *self, RuntimeObject *graphics);
    ~Canvas();
    Canvas(const Canvas &) = delete;
    Canvas &operator=(const Canvas &) = delete;
    bool Ready() const { return mDrawable && mGC; }
    GdkDrawable *Drawable() const { return mDrawable; }
    GdkGC *GC() const { return mGC; }
    GtkStyle *Style() const { return mStyle; }
    GtkWidget *Widget() const { return mWidget; }
    RuntimeObject *Graphics() const { return mGraphics; }

    void Colour(const GdkColor &c) { gdk_gc_set_rgb_fg_color(mGC, &c); }
    void Grey(uint16_t level) { Colour(GdkColor{0, level, level, level}); }
    void Rgb(uint32_t rgb);
    void Fill(int x, int y, int w, int h) { gdk_draw_rectangle(mDrawable, mGC, TRUE, x, y, w, h); }
    void Frame(int x, int y, int w, int h) {
        gdk_draw_rectangle(mDrawable, mGC, FALSE, x, y, w, h);
    }
    void Line(int x1, int y1, int x2, int y2) { gdk_draw_line(mDrawable, mGC, x1, y1, x2, y2); }

private:
    RuntimeObject *mGraphics = nullptr;
    bool mOwnsGraphics = false;
    GdkDrawable *mDrawable = nullptr;
    GdkGC *mGC = nullptr;
    GtkStyle *mStyle = nullptr;
    GtkWidget *mWidget = nullptr;
};

inline constexpr uint16_t kWhite = 0xFFFF;
inline constexpr uint16_t kBevelGrey = 0xCECE;
inline constexpr uint16_t kLineGrey = 0x8F8F;

// The code compiled code gave for an event of this control, or null.
inline void *Handler(RuntimeObject *self, const KELPevent &event) {
    return host.eventInstance(self, event.forSystemUse);
}

// Fires a mouse event with the point made relative to the control; a
// Boolean event's result, false when nobody handles it.
bool FireMouse(RuntimeObject *self, const KELPevent &event, int32_t x, int32_t y);
// Fires an event without arguments.
void Fire(RuntimeObject *self, const KELPevent &event);

// Does nothing: the close and stateChanged entries of every control.
void Nothing(RuntimeObject *);
void NothingWithCode(RuntimeObject *, int32_t);

// The controls, in the order the pack registers them.
KELPcontrol *BevelButtonControl();
void ResolveBevelButtonCalls(KELPResolver resolve);
KELPcontrol *ChasingArrowsControl();
KELPcontrol *ProgressWheelControl();
KELPcontrol *LittleArrowsControl();
KELPcontrol *UpDownArrowsControl();
KELPcontrol *PlacardControl();
KELPcontrol *SeparatorControl();
KELPcontrol *PopupArrowControl();
KELPcontrol *DisclosureTriangleControl();
KELPcontrol *ImageWellControl();

// A filled triangle of a PopupArrow facing (0 to 7) at (x, y), in black or
// the insensitive colour; BevelButton draws its menu mark with it.
void DrawPopupArrow(Canvas &c, int facing, int x, int y, bool enabled);

// A fixed widget that is the control's own, kept alive by the control.
GtkWidget *NewOwnedFixed();
void ReleaseOwned(GtkWidget *&widget);

} // namespace pack
