#pragma once
// The Serial object: the properties a program sets, the open device, and
// the two byte queues between the program and the device.
#include "kelp/records.h"

#include <cstdint>

struct termios;

namespace kelp {

class DescriptorWatch;
class MemoryManager;

// The language's constants, as programs pass them.
enum SerialBits : int16_t { kBits5 = 0, kBits6 = 1, kBits7 = 2, kBits8 = 3 };
enum SerialStop : int16_t { kStopBits1 = 0, kStopBits15 = 1, kStopBits2 = 2 };
enum SerialParity : int16_t { kParityNone = 0, kParityOdd = 1, kParityEven = 2 };
constexpr int32_t kBaud57600 = 13;

// LastErrorCode: these, or the system's errno.
enum SerialErrorCode : int32_t {
    kSerialNoError = 0,
    kSerialAccessDenied = 100,
    kSerialPortNotFound = 101,
    kSerialInvalidOptions = 102,
};

// Modem lines: the constant is the bit 1 << index.
constexpr int kLineCount = 6; // DTR, RTS, CTS, DCD, RI, DSR
constexpr int32_t kLineDTR = 1, kLineRTS = 2, kLineCTS = 4, kLineDCD = 8, kLineRI = 16,
                  kLineDSR = 32;
constexpr int32_t kAllLines = (1 << kLineCount) - 1;

struct SerialRecord {
    RuntimeObject object;
    int16_t bits;   // Bits5..Bits8
    int16_t stop;   // StopBits1, StopBits15, StopBits2
    int16_t parity; // ParityNone, ParityOdd, ParityEven
    int16_t port;   // device number behind the base name
    int32_t baud;   // a Baud constant (0..15) or a system speed code (50 and up)
    uint8_t dataTerminalReady, requestToSend; // wanted line states
    uint8_t dtrFlow, ctsFlow, xonFlow;        // DTR, CTS, XON properties
    uint8_t open;
    uint8_t leaveDTR;               // LeaveDTROnClose was called
    uint8_t dataArrived;            // DataAvailable is due
    uint8_t breakWanted;            // SetBreak until ClearBreak
    uint8_t breakOnLine;            // what the device was last told
    uint8_t lineTrace;              // log line changes
    uint8_t inPass;                 // a service pass runs (Read from a handler)
    uint8_t lineStates[kLineCount]; // last seen state of each watched line
    RuntimeObject *serialPort;      // counted; nil: go by `port`
    int32_t lastErrorCode;
    int32_t posixDescriptor;       // -1 when closed
    int32_t watchedLines;          // mask of line constants
    struct termios *savedSettings; // found at first open, restored at close
    MemoryManager *output;         // bytes not yet written
    MemoryManager *input;          // bytes read, not yet taken
    DescriptorWatch *watch;        // wakes the loop when the device is ready
    SerialRecord *next;            // every Serial, newest first
};

inline SerialRecord *SerialOf(RuntimeObject *self) {
    return reinterpret_cast<SerialRecord *>(self);
}

} // namespace kelp
