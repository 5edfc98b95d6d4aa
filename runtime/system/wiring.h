#pragma once
namespace kelp {
// The _SystemClass and _QuicktimeInstallStatus classes.
void WireSystem();
} // namespace kelp
