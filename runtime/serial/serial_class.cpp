// The Serial class as programs see it: properties on the record's fields,
// the methods, the events, and the constants of lines and speeds.
#include "serial/port_list.h"
#include "serial/serial_port.h"

#include "objects/definitions.h"

#include "kelp/arrays.h"
#include "kelp/objects.h"
#include "kelp/serial.h"

#include <cstddef>

namespace kelp {
namespace {

const TypeRecord kEncodingType{kTypeObjectOf, "TextEncoding"};
const TypeRecord kSerialPortType{kTypeObjectOf, nullptr, nullptr, 0, &SerialPortDefinition};
const TypeRecord kIntegerArray{kTypeArray, nullptr, &kTypeInteger, 1};

// The forms without the optional encoding.
KelpString serialReadNoEncoding(RuntimeObject *self, int32_t count) {
    return serialRead(self, count, nullptr);
}
KelpString serialReadAllNoEncoding(RuntimeObject *self) { return serialReadAll(self, nullptr); }
KelpString serialLookaheadNoEncoding(RuntimeObject *self) { return serialLookahead(self, nullptr); }

// Handles of other platforms' drivers.
int32_t serialNoDriverHandle(RuntimeObject *, int32_t) { return 0; }

constexpr intptr_t Field(size_t offset) { return static_cast<intptr_t>(offset); }

} // namespace

void SerialWatchLineArray(RuntimeObject *self, RuntimeArray *lines) {
    int32_t mask = 0;
    if (lines && lines->dimensions == 1) {
        const int32_t last = lines->upperBounds[0];
        for (int32_t i = 0; i <= last; ++i) {
            const int32_t line = RuntimeDirectReadIntArray(lines, i);
            if (line == -1) {
                mask = 0;
                break;
            }
            mask |= line;
        }
    }
    SerialWatchLines(self, mask);
}

ObjectDefinition *SerialDefinition() {
#define SERIAL_SHORT(name, field)                                                                  \
    {                                                                                              \
        0, name, &kTypeInteger, KELP_ENTRY(shortGetter), KELP_ENTRY(shortSetter),                  \
            Field(offsetof(SerialRecord, field))                                                   \
    }
#define SERIAL_BOOL(name, field)                                                                   \
    {                                                                                              \
        0, name, &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_ENTRY(boolSetter),                    \
            Field(offsetof(SerialRecord, field))                                                   \
    }
#define SERIAL_CONSTANT(name, value)                                                               \
    { 0, name, &kTypeInteger, {}, {}, value, 0, true }
    static const PropertyRow properties[] = {
        SERIAL_SHORT("Bits", bits),
        SERIAL_SHORT("Stop", stop),
        SERIAL_SHORT("Parity", parity),
        SERIAL_SHORT("Port", port),
        {0, "Baud", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(intSetter),
         Field(offsetof(SerialRecord, baud))},
        SERIAL_BOOL("DataTerminalReady", dataTerminalReady),
        SERIAL_BOOL("RequestToSend", requestToSend),
        SERIAL_BOOL("DTR", dtrFlow),
        SERIAL_BOOL("CTS", ctsFlow),
        SERIAL_BOOL("XON", xonFlow),
        {0, "SerialPort", &kSerialPortType, KELP_ENTRY(objGetter), KELP_ENTRY(objSetter),
         Field(offsetof(SerialRecord, serialPort))},
        {0,
         "LastErrorCode",
         &kTypeInteger,
         KELP_ENTRY(intGetter),
         {},
         Field(offsetof(SerialRecord, lastErrorCode))},
        {0, "PosixDescriptor", &kTypeInteger, KELP_ENTRY(GetPosixDescriptor), {}},
        {0, "ClearToSend", &kTypeBoolean, KELP_ENTRY(LineStateGetter), {}, kLineCTS},
        {0, "DataSetReady", &kTypeBoolean, KELP_ENTRY(LineStateGetter), {}, kLineDSR},
        {0, "DataCarrierDetect", &kTypeBoolean, KELP_ENTRY(LineStateGetter), {}, kLineDCD},
        {0, "RingIndicator", &kTypeBoolean, KELP_ENTRY(LineStateGetter), {}, kLineRI},
        {0, "BytesAvailable", &kTypeInteger, KELP_ENTRY(SerialBytesAvailable), {}},
        {0, "BytesLeftToSend", &kTypeInteger, KELP_ENTRY(SerialBytesLeftToSend), {}},
        {0, "Win32DriverHandle", &kTypeInteger, KELP_ENTRY(serialNoDriverHandle), {}},
        {0, "MacInDriverRefNum", &kTypeInteger, KELP_ENTRY(serialNoDriverHandle), {}},
        {0, "MacOutDriverRefNum", &kTypeInteger, KELP_ENTRY(serialNoDriverHandle), {}},
        SERIAL_CONSTANT("Bits5", kBits5),
        SERIAL_CONSTANT("Bits6", kBits6),
        SERIAL_CONSTANT("Bits7", kBits7),
        SERIAL_CONSTANT("Bits8", kBits8),
        SERIAL_CONSTANT("StopBits1", kStopBits1),
        SERIAL_CONSTANT("StopBits15", kStopBits15),
        SERIAL_CONSTANT("StopBits2", kStopBits2),
        SERIAL_CONSTANT("ParityNone", kParityNone),
        SERIAL_CONSTANT("ParityOdd", kParityOdd),
        SERIAL_CONSTANT("ParityEven", kParityEven),
        SERIAL_CONSTANT("NoError", kSerialNoError),
        SERIAL_CONSTANT("AccessDenied", kSerialAccessDenied),
        SERIAL_CONSTANT("PortNotFound", kSerialPortNotFound),
        SERIAL_CONSTANT("InvalidOptions", kSerialInvalidOptions),
        // The line constants DTR (1) and CTS (4) share their names with the
        // flow-control properties above, which keep them.
        SERIAL_CONSTANT("RTS", kLineRTS),
        SERIAL_CONSTANT("DCD", kLineDCD),
        SERIAL_CONSTANT("RI", kLineRI),
        SERIAL_CONSTANT("DSR", kLineDSR),
        SERIAL_CONSTANT("Baud300", 0),
        SERIAL_CONSTANT("Baud600", 1),
        SERIAL_CONSTANT("Baud1200", 2),
        SERIAL_CONSTANT("Baud1800", 3),
        SERIAL_CONSTANT("Baud2400", 4),
        SERIAL_CONSTANT("Baud3600", 5),
        SERIAL_CONSTANT("Baud4800", 6),
        SERIAL_CONSTANT("Baud7200", 7),
        SERIAL_CONSTANT("Baud9600", 8),
        SERIAL_CONSTANT("Baud14400", 9),
        SERIAL_CONSTANT("Baud19200", 10),
        SERIAL_CONSTANT("Baud28800", 11),
        SERIAL_CONSTANT("Baud38400", 12),
        SERIAL_CONSTANT("Baud57600", 13),
        SERIAL_CONSTANT("Baud115200", 14),
        SERIAL_CONSTANT("Baud230400", 15),
    };
#undef SERIAL_SHORT
#undef SERIAL_BOOL
#undef SERIAL_CONSTANT
    static const ParameterRow textParams[] = {{"str", &kTypeString}};
    static const ParameterRow readParams[] = {{"byteCount", &kTypeInteger},
                                              {"encoding", &kEncodingType}};
    static const ParameterRow encodingParams[] = {{"encoding", &kEncodingType}};
    static const ParameterRow maskParams[] = {{"linesToWatch", &kTypeInteger}};
    static const ParameterRow arrayParams[] = {{"linesToWatch", &kIntegerArray}};
    static const ParameterRow lineParams[] = {{"line", &kTypeInteger}};
    static const ParameterRow traceParams[] = {{"on", &kTypeBoolean}};
    static const MethodRow methods[] = {
        {"Open", &kTypeBoolean, nullptr, 0, KELP_ENTRY(serialOpen)},
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(serialClose)},
        {"Write", nullptr, textParams, 1, KELP_ENTRY(serialWrite)},
        {"Read", &kTypeString, readParams, 2, KELP_ENTRY(serialRead)},
        {"Read", &kTypeString, readParams, 1, KELP_ENTRY(serialReadNoEncoding)},
        {"ReadAll", &kTypeString, encodingParams, 1, KELP_ENTRY(serialReadAll)},
        {"ReadAll", &kTypeString, nullptr, 0, KELP_ENTRY(serialReadAllNoEncoding)},
        {"LookAhead", &kTypeString, encodingParams, 1, KELP_ENTRY(serialLookahead)},
        {"LookAhead", &kTypeString, nullptr, 0, KELP_ENTRY(serialLookaheadNoEncoding)},
        {"XmitWait", nullptr, nullptr, 0, KELP_ENTRY(serialXmitWait)},
        {"Flush", nullptr, nullptr, 0, KELP_ENTRY(serialFlush)},
        {"Poll", nullptr, nullptr, 0, KELP_ENTRY(serialTick)},
        {"Reset", nullptr, nullptr, 0, KELP_ENTRY(serialReset)},
        {"LeaveDTROnClose", nullptr, nullptr, 0, KELP_ENTRY(serialLeaveDTROnClose)},
        {"SetBreak", nullptr, nullptr, 0, KELP_ENTRY(serialSetBreak)},
        {"ClearBreak", nullptr, nullptr, 0, KELP_ENTRY(serialClearBreak)},
        {"EOF", &kTypeBoolean, nullptr, 0, KELP_ENTRY(SerialEof)},
        {"ReadError", &kTypeBoolean, nullptr, 0, KELP_ENTRY(SerialError)},
        {"WriteError", &kTypeBoolean, nullptr, 0, KELP_ENTRY(SerialError)},
        {"LineChangeNotification", nullptr, maskParams, 1, KELP_ENTRY(SerialWatchLines)},
        {"LineChangeNotification", nullptr, arrayParams, 1, KELP_ENTRY(SerialWatchLineArray)},
        {"LineState", &kTypeBoolean, lineParams, 1, KELP_ENTRY(LineStateGetter),
         KELP_ENTRY(LineStateSetter)},
        {"LineTrace", nullptr, traceParams, 1, KELP_ENTRY(lineTrace)},
    };
    static const EventRow events[] = {
        {"DataAvailable", "", nullptr, &gSerialHooks.dataAvailable},
        {"Error", "", nullptr, &gSerialHooks.error},
        {"LineStateChanged", "changedLines() As Integer", nullptr, &gSerialHooks.lineStateChanged},
    };
    static const ClassDescription description = {
        .name = "Serial",
        .instanceSize = sizeof(SerialRecord),
        .initializer = KELP_ENTRY(RuntimeSerialInitializer),
        .finalizer = KELP_ENTRY(RuntimeSerialFinalizer),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
