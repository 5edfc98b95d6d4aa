// The drill's entry, where an image's entry would stand.
#include "bank/corrections.h"
#include "entry/print_modes.h"
#include "kelp/kelp.h"
#include "windows/kit.h"
#include "windows/windows.h"

#include <cstdio>
#include <cstdlib>

namespace {

// Whether the toolkit came up on a display: asked of the toolkit itself,
// through the runtime's look-up of a library function, as declared
// external code would ask it.
bool DisplayIsOpen() {
    using DefaultDisplay = void *(*)();
    auto get = reinterpret_cast<DefaultDisplay>(
        LoadFunctionPointerFromLibrary(sumbrook::ui::Constant("gdk_display_get_default"),
                                       sumbrook::ui::Constant("libgdk-x11-2.0.so.0")));
    return get && get() != nullptr;
}

} // namespace

extern "C" void SumbrookEntry(void) {
    char **argv = KELPGetCommandLineForUnix();
    int argc = 0;
    while (argv && argv[argc])
        ++argc;

    sumbrook::PrintRequest request;
    char error[256];
    if (!sumbrook::ParsePrintRequest(argc, argv, request, error, sizeof error)) {
        std::fprintf(stderr, "%s\n", error);
        // The runtime's own exit status is always 0; a refused command line
        // must tell the caller, so the drill ends the process itself.
        std::fflush(stdout);
        std::exit(2);
    }
    sumbrook::SetClassic(request.classic);
    if (request.mode != sumbrook::PrintMode::None) {
        sumbrook::RunPrintRequest(request, stdout);
        std::fflush(stdout);
        return;
    }
    if (!DisplayIsOpen()) {
        std::fprintf(stderr, "sumbrook: no X display to show the drill on; set DISPLAY, or use "
                             "--print-round or --print-problem\n");
        std::exit(1);
    }
    if (request.seeded)
        RuntimeRandomSeed(request.seed);
    sumbrook::ui::RunWindows();
}
