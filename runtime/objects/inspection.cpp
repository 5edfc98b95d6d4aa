// The class "Runtime": what the language can ask about the objects alive.
// Programs walk the list by index, one step up or down at a time, so the
// walk starts from where the previous call stopped.
#include "objects/definitions.h"
#include "objects/object_model.h"
#include "objects/text.h"

#include "kelp/objects.h"
#include "strings/small_alloc.h"

#include <cstdint>

namespace kelp {
namespace {

struct Cursor {
    RuntimeObject *object = nullptr;
    int32_t index = -1;
    uint64_t generation = 0; // of the all-objects list when it was taken
};
Cursor gCursor;

// The n-th object of the all-objects list (0 is the newest), or null.
RuntimeObject *ObjectAt(int32_t index) {
    if (index < 0 || index >= LiveObjectCount())
        return nullptr;
    RuntimeObject *head = AllObjectsHead();
    // A remembered position holds only while no object was linked or
    // unlinked since; otherwise start over from the head.
    bool usable = gCursor.object && gCursor.generation == ObjectListGeneration();
    RuntimeObject *at = usable ? gCursor.object : head;
    int32_t i = usable ? gCursor.index : 0;
    while (at && i < index) {
        at = at->next;
        ++i;
    }
    while (at && i > index) {
        at = at->previous;
        --i;
    }
    gCursor = {at, i, ObjectListGeneration()};
    return at;
}

} // namespace

struct ObjectCursorRecord {
    RuntimeObject object;
    int32_t next; // index of the object NextObject gives
};

ObjectDefinition *ObjectCursorDefinition() {
    static const ParameterRow index[] = {{"index", &kTypeInteger}};
    static const PropertyRow properties[] = {
        {0, "Count", &kTypeInteger, KELP_ENTRY(objectCursorCountGetter), {}},
    };
    static const MethodRow methods[] = {
        {"Item", &kTypePtr, index, 1, KELP_ENTRY(objectCursorGetItem)},
        {"NextObject", &kTypePtr, nullptr, 0, KELP_ENTRY(objectCursorNextObject)},
    };
    static const ClassDescription description = {
        .name = "ObjectCursor",
        .instanceSize = sizeof(ObjectCursorRecord),
        .initializer = KELP_ENTRY(objectCursorConstructor),
        .finalizer = KELP_ENTRY(objectCursorDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *RuntimeClassDefinition() {
    static const ClassDescription description = {
        .name = "Runtime",
        .targetFlags = {1, 0, 0},
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" int32_t RuntimeDebugObjectCount(void) { return LiveObjectCount(); }

extern "C" KelpString RuntimeDebugObjectClass(int32_t index) {
    RuntimeObject *object = ObjectAt(index);
    if (!object || !object->klass)
        return nullptr;
    objtext::Retain(object->klass->name);
    return object->klass->name;
}

extern "C" int32_t RuntimeDebugObjectRefs(int32_t index) {
    RuntimeObject *object = ObjectAt(index);
    return object ? object->referenceCount : -1;
}

extern "C" int32_t RuntimeDebugMemoryUsed(void) {
    int64_t bytes = TotalAllocLen();
    return bytes > INT32_MAX ? INT32_MAX : static_cast<int32_t>(bytes);
}

extern "C" RuntimeObject *RuntimeDebugInstance(void) {
    static RuntimeObject *instance = nullptr; // one for the process, never freed
    if (!instance)
        instance = NewObjectOfDefinition(RuntimeClassDefinition());
    RuntimeLockObject(instance);
    return instance;
}

// ObjectCursor: the live objects one by one, newest first, each as a new
// reference.  Objects made or freed during the walk shift the rest, as they
// do for the Runtime class's index.
extern "C" void objectCursorConstructor(RuntimeObject *self) {
    if (self)
        reinterpret_cast<ObjectCursorRecord *>(self)->next = 0;
}

extern "C" void objectCursorDestructor(RuntimeObject *) {}

extern "C" int32_t objectCursorCountGetter(RuntimeObject *, int32_t) { return LiveObjectCount(); }

extern "C" RuntimeObject *objectCursorGetItem(RuntimeObject *, int32_t index) {
    RuntimeObject *object = ObjectAt(index);
    RuntimeLockObject(object);
    return object;
}

extern "C" RuntimeObject *objectCursorNextObject(RuntimeObject *self) {
    if (!self)
        return nullptr;
    auto *cursor = reinterpret_cast<ObjectCursorRecord *>(self);
    RuntimeObject *object = ObjectAt(cursor->next);
    if (object)
        ++cursor->next;
    RuntimeLockObject(object);
    return object;
}
