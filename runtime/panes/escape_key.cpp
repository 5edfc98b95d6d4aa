// Reading the Escape key for the cancel check of long calculations.  Kept
// apart: the X headers define names (None, Bool) that other code uses.
#include "panes/pane.h"

#include "base/soft_library.h"
#include "process/display.h"

#include <gdk/gdkkeysyms.h>
#include <gdk/gdkx.h>

namespace kelp {

bool EscapeIsHeld() {
    if (KeyIsDown(GDK_Escape))
        return true;
    GdkDisplay *display = DisplayAvailable() ? gdk_display_get_default() : nullptr;
    if (!display)
        return false;
    // The X library comes with the toolkit; looked up, not linked.
    using QueryKeymap = int (*)(Display *, char[32]);
    using KeysymToKeycode = unsigned char (*)(Display *, unsigned long);
    static auto query =
        reinterpret_cast<QueryKeymap>(FindLoadedSymbol("libX11.so.6", "XQueryKeymap"));
    static auto toKeycode =
        reinterpret_cast<KeysymToKeycode>(FindLoadedSymbol("libX11.so.6", "XKeysymToKeycode"));
    if (!query || !toKeycode)
        return false;
    Display *x = GDK_DISPLAY_XDISPLAY(display);
    const unsigned char code = toKeycode(x, GDK_Escape);
    char keys[32] = {};
    if (!code || !query(x, keys))
        return false;
    return (keys[code / 8] >> (code % 8)) & 1;
}

} // namespace kelp
