#include "serial/wiring.h"

#include "serial/port_list.h"
#include "serial/serial_port.h"

#include "objects/definitions.h"
#include "runloop/debugger_slots.h"
#include "runloop/main_loop.h"

#include "kelp/serial.h"

namespace kelp {

ObjectDefinition *SystemDefinition(); // system/system_object.cpp

namespace {

void AddSerialRowsToSystem() {
    static const TypeRecord portType{kTypeObjectOf, nullptr, nullptr, 0, &SerialPortDefinition};
    static const PropertyRow properties[] = {
        {0, "SerialPortCount", &kTypeInteger, KELP_ENTRY(getSerialPortCount), {}, 0},
    };
    static const ParameterRow indexParams[] = {{"Index", &kTypeInteger}};
    static const ParameterRow pathParams[] = {{"path", &kTypeString}};
    static const MethodRow methods[] = {
        {"SerialPort", &portType, indexParams, 1, KELP_ENTRY(getSerialPort)},
        {"SerialPort", &portType, pathParams, 1, KELP_ENTRY(getSerialPortByPath)},
    };
    ExtendDefinition(SystemDefinition(), properties, methods);
}

} // namespace

void WireSerial() {
    AddIntrinsicClassAccessor(&SerialDefinition);
    AddIntrinsicClassAccessor(&SerialPortDefinition);
    AddSerialRowsToSystem();
    SetSerialPortPoller(&PollSerialPorts);
    SetSerialTickHold(&HoldSerialTicks);
}

} // namespace kelp
