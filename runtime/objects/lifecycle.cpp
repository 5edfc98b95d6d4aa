// Objects from creation to the freeing of their block: counts, the
// all-objects list, initializers root-first, destructors at the moment the
// last reference goes, and finalization through a waiting vector, so that a
// long chain of objects each holding the next is torn down without deep
// recursion.
#include "objects/object_model.h"

#include "base/fatal_report.h"
#include "kelp/objects.h"
#include "objects/standard_exceptions.h"

#include <cstring>
#include <new>
#include <vector>

namespace kelp {
namespace {

RuntimeObject *gAllObjects = nullptr;
int32_t gLiveObjects = 0;
bool gFinalizing = false;
uint64_t gListGeneration = 0;
ObjectFinalizeHook gFinalizeHook = nullptr;

std::vector<RuntimeObject *> &WaitingForFinalization() {
    static auto *waiting = new std::vector<RuntimeObject *>(); // lives to process end
    return *waiting;
}

void RunInitializers(RuntimeClass *klass, RuntimeObject *object) {
    // Root first: a subclass's initializer may rely on what its base set up.
    // Class chains are short, so plain recursion is fine here.
    if (!klass)
        return;
    RunInitializers(klass->base, object);
    if (klass->initializer)
        klass->initializer(object);
}

void Unlink(RuntimeObject *object) {
    if (object->previous)
        object->previous->next = object->next;
    else if (gAllObjects == object)
        gAllObjects = object->next;
    if (object->next)
        object->next->previous = object->previous;
    object->previous = object->next = nullptr;
    ++gListGeneration;
}

void Finalize(RuntimeObject *object) {
    RuntimeClass *klass = object->klass;
    for (RuntimeClass *c = klass; c; c = c->base)
        if (c->finalizer)
            c->finalizer(object);
    if (gFinalizeHook)
        gFinalizeHook(object);
    if (object->eventTable && (!klass || object->eventTable != klass->eventTable))
        delete[] static_cast<RuntimeEventRow *>(object->eventTable);
    object->eventTable = nullptr;
    Unlink(object);
    delete[] reinterpret_cast<unsigned char *>(object);
    --gLiveObjects;
}

void Destroy(RuntimeObject *object) {
    for (RuntimeClass *c = object->klass; c; c = c->base)
        if (c->destructor)
            c->destructor(object);

    if (gFinalizing) {
        // An outer finalization is running (this object was released by a
        // finalizer or destructor): finish it later from the loop below.
        WaitingForFinalization().push_back(object);
        return;
    }
    gFinalizing = true;
    Finalize(object);
    auto &waiting = WaitingForFinalization();
    while (!waiting.empty()) {
        RuntimeObject *next = waiting.back();
        waiting.pop_back();
        Finalize(next);
    }
    gFinalizing = false;
}

} // namespace

ObjectFinalizeHook SetObjectFinalizeHook(ObjectFinalizeHook hook) {
    ObjectFinalizeHook old = gFinalizeHook;
    gFinalizeHook = hook;
    return old;
}

int32_t LiveObjectCount() { return gLiveObjects; }
RuntimeObject *AllObjectsHead() { return gAllObjects; }
uint64_t ObjectListGeneration() { return gListGeneration; }

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *RuntimeNewObject(RuntimeClass *klass) {
    if (!klass) {
        RaiseStandardException(StandardException::kNilObject);
        return nullptr;
    }
    if (klass->isInterface) {
        FatalReport(kFatalFailedAssertion, "runtime/objects/lifecycle.cpp", __LINE__,
                    "!parent->isAnInterface", "");
        return nullptr; // an interface has no instances; nothing sensible to make
    }
    uint32_t size = klass->instanceSize;
    if (size < sizeof(RuntimeObject)) {
        // A class record that forgot its size still gets a whole object header.
        FatalReport(kFatalFailedAssertion, "runtime/objects/lifecycle.cpp", __LINE__,
                    "parent->instanceSize >= sizeof(RuntimeObject)", "");
        size = sizeof(RuntimeObject);
    }
    auto *block = new (std::nothrow) unsigned char[size];
    if (!block) {
        RaiseStandardException(StandardException::kNilObject);
        return nullptr;
    }
    ++gLiveObjects;
    std::memset(block, 0, size);
    auto *object = reinterpret_cast<RuntimeObject *>(block);
    object->next = gAllObjects;
    if (gAllObjects)
        gAllObjects->previous = object;
    gAllObjects = object;
    ++gListGeneration;

    object->klass = klass;
    object->methodTable = klass->methodTable;
    object->eventTable = klass->eventTable;
    object->referenceCount = 1;
    RunInitializers(klass, object);
    return object;
}

extern "C" RuntimeObject *CreateInstance(RuntimeClass *klass) { return RuntimeNewObject(klass); }

extern "C" void RuntimeLockObject(RuntimeObject *object) {
    // A count of 0 means the object is being destroyed: it can't be revived.
    if (object && object->referenceCount != 0)
        ++object->referenceCount;
}

extern "C" void RuntimeUnlockObject(RuntimeObject *object) {
    if (object && object->referenceCount > 0 && --object->referenceCount == 0)
        Destroy(object);
}

extern "C" void RuntimeLockUnlockObjects(RuntimeObject *newValue, RuntimeObject *oldValue) {
    if (newValue == oldValue)
        return;
    RuntimeLockObject(newValue);
    RuntimeUnlockObject(oldValue);
}

extern "C" void RuntimeNilObject(void) { RaiseStandardException(StandardException::kNilObject); }
