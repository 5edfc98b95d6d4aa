#pragma once
// The Application object of the authoring language: its record, its class,
// and what the run loop asks of it.
#include "kelp/records.h"

#include <gdk/gdk.h>

#include <cstdint>

namespace kelp {

struct ObjectDefinition;
class RuntimeObjectPoll;

// The instance record of Application; an image's subclass puts its own
// fields behind it.
struct ApplicationRecord {
    RuntimeObject object;
    RuntimeObject *mouseCursor; // counted
    RuntimeObject *mdiWindow;   // counted
    RuntimeObject *menuBar;     // counted
    uint8_t autoQuit;           // starts 1
    uint8_t balloonHelpVisible;
    uint8_t closingApplication; // set while the quit sequence runs
    uint8_t reserved;
    void *pollers;      // the RuntimeObjectPoll wrappers it owns
    void *menuHandlers; // _AddMenuHandler's map, made on first use
};

ObjectDefinition *ApplicationDefinition();
ObjectDefinition *ConsoleApplicationDefinition();
ObjectDefinition *ServiceApplicationDefinition();
ObjectDefinition *PollableInterfaceDefinition();

// The registered application object (borrowed), or null.
RuntimeObject *RegisteredApplication();
// Drops the registration and its reference (the end of RuntimeRun).
void ReleaseRegisteredApplication();
// The registered console application object (borrowed), or null.
RuntimeObject *RegisteredConsoleApplication();

bool ApplicationAutoQuit(RuntimeObject *app);

// Makes the FolderItem that OpenDocument receives for a path (the file
// layer supplies it).  Until a maker is set, the documents of the command
// line are held, and their OpenDocument events fire when it is; a path the
// maker makes no item of is passed over.
using DocumentItemMaker = RuntimeObject *(*)(const char *path);
void SetDocumentItemMaker(DocumentItemMaker maker);

// The application's UnhandledException event: true when the application
// dealt with the exception.  False without an application or a handler.
bool FireApplicationUnhandledException(RuntimeObject *exception);
// True while that event runs.
bool InUnhandledExceptionEvent();

// What the menus ask of the application, for the Wire function.
struct ApplicationMenuClient;
ApplicationMenuClient MenusApplicationClient();

// What the run loop asks of the application, for the Wire function.
struct ApplicationLoopClient;
ApplicationLoopClient RunLoopApplicationClient();
// The pointer shape of the application's MouseCursor, which stands above
// every pane's and window's; null when it has none.
GdkCursor *ApplicationCursor();

} // namespace kelp
