#include "canvas/wiring.h"

#include "canvas/canvas.h"
#include "canvas/clipboard.h"
#include "canvas/drag_item.h"

#include "objects/definitions.h"

namespace kelp {

void WireCanvas() {
    AddIntrinsicClassAccessor(&CanvasDefinition);
    AddIntrinsicClassAccessor(&DragItemDefinition);
    AddIntrinsicClassAccessor(&ClipboardDefinition);
}

} // namespace kelp
