#pragma once
// The classes of services this platform lacks.  They exist so that a program
// written for another system can still create them and call their members.
#include "objects/definitions.h"

namespace kelp {
ObjectDefinition *OLEObjectDefinition();
ObjectDefinition *OLEParameterDefinition();
ObjectDefinition *RegistryItemDefinition();
ObjectDefinition *KeyChainDefinition();
ObjectDefinition *KeyChainItemDefinition();
ObjectDefinition *AppleEventDescListDefinition();
ObjectDefinition *AppleEventRecordDefinition();
ObjectDefinition *DockItemDefinition();
ObjectDefinition *MovieDefinition();
} // namespace kelp
