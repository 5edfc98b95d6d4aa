#include "windows/wiring.h"

#include "objects/definitions.h"
#include "runloop/main_loop.h"
#include "windows/mdi_window.h"
#include "windows/runtime_view.h"

namespace kelp {

void WireWindows() {
    AddIntrinsicClassAccessor(&MDIWindowDefinition);
    AddIntrinsicClassAccessor(&WindowDefinition);
    SetWindowLoopClient(RunLoopWindowClient());
}

} // namespace kelp
