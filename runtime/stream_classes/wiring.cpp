#include "stream_classes/wiring.h"

#include "objects/definitions.h"
#include "stream_classes/console_streams.h"
#include "stream_classes/stream_objects.h"

#include "kelp/streams.h"

namespace kelp {

void WireStreamClasses() {
    AddIntrinsicClassAccessor(&TextInputStreamDefinition);
    AddIntrinsicClassAccessor(&TextOutputStreamDefinition);
    AddIntrinsicClassAccessor(&BinaryStreamDefinition);
    AddIntrinsicClassAccessor(&StandardInputStreamDefinition);
    AddIntrinsicClassAccessor(&StandardOutputStreamDefinition);
    static const ParameterRow text[] = {{"text", &kTypeString}};
    static const MethodRow rows[] = {
        {"Print", nullptr, text, 1, KELP_ENTRY(RuntimeConsolePrint)},
        {"Input", &kTypeString, nullptr, 0, KELP_ENTRY(RuntimeConsoleInput)},
    };
    AddIntrinsicFunctions(rows);
}

} // namespace kelp
