#include "process/display.h"

#include <gtk/gtk.h>

#include <cstdio>
#include <mutex>
#include <set>
#include <string>

namespace kelp {
namespace {
bool gToolkitTried = false;
bool gDisplayOpen = false;
} // namespace

bool InitToolkit(int *argc, char ***argv) {
    if (gToolkitTried)
        return gDisplayOpen;
    gToolkitTried = true;
    gtk_set_locale();
    gDisplayOpen = gtk_init_check(argc, argv);
    return gDisplayOpen;
}

bool DisplayAvailable() { return gDisplayOpen; }

bool RequireDisplay(const char *operation) {
    if (gDisplayOpen)
        return true;
    static std::mutex guard;
    static std::set<std::string> told;
    std::lock_guard<std::mutex> lock(guard);
    if (told.insert(operation ? operation : "").second)
        std::fprintf(stderr, "%s: no X display is available\n", operation ? operation : "GUI");
    return false;
}

} // namespace kelp
