// The same programs linked the ordinary way: compiled without the image
// flags, linked with the runtime into one program, and entered where an
// image's entry would be.  KELP_REFERENCE_ENTRY names the program to run.
#include "main/process_main.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" void ProgramRecords(void);
extern "C" void ProgramObjects(void);
extern "C" void KelpMain(void); // the counter example

int main(int argc, char **argv) {
    struct Entry {
        const char *name;
        void (*code)(void);
    };
    static const Entry kEntries[] = {
        {"ProgramRecords", ProgramRecords},
        {"ProgramObjects", ProgramObjects},
        {"KelpMain", KelpMain},
    };
    const char *wanted = std::getenv("KELP_REFERENCE_ENTRY");
    for (const Entry &e : kEntries)
        if (wanted && std::strcmp(wanted, e.name) == 0)
            return KelpProcessMain(argc, argv, e.code);
    std::fprintf(stderr, "set KELP_REFERENCE_ENTRY to a program's entry\n");
    return 2;
}
