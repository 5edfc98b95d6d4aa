#include "edit_fields/wiring.h"

#include "edit_fields/edit_field.h"
#include "edit_fields/styled_text.h"

#include "objects/definitions.h"

namespace kelp {

void WireEditFields() {
    AddIntrinsicClassAccessor(&EditFieldDefinition);
    AddIntrinsicClassAccessor(&StyleRunDefinition);
    AddIntrinsicClassAccessor(&RangeDefinition);
    AddIntrinsicClassAccessor(&ParagraphDefinition);
    AddIntrinsicClassAccessor(&StyledTextDefinition);
    AddIntrinsicClassAccessor(&StyledTextPrinterDefinition);
}

} // namespace kelp
