#include "string_functions/wiring.h"

#include "objects/definitions.h"
#include "string_functions/end_of_line_object.h"
#include "string_functions/function_rows.h"

namespace kelp {

void WireStringFunctions() {
    AddIntrinsicClassAccessor(&EndOfLineDefinition);
    AddIntrinsicFunctions(StringFunctionRows());
}

} // namespace kelp
