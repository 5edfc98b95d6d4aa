#include "support/xvfb.h"

#include "process/display.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

namespace kelp::test {
namespace {

bool LockFileExists(int n) {
    std::string lock = "/tmp/.X" + std::to_string(n) + "-lock";
    struct stat st;
    return stat(lock.c_str(), &st) == 0;
}

// The pid written in the server's lock file, or -1.  Another program's
// server may hold the number we tried: its socket is there even though ours
// gave up, so only a lock naming our own child proves the number is ours.
pid_t LockOwner(int n) {
    std::FILE *f = std::fopen(("/tmp/.X" + std::to_string(n) + "-lock").c_str(), "r");
    if (!f)
        return -1;
    long owner = -1;
    if (std::fscanf(f, " %ld", &owner) != 1)
        owner = -1;
    std::fclose(f);
    return static_cast<pid_t>(owner);
}

bool SocketExists(int n) {
    std::string sock = "/tmp/.X11-unix/X" + std::to_string(n);
    struct stat st;
    return stat(sock.c_str(), &st) == 0;
}

} // namespace

XServer::XServer() {
    // Several test programs may run at once: each takes a number no one holds,
    // and Xvfb itself refuses a number another server took meanwhile.
    for (int n = 90 + static_cast<int>(getpid() % 50); n < 400; ++n) {
        if (LockFileExists(n))
            continue;
        std::string name = ":" + std::to_string(n);
        pid_t pid = fork();
        if (pid < 0)
            return;
        if (pid == 0) {
            int devnull = open("/dev/null", O_RDWR);
            if (devnull >= 0) {
                dup2(devnull, 1);
                dup2(devnull, 2);
            }
            execlp("Xvfb", "Xvfb", name.c_str(), "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
                   "-ac", static_cast<char *>(nullptr));
            _exit(127);
        }
        // Wait for the socket, or for the server to give up on this number.
        for (int i = 0; i < 200; ++i) {
            int status = 0;
            if (waitpid(pid, &status, WNOHANG) == pid) {
                pid = -1;
                break;
            }
            if (SocketExists(n) && LockOwner(n) == pid) {
                mPid = pid;
                mDisplay = name;
                setenv("DISPLAY", name.c_str(), 1);
                return;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
        }
        if (pid > 0) {
            kill(pid, SIGTERM);
            waitpid(pid, nullptr, 0);
        }
    }
}

XServer::~XServer() {
    if (mPid > 0) {
        kill(mPid, SIGTERM);
        waitpid(mPid, nullptr, 0);
    }
}

bool RequireToolkitDisplay() {
    static std::unique_ptr<XServer> server;
    static bool ready = false;
    static bool tried = false;
    if (tried)
        return ready;
    tried = true;
    server = std::make_unique<XServer>();
    if (!server->running()) {
        std::fprintf(stderr, "could not start Xvfb\n");
        return false;
    }
    int argc = 1;
    static char arg0[] = "test";
    static char *argvStore[] = {arg0, nullptr};
    char **argv = argvStore;
    ready = kelp::InitToolkit(&argc, &argv);
    if (!ready)
        std::fprintf(stderr, "the toolkit could not open %s\n", server->display().c_str());
    // Stop the server when the program ends, after the tests.
    std::atexit([] { server.reset(); });
    return ready;
}

} // namespace kelp::test
