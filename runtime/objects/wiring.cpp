#include "objects/wiring.h"

#include "objects/definitions.h"
#include "objects/object_model.h"

namespace kelp {

void WireObjects() { AddIntrinsicClassAccessor(&RuntimeClassDefinition); }

} // namespace kelp
