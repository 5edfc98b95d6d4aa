// Class records: creation with the inherited rows copied in, the all-classes
// list, and the class tests that compiled code calls (Isa, casts, interface
// tables).  Class tests are pointer comparisons along the base chain.
#include "objects/object_model.h"
#include "objects/text.h"

#include "base/ascii.h"
#include "base/fatal_report.h"
#include "kelp/objects.h"
#include "objects/standard_exceptions.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <unordered_map>
#include <vector>

namespace kelp {
namespace {

RuntimeClass *gAllClasses = nullptr;

constexpr const char *kFile = "runtime/objects/classes.cpp";

// A negative count from damaged data is taken as 0.
int32_t Count(int32_t n) { return n < 0 ? 0 : n; }

// Copies min(base, own) rows; a table shorter than the base's is reported.
template <typename Row>
int32_t CopyInherited(Row *to, int32_t own, const Row *from, int32_t inherited, int line,
                      const char *condition) {
    if (own < inherited) {
        FatalReport(kFatalFailedAssertion, kFile, line, condition, "");
        inherited = own;
    }
    if (inherited > 0 && from)
        std::memcpy(static_cast<void *>(to), from, sizeof(Row) * inherited);
    return inherited;
}

const RuntimeInterfaceRow *FindInterfaceRow(const RuntimeClass *klass, const RuntimeClass *iface) {
    if (!klass)
        return nullptr;
    for (int32_t i = 0; i < klass->interfaceCount; ++i)
        if (klass->interfaceTable[i].interfaceClass == iface)
            return &klass->interfaceTable[i];
    return nullptr;
}

} // namespace

RuntimeClass *AllClassesHead() { return gAllClasses; }

namespace {

// The all-classes list by lowered name, so that making a thousand classes
// doesn't walk the list once per class.  Classes join the list at its head
// and keep their name once it is given; the image names a class just after
// making it, so a class seen without a name waits in `unnamed` until it has
// one.  The newest class of a name wins, as in a walk from the head.
struct ClassIndex {
    std::unordered_map<std::string, RuntimeClass *> byName;
    std::unordered_map<const RuntimeClass *, uint64_t> age; // rank in the list, oldest 0
    std::vector<RuntimeClass *> unnamed;
    RuntimeClass *indexedHead = nullptr; // the list's head at the last catch-up
};

ClassIndex &Index() {
    static auto *index = new ClassIndex(); // lives as long as the classes
    return *index;
}

void CatchUp(ClassIndex &index) {
    std::vector<RuntimeClass *> fresh; // newest first
    for (RuntimeClass *c = gAllClasses; c && c != index.indexedHead; c = c->nextClass)
        fresh.push_back(c);
    index.indexedHead = gAllClasses;
    std::vector<RuntimeClass *> waiting;
    waiting.swap(index.unnamed);
    for (auto it = fresh.rbegin(); it != fresh.rend(); ++it) {
        index.age.emplace(*it, index.age.size());
        waiting.push_back(*it);
    }
    for (RuntimeClass *c : waiting) {
        std::string_view name = objtext::View(c->name);
        if (name.empty()) {
            index.unnamed.push_back(c);
            continue;
        }
        RuntimeClass *&slot = index.byName[AsciiLowered(name)];
        if (!slot || index.age[slot] < index.age[c]) // a class named late may be older
            slot = c;
    }
}

} // namespace

RuntimeClass *FindClassByName(const char *name) {
    if (!name)
        return nullptr;
    ClassIndex &index = Index();
    if (index.indexedHead != gAllClasses || !index.unnamed.empty())
        CatchUp(index);
    auto it = index.byName.find(AsciiLowered(name));
    if (it == index.byName.end())
        return nullptr;
    RuntimeClass *c = it->second;
    return objtext::SameName(objtext::View(c->name), name) ? c : nullptr;
}

bool ClassInherits(const RuntimeClass *klass, const RuntimeClass *ancestor) {
    for (; klass; klass = klass->base)
        if (klass == ancestor)
            return true;
    return false;
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeClass *RuntimeNewClass(RuntimeClass *base, int32_t methods, int32_t interfaces,
                                         int32_t events, int32_t directMethods,
                                         int32_t properties) {
    methods = Count(methods);
    interfaces = Count(interfaces);
    events = Count(events);
    directMethods = Count(directMethods);
    properties = Count(properties);

    size_t size = sizeof(RuntimeClass) + interfaces * sizeof(RuntimeInterfaceRow) +
                  methods * sizeof(RuntimeMethodRow) + events * sizeof(RuntimeEventRow) +
                  directMethods * sizeof(RuntimeMethodRow) +
                  properties * sizeof(RuntimePropertyRow);
    auto *block = new (std::nothrow) unsigned char[size];
    if (!block) {
        RaiseStandardException(StandardException::kNilObject);
        return nullptr;
    }
    std::memset(block, 0, size);
    auto *out = reinterpret_cast<RuntimeClass *>(block);

    unsigned char *p = block + sizeof(RuntimeClass) + interfaces * sizeof(RuntimeInterfaceRow);
    out->interfaceCount = interfaces;
    out->methodCount = methods;
    out->methodTable = reinterpret_cast<RuntimeMethodRow *>(p);
    p += methods * sizeof(RuntimeMethodRow);
    out->eventCount = events;
    out->eventTable = reinterpret_cast<RuntimeEventRow *>(p);
    p += events * sizeof(RuntimeEventRow);
    out->directMethodCount = directMethods;
    out->directMethodTable = reinterpret_cast<RuntimeMethodRow *>(p);
    p += directMethods * sizeof(RuntimeMethodRow);
    out->propertyCount = properties;
    out->propertyTable = reinterpret_cast<RuntimePropertyRow *>(p);

    if (base) {
        CopyInherited(out->methodTable, methods, base->methodTable, base->methodCount, __LINE__,
                      "out->methodCount >= base->methodCount");
        CopyInherited(out->interfaceTable, interfaces, base->interfaceTable, base->interfaceCount,
                      __LINE__, "out->interfaceCount >= base->interfaceCount");
        CopyInherited(out->eventTable, events, base->eventTable, base->eventCount, __LINE__,
                      "out->eventCount >= base->eventCount");
        CopyInherited(out->propertyTable, properties, base->propertyTable, base->propertyCount,
                      __LINE__, "out->propertyCount >= base->propertyCount");
        // Direct methods belong to one class each: a subclass may have fewer.
        int32_t direct = std::min(directMethods, base->directMethodCount);
        if (direct > 0)
            std::memcpy(static_cast<void *>(out->directMethodTable), base->directMethodTable,
                        sizeof(RuntimeMethodRow) * direct);
        out->instanceSize = base->instanceSize;
    }
    out->base = base;
    out->nextClass = gAllClasses;
    gAllClasses = out;
    return out;
}

extern "C" RuntimeMethodRow *RuntimeNewVtable(int32_t slots) {
    slots = Count(slots);
    auto *rows = new (std::nothrow) RuntimeMethodRow[slots ? slots : 1]();
    if (!rows)
        RaiseStandardException(StandardException::kNilObject);
    return rows;
}

extern "C" uint8_t RuntimeObjectIsa(RuntimeObject *object, RuntimeClass *klass) {
    if (!object)
        return 0;
    if (!klass)
        return 1;
    if (klass->isInterface)
        return FindInterfaceRow(object->klass, klass) ? 1 : 0;
    return ClassInherits(object->klass, klass) ? 1 : 0;
}

extern "C" RuntimeObject *RuntimeCheckCast(RuntimeObject *object, RuntimeClass *klass) {
    if (!object)
        return nullptr;
    if (!klass)
        return object; // no target: the object as it is, no new reference
    if (klass->isInterface) {
        if (FindInterfaceRow(object->klass, klass)) {
            RuntimeLockObject(object);
            return object;
        }
        RaiseStandardException(StandardException::kIllegalCast);
        return nullptr;
    }
    if (ClassInherits(object->klass, klass)) {
        RuntimeLockObject(object);
        return object;
    }
    // Automation objects are made by the library under one class and cast by
    // the language to classes it derives on the fly from that same class.
    if (klass->base && object->klass &&
        objtext::SameName(objtext::View(object->klass->name), "OLEObject") &&
        objtext::SameName(objtext::View(klass->base->name), "OLEObject")) {
        RuntimeLockObject(object);
        return object;
    }
    RaiseStandardException(StandardException::kIllegalCast);
    return nullptr;
}

extern "C" RuntimeMethodRow *RuntimeLookupInterfaceVtable(RuntimeObject *object,
                                                          RuntimeClass *interfaceClass) {
    if (!object) {
        RaiseStandardException(StandardException::kNilObject);
        return nullptr;
    }
    if (const RuntimeInterfaceRow *row = FindInterfaceRow(object->klass, interfaceClass))
        return row->methodTable;
    RaiseStandardException(StandardException::kIllegalCast);
    return nullptr;
}
