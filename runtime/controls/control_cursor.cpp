// Control.MouseCursor: the control holds the MouseCursor object, and its
// pane shows that cursor while the pointer is over it.
#include "controls/control.h"

#include "panes/pane.h"

#include "kelp/controls.h"
#include "kelp/objects.h"

using namespace kelp;

extern "C" void controlMouseCursorSetter(RuntimeObject *self, int32_t, RuntimeObject *cursor) {
    if (!self)
        return;
    RuntimeControl *control = Ctl(self);
    RuntimeLockObject(cursor); // first: setting the same object again is safe
    RuntimeUnlockObject(control->mouseCursor);
    control->mouseCursor = cursor;
    if (ControlPane *pane = PaneOf(self))
        pane->cursor = CursorOfObject(cursor);
}
