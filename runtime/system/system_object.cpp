// _SystemClass and its one instance, with the members that have no
// counterpart on this platform.
#include "objects/definitions.h"

#include "kelp/objects.h"
#include "kelp/system.h"

namespace kelp {

ObjectDefinition *QuicktimeStatusDefinition() {
    static const PropertyRow properties[] = {
        {0, "Installed", &kTypeBoolean, KELP_ENTRY(QTInstalledGetter), {}, 0},
    };
    static const ClassDescription description = {
        .name = "_QuicktimeInstallStatus",
        .properties = properties,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *SystemDefinition() {
    static const TypeRecord statusType = {kTypeObjectOf, "_QuicktimeInstallStatus", nullptr, 0,
                                          &QuicktimeStatusDefinition};
    static const PropertyRow properties[] = {
        {0, "MouseX", &kTypeInteger, KELP_ENTRY(getMouseX), {}, 0},
        {0, "MouseY", &kTypeInteger, KELP_ENTRY(getMouseY), {}, 0},
        {0, "MouseDown", &kTypeBoolean, KELP_ENTRY(getMouseDown), {}, 0},
        {0, "KeyScript", &kTypeInteger, KELP_ENTRY(systemGetKeyScript),
         KELP_ENTRY(systemSetKeyScript), 0},
        {0, "Quicktime", &statusType, KELP_ENTRY(systemGetQTInstallStatus), {}, 0},
        {0, "KeyChainCount", &kTypeInteger, KELP_ENTRY(systemGetKeyChainCount), {}, 0},
        {0, "PenPressure", &kTypeDouble, KELP_ENTRY(SystemGetPenPressure), {}, 0},
        {0, "PenType", &kTypeInteger, KELP_ENTRY(SystemGetPenType), {}, 0},
        {0, "LogLevelEmergency", &kTypeInteger, {}, {}, 1000, 0, true},
        {0, "LogLevelAlert", &kTypeInteger, {}, {}, 1001, 0, true},
        {0, "LogLevelCritical", &kTypeInteger, {}, {}, 1002, 0, true},
        {0, "LogLevelError", &kTypeInteger, {}, {}, 1003, 0, true},
        {0, "LogLevelWarning", &kTypeInteger, {}, {}, 1004, 0, true},
        {0, "LogLevelNotice", &kTypeInteger, {}, {}, 1005, 0, true},
        {0, "LogLevelInformation", &kTypeInteger, {}, {}, 1006, 0, true},
        {0, "LogLevelDebug", &kTypeInteger, {}, {}, 1007, 0, true},
        {0, "LogLevelSuccess", &kTypeInteger, {}, {}, 1008, 0, true},
    };
    static const ParameterRow pixelParams[] = {{"x", &kTypeInteger}, {"y", &kTypeInteger}};
    static const ParameterRow nameParams[] = {{"name", &kTypeString}};
    static const ParameterRow setEnvParams[] = {{"name", &kTypeString}, {"value", &kTypeString}};
    static const ParameterRow logParams[] = {{"level", &kTypeInteger}, {"message", &kTypeString}};
    static const ParameterRow messageParams[] = {{"message", &kTypeString}};
    static const ParameterRow functionParams[] = {{"name", &kTypeString},
                                                  {"library", &kTypeString}};
    static const ParameterRow indexParams[] = {{"index", &kTypeInteger}};
    static const TypeRecord pictureType = {kTypeObjectOf, "Picture"};
    static const ParameterRow drawWindowParams[] = {
        {"title", &kTypeString},          {"width", &kTypeInteger},
        {"height", &kTypeInteger},        {"frameType", &kTypeInteger},
        {"minBox", &kTypeBoolean},        {"maxBox", &kTypeBoolean},
        {"closeBox", &kTypeBoolean},      {"growBox", &kTypeBoolean},
        {"backDrop", &pictureType},       {"stretchBackDrop", &kTypeBoolean},
        {"pictureFillColor", &kTypeColor}};
    static const MethodRow methods[] = {
        {"CommandLine", &kTypeString, nullptr, 0, KELP_ENTRY(SystemGetCommandLine)},
        {"Pixel", &kTypeColor, pixelParams, 2, KELP_ENTRY(systemPixel)},
        {"EnvironmentVariable", &kTypeString, nameParams, 1, KELP_ENTRY(SystemGetEnvVariable)},
        {"EnvironmentVariable", nullptr, setEnvParams, 2, KELP_ENTRY(SystemSetEnvVariable)},
        {"Log", nullptr, logParams, 2, KELP_ENTRY(SystemLogger)},
        {"DebugLog", nullptr, messageParams, 1, KELP_ENTRY(SystemDebugLogger)},
        {"IsFunctionAvailable", &kTypeBoolean, functionParams, 2, KELP_ENTRY(IsFunctionAvailable)},
        {"PenButtonPushed", &kTypeBoolean, indexParams, 1, KELP_ENTRY(SystemGetPenButton)},
        {"_DrawWindow", &pictureType, drawWindowParams, 11, KELP_ENTRY(SystemDrawWindow)},
    };
    static const ClassDescription description = {
        .name = "_SystemClass",
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *getSystemObject(void) {
    // One instance for the process; it lives until the process ends.
    static RuntimeObject *system = RuntimeNewObject(ClassForDefinition(SystemDefinition()));
    if (system)
        RuntimeLockObject(system);
    return system;
}

extern "C" int32_t systemGetKeyScript(RuntimeObject *, int32_t) { return 0; }
extern "C" void systemSetKeyScript(RuntimeObject *, int32_t, int32_t) {}

extern "C" uint8_t systemGestalt(RuntimeObject *, int32_t, int32_t *result) {
    if (result)
        *result = 0;
    return 0;
}

extern "C" void SystemGetWindowMetrics(RuntimeObject *, int32_t *a, int32_t *b, int32_t *c) {
    for (int32_t *out : {a, b, c})
        if (out)
            *out = 0;
}

// No pen events and no key chain exist on this platform.
extern "C" double SystemGetPenPressure(RuntimeObject *, int32_t) { return 0.0; }
extern "C" int32_t SystemGetPenType(RuntimeObject *, int32_t) { return 0; }
extern "C" uint8_t SystemGetPenButton(RuntimeObject *, int32_t) { return 0; }
extern "C" RuntimeObject *systemGetDefaultKeyChain(RuntimeObject *, int32_t) { return nullptr; }
extern "C" void systemSetDefaultKeyChain(RuntimeObject *, int32_t, RuntimeObject *) {}
extern "C" int32_t systemGetKeyChainCount(RuntimeObject *, int32_t) { return 0; }

extern "C" RuntimeObject *systemGetQTInstallStatus(RuntimeObject *, int32_t) {
    return RuntimeNewObject(ClassForDefinition(QuicktimeStatusDefinition()));
}

extern "C" uint8_t QTInstalledGetter(RuntimeObject *, int32_t) { return 0; }
