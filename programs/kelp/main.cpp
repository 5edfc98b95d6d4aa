// The bare runtime: it finds the application image behind its own bytes (or
// the loose segment files in the current folder), binds it and runs it.
#include "main/process_main.h"
#include "main/static_exports.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv) {
    // With KELP_LIST_EXPORTS set the runtime names the exports an image can
    // bind, one a line, and stops: kelp-image links and checks against the
    // very runtime that will run the image.  Nothing else comes up.
    if (const char *list = std::getenv("KELP_LIST_EXPORTS"); list && *list) {
        for (size_t i = 0; i < kelp::StaticExportCount(); ++i)
            if (const char *name = kelp::StaticExportRows()[i].name)
                std::puts(name);
        return 0;
    }
    return KelpProcessMain(argc, argv, nullptr);
}
