#include "main/process_main.h"

#include "exceptions/unhandled.h"
#include "image/loader.h"
#include "kelp/startup.h"
#include "shutdown/shutdown_task.h"
#include "base/wiring.h"
#include "process/display.h"
#include "process/process_state.h"

namespace {

// The runtime's own part of the bring-up; the steps of other subsystems are
// registered with BringUpStep and run in their place in the order.
void BringUpRuntime() {
    kelp::GraphicsDefaultTextStyle() = kelp::TextStyle{"System", false, false, false, 10};
    kelp::InstallStandardUnhandledHandler();
    kelp::DialogDefaultTextStyle() = kelp::TextStyle{"System", false, false, false, 12};
    kelp::RunBringUpSteps();
    // The main thread has 256 KiB of stack below this point for compiled code.
    KELPInitStackChecker(0x40000);
}

} // namespace

int KelpProcessMain(int argc, char **argv, void (*builtinEntry)(void)) {
    kelp::SetProcessArguments(argc, argv);
    // Without a display the runtime still starts: console images, tools and
    // tests run headless, and GUI operations say that there is no display.
    if (kelp::InitToolkit(&argc, &argv))
        kelp::ReadTheme();
    BringUpRuntime();
    const int status = kelp::image::LoadApplicationImage(
        kelp::ProcessArgumentCount() > 0 ? kelp::ProcessArguments()[0] : nullptr, builtinEntry);
    // The entry has returned (or never ran): the run-down.
    kelp::RunShutdownTasks();
    return status;
}
