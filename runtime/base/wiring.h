#pragma once
// Steps of the runtime bring-up that belong to other subsystems (control
// colours, socket table, ...).  A subsystem registers its step from a static
// object; the process entry runs all steps, lowest order first, after the
// theme read-out and before the image is read.
namespace kelp {

enum BringUpOrder {
    kBringUpControlColours = 10,
    kBringUpUnhandledExceptions = 20,
    kBringUpStackChecker = 40,
    kBringUpSockets = 50,
    kBringUpLate = 90,
};

struct BringUpStep {
    BringUpStep(int order, void (*step)());
};

// Runs every registered step once, in order (equal orders in registration
// order).  Later calls do nothing.
void RunBringUpSteps();

} // namespace kelp
