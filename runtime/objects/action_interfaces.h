#pragma once
// The interfaces that tie an action to any object: a source (a timer, a
// button) keeps receivers and calls each one's PerformAction before its own
// Action event.
#include "objects/definitions.h"

namespace kelp {

ObjectDefinition *ActionSourceInterfaceDefinition();
ObjectDefinition *ActionNotificationReceiverInterfaceDefinition();

} // namespace kelp
