// Definitions: building them from rows, the registries of library classes
// and modules, and the lazy conversion of a definition into a RuntimeClass.
// A class the image has already built under the definition's name is taken
// as it is: that is where the image and the library meet.
#include "objects/definitions.h"
#include "objects/object_model.h"
#include "objects/text.h"

#include "base/ascii.h"
#include "base/fatal_report.h"
#include "kelp/image.h"
#include "kelp/objects.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/objects/definitions.cpp";

std::string Key(std::string_view name) { return AsciiLowered(name); }

// Registries live to the end of the process, like the classes they make.
struct Registries {
    ObjectDefinition *allDefinitions = nullptr;
    std::unordered_map<std::string, ObjectDefinition *> classes;
    std::unordered_map<std::string, ObjectDefinition *> modules;
    std::unordered_map<const ObjectDefinition *, RuntimeClass *> classOfDefinition;
    std::unordered_map<std::string, RuntimeClass *> classByName;
    std::vector<DefinitionAccessor> classAccessors;
    std::vector<DefinitionAccessor> moduleAccessors;
    std::vector<const MethodRow *> functions; // the table of intrinsic functions
    PluginClassFinder pluginFinder = nullptr;
    void (*externalClassesFinisher)() = nullptr;
    uint32_t resolvePass = 1;
    bool externalClassesDone = false;
};

Registries &R() {
    static auto *registries = new Registries();
    return *registries;
}

void AddEntryExport(const EntryPoint &entry) {
    // 0 and 1 are "none" and "plain field", not code.
    if (!entry.name || reinterpret_cast<uintptr_t>(entry.code) <= 1)
        return;
    AddExport(entry.name, entry.code);
}

void AddDefinitionExports(const ObjectDefinition *definition) {
    for (const ObjectMethod *m = definition->methods; m; m = m->next) {
        AddEntryExport(m->row->entry);
        AddEntryExport(m->row->secondEntry);
    }
    for (const InstanceVariable *v = definition->instanceVariables; v; v = v->next) {
        AddEntryExport(v->row->getter);
        AddEntryExport(v->row->setter);
    }
    AddEntryExport({definition->initializer.toc, definition->initializer.name});
    AddEntryExport({definition->finalizer.toc, definition->finalizer.name});
}

// Lists keep the rows' order: the first row is the head.
template <typename Item> void Append(Item *&head, Item *item) {
    Item **at = &head;
    while (*at)
        at = &(*at)->next;
    *at = item;
}

const ObjectMethod *FindMethodNamed(const ObjectDefinition *definition, const char *name) {
    for (; definition; definition = definition->super)
        for (const ObjectMethod *m = definition->methods; m; m = m->next)
            if (objtext::SameName(m->row->name ? m->row->name : "", name ? name : ""))
                return m;
    return nullptr;
}

int32_t CountMethods(const ObjectDefinition *definition) {
    int32_t n = 0;
    for (const ObjectMethod *m = definition ? definition->methods : nullptr; m; m = m->next)
        ++n;
    return n;
}

// Finds the code of each interface method among the class's methods.
// Returns false when one is missing (reported as a bad class definition).
bool ResolveInterfaces(ObjectDefinition *definition) {
    if (definition->resolvedInterfacesMark == R().resolvePass)
        return true;
    for (InterfaceItem *item = definition->interfaces; item; item = item->next) {
        ObjectDefinition *iface = item->Interface();
        int32_t count = CountMethods(iface);
        delete[] item->slots;
        item->slots = new void *[count + 1]();
        int32_t slot = 1;
        for (const ObjectMethod *m = iface ? iface->methods : nullptr; m; m = m->next) {
            const ObjectMethod *found = FindMethodNamed(definition, m->row->name);
            if (!found) {
                std::string message = std::string(objtext::View(definition->className)) +
                                      " does not implement " +
                                      std::string(objtext::View(iface->className)) + "." +
                                      (m->row->name ? m->row->name : "");
                FatalReport(kFatalInvalidClassDefinition, kFile, __LINE__, "0", message.c_str());
                return false;
            }
            item->slots[slot++] = found->row->entry.code;
        }
    }
    definition->resolvedInterfacesMark = R().resolvePass;
    return true;
}

KelpString Text(const std::string &s) { return objtext::Make(s); }

// The sizes of the class a definition converts into, each counting the
// super's rows first.
struct ClassSizes {
    int32_t properties = 0, interfaces = 0, events = 0, directMethods = 0, methods = 0;
};

// Numbers the definition's properties and events behind the super's rows
// and counts every table of the class to be.
ClassSizes NumberRows(ObjectDefinition *definition, const RuntimeClass *superClass) {
    ClassSizes sizes;
    const int32_t superProperties = superClass ? superClass->propertyCount : 0;
    int32_t next = superProperties;
    for (InstanceVariable *v = definition->instanceVariables; v; v = v->next) {
        KELP_ASSERT(0 == (v->userFlags & kItemSystemVirtual), kFile,
                    "0 == (item->userFlags & systemPropertyVirtual)");
        if (!v->IsConstant())
            v->mPropertyTableIndex = next++;
    }
    definition->mPropertyTableSize = next;

    sizes.interfaces = superClass ? superClass->interfaceCount : 0;
    for (InterfaceItem *i = definition->interfaces; i; i = i->next)
        ++sizes.interfaces;
    sizes.events = superClass ? superClass->eventCount : 0;
    for (ObjectHook *h = definition->hooks; h; h = h->next)
        h->index = sizes.events++;
    sizes.directMethods = superClass ? superClass->directMethodCount : 0;
    for (ObjectMethod *m = definition->methods; m; m = m->next)
        sizes.directMethods += (m->row->entry.code ? 1 : 0) + (m->row->secondEntry.code ? 1 : 0);
    sizes.properties = superProperties;
    for (InstanceVariable *v = definition->instanceVariables; v; v = v->next) {
        if (v->IsConstant())
            continue;
        KELP_ASSERT(v->mPropertyTableIndex == sizes.properties, kFile,
                    "item->mPropertyTableIndex == propertyCount");
        ++sizes.properties;
    }
    KELP_ASSERT(sizes.properties == definition->mPropertyTableSize, kFile,
                "propertyCount == defn->mPropertyTableSize");
    sizes.methods = superClass ? superClass->methodCount : 0;
    return sizes;
}

// The class record with its tables, its name, its life-cycle functions and
// its instance size (at least the super's).
RuntimeClass *NewClassRecord(const ObjectDefinition *definition, RuntimeClass *superClass,
                             const ClassSizes &sizes) {
    RuntimeClass *out = RuntimeNewClass(superClass, sizes.methods, sizes.interfaces, sizes.events,
                                        sizes.directMethods, sizes.properties);
    if (!out)
        return nullptr;
    out->name = objtext::Make(objtext::View(definition->className));
    out->initializer = reinterpret_cast<RuntimeObjectHook>(definition->initializer.toc);
    out->finalizer = reinterpret_cast<RuntimeObjectHook>(definition->finalizer.toc);
    out->instanceSize = std::max<uint32_t>(definition->objectSize, sizeof(RuntimeObject));
    if (superClass && out->instanceSize < superClass->instanceSize)
        out->instanceSize = superClass->instanceSize;
    if (definition->isInterface)
        out->isInterface = 1;
    return out;
}

// Events: own hooks behind the inherited rows, then the implementations of
// inherited events.
void FillEvents(ObjectDefinition *definition, RuntimeClass *out) {
    for (ObjectHook *h = definition->hooks; h; h = h->next)
        out->eventTable[h->index].name = objtext::Make(h->name ? h->name : "");
    for (ObjectHookInstance *hi = definition->hookInstances; hi; hi = hi->next) {
        for (ObjectDefinition *s = definition->super; s && hi->id < 0; s = s->super)
            for (ObjectHook *h = s->hooks; h; h = h->next)
                if (objtext::SameName(h->name ? h->name : "", hi->name ? hi->name : "")) {
                    hi->id = h->index;
                    break;
                }
        if (hi->id >= 0 && hi->id < out->eventCount)
            out->eventTable[hi->id].handler = hi->code;
    }
}

// Interfaces behind the super's, each with its method table.
void FillInterfaces(const ObjectDefinition *definition, const RuntimeClass *superClass,
                    RuntimeClass *out) {
    int32_t itableCtr = superClass ? superClass->interfaceCount : 0;
    for (InterfaceItem *item = definition->interfaces; item; item = item->next) {
        KELP_ASSERT(itableCtr < out->interfaceCount, kFile, "itableCtr < out->interfaceCount");
        if (itableCtr >= out->interfaceCount)
            break;
        ObjectDefinition *iface = item->Interface();
        int32_t count = CountMethods(iface);
        RuntimeInterfaceRow &row = out->interfaceTable[itableCtr++];
        row.interfaceClass = iface ? ClassForDefinition(iface) : nullptr;
        row.slotCount = count; // slot 0 is free: method count + 1 - 1
        row.methodTable = RuntimeNewVtable(count + 1);
        int32_t slot = 1;
        for (const ObjectMethod *m = iface ? iface->methods : nullptr; m; m = m->next, ++slot) {
            row.methodTable[slot].code = item->slots ? item->slots[slot] : nullptr;
            row.methodTable[slot].signature = Text(MethodSignature(iface, *m->row));
        }
    }
}

// Direct methods behind the super's: the entry, then the assigning form.
void FillDirectMethods(const ObjectDefinition *definition, const RuntimeClass *superClass,
                       RuntimeClass *out) {
    int32_t directCtr = superClass ? superClass->directMethodCount : 0;
    for (ObjectMethod *m = definition->methods; m; m = m->next) {
        if (m->row->entry.code && directCtr < out->directMethodCount) {
            out->directMethodTable[directCtr].code = m->row->entry.code;
            out->directMethodTable[directCtr++].signature =
                Text(MethodSignature(definition, *m->row));
        }
        if (m->row->secondEntry.code && directCtr < out->directMethodCount) {
            std::string setter = std::string(m->row->name ? m->row->name : "") + "%%o<" +
                                 std::string(objtext::View(definition->className)) + ">";
            for (int32_t i = 0; i < m->row->parameterCount && m->row->parameters; ++i)
                setter += TypeCode(m->row->parameters[i].type);
            setter += TypeCode(m->row->returnType);
            out->directMethodTable[directCtr].code = m->row->secondEntry.code;
            out->directMethodTable[directCtr++].signature = Text(setter);
        }
    }
}

// Properties behind the super's; constants take no row.
void FillProperties(const ObjectDefinition *definition, const RuntimeClass *superClass,
                    RuntimeClass *out) {
    int32_t propertyCtr = superClass ? superClass->propertyCount : 0;
    for (InstanceVariable *v = definition->instanceVariables; v; v = v->next) {
        if (v->IsConstant())
            continue;
        KELP_ASSERT(propertyCtr < out->propertyCount, kFile, "propertyCtr < out->propertyCount");
        KELP_ASSERT(propertyCtr == v->mPropertyTableIndex, kFile,
                    "propertyCtr == ivar->mPropertyTableIndex");
        if (propertyCtr >= out->propertyCount)
            break;
        RuntimePropertyRow &row = out->propertyTable[propertyCtr++];
        row.signature = Text(PropertySignature(*v->row));
        row.fieldOffset = static_cast<int32_t>(v->row->parameter);
        row.getter = v->row->getter.code;
        row.setter = v->row->setter.code;
    }
}

// A definition made into a class: the super first, the interfaces'
// methods found, the rows numbered, then the record and its tables.
RuntimeClass *Convert(ObjectDefinition *definition) {
    RuntimeClass *superClass = nullptr;
    if (definition->super) {
        superClass = ClassForDefinition(definition->super);
        KELP_ASSERT(superClass != nullptr, kFile, "super");
    }
    ResolveInterfaces(definition);
    const ClassSizes sizes = NumberRows(definition, superClass);
    RuntimeClass *out = NewClassRecord(definition, superClass, sizes);
    if (!out)
        return nullptr;
    FillEvents(definition, out);
    FillInterfaces(definition, superClass, out);
    FillDirectMethods(definition, superClass, out);
    FillProperties(definition, superClass, out);
    return out;
}

// A class the image built has its own event table; the library's hooks name
// its rows by event name, so that firing code finds the image's handlers.
void BindHooksToImageClass(ObjectDefinition *definition, RuntimeClass *klass) {
    for (ObjectHook *h = definition->hooks; h; h = h->next) {
        h->index = -1;
        for (int32_t i = klass->eventCount - 1; i >= 0 && h->index < 0; --i)
            if (objtext::SameName(objtext::View(klass->eventTable[i].name), h->name ? h->name : ""))
                h->index = i;
    }
}

ObjectDefinition *FindAmongAccessors(const std::vector<DefinitionAccessor> &accessors,
                                     std::string_view name) {
    for (DefinitionAccessor accessor : accessors) {
        ObjectDefinition *d = accessor();
        if (d && objtext::SameName(objtext::View(d->className), name))
            return d;
    }
    return nullptr;
}

} // namespace

ObjectDefinition *BuildDefinition(const ClassDescription &description) {
    auto *d = new ObjectDefinition();
    d->className = objtext::Make(description.name ? description.name : "");
    std::copy(std::begin(description.targetFlags), std::end(description.targetFlags),
              d->targetFlags);
    d->super = description.super ? description.super() : nullptr;
    d->objectSize = description.instanceSize;
    d->isInterface = description.isInterface ? 1 : 0;
    d->initializer.toc = description.initializer.code;
    d->initializer.name = description.initializer.name;
    d->finalizer.toc = description.finalizer.code;
    d->finalizer.name = description.finalizer.name;
    ExtendDefinition(d, description.properties, description.methods);
    for (const EventRow &row : description.events) {
        auto *h = new ObjectHook();
        h->name = row.name;
        h->parameterText = row.parameterText;
        h->returnTypeName = row.returnTypeName;
        if (row.slot)
            *row.slot = h;
        Append(d->hooks, h);
    }
    for (const HookInstanceRow &row : description.hookInstances) {
        auto *hi = new ObjectHookInstance();
        hi->name = row.eventName;
        hi->code = row.code;
        Append(d->hookInstances, hi);
    }
    for (DefinitionAccessor accessor : description.interfaces) {
        auto *item = new InterfaceItem();
        item->interface = accessor;
        Append(d->interfaces, item);
    }
    d->nextDefinition = R().allDefinitions;
    R().allDefinitions = d;
    return d;
}

void ExtendDefinition(ObjectDefinition *definition, std::span<const PropertyRow> properties,
                      std::span<const MethodRow> methods) {
    for (const PropertyRow &row : properties) {
        auto *v = new InstanceVariable();
        v->userFlags = row.flags;
        v->row = &row;
        Append(definition->instanceVariables, v);
    }
    for (const MethodRow &row : methods) {
        auto *m = new ObjectMethod();
        m->userFlags = row.flags;
        m->row = &row;
        Append(definition->methods, m);
    }
}

const char *TargetConditionText(const ObjectDefinition *definition) {
    if (definition->targetFlags[2])
        return "not TargetHasGUI";
    if (definition->targetFlags[0])
        return "true";
    return "TargetHasGUI";
}

void AddIntrinsicClassAccessor(DefinitionAccessor accessor) {
    if (accessor)
        R().classAccessors.push_back(accessor);
}
void AddIntrinsicModuleAccessor(DefinitionAccessor accessor) {
    if (accessor)
        R().moduleAccessors.push_back(accessor);
}

void AddIntrinsicFunctions(std::span<const MethodRow> rows) {
    for (const MethodRow &row : rows) {
        R().functions.push_back(&row);
        if (R().externalClassesDone) {
            AddEntryExport(row.entry);
            AddEntryExport(row.secondEntry);
        }
    }
}

std::vector<const MethodRow *> LookupIntrinsicFunction(const char *name) {
    std::vector<const MethodRow *> found;
    for (const MethodRow *row : R().functions)
        if (objtext::SameName(row->name ? row->name : "", name ? name : ""))
            found.push_back(row);
    return found;
}

void RegisterIntrinsicClass(ObjectDefinition *definition) {
    if (!definition)
        return;
    definition->flags[0] = 1; // present in the running application
    R().classes[Key(objtext::View(definition->className))] = definition;
    AddDefinitionExports(definition);
}

void RegisterIntrinsicModule(ObjectDefinition *definition) {
    if (!definition)
        return;
    KELP_ASSERT(0 == definition->objectSize, kFile, "0 == defn->objectSize");
    KELP_ASSERT(nullptr == definition->super, kFile, "NULL == defn->super");
    KELP_ASSERT(nullptr == definition->initializer.toc, kFile, "NULL == defn->initializer.toc");
    KELP_ASSERT(nullptr == definition->finalizer.toc, kFile, "NULL == defn->finalizer.toc");
    KELP_ASSERT(nullptr == definition->hooks, kFile, "NULL == defn->hooks");
    KELP_ASSERT(nullptr == definition->hookInstances, kFile, "NULL == defn->hookInstances");
    KELP_ASSERT(nullptr == definition->menuHandlers, kFile, "NULL == defn->menuHandlers");
    KELP_ASSERT(nullptr == definition->interfaces, kFile, "NULL == defn->interfaces");
    std::string key = Key(objtext::View(definition->className));
    bool fresh = !R().modules.contains(key);
    KELP_ASSERT(fresh, kFile, "not gIntrinsicModuleMap->HasEntry( defn->className )");
    if (!fresh)
        return;
    R().modules[key] = definition;
    AddDefinitionExports(definition);
}

ObjectDefinition *LookupIntrinsicClass(const char *name) {
    auto it = R().classes.find(Key(name ? name : ""));
    return it == R().classes.end() ? nullptr : it->second;
}

ObjectDefinition *LookupIntrinsicModule(const char *name) {
    auto it = R().modules.find(Key(name ? name : ""));
    return it == R().modules.end() ? nullptr : it->second;
}

RuntimeClass *ClassForDefinition(ObjectDefinition *definition) {
    if (!definition) {
        FatalReport(kFatalFailedAssertion, kFile, __LINE__, "defn", "");
        return nullptr;
    }
    auto &cache = R().classOfDefinition;
    if (auto it = cache.find(definition); it != cache.end())
        return it->second;
    const std::string name(objtext::View(definition->className));
    RuntimeClass *klass = FindClassByName(name.c_str());
    if (!klass)
        klass = Convert(definition);
    else
        BindHooksToImageClass(definition, klass);
    if (klass)
        cache[definition] = klass;
    return klass;
}

RuntimeObject *NewObjectOfDefinition(ObjectDefinition *definition) {
    return RuntimeNewObject(ClassForDefinition(definition));
}

void SetPluginClassFinder(PluginClassFinder finder) { R().pluginFinder = finder; }
void SetExternalClassesFinisher(void (*finisher)()) { R().externalClassesFinisher = finisher; }

} // namespace kelp

using namespace kelp;

extern "C" RuntimeClass *RuntimeLookupClass(KelpString name) {
    std::string key = Key(objtext::View(name));
    if (key.empty())
        return nullptr;
    auto &cache = R().classByName;
    if (auto it = cache.find(key); it != cache.end())
        return it->second;
    ObjectDefinition *definition = LookupIntrinsicClass(key.c_str());
    if (!definition && R().pluginFinder)
        definition = R().pluginFinder(key.c_str());
    if (!definition) // before registration: the classes known to the library
        definition = FindAmongAccessors(R().classAccessors, key);
    if (!definition)
        return nullptr;
    RuntimeClass *klass = ClassForDefinition(definition);
    if (klass)
        cache[key] = klass;
    return klass;
}

extern "C" void *KELPLoadGlobalMethod(void *, const char *declaration) {
    if (!declaration)
        return nullptr;
    for (const MethodRow *row : R().functions)
        if (DeclarationMatches(*row, declaration))
            return row->entry.code;
    return nullptr;
}

extern "C" void *RuntimeFindHookCode(void *source, int32_t hookId) {
    for (auto *d = static_cast<ObjectDefinition *>(source); d; d = d->super)
        for (ObjectHookInstance *hi = d->hookInstances; hi; hi = hi->next)
            if (hi->id == hookId)
                return hi->code;
    return nullptr;
}

extern "C" void RuntimeInitExternalClasses(void) {
    if (R().externalClassesDone)
        return;
    R().externalClassesDone = true;
    // Accessors may add further registrations while they run; index loops
    // see them.
    for (size_t i = 0; i < R().classAccessors.size(); ++i)
        RegisterIntrinsicClass(R().classAccessors[i]());
    for (size_t i = 0; i < R().moduleAccessors.size(); ++i)
        RegisterIntrinsicModule(R().moduleAccessors[i]());
    for (const MethodRow *row : R().functions) {
        AddEntryExport(row->entry);
        AddEntryExport(row->secondEntry);
    }
    if (R().externalClassesFinisher)
        R().externalClassesFinisher();
}
