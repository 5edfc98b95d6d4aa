#pragma once
namespace kelp {
// The dialogs' upcalls: the assertion report's dialog presents reports.
void WireDialogs();
} // namespace kelp
