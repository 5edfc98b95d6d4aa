// A fixture for tests of language windows on a real X server: a window class
// made as an image makes one, with the handlers the test names, windows
// built through their Layout event, and passes of the run loop.
#pragma once

#include "windows/runtime_view.h"

#include "app/application.h"
#include "runloop/main_loop.h"
#include "support/language_class.h"
#include "support/settle.h"
#include "support/xvfb.h"

#include "kelp/objects.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

// Last: the X headers define names that the test framework also uses.
#include <X11/Xlib.h>
#include <gdk/gdkx.h>
#undef None
#undef Bool

namespace kelp::test {

// What the X server says about a toplevel: place on the root, size, whether
// it is viewable, and its title.
struct XInfo {
    int x = 0, y = 0, width = 0, height = 0;
    bool mapped = false;
    std::string title;
};
inline XInfo QueryX(GtkWidget *top) {
    XInfo info;
    if (!top || !top->window)
        return info;
    Display *dpy = GDK_WINDOW_XDISPLAY(top->window);
    ::Window xid = GDK_WINDOW_XID(top->window), child;
    XWindowAttributes attrs;
    XGetWindowAttributes(dpy, xid, &attrs);
    XTranslateCoordinates(dpy, xid, attrs.root, 0, 0, &info.x, &info.y, &child);
    info.width = attrs.width;
    info.height = attrs.height;
    info.mapped = attrs.map_state == IsViewable;
    char *name = nullptr;
    if (XFetchName(dpy, xid, &name) && name) {
        info.title = name;
        XFree(name);
    }
    return info;
}

class WindowFixture : public ::testing::Test {
protected:
    using Handler = std::pair<const char *, void *>;

    // Makes the class `name` on Window with these event handlers; skips the
    // test when no X server can be had.  Layout is always handled, so that
    // Make can lay a window out.
    void SetUpWindowClass(const char *name, std::initializer_list<Handler> handlers) {
        if (!RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
        ResetRunState();
        klass = MakeSubclass("Window", name);
        ASSERT_NE(klass, nullptr);
        ASSERT_TRUE(SetEventHandler(klass, "Layout", reinterpret_cast<void *>(&OnLayout)));
        for (const Handler &h : handlers)
            ASSERT_TRUE(SetEventHandler(klass, h.first, h.second)) << h.first;
    }

    void TearDown() override {
        for (RuntimeObject *w : made) {
            if (View(w)->pane)
                View(w)->pane->Close();
            RuntimeUnlockObject(w);
        }
        test::Settle(20);
        ResetRunState();
    }

    static ViewRecord *View(RuntimeObject *w) { return reinterpret_cast<ViewRecord *>(w); }

    // A new window of the class; `layout` runs in its Layout event, where
    // compiled code gives a window its properties.
    RuntimeObject *MakeWith(std::function<void(RuntimeObject *)> layout) {
        LayoutStep() = std::move(layout);
        RuntimeObject *w = RuntimeNewObject(klass);
        LayoutStep() = nullptr;
        made.push_back(w);
        return w;
    }

    static void Settle(int ms) { test::Settle(ms); }
    static XInfo Query(RuntimeObject *w) {
        return QueryX(View(w)->pane ? View(w)->pane->GtkWin() : nullptr);
    }

    RuntimeClass *klass = nullptr;
    std::vector<RuntimeObject *> made;

private:
    static std::function<void(RuntimeObject *)> &LayoutStep() {
        static std::function<void(RuntimeObject *)> step;
        return step;
    }
    static void OnLayout(RuntimeObject *self) {
        if (LayoutStep())
            LayoutStep()(self);
    }
};

} // namespace kelp::test
