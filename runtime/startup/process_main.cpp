#include "startup/process_main.h"

#include "startup/display.h"

#include <cstdio>

// First cut: the toolkit comes up (with or without a display) and a linked-in
// application is entered.  The image reader and the full bring-up follow.
int KelpProcessMain(int argc, char **argv, void (*builtinEntry)(void)) {
    kelp::InitToolkit(&argc, &argv);
    if (builtinEntry) {
        builtinEntry();
        return 0;
    }
    std::fprintf(stderr, "No application image was found.\n");
    return 0;
}
