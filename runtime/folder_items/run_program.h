#pragma once
// Running another program with an argument vector: no shell ever sees a
// file name, so blanks, quotes, "$", backquotes, ";", "&" and newlines in
// names are ordinary characters.
#include <string>
#include <vector>

namespace kelp {

// Runs argv[0] (looked up in PATH) and waits; answers its exit status, or
// -1 when it could not be started (errno is left set).
int RunAndWait(const std::vector<std::string> &argv);

// Starts it and does not wait: the program is left to itself (no zombie
// stays behind).  False only when no process could be made.
bool RunDetached(const std::vector<std::string> &argv);

} // namespace kelp
