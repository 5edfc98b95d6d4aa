// The window's side of its controls as compiled code reaches it: elements
// of control arrays, Control(index) and ControlCount, moving the window by
// all four edges, its constructor and the objects of its layout; and the
// generic field accessors that repaint the control or window they change.
#include "controls/control.h"

#include "controls/control_map.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "objects/text.h"

#include "kelp/control_accessors.h"
#include "kelp/controls.h"
#include "kelp/objects.h"
#include "kelp/windows.h"

#include <cmath>
#include <vector>

namespace kelp {
namespace {

ViewRecord *View(RuntimeObject *object) { return reinterpret_cast<ViewRecord *>(object); }

bool IsWindow(RuntimeObject *object) {
    static RuntimeClass *window = ClassForDefinition(WindowDefinition());
    return object && RuntimeObjectIsa(object, window);
}

// Only controls count as the window's controls; timers and sockets of the
// layout are in the map too but have no place on the screen.
std::vector<RuntimeObject *> ControlsOnly(RuntimeObject *view) {
    std::vector<RuntimeObject *> all = ControlsOfView(view), controls;
    for (RuntimeObject *object : all)
        if (IsControl(object))
            controls.push_back(object);
    return controls;
}

// A field changed that the object shows: the control's pane, or the
// window's content, is painted again.
void Repaint(RuntimeObject *object) {
    if (IsControl(object)) {
        if (ControlPane *pane = PaneOf(object))
            pane->Invalidate(true);
    } else if (IsWindow(object) && View(object)->pane) {
        View(object)->pane->Invalidate(true);
    }
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *RuntimeControlArrayItemReference(RuntimeObject *view, KelpString name,
                                                           int32_t index) {
    if (!view || index == KELP_NOT_IN_ARRAY)
        return nullptr;
    KelpString key = objtext::Make(ControlKey(std::string(objtext::View(name)), index));
    RuntimeObject *control = RuntimeControlReference(view, key);
    objtext::Release(key);
    return control;
}

extern "C" RuntimeObject *windowControl(RuntimeObject *view, int32_t index) {
    if (!view)
        return nullptr;
    std::vector<RuntimeObject *> controls = ControlsOnly(view);
    if (index < 0 || index >= int32_t(controls.size())) {
        RaiseOutOfBounds();
        return nullptr;
    }
    RuntimeLockObject(controls[size_t(index)]);
    return controls[size_t(index)];
}

extern "C" int32_t windowControlCountGetter(RuntimeObject *view, int32_t) {
    return view ? int32_t(ControlsOnly(view).size()) : 0;
}

// Position first, so a window that moves and grows shows up where it
// belongs before its controls follow the new size.
extern "C" void WindowMove(RuntimeObject *view, int32_t left, int32_t top, int32_t width,
                           int32_t height) {
    if (!IsWindow(view))
        return;
    ViewRecord *record = View(view);
    bool moved = record->left != left || record->top != top;
    bool sized = record->width != width || record->height != height;
    record->left = left, record->top = top, record->width = width, record->height = height;
    if (!record->pane)
        return;
    if (moved)
        record->pane->Move(left, top, true);
    if (sized)
        record->pane->Resize(width, height, true);
}

// The language's Window() constructor runs after the initializer, which
// lays the window out and builds it.  A window of a class an image built
// without naming that initializer is laid out and built here instead.
extern "C" void WindowDefaultConstructor(RuntimeObject *view) {
    if (IsWindow(view) && !View(view)->controlsCreated && !View(view)->pane)
        RuntimeCreateWindow(view);
}

extern "C" RuntimeObject *WindowAllocateObject(RuntimeObject *view, RuntimeClass *klass) {
    if (!klass)
        return nullptr;
    RuntimeObject *object = RuntimeNewObject(klass);
    // A control made for a window's layout is the window's child: its
    // coordinates are the window's, not those of a containing view.
    if (IsControl(object))
        Ctl(object)->isWindowChild = IsWindow(view) ? 1 : 0;
    return object;
}

extern "C" uint8_t paneBoolGetter(RuntimeObject *object, int32_t offset) {
    return boolGetter(object, offset);
}

extern "C" void paneBoolSetter(RuntimeObject *object, int32_t offset, uint8_t value) {
    boolSetter(object, offset, value != 0);
    Repaint(object);
}

extern "C" RuntimeObject *paneObjGetter(RuntimeObject *object, int32_t offset) {
    return objGetter(object, offset);
}

extern "C" void paneObjSetter(RuntimeObject *object, int32_t offset, RuntimeObject *value) {
    objSetter(object, offset, value);
    Repaint(object);
}

extern "C" KelpString paneStringGetter(RuntimeObject *object, int32_t offset) {
    return stringGetter(object, offset);
}

extern "C" void paneStringSetter(RuntimeObject *object, int32_t offset, KelpString value) {
    stringSetter(object, offset, value);
    Repaint(object);
}
