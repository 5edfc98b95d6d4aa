#pragma once
#include <string>

namespace kelp::tool {
// Lists an image's segments, link records, resources, options and symbols.
int Info(const std::string &path);
} // namespace kelp::tool
