#pragma once
// From a Serial object's properties to the terminal settings of its device,
// and the few mappings between the language's numbers and the system's.
// Nothing here touches a device, so every rule can be checked on a struct.
#include "serial/serial_record.h"

#include <termios.h>

namespace kelp {

// The number of data bits a Bits value stands for: 5 to 7 for Bits5 to
// Bits7, and 8 for every other value.
int DataBitsOf(int16_t bits);

// For a combination that no UART frames (5 data bits with 2 stop bits, or
// 6 to 8 with 1.5), the stop bits as the message names them, "2" or "1.5";
// null for a legal one.
const char *IllegalStopBits(const SerialRecord &serial);

// The system speed for a Baud value: 50 and more is a system code already,
// smaller values are the language's constants.  Constants of speeds that
// this system can't set (3,600, 7,200, 14,400, 28,800) give 57,600.
speed_t SpeedForBaud(int32_t baud);

// The value Baud keeps after the device was set: the constant when the
// speed is one of the constants' (system codes below 50 would read back as
// a different constant at the next Reset), else the system code.
int32_t BaudForSpeed(speed_t speed);

// Fills `settings` (a copy of the settings found at open) from the
// properties.  False, with the character settings done, when the speed is
// one the system refuses.
bool ComposeSettings(const SerialRecord &serial, termios &settings);

// LastErrorCode for a failed open or set: EPERM, EACCES and EBUSY are
// AccessDenied, EIO PortNotFound, EINVAL InvalidOptions; others stay.
int32_t SerialErrorForErrno(int error);

} // namespace kelp
