#pragma once

namespace kelp::tool {
// kelp-image link's arguments (behind "link"); the process's exit status.
int LinkCommand(int argc, char **argv);
} // namespace kelp::tool
