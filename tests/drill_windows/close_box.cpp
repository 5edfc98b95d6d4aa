// A click on a window's close box, sent as a window manager sends it (the
// X headers' macros clash with names in the tests, so it lives here).
#include <gdk/gdkx.h>

#include <chrono>
#include <thread>

namespace kelp::test {

void CloseBox(unsigned long window) {
    Display *display = GDK_DISPLAY_XDISPLAY(gdk_display_get_default());
    XEvent e{};
    e.xclient.type = ClientMessage;
    e.xclient.window = window;
    e.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    e.xclient.format = 32;
    e.xclient.data.l[0] = long(XInternAtom(display, "WM_DELETE_WINDOW", False));
    e.xclient.data.l[1] = CurrentTime;
    XSendEvent(display, window, False, NoEventMask, &e);
    XFlush(display);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
}

} // namespace kelp::test
