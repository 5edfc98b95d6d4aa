// A private X server for the benchmarks that need windows: started when no
// display is set, on the first free display number, at the depth the
// colours need.
#pragma once

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

namespace kelp::bench {

// The server's process, or -1 when a display was already set or none
// could be started.
inline pid_t StartXvfb() {
    if (getenv("DISPLAY"))
        return -1;
    for (int n = 150 + getpid() % 100; n < 400; ++n) {
        std::string lock = "/tmp/.X" + std::to_string(n) + "-lock";
        if (access(lock.c_str(), F_OK) == 0)
            continue;
        std::string name = ":" + std::to_string(n);
        pid_t pid = fork();
        if (pid == 0) {
            freopen("/dev/null", "w", stderr);
            execlp("Xvfb", "Xvfb", name.c_str(), "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
                   static_cast<char *>(nullptr));
            _exit(127);
        }
        std::string sock = "/tmp/.X11-unix/X" + std::to_string(n);
        for (int i = 0; i < 200 && access(sock.c_str(), F_OK) != 0; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
        if (access(sock.c_str(), F_OK) == 0) {
            setenv("DISPLAY", name.c_str(), 1);
            return pid;
        }
        kill(pid, SIGTERM);
        waitpid(pid, nullptr, 0);
    }
    return -1;
}

} // namespace kelp::bench
