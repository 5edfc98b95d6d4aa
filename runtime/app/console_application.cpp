// What a console program's application object adds: detaching into the
// background, and the application's own file.
#include "folder_items/folder_item_object.h"
#include "folder_items/folder_item_unix.h"

#include "kelp/objects.h"
#include "kelp/runloop.h"

#include <climits>
#include <unistd.h>

// A ConsoleApplication keeps no state of its own: RuntimeRegisterConsoleApp-
// Object and the run loop drive it.  The initializer is here so that the
// class has one for its subclasses' chains to end on.
extern "C" void ConsoleApplicationInitializer(RuntimeObject *) {}

// The usual detaching of a service: the program goes on in a child of a new
// session, in "/", with its standard streams on /dev/null, and the starting
// process ends at once with status 0.  False, and nothing changed, when the
// child can't be made.
extern "C" uint8_t DaemonizeApp(RuntimeObject *) { return daemon(0, 0) == 0; }

// The program's file: the runtime with the image it carries, as the system
// started it (a link that started it is followed).
extern "C" RuntimeObject *AppFolderItemGetter(RuntimeObject *, int32_t) {
    char path[PATH_MAX];
    const ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    if (n <= 0)
        return nullptr;
    return kelp::NewFolderItem(
        std::make_unique<kelp::FolderItemImpUnix>(std::string(path, static_cast<size_t>(n))));
}
