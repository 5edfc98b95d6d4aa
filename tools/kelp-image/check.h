#pragma once

namespace kelp::tool {
// kelp-image check's arguments (behind "check"); 0 when everything would
// bind, 1 when something would be missing or is damaged.
int Check(int argc, char **argv);
} // namespace kelp::tool
