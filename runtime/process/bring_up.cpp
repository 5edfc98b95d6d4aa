#include "process/bring_up.h"

#include "process/display.h"
#include "process/process_state.h"

#include "kelp/startup.h"

namespace kelp {

void BringUpProcess(int argc, char **argv) {
    SetProcessArguments(argc, argv);
    // Without a display the runtime still starts: console images, tools and
    // tests run headless, and GUI operations say that there is no display.
    if (InitToolkit(&argc, &argv))
        ReadTheme();
    GraphicsDefaultTextStyle() = TextStyle{"System", false, false, false, 10};
    DialogDefaultTextStyle() = TextStyle{"System", false, false, false, 12};
    // The main thread has 256 KiB of stack below this point for compiled code.
    KELPInitStackChecker(0x40000);
}

} // namespace kelp
