#include "panes/wiring.h"

#include "panes/pane.h"
#include "process/process_state.h"
#include "runloop/background_task.h"

#include <gdk/gdkkeysyms.h>

namespace kelp {

void WirePanes() {
    SetKeySnoopHook(&FollowKeyEvent);
    SetEscapeKeyReader([] { return KeyIsDown(GDK_Escape); });
}

} // namespace kelp
