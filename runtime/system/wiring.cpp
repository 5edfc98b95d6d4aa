#include "system/wiring.h"

#include "objects/definitions.h"

namespace kelp {

ObjectDefinition *SystemDefinition();
ObjectDefinition *QuicktimeStatusDefinition();

void WireSystem() {
    AddIntrinsicClassAccessor(&SystemDefinition);
    AddIntrinsicClassAccessor(&QuicktimeStatusDefinition);
}

} // namespace kelp
