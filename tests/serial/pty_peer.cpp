#include "pty_peer.h"

#include "serial/port_list.h"
#include "serial/serial_record.h"
#include "strings/kstring.h"
#include "support/language_class.h"

#include "kelp/arrays.h"
#include "kelp/objects.h"
#include "kelp/serial.h"
#include "kelp/strings.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

namespace kelp::test {

Pty::Pty() {
    char name[256] = {};
    EXPECT_EQ(openpty(&master, &slave, name, nullptr, nullptr), 0);
    path = name;
    fcntl(master, F_SETFD, FD_CLOEXEC);
    fcntl(slave, F_SETFD, FD_CLOEXEC);
}

void Pty::CloseMaster() { master = master >= 0 ? close(master), -1 : -1; }
void Pty::CloseSlave() { slave = slave >= 0 ? close(slave), -1 : -1; }

std::string Pty::ReadMaster(size_t want, int ms) {
    std::string got;
    char buffer[4096];
    pollfd p = {master, POLLIN, 0};
    for (; got.size() < want && ms > 0; ms -= 20)
        if (poll(&p, 1, 20) > 0) {
            ssize_t n = read(master, buffer, sizeof buffer);
            got.append(buffer, static_cast<size_t>(n > 0 ? n : 0));
        }
    return got;
}

std::string RunWithInput(int input, const std::string &command) {
    fcntl(input, F_SETFD, 0); // the shell hands it on as standard input
    FILE *tool = popen((command + " 0<&" + std::to_string(input)).c_str(), "r");
    fcntl(input, F_SETFD, FD_CLOEXEC);
    std::string text;
    char buffer[4096];
    for (size_t n; tool && (n = fread(buffer, 1, sizeof buffer, tool)) > 0;)
        text.append(buffer, n);
    EXPECT_EQ(tool ? pclose(tool) : -1, 0) << command;
    return text;
}

std::vector<std::string> &SerialEvents() {
    static std::vector<std::string> events;
    return events;
}

void Write(RuntimeObject *serial, const std::string &bytes) {
    KelpString s =
        string::FromBytes(bytes.data(), static_cast<long>(bytes.size()), kEncodingUnknown)
            .ExtractStringStorage();
    serialWrite(serial, s);
    RuntimeUnlockString(s);
}

std::string Take(KelpString s) {
    std::string text = s ? std::string(TextOf(s), static_cast<size_t>(s->length)) : "";
    RuntimeUnlockString(s);
    return text;
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

} // namespace

RuntimeObject *NewTestSerial(const std::string &path) {
    static RuntimeClass *klass = [] {
        RuntimeClass *c = MakeSubclass("Serial", "Serial1");
        EXPECT_TRUE(SetEventHandler(c, "DataAvailable", reinterpret_cast<void *>(&OnData)));
        EXPECT_TRUE(SetEventHandler(c, "Error", reinterpret_cast<void *>(&OnError)));
        EXPECT_TRUE(SetEventHandler(c, "LineStateChanged", reinterpret_cast<void *>(&OnLines)));
        return c;
    }();
    SerialEvents().clear();
    RuntimeObject *serial = RuntimeNewObject(klass);
    SerialOf(serial)->serialPort = NewSerialPort(path);
    return serial;
}

} // namespace kelp::test
