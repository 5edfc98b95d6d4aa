#include "serial/port_list.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "objects/object_model.h"
#include "strings/kstring.h"

#include "kelp/objects.h"
#include "kelp/serial.h"
#include "kelp/strings.h"

#include <sys/stat.h>

#include <cstddef>
#include <cstdlib>

namespace kelp {
namespace {

// A machine has a handful of ports; the bound keeps a strange /dev from
// making the count walk for long.
constexpr int kMaxPortsPerFamily = 256;

bool Exists(const std::string &path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0;
}

const std::string &BaseName() {
    static const std::string base = [] {
        struct stat info;
        return stat("/dev/tts", &info) == 0 && S_ISDIR(info.st_mode) ? std::string("/dev/tts/")
                                                                     : std::string("/dev/ttyS");
    }();
    return base;
}

void AddFamily(std::vector<std::string> &paths, const std::string &base) {
    for (int n = 0; n < kMaxPortsPerFamily; ++n) {
        std::string path = base + std::to_string(n);
        if (!Exists(path))
            return;
        paths.push_back(std::move(path));
    }
}

void AddTestPorts(std::vector<std::string> &paths) {
    const char *list = std::getenv("KELP_SERIAL_TEST_PORTS");
    if (!list)
        return;
    std::string all(list);
    size_t start = 0;
    while (start <= all.size()) {
        size_t end = all.find(':', start);
        if (end == std::string::npos)
            end = all.size();
        std::string path = all.substr(start, end - start);
        if (!path.empty() && Exists(path))
            paths.push_back(std::move(path));
        start = end + 1;
    }
}

constexpr int32_t kRatedSpeed = 115200;
constexpr int32_t kMaximumSpeed = 230400;

int32_t serialPortRatedSpeedGetter(RuntimeObject *, int32_t) { return kRatedSpeed; }
int32_t serialPortMaximumSpeedGetter(RuntimeObject *, int32_t) { return kMaximumSpeed; }

} // namespace

std::string SerialDevicePath(int number) { return BaseName() + std::to_string(number); }

std::vector<std::string> SerialPortPaths() {
    std::vector<std::string> paths;
    AddFamily(paths, BaseName());
    AddFamily(paths, "/dev/ttyUSB");
    AddFamily(paths, "/dev/ttyACM");
    AddTestPorts(paths);
    return paths;
}

ObjectDefinition *SerialPortDefinition() {
    constexpr intptr_t kName = offsetof(SerialPortRecord, name);
    static const PropertyRow properties[] = {
        {0, "Name", &kTypeString, KELP_ENTRY(stringGetter), {}, kName},
        {0, "InputDriverName", &kTypeString, KELP_ENTRY(stringGetter), {}, kName},
        {0, "OutputDriverName", &kTypeString, KELP_ENTRY(stringGetter), {}, kName},
        {0, "RatedSpeed", &kTypeInteger, KELP_ENTRY(serialPortRatedSpeedGetter), {}},
        {0, "MaximumSpeed", &kTypeInteger, KELP_ENTRY(serialPortMaximumSpeedGetter), {}},
    };
    static const ClassDescription description = {
        .name = "SerialPort",
        .instanceSize = sizeof(SerialPortRecord),
        .finalizer = KELP_ENTRY(SerialPortDestructor),
        .properties = properties,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

RuntimeObject *NewSerialPort(const std::string &path) {
    RuntimeObject *object = NewObjectOfDefinition(SerialPortDefinition());
    if (object)
        reinterpret_cast<SerialPortRecord *>(object)->name =
            string::FromBytes(path.data(), static_cast<long>(path.size()), kEncodingUTF8)
                .ExtractStringStorage();
    return object;
}

std::string SerialPortPath(RuntimeObject *port) {
    if (!port)
        return {};
    KelpString name = reinterpret_cast<SerialPortRecord *>(port)->name;
    return name && name->length > 0 ? std::string(reinterpret_cast<const char *>(name->buffer + 1),
                                                  static_cast<size_t>(name->length))
                                    : std::string();
}

} // namespace kelp

using namespace kelp;

extern "C" void SerialPortDestructor(RuntimeObject *self) {
    if (!self)
        return;
    auto *port = reinterpret_cast<SerialPortRecord *>(self);
    RuntimeUnlockString(port->name);
    port->name = nullptr;
}

extern "C" int32_t getSerialPortCount(RuntimeObject *, int32_t) {
    return static_cast<int32_t>(SerialPortPaths().size());
}

extern "C" RuntimeObject *getSerialPort(RuntimeObject *, int32_t index) {
    const std::vector<std::string> paths = SerialPortPaths();
    if (index < 0 || index >= static_cast<int32_t>(paths.size())) {
        RaiseOutOfBounds();
        return nullptr;
    }
    return NewSerialPort(paths[static_cast<size_t>(index)]);
}

extern "C" RuntimeObject *getSerialPortByPath(RuntimeObject *, stringStorage *path) {
    if (!path || path->length <= 0)
        return nullptr;
    return NewSerialPort(std::string(reinterpret_cast<const char *>(path->buffer + 1),
                                     static_cast<size_t>(path->length)));
}
