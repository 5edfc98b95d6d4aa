#include "pty_peer.h"

#include "serial/port_list.h"
#include "serial/serial_record.h"
#include "support/language_class.h"

#include "kelp/arrays.h"
#include "kelp/objects.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

namespace kelp::test {

Pty::Pty() {
    char name[256] = {};
    if (openpty(&master, &slave, name, nullptr, nullptr) != 0) {
        ADD_FAILURE() << "openpty failed";
        return;
    }
    path = name;
    fcntl(master, F_SETFD, FD_CLOEXEC);
    fcntl(slave, F_SETFD, FD_CLOEXEC);
}

Pty::~Pty() {
    CloseMaster();
    CloseSlave();
}

void Pty::CloseMaster() {
    if (master >= 0)
        close(master);
    master = -1;
}

void Pty::CloseSlave() {
    if (slave >= 0)
        close(slave);
    slave = -1;
}

std::string Pty::ReadMaster(size_t want, int ms) {
    std::string got;
    auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (got.size() < want && std::chrono::steady_clock::now() < end) {
        pollfd p = {master, POLLIN, 0};
        if (poll(&p, 1, 20) <= 0)
            continue;
        char buffer[4096];
        ssize_t n = read(master, buffer, sizeof buffer);
        if (n <= 0)
            break;
        got.append(buffer, static_cast<size_t>(n));
    }
    return got;
}

std::string RunWithInput(int input, const std::vector<std::string> &argv) {
    int out[2];
    if (pipe(out) != 0)
        return {};
    pid_t pid = fork();
    if (pid == 0) {
        dup2(input, 0);
        dup2(out[1], 1);
        close(out[0]);
        close(out[1]);
        std::vector<char *> args;
        for (const std::string &a : argv)
            args.push_back(const_cast<char *>(a.c_str()));
        args.push_back(nullptr);
        execvp(args[0], args.data());
        _exit(127);
    }
    close(out[1]);
    std::string text;
    char buffer[4096];
    ssize_t n;
    while ((n = read(out[0], buffer, sizeof buffer)) > 0)
        text.append(buffer, static_cast<size_t>(n));
    close(out[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << argv[0] << " failed";
    return text;
}

std::vector<std::string> &SerialEvents() {
    static std::vector<std::string> events;
    return events;
}

namespace {

void OnData(RuntimeObject *) { SerialEvents().push_back("data"); }
void OnError(RuntimeObject *self) {
    SerialEvents().push_back("error " + std::to_string(SerialOf(self)->lastErrorCode));
}
void OnLines(RuntimeObject *, RuntimeArray *lines) {
    std::string text = "lines";
    for (int32_t i = 0; i <= RuntimeUBound(lines); ++i)
        text += " " + std::to_string(RuntimeDirectReadIntArray(lines, i));
    SerialEvents().push_back(text);
}

RuntimeClass *TestClass() {
    static RuntimeClass *klass = [] {
        RuntimeClass *c = MakeSubclass("Serial", "Serial1");
        EXPECT_TRUE(SetEventHandler(c, "DataAvailable", reinterpret_cast<void *>(&OnData)));
        EXPECT_TRUE(SetEventHandler(c, "Error", reinterpret_cast<void *>(&OnError)));
        EXPECT_TRUE(SetEventHandler(c, "LineStateChanged", reinterpret_cast<void *>(&OnLines)));
        return c;
    }();
    return klass;
}

} // namespace

RuntimeObject *NewTestSerial(const std::string &path) {
    RuntimeObject *serial = RuntimeNewObject(TestClass());
    if (serial)
        SerialOf(serial)->serialPort = NewSerialPort(path);
    return serial;
}

} // namespace kelp::test
