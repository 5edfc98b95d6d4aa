/* Serial ports: the Serial and SerialPort classes and the System members
 * that list the ports, as compiled code calls them.
 *
 * Failures of the device never raise: they set LastErrorCode (0 none, 100
 * access denied or busy, 101 port not found, 102 invalid options, or the
 * system's errno) and fire the Error event.  Only an impossible combination
 * of data and stop bits raises UnsupportedFormatException. */
#ifndef KELP_SERIAL_H
#define KELP_SERIAL_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Life cycle: the initializer sets the defaults (8 data bits, 57,600 baud,
 * RTS wanted) and links the object into the list the run loop services; the
 * finalizer closes the port and unlinks it. */
void RuntimeSerialInitializer(RuntimeObject *self);
void RuntimeSerialFinalizer(RuntimeObject *self);

/* Open answers whether the port is open (true at once when it was). */
uint8_t serialOpen(RuntimeObject *self);
/* Restores the settings found at open and gives the device up.  Bytes not
 * yet sent stay queued for the next open. */
void serialClose(RuntimeObject *self);
/* Applies the properties to the open device. */
void serialReset(RuntimeObject *self);
/* One service pass: break, output, input, DataAvailable, line changes. */
void serialTick(RuntimeObject *self);

/* Queues the bytes and sends what the device takes now; opens the port
 * first when it is closed.  A null self is an assertion report. */
void serialWrite(RuntimeObject *self, stringStorage *bytes);
/* Reading takes bytes from the input queue; a null encoding claims none. */
stringStorage *serialRead(RuntimeObject *self, int32_t count, RuntimeObject *encoding);
stringStorage *serialReadAll(RuntimeObject *self, RuntimeObject *encoding);
stringStorage *serialLookahead(RuntimeObject *self, RuntimeObject *encoding);
/* Sends the queued bytes and waits until the device has sent them. */
void serialXmitWait(RuntimeObject *self);
/* Drops the input, sends what is queued, drops what could not go. */
void serialFlush(RuntimeObject *self);
void serialLeaveDTROnClose(RuntimeObject *self);
void serialSetBreak(RuntimeObject *self);
void serialClearBreak(RuntimeObject *self);

/* EOF: nothing is queued for output.  SerialError: LastErrorCode is not 0
 * (ReadError and WriteError). */
uint8_t SerialEof(RuntimeObject *self);
uint8_t SerialError(RuntimeObject *self);
int32_t SerialBytesAvailable(RuntimeObject *self, int32_t unused);
int32_t SerialBytesLeftToSend(RuntimeObject *self, int32_t unused);
int32_t GetPosixDescriptor(RuntimeObject *self, int32_t unused);

/* LineChangeNotification with a mask of line constants (DTR 1, RTS 2,
 * CTS 4, DCD 8, RI 16, DSR 32). */
void SerialWatchLines(RuntimeObject *self, int32_t lines);
/* The state of one line, by its constant; false on a closed port and on a
 * device without modem lines.  The setter drives DTR and RTS at once on an
 * open port and stores them as wanted; the input lines can't be set. */
uint8_t LineStateGetter(RuntimeObject *self, int32_t line);
void LineStateSetter(RuntimeObject *self, int32_t line, uint8_t state);
/* While on, every change of a modem line that a service pass sees, and
 * every line the program drives, is written to the debug log. */
void lineTrace(RuntimeObject *self, uint8_t on);

/* SerialPort: a device path with its speeds. */
void SerialPortDestructor(RuntimeObject *self);

/* System.SerialPortCount and System.SerialPort(index or path).  An index
 * outside the list raises OutOfBoundsException; an empty path gives nil. */
int32_t getSerialPortCount(RuntimeObject *system, int32_t unused);
RuntimeObject *getSerialPort(RuntimeObject *system, int32_t index);
RuntimeObject *getSerialPortByPath(RuntimeObject *system, stringStorage *path);

#ifdef __cplusplus
}
#endif

#endif
