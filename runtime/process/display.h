#pragma once
// Whether the toolkit has an X display.  The runtime starts without one:
// console images, tools and tests run headless, and a GUI operation then
// fails with a clear message instead of a crash.
namespace kelp {

// Initialises the toolkit with gtk_init_check and records whether a display
// was opened.  Safe to call more than once; later calls report the first.
bool InitToolkit(int *argc, char ***argv);

// True once InitToolkit opened a display.
bool DisplayAvailable();

// For GUI operations: true when a display exists; otherwise writes
// "<operation>: no X display is available" to standard error once per
// operation name and returns false.
bool RequireDisplay(const char *operation);

} // namespace kelp
