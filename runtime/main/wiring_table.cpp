// The one place where the layers are wired: each row fills the slots by
// which a lower layer calls a higher one, and registers the row's library
// classes.  Rows run lowest layer first, so that a row may rely on the rows
// above it in this table; nothing here depends on static initialisation.
#include "main/wiring_table.h"

#include "base/wiring.h"
#include "exports/export_table.h"
#include "main/static_exports.h"

#include "app/wiring.h"
#include "cursors/wiring.h"
#include "dialogs/wiring.h"
#include "exceptions/wiring.h"
#include "graphics/wiring.h"
#include "objects/wiring.h"
#include "panes/wiring.h"
#include "sound/wiring.h"
#include "string_functions/wiring.h"
#include "system/wiring.h"
#include "threads/wiring.h"
#include "timers/wiring.h"
#include "windows/wiring.h"
// Core values
#include "encodings/wiring.h"
#include "memory/wiring.h"
// Dates and variants
#include "dates/wiring.h"
#include "variants/wiring.h"

#include "folder_items/wiring.h"
#include "pictures/wiring.h"
#include "stream_classes/wiring.h"

#include "objects/definitions.h"

#include "kelp/random.h"
#include "kelp/runloop.h"

#include "canvas/wiring.h"
#include "controls/wiring.h"
#include "edit_fields/wiring.h"
#include "menus/wiring.h"
#include "plugins/wiring.h"
#include "print/wiring.h"
// The ListBox
#include "listbox/wiring.h"
// 2D shapes
#include "shapes/wiring.h"
#include "volumes/wiring.h"
// Serial ports
#include "serial/wiring.h"
// Sockets
#include "sockets/wiring.h"
// The database classes
#include "database_classes/wiring.h"
// Platform stubs
#include "stubs/wiring.h"

namespace kelp {
namespace {

void WireStaticExports() { SetStaticExportRows(StaticExportRows(), StaticExportCount()); }

// Functions of folders that stand below the class definitions, so cannot
// list their own rows of the intrinsic function table.
void WireLowerFunctionRows() {
    static const MethodRow rows[] = {
        {"Rnd", &kTypeDouble, nullptr, 0, KELP_ENTRY(rnd)},
        {"Ticks", &kTypeInteger, nullptr, 0, KELP_ENTRY(RuntimeTicks)},
        {"Microseconds", &kTypeDouble, nullptr, 0, KELP_ENTRY(RuntimeMicroseconds)},
    };
    AddIntrinsicFunctions(rows);
}

const WiringStep kWiringTable[] = {
    {"exports: the static rows every image binds by name", &WireStaticExports},
    {"objects: the Runtime class", &WireObjects},
    {"exceptions: the exception classes; the object runtime's raiser", &WireExceptions},
    {"string_functions: the EndOfLine class; the text functions' rows", &WireStringFunctions},
    {"random, runloop: the rows of Rnd, Ticks and Microseconds", &WireLowerFunctionRows},
    {"dates: the Date class and ParseDate", &WireDates},
    {"variants: the Dictionary class and the Variant functions", &WireVariants},
    {"timers: the Timer class", &WireTimers},
    {"sound: the Sound class", &WireSound},
    {"threads: the main thread's run lock; the thread and lock classes", &WireThreads},
    {"system: the System object's class", &WireSystem},
    {"encodings: the TextEncoding and TextConverter classes, the Encodings module", &WireEncodings},
    {"memory: the MemoryBlock and _Blowfish classes", &WireMemory},
    {"stream_classes: the TextInputStream, TextOutputStream and BinaryStream classes",
     &WireStreamClasses},
    {"folder_items: the FolderItem and Permissions classes", &WireFolderItems},
    {"pictures: the Picture and RGBSurface classes", &WirePictures},
    {"graphics: the Graphics class", &WireGraphics},
    {"panes: the key snooper's hook; the run loop's Escape reader", &WirePanes},
    {"windows: the Window classes; the run loop's window client", &WireWindows},
    {"cursors: the cursor, screen and tray item classes", &WireCursors},
    {"controls: the control classes; the window's hooks for its controls", &WireControls},
    {"menus: the menu classes; the windows' bars, key offer and contextual menus", &WireMenus},
    {"canvas: the Canvas, DragItem and Clipboard classes", &WireCanvas},
    {"plugins: loading at the end of the class set-up; plug-in classes by name", &WirePlugins},
    {"dialogs: the window that presents assertion reports; MessageDialog, MsgBox, the file "
     "dialogs, ShowURL and the Keyboard object",
     &WireDialogs},
    {"print: the PrinterSetup class; OpenPrinter and OpenPrinterDialog", &WirePrint},
    {"app: the Application classes; the run loop's application client; the "
     "standard handler of unhandled exceptions",
     &WireApp},
    // Edit fields and styled text
    {"edit_fields: the EditField class", &WireEditFields},
    // The ListBox
    {"listbox: the ListBox, OldListbox and ListColumn classes", &WireListbox},
    // 2D shapes
    {"shapes: the Object2D classes; the pictures' vector part", &WireShapes},
    // Virtual volumes
    {"volumes: the VirtualVolume class; FolderItem's volume members", &WireVolumes},
    // Serial ports
    {"serial: the Serial and SerialPort classes, System's ports; the loop's service of them",
     &WireSerial},
    // Sockets
    {"sockets: the socket and network classes; the run loop's socket poller", &WireSockets},
    // The database classes
    {"database_classes: Database, KELPDatabase, the record sets, DatabaseRecord, "
     "ScrollableCursor",
     &WireDatabaseClasses},
    // Platform stubs
    {"stubs: the OLE, registry, key chain, Apple event, dock and movie classes", &WireStubs},
};

} // namespace

void WireRuntime() { RunWiring(kWiringTable); }

} // namespace kelp
