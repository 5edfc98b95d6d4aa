// The drill's entry, where an image's entry would stand.
#include "entry/print_modes.h"
#include "kelp/kelp.h"

#include <cstdio>
#include <cstdlib>

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
    if (request.mode != sumbrook::PrintMode::None) {
        sumbrook::RunPrintRequest(request, stdout);
        std::fflush(stdout);
        return;
    }
    std::puts("Sumbrook: the practice windows are not part of this build yet; "
              "use --print-round or --print-problem.");
}
