#include "canvas/wiring.h"

#include "canvas/canvas.h"
#include "canvas/clipboard.h"
#include "canvas/drag_item.h"

#include "objects/definitions.h"
#include "windows/runtime_view.h"

#include "kelp/canvas.h"

namespace kelp {
namespace {

// A window draws itself into another Graphics through the canvas layer,
// which knows how canvases paint; the Window class gets those methods here.
void AddDrawingToWindow() {
    static const ParameterRow drawIntoParams[] = {
        {"g", &kTypePtr}, {"left", &kTypeInteger}, {"top", &kTypeInteger}};
    static const ParameterRow backgroundParams[] = {
        {"g", &kTypePtr}, {"x", &kTypeInteger}, {"y", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"DrawInto", nullptr, drawIntoParams, 3, KELP_ENTRY(formDrawInto)},
        {"_DrawBackground", nullptr, backgroundParams, 3, KELP_ENTRY(formDrawBackground)},
    };
    ExtendDefinition(WindowDefinition(), {}, methods);
}

} // namespace

void WireCanvas() {
    AddDrawingToWindow();
    SetBackdropDrawer(&DrawWindowBackdrop);
    AddIntrinsicClassAccessor(&CanvasDefinition);
    WireEmbeddedWindowControl();
    AddIntrinsicClassAccessor(&DragItemDefinition);
    AddIntrinsicClassAccessor(&ClipboardDefinition);
}

} // namespace kelp
