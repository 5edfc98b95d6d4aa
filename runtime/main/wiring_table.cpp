// The one place where the layers are wired: each row fills the slots by
// which a lower layer calls a higher one, and registers the row's library
// classes.  Rows run lowest layer first, so that a row may rely on the rows
// above it in this table; nothing here depends on static initialisation.
#include "main/wiring_table.h"

#include "base/wiring.h"
#include "exports/export_table.h"
#include "main/static_exports.h"

#include "app/wiring.h"
#include "dialogs/wiring.h"
#include "exceptions/wiring.h"
#include "graphics/wiring.h"
#include "objects/wiring.h"
#include "panes/wiring.h"
#include "string_functions/wiring.h"
#include "timers/wiring.h"
#include "windows/wiring.h"

#include "controls/wiring.h"

namespace kelp {
namespace {

void WireStaticExports() { SetStaticExportRows(StaticExportRows(), StaticExportCount()); }

const WiringStep kWiringTable[] = {
    {"exports: the static rows every image binds by name", &WireStaticExports},
    {"objects: the Runtime class", &WireObjects},
    {"exceptions: the exception classes; the object runtime's raiser", &WireExceptions},
    {"string_functions: the EndOfLine class", &WireStringFunctions},
    {"timers: the Timer class", &WireTimers},
    {"graphics: the Graphics class", &WireGraphics},
    {"panes: the key snooper's hook; the run loop's Escape reader", &WirePanes},
    {"windows: the Window classes; the run loop's window client", &WireWindows},
    {"controls: the control classes; the window's hooks for its controls", &WireControls},
    {"dialogs: the dialog that presents assertion reports", &WireDialogs},
    {"app: the Application classes; the run loop's application client; the "
     "standard handler of unhandled exceptions",
     &WireApp},
};

} // namespace

void WireRuntime() { RunWiring(kWiringTable); }

} // namespace kelp
