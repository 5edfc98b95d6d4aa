#include "stubs/wiring.h"

#include "stubs/stub_classes.h"

#include "kelp/stubs.h"

namespace kelp {

void WireStubs() {
    for (DefinitionAccessor accessor :
         {&OLEObjectDefinition, &OLEParameterDefinition, &RegistryItemDefinition,
          &KeyChainDefinition, &KeyChainItemDefinition, &AppleEventDescListDefinition,
          &AppleEventRecordDefinition, &DockItemDefinition, &MovieDefinition})
        AddIntrinsicClassAccessor(accessor);
    static const TypeRecord movie{kTypeObjectOf, nullptr, nullptr, 0, &MovieDefinition};
    static const TypeRecord registryItem{kTypeObjectOf, nullptr, nullptr, 0,
                                         &RegistryItemDefinition};
    static const ParameterRow url[] = {{"url", &kTypeString}};
    static const ParameterRow speech[] = {{"text", &kTypeString},
                                          {"interrupt", &kTypeBoolean, "False"}};
    static const MethodRow rows[] = {
        {"Speak", nullptr, speech, 2, KELP_ENTRY(RuntimeSpeak)},
        {"OpenURLMovie", &movie, url, 1, KELP_ENTRY(openURLMovie)},
        {"IsCMMClick", &kTypeBoolean, nullptr, 0, KELP_ENTRY(IsCMMClick)},
        {"GetApplicationRegistryItem", &registryItem, nullptr, 0,
         KELP_ENTRY(RuntimeGetDefaultApplicationRegistryItem)},
    };
    AddIntrinsicFunctions(rows);
}

} // namespace kelp
