#pragma once
// Files and processes as the tool's commands use them.
#include <cstdint>
#include <string>
#include <vector>

namespace kelp::tool {

bool IsFolder(const std::string &path);
bool ReadWholeFile(const std::string &path, std::vector<uint8_t> &out);
// Writes bytes to path, mode 0755 when executable; false leaves no file.
bool WriteWholeFile(const std::string &path, const std::vector<uint8_t> &bytes, bool executable);
// The folder this tool's program lies in.
std::string ToolFolder();
// Runs program with one extra environment variable set and collects its
// standard output; false when it could not be started or did not exit 0.
bool RunCollecting(const std::string &program, const std::string &environment, std::string &out);

} // namespace kelp::tool
