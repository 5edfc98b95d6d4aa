#include "graphics/wiring.h"

#include "graphics/graphics_object.h"
#include "objects/definitions.h"

namespace kelp {

void WireGraphics() { AddIntrinsicClassAccessor(&GraphicsDefinition); }

} // namespace kelp
