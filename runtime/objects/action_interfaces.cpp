#include "objects/action_interfaces.h"

namespace kelp {

ObjectDefinition *ActionNotificationReceiverInterfaceDefinition() {
    static const MethodRow methods[] = {{"PerformAction", nullptr, nullptr, 0, {}}};
    static const ClassDescription description = {
        .name = "actionNotificationReceiver",
        .isInterface = true,
        .targetFlags = {1, 0, 0},
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

namespace {
const TypeRecord kReceiverType{kTypeObjectOf, nullptr, nullptr, 0,
                               &ActionNotificationReceiverInterfaceDefinition};
} // namespace

ObjectDefinition *ActionSourceInterfaceDefinition() {
    static const ParameterRow receiver[] = {{"receiver", &kReceiverType}};
    static const MethodRow methods[] = {
        {"addActionNotificationReceiver", nullptr, receiver, 1, {}},
        {"removeActionNotificationReceiver", nullptr, receiver, 1, {}},
    };
    static const ClassDescription description = {
        .name = "actionSource",
        .isInterface = true,
        .targetFlags = {1, 0, 0},
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
