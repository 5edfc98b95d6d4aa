#pragma once
// Another program beside a test that owns the clipboard.
#include "support/settle.h"

#include <fcntl.h>
#include <glib.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <string>

namespace kelp::test {

// Runs a shell line without blocking the loop, which must answer the
// X server's selection requests meanwhile; its standard output.
inline std::string RunAside(const std::string &line) {
    const char *argv[] = {"/bin/sh", "-c", line.c_str(), nullptr};
    GPid pid;
    gint out = -1;
    EXPECT_TRUE(g_spawn_async_with_pipes(nullptr, const_cast<char **>(argv), nullptr,
                                         G_SPAWN_DO_NOT_REAP_CHILD, nullptr, nullptr, &pid, nullptr,
                                         &out, nullptr, nullptr));
    fcntl(out, F_SETFL, O_NONBLOCK);
    bool done = false;
    g_child_watch_add(
        pid, [](GPid p, gint, gpointer d) { *static_cast<bool *>(d) = true, g_spawn_close_pid(p); },
        &done);
    std::string result;
    char buffer[65536];
    auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!done && std::chrono::steady_clock::now() < end) {
        Settle(10);
        ssize_t n;
        while ((n = read(out, buffer, sizeof buffer)) > 0)
            result.append(buffer, static_cast<size_t>(n));
    }
    ssize_t n;
    while ((n = read(out, buffer, sizeof buffer)) > 0)
        result.append(buffer, static_cast<size_t>(n));
    close(out);
    return result;
}

} // namespace kelp::test
