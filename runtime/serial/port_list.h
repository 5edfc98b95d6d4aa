#pragma once
// Which serial devices this machine has, and the SerialPort class that
// names one of them.
#include "kelp/records.h"

#include <string>
#include <vector>

namespace kelp {

struct ObjectDefinition;

// The path of device number n: "/dev/tts/" n where that folder exists (the
// answer is kept for the life of the process), else "/dev/ttyS" n.
std::string SerialDevicePath(int number);

// The ports in the order System.SerialPort counts them: the numbered
// devices of the base name, then USB adapters ("/dev/ttyUSB" n), then
// modems on USB ("/dev/ttyACM" n), each family up to its first missing
// number.  Tests add their pseudo-terminals through the environment
// variable KELP_SERIAL_TEST_PORTS, a list of paths separated by colons,
// appended when they exist; nothing else reads it.
std::vector<std::string> SerialPortPaths();

struct SerialPortRecord {
    RuntimeObject object;
    KelpString name; // the device path, counted
};

ObjectDefinition *SerialPortDefinition();
// A new SerialPort for the path (one reference for the caller).
RuntimeObject *NewSerialPort(const std::string &path);
// The path of a SerialPort object; empty for nil.
std::string SerialPortPath(RuntimeObject *port);

} // namespace kelp
