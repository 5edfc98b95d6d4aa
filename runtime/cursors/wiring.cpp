#include "cursors/wiring.h"

#include "cursors/mouse_cursor.h"
#include "cursors/screen_and_tray.h"
#include "objects/definitions.h"
#include "panes/pane.h"

namespace kelp {
namespace {

GdkCursor *ReadMouseCursor(RuntimeObject *mouseCursor) {
    const CursorHolder *holder = HolderOf(mouseCursor);
    return holder ? holder->cursor : nullptr;
}

} // namespace

void WireCursors() {
    AddIntrinsicClassAccessor(&MouseCursorDefinition);
    AddIntrinsicClassAccessor(&CursorsDefinition);
    AddIntrinsicClassAccessor(&ScreenDefinition);
    AddIntrinsicClassAccessor(&TrayItemDefinition);
    SetMouseCursorReader(&ReadMouseCursor);
}

} // namespace kelp
