#include "edit_fields/wiring.h"

#include "edit_fields/edit_field.h"

#include "objects/definitions.h"

namespace kelp {

void WireEditFields() { AddIntrinsicClassAccessor(&EditFieldDefinition); }

} // namespace kelp
