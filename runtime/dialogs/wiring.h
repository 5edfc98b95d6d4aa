#pragma once
namespace kelp {
// The dialogs: the window that presents assertion reports; the MessageDialog
// classes and MsgBox.
void WireDialogs();
} // namespace kelp
