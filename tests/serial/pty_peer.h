#pragma once
// The far ends that the serial tests talk to: pseudo-terminals, tools run
// on a terminal's master side, and Serial objects made as a program makes
// them, with their events written to a log.
#include "kelp/records.h"

#include <string>
#include <vector>

namespace kelp::test {

// A pseudo-terminal pair.  The Serial under test opens `path` (the slave
// side); the test plays the device's far end on `master`.
struct Pty {
    Pty();
    ~Pty();
    Pty(const Pty &) = delete;
    Pty &operator=(const Pty &) = delete;
    void CloseMaster();
    void CloseSlave();
    // Everything the far end has received within `ms` milliseconds.
    std::string ReadMaster(size_t want, int ms);
    int master = -1, slave = -1;
    std::string path;
};

// Runs argv with `input` as its standard input; answers its standard output.
std::string RunWithInput(int input, const std::vector<std::string> &argv);

// A Serial of a subclass whose handlers append to SerialEvents(): "data",
// "error <code>", "lines <constants...>".  SerialPort is set to `path`.
RuntimeObject *NewTestSerial(const std::string &path);
std::vector<std::string> &SerialEvents();

} // namespace kelp::test
