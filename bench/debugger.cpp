// Debugger link figures: the cost of RuntimeDebuggerEntry on a line with
// no breakpoint, against the same loop calling an empty function, and the
// time from a memory read sent by the IDE to its reply while stopped.  The
// IDE is a thread of this program on the link's local socket.
#include "main/wiring_table.h"

#include "kelp/debugger.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kLines = 20'000'000;
constexpr int kReads = 2000;

__attribute__((noinline)) void EmptyLine(int32_t line) { asm volatile("" ::"r"(line)); }

std::string ReadLine(int fd, std::string &pending) {
    for (;;) {
        size_t end = pending.find('\r');
        if (end != std::string::npos) {
            std::string line = pending.substr(0, end);
            pending.erase(0, end + 1);
            return line;
        }
        char chunk[4096];
        ssize_t n = recv(fd, chunk, sizeof chunk, 0);
        if (n <= 0)
            return "";
        pending.append(chunk, size_t(n));
    }
}

void Send(int fd, const std::string &line) {
    std::string text = line + "\r";
    if (send(fd, text.data(), text.size(), MSG_NOSIGNAL) != ssize_t(text.size()))
        std::perror("send");
}

double NsPerLine(void (*line)(int32_t)) {
    auto start = Clock::now();
    for (int i = 0; i < kLines; ++i)
        line(i & 1023);
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count() / kLines;
}

} // namespace

int main() {
    kelp::WireRuntime();
    const std::string path = "/tmp/KPLocalDebug." + std::to_string(getuid());
    unlink(path.c_str());
    int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, path.c_str());
    if (bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
        listen(listener, 1) != 0) {
        std::perror(path.c_str());
        return 1;
    }
    static int32_t watched = 0x1234ABCD;
    int peer = -1;
    std::vector<double> latencies;
    std::thread ide([&] {
        peer = accept(listener, nullptr, nullptr);
        std::string pending;
        ReadLine(peer, pending); // BREAK 00000001
        char request[64];
        std::snprintf(request, sizeof request, "DW %016llX",
                      static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(&watched)));
        for (int i = 0; i < kReads; ++i) {
            auto start = Clock::now();
            Send(peer, request);
            ReadLine(peer, pending);
            latencies.push_back(
                std::chrono::duration<double, std::micro>(Clock::now() - start).count());
        }
        Send(peer, "BRLA 00000400"); // a table of 1024 lines, none set
        Send(peer, "RUN");
    });
    RuntimeDebuggerEntry(1); // connects and stops until RUN
    ide.join();
    std::sort(latencies.begin(), latencies.end());
    std::printf("memory read while stopped, send to reply: median %.1f us, 99th %.1f us\n",
                latencies[latencies.size() / 2], latencies[latencies.size() * 99 / 100]);
    const double empty = NsPerLine(&EmptyLine);
    const double entry = NsPerLine(&RuntimeDebuggerEntry);
    std::printf("line call, running, no breakpoint: %.2f ns (empty call %.2f ns, %+.2f ns)\n",
                entry, empty, entry - empty);
    RuntimeDebuggerShutdown();
    close(peer);
    close(listener);
    unlink(path.c_str());
    return 0;
}
