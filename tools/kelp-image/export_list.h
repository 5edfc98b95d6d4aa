#pragma once
// The runtime's export table, as the runtime itself lists it.
#include <string>
#include <vector>

namespace kelp::tool {

// Asks the runtime program for the names of its built-in export rows (those
// an image's imports bind against).  False with error when it can't be run.
bool RuntimeExports(const std::string &runtime, std::vector<std::string> &names,
                    std::string &error);

// The runtime kelp-image uses when none is named: the kelp beside the tool.
std::string DefaultRuntime();

} // namespace kelp::tool
