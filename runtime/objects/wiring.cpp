#include "objects/wiring.h"

#include "objects/action_interfaces.h"
#include "objects/definitions.h"
#include "objects/object_model.h"

namespace kelp {

void WireObjects() {
    AddIntrinsicClassAccessor(&RuntimeClassDefinition);
    AddIntrinsicClassAccessor(&ActionSourceInterfaceDefinition);
    AddIntrinsicClassAccessor(&ActionNotificationReceiverInterfaceDefinition);
}

} // namespace kelp
