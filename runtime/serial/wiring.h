#pragma once
namespace kelp {
// The Serial and SerialPort classes, System's serial members, and the run
// loop's service of the ports.
void WireSerial();
} // namespace kelp
