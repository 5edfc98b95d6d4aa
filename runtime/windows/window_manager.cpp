#include "windows/window_manager.h"

#include "process/display.h"

#include <gdk/gdkx.h>

namespace kelp {

bool WindowManagerDoesFullScreen() {
    GdkScreen *screen = DisplayAvailable() ? gdk_screen_get_default() : nullptr;
    return screen && gdk_x11_screen_supports_net_wm_hint(
                         screen, gdk_atom_intern("_NET_WM_STATE_FULLSCREEN", FALSE));
}

} // namespace kelp
