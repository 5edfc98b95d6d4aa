// Runs the loop for a while, as the tests of windows on a real server need.
#pragma once

#include "runloop/main_loop.h"

#include <gtk/gtk.h>

#include <chrono>
#include <functional>

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

// Passes of the loop until `done` holds, for at most `ms` milliseconds: a
// loaded machine maps windows and delivers events late, and a fixed wait
// would fail there.  Returns whether it came to hold.
inline bool SettleUntil(const std::function<bool()> &done, int ms = 3000) {
    for (int waited = 0; waited < ms && !done(); waited += 10)
        Settle(10);
    return done();
}

} // namespace kelp::test
