// ContainerControl: a view shown as a control of another window, through
// the EmbeddedWindowControl standing for it there.  That control is a
// Canvas whose pane paints the view's back colour; the view's controls lie
// on it, so they are
// hidden, disabled and moved with it, and they take their places in the
// host's tab order right behind it: Tab walks into the container and out
// of it again as if its controls were the host's own.
#include "controls/embedded.h"

#include "controls/classes.h"
#include "controls/control_map.h"

#include "base/fatal_report.h"
#include "objects/definitions.h"
#include "objects/object_model.h"

#include "kelp/controls.h"
#include "kelp/objects.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/controls/embedded.cpp";
// Containers nest; a chain longer than this is a loop, not a layout.
constexpr int kMaxNesting = 32;

ObjectHook *gGotFocus, *gLostFocus;

ContainerRecord *Container(RuntimeObject *view) {
    return reinterpret_cast<ContainerRecord *>(view);
}
EmbeddedControlKind gKind{};

RuntimeClass *EmbeddedClass() {
    return gKind.definition ? ClassForDefinition(gKind.definition()) : nullptr;
}

// The container views whose embedded panes hold the pane, innermost first.
std::vector<RuntimeObject *> ContainersAround(SubPane *pane) {
    std::vector<RuntimeObject *> views;
    for (SubPane *p = pane ? pane->Parent() : nullptr; p; p = p->Parent())
        if (auto *control = dynamic_cast<ControlPane *>(p))
            if (RuntimeObject *view = TemplateWindowOf(control->Control()))
                views.push_back(view);
    return views;
}

} // namespace

bool IsContainerView(RuntimeObject *object) {
    static RuntimeClass *container = ClassForDefinition(ContainerControlDefinition());
    return object && ClassInherits(object->klass, container);
}

RuntimeObject *EmbeddedControlOf(RuntimeObject *view) {
    return IsContainerView(view) ? Container(view)->embeddedControl : nullptr;
}

void SetEmbeddedControlKind(const EmbeddedControlKind &kind) { gKind = kind; }

RuntimeObject *TemplateWindowOf(RuntimeObject *control) {
    RuntimeClass *embedded = EmbeddedClass();
    return control && embedded && ClassInherits(control->klass, embedded)
               ? *gKind.templateWindow(control)
               : nullptr;
}

Window *HostWindowOf(RuntimeObject *view) {
    for (int depth = 0; view && depth < kMaxNesting; ++depth) {
        RuntimeObject *control = EmbeddedControlOf(view);
        if (!control)
            return reinterpret_cast<ViewRecord *>(view)->pane;
        view = Ctl(control)->view;
    }
    return nullptr;
}

std::pair<int32_t, int32_t> ViewOrigin(RuntimeObject *view) {
    RuntimeObject *control = EmbeddedControlOf(view);
    if (!control || !Container(view)->anchored)
        return {0, 0};
    return {Ctl(control)->bounds.left, Ctl(control)->bounds.top};
}

void ShiftViewControls(RuntimeObject *view, int32_t dx, int32_t dy) {
    static int depth = 0;
    if ((!dx && !dy) || depth >= kMaxNesting)
        return;
    ++depth;
    auto shift = [dx, dy](KelpRect &b) {
        b.left = int16_t(b.left + dx), b.right = int16_t(b.right + dx);
        b.top = int16_t(b.top + dy), b.bottom = int16_t(b.bottom + dy);
    };
    for (RuntimeObject *object : ControlsOfView(view)) {
        if (IsControl(object)) {
            shift(Ctl(object)->bounds);
        } else if (RuntimeObject *control = EmbeddedControlOf(object)) {
            shift(Ctl(control)->bounds);
            if (Container(object)->anchored)
                ShiftViewControls(object, dx, dy);
        }
    }
    --depth;
}

bool MakeEmbeddedControl(ViewRecord *record) {
    RuntimeObject *view = &record->object;
    if (!IsContainerView(view))
        return false;
    RuntimeClass *embedded = EmbeddedClass();
    KELP_ASSERT(embedded != nullptr, kFile, "EmbeddedWindowControl");
    if (!Container(view)->embeddedControl && embedded) {
        RuntimeObject *control = RuntimeNewObject(embedded);
        if (control)
            *gKind.templateWindow(control) = view;
        Container(view)->embeddedControl = control; // the new object's one reference
    }
    return true;
}

void FollowContainerFocus(SubPane *from, SubPane *to) {
    std::vector<RuntimeObject *> left = ContainersAround(from), entered = ContainersAround(to);
    auto has = [](const std::vector<RuntimeObject *> &views, RuntimeObject *v) {
        return std::find(views.begin(), views.end(), v) != views.end();
    };
    // Held across the events: a handler may close its container.
    std::vector<RuntimeObject *> held = left;
    held.insert(held.end(), entered.begin(), entered.end());
    for (RuntimeObject *v : held)
        RuntimeLockObject(v);
    for (RuntimeObject *v : left) // innermost first
        if (!has(entered, v))
            CallEvent(v, gLostFocus);
    for (auto it = entered.rbegin(); it != entered.rend(); ++it) // outermost first
        if (!has(left, *it))
            CallEvent(*it, gGotFocus);
    for (RuntimeObject *v : held)
        RuntimeUnlockObject(v);
}

} // namespace kelp

// ------------------------------------------------------------- exports

using namespace kelp;

extern "C" void ContainerControlFinalizer(RuntimeObject *self) {
    if (!IsContainerView(self))
        return;
    RuntimeObject *control = Container(self)->embeddedControl;
    Container(self)->embeddedControl = nullptr;
    if (!control)
        return;
    KELP_ASSERT(TemplateWindowOf(control) == self, kFile, "templateWindow->mEmbeddedWindowControl");
    if (TemplateWindowOf(control))
        *gKind.templateWindow(control) = nullptr;
    if (ControlPane *pane = PaneOf(control)) {
        Ctl(control)->pane = nullptr;
        pane->Close();
    }
    RuntimeUnlockObject(control);
}

// Places the container in a window at run time, at (left, top) of the
// window with the given size; it is bound and opened at once when the
// window is built.  A view that isn't a container, or one placed already,
// is left as it is.
extern "C" void EmbedWithin(RuntimeObject *view, RuntimeObject *parentWindow, int32_t left,
                            int32_t top, int32_t width, int32_t height) {
    RuntimeObject *control = EmbeddedControlOf(view);
    if (!control || !parentWindow || Ctl(control)->view)
        return;
    auto *record = reinterpret_cast<ViewRecord *>(view);
    record->left = left, record->top = top, record->width = width, record->height = height;
    RuntimeClass *klass = GetObjectClass(view);
    WindowAddControl(parentWindow, klass ? klass->name : nullptr, view);
}

// The same inside a control: the place is relative to the control.
extern "C" void EmbedWithinControl(RuntimeObject *view, RuntimeObject *containingControl,
                                   int32_t left, int32_t top, int32_t width, int32_t height) {
    if (!IsControl(containingControl) || !Ctl(containingControl)->view)
        return;
    EmbedWithin(view, Ctl(containingControl)->view, ctlPosGetter(containingControl, 0) + left,
                ctlPosGetter(containingControl, 1) + top, width, height);
}

// The same on a page (0-based) of a tab or page panel.
extern "C" void EmbedWithinPanel(RuntimeObject *view, RuntimeObject *containingPanel, int32_t page,
                                 int32_t left, int32_t top, int32_t width, int32_t height) {
    if (RuntimeObject *control = EmbeddedControlOf(view))
        Ctl(control)->tabPanelIndex = page;
    EmbedWithinControl(view, containingPanel, left, top, width, height);
}

namespace kelp {

ObjectDefinition *ContainerControlDefinition() {
    static const EventRow events[] = {
        {"GotFocus", "", nullptr, &gGotFocus},
        {"LostFocus", "", nullptr, &gLostFocus},
    };
    static const ClassDescription description = {
        .name = "ContainerControl",
        .super = WindowDefinition,
        .instanceSize = sizeof(ContainerRecord),
        .finalizer = KELP_ENTRY(ContainerControlFinalizer),
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
