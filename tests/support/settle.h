// Runs the loop for a while, as the tests of windows on a real server need.
#pragma once

#include "runloop/main_loop.h"

#include <gtk/gtk.h>

#include <chrono>

namespace kelp::test {

// Passes of the loop for `ms` milliseconds, so windows get on screen, drawn
// and their notices delivered.
inline void Settle(int ms) {
    guint wake = g_timeout_add(
        5, [](gpointer) -> gboolean { return TRUE; }, nullptr);
    auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (std::chrono::steady_clock::now() < end) {
        MainLoopStep(true);
        gdk_flush();
    }
    g_source_remove(wake);
}

} // namespace kelp::test
