#include "objects/wiring.h"

#include "objects/action_interfaces.h"
#include "objects/data_interfaces.h"
#include "objects/definitions.h"
#include "objects/object_model.h"

namespace kelp {

void WireObjects() {
    AddIntrinsicClassAccessor(&RuntimeClassDefinition);
    AddIntrinsicClassAccessor(&ObjectCursorDefinition);
    AddIntrinsicClassAccessor(&ActionSourceInterfaceDefinition);
    AddIntrinsicClassAccessor(&ActionNotificationReceiverInterfaceDefinition);
    AddIntrinsicClassAccessor(&DataNotifierInterfaceDefinition);
    AddIntrinsicClassAccessor(&DataNotificationReceiverInterfaceDefinition);
    AddIntrinsicClassAccessor(&BooleanProviderInterfaceDefinition);
    AddIntrinsicClassAccessor(&StringProviderInterfaceDefinition);
    AddIntrinsicClassAccessor(&DataAvailableProviderInterfaceDefinition);
}

} // namespace kelp
