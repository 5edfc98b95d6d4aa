#include "objects/data_interfaces.h"

namespace kelp {
namespace {

ObjectDefinition *Interface(const char *name, std::span<const MethodRow> methods) {
    ClassDescription description = {
        .name = name,
        .isInterface = true,
        .targetFlags = {1, 0, 0},
        .methods = methods,
    };
    return BuildDefinition(description);
}

const TypeRecord kReceiverType{kTypeObjectOf, nullptr, nullptr, 0,
                               &DataNotificationReceiverInterfaceDefinition};

} // namespace

ObjectDefinition *DataNotificationReceiverInterfaceDefinition() {
    static const MethodRow methods[] = {{"DataChanged", nullptr, nullptr, 0, {}}};
    static ObjectDefinition *definition = Interface("dataNotificationReceiver", methods);
    return definition;
}

ObjectDefinition *DataNotifierInterfaceDefinition() {
    static const ParameterRow receiver[] = {{"receiver", &kReceiverType}};
    static const MethodRow methods[] = {
        {"addDataNotificationReceiver", nullptr, receiver, 1, {}},
        {"removeDataNotificationReceiver", nullptr, receiver, 1, {}},
    };
    static ObjectDefinition *definition = Interface("dataNotifier", methods);
    return definition;
}

ObjectDefinition *BooleanProviderInterfaceDefinition() {
    static const ParameterRow value[] = {{"value", &kTypeBoolean}};
    static const MethodRow methods[] = {
        {"getBoolean", &kTypeBoolean, nullptr, 0, {}},
        {"setBoolean", nullptr, value, 1, {}},
    };
    static ObjectDefinition *definition = Interface("BooleanProvider", methods);
    return definition;
}

ObjectDefinition *StringProviderInterfaceDefinition() {
    static const MethodRow methods[] = {{"getString", &kTypeString, nullptr, 0, {}}};
    static ObjectDefinition *definition = Interface("StringProvider", methods);
    return definition;
}

ObjectDefinition *DataAvailableProviderInterfaceDefinition() {
    static const MethodRow methods[] = {{"DataAvailable", &kTypeBoolean, nullptr, 0, {}}};
    static ObjectDefinition *definition = Interface("DataAvailableProvider", methods);
    return definition;
}

} // namespace kelp
