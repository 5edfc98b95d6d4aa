#include "memory/wiring.h"

#include "memory/blowfish.h"
#include "memory/memory_block.h"
#include "objects/definitions.h"

namespace kelp {

void WireMemory() {
    AddIntrinsicClassAccessor(&MemoryBlockDefinition);
    AddIntrinsicClassAccessor(&BlowfishDefinition);
}

} // namespace kelp
