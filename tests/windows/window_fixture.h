// A fixture for tests of language windows on a real X server: a window class
// made as an image makes one, with the handlers the test names, windows
// built through their Layout event, and passes of the run loop.
#pragma once

#include "windows/runtime_view.h"

#include "app/application.h"
#include "runloop/main_loop.h"
#include "support/language_class.h"
#include "support/xvfb.h"

#include "kelp/objects.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <chrono>
#include <functional>
#include <initializer_list>
#include <utility>
#include <vector>

namespace kelp::test {

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
        Settle(20);
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

    // Passes of the loop for `ms` milliseconds, so the window gets on
    // screen, drawn and its notices delivered.
    void Settle(int ms) {
        guint wake = g_timeout_add(
            5, [](gpointer) -> gboolean { return TRUE; }, nullptr);
        auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
        while (std::chrono::steady_clock::now() < end) {
            MainLoopStep(true);
            gdk_flush();
        }
        g_source_remove(wake);
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
