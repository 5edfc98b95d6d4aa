#pragma once
// The far ends the serial tests talk to: pseudo-terminals, tools run on a
// terminal's master side, and Serial objects made as a program makes them,
// their events written to a log.
#include "kelp/records.h"

#include <string>
#include <vector>

namespace kelp::test {

// The Serial under test opens `path` (the slave); the test is the device's
// far end on `master`.
struct Pty {
    Pty();
    ~Pty() { CloseMaster(), CloseSlave(); }
    void CloseMaster();
    void CloseSlave();
    std::string ReadMaster(size_t want, int ms); // what arrived within ms
    int master = -1, slave = -1;
    std::string path;
};

// Runs a shell command with `input` as its standard input; answers its
// standard output.
std::string RunWithInput(int input, const std::string &command);

// A Serial of a subclass whose handlers log "data", "error <code>" and
// "lines <constants>" to SerialEvents(), on the port at `path`.  The log
// starts anew with each.
RuntimeObject *NewTestSerial(const std::string &path);
std::vector<std::string> &SerialEvents();

// Bytes to and from the Serial; Take releases the string.
void Write(RuntimeObject *serial, const std::string &bytes);
std::string Take(KelpString s);

} // namespace kelp::test
