#pragma once
namespace kelp {
// Printing: the PrinterSetup class and the functions that open a printer.
void WirePrint();
} // namespace kelp
