#pragma once
// How a lower layer reaches a higher one.  A folder never includes a higher
// folder; where a lower layer must call up (a report to present, an event
// of the application to fire, the windows to close) it keeps a slot, and the
// higher folder fills the slot from its Wire function (in its wiring.cpp),
// which also registers the folder's library classes.  The roof's wiring
// table calls every Wire function once, in a named order, lowest layer
// first, before anything else runs: no static constructor wires anything,
// and the order can be read in one place.
#include <span>

namespace kelp {

struct WiringStep {
    const char *name; // what the step wires, as the table reads
    void (*wire)();
};

// Runs each step of the table once, in the table's order.  Later calls with
// the same table do nothing.
void RunWiring(std::span<const WiringStep> steps);

} // namespace kelp
