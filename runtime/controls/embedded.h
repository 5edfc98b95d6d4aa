#pragma once
// A window class laid out inside another window as a control.  The
// ContainerControl is a view with no toolkit window of its own; in its host
// an EmbeddedWindowControl stands for it, and the view's controls become
// panes lying on that control's pane, in the host's toolkit window.  Their
// bounds are kept in the host's window coordinates once the container is
// anchored there; compiled code reads and writes them relative to the
// container, as it laid them out.
#include "controls/control.h"

#include <utility>

namespace kelp {

struct ContainerRecord {
    ViewRecord view;
    RuntimeObject *embeddedControl; // counted; made with the view
    uint8_t anchored;               // its controls' bounds are window coordinates
};

ObjectDefinition *ContainerControlDefinition();

// The control standing for a container is a Canvas, a class of a later
// layer; that layer names it here when it is wired.  `templateWindow` gives
// the field of such a control that holds its view (not counted: the view
// holds the control).
struct EmbeddedControlKind {
    ObjectDefinition *(*definition)();
    RuntimeObject **(*templateWindow)(RuntimeObject *control);
};
void SetEmbeddedControlKind(const EmbeddedControlKind &kind);

bool IsContainerView(RuntimeObject *object);
// The control standing for a container view, or null (borrowed).
RuntimeObject *EmbeddedControlOf(RuntimeObject *view);
// The container view an embedded control stands for, or null (borrowed).
RuntimeObject *TemplateWindowOf(RuntimeObject *control);
// The toolkit window that shows the view's controls: the view's own, or
// for a container the one of the window it lies in; null when none is built.
Window *HostWindowOf(RuntimeObject *view);
// Where the view's coordinates start in its toolkit window: (0, 0) for a
// window, the embedded control's corner for an anchored container.
std::pair<int32_t, int32_t> ViewOrigin(RuntimeObject *view);
// Moves the bounds of every control of the view, and of the controls of
// the containers in it, by (dx, dy); the panes move with their parents.
void ShiftViewControls(RuntimeObject *view, int32_t dx, int32_t dy);

// The windows layer's slot: makes the embedded control for a container
// view at its creation; false for any other view.
bool MakeEmbeddedControl(ViewRecord *view);
// Binds the container of the host's map: its control's pane, then its own
// controls on that pane, their Open events and the container's Open.
void BindContainer(RuntimeObject *view);
// The focus hook: GotFocus and LostFocus of the containers the focus
// enters and leaves.
void FollowContainerFocus(SubPane *from, SubPane *to);

} // namespace kelp
