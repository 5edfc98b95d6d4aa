#pragma once
// The interfaces of data binding: a notifier keeps receivers and tells each
// one, through DataChanged, that its data changed; providers hand out a
// Boolean or a string and say whether they have data at all.  A control
// bound to a source reads it through these, whatever class the source is.
#include "objects/definitions.h"

namespace kelp {

// addDataNotificationReceiver(receiver), removeDataNotificationReceiver(receiver)
ObjectDefinition *DataNotifierInterfaceDefinition();
// DataChanged
ObjectDefinition *DataNotificationReceiverInterfaceDefinition();
// getBoolean As Boolean, setBoolean(value As Boolean)
ObjectDefinition *BooleanProviderInterfaceDefinition();
// getString As String
ObjectDefinition *StringProviderInterfaceDefinition();
// DataAvailable As Boolean
ObjectDefinition *DataAvailableProviderInterfaceDefinition();

} // namespace kelp
