#include "encodings/wiring.h"

#include "encodings/text_encoding.h"
#include "objects/definitions.h"

namespace kelp {

void WireEncodings() {
    AddIntrinsicClassAccessor(&TextEncodingDefinition);
    AddIntrinsicClassAccessor(&TextConverterDefinition);
    AddIntrinsicModuleAccessor(&EncodingsModuleDefinition);
    AddIntrinsicClassAccessor(&EncodingsClassDefinition);
}

} // namespace kelp
