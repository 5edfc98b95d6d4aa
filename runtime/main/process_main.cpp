#include "main/process_main.h"

#include "image/loader.h"
#include "main/wiring_table.h"
#include "process/bring_up.h"
#include "process/process_state.h"
#include "shutdown/shutdown_task.h"

int KelpProcessMain(int argc, char **argv, void (*builtinEntry)(void)) {
    kelp::WireRuntime();
    kelp::BringUpProcess(argc, argv);
    const int status = kelp::image::LoadApplicationImage(
        kelp::ProcessArgumentCount() > 0 ? kelp::ProcessArguments()[0] : nullptr, builtinEntry);
    // The entry has returned (or never ran): the run-down.
    kelp::RunShutdownTasks();
    return status;
}
