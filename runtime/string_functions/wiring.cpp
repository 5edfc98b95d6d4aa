#include "string_functions/wiring.h"

#include "objects/definitions.h"
#include "string_functions/end_of_line_object.h"

namespace kelp {

void WireStringFunctions() { AddIntrinsicClassAccessor(&EndOfLineDefinition); }

} // namespace kelp
