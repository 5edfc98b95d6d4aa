#include "serial/termios_settings.h"

#include <cerrno>
#include <iterator>

namespace kelp {
namespace {

// The constants with a speed of their own, by value; the rest run at 57,600.
struct BaudRow {
    int32_t baud;
    speed_t speed;
};
constexpr BaudRow kBaudTable[] = {
    {0, B300},  {1, B600},    {2, B1200},   {3, B1800},   {4, B2400},    {6, B4800},
    {8, B9600}, {10, B19200}, {12, B38400}, {13, B57600}, {14, B115200}, {15, B230400},
};

// Below this a Baud value is a constant, from it on a system code.
constexpr int32_t kFirstSystemCode = 50;

} // namespace

int DataBitsOf(int16_t bits) {
    switch (bits) {
    case kBits5: return 5;
    case kBits6: return 6;
    case kBits7: return 7;
    default: return 8;
    }
}

const char *IllegalStopBits(const SerialRecord &serial) {
    const int dataBits = DataBitsOf(serial.bits);
    if (dataBits == 5 && serial.stop == kStopBits2)
        return "2";
    if (dataBits >= 6 && serial.stop == kStopBits15)
        return "1.5";
    return nullptr;
}

speed_t SpeedForBaud(int32_t baud) {
    if (baud >= kFirstSystemCode)
        return static_cast<speed_t>(baud);
    for (const BaudRow &row : kBaudTable)
        if (row.baud == baud)
            return row.speed;
    return B57600;
}

int32_t BaudForSpeed(speed_t speed) {
    for (const BaudRow &row : kBaudTable)
        if (row.speed == speed && static_cast<int32_t>(speed) < kFirstSystemCode)
            return row.baud;
    return static_cast<int32_t>(speed);
}

bool ComposeSettings(const SerialRecord &serial, termios &t) {
    t.c_cflag |= CREAD | CLOCAL;
    if (serial.leaveDTR)
        t.c_cflag &= ~HUPCL;
    else
        t.c_cflag |= HUPCL;

    t.c_cflag &= ~CSIZE;
    switch (DataBitsOf(serial.bits)) {
    case 5: t.c_cflag |= CS5; break;
    case 6: t.c_cflag |= CS6; break;
    case 7: t.c_cflag |= CS7; break;
    default: t.c_cflag |= CS8;
    }
    // 1.5 stop bits exist only with 5 data bits, where the UART gives them
    // for CSTOPB; StopBits15 therefore asks for one stop bit.
    if (serial.stop == kStopBits2)
        t.c_cflag |= CSTOPB;
    else
        t.c_cflag &= ~CSTOPB;

    if (serial.parity == kParityNone) {
        t.c_cflag &= ~PARENB;
    } else {
        t.c_cflag |= PARENB;
        if (serial.parity == kParityOdd)
            t.c_cflag |= PARODD;
        else
            t.c_cflag &= ~PARODD;
        t.c_iflag |= INPCK;
    }

    // DTR/DSR flow control has no setting on this system: the bit that
    // other systems use for it lies inside the input-speed field here, and
    // setting it would make a real UART receive at 134 baud.  The DTR
    // property is kept and read back, and the device is left alone.

    if (serial.xonFlow) {
        t.c_iflag |= IXON | IXOFF;
        t.c_cflag &= ~CRTSCTS;
    } else {
        t.c_iflag &= ~(IXON | IXOFF);
        if (serial.ctsFlow)
            t.c_cflag |= CRTSCTS;
        else
            t.c_cflag &= ~CRTSCTS;
    }

    // A port carries bytes, not lines of a terminal: no carriage return or
    // line feed is turned into the other, and no eighth bit is stripped,
    // whatever the device was left with.
    t.c_iflag &= ~(INLCR | IGNCR | ICRNL | ISTRIP);
    t.c_lflag &= ~(ISIG | ICANON | ECHO | ECHOE);
    t.c_oflag &= ~OPOST;
    t.c_cc[VMIN] = 0;
    t.c_cc[VTIME] = 0;
    t.c_cc[VSTART] = 0x11;
    t.c_cc[VSTOP] = 0x13;

    const speed_t speed = SpeedForBaud(serial.baud);
    return cfsetispeed(&t, speed) == 0 && cfsetospeed(&t, speed) == 0;
}

int32_t SerialErrorForErrno(int error) {
    switch (error) {
    case EPERM:
    case EACCES:
    case EBUSY: return kSerialAccessDenied;
    case EIO: return kSerialPortNotFound;
    case EINVAL: return kSerialInvalidOptions;
    default: return error;
    }
}

} // namespace kelp
