#pragma once
// The run loop's quit flag.  Setting it ends RuntimeRun after the current
// pass; nested modal loops see it where they test it.  The unhandled
// exception handler and the application's quit sequence set it.
namespace kelp {

void RequestQuit();
bool QuitRequested();
// Clears the flag; for a process that runs the loop again (tests, tools).
void ClearQuitRequest();

} // namespace kelp
