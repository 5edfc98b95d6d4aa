// kelp-image: makes application images and shows what is in them.
//
//   kelp-image link OBJECT... [--entry NAME] [--soft FUNCTION:LIBRARY]...
//                   [--soft-data VARIABLE:LIBRARY]...
//                   [--resource TYPE:ID:FILE]... [--plugin ID:LIBRARY]...
//                   [--options FILE] [--runtime KELP]
//                   (--out FILE | --append-to KELP --out FILE | --loose FOLDER)
//       Links x86_64 objects into an image (see link_command.cpp).
//   kelp-image pack -o OUT [-r RUNTIME] SOURCE... [--resource TYPE:ID:FILE]...
//                   [--plugin ID:LIBRARY]...
//       SOURCE is a folder of loose segment files, or the segment files
//       themselves in order: code, data, link table[, symbols, resources,
//       options].  Writes a copy of RUNTIME (by default the kelp program
//       beside this tool) with the image appended.  A plug-in goes in as a
//       "KPPl" resource that carries the library's file name.
//   kelp-image info FILE|FOLDER
//       Lists the segments, link records, string constants, resources,
//       options and symbols of an image, a program with one, or a folder of
//       loose files.
//   kelp-image check FILE|FOLDER [--runtime KELP]
//       Binds the image against the runtime's export table and the system's
//       libraries without running it, and lists what would be missing.
#include "check.h"
#include "info.h"
#include "link_command.h"
#include "pack.h"

#include <cstdio>
#include <string>

namespace kelp::tool {

int Usage() {
    std::fprintf(
        stderr,
        "usage: kelp-image link OBJECT... [--entry NAME] [--soft FUNCTION:LIBRARY]... [--soft-data "
        "VARIABLE:LIBRARY]... "
        "[--resource TYPE:ID:FILE]... [--plugin ID:LIBRARY]... [--options FILE] [--runtime KELP] "
        "(--out FILE | --append-to KELP --out FILE | --loose FOLDER)\n"
        "       kelp-image pack -o OUT [-r RUNTIME] (FOLDER | CODE DATA LINK [SYMBOLS "
        "RSRC OPTIONS]) [--resource TYPE:ID:FILE]... [--plugin ID:LIBRARY]...\n"
        "       kelp-image info FILE|FOLDER\n"
        "       kelp-image check FILE|FOLDER [--runtime KELP]\n");
    return 2;
}

} // namespace kelp::tool

int main(int argc, char **argv) {
    using namespace kelp::tool;
    if (argc < 2)
        return Usage();
    const std::string command = argv[1];
    if (command == "link")
        return LinkCommand(argc - 2, argv + 2);
    if (command == "pack")
        return Pack(argc - 2, argv + 2);
    if (command == "info" && argc == 3)
        return Info(argv[2]);
    if (command == "check")
        return Check(argc - 2, argv + 2);
    return Usage();
}
