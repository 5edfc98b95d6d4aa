// EmbeddedWindowControl: the Canvas that stands for a ContainerControl in
// the window it lies in.  It is a canvas in full, with Paint, Backdrop and
// the mouse and key events, and its pane is the canvas pane; the container
// view's controls lie on that pane.  The container itself, its place and
// its controls are the business of the controls layer (controls/embedded.h).
#include "canvas/canvas.h"

#include "base/fatal_report.h"
#include "controls/embedded.h"
#include "objects/definitions.h"
#include "windows/runtime_view.h"

#include "kelp/canvas.h"
#include "kelp/controls.h"
#include "kelp/objects.h"

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/canvas/embedded_control.cpp";

CanvasRecord *Record(RuntimeObject *o) { return reinterpret_cast<CanvasRecord *>(o); }

RuntimeObject **TemplateWindowField(RuntimeObject *control) {
    return &Record(control)->templateWindow;
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void EmbeddedWindowControlInitializer(RuntimeObject *self) {
    if (self)
        Record(self)->templateWindow = nullptr;
}

extern "C" void EmbeddedWindowControlFinalizer(RuntimeObject *self) {
    if (self)
        Record(self)->templateWindow = nullptr;
}

// The pane takes the container's size at the control's corner.
extern "C" void EmbeddedWindowControlCreatePane(RuntimeObject *self) {
    RuntimeObject *view = self ? Record(self)->templateWindow : nullptr;
    KELP_ASSERT(view != nullptr, kFile, "templateWindow");
    if (!view)
        return;
    auto *record = reinterpret_cast<ViewRecord *>(view);
    KelpRect &b = Ctl(self)->bounds;
    b.right = int16_t(b.left + record->width);
    b.bottom = int16_t(b.top + record->height);
    CanvasCreatePane(self);
}

namespace kelp {

ObjectDefinition *EmbeddedWindowControlDefinition() {
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&EmbeddedWindowControlCreatePane)}};
    static const ClassDescription description = {
        .name = "EmbeddedWindowControl",
        .super = CanvasDefinition,
        .instanceSize = sizeof(CanvasRecord),
        .initializer = KELP_ENTRY(EmbeddedWindowControlInitializer),
        .finalizer = KELP_ENTRY(EmbeddedWindowControlFinalizer),
        .hookInstances = hooks,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

void WireEmbeddedWindowControl() {
    SetEmbeddedControlKind({&EmbeddedWindowControlDefinition, &TemplateWindowField});
    AddIntrinsicClassAccessor(&EmbeddedWindowControlDefinition);
}

} // namespace kelp
