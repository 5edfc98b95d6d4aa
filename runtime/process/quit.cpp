#include "process/quit.h"

namespace kelp {
namespace {
// A byte, as compiled code and the debugger read it; only the thread that
// holds the run lock touches it.
unsigned char gQuitRequested = 0;
} // namespace

void RequestQuit() { gQuitRequested = 1; }
bool QuitRequested() { return gQuitRequested != 0; }
void ClearQuitRequest() { gQuitRequested = 0; }

} // namespace kelp
