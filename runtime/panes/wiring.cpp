#include "panes/wiring.h"

#include "panes/pane.h"
#include "process/process_state.h"
#include "runloop/background_task.h"

namespace kelp {

void WirePanes() {
    SetKeySnoopHook(&FollowKeyEvent);
    SetEscapeKeyReader(&EscapeIsHeld);
}

} // namespace kelp
