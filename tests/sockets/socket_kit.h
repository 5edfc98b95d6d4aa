#pragma once
// What the socket tests share: peers the project did not write (python3's
// socket module, socat, curl) run as child processes, socket classes made as
// an image makes them with handlers that log their events, and the loop
// pumped until something is true.
#include "runloop/main_loop.h"
#include "sockets/socket_classes.h"
#include "support/language_class.h"

#include "kelp/kelp.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <map>
#include <string>
#include <vector>

extern char **environ;

namespace kelp::test {

// A child process whose standard output the test reads.
class Peer {
public:
    explicit Peer(std::vector<std::string> argv) {
        int out[2];
        EXPECT_EQ(pipe(out), 0);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, out[1], 1);
        posix_spawn_file_actions_addclose(&actions, out[0]);
        std::vector<char *> args;
        for (auto &a : argv)
            args.push_back(a.data());
        args.push_back(nullptr);
        EXPECT_EQ(posix_spawnp(&mPid, args[0], &actions, nullptr, args.data(), environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        close(out[1]);
        mOut = out[0];
    }
    // A python3 program with arguments.
    static std::vector<std::string> Python(const char *program,
                                           std::vector<std::string> args = {}) {
        std::vector<std::string> argv = {"python3", "-c", program};
        argv.insert(argv.end(), args.begin(), args.end());
        return argv;
    }
    ~Peer() {
        if (mPid > 0) {
            kill(mPid, SIGKILL);
            waitpid(mPid, nullptr, 0);
        }
        close(mOut);
    }
    // The first line the peer prints (blocking): its port, for a server.
    std::string Line() {
        std::string line;
        char c;
        while (read(mOut, &c, 1) == 1 && c != '\n')
            line += c;
        return line;
    }
    // True once the peer closed its output; what it wrote is in Output().
    bool Done() {
        pollfd p{mOut, POLLIN, 0};
        while (!mEnded && poll(&p, 1, 0) > 0) {
            char buffer[4096];
            ssize_t n = read(mOut, buffer, sizeof buffer);
            if (n <= 0)
                mEnded = true;
            else
                mOutput.append(buffer, static_cast<size_t>(n));
        }
        return mEnded;
    }
    const std::string &Output() const { return mOutput; }

private:
    pid_t mPid = -1;
    int mOut = -1;
    bool mEnded = false;
    std::string mOutput;
};

// Pumps the loop until `done` or the deadline; true when done.  A short
// timeout keeps passes coming while the peer's pipe is what changes.
template <class Pred> bool PumpUntil(Pred done, int ms = 10000) {
    guint wake = g_timeout_add(
        5, [](gpointer) -> gboolean { return TRUE; }, nullptr);
    auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    bool ok = false;
    while (!(ok = done()) && std::chrono::steady_clock::now() < end)
        MainLoopStep(true);
    g_source_remove(wake);
    return ok;
}

// The events of every socket object, in the order they fired.
struct EventLog {
    static std::vector<std::string> &All() {
        static std::vector<std::string> log;
        return log;
    }
    // The log of one object with runs of the same entry folded into one:
    // the kernel decides how many reads and sends a transfer takes.
    static std::vector<std::string> Folded() {
        std::vector<std::string> folded;
        for (const std::string &e : All())
            if (folded.empty() || folded.back() != e)
                folded.push_back(e);
        return folded;
    }
};

inline std::string Joined(const std::vector<std::string> &items) {
    std::string out;
    for (const std::string &i : items)
        out += (out.empty() ? "" : ", ") + i;
    return out;
}

inline std::string TextAndRelease(KelpString s) {
    std::string out = s ? std::string(reinterpret_cast<const char *>(s->buffer + 1),
                                      static_cast<size_t>(s->length))
                        : std::string();
    RuntimeUnlockString(s);
    return out;
}

// A port nothing listens on: bound by the kernel's choice, then freed.
inline int FreePort() {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(fd, reinterpret_cast<sockaddr *>(&a), sizeof a);
    socklen_t length = sizeof a;
    getsockname(fd, reinterpret_cast<sockaddr *>(&a), &length);
    close(fd);
    return ntohs(a.sin_port);
}

} // namespace kelp::test
