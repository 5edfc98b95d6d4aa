#pragma once
// The state of the debugger link, shared by the stop logic (session.cpp),
// the command table (commands.cpp) and the inspection (inspect.cpp).  One
// link per process, used only by the thread that holds the run lock.
#include "debugger/connection.h"

#include "kelp/records.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kelp::debugger {

enum StepMode : int32_t { kRun = 0, kStep = 1, kStepOver = 2, kStepOut = 3 };

struct LinkState {
    std::unique_ptr<DebuggerConnection> connection; // null until the first line
    std::string address = "127.0.0.1";              // of the IDE
    std::vector<uint8_t> breakpoints;               // one byte per line
    int32_t stepMode = kStep;                       // the first line stops
    uintptr_t stepFrame = 0;                        // compared in modes 2 and 3
    uintptr_t stopFrame = 0;                        // stack walks start here
    uintptr_t stopReturn = 0;                       // where the stopped code goes on
    std::vector<uintptr_t> objectWatch, arrayWatch; // told of their end
    bool trap = false;                              // stop on exceptions
    bool breakRequested = false;
    bool resume = false;    // the last command let the program go on
    bool connected = false; // the IDE answered
    bool inLink = false;    // the guard against re-entry
    uintptr_t imageBase = 0;
};

LinkState &Link();

// Ends the process the way QUIT does: the connection dropped, status 1.
[[noreturn]] void QuitLink();

// Runs one command from the IDE (any case); unknown commands do nothing.
void RunCommand(const std::string &command, const std::string &data);

// Replies to the IDE.  Error answers a command that could not be carried
// out: "ERR", the command as it came and its data.
void Reply(std::string_view command, std::string_view data);
void ReplyError(std::string_view command, std::string_view data);

} // namespace kelp::debugger
