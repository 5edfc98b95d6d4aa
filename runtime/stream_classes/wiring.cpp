#include "stream_classes/wiring.h"

#include "objects/definitions.h"
#include "stream_classes/console_streams.h"
#include "stream_classes/stream_objects.h"

namespace kelp {

void WireStreamClasses() {
    AddIntrinsicClassAccessor(&TextInputStreamDefinition);
    AddIntrinsicClassAccessor(&TextOutputStreamDefinition);
    AddIntrinsicClassAccessor(&BinaryStreamDefinition);
    AddIntrinsicClassAccessor(&StandardInputStreamDefinition);
    AddIntrinsicClassAccessor(&StandardOutputStreamDefinition);
}

} // namespace kelp
