// The prologue of event code compiled into a window: the control the event
// came from becomes `me`, and the window (or another container) `self`.
#include "objects/object_model.h"
#include "objects/text.h"

#include "base/fatal_report.h"
#include "kelp/objects.h"

#include <string>

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/objects/self_and_me.cpp";
ObjectRelation gWindowOf = nullptr;
ObjectRelation gParentOf = nullptr;

bool IsNamedOrDerived(RuntimeClass *klass, const char *name) {
    for (; klass; klass = klass->base)
        if (objtext::SameName(objtext::View(klass->name), name))
            return true;
    return false;
}

// The window of a control, or of an object that implements the pane-child
// interface (its third slot); null with a report for anything else.
RuntimeObject *WindowOf(RuntimeObject *object) {
    RuntimeClass *klass = object->klass;
    if (IsNamedOrDerived(klass, "Control"))
        return gWindowOf ? gWindowOf(object) : nullptr;
    for (int32_t i = 0; klass && i < klass->interfaceCount; ++i) {
        const RuntimeInterfaceRow &row = klass->interfaceTable[i];
        if (row.interfaceClass && row.slotCount >= 3 && row.methodTable &&
            IsNamedOrDerived(row.interfaceClass, "_PaneChild") && row.methodTable[2].code)
            return CallCompiledCode<RuntimeObject *>(row.methodTable[2].code, object);
    }
    FatalReport(kFatalFailedAssertion, kFile, __LINE__, "0",
                "Non-control object has a window event implementation");
    return nullptr;
}

// Moves the object of *selfSlot into *meSlot; returns it (borrowed from meSlot).
RuntimeObject *MoveSelfToMe(RuntimeObject **selfSlot, RuntimeObject **meSlot) {
    RuntimeObject *control = *selfSlot;
    RuntimeLockUnlockObjects(control, *meSlot);
    *meSlot = control;
    return control;
}

void StoreSelf(RuntimeObject **selfSlot, RuntimeObject *owned) {
    RuntimeObject *old = *selfSlot;
    *selfSlot = owned; // the slot takes the reference
    RuntimeUnlockObject(old);
}

bool SlotsValid(RuntimeObject **selfSlot, RuntimeObject **meSlot, int line) {
    if (!selfSlot)
        FatalReport(kFatalFailedAssertion, kFile, line, "self", "");
    if (!meSlot)
        FatalReport(kFatalFailedAssertion, kFile, line, "me", "");
    return selfSlot && meSlot;
}

} // namespace

void SetControlRelations(ObjectRelation windowOf, ObjectRelation parentOf) {
    gWindowOf = windowOf;
    gParentOf = parentOf;
}

} // namespace kelp

using namespace kelp;

extern "C" void RuntimeExchangeSelfAndMe(RuntimeObject **selfSlot, RuntimeObject **meSlot) {
    if (!SlotsValid(selfSlot, meSlot, __LINE__))
        return;
    RuntimeObject *control = MoveSelfToMe(selfSlot, meSlot);
    StoreSelf(selfSlot, control ? WindowOf(control) : nullptr);
}

extern "C" void RuntimeExchangeSelfAndMeClass(RuntimeObject **selfSlot, RuntimeObject **meSlot,
                                              RuntimeClass *klass) {
    if (!SlotsValid(selfSlot, meSlot, __LINE__))
        return;
    RuntimeObject *control = MoveSelfToMe(selfSlot, meSlot);
    RuntimeObject *found = nullptr;
    if (control && gParentOf) {
        RuntimeObject *at = control;
        RuntimeLockObject(at);
        // A container chain is a tree path: it ends at the window.  The
        // bound guards against a damaged chain that loops.
        for (int depth = 0; at && depth < 10000; ++depth) {
            RuntimeObject *parent = gParentOf(at);
            RuntimeUnlockObject(at);
            at = parent;
            if (at && RuntimeObjectIsa(at, klass)) {
                found = at;
                break;
            }
        }
        if (!found)
            RuntimeUnlockObject(at);
    }
    if (!found) {
        std::string message = "couldn't find " +
                              std::string(objtext::View(klass ? klass->name : nullptr)) +
                              " in container chain";
        FatalReport(kFatalFailedAssertion, kFile, __LINE__, "0", message.c_str());
    }
    StoreSelf(selfSlot, found);
}

extern "C" void RuntimeExchangeSelfAndMeObj(RuntimeObject **selfSlot, RuntimeObject **meSlot,
                                            RuntimeObject *object) {
    if (!SlotsValid(selfSlot, meSlot, __LINE__))
        return;
    MoveSelfToMe(selfSlot, meSlot);
    RuntimeLockObject(object);
    StoreSelf(selfSlot, object);
}
