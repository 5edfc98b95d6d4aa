#pragma once
// The object runtime's internal interface for the rest of the class library:
// the global lists, event look-up and the hooks other subsystems plug in.
#include "kelp/records.h"

#include <cstdint>

namespace kelp {

struct ObjectHook;

// Word 1 of the object, or null for a null object.
inline RuntimeClass *GetObjectClass(RuntimeObject *object) {
    return object ? object->klass : nullptr;
}

// The code bound to `hook` for this object, or null: the row of the object's
// event table that the hook's index names.  All event firing goes through it.
void *FindEventHandler(RuntimeObject *object, const ObjectHook *hook);

// Calls code of compiled code whose first argument is the object, as the
// function type R(RuntimeObject *, Args...) that the row it came from
// declares: the one place where a code address becomes a function.  Event
// handlers go through CallEvent (exceptions/call_event.h), which adds the
// lock and the callback scope.
template <typename R, typename... Args>
R CallCompiledCode(void *code, RuntimeObject *object, Args... args) {
    return reinterpret_cast<R (*)(RuntimeObject *, Args...)>(code)(object, args...);
}

// The row of the object's event table with this name (the most derived one),
// or -1.
int32_t FindEventRow(RuntimeObject *object, const char *eventName);

// Called for each object finalized (the debugger link sets it).  Returns the
// previous hook.
using ObjectFinalizeHook = void (*)(RuntimeObject *object);
ObjectFinalizeHook SetObjectFinalizeHook(ObjectFinalizeHook hook);

// Objects alive now (created and not yet freed).
int32_t LiveObjectCount();
RuntimeObject *AllObjectsHead();
// Changes whenever an object is linked into or unlinked from that list.
uint64_t ObjectListGeneration();
RuntimeClass *AllClassesHead();

// The newest class of this name in the all-classes list, or null.
RuntimeClass *FindClassByName(const char *name);

// True if `klass` is `ancestor` or derives from it.
bool ClassInherits(const RuntimeClass *klass, const RuntimeClass *ancestor);

// How RuntimeExchangeSelfAndMe finds a control's window and its container,
// supplied by the window classes.  Each returns a new reference or null.
using ObjectRelation = RuntimeObject *(*)(RuntimeObject *object);
void SetControlRelations(ObjectRelation windowOf, ObjectRelation parentOf);

struct ObjectDefinition;
// The class "Runtime" that the language asks about the objects alive.
ObjectDefinition *RuntimeClassDefinition();
// ObjectCursor: a walk over the live objects.
ObjectDefinition *ObjectCursorDefinition();

} // namespace kelp
