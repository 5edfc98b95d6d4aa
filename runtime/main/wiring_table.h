#pragma once
// The wiring table: every folder's Wire function, in the order they run.
namespace kelp {

// Runs the table once: the programs at the start of KelpProcessMain, test
// and benchmark programs before their first case.  Later calls do nothing.
void WireRuntime();

} // namespace kelp
