#pragma once
// The process's own bring-up, after the wiring and before the image: the
// argument copies, the toolkit (when a display is there) and its theme, the
// default text styles, and the stack limit of the main thread.
namespace kelp {

void BringUpProcess(int argc, char **argv);

} // namespace kelp
