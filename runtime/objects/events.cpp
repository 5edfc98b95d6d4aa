// Event tables: the class's shared table, and the private copy an object
// gets when compiled code binds a handler to that one object.
#include "objects/definitions.h"
#include "objects/object_model.h"
#include "objects/text.h"

#include "base/fatal_report.h"
#include "kelp/objects.h"

#include <cstring>
#include <new>
#include <string>

namespace kelp {

int32_t FindEventRow(RuntimeObject *object, const char *eventName) {
    if (!object || !object->klass || !object->eventTable || !eventName)
        return -1;
    auto *rows = static_cast<RuntimeEventRow *>(object->eventTable);
    // Last to first: a subclass's own rows stand behind the inherited ones,
    // so the first match is the most derived event of that name.
    for (int32_t i = object->klass->eventCount - 1; i >= 0; --i)
        if (objtext::SameName(objtext::View(rows[i].name), eventName))
            return i;
    return -1;
}

void *FindEventHandler(RuntimeObject *object, const ObjectHook *hook) {
    if (!object || !hook || !object->klass || !object->eventTable)
        return nullptr;
    if (hook->index < 0 || hook->index >= object->klass->eventCount)
        return nullptr;
    return static_cast<RuntimeEventRow *>(object->eventTable)[hook->index].handler;
}

} // namespace kelp

using namespace kelp;

extern "C" void RuntimeInstallInstanceEventHandler(RuntimeObject *object, KelpString eventName,
                                                   void *handler) {
    if (!object || !object->klass)
        return;
    RuntimeClass *klass = object->klass;
    if (klass->eventCount <= 0)
        return; // no events: no name can match
    if (object->eventTable == klass->eventTable) {
        auto *copy = new (std::nothrow) RuntimeEventRow[klass->eventCount];
        if (!copy)
            return;
        std::memcpy(static_cast<void *>(copy), klass->eventTable,
                    sizeof(RuntimeEventRow) * klass->eventCount);
        object->eventTable = copy;
    }
    std::string name(objtext::View(eventName));
    int32_t row = FindEventRow(object, name.c_str());
    if (row < 0)
        return;
    auto *rows = static_cast<RuntimeEventRow *>(object->eventTable);
    if (rows[row].handler) {
        std::string message = "Attempting to implement an event that was already implemented. "
                              "Class " +
                              std::string(objtext::View(klass->name)) + ", Event " + name;
        FatalReport(kFatalFailedAssertion, "runtime/objects/events.cpp", __LINE__,
                    "NULL == target->eventTable[ctr].vector", message.c_str());
    }
    rows[row].handler = handler;
}
