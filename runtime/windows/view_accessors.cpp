// Accessors of the Window class beyond its geometry and frame: the pointer,
// focus, the backdrop, the cursor, balloon help, drawing now, and the
// generic field accessors that redraw the window they change.
#include "windows/runtime_view.h"

#include "graphics/graphics_object.h"
#include "objects/definitions.h"

#include "kelp/objects.h"
#include "kelp/windows.h"

#include <gtk/gtk.h>

#include <cstring>

using namespace kelp;

namespace {

ViewRecord *View(RuntimeObject *object) { return reinterpret_cast<ViewRecord *>(object); }

// A counted object field: the new value locked first, so storing the same
// object again is safe.
void Swap(RuntimeObject *&field, RuntimeObject *value) {
    RuntimeObject *old = field;
    RuntimeLockObject(value);
    field = value;
    RuntimeUnlockObject(old);
}

int32_t PointerCoordinate(RuntimeObject *self, bool wantX) {
    RuntimeViewWindow *pane = self ? View(self)->pane : nullptr;
    int32_t x = 0, y = 0;
    if (!pane || !pane->PointerInContent(x, y))
        return 0;
    return wantX ? x : y;
}

// The window a field change shows in, when the object is a window.
void RedrawIfWindow(RuntimeObject *self) {
    static RuntimeClass *window = ClassForDefinition(WindowDefinition());
    if (self && RuntimeObjectIsa(self, window) && View(self)->pane)
        View(self)->pane->Invalidate(true);
}

template <typename T> bool FieldFits(RuntimeObject *self, int32_t offset) {
    return self && self->klass && offset >= static_cast<int32_t>(sizeof(RuntimeObject)) &&
           static_cast<uint32_t>(offset) + sizeof(T) <= self->klass->instanceSize;
}

template <typename T> T ReadField(RuntimeObject *self, int32_t offset) {
    T value{};
    if (FieldFits<T>(self, offset))
        std::memcpy(&value, reinterpret_cast<unsigned char *>(self) + offset, sizeof value);
    return value;
}

template <typename T> void WriteField(RuntimeObject *self, int32_t offset, T value) {
    if (!FieldFits<T>(self, offset))
        return;
    std::memcpy(reinterpret_cast<unsigned char *>(self) + offset, &value, sizeof value);
    RedrawIfWindow(self);
}

} // namespace

extern "C" int32_t windowMouseXGetter(RuntimeObject *self, int32_t) {
    return PointerCoordinate(self, true);
}

extern "C" int32_t windowMouseYGetter(RuntimeObject *self, int32_t) {
    return PointerCoordinate(self, false);
}

extern "C" void formSetFocus(RuntimeObject *self) {
    if (self && View(self)->pane)
        SetFocus(View(self)->pane);
}

extern "C" RuntimeObject *windowBackdropGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return nullptr;
    RuntimeLockObject(View(self)->backdrop);
    return View(self)->backdrop;
}

extern "C" void windowBackdropSetter(RuntimeObject *self, int32_t, RuntimeObject *picture) {
    if (!self)
        return;
    Swap(View(self)->backdrop, picture);
    if (View(self)->pane)
        View(self)->pane->Invalidate(true);
}

extern "C" void formMouseCursorSetter(RuntimeObject *self, int32_t, RuntimeObject *cursor) {
    if (self)
        Swap(View(self)->mouseCursor, cursor);
}

extern "C" void windowBalloonHelpSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (self)
        View(self)->balloonHelp = value ? 1 : 0;
}

extern "C" intptr_t windowHWNDGetter(RuntimeObject *self, int32_t parameter) {
    return WindowHandleGetter(self, parameter);
}

extern "C" intptr_t windowWindowPtrGetter(RuntimeObject *self, int32_t parameter) {
    return WindowHandleGetter(self, parameter);
}

extern "C" intptr_t WindowToWindowPtr(RuntimeObject *self) { return WindowHandleGetter(self, 0); }

extern "C" void WindowForceUpdateFrontBuffer(RuntimeObject *self) {
    RuntimeViewWindow *pane = self ? View(self)->pane : nullptr;
    if (GdkWindow *drawable = pane ? pane->GetDrawable() : nullptr) {
        gdk_window_process_updates(drawable, TRUE);
        gdk_flush();
    }
}

extern "C" int32_t paneIntGetter(RuntimeObject *self, int32_t offset) {
    return ReadField<int32_t>(self, offset);
}

extern "C" void paneIntSetter(RuntimeObject *self, int32_t offset, int32_t value) {
    WriteField(self, offset, value);
}

extern "C" int16_t paneShortGetter(RuntimeObject *self, int32_t offset) {
    return ReadField<int16_t>(self, offset);
}

extern "C" void paneShortSetter(RuntimeObject *self, int32_t offset, int16_t value) {
    WriteField(self, offset, value);
}

extern "C" RuntimeObject *WindowDockItemGetter(RuntimeObject *, int32_t) { return nullptr; }
