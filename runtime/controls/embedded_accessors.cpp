// A ContainerControl's control properties.  The container is a view, but
// in its host it is the embedded control that stands for it that has a
// place, a page, a parent and the flags; these entry points hand each
// property over to that control, so that the container reads and writes
// what the host shows.  A view that isn't a container, or one not made
// yet, reads as nothing and ignores writes.
#include "controls/embedded.h"

#include "objects/text.h"

#include "kelp/control_accessors.h"
#include "kelp/controls.h"
#include "kelp/objects.h"

#include <cstddef>
#include <cstring>

namespace kelp {
namespace {

// The Boolean fields of the control record a container passes through.
bool IsPassedFlag(int32_t offset) {
    switch (offset) {
    case offsetof(RuntimeControl, visible):
    case offsetof(RuntimeControl, enabled):
    case offsetof(RuntimeControl, autoDeactivate):
    case offsetof(RuntimeControl, lockLeft):
    case offsetof(RuntimeControl, lockTop):
    case offsetof(RuntimeControl, lockRight):
    case offsetof(RuntimeControl, lockBottom): return true;
    default: return false;
    }
}

bool IsPassedString(int32_t offset) {
    return offset == offsetof(RuntimeControl, name) ||
           offset == offsetof(RuntimeControl, helpTag) ||
           offset == offsetof(RuntimeControl, balloonHelp) ||
           offset == offsetof(RuntimeControl, disabledBalloonHelp);
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" int32_t eWindowIntPassThroughGetter(RuntimeObject *view, int32_t selector) {
    RuntimeObject *control = EmbeddedControlOf(view);
    if (!control)
        return 0;
    return selector == 4 ? Ctl(control)->tabPanelIndex : ctlPosGetter(control, selector);
}

extern "C" uint8_t eWindowBoolPassThroughGetter(RuntimeObject *view, int32_t offset) {
    RuntimeObject *control = EmbeddedControlOf(view);
    if (!control || !IsPassedFlag(offset))
        return 0;
    return reinterpret_cast<const uint8_t *>(control)[offset];
}

// Visible and Enabled go through the control's own setters, so that the
// pane and the container's controls follow; the rest are plain flags.
extern "C" void eWindowBoolPassThroughSetter(RuntimeObject *view, int32_t offset, uint8_t value) {
    RuntimeObject *control = EmbeddedControlOf(view);
    if (!control || !IsPassedFlag(offset))
        return;
    if (offset == offsetof(RuntimeControl, visible))
        ControlVisibleSetter(control, 0, value);
    else if (offset == offsetof(RuntimeControl, enabled))
        controlEnabledSetter(control, 0, value);
    else
        reinterpret_cast<uint8_t *>(control)[offset] = value != 0;
}

extern "C" KelpString eWindowStringPassThroughGetter(RuntimeObject *view, int32_t offset) {
    RuntimeObject *control = EmbeddedControlOf(view);
    if (!control || !IsPassedString(offset))
        return nullptr;
    KelpString text;
    std::memcpy(&text, reinterpret_cast<const unsigned char *>(control) + offset, sizeof text);
    objtext::Retain(text);
    return text;
}

// The control that stands for the container in its host.
extern "C" RuntimeObject *eWindowControlGetter(RuntimeObject *view, int32_t) {
    RuntimeObject *control = EmbeddedControlOf(view);
    RuntimeLockObject(control);
    return control;
}

// The window the container lies in (through nested containers, the
// nearest view), or nil before it is placed.
extern "C" RuntimeObject *eWindowContainingWindowGettter(RuntimeObject *view, int32_t) {
    return controlWindowGetter(EmbeddedControlOf(view), 0);
}

extern "C" RuntimeObject *eWindowParentGetter(RuntimeObject *view, int32_t) {
    return ControlParentGetter(EmbeddedControlOf(view), 0);
}

extern "C" void eWindowParentSetter(RuntimeObject *view, int32_t, RuntimeObject *parent) {
    ControlParentSetter(EmbeddedControlOf(view), 0, parent);
}

extern "C" void eWindowInitialParentSetter(RuntimeObject *view, int32_t, KelpString name) {
    ControlInitialParentSetter(EmbeddedControlOf(view), 0, name);
}

extern "C" void eWindowEnabledSetter(RuntimeObject *view, int32_t, uint8_t value) {
    controlEnabledSetter(EmbeddedControlOf(view), 0, value);
}

extern "C" void eWindowAutoDeactivateSetter(RuntimeObject *view, int32_t, uint8_t value) {
    controlAutoDeactivateSetter(EmbeddedControlOf(view), 0, value);
}

extern "C" void eWindowHelpTagSetter(RuntimeObject *view, int32_t, KelpString value) {
    controlHelpTagSetter(EmbeddedControlOf(view), 0, value);
}

extern "C" void eWindowDisabledBalloonHelpSetter(RuntimeObject *view, int32_t, KelpString value) {
    controlDisabledBalloonHelpSetter(EmbeddedControlOf(view), 0, value);
}

extern "C" void eWindowTabPanelIndexSetter(RuntimeObject *view, int32_t, int32_t value) {
    ControlTabPanelIndexSetter(EmbeddedControlOf(view), 0, value);
}
