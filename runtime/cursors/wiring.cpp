#include "cursors/wiring.h"

#include "cursors/mouse_cursor.h"
#include "cursors/screen_and_tray.h"
#include "objects/definitions.h"

namespace kelp {

void WireCursors() {
    AddIntrinsicClassAccessor(&MouseCursorDefinition);
    AddIntrinsicClassAccessor(&CursorsDefinition);
    AddIntrinsicClassAccessor(&ScreenDefinition);
    AddIntrinsicClassAccessor(&TrayItemDefinition);
}

} // namespace kelp
