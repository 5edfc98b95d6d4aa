// A Serial object's device: opening, settings, the service pass that moves
// bytes between the queues and the device, and the modem lines.
//
// Every descriptor is non-blocking, and nothing in a pass waits on the
// device, so a port that stops answering can't freeze the windows.  The
// run loop calls PollSerialPorts once a pass; the descriptor watch makes an
// idle loop wake for arriving data, so a program with nothing but a Serial
// gets its DataAvailable at once.
#include "serial/serial_port.h"

#include "serial/port_list.h"
#include "serial/termios_settings.h"

#include "exceptions/call_event.h"
#include "exceptions/raise.h"
#include "memory/byte_queue.h"
#include "runloop/descriptor_watch.h"
#include "strings/kstring.h"

#include "kelp/arrays.h"
#include "kelp/encodings.h"
#include "kelp/objects.h"
#include "kelp/serial.h"
#include "kelp/system.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

namespace kelp {
namespace {

// Serial data is slow: small nodes keep an idle port's queues small.
constexpr long kQueueNodeSize = 4096;
// One read of what FIONREAD reports is bounded, so a flood is taken in
// pieces across passes instead of in one allocation of any size.
constexpr int kMaxReadPerPass = 1 << 16;
// DataAvailable events of one pass.
constexpr int kMaxAnnouncements = 4;

// Modem bits of the lines, by index (the constant is 1 << index).
constexpr int kModemBits[kLineCount] = {TIOCM_DTR, TIOCM_RTS, TIOCM_CTS,
                                        TIOCM_CAR, TIOCM_RNG, TIOCM_DSR};
constexpr const char *kLineNames[kLineCount] = {"DTR", "RTS", "CTS", "DCD", "RI", "DSR"};

SerialRecord *gFirst = nullptr; // every Serial, newest first
int gHeld = 0;                  // the debugger's stops

std::string PathOf(const SerialRecord *serial) {
    std::string path = SerialPortPath(serial->serialPort);
    return path.empty() ? SerialDevicePath(serial->port) : path;
}

void Fail(SerialRecord *serial, int32_t code) {
    serial->lastErrorCode = code;
    CallEvent(&serial->object, gSerialHooks.error);
}

void Trace(const SerialRecord *serial, const char *what) {
    const std::string text = "Serial " + PathOf(serial) + ": " + what;
    string line = string::FromBytes(text.data(), static_cast<long>(text.size()), kEncodingUTF8);
    SystemDebugLogger(nullptr, line.Storage());
}

// The modem bits, or 0 for a device without modem lines (a
// pseudo-terminal, some adapters): those read as all lines off.
int ModemBits(const SerialRecord *serial) {
    int bits = 0;
    if (!serial->open || ioctl(serial->posixDescriptor, TIOCMGET, &bits) != 0)
        return 0;
    return bits;
}

bool LineIsOn(int modemBits, int index) { return (modemBits & kModemBits[index]) != 0; }

int IndexOfLine(int32_t line) {
    for (int i = 0; i < kLineCount; ++i)
        if (line == (1 << i))
            return i;
    return -1;
}

// A device without modem lines answers these requests with ENOTTY or
// EINVAL; it is still a usable port.
bool NoModemLines(int error) { return error == ENOTTY || error == EINVAL; }

void UpdateWatch(SerialRecord *serial) {
    if (!serial->watch)
        return;
    unsigned interest = kWatchRead;
    if (serial->output->Count() > 0)
        interest |= kWatchWrite;
    if (serial->watch->Interest() != interest)
        serial->watch->SetInterest(interest);
    else
        serial->watch->Rearm();
}

void ReleaseDescriptor(SerialRecord *serial);

// Errors of a device that is no longer there: the port closes on them.
bool DeviceGone(int error) { return error == EIO || error == ENXIO || error == ENODEV; }

// Writes what the device takes now; false after an error was reported.
// Answers through `wrote` how many bytes went.
bool WriteQueued(SerialRecord *serial, long *wrote) {
    *wrote = 0;
    while (serial->output->Count() > 0) {
        long count = 0;
        const uint8_t *bytes = serial->output->Peek(&count);
        ssize_t done = write(serial->posixDescriptor, bytes, static_cast<size_t>(count));
        if (done < 0) {
            const int error = errno;
            if (error == EAGAIN || error == EINTR)
                return true; // the device is full: the rest goes next pass
            if (DeviceGone(error))
                ReleaseDescriptor(serial);
            Fail(serial, error);
            return false;
        }
        serial->output->Consume(done);
        *wrote += done;
        if (done < count)
            return true;
    }
    return true;
}

// Lets go of the descriptor without touching the settings or the queues:
// the common end of Close and of a device that went away.
void ReleaseDescriptor(SerialRecord *serial) {
    delete serial->watch;
    serial->watch = nullptr;
    if (serial->posixDescriptor >= 0)
        close(serial->posixDescriptor);
    serial->posixDescriptor = -1;
    serial->open = 0;
    serial->breakOnLine = 0;
}

// A device that vanished (an adapter pulled, the far end of a
// pseudo-terminal closed) hangs up: reads fail with EIO or find nothing
// forever.  The port closes, keeping what was read before, and the program
// hears of it once through Error.
bool Vanished(SerialRecord *serial, int *error) {
    pollfd probe = {serial->posixDescriptor, POLLIN, 0};
    if (poll(&probe, 1, 0) <= 0 || (probe.revents & (POLLHUP | POLLERR | POLLNVAL)) == 0)
        return false;
    if (probe.revents & POLLIN) {
        int waiting = 0;
        if (ioctl(serial->posixDescriptor, FIONREAD, &waiting) == 0 && waiting > 0)
            return false; // read what is left first
    }
    uint8_t byte;
    ssize_t got = read(serial->posixDescriptor, &byte, 1);
    if (got > 0) {
        serial->input->Append(&byte, 1);
        serial->dataArrived = 1;
        return false;
    }
    *error = got < 0 && errno != EAGAIN ? errno : EIO;
    return true;
}

// Takes what the device holds into the input queue; false after an error
// was reported (the port may then be closed).
bool ReadWaiting(SerialRecord *serial) {
    int waiting = 0;
    if (ioctl(serial->posixDescriptor, FIONREAD, &waiting) != 0) {
        const int error = errno;
        ReleaseDescriptor(serial);
        Fail(serial, error);
        return false;
    }
    if (waiting > 0) {
        const int want = waiting < kMaxReadPerPass ? waiting : kMaxReadPerPass;
        std::vector<uint8_t> bytes(static_cast<size_t>(want));
        ssize_t got = read(serial->posixDescriptor, bytes.data(), bytes.size());
        if (got < 0 && errno != EAGAIN && errno != EINTR) {
            Fail(serial, errno);
            return false;
        }
        if (got > 0) {
            serial->input->Append(bytes.data(), got);
            serial->dataArrived = 1;
        }
        return true;
    }
    int error = 0;
    if (Vanished(serial, &error)) {
        ReleaseDescriptor(serial);
        Fail(serial, error);
        return false;
    }
    return true;
}

void WatchLines(SerialRecord *serial) {
    const int bits = ModemBits(serial);
    std::vector<int32_t> changed;
    for (int i = 0; i < kLineCount; ++i) {
        const uint8_t now = LineIsOn(bits, i) ? 1 : 0;
        const bool watched = (serial->watchedLines & (1 << i)) != 0;
        if (now == serial->lineStates[i])
            continue;
        if (serial->lineTrace)
            Trace(serial, (std::string(kLineNames[i]) + (now ? " on" : " off")).c_str());
        serial->lineStates[i] = now;
        if (watched)
            changed.push_back(1 << i);
    }
    if (changed.empty())
        return;
    RuntimeArray *lines = CreateArray(1, 0, static_cast<int32_t>(changed.size()) - 1);
    if (!lines)
        return;
    auto set = reinterpret_cast<kelp_array1_set_i32>(lines->operations[kArraySlotSet]);
    for (size_t i = 0; i < changed.size(); ++i)
        set(lines, changed[i], static_cast<int32_t>(i));
    CallEvent(&serial->object, gSerialHooks.lineStateChanged, lines);
    RuntimeUnlockArray(lines);
}

// Remembers the present state of every line, so the next pass reports
// only changes.
void SnapshotLines(SerialRecord *serial) {
    const int bits = ModemBits(serial);
    for (int i = 0; i < kLineCount; ++i)
        serial->lineStates[i] = LineIsOn(bits, i) ? 1 : 0;
}

// One pass: break, output, input, DataAvailable, line changes.
void Pass(SerialRecord *serial, bool nested) {
    if (serial->watch)
        serial->watch->TakeReady();
    // The break is held from SetBreak to ClearBreak; a timed break
    // (tcsendbreak) would stop the whole loop for a quarter second a pass.
    if (serial->breakWanted != serial->breakOnLine) {
        ioctl(serial->posixDescriptor, serial->breakWanted ? TIOCSBRK : TIOCCBRK);
        serial->breakOnLine = serial->breakWanted;
    }
    long wrote = 0;
    if (!WriteQueued(serial, &wrote) || !serial->open)
        return;
    if (!ReadWaiting(serial) || !serial->open)
        return;
    // Bytes that a Read inside the handler brought in are announced at
    // once, a few times at most, so a steady stream can't hold the loop.
    for (int fired = 0; serial->dataArrived && !nested && fired < kMaxAnnouncements; ++fired) {
        serial->dataArrived = 0;
        CallEvent(&serial->object, gSerialHooks.dataAvailable);
        if (!serial->open)
            return;
    }
    if (!nested)
        WatchLines(serial);
    if (serial->open)
        UpdateWatch(serial);
}

// The pass itself, on a locked object.  A pass inside a pass (a handler
// that reads) moves bytes but fires no DataAvailable or LineStateChanged
// of its own: the outer pass announces what it brought, so handlers don't
// nest.
void Tick(SerialRecord *serial) {
    if (gHeld > 0 || !serial->open)
        return;
    const bool nested = serial->inPass != 0;
    serial->inPass = 1;
    Pass(serial, nested);
    serial->inPass = nested ? 1 : 0;
}

void SetHangUpOnClose(SerialRecord *serial, termios &settings) {
    if (serial->leaveDTR) {
        settings.c_cflag &= ~HUPCL;
        if (serial->savedSettings)
            serial->savedSettings->c_cflag &= ~HUPCL;
    } else {
        settings.c_cflag |= HUPCL;
        if (serial->savedSettings)
            serial->savedSettings->c_cflag |= HUPCL;
    }
}

void DriveLine(SerialRecord *serial, int index, bool on) {
    int bit = kModemBits[index];
    if (ioctl(serial->posixDescriptor, on ? TIOCMBIS : TIOCMBIC, &bit) != 0 && !NoModemLines(errno))
        Fail(serial, SerialErrorForErrno(errno));
}

} // namespace

SerialEventHooks gSerialHooks;

void HoldSerialTicks(bool hold) {
    gHeld += hold ? 1 : -1;
    if (gHeld > 0)
        return;
    gHeld = 0;
    // What arrived during the stop woke the loop once and found nobody:
    // the watches wait again, so the next pass sees it.
    for (SerialRecord *serial = gFirst; serial; serial = serial->next)
        if (serial->open)
            UpdateWatch(serial);
}

void PollSerialPorts() {
    SerialRecord *serial = gFirst;
    if (serial)
        RuntimeLockObject(&serial->object);
    while (serial) {
        Tick(serial);
        // Read the successor only now: a handler may have made or dropped
        // other ports, and this one stays linked while it is locked.
        SerialRecord *next = serial->next;
        if (next)
            RuntimeLockObject(&next->object);
        RuntimeUnlockObject(&serial->object);
        serial = next;
    }
}

} // namespace kelp

using namespace kelp;

extern "C" void RuntimeSerialInitializer(RuntimeObject *self) {
    if (!self)
        return;
    SerialRecord *serial = SerialOf(self);
    serial->bits = kBits8;
    serial->baud = kBaud57600;
    serial->requestToSend = 1;
    serial->posixDescriptor = -1;
    serial->output = new MemoryManager(kQueueNodeSize);
    serial->input = new MemoryManager(kQueueNodeSize);
    serial->next = gFirst;
    gFirst = serial;
}

extern "C" void RuntimeSerialFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    SerialRecord *serial = SerialOf(self);
    serialClose(self);
    for (SerialRecord **at = &gFirst; *at; at = &(*at)->next)
        if (*at == serial) {
            *at = serial->next;
            break;
        }
    RuntimeUnlockObject(serial->serialPort);
    serial->serialPort = nullptr;
    delete serial->output;
    delete serial->input;
    serial->output = serial->input = nullptr;
}

extern "C" uint8_t serialOpen(RuntimeObject *self) {
    if (!self)
        return 0;
    SerialRecord *serial = SerialOf(self);
    if (serial->open)
        return 1;
    const std::string path = PathOf(serial);
    const int fd = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (fd < 0 || ioctl(fd, TIOCEXCL) != 0) {
        const int error = errno;
        if (fd >= 0)
            close(fd);
        Fail(serial, SerialErrorForErrno(error));
        return 0;
    }
    serial->posixDescriptor = fd;
    serial->open = 1;
    fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK);
    if (!serial->savedSettings) {
        serial->savedSettings = new termios{};
        tcgetattr(fd, serial->savedSettings);
    }
    serial->watch = new DescriptorWatch(fd, kWatchRead);
    serialReset(self);
    if (serial->open)
        SnapshotLines(serial);
    return serial->open;
}

extern "C" void serialReset(RuntimeObject *self) {
    if (!self || !SerialOf(self)->open)
        return;
    SerialRecord *serial = SerialOf(self);
    if (const char *stop = IllegalStopBits(*serial)) {
        const std::string message = "Illegal combination of properties.  You cannot have " +
                                    std::to_string(DataBitsOf(serial->bits)) + " bits with " +
                                    stop + " stop bits.";
        RaiseWithMessage("UnsupportedFormatException", message.c_str());
        return;
    }
    termios settings = serial->savedSettings ? *serial->savedSettings : termios{};
    SetHangUpOnClose(serial, settings);
    if (!ComposeSettings(*serial, settings)) {
        Fail(serial, kSerialInvalidOptions);
        return;
    }
    const int fd = serial->posixDescriptor;
    if (tcsetattr(fd, TCSANOW, &settings) != 0) {
        Fail(serial, SerialErrorForErrno(errno));
        return;
    }
    int dtr = TIOCM_DTR, rts = TIOCM_RTS;
    // Each line by itself: a whole-word set would also clear the UART's
    // auxiliary outputs and loopback.
    if ((ioctl(fd, serial->dataTerminalReady ? TIOCMBIS : TIOCMBIC, &dtr) != 0 ||
         ioctl(fd, serial->requestToSend ? TIOCMBIS : TIOCMBIC, &rts) != 0) &&
        !NoModemLines(errno)) {
        Fail(serial, SerialErrorForErrno(errno));
        return;
    }
    if (tcgetattr(fd, &settings) == 0)
        serial->baud = BaudForSpeed(cfgetispeed(&settings));
}

extern "C" void serialClose(RuntimeObject *self) {
    if (!self)
        return;
    SerialRecord *serial = SerialOf(self);
    if (serial->open) {
        if (serial->breakOnLine)
            ioctl(serial->posixDescriptor, TIOCCBRK);
        if (serial->savedSettings)
            tcsetattr(serial->posixDescriptor, TCSANOW, serial->savedSettings);
        ioctl(serial->posixDescriptor, TIOCNXCL);
        ReleaseDescriptor(serial);
    }
    delete serial->savedSettings;
    serial->savedSettings = nullptr;
    serial->input->Clear();
    serial->dataArrived = 0;
}

extern "C" void serialTick(RuntimeObject *self) {
    if (!self)
        return;
    RuntimeLockObject(self);
    Tick(SerialOf(self));
    RuntimeUnlockObject(self);
}

extern "C" void serialWrite(RuntimeObject *self, stringStorage *bytes) {
    if (!self) {
        AssertionFailed(__FILE__, __LINE__, "self", "self",
                        "Have no serial control, so cannot write");
        return;
    }
    SerialRecord *serial = SerialOf(self);
    if (!serial->open && !serialOpen(self))
        return;
    if (bytes && bytes->length > 0 && !serial->output->Append(bytes->buffer + 1, bytes->length))
        return;
    long wrote = 0;
    if (WriteQueued(serial, &wrote) && serial->open)
        UpdateWatch(serial);
}

namespace {

uint32_t EncodingOf(RuntimeObject *encoding) {
    return encoding ? GetEncodingFromTEObject(encoding) : kEncodingUnknown;
}

stringStorage *TakeInput(SerialRecord *serial, long count, bool consume, uint32_t encoding) {
    if (count > serial->input->Count())
        count = serial->input->Count();
    if (count <= 0)
        return nullptr;
    std::vector<uint8_t> bytes(static_cast<size_t>(count));
    const long got = serial->input->Copy(bytes.data(), count, consume);
    return string::FromBytes(bytes.data(), got, encoding).ExtractStringStorage();
}

} // namespace

extern "C" stringStorage *serialRead(RuntimeObject *self, int32_t count, RuntimeObject *encoding) {
    if (!self)
        return nullptr;
    serialTick(self);
    return TakeInput(SerialOf(self), count, true, EncodingOf(encoding));
}

extern "C" stringStorage *serialReadAll(RuntimeObject *self, RuntimeObject *encoding) {
    if (!self)
        return nullptr;
    SerialRecord *serial = SerialOf(self);
    serial->dataArrived = 0;
    return TakeInput(serial, serial->input->Count(), true, EncodingOf(encoding));
}

extern "C" stringStorage *serialLookahead(RuntimeObject *self, RuntimeObject *encoding) {
    if (!self)
        return nullptr;
    SerialRecord *serial = SerialOf(self);
    return TakeInput(serial, serial->input->Count(), false, EncodingOf(encoding));
}

extern "C" void serialXmitWait(RuntimeObject *self) {
    if (!self)
        return;
    SerialRecord *serial = SerialOf(self);
    while (serial->open && serial->output->Count() > 0) {
        long wrote = 0;
        if (!WriteQueued(serial, &wrote) || !serial->open)
            return;
        if (tcdrain(serial->posixDescriptor) != 0) {
            Fail(serial, errno);
            return;
        }
        if (wrote == 0)
            return; // the device takes nothing: give up rather than spin
    }
}

extern "C" void serialFlush(RuntimeObject *self) {
    if (!self)
        return;
    SerialRecord *serial = SerialOf(self);
    serialTick(self);
    serial->input->Clear();
    serialXmitWait(self);
    serial->output->Clear();
    if (serial->open)
        UpdateWatch(serial);
}

extern "C" void serialLeaveDTROnClose(RuntimeObject *self) {
    if (!self)
        return;
    SerialRecord *serial = SerialOf(self);
    serial->leaveDTR = 1;
    if (!serial->open)
        return;
    termios settings{};
    if (tcgetattr(serial->posixDescriptor, &settings) == 0) {
        SetHangUpOnClose(serial, settings);
        if (tcsetattr(serial->posixDescriptor, TCSANOW, &settings) != 0)
            Fail(serial, SerialErrorForErrno(errno));
    }
}

extern "C" void serialSetBreak(RuntimeObject *self) {
    if (self)
        SerialOf(self)->breakWanted = 1;
}

extern "C" void serialClearBreak(RuntimeObject *self) {
    if (self)
        SerialOf(self)->breakWanted = 0;
}

extern "C" uint8_t SerialEof(RuntimeObject *self) {
    return self && SerialOf(self)->output->Count() == 0 ? 1 : 0;
}

extern "C" uint8_t SerialError(RuntimeObject *self) {
    return self && SerialOf(self)->lastErrorCode != 0 ? 1 : 0;
}

extern "C" int32_t SerialBytesAvailable(RuntimeObject *self, int32_t) {
    return self ? static_cast<int32_t>(SerialOf(self)->input->Count()) : 0;
}

extern "C" int32_t SerialBytesLeftToSend(RuntimeObject *self, int32_t) {
    return self ? static_cast<int32_t>(SerialOf(self)->output->Count()) : 0;
}

extern "C" int32_t GetPosixDescriptor(RuntimeObject *self, int32_t) {
    return self ? SerialOf(self)->posixDescriptor : -1;
}

extern "C" void SerialWatchLines(RuntimeObject *self, int32_t lines) {
    if (!self)
        return;
    SerialRecord *serial = SerialOf(self);
    serial->watchedLines = lines & kAllLines;
    SnapshotLines(serial);
}

extern "C" uint8_t LineStateGetter(RuntimeObject *self, int32_t line) {
    const int index = IndexOfLine(line);
    if (!self || index < 0)
        return 0;
    return LineIsOn(ModemBits(SerialOf(self)), index) ? 1 : 0;
}

extern "C" void LineStateSetter(RuntimeObject *self, int32_t line, uint8_t state) {
    const int index = IndexOfLine(line);
    if (!self || (line != kLineDTR && line != kLineRTS))
        return; // the input lines are the other side's to drive
    SerialRecord *serial = SerialOf(self);
    (line == kLineDTR ? serial->dataTerminalReady : serial->requestToSend) = state ? 1 : 0;
    if (serial->lineTrace)
        Trace(serial, (std::string(kLineNames[index]) + (state ? " set on" : " set off")).c_str());
    if (serial->open)
        DriveLine(serial, index, state != 0);
}

extern "C" void lineTrace(RuntimeObject *self, uint8_t on) {
    if (self)
        SerialOf(self)->lineTrace = on ? 1 : 0;
}
