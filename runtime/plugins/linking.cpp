// Linking: each registered plug-in record becomes an ObjectDefinition and a
// RuntimeClass of the same shape as the library's own.  Every table is
// checked before it is walked; a declaration that doesn't parse loses its
// row only.  The rows live as long as the process, like the records.
#include "plugins/host.h"

#include "plugins/custom_control.h"
#include "plugins/declaration.h"

#include "base/ascii.h"
#include "base/fatal_report.h"
#include "controls/control.h"
#include "objects/definitions.h"
#include "objects/text.h"

#include "kelp/objects.h"

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace kelp::plugins {
namespace {

// The rows a definition points into; never freed.
struct Rows {
    std::deque<std::string> texts;
    std::vector<PropertyRow> properties;
    std::vector<MethodRow> methods;
    std::deque<std::vector<ParameterRow>> parameters;
    std::vector<EventRow> events;
    std::vector<KELPevent *> eventRecords; // the record row of each event row
    std::deque<ObjectHook *> hookSlots;
    std::vector<HookInstanceRow> hookInstances;

    const char *Keep(std::string s) { return texts.emplace_back(std::move(s)).c_str(); }
};

// Rows for one more definition, kept with the others to the end.
Rows *NewRows() {
    static auto *all = new std::vector<Rows *>();
    return all->emplace_back(new Rows());
}

std::unordered_map<RuntimeClass *, Registered *> &ClassMap() {
    static auto *map = new std::unordered_map<RuntimeClass *, Registered *>();
    return *map;
}

// Types named in declarations and property rows, made once per name.
const TypeRecord *TypeFor(const std::string &name, bool isArray) {
    static auto *types = new std::map<std::string, std::unique_ptr<TypeRecord>>();
    static auto *names = new std::deque<std::string>();
    const TypeRecord *element = nullptr;
    std::string_view value = ValueTypeName(name);
    if (value == "Boolean")
        element = &kTypeBoolean;
    else if (value == "Integer")
        element = &kTypeInteger;
    else if (value == "Color")
        element = &kTypeColor;
    else if (value == "String")
        element = &kTypeString;
    else if (value == "Single")
        element = &kTypeSingle;
    else if (value == "Double")
        element = &kTypeDouble;
    const std::string key = AsciiLowered(name) + (isArray ? "()" : "");
    if (auto it = types->find(key); it != types->end())
        return it->second.get();
    if (!element) {
        const std::string objectKey = AsciiLowered(name);
        auto &slot = (*types)[objectKey];
        if (!slot)
            slot.reset(new TypeRecord{kTypeObjectOf, names->emplace_back(name).c_str()});
        element = slot.get();
    }
    if (!isArray)
        return element;
    auto &slot = (*types)[key];
    slot.reset(new TypeRecord{kTypeArray, nullptr, element, 1});
    return slot.get();
}

bool IsValueType(const std::string &type) { return !ValueTypeName(type).empty(); }

// A method row from a declaration; false when the declaration is dropped.
bool MakeMethodRow(Rows &rows, const char *declaration, void *function, void *setter,
                   MethodRow &out) {
    ParsedDeclaration d;
    if (!declaration || !ParseDeclaration(declaration, IsKnownClassName, d))
        return false;
    auto &parameters = rows.parameters.emplace_back();
    for (size_t i = 0; i < d.parameters.size(); ++i) {
        const ParsedParameter &p = d.parameters[i];
        uint32_t flags = p.byRef ? uint32_t(kParamByRef) : 0u;
        if (i == 0 && (d.kind & kExtends))
            flags |= kParamExtends;
        if (i + 1 == d.parameters.size() && (d.kind & kAssigns))
            flags |= kParamAssigns;
        parameters.push_back(ParameterRow{rows.Keep(p.name), TypeFor(p.type, p.isArray),
                                          p.hasDefault ? "Nil" : nullptr, flags});
    }
    out = MethodRow{};
    out.name = rows.Keep(d.name);
    out.returnType = d.resultType.empty() ? nullptr : TypeFor(d.resultType, d.resultArray);
    out.parameters = parameters.data();
    out.parameterCount = static_cast<int32_t>(parameters.size());
    out.entry = EntryPoint{function, nullptr};
    if (setter && setter != KELP_NO_SETTER)
        out.secondEntry = EntryPoint{setter, nullptr};
    return true;
}

void AddMethods(Rows &rows, const void *table, int32_t count, int32_t version) {
    if (!TableIsSound(table, count, "methods || methodCount == 0", __LINE__))
        return;
    for (int32_t i = 0; i < count; ++i) {
        const KELPmethodDefinitionV6 *m = MethodAt(table, version, i);
        MethodRow row;
        if (MakeMethodRow(rows, m->declaration, m->function, m->setterFunction, row))
            rows.methods.push_back(row);
    }
}

// The host's accessor for a field of this type.  Single and Double get
// their own, so a default Double property keeps its fraction.
EntryPoint DefaultGetter(const std::string &type) {
    std::string_view v = ValueTypeName(type);
    if (v == "String")
        return KELP_ENTRY(stringGetter);
    if (v == "Boolean")
        return KELP_ENTRY(boolGetter);
    if (v == "Double")
        return KELP_ENTRY(doubleGetter);
    if (v == "Single")
        return KELP_ENTRY(singleGetter);
    if (v.empty())
        return KELP_ENTRY(objGetter);
    return KELP_ENTRY(intGetter);
}

EntryPoint DefaultSetter(const std::string &type, bool redraws) {
    std::string_view v = ValueTypeName(type);
    if (v == "String")
        return redraws ? KELP_ENTRY(stringInvalidateSetter) : KELP_ENTRY(stringSetter);
    if (v == "Boolean")
        return redraws ? KELP_ENTRY(boolInvalidateSetter) : KELP_ENTRY(boolSetter);
    if (v == "Double")
        return KELP_ENTRY(doubleSetter);
    if (v == "Single")
        return KELP_ENTRY(singleSetter);
    if (v.empty())
        return redraws ? KELP_ENTRY(objInvalidateSetter) : KELP_ENTRY(objSetter);
    return redraws ? KELP_ENTRY(intInvalidateSetter) : KELP_ENTRY(intSetter);
}

void AddProperties(Rows &rows, KELPproperty *table, int32_t count, int32_t dataOffset,
                   bool isControl) {
    if (!TableIsSound(table, count, "properties || propertyCount == 0", __LINE__))
        return;
    for (int32_t i = 0; i < count; ++i) {
        KELPproperty &p = table[i];
        p.flags |= 0x2000;
        if (!p.name || !p.type)
            continue;
        std::string type = p.type;
        if (!IsValueType(type) && !AsciiEqualNoCase(type, "Object") && !IsKnownClassName(type))
            continue; // an unknown type drops the row
        if (!IsValueType(type))
            type = AsciiEqualNoCase(type, "Object") ? "Object" : type;
        PropertyRow row;
        row.name = rows.Keep(p.name);
        row.type = TypeFor(type, false);
        row.getter =
            p.getter == KELP_DEFAULT_ACCESSOR ? DefaultGetter(type) : EntryPoint{p.getter, nullptr};
        row.setter = p.setter == KELP_DEFAULT_ACCESSOR
                         ? DefaultSetter(type, isControl && (p.flags & 0x01))
                         : EntryPoint{p.setter, nullptr};
        if (p.flags & 0x02)
            row.setter = EntryPoint{};
        row.parameter =
            p.parameter + ((p.getter == KELP_DEFAULT_ACCESSOR || p.setter == KELP_DEFAULT_ACCESSOR)
                               ? dataOffset
                               : 0);
        rows.properties.push_back(row);
    }
}

void AddEvents(Rows &rows, const char *className, KELPevent *table, int32_t count) {
    if (!TableIsSound(table, count, "events || eventCount == 0", __LINE__))
        return;
    for (int32_t i = 0; i < count; ++i) {
        ParsedDeclaration d;
        if (!table[i].declaration || !ParseDeclaration(table[i].declaration, IsKnownClassName, d))
            continue;
        bool duplicate = false;
        for (const EventRow &e : rows.events)
            duplicate |= AsciiEqualNoCase(e.name, d.name);
        if (duplicate) {
            std::string message =
                "Duplicate name found while trying to build class events.  Matched names are: " +
                d.name;
            FatalReport(kFatalFailedAssertion, kReportFile, __LINE__, "tail->name != h->name",
                        message.c_str());
            continue;
        }
        std::string text = table[i].declaration;
        const size_t open = text.find('('), close = text.rfind(')');
        std::string parameters =
            open != std::string::npos && close != std::string::npos && close > open
                ? text.substr(open + 1, close - open - 1)
                : std::string();
        EventRow row{rows.Keep(d.name), rows.Keep(parameters),
                     d.resultType.empty() ? nullptr : rows.Keep(d.resultType),
                     &rows.hookSlots.emplace_back(nullptr)};
        rows.events.push_back(row);
        rows.eventRecords.push_back(&table[i]);
        (void)className;
    }
}

void AddEventInstances(Rows &rows, KELPeventInstance *table, int32_t count) {
    if (!TableIsSound(table, count, "eventInstances || eventInstanceCount == 0", __LINE__))
        return;
    for (int32_t i = 0; i < count; ++i)
        if (table[i].name && table[i].function)
            rows.hookInstances.push_back(
                HookInstanceRow{rows.Keep(table[i].name), table[i].function});
}

// The list "A, B" of interfaces a class implements.
void AddInterfaces(ObjectDefinition *d, const char *list, const char *className) {
    std::string_view rest = list ? list : "";
    InterfaceItem **tail = &d->interfaces;
    while (*tail)
        tail = &(*tail)->next;
    while (!rest.empty()) {
        const size_t comma = rest.find(',');
        std::string_view field = rest.substr(0, comma);
        rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
        while (!field.empty() && (field.front() == ' ' || field.front() == '\t'))
            field.remove_prefix(1);
        while (!field.empty() && (field.back() == ' ' || field.back() == '\t'))
            field.remove_suffix(1);
        if (field.empty())
            continue;
        ObjectDefinition *iface = FindClassDefinition(field);
        if (!iface || !iface->isInterface) {
            std::string message = "Couldn't find " + std::string(field) +
                                  " interface : " + (className ? className : "");
            FatalReport(kFatalFailedAssertion, kReportFile, __LINE__, "iface", message.c_str());
            continue;
        }
        auto *item = new InterfaceItem();
        item->definition = iface;
        *tail = item;
        tail = &item->next;
    }
}

// Builds the definition, publishes the event records, makes the class.
void Finish(Registered *r, Rows &rows, ClassDescription description, ObjectDefinition *super,
            const char *interfaces) {
    description.properties = rows.properties;
    description.methods = rows.methods;
    description.events = rows.events;
    description.hookInstances = rows.hookInstances;
    ObjectDefinition *d = BuildDefinition(description);
    d->super = super;
    AddInterfaces(d, interfaces, description.name);
    r->definition = d;
    r->klass = ClassForDefinition(d);
    if (r->klass)
        ClassMap()[r->klass] = r;
    for (size_t i = 0; i < rows.events.size(); ++i)
        rows.eventRecords[i]->forSystemUse = *rows.events[i].slot;
    if (r->oldControlRecord) // a plug-in of the first version reads its class there
        r->oldControlRecord->klass = r->klass;
}

// Plug-in constructors run root first, after the library's initializers;
// one initializer, on the lowest plug-in class of a chain, runs them all.
void RunPluginConstructors(RuntimeClass *klass, RuntimeObject *object) {
    if (!klass)
        return;
    RunPluginConstructors(klass->base, object);
    if (Registered *r = ClassOfRuntimeClass(klass))
        if (r->classRecord->constructor)
            r->classRecord->constructor(object);
}

void PluginObjectInitializer(RuntimeObject *object) {
    if (object)
        RunPluginConstructors(object->klass, object);
}

void PluginObjectFinalizer(RuntimeObject *object) {
    for (RuntimeClass *c = object ? object->klass : nullptr; c; c = c->base)
        if (Registered *r = ClassOfRuntimeClass(c))
            if (r->classRecord->destructor)
                r->classRecord->destructor(object);
}

bool LinkOne(Registered *r);

void LinkClass(Registered *r) {
    KELPclassDefinition *c = r->classRecord;
    ObjectDefinition *super = nullptr;
    Registered *superPlugin = nullptr;
    if (c->superName && *c->superName) {
        superPlugin = FindRegistered(c->superName);
        if (superPlugin && superPlugin->kind != Kind::Interface && !superPlugin->definition)
            LinkOne(superPlugin); // its size comes first
        super = FindClassDefinition(c->superName);
        if (!super) {
            std::string message = std::string("Couldn't find ") + (c->name ? c->name : "") +
                                  " superclass: " + c->superName;
            FatalReport(kFatalFailedAssertion, kReportFile, __LINE__, "superclass",
                        message.c_str());
        }
    }
    RuntimeClass *superClass = super ? ClassForDefinition(super) : nullptr;
    const int32_t offset = superClass ? int32_t(superClass->instanceSize) : KELP_CLASS_DATA_OFFSET;
    c->forSystemUse = offset;
    Rows *rows = NewRows();
    AddProperties(*rows, c->properties, c->propertyCount, offset, false);
    AddMethods(*rows, c->methods, c->methodCount, c->version);
    AddEvents(*rows, c->name, c->events, c->eventCount);
    AddEventInstances(*rows, c->eventInstances, c->eventInstanceCount);
    ClassDescription description{.name = c->name};
    description.instanceSize = uint32_t(offset + std::max(c->dataSize, 0));
    if (!superPlugin || !super) {
        description.initializer = KELP_ENTRY(PluginObjectInitializer);
        description.finalizer = KELP_ENTRY(PluginObjectFinalizer);
    }
    Finish(r, *rows, description, super, c->interfaces);
}

void LinkControl(Registered *r) {
    KELPcontrol *c = r->controlRecord;
    ObjectDefinition *super =
        (c->flags & KELP_CONTROL_PLAIN_CONTROL) ? ControlDefinition() : RectControlDefinition();
    c->forSystemUse = KELP_CONTROL_DATA_OFFSET;
    Rows *rows = NewRows();
    AddProperties(*rows, c->properties, c->propertyCount, KELP_CONTROL_DATA_OFFSET, true);
    AddMethods(*rows, c->methods, c->methodCount, c->version);
    AddEvents(*rows, c->name, c->events, c->eventCount);
    if (c->version >= 4)
        AddEventInstances(*rows, c->eventInstances, c->eventInstanceCount);
    rows->hookInstances.push_back(
        HookInstanceRow{"CreatePane", reinterpret_cast<void *>(&CustomControlCreatePane)});
    ClassDescription description{.name = c->name};
    description.instanceSize = uint32_t(KELP_CONTROL_DATA_OFFSET + std::max(c->dataSize, 0));
    description.initializer = KELP_ENTRY(CustomControlConstructor);
    description.finalizer = KELP_ENTRY(CustomControlDestructor);
    Finish(r, *rows, description, super, c->version >= 4 ? c->interfaces : nullptr);
    if (c->flags & KELP_CONTROL_STORED_POSITION)
        AnswerStoredPosition(r->klass);
}

void LinkInterface(Registered *r) {
    KELPinterfaceDefinition *i = r->interfaceRecord;
    Rows *rows = NewRows();
    AddMethods(*rows, i->methods, i->methodCount, i->version);
    ClassDescription description{.name = i->name};
    description.isInterface = true;
    Finish(r, *rows, description, nullptr, nullptr);
}

bool LinkOne(Registered *r) {
    if (r->definition)
        return true;
    if (r->linking) { // a chain of supers that comes back to itself
        FatalReport(kFatalFailedAssertion, kReportFile, __LINE__, "!plugclass->linking",
                    (std::string("Class ") + r->Name() + " inherits from itself").c_str());
        return false;
    }
    r->linking = true;
    PluginRecord *outer = Host().current;
    Host().current = r->plugin;
    switch (r->kind) {
    case Kind::Class: LinkClass(r); break;
    case Kind::Control: LinkControl(r); break;
    case Kind::Interface: LinkInterface(r); break;
    case Kind::Module: break;
    }
    Host().current = outer;
    r->linking = false;
    return r->definition != nullptr;
}

} // namespace

Registered *ClassOfRuntimeClass(RuntimeClass *klass) {
    auto it = ClassMap().find(klass);
    return it == ClassMap().end() || it->second->kind != Kind::Class ? nullptr : it->second;
}

Registered *ControlOfClass(RuntimeClass *klass) {
    for (; klass; klass = klass->base) {
        auto it = ClassMap().find(klass);
        if (it != ClassMap().end() && it->second->kind == Kind::Control)
            return it->second;
        // A class the image built under a control's name is that control.
        if (Registered *r = FindRegistered(objtext::View(klass->name)))
            if (r->kind == Kind::Control)
                return r;
    }
    return nullptr;
}

void LinkPluginClasses(Registered *stop) {
    HostState &h = Host();
    KELP_ASSERT(!h.current, kReportFile, "!loadingPlugin");
    // Interfaces first: a class names them in its list.
    for (Registered *r = h.interfaces; r && r != stop; r = r->next)
        LinkOne(r);
    for (Registered *r = h.classes; r && r != stop; r = r->next)
        if (!r->definition)
            r->classRecord->forSystemUse = 0;
    for (Registered *r = h.classes; r && r != stop; r = r->next)
        if (r->classRecord->forSystemUse == 0)
            LinkOne(r);
    for (Registered *r = h.controls; r && r != stop; r = r->next)
        LinkOne(r);
}

} // namespace kelp::plugins

extern "C" void LinkPluginClasses(void *stop) {
    kelp::plugins::LinkPluginClasses(static_cast<kelp::plugins::Registered *>(stop));
}
